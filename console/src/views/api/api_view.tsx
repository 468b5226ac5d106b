// Every endpoint of the plugin and the host, with a form made from the API document.
import { addressOf, change, go, route } from "../../route";
import { operations, type Operation } from "../../state/document";
import { Empty, SearchField } from "../../ui/controls";
import { OperationForm } from "./operation_form";

const isShown = (operation: Operation, text: string) =>
  `${operation.method} ${operation.path} ${operation.operationId} ${operation.summary}`.toLowerCase().includes(text.toLowerCase());

function Group({ tag, list, chosen }: { tag: string; list: Operation[]; chosen: string }) {
  if (list.length === 0) return null;
  return (
    <section aria-label={tag}>
      <h2>{tag}</h2>
      <ul>
        {list.map((operation) => (
          <li key={operation.operationId + operation.method}>
            <a
              href={addressOf("api", { q: route.value.values["q"] ?? "", op: operation.operationId })}
              aria-current={operation.operationId === chosen ? "true" : undefined}
              title={operation.summary || operation.description}
            >
              <span class={`method ${operation.method.toLowerCase()}`}>{operation.method}</span>
              <span class="path">{operation.path}</span>
            </a>
          </li>
        ))}
      </ul>
    </section>
  );
}

export function ApiView() {
  const { values } = route.value;
  const list = operations.value;
  const text = values["q"] ?? "";
  const chosen = list.find((operation) => operation.operationId === values["op"]);
  const shown = list.filter((operation) => isShown(operation, text));
  const tags = [...new Set(list.map((operation) => operation.tag))];
  return (
    <div class={`api${chosen ? " with-panel" : ""}`}>
      <h1 class="hidden">API</h1>
      <nav class="api-list" aria-label="Endpoints">
        <div class="toolbar">
          <SearchField label="Path or name" value={text} onInput={(q) => change({ q })} />
        </div>
        <div class="scroll" tabIndex={0} role="region" aria-label="List of endpoints">
          {tags.map((tag) => (
            <Group key={tag} tag={tag} list={shown.filter((operation) => operation.tag === tag)} chosen={values["op"] ?? ""} />
          ))}
        </div>
      </nav>
      <div class="api-main scroll">
        {chosen ? (
          <OperationForm operation={chosen} key={chosen.operationId} onClose={() => go("api", { q: text })} />
        ) : (
          <Empty icon="braces" title="Choose an endpoint">
            <p>Fill in its form, send it, and look at what comes back.</p>
          </Empty>
        )}
      </div>
    </div>
  );
}
