// The newest lines of the plugin's log, and from which level on it writes any.
import { useSignal } from "@preact/signals";
import { useEffect, useRef } from "preact/hooks";
import { call } from "../../api/client";
import { connections, controls } from "../../state/stream";
import { useAction } from "../../ui/action";
import { Card, CopyButton, Field, SearchField, Select } from "../../ui/controls";

const period = 2000;
const levels = [
  ["okay", "everything"],
  ["warning", "warnings and above"],
  ["error", "errors and above"],
  ["always", "only what is always logged"],
] as const;
type Level = (typeof levels)[number][0];

function LevelField() {
  const level = useSignal<Level>("warning");
  const connection = `${connections.value} ${controls.value}`;
  useEffect(() => void call("get", "/_host/log/level").then((value) => (level.value = value.level), () => undefined), [connection]);
  const set = useAction(async (next: Level) => {
    level.value = (await call("put", "/_host/log/level", { body: { level: next } })).level;
  });
  return (
    <Field label="The plugin logs">
      <Select label="The plugin logs" options={levels} value={level.value} disabled={set.isRunning} onChange={(next) => void set.run(next)} />
    </Field>
  );
}

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
      <p class="quiet">The times are local times of the machine that the host runs on.</p>
      <LevelField />
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
