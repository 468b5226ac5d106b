// Which items are shown, and in which order.
import type { PlayerLoot } from "../../api/types";
import { nameOf } from "../../state/names";

export interface Filters {
  text: string;
  type: string;
  status: string;
  category: string;
  isNew: boolean;
  sort: Sort;
}
export const sorts = [
  ["name", "Name"],
  ["new", "New first"],
  ["count", "Count"],
  ["value", "Value"],
  ["type", "Type"],
] as const;
export type Sort = (typeof sorts)[number][0];

export function readFilters(values: Readonly<Record<string, string>>): Filters {
  return {
    text: values["q"] ?? "",
    type: values["type"] ?? "",
    status: values["status"] ?? "",
    category: values["category"] ?? "",
    isNew: values["new"] === "1",
    sort: sorts.find(([key]) => key === values["sort"])?.[0] ?? "name",
  };
}

interface Key {
  order: string;
  text: string;
}
// A list of 5,000 is sorted again with each change: what is compared are plain strings, made once for each item.
const keys = new WeakMap<PlayerLoot, Key>();

// Letters without accents and case, numbers by their value.
const orderOf = (text: string) =>
  text
    .normalize("NFD")
    .replace(/\p{M}/gu, "")
    .toLowerCase()
    .replace(/\d+/g, (digits) => digits.padStart(10, "0"));

function keyOf(item: PlayerLoot): Key {
  let key = keys.get(item);
  if (!key) {
    const name = nameOf(item);
    key = { order: orderOf(`${name}\n${item.lootId}`), text: `${name}\n${item.lootId}\n${item.tags}`.toLowerCase() };
    keys.set(item, key);
  }
  return key;
}

const compare = (a: string, b: string) => (a < b ? -1 : a > b ? 1 : 0);
const byName = (a: PlayerLoot, b: PlayerLoot) => compare(keyOf(a).order, keyOf(b).order);
const orders: Record<Sort, (a: PlayerLoot, b: PlayerLoot) => number> = {
  name: byName,
  new: (a, b) => Number(b.isNew) - Number(a.isNew) || byName(a, b),
  count: (a, b) => b.count - a.count || byName(a, b),
  value: (a, b) => b.value - a.value || byName(a, b),
  type: (a, b) => compare(a.type, b.type) || byName(a, b),
};

export function matches(item: PlayerLoot, filters: Filters): boolean {
  return (
    (!filters.type || item.type === filters.type) &&
    (!filters.status || item.redeemableStatus === filters.status) &&
    (!filters.category || item.displayCategories === filters.category) &&
    (!filters.isNew || item.isNew) &&
    (!filters.text || keyOf(item).text.includes(filters.text.toLowerCase()))
  );
}

export function select(items: Iterable<PlayerLoot>, filters: Filters): PlayerLoot[] {
  return [...items].filter((item) => matches(item, filters)).sort(orders[filters.sort]);
}

// The different values of a field with how often each is there, for a list to choose from.
export function countsOf(items: Iterable<PlayerLoot>, field: "type" | "redeemableStatus" | "displayCategories") {
  const counts = new Map<string, number>();
  for (const item of items) counts.set(item[field], (counts.get(item[field]) ?? 0) + 1);
  return [...counts].sort(([a], [b]) => compare(a, b));
}
