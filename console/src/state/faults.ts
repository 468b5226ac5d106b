// Fault rules and held calls. Read again after each change of any client, and while calls may be held. A rule comes or
// goes alone: the others stay as they are, with what is not shown of them.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { Given, Result, Schemas } from "../api/types";
import { connection, connections, controls, onEvent } from "./stream";
import { waiting } from "./crafts";

export type Rule = Schemas["HostFaultRule"];
export type Faults = Schemas["HostFaults"];
export type HeldCall = Result<"/_host/held", "get">[number];
export type HeldEnd = NonNullable<Given<"/_host/held/{id}", "post">["body"]>;
export const faults = signal<Faults | undefined>(undefined);
export const held = signal<readonly HeldCall[]>([]);

export const rulesOf = (known: Faults | undefined): readonly Rule[] => known?.rules ?? [];
const holds = (rule: Rule) => rule.action === "hold";
let reads = 0;

export async function readFaults(): Promise<void> {
  const mine = ++reads;
  try {
    const [read, calls] = await Promise.all([call("get", "/_host/faults"), call("get", "/_host/held")]);
    if (mine !== reads) return;
    faults.value = read;
    held.value = calls;
  } catch {
    // The connection's state shows it.
  }
}

// What a change returns is newer than what is being read.
async function take(changed: Promise<Faults>): Promise<void> {
  const next = await changed;
  ++reads;
  faults.value = next;
}

export const addRule = (rule: Rule) => take(call("post", "/_host/faults", { body: rule }));
export const removeRules = () => take(call("delete", "/_host/faults"));
export const removeRule = (id: number) => take(call("delete", "/_host/faults/{id}", { path: { id } }));

export async function endHeld(id: number, body: HeldEnd): Promise<void> {
  await call("post", "/_host/held/{id}", { path: { id }, body });
  await readFaults();
}

export function startFaults(): void {
  connections.subscribe((count) => void (count > 0 && readFaults()));
  controls.subscribe((count) => void (count > 0 && readFaults()));
  onEvent((event) => {
    if (event.kind !== "resource") void readFaults();
  });
  waiting.subscribe(() => void (connection.peek() === "live" && readFaults()));
  setInterval(() => {
    if (document.hidden || connection.value !== "live") return;
    if (held.value.length > 0 || waiting.value.length > 0 || rulesOf(faults.value).some(holds)) void readFaults();
  }, 700);
}
