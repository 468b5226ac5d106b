// The kinds of rows, in groups that people ask for.
import type { Row } from "../../state/timeline";

export const groups = [
  ["requests", "Requests", ["request", "control", "response"]],
  ["calls", "Service calls", ["service-call", "service-response"]],
  ["siblings", "Siblings", ["sibling-request", "sibling-response", "resource", "message"]],
  ["events", "Events", ["event"]],
  ["tasks", "Tasks", ["task"]],
  ["log", "Log", ["log"]],
  ["host", "Host", ["fault", "clock", "session"]],
] as const satisfies readonly (readonly [string, string, readonly Row["kind"][]])[];

const groupByKind = new Map<string, string>(groups.flatMap(([group, , kinds]) => kinds.map((kind) => [kind, group] as const)));
export const groupOf = (row: Row) => groupByKind.get(row.kind) ?? "host";

export function isBad(row: Row): boolean {
  const status = row.status ?? "";
  return row.kind === "fault" || status === "ERROR" || Number(status) >= 400 || (row.kind === "service-response" && status !== "OK" && status !== "");
}

const pad = (value: number, digits: number) => String(value).padStart(digits, "0");

export function timeText(milliseconds: number): string {
  const time = new Date(milliseconds);
  return `${pad(time.getHours(), 2)}:${pad(time.getMinutes(), 2)}:${pad(time.getSeconds(), 2)}.${pad(time.getMilliseconds(), 3)}`;
}

export function matches(row: Row, hidden: ReadonlySet<string>, text: string): boolean {
  if (hidden.has(groupOf(row))) return false;
  return !text || `${row.kind} ${row.method ?? ""} ${row.name} ${row.status ?? ""} ${row.summary}`.toLowerCase().includes(text);
}
