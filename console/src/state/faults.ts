// Fault rules and held calls. Read again after each change from here, and while calls may be held.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { Given, Result, Schemas } from "../api/types";
import { connection, connections, onEvent } from "./stream";
import { waiting } from "./crafts";

export type Rule = Schemas["HostFaultRule"];
export type HeldCall = Result<"/_host/held", "get">[number];
export type HeldEnd = NonNullable<Given<"/_host/held/{id}", "post">["body"]>;
export const rules = signal<readonly Rule[]>([]);
export const held = signal<readonly HeldCall[]>([]);

const holds = (rule: Rule) => rule.action === "hold";

export async function readFaults(): Promise<void> {
  try {
    const [faults, calls] = await Promise.all([call("get", "/_host/faults"), call("get", "/_host/held")]);
    rules.value = faults.rules;
    held.value = calls;
  } catch {
    // The connection's state shows it.
  }
}

export async function setRules(list: readonly Rule[]): Promise<void> {
  const sent = list.map(({ matched: _, applied: __, ...rule }) => rule);
  rules.value = (await call("put", "/_host/faults", { body: { rules: sent } })).rules;
}

export async function endHeld(id: number, body: HeldEnd): Promise<void> {
  await call("post", "/_host/held/{id}", { path: { id }, body });
  await readFaults();
}

export function startFaults(): void {
  connections.subscribe((count) => void (count > 0 && readFaults()));
  onEvent((event) => {
    if (event.kind !== "resource") void readFaults();
  });
  waiting.subscribe(() => void (connection.peek() === "live" && readFaults()));
  setInterval(() => {
    if (document.hidden || connection.value !== "live") return;
    if (held.value.length > 0 || waiting.value.length > 0 || rules.value.some(holds)) void readFaults();
  }, 700);
}
