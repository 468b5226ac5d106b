// What the player owns beside loot.
import { useSignal } from "@preact/signals";
import { useRef } from "preact/hooks";
import { call } from "../../api/client";
import { inventoryVersion, items } from "../../state/inventory";
import type { World } from "../../state/world";
import { useAction } from "../../ui/action";
import { Card, SearchField, Segmented, Select } from "../../ui/controls";
import { rowsInView, useVisible } from "../../ui/visible";
import { nameOf } from "../../state/names";

const collections = [
  ["champions", "Champions", /^CHAMPION(_RENTAL)?$/],
  ["skins", "Skins", /^SKIN(_RENTAL)?$/],
  ["ward-skins", "Ward skins", /^WARDSKIN/],
  ["summoner-icons", "Icons", /^SUMMONERICON/],
  ["emotes", "Emotes", /^EMOTE/],
  ["tournament-logos", "Logos", /^TOURNAMENTLOGO/],
  ["chromas", "Chromas", /^CHROMA/],
] as const;
type Name = (typeof collections)[number][0];

const owned = [
  ["OWNED", "Own"],
  ["RENTED", "Rent"],
  ["F2P", "Free"],
  ["NONE", "None"],
] as const;
type Owned = (typeof owned)[number][0];

const heightOfRow = 2.8;  // in rem

function namesOf(collection: Name): Map<string, string> {
  const pattern = collections.find(([name]) => name === collection)?.[2];
  const names = new Map<string, string>();
  for (const item of items.values()) {
    if (pattern?.test(item.type)) names.set(String(item.storeItemId), nameOf(item));
  }
  return names;
}

interface Row {
  id: string;
  name: string;
  ownership: Owned;
}

function Rows({ rows, collection }: { rows: Row[]; collection: Name }) {
  const list = useRef<HTMLDivElement>(null);
  const visible = useVisible(list);
  const rowHeight = heightOfRow * visible.rem;
  const range = rowsInView(visible, rowHeight, rows.length);
  const set = useAction(async (id: string, next: Owned) => {
    const body = { owned: next === "OWNED", rented: next === "RENTED", freeToPlayReward: next === "F2P" };
    await call("put", "/_host/collections/{collection}/{id}", { path: { collection, id: Number(id) }, body });
  });
  return (
    <div class="collection" ref={list} tabIndex={0} role="region" aria-label="Things to own">
      <div class="collection-inner" style={{ height: `${rows.length * rowHeight}px` }}>
        {rows.slice(range.first, range.end).map((row, index) => (
          <div class="collection-row" key={row.id} style={{ transform: `translateY(${(range.first + index) * rowHeight}px)` }}>
            <span class="id">{row.id}</span>
            <span class="name" title={row.name}>
              {row.name}
            </span>
            <Segmented
              label={`${row.name || row.id} is`}
              options={owned}
              value={row.ownership}
              disabled={set.isRunning}
              onChange={(next) => void set.run(row.id, next)}
            />
          </div>
        ))}
      </div>
    </div>
  );
}

export function CollectionsCard({ state }: { state: World }) {
  void inventoryVersion.value;
  const collection = useSignal<Name>("champions");
  const text = useSignal("");
  const table = (state.collections as Record<string, Record<string, Owned>>)[collection.value] ?? {};
  const names = namesOf(collection.value);
  const rows = Object.entries(table)
    .map(([id, ownership]): Row => ({ id, name: names.get(id) ?? "", ownership }))
    .filter((row) => `${row.id} ${row.name}`.toLowerCase().includes(text.value.toLowerCase()));
  return (
    <Card title="Collections" actions={<span class="quiet">{rows.length}</span>}>
      <div class="row">
        <Select
          label="Collection"
          options={collections.map(([name, title]) => [name, title] as const)}
          value={collection.value}
          onChange={(next) => (collection.value = next)}
        />
        <SearchField label="Id or name" value={text.value} onInput={(value) => (text.value = value)} />
      </div>
      <Rows rows={rows} collection={collection.value} />
    </Card>
  );
}
