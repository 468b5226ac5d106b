// Names of loot, for people.
import type { PlayerLoot } from "../api/types";
import { items } from "./inventory";

// What is issued for a champion is described by the champion's name, as its shard is: its own name distinguishes them.
export function nameOf(item: PlayerLoot): string {
  if (item.refId) return item.localizedName || (item.itemDesc ? `${item.lootName}: ${item.itemDesc}` : item.lootName);
  return item.itemDesc || item.localizedName || item.lootName;
}

// The name of a loot id or loot name where it is known, else itself.
export function lootText(id: string): string {
  const item = items.get(id);
  return item ? nameOf(item) : id;
}
