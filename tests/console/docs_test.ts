// The documentation's pages, and their pictures of the console: script/check-console --pictures writes those.
import assert from "node:assert/strict";
import type { Page } from "playwright-core";
import { axe, host, onPage, reset, tile, type Screen } from "./harness";

const pictures = process.env["KEST_PICTURES"];
const screens: Screen[] = [
  { width: 360, height: 700, colors: "dark" },
  { width: 1440, height: 900, colors: "light" },
];

for (const screen of screens) {
  for (const name of ["index", "development-host", "endpoints", "options", "console"]) {
    const address = `/_host/docs/${name}.html`;
    onPage(
      `${address} at ${screen.width} px in ${screen.colors}`,
      address,
      async (page) => {
        assert.deepEqual(await axe(page), []);
        const wide = await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
        assert.equal(wide, 0, "the page is as wide as the screen");
        const broken = await page.evaluate(() => [...document.images].filter((image) => image.naturalWidth === 0).length);
        assert.equal(broken, 0, "every picture is there");
      },
      screen,
    );
  }
}

const screen: Screen = { width: 1280, height: 720 };

// Once what has changed flashes no more.
async function take(page: Page, name: string): Promise<void> {
  if (!pictures) return;
  await page.getByRole("banner").getByText("Signed in").waitFor();
  await page.evaluate(() => Promise.all(document.getAnimations().map((animation) => animation.finished.catch(() => undefined))));
  await page.screenshot({ path: `${pictures}/${name}.png` });
}

onPage(
  "picture of the inventory",
  "#/inventory?item=SKIN_12001&tab=why",
  async (page) => {
    await page.getByText("Can it be redeemed?").waitFor();
    await tile(page, "SKIN_12001").waitFor();
    await take(page, "console");
  },
  screen,
);

onPage(
  "picture of the timeline",
  "#/timeline",
  async (page) => {
    await reset();
    await host.call("POST", "/tav-loot/v1/recipes/CHEST_lantern_OPEN/craft", ["CHEST_lantern"]);
    await page.getByRole("option", { name: /event .*CHEST_lantern Update/ }).click();
    await page.getByRole("complementary").getByRole("button", { name: /request POST .*CHEST_lantern_OPEN/ }).waitFor();
    await take(page, "timeline");
  },
  screen,
);

onPage(
  "picture of a chest that is opened",
  "#/inventory?item=CHEST_harbour",
  async (page) => {
    await reset();
    await page.reload();
    await page.getByRole("button", { name: /^Open/ }).first().waitFor();
    await take(page, "chest");
  },
  screen,
);
