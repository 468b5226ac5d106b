// The console in use: what is done in it reaches the plugin, and what changes is seen.
import assert from "node:assert/strict";
import type { Page } from "playwright-core";
import { host, onPage, reset, tile } from "./harness";

onPage("a chest is opened and the grid shows what came", "#/inventory?item=CHEST_lantern", async (page) => {
  await tile(page, "CHEST_lantern").getByLabel("2 held").waitFor();
  await page.getByRole("button", { name: "Open: craft CHEST_lantern_OPEN" }).click();
  const result = page.getByRole("region", { name: "Result" });
  await result.getByRole("heading", { name: "Added" }).waitFor();
  await tile(page, "CHEST_lantern").getByLabel("1 held").waitFor();
  const name = await result.locator(".delta .link").first().textContent();
  await page.getByRole("button", { name: "Close the item" }).click();
  await page.getByRole("searchbox").fill(name ?? "");
  await page.getByRole("option", { name: name ?? "" }).filter({ hasText: "New" }).first().waitFor();
});

onPage("a result belongs to its item and goes with the world", "#/inventory?item=MATERIAL_key_fragment", async (page) => {
  await reset();
  await page.getByRole("button", { name: /craft MATERIAL_key_FORGE/ }).click();
  const result = page.getByRole("region", { name: "Result" });
  await result.waitFor();
  await result.locator(".delta .link").first().click();
  await page.getByRole("complementary", { name: /Brass Key$/ }).waitFor();
  assert.equal(await result.count(), 0);
  await page.goBack();
  await result.waitFor();
  await reset();
  await result.waitFor({ state: "detached" });
});

onPage("a refusal is shown with its reason", "#/inventory?item=MATERIAL_key_fragment", async (page) => {
  await page.getByRole("spinbutton", { name: "Times" }).fill("500");
  await page.getByText("1493 missing").waitFor();
  await page.getByRole("button", { name: /craft MATERIAL_key_FORGE/ }).click();
  await page.getByRole("region", { name: "Result" }).getByText("MISSING_INGREDIENTS").waitFor();
});

onPage("a token goes into its slot, and what goes with it", "#/inventory?item=CHAMPION_TOKEN_star-11", async (page) => {
  await reset();
  const card = page.getByRole("article").filter({ hasText: "CHAMPION_TOKEN_SHARD_UPGRADE" });
  const inSlot = (slot: number, lootId: string) =>
    card.getByRole("combobox", { name: `Item for slot ${slot}` }).and(page.locator(`:has(option[value="${lootId}"]:checked)`)).waitFor();
  await inSlot(0, "CHAMPION_TOKEN_star-11");
  await page.getByRole("heading", { name: "Star Token: Ossila", level: 2 }).waitFor();
  await inSlot(1, "CHAMPION_RENTAL_11");
  await card.getByRole("combobox", { name: "Item for slot 0" }).selectOption("CHAMPION_TOKEN_star-13");
  await card.getByText("1 missing").waitFor();
  await inSlot(1, "CHAMPION_RENTAL_13");
  await card.getByRole("combobox", { name: "Item for slot 0" }).selectOption("CHAMPION_TOKEN_star-11");
  await inSlot(1, "CHAMPION_RENTAL_11");
  await card.getByRole("button", { name: /craft CHAMPION_TOKEN_SHARD_UPGRADE/ }).click();
  await page.getByRole("region", { name: "Result" }).getByText("CHAMPION_TOKEN_crown: Ossila, Warden of Tides").waitFor();
  await page.getByText("Not held").waitFor();
  assert.equal(await page.getByRole("heading", { level: 2 }).textContent(), "Star Token: Ossila");
});

onPage("a key opens the chest that takes it second", "#/inventory?item=MATERIAL_key", async (page) => {
  await reset();
  await page.getByRole("button", { name: /craft CHEST_harbour_OPEN/ }).click();
  await page.getByRole("region", { name: "Result" }).getByRole("heading", { name: "Added" }).waitFor();
  await tile(page, "CHEST_harbour").click();
  await page.getByRole("heading", { name: "Harbour Chest" }).waitFor();
  await page.getByRole("button", { name: /craft CHEST_harbour_OPEN/ }).waitFor();
  assert.equal(await page.getByRole("button", { name: /craft CHEST_harbour_OPEN/ }).count(), 1);
});

