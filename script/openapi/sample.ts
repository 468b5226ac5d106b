// A front end's code against the types made from the API document. It is compiled, never run: it stops
// compiling when an endpoint, an argument or a field that it relies on goes away or changes its type.
import type { components, paths } from "./loot-api";

type Schemas = components["schemas"];
type PlayerLoot = Schemas["PlayerLoot"];

type Method = "get" | "put" | "post" | "delete";
type Operation<P extends keyof paths, M extends Method> = NonNullable<paths[P][M]>;
type Content<R> = R extends { content: { "application/json": infer Body } } ? Body : undefined;
// What a call returns: the body of its 200, or nothing with 204.
type Result<P extends keyof paths, M extends Method> =
  Operation<P, M> extends { responses: { 200: infer R } } ? Content<R>
  : Operation<P, M> extends { responses: { 204: unknown } } ? undefined
  : never;
// What a call is given besides the body.
type Given<P extends keyof paths, M extends Method> =
  Operation<P, M> extends { parameters: infer G } ? Pick<G, Extract<keyof G, "path" | "query">> : never;
type Body<P extends keyof paths, M extends Method> =
  Operation<P, M> extends { requestBody: infer R } ? Content<R> : undefined;

class ApiFailure extends Error {
  constructor(readonly problem: Schemas["Problem"]) {
    super(`${problem.status} ${problem.title}: ${problem.detail}`);
  }
}

async function call<P extends keyof paths, M extends Method>(
  method: M,
  path: P,
  given: Given<P, M>,
  body?: Body<P, M>,
): Promise<Result<P, M>> {
  const values = given as { path?: Record<string, unknown>; query?: Record<string, unknown> };
  const query = new URLSearchParams();
  for (const [name, value] of Object.entries(values.query ?? {})) query.set(name, String(value));
  const target = path.replace(/{(\w+)}/g, (_, name) => encodeURIComponent(String(values.path?.[name])));
  const response = await fetch(`${target}?${query}`, {
    method: method.toUpperCase(),
    headers: { "Content-Type": "application/json" },
    body: body === undefined ? null : JSON.stringify(body),
  });
  if (!response.ok) throw new ApiFailure((await response.json()) as Schemas["Problem"]);
  return (response.status === 204 ? undefined : await response.json()) as Result<P, M>;
}

// Every endpoint of the plugin, with exactly the result it has.
type Same<A, B> = (<T>() => T extends A ? 1 : 2) extends <T>() => T extends B ? 1 : 2 ? true : never;
type Rows = [
  Same<Result<"/tav-loot/v1/refresh", "post">, string>,
  Same<Result<"/tav-loot/v1/enabled", "get">, boolean>,
  Same<Result<"/tav-loot/v1/ready", "get">, boolean>,
  Same<Result<"/tav-loot/v1/player-loot", "get">, PlayerLoot[]>,
  Same<Result<"/tav-loot/v1/player-loot-map", "get">, { [lootId: string]: PlayerLoot }>,
  Same<Result<"/tav-loot/v2/player-loot-map", "get">, Schemas["PlayerLootMap"]>,
  Same<Result<"/tav-loot/v1/player-loot/{lootId}", "get">, PlayerLoot>,
  Same<Result<"/tav-loot/v1/player-display-categories", "get">, string[]>,
  Same<Result<"/tav-loot/v1/new-player-check-done", "get">, boolean>,
  Same<Result<"/tav-loot/v1/new-player-check-done/{newValue}", "post">, string>,
  Same<Result<"/tav-loot/v1/recipes/configuration", "get">, Schemas["RecipeMenuConfig"]>,
  Same<Result<"/tav-loot/v1/currency-configuration", "get">, Schemas["CurrencyConfiguration"]>,
  Same<Result<"/tav-loot/v1/recipes/initial-item/{lootId}", "get">, Schemas["Recipe"][]>,
  Same<Result<"/tav-loot/v1/recipes/initial-item/{lootId}", "post">, Schemas["Recipe"][]>,
  Same<Result<"/tav-loot/v1/recipes/{recipeName}/craft", "post">, Schemas["PlayerLootUpdate"]>,
  Same<Result<"/tav-loot/v1/player-loot/{lootName}/redeem", "post">, Schemas["PlayerLootUpdate"]>,
  Same<Result<"/tav-loot/v1/loot-grants", "get">, Schemas["LootGrantNotification"][]>,
  Same<Result<"/tav-loot/v1/loot-grants/{id}", "delete">, undefined>,
  Same<Result<"/tav-loot/v1/player-loot/{lootId}/context-menu", "get">, Schemas["ContextMenu"][]>,
  Same<Result<"/tav-loot/v1/player-loot/{lootId}/context-menu", "post">, Schemas["ContextMenu"][]>,
  Same<Result<"/tav-loot/v1/player-loot/{lootId}/new-notification", "delete">, undefined>,
  Same<Result<"/tav-loot/v1/loot-items", "get">, Schemas["LootItem"][]>,
  Same<Result<"/tav-loot/v1/player-loot-notifications", "get">, Schemas["PlayerLootNotification"][]>,
  Same<Result<"/tav-loot/v1/player-loot-notifications/{id}/acknowledge", "post">, string>,
];
export const rows: Rows = [
  true, true, true, true, true, true, true, true, true, true, true, true,
  true, true, true, true, true, true, true, true, true, true, true, true,
];

