// The form of one endpoint, and the response.
import { useSignal, type Signal } from "@preact/signals";
import { useEffect, useMemo, useRef } from "preact/hooks";
import { send, targetOf, type Reply } from "../../api/client";
import { asCurl, asTypeScript, copy } from "../../api/snippets";
import { addressOf, change, route } from "../../route";
import { exampleOf, nameOf, resolve, type Operation, type Parameter } from "../../state/document";
import { items } from "../../state/inventory";
import { useAction } from "../../ui/action";
import { Badge, Button, CopyButton, Field } from "../../ui/controls";
import { ReplyCard } from "./reply_card";

type Values = Record<string, string>;

const isStream = (operation: Operation) => operation.response?.["text/event-stream"] !== undefined;

function ParameterField({ parameter, value, onInput }: { parameter: Parameter; value: string; onInput: (value: string) => void }) {
  const schema = resolve(parameter.schema);
  const choices = schema.enum ?? (schema.type === "boolean" ? [true, false] : undefined);
  const label = `${parameter.name}${parameter.required ? "" : " (optional)"}`;
  const hint = parameter.description ?? schema.description;
  const list = parameter.name === "lootId" || parameter.name === "lootName" ? "known-loot" : undefined;
  return (
    <Field label={label} hint={hint}>
      {choices ? (
        <select value={value} onChange={(event) => onInput(event.currentTarget.value)}>
          {!parameter.required && <option value="">not sent</option>}
          {choices.map((choice) => (
            <option key={String(choice)}>{String(choice)}</option>
          ))}
        </select>
      ) : (
        <input
          type="text"
          spellcheck={false}
          autocomplete="off"
          list={list}
          value={value}
          placeholder={schema.default === undefined ? nameOf(schema) : String(schema.default)}
          onInput={(event) => onInput(event.currentTarget.value)}
        />
      )}
    </Field>
  );
}

function LootIds() {
  return (
    <datalist id="known-loot">
      {[...items.keys()].slice(0, 500).map((id) => (
        <option key={id} value={id} />
      ))}
    </datalist>
  );
}

// What parameters begin with: values of the address, else the first of a list that must be given.
function startValues(operation: Operation): Values {
  const given = route.value.values;
  const start = (parameter: Parameter) => {
    const choices = parameter.required ? resolve(parameter.schema).enum : undefined;
    return given[`p.${parameter.name}`] ?? String(choices?.[0] ?? "");
  };
  return Object.fromEntries(operation.parameters.map((parameter) => [parameter.name, start(parameter)]));
}

// What the address of a form holds of it. A body that is the example is left out; one without text is a space.
function linkOf(operation: Operation, values: Values, body: string, example: string): Values {
  const parameters = Object.entries(values).map(([name, value]) => [`p.${name}`, value]);
  const sent = !operation.body || body === example ? "" : body || " ";
  return { ...Object.fromEntries(parameters), body: sent };
}

const longestLink = 8000;
const isTooLong = (address: string) => address.length > longestLink;

function requestOf(operation: Operation, values: Values) {
  const part = (place: Parameter["in"]) =>
    Object.fromEntries(
      operation.parameters.filter((each) => each.in === place).map((each) => [each.name, values[each.name] ?? ""]),
    );
  return { path: part("path"), query: part("query") };
}

function Heading({ operation, onClose }: { operation: Operation; onClose: () => void }) {
  return (
    <>
      <div class="operation-head">
        <h2 class="operation-title">
          <span class={`method ${operation.method.toLowerCase()}`}>{operation.method}</span>
          <span class="path">{operation.path}</span>
        </h2>
        <Button icon="close" kind="plain" label="Close the form" onClick={onClose} />
      </div>
      <p>{operation.summary}</p>
      {operation.description && <p class="quiet">{operation.description}</p>}
    </>
  );
}

