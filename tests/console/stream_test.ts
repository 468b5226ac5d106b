// 5,000 items under a stream of changes: what does not depend on how fast the machine is.
import assert from "node:assert/strict";
import { test } from "node:test";
import { addOneOfEach, inView, itemsOf, notesOf, startCrowd, watch } from "./crowd";
import { host, onPage, reset, tile } from "./harness";

const mostTiles = 100;

test("the scenario with 5,000 items", startCrowd);
for (const width of [360, 1280]) {
  onPage(
    `a stream of changes moves nothing and draws what is in view, at ${width} px`,
    "#/inventory",
    async (page) => {
      await page.locator(".tile").first().waitFor();
      await page.getByText("Faults off").waitFor();
      const items = await itemsOf(await inView(page));
      assert.ok(items.length > 3, `${items.length} items are in view`);
      await watch(page);
      for (let turn = 1; turn <= 3; turn++) {
        await addOneOfEach(items);
        for (const { lootId, count } of items) {
          await tile(page, lootId).getByLabel(`${(count + turn).toLocaleString("en")} held`, { exact: true }).waitFor();
        }
      }
      const notes = await notesOf(page);
      assert.deepEqual([notes.shift, notes.moved], [0, []], "nothing moves");
      assert.ok(notes.mostTiles >= items.length && notes.mostTiles <= mostTiles, `${notes.mostTiles} tiles`);
      await page.getByRole("listbox").focus();
      await page.keyboard.press("End");
      await page.locator(".tile.active").waitFor();
      const drawn = await page.locator(".tile").count();
      assert.ok(drawn > 3 && drawn <= mostTiles, `${drawn} tiles at the end`);
    },
    { width, height: 800 },
  );
}
test("the sample again", async () => {
  await host.call("POST", "/_host/scenario/sample");
  await reset();
});
