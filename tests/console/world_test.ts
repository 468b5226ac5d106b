// The world, faults and scenarios as people change them in the console.
import assert from "node:assert/strict";
import { host, onPage, reset, tile } from "./harness";

onPage("the player signs out, and in where the inventory was", "#/world", async (page) => {
  await page.getByRole("button", { name: "Sign out" }).click();
  await page.getByRole("banner").getByText("Signed out").waitFor();
  await page.getByRole("link", { name: "Inventory" }).click();
  await page.getByRole("button", { name: "Sign in" }).click();
  await page.getByRole("banner").getByText("Signed in").waitFor();
  await tile(page, "CHEST_lantern").waitFor();
});

// As a person types: each key is one event.

onPage("a frozen clock goes on only when time is let pass", "#/world", async (page) => {
  await page.getByRole("button", { name: "Frozen" }).click();
  await page.getByRole("button", { name: "Let 1 day pass" }).waitFor();
  const { milliseconds } = (await host.call("GET", "/_host/clock")) as { milliseconds: number };
  await page.getByRole("button", { name: "Let 1 day pass" }).click();
  const tomorrow = new Date(milliseconds + 86_400_000).toISOString().slice(0, 10);
  await page.getByRole("banner").getByText(tomorrow).waitFor();
  await page.getByRole("button", { name: "Real" }).click();
  await page.getByRole("button", { name: "Let 1 day pass" }).waitFor({ state: "detached" });
});

onPage("a held call shows a spinner until it is released", "#/world", async (page) => {
  await page.getByRole("button", { name: "Add the rule" }).click();
  await page.getByRole("banner").getByText("Faults on").waitFor();
  await page.getByRole("link", { name: "Inventory" }).click();
  await tile(page, "CHEST_mastery").click();
  await page.getByRole("button", { name: /craft CHEST_mastery/ }).click();
  await page.getByText("waits for the platform").waitFor();
  await page.getByRole("banner").getByText("1 held").click();
  await page.getByText("Let it fail or respond with something else").click();
  await page.getByLabel("Respond with, JSON").fill("{not json");
  await page.getByText(/This is not JSON: Expected/).waitFor();
  assert.ok(await page.getByRole("button", { name: "Respond" }).isDisabled());
  await page.getByRole("button", { name: "Release loot.craftPlayerLootWithRefId" }).click();
  await page.getByRole("banner").getByText("1 held").waitFor({ state: "detached" });
  await page.getByRole("button", { name: "Remove all" }).click();
  await page.getByRole("banner").getByText("Faults off").waitFor();
  await page.goBack();
  await page.getByRole("region", { name: "Result" }).getByRole("heading", { name: "Added" }).waitFor();
});

onPage("what a sibling holds and what is published go wrong by rules", "#/world", async (page) => {
  const add = async (what: string, path: string, happens: string) => {
    await page.getByRole("combobox", { name: "What", exact: true }).selectOption(what);
    await page.getByRole("combobox", { name: "Path" }).fill(path);
    await page.getByRole("combobox", { name: "What happens" }).selectOption({ label: happens });
    await page.getByRole("button", { name: "Add the rule" }).click();
    await page.getByText(path).waitFor();
  };
  await add("sibling", "/tav-champions/*", "seems to be deleted");
  await add("published", "/tav-loot/v1/player-loot-map", "comes twice");
  const card = page.getByRole("region", { name: "Faults" });
  await page.getByRole("combobox", { name: "What", exact: true }).selectOption("sibling");
  await page.getByRole("combobox", { name: "What happens" }).selectOption("fail");
  for (const [label, wrong, right] of [["Status", "200", "503"], ["How often", "abc", "1"]] as const) {
    await card.getByLabel(label).fill(wrong);
    await card.getByText(/^An integer from/).waitFor();
    assert.ok(await card.getByRole("button", { name: "Add the rule" }).isDisabled());
    await card.getByLabel(label).fill(right);
  }
  await card.getByRole("button", { name: "Add the rule" }).click();
  await card.getByText("fails: 503, once").waitFor();
  const { rules } = (await host.call("GET", "/_host/faults")) as { rules: Record<string, unknown>[] };
  assert.deepEqual(rules.map((rule) => [rule["sibling"] ?? rule["published"], rule["action"]]), [
    ["/tav-champions/*", "delete"],
    ["/tav-loot/v1/player-loot-map", "double"],
    ["/tav-champions/*", "fail"],
  ]);
  await page.getByRole("button", { name: "Remove all" }).click();
  await page.getByRole("banner").getByText("Faults off").waitFor();
});