// Fills the form again when another address comes. Returns what writes the form's own.
function useLink(operation: Operation, values: Signal<Values>, body: Signal<string>, example: string): (link: Values) => void {
  const present = () => JSON.stringify([startValues(operation), route.value.values["body"]]);
  const key = present();
  const known = useRef(key);
  useEffect(() => {
    if (key === known.current) return;
    known.current = key;
    values.value = startValues(operation);
    body.value = route.value.values["body"] ?? example;
  }, [key]);
  return (link) => {
    change(link);
    known.current = present();
  };
}

function LinkButton({ address }: { address: string }) {
  const run = useAction(async () => {
    if (isTooLong(address)) throw new Error(`The address would have ${address.length.toLocaleString("en")} characters: take the request away as curl.`);
    await copy(location.origin + location.pathname + address);
    return "The address of this form is copied";
  });
  return (
    <Button icon="link" kind="plain" label="Link: copy the address of this form" onClick={() => void run.run()}>
      Link
    </Button>
  );
}

export function OperationForm({ operation, onClose }: { operation: Operation; onClose: () => void }) {
  const values = useSignal<Values>(startValues(operation));
  const example = useMemo(() => (operation.body ? JSON.stringify(exampleOf(operation.body.schema), null, 2) : ""), [operation]);
  const body = useSignal(route.value.values["body"] ?? example);
  const write = useLink(operation, values, body, example);
  const link = linkOf(operation, values.value, body.value, example);
  const reply = useSignal<Reply | undefined>(undefined);
  const { path, query } = requestOf(operation, values.value);
  const target = targetOf(operation.path, { path, query });
  const sentBody = operation.body && body.value.trim() !== "" ? body.value : undefined;
  const run = useAction(async () => {
    write(isTooLong(addressOf("api", link)) ? { ...link, body: "" } : link);
    reply.value = await send(operation.method, target, sentBody === undefined ? undefined : { body: sentBody });
  });
  const missing = operation.parameters.filter((each) => each.required && !values.value[each.name]);
  const result = nameOf(operation.response?.["application/json"]?.schema);
  return (
    <form
      class="operation"
      onSubmit={(event) => {
        event.preventDefault();
        if (missing.length === 0) void run.run();
      }}
    >
      <Heading operation={operation} onClose={onClose} />
      <LootIds />
      <div class="fields">
        {operation.parameters
          .filter((each) => each.in !== "header")
          .map((parameter) => (
            <ParameterField
              key={parameter.name}
              parameter={parameter}
              value={values.value[parameter.name] ?? ""}
              onInput={(value) => (values.value = { ...values.value, [parameter.name]: value })}
            />
          ))}
      </div>
      {operation.body && (
        <Field label={`Body, JSON${operation.body.required ? "" : " (optional)"}`} hint={nameOf(operation.body.schema)}>
          <textarea
            rows={Math.min(16, Math.max(3, body.value.split("\n").length))}
            spellcheck={false}
            value={body.value}
            onInput={(event) => (body.value = event.currentTarget.value)}
          />
        </Field>
      )}
      <div class="operation-actions">
        {isStream(operation) ? (
          <Badge>A stream without end: follow it in the timeline, or with curl -N</Badge>
        ) : (
          <Button kind="main" icon="play" isRunning={run.isRunning} disabled={missing.length > 0} onClick={() => void run.run()}>
            Send
          </Button>
        )}
        <CopyButton text={() => asCurl(operation.method, target, sentBody)}>curl</CopyButton>
        <CopyButton
          text={() => asTypeScript({ method: operation.method, template: operation.path, path, query, body: sentBody }, result)}
        >
          TypeScript
        </CopyButton>
        <LinkButton address={addressOf("api", { op: operation.operationId, ...link })} />
      </div>
      {missing.length > 0 && <p class="hint">Needs {missing.map((each) => each.name).join(", ")}.</p>}
      {reply.value && <ReplyCard reply={reply.value} />}
    </form>
  );
}
