// JSON as text with colors, a long one only up to a length.
import { useMemo } from "preact/hooks";
import { Button, CopyButton } from "./controls";
import { useSignal } from "@preact/signals";

const most = 20_000;
const tokens = /("(?:[^"\\]|\\.)*")(\s*:)?|\b(true|false|null)\b|-?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?/g;

function parts(text: string) {
  const list = [];
  let end = 0;
  for (const found of text.matchAll(tokens)) {
    if (found.index > end) list.push(text.slice(end, found.index));
    const [all, string, colon, word] = found;
    const kind = colon ? "key" : string ? "string" : word ? "word" : "number";
    list.push(<span class={`json-${kind}`}>{colon ? string : all}</span>);
    if (colon) list.push(colon);
    end = found.index + all.length;
  }
  list.push(text.slice(end));
  return list;
}

export function textOf(value: unknown): string {
  return typeof value === "string" ? value : (JSON.stringify(value, null, 2) ?? "");
}

export function Json({ value, label }: { value: unknown; label: string }) {
  const showsAll = useSignal(false);
  const text = useMemo(() => textOf(value), [value]);
  const cut = !showsAll.value && text.length > most;
  const drawn = useMemo(() => parts(cut ? text.slice(0, most) : text), [text, cut]);
  return (
    <div class="json">
      <div class="json-tools">
        <CopyButton text={() => text} label={`Copy ${label}`} />
      </div>
      <pre tabIndex={0} role="region" aria-label={label}>
        {drawn}
        {cut && "\n…"}
      </pre>
      {cut && (
        <Button kind="plain" onClick={() => (showsAll.value = true)}>
          {`Show all ${text.length.toLocaleString("en")} characters`}
        </Button>
      )}
    </div>
  );
}

// What is wrong with a text that is to be JSON. A word is taken as what it may be meant to be: a text without its quotes.
export function jsonProblem(text: string): string | undefined {
  try {
    JSON.parse(text);
    return undefined;
  } catch (failure) {
    if (/^\w[\w .-]*$/.test(text)) return `This is not JSON. A text has quotes: ${JSON.stringify(text)}`;
    return `This is not JSON: ${(failure as Error).message}`;
  }
}

// A text that may be JSON.
export function parsed(text: string): unknown {
  try {
    return JSON.parse(text);
  } catch {
    return text;
  }
}
