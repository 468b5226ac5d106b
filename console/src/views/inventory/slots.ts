// What a recipe takes, and which held items go into its slots.
import type { PlayerLoot, Recipe } from "../../api/types";

type Held = ReadonlyMap<string, Pick<PlayerLoot, "count">>;
export interface FilledSlot {
  slotNumber: number;
  quantity: number;
  choices: string[];
  chosen: string | undefined;
  missing: number;
}

// Fills each slot: with what was chosen, else with `first` where it fits, else with what is held most.
export function fillSlots(recipe: Recipe, held: Held, first: string, chosen: Record<number, string>, repeat: number): FilledSlot[] {
  const used = new Map<string, number>();
  const left = (id: string) => (held.get(id)?.count ?? 0) - (used.get(id) ?? 0);
  return recipe.slots.map((slot) => {
    const choices = slot.lootIds.filter((id) => held.has(id));
    const needed = slot.quantity * repeat;
    const byCount = [...choices].sort((a, b) => left(b) - left(a));
    const wanted = chosen[slot.slotNumber];
    const isFirstFree = choices.includes(first) && !used.has(first);
    const pick = wanted !== undefined && choices.includes(wanted) ? wanted : isFirstFree ? first : byCount[0];
    const missing = Math.max(0, needed - (pick === undefined ? 0 : left(pick)));
    if (pick !== undefined) used.set(pick, (used.get(pick) ?? 0) + needed);
    return { slotNumber: slot.slotNumber, quantity: needed, choices, chosen: pick, missing };
  });
}