onPage("an inventory that is switched off says so, and leads to the switch", "#/inventory", async (page) => {
  await host.call("POST", "/_host/scenario/disabled");
  await page.getByText("Loot is switched off").waitFor();
  await page.getByText('"Enabled" is not true').waitFor();
  await page.getByRole("link", { name: "Go to the configuration" }).click();
  await page.getByRole("switch", { name: "Loot enabled", exact: true }).click();
  await page.goBack();
  await page.getByText("Loot is switched off").waitFor({ state: "detached" });
  await host.call("POST", "/_host/scenario/sample");
  await host.call("POST", "/_host/idle");
});

onPage("filters are in the address, back and forward go through the views", "#/inventory", async (page) => {
  await page.getByRole("combobox", { name: "Type" }).selectOption("CHEST");
  await page.getByRole("searchbox").fill("lantern");
  await page.waitForURL(/type=CHEST&q=lantern/);
  assert.equal(await page.getByRole("option", { name: /Chest/ }).count(), 1);
  await page.getByRole("link", { name: "World" }).click();
  await page.getByRole("heading", { name: "Collections" }).waitFor();
  await page.goBack();
  assert.equal(await page.getByRole("searchbox").inputValue(), "lantern");
  await page.goForward();
  await page.getByRole("heading", { name: "Collections" }).waitFor();
});

onPage("the keyboard reaches views, search, items and their panel", "#/host", async (page) => {
  await page.keyboard.press("1");
  await page.getByRole("listbox").waitFor();
  await page.keyboard.press("/");
  await page.keyboard.type("quillam");
  await page.getByRole("listbox").focus();
  await page.keyboard.press("ArrowRight");
  await page.keyboard.press("Enter");
  await page.getByRole("complementary").waitFor();
  await page.getByRole("complementary").getByRole("button").last().focus();
  await page.keyboard.press("Escape");
  await page.getByRole("complementary").waitFor({ state: "detached" });
  await page.waitForFunction(() => document.activeElement?.getAttribute("role") === "listbox");
});