onPage("fault rules of another program are seen, and stay as they are when one comes and goes", "#/world", async (page) => {
  const card = page.getByRole("region", { name: "Faults" });
  await card.waitFor();
  await host.call("PUT", "/_host/faults", { keep: true, seed: 11, rules: [{ published: "/tav-loot/v1/enabled", action: "drop", times: 1 }] });
  await card.getByText("Kept over a reset · seed 11").waitFor();
  await host.call("PUT", "/_host/configuration/Enabled", false);
  await card.getByText("used up").waitFor();
  const before = await host.call("GET", "/_host/faults");
  await page.getByRole("button", { name: "Add the rule" }).click();
  await page.getByRole("button", { name: "Remove the rule for craftPlayerLootWithRefId" }).click();
  await card.getByText("craftPlayerLootWithRefId").waitFor({ state: "detached" });
  assert.deepEqual(await host.call("GET", "/_host/faults"), before);
  await host.call("DELETE", "/_host/faults");
  await card.getByText("No faults").waitFor();
  await reset();
});

onPage("snapshots and scenarios of another program are listed", "#/world", async (page) => {
  const restore = page.getByRole("button", { name: "Restore elsewhere" });
  await page.getByRole("button", { name: "Start the scenario empty" }).waitFor();
  await host.call("PUT", "/_host/snapshots/elsewhere");
  await restore.waitFor();
  await host.call("DELETE", "/_host/snapshots/elsewhere");
  await restore.waitFor({ state: "detached" });
  const current = page.getByRole("region", { name: "Scenarios" }).getByRole("listitem").filter({ hasText: "current" });
  await host.call("POST", "/_host/scenario/empty");
  await current.filter({ hasText: "empty" }).waitFor();
  await host.call("POST", "/_host/scenario/sample");
  await current.filter({ hasText: "sample" }).waitFor();
});

onPage("another scenario starts, and a snapshot brings the first world back", "#/world", async (page) => {
  await page.getByRole("textbox", { name: "Save the world as" }).fill("lantern");
  await page.getByRole("button", { name: "Save", exact: true }).click();
  await page.getByRole("button", { name: "Restore lantern" }).waitFor();
  await page.getByRole("button", { name: "Start the scenario collector" }).click();
  await page.getByText('The scenario "collector" has started').waitFor();
  await page.getByRole("link", { name: "Inventory" }).click();
  await page.getByText(/5,0\d\d items/).waitFor();
  const drawn = await page.locator(".tile").count();
  for (const width of [360, 1366, 2560, 1280]) {
    await page.setViewportSize({ width, height: 800 });
    const cut = await page.evaluate(async () => {
      await new Promise((done) => setTimeout(done, 100));
      const badges = [...document.querySelectorAll(".tile .badge")];
      return badges.filter((badge) => badge.scrollWidth > badge.clientWidth).map((badge) => badge.textContent);
    });
    assert.deepEqual(cut, [], `statuses are whole at ${width} px`);
  }
  assert.ok(drawn > 0 && drawn < 200, `${drawn} tiles are drawn`);
  await page.goto(page.url().replace(/#.*/, "#/timeline?tab=travel"));
  await page.getByText(/^first 400 of 5,0\d\d items$/).waitFor();
  await page.goBack();
  await page.goBack();
  await page.getByRole("button", { name: "Restore lantern" }).click();
  await page.getByRole("heading", { name: "Lantern Bay", level: 1 }).waitFor();
  await page.getByRole("button", { name: "Start the scenario sample" }).click();
  await page.getByText('The scenario "sample" has started').waitFor();
});
