// What each operation of the document is called with, against the sample world. An operation that is not
// named here is called without anything. `first` ones come before all others. `status`: what it returns instead of
// what the document describes.
const json = (body) => ({ body: JSON.stringify(body), type: "application/json" });

export const first = ["ChooseScenario", "SaveSnapshot", "GetSnapshot", "RestoreSnapshot", "RemoveSnapshot", "ImportWorld", "Reset",
  "SignIn", "AwaitIdle", "PushMessage", "GetInitialItemRecipes", "GetContextMenu"];

export const samples = {
  GetPlayerLootById: { path: { lootId: "CHAMPION_RENTAL_13" } },
  SetNewPlayerCheckDone: { path: { newValue: "true" } },
  GetInitialItemRecipes: { path: { lootId: "CHEST_lantern" } },
  PostInitialItemRecipes: { path: { lootId: "MATERIAL_key_fragment" } },
  CraftRecipe: { path: { recipeName: "CHEST_lantern_OPEN" }, query: { repeat: 1 }, ...json(["CHEST_lantern"]) },
  RedeemPlayerLoot: { path: { lootName: "CHAMPION_RENTAL_13" } },
  DismissLootGrant: { path: { id: "0" } },
  GetContextMenu: { path: { lootId: "CHEST_lantern" } },
  PostContextMenu: { path: { lootId: "SKIN_RENTAL_11001" } },
  DismissNewNotification: { path: { lootId: "CURRENCY_cosmetic" } },
  AcknowledgePlayerLootNotification: { path: { id: "CHEST_new_player" } },
  GetConsoleFile: { path: { file: "icon.svg" } },
  GetHelp: { query: { format: "Full" } },
  AwaitIdle: { query: { timeoutMilliseconds: 20000 } },
  GetTimeline: { query: { after: 0, kind: "request,task,event", limit: 50 } },
  GetTimelineRow: { path: { id: "1" } },
  GetLedger: { query: { refused: "false" } },
  ExplainItem: { path: { lootId: "SKIN_13001" } },
  ExplainRecipe: { path: { recipeName: "CHEST_lantern_OPEN" }, query: { items: "CHEST_lantern,CHEST_none" } },
  ChooseScenario: { path: { name: "sample" } },
  SaveSnapshot: { path: { name: "aside" } },
  GetSnapshot: { path: { name: "aside" } },
  RestoreSnapshot: { path: { name: "aside" } },
  RemoveSnapshot: { path: { name: "aside" } },
  ExportWorld: { query: { format: "yaml" } },
  ImportWorld: { body: "{extends: sample, name: Another Bay}", type: "application/yaml" },
  WithholdCollections: json({ withheld: false }),
  SetClock: json({ mode: "frozen", now: "2030-01-01T12:00:00Z" }),
  AdvanceClock: json({ milliseconds: 1000 }),
  SetSummoner: json({ summonerLevel: 30 }),
  SetGameflow: json({ phase: null }),
  SetConfiguration: { path: { name: "PxhEnabled" }, ...json(true) },
  RemoveConfiguration: { path: { name: "PxhEnabled" } },
  SetOwnership: { path: { collection: "skins", id: "11001" }, ...json({ owned: true }) },
  ChangeInventory: json({ lootName: "CHEST_lantern", delta: 1 }),
  ChangeDefinition: { path: { lootName: "SKIN_RENTAL_11001" }, ...json({ value: 750 }) },
  ChangeRecipe: { path: { recipeName: "CHEST_lantern_OPEN" }, ...json({ crafterName: "bench" }) },
  PushMessage: json({ name: "mastery chest" }),
  SetLoginPacket: json({ simpleMessages: [{ msgId: "m1", params: ["{}"] }] }),
  SetToken: json({ token: null }),
  SetFaults: json({ rules: [{ service: "redeem*", delay: { from: 0, to: 1 } }, { published: "*", action: "delay", delay: 1, times: 1 }] }),
  EndHeldCall: { path: { id: "1" }, status: 404, ...json({ action: "release" }) },
  PrepareNextResult: json({ recipe: "CHEST_lantern_OPEN", added: [{ lootName: "MATERIAL_key" }] }),
  GetOdds: { path: { recipe: "CHEST_lantern_OPEN" }, query: { trials: 100 } },
  OverrideService: { path: { method: "redeemPlayerLoot" }, ...json({ latency: 1 }) },
  ResetService: { path: { method: "redeemPlayerLoot" } },
};

// Requests that fail: the status each returns.
const craft = { method: "POST", path: "/tav-loot/v1/recipes/NOTHING_known/craft" };
export const refusals = [
  { status: 404, method: "GET", path: "/tav-loot/v1/player-loot/CHEST_unknown" },
  { status: 400, method: "DELETE", path: "/tav-loot/v1/loot-grants/many" },
  { status: 404, method: "GET", path: "/tav-loot/v1/nothing-here" },
  { status: 400, method: "GET", path: "/_host/help?format=Papyrus" },
  { status: 405, method: "POST", path: "/_host/openapi.json" },
  { status: 404, method: "GET", path: "/_host/timeline/99999999" },
  { status: 400, method: "GET", path: "/_host/timeline?kind=rumour" },
  { status: 400, method: "GET", path: "/_host/ledger?refused=maybe" },
  { status: 404, method: "PUT", path: "/_host/collections/hats/1" },
  { status: 404, method: "POST", path: "/_host/scenario/nowhere" },
  { status: 400, method: "PUT", path: "/_host/import", type: "application/yaml", body: "name: [" },
  { status: 409, method: "POST", path: "/_host/clock/advance", type: "application/json", body: '{"milliseconds":1}' },
  { status: 400, ...craft, type: "text/plain", body: "CHEST_lantern" },
  // Each body is read; it is the platform that does not know the recipe.
  { status: 500, ...craft, type: "application/json", body: '["CHEST_lantern"]' },
  { status: 500, ...craft, type: "application/vnd.api+json", body: '["CHEST_lantern"]' },
  { status: 500, ...craft, type: "application/x-yaml", body: "- CHEST_lantern" },
  { status: 500, ...craft, type: "application/x-msgpack", body: Buffer.from("\x91\xadCHEST_lantern", "latin1") },
];
