// The scenario with 5,000 items under a stream of changes, and what a page shows of it.
import type { Page } from "playwright-core";
import { host } from "./harness";

export interface Seen {
  lootId: string;
  // When the frame after the change began, since 1970.
  milliseconds: number;
}
interface Notes {
  shift: number;
  // What was shifted.
  moved: string[];
  mostTiles: number;
  seen: Seen[];
}
type Watched = Window & { notes: Notes };

export async function startCrowd(): Promise<void> {
  await host.call("POST", "/_host/scenario/collector");
  await host.call("POST", "/_host/idle");
}

// Notes from now on: layout shifts, how many tiles there are, and when a count changes.
export async function watch(page: Page): Promise<void> {
  await page.evaluate(() => {
    const notes: Notes = { shift: 0, moved: [], mostTiles: 0, seen: [] };
    Object.assign(window, { notes });
    type Shift = PerformanceEntry & { value: number; sources: { node?: Node }[] };
    new PerformanceObserver((list) => {
      for (const { value, sources } of list.getEntries() as Shift[]) {
        notes.shift += value;
        notes.moved.push(...sources.map(({ node }) => (node?.parentElement?.outerHTML ?? "").slice(0, 160)));
      }
    }).observe({ type: "layout-shift" });
    const grid = document.querySelector(".grid");
    if (!grid) throw new Error("no grid");
    new MutationObserver((changes) => {
      notes.mostTiles = Math.max(notes.mostTiles, grid.querySelectorAll(".tile").length);
      const tiles = changes
        .filter(({ attributeName }) => attributeName === "aria-label")
        .map(({ target }) => (target as Element).closest("[data-loot-id]")?.getAttribute("data-loot-id") ?? "");
      requestAnimationFrame(() => notes.seen.push(...tiles.map((lootId) => ({ lootId, milliseconds: Date.now() }))));
    }).observe(grid, { subtree: true, childList: true, attributes: true, attributeFilter: ["aria-label"] });
  });
}

export const notesOf = (page: Page) => page.evaluate(() => (window as unknown as Watched).notes);

// The items whose tiles are in view.
export const inView = (page: Page) =>
  page.evaluate(() => {
    const fits = (tile: Element) => tile.getBoundingClientRect().bottom < innerHeight;
    return [...document.querySelectorAll(".tile")].filter(fits).map((tile) => tile.getAttribute("data-loot-id") ?? "");
  });

// One more of each, retrieved at once.
export async function addOneOfEach(items: readonly Item[]): Promise<void> {
  for (const { lootName, refId } of items) await host.call("POST", "/_host/inventory", { lootName, refId, delta: 1 });
  await host.call("POST", "/tav-loot/v1/refresh?force=true");
}
export interface Item {
  lootId: string;
  lootName: string;
  refId: string;
  count: number;
}

export async function itemsOf(lootIds: readonly string[]): Promise<Item[]> {
  const all = (await host.call("GET", "/tav-loot/v1/player-loot")) as Item[];
  return lootIds.flatMap((lootId) => all.find((item) => item.lootId === lootId) ?? []);
}
