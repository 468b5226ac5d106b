// Names of loot, for people.
import type { PlayerLoot } from "../api/types";
import { items } from "./inventory";

export const nameOf = (item: PlayerLoot) => item.itemDesc || item.localizedName || item.lootName;

// The name of a loot id or loot name where it is known, else itself.
export function lootText(id: string): string {
  const item = items.get(id);
  return item ? nameOf(item) : id;
}
