// What a recipe takes, and which held items go into its slots.
import type { PlayerLoot, Recipe, Schemas } from "../../api/types";

type Held = ReadonlyMap<string, Pick<PlayerLoot, "lootId" | "lootName" | "refId" | "count" | "storeItemId">>;
type Slot = Recipe["slots"][number];
export interface FilledSlot {
  slotNumber: number;
  quantity: number;
  choices: string[];
  chosen: string | undefined;
  missing: number;
}

// The held items that the slot takes: it names loot, which may be held for several reference ids.
function choicesOf(slot: Slot, held: Held): string[] {
  const taken = new Set(slot.lootIds);
  return [...held.values()].filter((item) => taken.has(item.lootId) || taken.has(item.lootName)).map((item) => item.lootId);
}

export interface Preferences {
  // The item that the recipe is shown for.
  first: string;
  // What was chosen, by slot.
  chosen: Readonly<Record<number, string>>;
}

// What is preferred for each slot: what was chosen, else the first item in the first slot that takes it.
function preferredOf(recipe: Recipe, choices: string[][], { first, chosen }: Preferences): (string | undefined)[] {
  let isFree = true;
  return recipe.slots.map((slot, index) => {
    const wanted = chosen[slot.slotNumber] ?? (isFree ? first : "");
    if (!choices[index]?.includes(wanted)) return undefined;
    if (wanted === first) isFree = false;
    return wanted;
  });
}

// The items to ask the plugin about: for a slot with a preferred item that one, for others all; none when nothing that the
// recipe takes is issued for a reference id, and so all go together.
export function offered(recipe: Recipe, held: Held, preferences: Preferences): string[] {
  const choices = recipe.slots.map((slot) => choicesOf(slot, held));
  if (!choices.flat().some((id) => held.get(id)?.refId)) return [];
  const preferred = preferredOf(recipe, choices, preferences);
  return [...new Set(choices.flatMap((ids, index) => preferred[index] ?? ids))].sort();
}

// Fills each slot: with what is preferred, else with what goes with the others, preferring what is of the same champion and
// then what is held most.
export function fillSlots(recipe: Recipe, held: Held, preferences: Preferences, repeat: number, known?: Schemas["RecipeExplanation"]): FilledSlot[] {
  const apart = new Set(
    known?.ingredients?.flatMap(({ fits }) => fits.filter((one) => !one.goesWithTheOthers).map((one) => one.lootId)),
  );
  const used = new Map<string, number>();
  const left = (id: string) => (held.get(id)?.count ?? 0) - (used.get(id) ?? 0);
  const isSame = (id: string) => Number(String(held.get(id)?.storeItemId) === known?.refId);
  const choices = recipe.slots.map((slot) => choicesOf(slot, held));
  const preferred = preferredOf(recipe, choices, preferences);
  return recipe.slots.map((slot, index) => {
    const needed = slot.quantity * repeat;
    const going = (choices[index] ?? []).filter((id) => !apart.has(id));
    const enough = (id: string) => Number(left(id) >= needed);
    going.sort((a, b) => enough(b) - enough(a) || isSame(b) - isSame(a) || left(b) - left(a));
    const pick = preferred[index] ?? going[0];
    const missing = Math.max(0, needed - (pick === undefined ? 0 : left(pick)));
    if (pick !== undefined) used.set(pick, (used.get(pick) ?? 0) + needed);
    return { slotNumber: slot.slotNumber, quantity: needed, choices: choices[index] ?? [], chosen: pick, missing };
  });
}
