// All about one item: what it is, what can be done with it, and what came of that.
import { useEffect, useRef } from "preact/hooks";
import { call } from "../../api/client";
import { asCurl } from "../../api/snippets";
import type { PlayerLoot, Recipe } from "../../api/types";
import { change, route } from "../../route";
import { inventoryVersion, items, loadState } from "../../state/inventory";
import { recipesTakingLater } from "../../state/recipes";
import { controls } from "../../state/stream";
import { useAction } from "../../ui/action";
import { Badge, Button, CopyButton, Segmented } from "../../ui/controls";
import { Json } from "../../ui/json";
import { useFetched } from "../../ui/fetched";
import { useWatched } from "../../ui/watched";
import { nameOf } from "../../state/names";
import { MenuList } from "./menu_list";
import { OutcomeCard } from "./outcome_card";
import { Picture } from "./picture";
import { RecipeCard } from "./recipe_card";
import { RedeemableBadge } from "./status";
import { WhyTab } from "./why_tab";

const tabs = [
  ["actions", "Actions"],
  ["why", "Why?"],
  ["raw", "Raw JSON"],
] as const;

function Head({ item, lootId, name }: { item: PlayerLoot | undefined; lootId: string; name: string }) {
  const seen = useAction(() => call("delete", "/tav-loot/v1/player-loot/{lootId}/new-notification", { path: { lootId } }));
  return (
    <header class="panel-head">
      {item && <Picture item={item} />}
      <div class="panel-title">
        <h2>{name}</h2>
        <p class="id">
          {lootId}
          <CopyButton text={() => lootId} label="Copy the loot id" />
        </p>
        <p class="badges">
          {item ? (
            <>
              <Badge kind="strong">{item.count.toLocaleString("en")} held</Badge>
              <RedeemableBadge item={item} />
              <Badge>{item.rarity}</Badge>
              {item.isNew && (
                <button type="button" class="badge new" disabled={seen.isRunning} onClick={() => void seen.run()}>
                  New · mark as seen
                </button>
              )}
            </>
          ) : (
            <Badge kind="warn">Not held</Badge>
          )}
        </p>
      </div>
      <Button icon="close" kind="plain" label="Close the item" onClick={() => change({ item: "", tab: "" }, "push")} />
    </header>
  );
}

function Facts({ item }: { item: PlayerLoot }) {
  const facts: [string, string | number][] = [
    ["Type", item.type],
    ["Category", item.displayCategories],
    ["Value", item.value],
    ["Item status", item.itemStatus],
    ["Parent status", item.parentItemStatus],
    ["Disenchants to", item.disenchantValue ? `${item.disenchantValue} ${item.disenchantLootName}` : ""],
    ["Upgrade costs", item.upgradeEssenceValue ? `${item.upgradeEssenceValue} ${item.upgradeEssenceName}` : ""],
    ["Rental", item.rentalSeconds ? `${item.rentalSeconds / 86400} days` : item.rentalGames ? `${item.rentalGames} games` : ""],
    ["Expires", item.expiryTime > 0 ? new Date(item.expiryTime).toISOString() : ""],
    ["Tags", item.tags],
  ];
  return (
    <dl class="facts">
      {facts
        .filter(([, value]) => value !== "" && value !== 0)
        .map(([name, value]) => (
          <div key={name}>
            <dt>{name}</dt>
            <dd>{value}</dd>
          </div>
        ))}
    </dl>
  );
}

// The recipes that take the item, those that begin with it first. As long as the inventory is waited for, none is asked for.
function useRecipes(lootId: string, lootName: string): Recipe[] | undefined {
  const beginning = useWatched(`/tav-loot/v1/recipes/initial-item/${encodeURIComponent(lootId)}`, () =>
    call("get", "/tav-loot/v1/recipes/initial-item/{lootId}", { path: { lootId } }),
  );
  const isWaiting = loadState.value === "waiting";
  const later = useFetched(
    async () => (isWaiting ? [] : recipesTakingLater(lootName, lootId)),
    `${isWaiting} ${lootName} ${controls.value}`,
  );
  return beginning && [...beginning, ...(later.value ?? [])];
}

function Actions({ item, lootId, lootName }: { item: PlayerLoot | undefined; lootId: string; lootName: string }) {
  const path = { lootId };
  const id = encodeURIComponent(lootId);
  const menu = useWatched(`/tav-loot/v1/player-loot/${id}/context-menu`, () =>
    call("get", "/tav-loot/v1/player-loot/{lootId}/context-menu", { path }),
  );
  const recipes = useRecipes(lootId, lootName);
  const list = useRef<HTMLDivElement>(null);
  const showRecipe = (name: string) => {
    const card = list.current?.querySelector(`[data-recipe="${CSS.escape(name)}"]`);
    card?.scrollIntoView({ block: "nearest", behavior: "smooth" });
    card?.querySelector<HTMLElement>(".recipe-actions button")?.focus({ preventScroll: true });
  };
  return (
    <div ref={list}>
      {item?.localizedDescription && <p>{item.localizedDescription}</p>}
      {item && <Facts item={item} />}
      <h3>Context menu</h3>
      {menu && <MenuList menu={menu} lootId={lootId} lootName={lootName} onRecipe={showRecipe} />}
      <h3>Recipes that take it</h3>
      {recipes?.length === 0 && <p class="quiet">No recipe takes it.</p>}
      {recipes?.map((recipe) => (
        <div key={recipe.recipeName} data-recipe={recipe.recipeName}>
          <RecipeCard recipe={recipe} lootId={lootId} />
        </div>
      ))}
    </div>
  );
}

export function ItemPanel({ lootId }: { lootId: string }) {
  void inventoryVersion.value;
  const held = items.get(lootId);
  const lastHeld = useRef(held);
  if (held) lastHeld.current = held;
  const tab = tabs.find(([key]) => key === route.value.values["tab"])?.[0] ?? "actions";
  useEffect(() => {
    const onKeyDown = (event: KeyboardEvent) => {
      if (event.key === "Escape") change({ item: "", tab: "" }, "push");
    };
    addEventListener("keydown", onKeyDown);
    return () => removeEventListener("keydown", onKeyDown);
  }, []);
  const item = held ?? lastHeld.current;
  const name = item ? nameOf(item) : lootId;
  const target = `/tav-loot/v1/player-loot/${encodeURIComponent(lootId)}`;
  return (
    <aside class="panel" aria-label={`Item ${name}`}>
      <Head item={held} lootId={lootId} name={name} />
      <Segmented label="Part" options={tabs} value={tab} onChange={(next) => change({ tab: next })} />
      <div class="panel-body" tabIndex={0} role="group" aria-label="Details">
        <OutcomeCard lootId={lootId} />
        {tab === "actions" && <Actions item={held} lootId={lootId} lootName={item?.lootName ?? lootId} />}
        {tab === "why" && <WhyTab lootId={lootId} />}
        {tab === "raw" && (
          <>
            <Json value={held ?? null} label="the item" />
            <CopyButton text={() => asCurl("GET", target)} label="Copy the item's request as curl">
              curl
            </CopyButton>
          </>
        )}
      </div>
    </aside>
  );
}
