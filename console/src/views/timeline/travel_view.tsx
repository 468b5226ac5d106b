// The inventory as it was published at a past event, and the difference between two.
import { useEffect, useMemo } from "preact/hooks";
import { call } from "../../api/client";
import type { PlayerLoot } from "../../api/types";
import { addressOf, change, route } from "../../route";
import { inventoryAt, points, startHistory, type Point } from "../../state/history";
import { Badge, Empty } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { nameOf } from "../../state/names";
import { Picture } from "../inventory/picture";
import { differences, type Difference } from "./differences";
import { timeText } from "./kinds";

// When the event was published, as long as the timeline holds it.
async function timeOf(event: number): Promise<string> {
  const { rows } = await call("get", "/_host/timeline", { query: { event: String(event), limit: 1 } });
  return rows[0] ? `${timeText(rows[0].time)} UTC` : "";
}

function Slider({ label, list, place, onChange }: { label: string; list: readonly Point[]; place: number; onChange: (id: number) => void }) {
  const point = list[place];
  const id = point?.id ?? 0;
  const time = useFetched(async () => ({ id, text: id > 0 ? await timeOf(id) : "" }), id).value;
  const shownTime = time?.id === id ? time.text : "";
  return (
    <label class="slider">
      <span class="label">{label}</span>
      <input
        type="range"
        min={0}
        max={list.length - 1}
        value={place}
        aria-valuetext={point ? `event ${id}, ${shownTime}, ${point.text}` : ""}
        onInput={(event) => onChange(list[event.currentTarget.valueAsNumber]?.id ?? 0)}
      />
      <span class="slider-text" title={point?.text}>
        {point && (
          <>
            <b>event {id}</b> {shownTime} <span class="quiet">{point.text}</span>
          </>
        )}
      </span>
    </label>
  );
}

// Several items may have one name.
function IdBeside({ lootId, isNamed }: { lootId: string; isNamed: boolean }) {
  return isNamed ? <span class="id quiet">{lootId}</span> : null;
}

function DifferenceRow({ entry }: { entry: Difference }) {
  const item = entry.after ?? entry.before;
  return (
    <li class="delta">
      {item && <Picture item={item} />}
      <a href={addressOf("inventory", { item: entry.lootId })}>
        {item ? nameOf(item) : entry.lootId} <IdBeside lootId={entry.lootId} isNamed={item !== undefined} />
      </a>
      <Badge kind={entry.kind === "came" ? "good" : entry.kind === "left" ? "bad" : ""}>{entry.kind}</Badge>
      <span class="difference">{entry.members.map(([name, from, to]) => `${name}: ${from} → ${to}`).join(", ")}</span>
    </li>
  );
}

const mostHeld = 400;
const mostDifferences = 300;

const countText = (count: number, most: number) =>
  `${count > most ? `first ${most} of ` : ""}${count.toLocaleString("en")} item${count === 1 ? "" : "s"}`;

function HeldAt({ held }: { held: ReadonlyMap<string, PlayerLoot | "unknown"> }) {
  const list = [...held].sort(([a], [b]) => a.localeCompare(b)).slice(0, mostHeld);
  return (
    <ul class="held-then">
      {list.map(([lootId, item]) => (
        <li key={lootId}>
          <span>
            {item === "unknown" ? lootId : nameOf(item)} <IdBeside lootId={lootId} isNamed={item !== "unknown"} />
          </span>
          <b>{item === "unknown" ? "?" : item.count.toLocaleString("en")}</b>
        </li>
      ))}
    </ul>
  );
}

// The place of the newest point that is not after the id; the last when there is none.
const placeOf = (list: readonly Point[], id: string | undefined, otherwise: number) =>
  id === undefined || id === "" ? otherwise : Math.max(0, list.findLastIndex((point) => point.id <= Number(id)));

export function TravelView() {
  useEffect(startHistory, []);
  const list = points.value;
  const { values } = route.value;
  const from = placeOf(list, values["from"], 0);
  const to = placeOf(list, values["to"], list.length - 1);
  const before = useMemo(() => inventoryAt(list[from]?.id ?? 0), [list, from]);
  const after = useMemo(() => inventoryAt(list[to]?.id ?? 0), [list, to]);
  const changed = useMemo(() => differences(before, after), [before, after]);
  if (list.length === 0) return <Empty icon="clock" title="No item has been published yet" />;
  return (
    <div class="travel scroll">
      <div class="sliders">
        <Slider label="From" list={list} place={from} onChange={(id) => change({ from: String(id) })} />
        <Slider label="To" list={list} place={to} onChange={(id) => change({ to: String(id) })} />
      </div>
      <div class="travel-parts">
        <section class="card" aria-label="Difference">
          <header>
            <h2>Difference</h2>
            <span class="quiet">{countText(changed.length, mostDifferences)}</span>
          </header>
          <div class="card-body">
            {changed.length === 0 && <p class="quiet">Both show the same.</p>}
            <ul class="deltas">
              {changed.slice(0, mostDifferences).map((entry) => (
                <DifferenceRow key={entry.lootId} entry={entry} />
              ))}
            </ul>
          </div>
        </section>
        <section class="card" aria-label="Inventory then">
          <header>
            <h2>Inventory at event {list[to]?.id}</h2>
            <span class="quiet">{countText(after.size, mostHeld)}</span>
          </header>
          <div class="card-body">
            <HeldAt held={after} />
          </div>
        </section>
      </div>
    </div>
  );
}