// Every field of an item, for a preview of the inventory page.
export const previewItem: PlayerLoot = {
  lootName: "CHEST_lantern", lootId: "CHEST_lantern", refId: "", localizedName: "", localizedDescription: "",
  itemDesc: "Lantern Chest", displayCategories: "CHEST", rarity: "DEFAULT", tags: "", type: "CHEST", asset: "",
  tilePath: "", splashPath: "", shadowPath: "", upgradeLootName: "", upgradeEssenceName: "",
  disenchantLootName: "", itemStatus: "NONE", parentItemStatus: "OWNED", redeemableStatus: "NOT_REDEEMABLE",
  count: 2, rentalGames: 0, storeItemId: 0, parentStoreItemId: 0, value: 0, upgradeEssenceValue: 0,
  disenchantValue: 0, expiryTime: -1, rentalSeconds: 0, isNew: true, isRental: false,
};

// The inventory page: items by category, the newest first.
export async function loadShelves(): Promise<Map<string, PlayerLoot[]>> {
  const { version, playerLoot } = await call("get", "/tav-loot/v2/player-loot-map", {});
  console.info(`inventory ${version}`);
  const shelves = new Map<string, PlayerLoot[]>();
  for (const item of Object.values(playerLoot)) {
    const shelf = shelves.get(item.displayCategories) ?? [];
    shelves.set(item.displayCategories, item.isNew ? [item, ...shelf] : [...shelf, item]);
  }
  return shelves;
}

// The open button: runs a recipe and reports what came of it.
export async function openChest(recipeName: string, lootId: string, repeat: number): Promise<string[]> {
  try {
    const given = { path: { recipeName }, query: { repeat } };
    const update = await call("post", "/tav-loot/v1/recipes/{recipeName}/craft", given, [lootId]);
    return update.added.map(({ deltaCount, playerLoot }) => `${deltaCount} ${playerLoot.itemDesc}`);
  } catch (failure) {
    if (failure instanceof ApiFailure && failure.problem.status === 500) return [failure.problem.detail];
    throw failure;
  }
}

// What can be redeemed at once; the enumerations are unions of their names.
export function isRedeemable(item: PlayerLoot): boolean {
  const status: Schemas["RedeemableStatus"] = item.redeemableStatus;
  return status === "REDEEMABLE" || status === "REDEEMABLE_RENTAL";
}

// What the plugin publishes, by the paths of the document: "{lootId}" in one stands for any text in `uri`.
type Filled<P extends string> = P extends `${infer Before}{${string}}${infer After}`
  ? `${Before}${string}${Filled<After>}`
  : P;
type ReadPath<P extends keyof paths> = P extends `/tav-loot/${string}` ? (paths[P]["get"] extends object ? P : never) : never;
type Events = {
  [P in keyof paths as ReadPath<P>]:
    | { uri: Filled<P>; eventType: "Create" | "Update"; data: Result<P, "get"> }
    | { uri: Filled<P>; eventType: "Delete" };
};
type LootEvent = Events[keyof Events];
type ItemEvent = Events["/tav-loot/v1/player-loot/{lootId}"];

// The document's own schemas say the same.
type Change = Schemas["GetEnabledChangeEvent"];
type Deletion = Schemas["GetEnabledDeletionEvent"];
export const sameEvents: [
  Same<Pick<Events["/tav-loot/v1/enabled"], "uri" | "eventType">, Pick<Change | Deletion, "uri" | "eventType">>,
  Same<Extract<Schemas["GetEnabledEvent"], { data: unknown }>, Change>,
] = [true, true];

// An item's path, and not one below it.
const isItemEvent = (event: LootEvent): event is ItemEvent => /^\/tav-loot\/v1\/player-loot\/[^/]+$/.test(event.uri);

// The live page: `uri` and `eventType` say what `data` is.
export function follow(
  onEnabled: (enabled: boolean) => void,
  onMap: (map: Schemas["PlayerLootMap"]) => void,
  onItem: (item: PlayerLoot) => void,
) {
  const source = new EventSource("/_host/events");
  source.addEventListener("resource", ({ data }: MessageEvent<Schemas["EventStreamMessage"]["data"]>) => {
    const event = JSON.parse(data) as LootEvent;
    if (event.eventType === "Delete") return;
    if (event.uri === "/tav-loot/v1/enabled") onEnabled(event.data);
    if (event.uri === "/tav-loot/v2/player-loot-map") onMap(event.data);
    if (isItemEvent(event)) onItem(event.data);
  });
  source.addEventListener("gap", ({ data }: MessageEvent<string>) => {
    const gap = JSON.parse(data) as Schemas["GapEvent"];
    console.warn(`lost ${gap.from} to ${gap.to}`);
    void loadShelves();
  });
}
