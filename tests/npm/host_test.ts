// A front end's tests against the packed host.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFile } from "node:fs/promises";
import { after, before, beforeEach, test } from "node:test";
import { ApiFailure, LootHostFailure, startLootHost, type LootHost, type ResourceEvent } from "tav-loot-host";

let host: LootHost;
before(async () => {
  host = await startLootHost({ scenario: "sample", seed: 7 });
});
after(() => host.stop());
beforeEach(() => host.reset());

const chest = "CHEST_lantern";
const coins = "/tav-loot/v1/player-loot/CURRENCY_cosmetic";
const open = () =>
  host.call("post", "/tav-loot/v1/recipes/{recipeName}/craft", { path: { recipeName: `${chest}_OPEN` }, body: [chest] });
const refusal = (status: number, message: RegExp) => (failure: unknown) =>
  failure instanceof ApiFailure && failure.status === status && message.test(failure.message);

test("a chest gives what was chosen, and those who follow the item see it", async () => {
  const seen: number[] = [];
  const end = await host.subscribe(coins, (event) => event.eventType !== "Delete" && seen.push(event.data.count));
  const before = (await host.call("get", "/tav-loot/v1/player-loot/{lootId}", { path: { lootId: "CURRENCY_cosmetic" } })).count;
  await host.nextResult(`${chest}_OPEN`, [{ lootName: "CURRENCY_cosmetic", count: 5000 }]);
  const position = await host.lastEvent();
  const { added } = await open();
  assert.deepEqual(added.map(({ deltaCount, playerLoot }) => [playerLoot.lootId, deltaCount]), [["CURRENCY_cosmetic", 5000]]);
  const event = await host.wait(coins, { after: position, where: { "/data/count": before + 5000 } });
  assert.ok(event.id > position && event.eventType === "Update" && event.data.lootName === "CURRENCY_cosmetic");
  await host.idle();
  while (seen.length === 0) await new Promise(setImmediate);
  assert.deepEqual(seen, [before + 5000]);
  end();
  await open();
  await host.idle();
  assert.equal(seen.length, 1);
});

test("a held call goes on, fails or has a result of one's own, and leaves the rules of others alone", async () => {
  const rules = async () => (await host.call("get", "/_host/faults")).rules.map(({ service, matched }) => [service, matched]);
  await host.call("put", "/_host/faults", { body: { rules: [{ service: "craft*", delay: 1, times: 1 }] } });
  let crafted = false;
  const held = await host.hold("craft*");
  const crafting = open().then(() => (crafted = true));
  assert.equal((await held.begun()).method, "craftPlayerLootWithRefId");
  assert.equal(crafted, false);
  await held.release();
  await crafting;

  const failing = await host.hold("craft*");
  const refused = assert.rejects(open(), refusal(500, /No coins today/));
  await failing.fail("No coins today");
  await refused;
  assert.deepEqual(await rules(), [["craft*", 2]]);
  const none = await host.hold("redeemPlayerLoot", 50);
  await assert.rejects(none.release(), new LootHostFailure("No call of redeemPlayerLoot came within 50 ms."));
});

test("a reset brings the world's start back", async () => {
  await open();
  await host.reset();
  assert.equal((await host.call("get", "/tav-loot/v2/player-loot-map")).playerLoot[chest]?.count, 2);
  assert.deepEqual(await host.settle(), []);
});

test("a refused control says why", async () => {
  await assert.rejects(host.nextResult("NO_SUCH_RECIPE", []), refusal(400, /NO_SUCH_RECIPE/));
});

