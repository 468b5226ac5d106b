// One row of the timeline: its payload, what led to it and what it led to.
import { change } from "../../route";
import type { Schemas } from "../../api/types";
import { Badge, Button, CopyButton } from "../../ui/controls";
import { Json } from "../../ui/json";
import { groupOf, isBad, timeText } from "./kinds";

type Row = Schemas["TimelineRow"];
export type Detail = Schemas["TimelineDetail"];

function Related({ title, rows }: { title: string; rows: Row[] }) {
  if (rows.length === 0) return null;
  return (
    <section>
      <h3>{title}</h3>
      <ol class="related">
        {rows.map((row) => (
          <li key={row.id}>
            <button type="button" onClick={() => change({ row: String(row.id) }, "push")}>
              <span class={`row-kind group-${groupOf(row)}`}>{row.kind}</span>
              <span>
                {row.method} {row.name} {row.status && <Badge kind={isBad(row) ? "bad" : ""}>{row.status}</Badge>}
              </span>
            </button>
          </li>
        ))}
      </ol>
    </section>
  );
}

export function RowPanel({ detail }: { detail: Detail }) {
  const { curl } = detail;
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
        <Button icon="close" kind="plain" label="Close the row" onClick={() => change({ row: "" }, "push")} />
      </header>
      <div class="panel-body" tabIndex={0} role="group" aria-label="Details">
        {detail.summary && <p>{detail.summary}</p>}
        <Related title="Because of" rows={detail.causes} />
        <Related title="Led to" rows={detail.effects} />
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
