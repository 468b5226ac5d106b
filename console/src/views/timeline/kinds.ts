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

// UTC, as the clock in the top bar.
export const timeText = (milliseconds: number) => new Date(milliseconds).toISOString().slice(11, 23);

// A log line is shown without its time and level, which the row has already.
export const summaryOf = ({ kind, summary }: Row) => (kind === "log" ? summary.slice(summary.lastIndexOf("| ") + 1).trim() : summary);

export function matches(row: Row, hidden: ReadonlySet<string>, text: string): boolean {
  if (hidden.has(groupOf(row))) return false;
  return !text || `${row.kind} ${row.method ?? ""} ${row.name} ${row.status ?? ""} ${row.summary}`.toLowerCase().includes(text);
}
