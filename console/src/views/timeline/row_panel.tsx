// One row of the timeline: its payload, what led to it and what it led to.
import { change } from "../../route";
import type { Schemas } from "../../api/types";
import { Badge, Button, CopyButton } from "../../ui/controls";
import { useEscape } from "../../ui/focus";
import { Json } from "../../ui/json";
import { groupOf, isBad, summaryOf, timeText } from "./kinds";

type Row = Schemas["TimelineRow"];
export type Detail = Schemas["TimelineDetail"];

const mostSteps = 6;

interface Placed {
  row: Row;
  // How many of the others led to it.
  steps: number;
}

// Each row below its cause. Rows come after their cause.
function asTree(rows: readonly Row[]): Placed[] {
  const paths = new Map<number, string[]>();
  for (const { id, cause } of rows) paths.set(id, [...(paths.get(cause ?? 0) ?? []), String(id).padStart(16, "0")]);
  const placed = rows.map((row) => ({ row, path: paths.get(row.id) ?? [] }));
  placed.sort((a, b) => (a.path.join() < b.path.join() ? -1 : 1));
  return placed.map(({ row, path }) => ({ row, steps: path.length - 1 }));
}

interface RelatedProps {
  title: string;
  rows: Row[];
  // Each row is set in below its cause.
  isTree?: boolean;
  hasMore?: boolean;
}

function Related({ title, rows, isTree, hasMore }: RelatedProps) {
  if (rows.length === 0) return null;
  const placed = isTree ? asTree(rows) : rows.map((row) => ({ row, steps: 0 }));
  return (
    <section>
      <h3>{title}</h3>
      <ol class="related">
        {placed.map(({ row, steps }) => (
          <li key={row.id} style={{ paddingLeft: `${Math.min(steps, mostSteps)}rem` }}>
            <button type="button" onClick={() => change({ row: String(row.id) }, "push")}>
              <span class={`row-kind group-${groupOf(row)}`}>{row.kind}</span>
              <span>
                {row.method} {row.kind === "log" ? summaryOf(row) : row.name} {row.status && <Badge kind={isBad(row) ? "bad" : ""}>{row.status}</Badge>}
              </span>
            </button>
          </li>
        ))}
      </ol>
      {hasMore && <p class="quiet">These are the first {rows.length}.</p>}
    </section>
  );
}

const close = () => change({ row: "" }, "push");

export function RowPanel({ detail }: { detail: Detail }) {
  const { curl } = detail;
  useEscape(close);
  return (
    <aside class="panel" aria-label={`Row ${detail.id}`}>
      <header class="panel-head">
        <div class="panel-title">
          <h2>
            {detail.method} {detail.name}
          </h2>
          <p class="badges">
            <span class={`row-kind group-${groupOf(detail)}`}>{detail.kind}</span>
            {detail.status && <Badge kind={isBad(detail) ? "bad" : "good"}>{detail.status}</Badge>}
            {detail.duration !== undefined && <Badge>{detail.duration} ms</Badge>}
            <Badge>{timeText(detail.time)} UTC</Badge>
            {detail.event !== undefined && <Badge>event {detail.event}</Badge>}
          </p>
        </div>
        <Button icon="close" kind="plain" label="Close the row" onClick={close} />
      </header>
      <div class="panel-body" tabIndex={0} role="group" aria-label="Details">
        {detail.summary && <p>{detail.summary}</p>}
        <Related title="Because of" rows={detail.causes} />
        <Related title="Led to" rows={detail.effects} isTree hasMore={detail.hasMoreEffects} />
        {curl && (
          <p>
            <CopyButton text={() => curl}>curl</CopyButton>
          </p>
        )}
        {detail.size > 0 && (
          <section>
            <h3>Payload, {detail.size.toLocaleString("en")} bytes</h3>
            {detail.isShortened && <p class="quiet">Only its beginning was kept.</p>}
            <Json value={detail.payload} label="the payload" />
          </section>
        )}
      </div>
    </aside>
  );
}