test("what a path holds is known to the compiler", async () => {
  const ready: ResourceEvent<"/tav-loot/v1/ready"> = { id: 1, uri: "", eventType: "Update", data: true };
  const id: string = chest;
  const ends = [
    await host.subscribe("/tav-loot/v1/player-loot", (e) => e.eventType === "Delete" || e.data[0]?.lootName.length),
    await host.subscribe(`/tav-loot/v1/player-loot/${id}`, (e) => e.eventType === "Delete" || e.data.isNew),
    await host.subscribe(`/tav-loot/v1/player-loot/${id}/context-menu`, (e) => e.eventType === "Delete" || e.data[0]?.name),
    // @ts-expect-error: an item has no such member
    await host.subscribe("/tav-loot/v1/player-loot/CHEST_lantern", (e) => e.eventType === "Delete" || e.data.colour),
    // @ts-expect-error: a deletion has no data
    await host.subscribe("/tav-loot/v1/ready", (e) => e.data === ready),
    // @ts-expect-error: there is no such resource
    await host.subscribe("/tav-loot/v1/player-loot/CHEST_lantern/nothing", () => {}),
    // @ts-expect-error: nor this
    await host.subscribe("/tav-loot/v3/ready", () => {}),
  ];
  for (const end of ends) end();
  // @ts-expect-error: the body is a list
  await assert.rejects(host.call("post", "/tav-loot/v1/recipes/{recipeName}/craft", { path: { recipeName: "A" }, body: 7 }), ApiFailure);
});

for (const [why, options, message] of [
  ["no program", { program: "/no/program" }, /^The loot host did not start\. There is no program \/no\/program\.$/],
  ["another program", { program: "/bin/echo" }, /\/bin\/echo is another program: it began with "--until/],
  ["no such scenario", { scenario: "sampel" }, /with status 2\.\nIts last lines:\n[^]*sampel/],
  ["a wrong option", { arguments: ["--colour"] }, /with status 2\.\nIts last lines:\n[^]*--colour/],
  ["too slow", { startMilliseconds: 0 }, /was not ready after 0 ms\./],
] as const) {
  test(`a host that does not start: ${why}`, () =>
    assert.rejects(startLootHost(options), (failure) => failure instanceof LootHostFailure && message.test(failure.message)));
}

test("another machine", async () => {
  const { os, cpu } = JSON.parse(await readFile("node_modules/tav-loot-host/package.json", "utf8"));
  assert.deepEqual([os, cpu], [["linux"], ["x64"]]);
  const found = Object.getOwnPropertyDescriptor(process, "platform")!;
  Object.defineProperty(process, "platform", { value: "win32" });
  await assert.rejects(startLootHost(), (failure) => /for linux-x64, not for win32-/.test(String(failure)));
  Object.defineProperty(process, "platform", found);
});

test("worlds that never get ready start too, and say why they are not", async () => {
  for (const [options, reason] of [
    [{ scenario: "disabled" }, /^The configuration value "Enabled" is not true\.$/],
    [{ signIn: false }, /^There is no login session\.$/],
    [{ clock: "2030-01-01T12:00:00Z" }, /^What is left waits for the clock.* These sources have not responded: tournamentLogos\./],
  ] as const) {
    const other = await startLootHost(options);
    assert.match((await other.settle()).join(" "), reason);
    await other.stop();
    await other.stop();
    await assert.rejects(other.call("get", "/tav-loot/v1/ready"), new ApiFailure(0, "The host does not respond."));
  }
});

const run = (script: string, output: "pipe" | "inherit") =>
  spawn(process.execPath, ["--input-type=module", "--eval", script], { stdio: ["ignore", output, "inherit"] });

test("the host ends with a process that is killed", async () => {
  const script = `import { startLootHost } from "tav-loot-host";
    console.log((await startLootHost()).url); setInterval(() => {}, 1000);`;
  const parent = run(script, "pipe");
  const [url] = (await once(parent.stdout!, "data")) as [Buffer];
  parent.kill("SIGKILL");
  for (;;) {
    const up = await fetch(`${url.toString().trim()}/_host/health`).then(() => true, () => false);
    if (!up) return;
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
});

test("a process that forgets to stop its host ends all the same", async () => {
  const script = `import { startLootHost } from "tav-loot-host"; await startLootHost();`;
  assert.deepEqual(await once(run(script, "inherit"), "exit"), [0, null]);
});
