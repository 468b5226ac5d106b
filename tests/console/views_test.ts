// Every view: what it shows, on small and large screens, in light and dark, and for those who do not see it.
import assert from "node:assert/strict";
import { axe, onPage, type Screen } from "./harness";

const views: [address: string, text: string][] = [
  ["#/inventory", "Amber Motes"],
  ["#/inventory?item=CHEST_harbour", "Recipes that take it"],
  ["#/inventory?item=SKIN_12001&tab=why", "Can it be redeemed?"],
  ["#/inventory?item=CHAMPION_RENTAL_13&tab=raw", '"CHAMPION_RENTAL_13"'],
  ["#/timeline", "What happens"],
  ["#/timeline?tab=travel", "Inventory at event"],
  ["#/world", "Game phase"],
  ["#/api", "/tav-loot/v1/enabled"],
  ["#/api?op=CraftRecipe", "How many times to run it"],
  ["#/host", "requests handled"],
];
const screens: Screen[] = [
  { width: 360, height: 700, colors: "dark" },
  { width: 1440, height: 900, colors: "light" },
  { width: 3840, height: 2160, colors: "dark" },
];

for (const screen of screens) {
  for (const [address, text] of views) {
    onPage(
      `${address} at ${screen.width} px in ${screen.colors}`,
      address,
      async (page) => {
        await page.getByText(text).first().waitFor({ state: "attached" });
        assert.deepEqual(await axe(page), []);
        const wider = await page.evaluate(() => {
          const most = document.documentElement.clientWidth;
          return [...document.querySelectorAll("main *")]
            .filter((element) => element.getBoundingClientRect().right > most + 1)
            .map((element) => element.outerHTML.slice(0, 120));
        });
        assert.deepEqual(wider, [], "nothing reaches beyond the screen");
      },
      screen,
    );
  }
}
