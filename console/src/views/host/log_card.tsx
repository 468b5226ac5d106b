// The newest lines of the plugin's log.
import { useSignal } from "@preact/signals";
import { useEffect, useRef } from "preact/hooks";
import { call } from "../../api/client";
import { connections } from "../../state/stream";
import { Card, CopyButton, SearchField } from "../../ui/controls";

const period = 2000;

function kindOf(line: string): string {
  if (/\b(error|ERROR)\b/i.test(line)) return "bad";
  return /\bwarn/i.test(line) ? "warn" : "";
}

export function LogCard() {
  const lines = useSignal<string[]>([]);
  const text = useSignal("");
  const list = useRef<HTMLDivElement>(null);
  const connection = connections.value;
  useEffect(() => {
    const read = () => {
      if (!document.hidden) void call("get", "/_host/log").then((value) => (lines.value = value), () => undefined);
    };
    read();
    const timer = setInterval(read, period);
    return () => clearInterval(timer);
  }, [connection]);
  const shown = lines.value.filter((line) => line.toLowerCase().includes(text.value.toLowerCase()));
  useEffect(() => {
    const element = list.current;
    if (element) element.scrollTop = element.scrollHeight;
  }, [shown.length]);
  return (
    <Card title="Log" actions={<CopyButton text={() => shown.join("\n")} label="Copy the log" />}>
      <SearchField label="Lines with" value={text.value} onInput={(value) => (text.value = value)} />
      <div class="log" ref={list} tabIndex={0} role="log" aria-label="Log lines">
        {shown.map((line, index) => (
          <p key={index} class={kindOf(line)}>
            {line}
          </p>
        ))}
        {shown.length === 0 && <p class="quiet">No lines.</p>}
      </div>
    </Card>
  );
}