onPage("an address of what is gone says so", "#/timeline?row=999999", async (page) => {
  await page.getByText(/^Row 999999 cannot be shown/).waitFor();
  await page.getByRole("button", { name: "Show the newest" }).click();
  await page.getByRole("option").first().click();
  await page.getByRole("button", { name: "Close the row" }).focus();
  await page.keyboard.press("Escape");
  await page.getByRole("complementary").waitFor({ state: "detached" });
  await page.waitForFunction(() => document.activeElement?.getAttribute("role") === "listbox");
  await page.goto(page.url().replace(/#.*/, "#/inventory?type=NOPE"));
  await page.getByRole("combobox", { name: "Type" }).getByText("NOPE (0)").waitFor({ state: "attached" });
});

onPage(
  "a small screen shows the scenario, that no fault is on, and leads to what is held",
  "#/inventory?item=CHEST_mastery",
  async (page) => {
    const bar = page.getByRole("banner");
    const isSeen = async (text: string) => assert.ok(((await bar.getByText(text, { exact: true }).boundingBox())?.width ?? 0) > 10, text);
    await bar.getByText("Faults off").waitFor();
    for (const text of ["sample", "Lantern Bay", "Faults off", "Live"]) await isSeen(text);
    await host.call("PUT", "/_host/faults", { rules: [{ service: "craft*", action: "hold" }] });
    await bar.getByText("Faults on").waitFor();
    await page.getByRole("button", { name: /craft CHEST_mastery/ }).click();
    await bar.getByText("1 held").click();
    const release = page.getByRole("button", { name: "Release loot.craftPlayerLootWithRefId" });
    await release.waitFor();
    await page.waitForFunction((button) => (button?.getBoundingClientRect().bottom ?? Infinity) < innerHeight, await release.elementHandle());
    assert.equal(await page.evaluate(() => document.body.scrollTop + document.documentElement.scrollTop), 0, "the frame stays where it is");
    await release.click();
    await host.call("DELETE", "/_host/faults");
    await bar.getByText("Faults off").waitFor();
    await reset();
  },
  { width: 360, height: 700 },
);

onPage("the documentation is one step away", "#/host", async (page) => {
  const [docs] = await Promise.all([page.waitForEvent("popup"), page.getByRole("link", { name: "Docs" }).click()]);
  await docs.getByRole("heading", { level: 1 }).first().waitFor();
});

onPage("a change of the platform's inventory is retrieved and seen", "#/world", async (page) => {
  await page.getByRole("combobox", { name: "Loot name" }).fill("CHEST_harbour");
  await page.getByRole("button", { name: "Change" }).click();
  await page.getByText(/The platform holds \d+ of CHEST_harbour/).waitFor();
  const { count } = (await host.call("GET", "/tav-loot/v1/player-loot/CHEST_harbour")) as { count: number };
  await page.getByRole("link", { name: "Inventory" }).click();
  await tile(page, "CHEST_harbour").getByLabel(`${count} held`).waitFor();
  await page.goBack();
  await page.getByRole("combobox", { name: "Loot name" }).fill("CHEST_harbour");
  await typeInto(page, "Change", "-2");
  await page.getByRole("button", { name: "Change" }).click();
  await page.getByText(`The platform holds ${count - 2} of CHEST_harbour`).waitFor();
});

async function typeInto(page: Page, name: string, text: string): Promise<void> {
  await page.getByRole("spinbutton", { name }).selectText();
  await page.keyboard.press("Delete");
  await page.keyboard.type(text);
}

onPage("a field that holds no number says so and sends nothing", "#/world", async (page) => {
  await page.getByRole("button", { name: "Scaled" }).click();
  for (const [name, wrong, reason, right] of [
    ["Level", "", "A number is needed", "12"],
    ["Seconds in one second", "0", "At least 0.001", "0.5"],
  ] as const) {
    const set = page.locator(`.field:has(> .label:text-is("${name}"))`).getByRole("button", { name: "Set" });
    await typeInto(page, name, wrong);
    await page.getByText(reason).waitFor();
    assert.ok(await set.isDisabled(), name);
    await typeInto(page, name, right);
    const sent = page.waitForRequest((request) => request.method() === "PUT");
    await set.click();
    assert.ok(Object.values((await sent).postDataJSON() as object).includes(Number(right)), name);
  }
  await reset();
  await host.call("PUT", "/_host/clock", { mode: "real" });
});

onPage("an endpoint's form sends what it says", "#/api?op=GetPlayerLootById", async (page) => {
  await page.getByLabel("lootId").fill("CHEST_harbour");
  await page.getByRole("button", { name: "Send" }).click();
  await page.getByRole("region", { name: "Response", exact: true }).getByText('"CHEST_harbour"').first().waitFor();
  await page.getByLabel("lootId").fill("CHEST_nothing");
  await page.keyboard.press("Enter");
  await page.getByRole("region", { name: "Response", exact: true }).getByText('"Not Found"', { exact: true }).waitFor();
});

onPage("a link brings a form back with its body", "#/api?op=SetSummoner", async (page) => {
  await page.context().grantPermissions(["clipboard-read", "clipboard-write"]);
  const body = page.getByRole("textbox", { name: /^Body/ });
  const copied = async () => {
    await page.getByRole("button", { name: /^Link/ }).click();
    await page.getByText("The address of this form is copied").waitFor();
    return await page.evaluate(() => navigator.clipboard.readText());
  };
  await body.fill('{"summonerLevel": 12}');
  const link = await copied();
  await page.goto(new URL("#/api?op=SetGameflow", page.url()).href);
  await page.getByText("/_host/gameflow").last().waitFor();
  await page.goto(link);
  await page.getByRole("heading", { name: "/_host/summoner" }).waitFor();
  assert.equal(await body.inputValue(), '{"summonerLevel": 12}');
  await page.goto(link.replace("12%7D", "13%7D"));
  await page.waitForFunction(() => document.querySelector("textarea")?.value === '{"summonerLevel": 13}');
  await body.fill("7".repeat(9000));
  await page.getByRole("button", { name: /^Link/ }).click();
  await page.getByText(/The address would have 9,\d+ characters/).waitFor();
});

onPage("a reset by another program is noticed", "#/inventory", async (page) => {
  await host.call("POST", "/tav-loot/v1/recipes/CHEST_harbour_OPEN/craft", ["CHEST_harbour", "MATERIAL_key"]);
  const { count } = (await host.call("GET", "/tav-loot/v1/player-loot/MATERIAL_key")) as { count: number };
  await tile(page, "MATERIAL_key").getByLabel(`${count} held`).waitFor();
  await reset();
  await tile(page, "MATERIAL_key").getByLabel("5 held").waitFor();
});

onPage("the console comes back when the host does", "#/inventory", async (page) => {
  await host.call("POST", "/tav-loot/v1/recipes/CHEST_lantern_OPEN/craft", ["CHEST_lantern"]);
  await tile(page, "CHEST_lantern").getByLabel("1 held").waitFor();
  await host.stop();
  await page.getByText("Reconnecting").waitFor();
  await host.start();
  await page.getByText("Live", { exact: true }).waitFor();
  await tile(page, "CHEST_lantern").getByLabel("2 held").waitFor();
});

onPage("a page of another origin can change nothing", "#/inventory", async (page) => {
  const other = await page.context().newPage();
  await other.route("http://elsewhere.test/", (route) => route.fulfill({ contentType: "text/html", body: "another page" }));
  await other.goto("http://elsewhere.test/");
  const url = `${host.url}_host/logout`;
  const refused = other.waitForResponse(url);
  await other.evaluate((target) => void fetch(target, { method: "POST", mode: "no-cors" }), url);
  assert.equal((await refused).status(), 403);
  const policy = (await page.request.get(host.url, { headers: { Accept: "text/html" } })).headers();
  assert.match(policy["content-security-policy"] ?? "", /default-src 'none'; script-src 'self'; style-src 'self'/);
});

onPage("an event leads to the request that caused it", "#/timeline", async (page) => {
  await reset();
  await host.call("POST", "/tav-loot/v1/recipes/CHEST_lantern_OPEN/craft", ["CHEST_lantern"]);
  await page.getByRole("searchbox").fill("player-loot/CHEST_lantern");
  await page.getByRole("option", { name: /event .*CHEST_lantern Update/ }).click();
  const panel = page.getByRole("complementary");
  const { rows } = (await host.call("GET", "/_host/timeline?kind=event&path=/tav-loot/v1/player-loot/CHEST_lantern")) as { rows: { time: number }[] };
  await panel.getByText(`${new Date(rows.at(-1)?.time ?? 0).toISOString().slice(11, 23)} UTC`).waitFor();
  await panel.getByRole("button", { name: /request POST .*CHEST_lantern_OPEN/ }).click();
  await panel.getByRole("heading", { name: "Led to" }).waitFor();
  await page.getByRole("searchbox").fill("");
  await page.locator(".line.selected").waitFor();
  await page.waitForFunction(() => {
    const inView = [...document.querySelectorAll(".line.effect")].filter((line) => line.getBoundingClientRect().bottom <= innerHeight);
    return inView.length > 5;
  });
  await panel.getByText("Preparing service proxy request: loot.craftPlayerLootWithRefId").waitFor();
  await page.goBack();
  await panel.getByRole("heading", { name: /player-loot.CHEST_lantern/ }).waitFor();
});

onPage("a paused timeline stays as it is", "#/timeline?hide=requests,calls,siblings,tasks,log,host", async (page) => {
  await page.getByRole("option").first().waitFor();
  await page.getByRole("button", { name: "Pause" }).click();
  const rows = await page.getByRole("option").last().getAttribute("aria-setsize");
  await host.call("POST", "/tav-loot/v1/recipes/CHEST_harbour_OPEN/craft", ["CHEST_harbour", "MATERIAL_key"]);
  await page.getByRole("button", { name: /Go on \([1-9]/ }).waitFor();
  assert.equal(await page.getByRole("option").last().getAttribute("aria-setsize"), rows);
  const goAway = async () => {
    await page.getByRole("button", { name: "Time travel" }).click();
    const read = page.waitForResponse(/_host.timeline\?limit/);
    await page.getByRole("button", { name: "What happens" }).click();
    await (await read).finished();
  };
  await goAway();
  await page.getByRole("button", { name: /Go on \([1-9]/ }).waitFor();
  assert.equal(await page.getByRole("option").last().getAttribute("aria-setsize"), rows);
  await page.getByRole("button", { name: /Go on/ }).click();
  await page.getByRole("button", { name: "Clear" }).click();
  await goAway();
  await page.getByText("Nothing has happened yet").waitFor();
  await page.waitForTimeout(300);
  assert.equal(await page.getByRole("option").count(), 0);
});

onPage("the inventory goes back to an earlier event", "#/timeline?tab=travel", async (page) => {
  await reset();
  await page.reload();
  const held = page.getByRole("region", { name: "Inventory then" });
  const keys = (count: number) => held.getByRole("listitem").filter({ hasText: new RegExp(`Brass Key\\s*MATERIAL_key\\s*${count}$`) });
  await keys(5).waitFor();
  await host.call("POST", "/tav-loot/v1/recipes/MATERIAL_key_FORGE/craft", ["MATERIAL_key_fragment"]);
  await keys(6).waitFor();
  const difference = page.getByRole("region", { name: "Difference" });
  await page.getByText(/^event \d+ \d\d:\d\d:\d\d\.\d{3} UTC/).first().waitFor();
  await page.getByRole("slider", { name: "To" }).press("ArrowLeft");
  await page.getByRole("slider", { name: "To" }).press("ArrowLeft");
  await keys(5).waitFor();
  await page.getByRole("slider", { name: "From" }).press("End");
  await difference.getByText("count: 6 → 5").waitFor();
});

onPage("an open console changes nothing of a reset", "#/inventory?item=CHEST_harbour", async (page) => {
  type Row = { kind: string; name: string; status?: string };
  const afterReset = async () => {
    await reset();
    const { rows } = (await host.call("GET", "/_host/timeline?limit=1000")) as { rows: Row[] };
    const start = rows.findLastIndex(({ kind, name }) => kind === "session" && name === "start");
    return rows.slice(start).flatMap(({ kind, name, status }) => (/^(service|event)/.test(kind) ? [`${kind} ${name} ${status ?? ""}`] : []));
  };
  const address = page.url();
  const apart = new URL("/_host/console/icon.svg", address).href;
  await page.goto(apart);
  const alone = await afterReset();
  for (const view of [address, address.replace(/#.*/, "#/host"), address.replace(/#.*/, "#/world")]) {
    await page.goto(apart);
    const read = page.waitForResponse(/player-loot-map$/);
    await page.goto(view);
    await (await read).finished();
    for (let turn = 0; turn < 4; turn++) assert.deepEqual(await afterReset(), alone, view);
  }
});

onPage("the plugin logs more when it is asked to", "#/host", async (page) => {
  const level = page.getByRole("combobox", { name: "The plugin logs" });
  await level.selectOption("okay");
  await host.call("POST", "/tav-loot/v1/refresh?force=true");
  await page.getByRole("log").getByText("  OKAY|").first().waitFor();
  const set = page.waitForResponse((response) => response.request().method() === "PUT");
  await level.selectOption("warning");
  await set;
  assert.deepEqual(await host.call("GET", "/_host/log/level"), { level: "warning" });
});

onPage("a chest gives the chosen result", "#/inventory?item=CHEST_lantern", async (page) => {
  await page.getByText("Odds and next result").click();
  await page.getByRole("button", { name: /^Add 1 EMOTE_703/ }).click();
  await page.getByRole("button", { name: "Make it the next result" }).click();
  await page.getByText("The next craft gives this").waitFor();
  const kept = { recipe: "CHEST_harbour_OPEN", added: [{ lootName: "MATERIAL_key", refId: "", count: 3 }], times: 2 };
  await host.call("POST", "/_host/next-result", kept);
  await page.getByRole("button", { name: "Leave it to chance" }).click();
  await page.getByRole("button", { name: "Leave it to chance" }).waitFor({ state: "detached" });
  assert.deepEqual(await host.call("GET", "/_host/next-result"), [kept]);
  await host.call("DELETE", "/_host/next-result");
  await page.getByRole("button", { name: /^Add 1 EMOTE_703/ }).click();
  await page.getByRole("button", { name: "Make it the next result" }).click();
  await page.getByRole("button", { name: "Leave it to chance" }).waitFor();
  await page.getByRole("button", { name: "Open: craft CHEST_lantern_OPEN" }).click();
  const result = page.getByRole("region", { name: "Result" });
  await result.getByRole("heading", { name: "Added" }).waitFor();
  assert.equal(await result.locator(".delta .plus").count(), 1);
  await page.getByRole("button", { name: "Close the item" }).click();
  await tile(page, "EMOTE_703").getByText("New").waitFor();
});

onPage("the audit is switched on, and names an event that is missing", "#/host", async (page) => {
  await reset();
  const card = page.getByRole("region", { name: "Audit" });
  await card.getByText("On", { exact: true }).click();
  await host.call("POST", "/_host/idle");
  await host.call("PUT", "/_host/faults", { rules: [{ published: "/tav-loot/v1/enabled", action: "drop" }] });
  await host.call("PUT", "/_host/configuration/Enabled", false);
  await card.getByText("a change is published").waitFor();
  await card.getByText("Found: false").waitFor();
  await card.getByText("Off", { exact: true }).click();
  await card.getByText("Changes are not compared").waitFor();
  await reset();
});
