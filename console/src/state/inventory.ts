// The items as the plugin publishes them: read once, then kept by the events of single items. A plugin that has retrieved
// nothing yet would do so for the first who reads, so that an open console would change what happens: it waits until the
// plugin publishes by itself, or until a person asks to see the inventory.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { PlayerLoot, Result } from "../api/types";
import { connections, dataOf, onEvent, type StreamEvent } from "./stream";

const itemPath = "/tav-loot/v1/player-loot/";
// Published with each change of the inventory.
export const mapPath = "/tav-loot/v2/player-loot-map";

type ItemMap = Result<typeof mapPath, "get">;
export type LoadState = "waiting" | "loading" | "loaded" | "failed";
export const loadState = signal<LoadState>("waiting");
export const loadFailure = signal("");
// Grows with each change that is to be drawn.
export const inventoryVersion = signal(0);
// The version of the last published map.
export const publishedVersion = signal(0);

export const items = new Map<string, PlayerLoot>();
// When an item last changed by an event, by performance.now().
export const changedAt = new Map<string, number>();

let isDrawing = false;
function draw(): void {
  if (isDrawing) return;
  isDrawing = true;
  const flush = () => {
    isDrawing = false;
    inventoryVersion.value++;
  };
  if (document.hidden) setTimeout(flush, 50); // no frame would come
  else requestAnimationFrame(flush);
}

interface Batch {
  version: number;
  changes: StreamEvent[];
}
// What came while the whole inventory was being read, in batches that end with the map's version.
let waiting: Batch[] | undefined;

// The id in "/tav-loot/v1/player-loot/{lootId}"; nothing for a menu below it.
export function itemIdOf(uri: string): string | undefined {
  if (!uri.startsWith(itemPath)) return undefined;
  const rest = uri.slice(itemPath.length);
  return rest.includes("/") ? undefined : decodeURIComponent(rest);
}

function apply(event: StreamEvent): void {
  if (event.kind !== "resource") return;
  const id = itemIdOf(event.uri);
  if (id === undefined) return;
  if (event.type === "Delete") items.delete(id);
  else items.set(id, dataOf(event) as PlayerLoot);
  changedAt.set(id, performance.now());
  draw();
}

function onResource(event: StreamEvent & { kind: "resource" }): void {
  const version = event.uri === mapPath ? Number(/"version":(\d+)/.exec(event.text.slice(0, 200))?.[1] ?? 0) : 0;
  if (version) publishedVersion.value = version;
  if (version && (loadState.value === "failed" || loadState.value === "waiting")) return take(dataOf(event) as ItemMap);
  if (!waiting) return apply(event);
  waiting.at(-1)?.changes.push(event);
  if (!version) return;
  const last = waiting.at(-1);
  if (last) last.version = version;
  waiting.push({ version: Infinity, changes: [] });
}

let loads = 0;
// A person has opened the page, or asked for another world.
let isWanted = true;

export function wantInventory(): void {
  isWanted = true;
}

function take(map: ItemMap): void {
  ++loads;
  isWanted = false;
  waiting = undefined;
  items.clear();
  for (const [id, item] of Object.entries(map.playerLoot)) items.set(id, item);
  publishedVersion.value = Math.max(map.version, 0);
  loadState.value = "loaded";
  draw();
}

// Reads all items. The latest call counts.
export async function load(): Promise<void> {
  const mine = ++loads;
  isWanted = false;
  waiting = [{ version: Infinity, changes: [] }];
  if (loadState.value !== "loaded") loadState.value = "loading";
  try {
    const map = await call("get", mapPath);
    if (mine !== loads) return;
    const late = waiting.filter((batch) => batch.version > map.version);
    take(map);
    for (const batch of late) batch.changes.forEach(apply);
  } catch (failure) {
    if (mine !== loads) return;
    waiting = undefined;
    loadState.value = "failed";
    loadFailure.value = (failure as Error).message;
    draw();
  }
}

function forget(): void {
  items.clear();
  changedAt.clear();
  loadState.value = "waiting";
  draw();
}

// Once the plugin has done what it does by itself; not when that waits for a held call or a frozen clock.
const isIdle = () =>
  call("post", "/_host/idle", { query: { timeoutMilliseconds: 5000 } }).then(
    () => true,
    () => false,
  );

// Reads what the plugin holds. When it holds nothing, only what a person wants is read.
export async function loadHeld(): Promise<void> {
  const mine = ++loads;
  waiting = undefined;
  loadState.value = "waiting";
  // An older plugin explains nothing: it is read.
  const retrieval = await call("get", "/_host/explain/retrieval").catch(() => undefined);
  if (mine !== loads) return;
  if (retrieval?.isPending) {
    forget();
    if (!isWanted || !(await isIdle()) || mine !== loads) return;
  }
  await load();
}

export function startInventory(): void {
  onEvent((event) => {
    if (event.kind === "resource") return onResource(event);
    if (event.kind === "reset") forget();
    void loadHeld();
  });
  connections.subscribe((count) => void (count > 0 && loadHeld()));
}
