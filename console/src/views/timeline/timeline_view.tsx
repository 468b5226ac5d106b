// What happened in the host, live, with causes and effects; and the inventory at any past event.
import { useEffect, useMemo } from "preact/hooks";
import { call } from "../../api/client";
import { change, route } from "../../route";
import { clear, followTimeline, isPaused, missed, rows, setPaused } from "../../state/timeline";
import { Button, Empty, SearchField, Segmented } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { groups, matches } from "./kinds";
import { RowList } from "./row_list";
import { RowPanel } from "./row_panel";
import { TravelView } from "./travel_view";

const tabs = [
  ["rows", "What happens"],
  ["travel", "Time travel"],
] as const;

function Kinds({ hidden }: { hidden: ReadonlySet<string> }) {
  const flip = (group: string) => {
    const next = new Set(hidden);
    if (!next.delete(group)) next.add(group);
    change({ hide: [...next].join(",") });
  };
  return (
    <div class="kinds" role="group" aria-label="Kinds of rows">
      {groups.map(([group, text]) => (
        <button type="button" key={group} class={`toggle group-${group}`} aria-pressed={!hidden.has(group)} onClick={() => flip(group)}>
          {text}
        </button>
      ))}
    </div>
  );
}

async function readRow(id: number) {
  if (!id) return undefined;
  return call("get", "/_host/timeline/{id}", { path: { id: String(id) } }).catch((failure: Error) => {
    throw new Error(`Row ${id} cannot be shown: ${failure.message}`);
  });
}

function Rows() {
  const { values } = route.value;
  const text = (values["q"] ?? "").toLowerCase();
  const hide = values["hide"] ?? "";
  const selected = Number(values["row"] ?? 0);
  useEffect(followTimeline, []);
  const hidden = useMemo(() => new Set(hide.split(",").filter(Boolean)), [hide]);
  const list = rows.value;
  const shown = useMemo(() => list.filter((row) => matches(row, hidden, text)), [list, hidden, text]);
  const read = useFetched(
    () => readRow(selected),
    selected,
  );
  const detail = read.value;
  const isShown = detail !== undefined && detail.id === selected;
  return (
    <div class={`inventory${isShown ? " with-panel" : ""}`}>
      <div class="inventory-main">
        <div class="toolbar">
          <SearchField label="Path, status or summary" value={values["q"] ?? ""} onInput={(q) => change({ q })} />
          <Kinds hidden={hidden} />
          <Button icon={isPaused.value ? "play" : "pause"} onClick={() => setPaused(!isPaused.value)}>
            {isPaused.value ? `Go on (${missed.value} new)` : "Pause"}
          </Button>
          <Button kind="plain" onClick={clear}>
            Clear
          </Button>
        </div>
        {selected > 0 && read.failure && (
          <div class="toolbar" role="status">
            <p>{read.failure}</p>
            <Button onClick={() => change({ row: "" }, "push")}>Show the newest</Button>
          </div>
        )}
        {shown.length === 0 ? (
          <Empty icon="timeline" title={list.length > 0 ? "No row fits these filters" : "Nothing has happened yet"} />
        ) : (
          <RowList
            rows={shown}
            filters={`${hide} ${text}`}
            selected={selected}
            causes={new Set(isShown ? detail.causes.map((row) => row.id) : [])}
            effects={new Set(isShown ? detail.effects.map((row) => row.id) : [])}
            isFollowing={selected === 0}
            onSelect={(row) => change({ row: String(row) }, selected ? "replace" : "push")}
          />
        )}
      </div>
      {isShown && <RowPanel detail={detail} />}
    </div>
  );
}

export function TimelineView() {
  const tab = tabs.find(([key]) => key === route.value.values["tab"])?.[0] ?? "rows";
  return (
    <div class="timeline">
      <h1 class="hidden">Timeline</h1>
      <div class="tabs">
        <Segmented label="Part" options={tabs} value={tab} onChange={(next) => change({ tab: next, row: "" }, "push")} />
      </div>
      {tab === "rows" ? <Rows /> : <TravelView />}
    </div>
  );
}
