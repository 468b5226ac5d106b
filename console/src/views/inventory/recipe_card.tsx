// One recipe that takes the item: what goes in, what is missing, and the button that crafts.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import type { Recipe } from "../../api/types";
import { craft, mostWaiting, waiting } from "../../state/crafts";
import { inventoryVersion, items } from "../../state/inventory";
import { lootText } from "../../state/names";
import { Badge, Button, Select } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { NumberInput, useNumber } from "../../ui/number";
import { NextResult } from "./next_result";
import { fillSlots, offered, type FilledSlot, type Preferences } from "./slots";

function SlotRow({ slot, tags, onChoose }: { slot: FilledSlot; tags: string; onChoose: (id: string) => void }) {
  const id = slot.chosen;
  const option = (choice: string) => [choice, `${lootText(choice)} (${items.get(choice)?.count ?? 0})`] as const;
  return (
    <li class="slot">
      <span class="slot-quantity">{slot.quantity}×</span>
      {id === undefined ? (
        <span class="slot-name">{lootText(tags)}</span>
      ) : slot.choices.length > 1 ? (
        <Select label={`Item for slot ${slot.slotNumber}`} options={slot.choices.map(option)} value={id} onChange={onChoose} />
      ) : (
        <span class="slot-name">
          {lootText(id)} <span class="quiet">({items.get(id)?.count ?? 0} held)</span>
        </span>
      )}
      {slot.missing > 0 && <Badge kind="warn">{slot.missing} missing</Badge>}
    </li>
  );
}

function Outputs({ recipe }: { recipe: Recipe }) {
  if (recipe.outputs.length === 0) return null;
  const text = recipe.outputs.map((output) => `${output.quantity} ${lootText(output.lootName)}`).join(", ");
  return <p class="recipe-outputs">Gives from: {text}</p>;
}

// The slots with what goes into them. Which items go together is asked of the plugin.
function useSlots(recipe: Recipe, preferences: Preferences, repeat: number): FilledSlot[] {
  const { recipeName } = recipe;
  const lootIds = offered(recipe, items, preferences).join(",");
  const explanation = useFetched(
    async () => (lootIds ? call("get", "/_host/explain/recipe/{recipeName}", { path: { recipeName }, query: { items: lootIds } }) : undefined),
    `${lootIds} ${inventoryVersion.value}`,
  );
  return fillSlots(recipe, items, preferences, repeat, explanation.value);
}

export function RecipeCard({ recipe, lootId }: { recipe: Recipe; lootId: string }) {
  const chosen = useSignal<Record<number, string>>({});
  const repeat = useNumber(1, { least: 1, most: 1000 });
  const showsChances = useSignal(false);
  const slots = useSlots(recipe, { first: lootId, chosen: chosen.value }, repeat.value ?? 1);
  const isWaiting = waiting.value.some((entry) => entry.title === recipe.recipeName);
  const isFull = waiting.value.length >= mostWaiting;
  const run = () => {
    const given = slots.flatMap((slot) => slot.chosen ?? []);
    void craft(recipe.recipeName, lootId, recipe.recipeName, given, repeat.value ?? 1);
  };
  const isMissing = slots.some((slot) => slot.missing > 0);
  const name = recipe.contextMenuText || recipe.type;
  return (
    <article class="recipe">
      <h4>
        {name} <span class="quiet">{recipe.recipeName}</span>
      </h4>
      {recipe.description && <p>{recipe.description}</p>}
      <ul class="slots">
        {slots.map((slot) => (
          <SlotRow
            key={slot.slotNumber}
            slot={slot}
            tags={recipe.slots.find((each) => each.slotNumber === slot.slotNumber)?.tags ?? ""}
            onChoose={(id) => (chosen.value = { ...chosen.value, [slot.slotNumber]: id })}
          />
        ))}
      </ul>
      <Outputs recipe={recipe} />
      <details onToggle={(event) => (showsChances.value = event.currentTarget.open)}>
        <summary>Odds and next result</summary>
        {showsChances.value && <NextResult recipe={recipe.recipeName} />}
      </details>
      <div class="recipe-actions">
        {repeat.reason && <span class="hint">{repeat.reason}</span>}
        <label class="repeat">
          Times
          <NumberInput number={repeat} />
        </label>
        <Button
          kind={isMissing ? "normal" : "main"}
          icon="bolt"
          isRunning={isWaiting}
          disabled={isFull || repeat.value === undefined}
          label={`${name}: craft ${recipe.recipeName}`}
          title={repeat.reason || (isFull ? "Three calls wait already: release one first" : isMissing ? "The platform will refuse this" : undefined)}
          onClick={run}
        >
          {isMissing ? "Craft anyway" : "Craft"}
        </Button>
      </div>
    </article>
  );
}
