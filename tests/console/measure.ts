// Measures the console with 5,000 items: script/check-console --measure. Prints each value beside its limit; nothing fails by
// it, because the machine may have other work.
import { test } from "node:test";
import type { BrowserContext, Page } from "playwright-core";
import { addOneOfEach, inView, itemsOf, notesOf, startCrowd, watch, type Item, type Seen } from "./crowd";
import { Host, host, onPage, reset, startBrowser } from "./harness";

const seconds = 8;
const retrievalsInSecond = 2;
const changesInRetrieval = 25;

const lines: string[][] = [["", "measured", "limit"]];
const add = (name: string, measured: string, limit = "") => lines.push([name, measured, limit]);
const milliseconds = (value: number) => `${value.toFixed(0)} ms`;

function addSpread(name: string, values: readonly number[], limit: string): void {
  const sorted = [...values].sort((a, b) => a - b);
  const at = (share: number) => milliseconds(sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * share))] ?? NaN);
  add(`${name}, median of ${sorted.length}`, at(0.5), limit);
  add(`${name}, 95 %`, at(0.95), limit);
  add(`${name}, longest`, at(1), limit);
}

// The time between frames while `work` goes on, in the page.
async function frames(page: Page, work: () => Promise<void>): Promise<number[]> {
  await page.evaluate(() => {
    const found: number[] = [];
    const shared = window as unknown as { found: number[]; stop: boolean };
    Object.assign(shared, { found, stop: false });
    let last = performance.now();
    const next = (now: number) => {
      found.push(now - last);
      last = now;
      if (!shared.stop) requestAnimationFrame(next);
    };
    requestAnimationFrame(next);
  });
  await work();
  return await page.evaluate(() => {
    const shared = window as unknown as { found: number[]; stop: boolean };
    shared.stop = true;
    return shared.found.slice(1);
  });
}

const pause = (length: number) => new Promise<void>((done) => setTimeout(done, length));

// When a page drew its first tile, since it began to load.
async function firstGrid(context: BrowserContext, address: string): Promise<number> {
  const other = await context.newPage();
  await other.addInitScript(() => {
    new MutationObserver((_, observer) => {
      if (!document.querySelector(".tile")) return;
      observer.disconnect();
      requestAnimationFrame(() => Object.assign(window, { firstTile: performance.now() }));
    }).observe(document, { childList: true, subtree: true });
  });
  await other.goto(address);
  const found = await other.waitForFunction(() => (window as unknown as { firstTile?: number }).firstTile);
  const first = (await found.jsonValue()) ?? NaN;
  await other.close();
  return first;
}

// With a host and a browser that have just started, so that the page makes the plugin retrieve the inventory.
async function firstGridAfterStart(): Promise<number> {
  const started = new Host();
  const browser = await startBrowser();
  try {
    await started.start("--scenario", "collector");
    return await firstGrid(await browser.newContext(), started.url);
  } finally {
    await browser.close();
    await started.stop();
  }
}

// Changes of the platform's inventory, retrieved at an even pace; returns how many events a second that makes.
async function change(items: readonly Item[]): Promise<number> {
  const last = async () => ((await host.call("GET", "/_host/health")) as { events: { last: number } }).events.last;
  const before = await last();
  const start = performance.now();
  let retrievals = 0;
  while (performance.now() - start < seconds * 1000) {
    await addOneOfEach(items);
    await pause(Math.max(0, start + (++retrievals * 1000) / retrievalsInSecond - performance.now()));
  }
  await host.call("POST", "/_host/idle");
  return ((await last()) - before) / ((performance.now() - start) / 1000);
}

// From each event until its item's tile had changed.
async function delays(seen: readonly Seen[]): Promise<number[]> {
  const query = "/_host/timeline?kind=event&limit=1000&path=/tav-loot/v1/player-loot/";
  const { rows } = (await host.call("GET", query)) as { rows: { name: string; time: number }[] };
  return seen.flatMap(({ lootId, milliseconds: shown }) => {
    const published = rows.findLast(({ name, time }) => name.endsWith(`/${lootId}`) && time <= shown + 1);
    return published ? shown - published.time : [];
  });
}

test("the scenario with 5,000 items", startCrowd);
onPage("measure", "#/inventory", async (page) => {
  await page.locator(".tile").first().waitFor();
  for (const time of ["first", "second", "third"]) add(`first grid, ${time} page`, milliseconds(await firstGrid(page.context(), page.url())), "1000 ms");
  for (const time of ["first", "second", "third"]) add(`first grid, ${time} start`, milliseconds(await firstGridAfterStart()), "1000 ms");
  await pause(1000);
  addSpread("frames at rest", await frames(page, () => pause(3000)), "");
  const items = await itemsOf((await inView(page)).slice(0, changesInRetrieval));
  await watch(page);
  let rate = 0;
  const busy = await frames(page, async () => void (rate = await change(items)));
  add("events in a second", rate.toFixed(0), `at least ${retrievalsInSecond * changesInRetrieval}`);
  addSpread("frames meanwhile", busy, "");
  const { shift, moved, mostTiles, seen } = await notesOf(page);
  addSpread("from event to screen", await delays(seen), "100 ms");
  add("layout shift", shift.toFixed(6), "0");
  add("tiles in the page", String(mostTiles));
  for (const text of new Set(moved)) add(`shifted: ${text}`, "");
  for (const [name = "", ...values] of lines) console.log(name.padEnd(40) + values.map((text) => text.padStart(14)).join(""));
});
test("the sample again", async () => {
  await host.call("POST", "/_host/scenario/sample");
  await reset();
});
