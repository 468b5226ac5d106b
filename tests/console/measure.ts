// Measures how smooth the grid of 5,000 items stays under a stream of changes: script/check-console --measure. Prints what a
// frame took while nothing came and while events did; nothing fails by it.
import { test } from "node:test";
import type { Page } from "playwright-core";
import { host, onPage, reset } from "./harness";

const seconds = 8;
const retrievalsInSecond = 2;
const changesInRetrieval = 25;

interface Frames {
  milliseconds: number[];
}

// The time between frames while `work` goes on, in the page.
async function frames(page: Page, work: () => Promise<void>): Promise<Frames> {
  await page.evaluate(() => {
    const found: Frames = { milliseconds: [] };
    const shared = window as unknown as { found: Frames; stop: boolean };
    Object.assign(shared, { found, stop: false });
    let last = performance.now();
    const next = (now: number) => {
      found.milliseconds.push(now - last);
      last = now;
      if (!shared.stop) requestAnimationFrame(next);
    };
    requestAnimationFrame(next);
  });
  await work();
  return await page.evaluate(() => {
    const shared = window as unknown as { found: Frames; stop: boolean };
    shared.stop = true;
    return shared.found;
  });
}

function line(name: string, { milliseconds }: Frames): string {
  const sorted = milliseconds.slice(1).sort((a, b) => a - b);
  const at = (share: number) => (sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * share))] ?? 0).toFixed(1);
  const slow = sorted.filter((value) => value > 50).length;
  return `${name}: ${sorted.length} frames, median ${at(0.5)} ms, 95 % ${at(0.95)} ms, 99 % ${at(0.99)} ms, longest ${at(1)} ms, ${slow} above 50 ms`;
}

const pause = (milliseconds: number) => new Promise<void>((done) => setTimeout(done, milliseconds));

// Changes of the platform's inventory, retrieved at an even pace; returns how many events a second that makes.
async function change(): Promise<number> {
  const items = (await host.call("GET", "/tav-loot/v1/player-loot")) as { lootName: string; refId: string }[];
  const last = async () => ((await host.call("GET", "/_host/health")) as { events: { last: number } }).events.last;
  const before = await last();
  const start = performance.now();
  let retrievals = 0;
  while (performance.now() - start < seconds * 1000) {
    for (let i = 0; i < changesInRetrieval; i++) {
      const { lootName = "", refId = "" } = items[(retrievals * changesInRetrieval + i) % items.length] ?? {};
      await host.call("POST", "/_host/inventory", { lootName, refId, delta: 1 });
    }
    await host.call("POST", "/tav-loot/v1/refresh?force=true");
    await pause(Math.max(0, start + (++retrievals * 1000) / retrievalsInSecond - performance.now()));
  }
  await host.call("POST", "/_host/idle");
  return ((await last()) - before) / ((performance.now() - start) / 1000);
}

test("the scenario with 5,000 items", async () => {
  await host.call("POST", "/_host/scenario/collector");
  await host.call("POST", "/_host/idle");
});
onPage("frames", "#/inventory", async (page) => {
  await page.getByText(/5,00\d/).waitFor();
  const start = (await page.evaluate(() => performance.now())).toFixed(0);
  console.log(`The grid is there after ${start} ms.`);
  console.log(line("At rest", await frames(page, () => pause(3000))));
  let rate = 0;
  const busy = await frames(page, async () => void (rate = await change()));
  console.log(line(`With ${rate.toFixed(0)} events a second`, busy));
});
test("the sample again", async () => {
  await host.call("POST", "/_host/scenario/sample");
  await reset();
});
