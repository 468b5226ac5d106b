// What differs between two inventories.
import type { PlayerLoot } from "../../api/types";

type Held = ReadonlyMap<string, PlayerLoot | "unknown">;
export interface Difference {
  lootId: string;
  kind: "came" | "left" | "changed";
  before: PlayerLoot | undefined;
  after: PlayerLoot | undefined;
  members: [name: string, from: string, to: string][];
}

const known = (item: PlayerLoot | "unknown" | undefined) => (item === "unknown" ? undefined : item);

function changedMembers(before: PlayerLoot, after: PlayerLoot): Difference["members"] {
  const names = Object.keys(after) as (keyof PlayerLoot)[];
  return names.filter((name) => before[name] !== after[name]).map((name) => [name, String(before[name]), String(after[name])]);
}

// Items that are not known at one of the two points are left out.
export function differences(before: Held, after: Held): Difference[] {
  const list: Difference[] = [];
  for (const lootId of new Set([...before.keys(), ...after.keys()])) {
    if (before.get(lootId) === "unknown" || after.get(lootId) === "unknown") continue;
    const old = known(before.get(lootId));
    const now = known(after.get(lootId));
    if (!old && now) list.push({ lootId, kind: "came", before: old, after: now, members: [["count", "0", String(now.count)]] });
    else if (old && !now) list.push({ lootId, kind: "left", before: old, after: now, members: [["count", String(old.count), "0"]] });
    else if (old && now) {
      const members = changedMembers(old, now);
      if (members.length > 0) list.push({ lootId, kind: "changed", before: old, after: now, members });
    }
  }
  return list.sort((a, b) => a.lootId.localeCompare(b.lootId));
}
