// Which recipes take an item in a slot other than the first: the plugin lists recipes by what begins them.
import { call } from "../api/client";
import type { Recipe } from "../api/types";
import { connections, controls } from "./stream";

interface WorldRecipes {
  queries: Record<string, string | string[]>;
  recipes: { recipeName: string; slots: { query: string }[] }[];
}
let known: { key: string; world: Promise<WorldRecipes> } | undefined;

// The world's recipes, read again once a control has changed anything: a large world has megabytes.
function worldRecipes(): Promise<WorldRecipes> {
  const key = `${connections.peek()} ${controls.peek()}`;
  if (known?.key === key) return known.world;
  const world = call("get", "/_host/world") as unknown as Promise<WorldRecipes>;
  known = { key, world };
  world.catch(() => (known = undefined));
  return world;
}

// The recipes that take the loot, but not at their beginning.
export async function recipesTakingLater(lootName: string, lootId: string): Promise<Recipe[]> {
  const { recipes, queries } = await worldRecipes();
  const takenBy = ({ query }: { query: string }) => [queries[query] ?? query].flat();
  const takes = (slot: { query: string }) => takenBy(slot).some((loot) => loot === lootName || loot === lootId);
  const later = recipes.filter(({ slots: [first, ...others] }) => first && !takes(first) && others.some(takes));
  const begins = new Set(later.flatMap(({ slots }) => slots.slice(0, 1).flatMap((slot) => takenBy(slot)[0] ?? [])));
  const path = "/tav-loot/v1/recipes/initial-item/{lootId}";
  const lists = await Promise.all([...begins].map((id) => call("get", path, { path: { lootId: id } })));
  const names = new Set(later.map((recipe) => recipe.recipeName));
  const found = new Map(lists.flat().map((recipe) => [recipe.recipeName, recipe]));
  return [...found.values()].filter((recipe) => names.has(recipe.recipeName));
}
