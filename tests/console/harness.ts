// A development host and a browser for the tests of the console. A failing test leaves a screenshot.
import assert from "node:assert/strict";
import { spawn, type ChildProcess } from "node:child_process";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { createInterface } from "node:readline";
import { after, before, test } from "node:test";
import { chromium, type Browser, type Page } from "playwright-core";

const hostCommand = process.env["KEST_HOST"] ?? "";
const screenshots = process.env["KEST_SCREENSHOTS"] ?? ".";
const axeText = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

export class Host {
  url = "";
  private process: ChildProcess | undefined;

  async start(...options: string[]): Promise<void> {
    const port = this.url ? new URL(this.url).port : "0";
    const command = ["--port", port, "--seed", "7", ...options];
    const started = spawn(hostCommand, command, { stdio: ["ignore", "pipe", "ignore"] });
    this.process = started;
    const [line] = (await once(createInterface(started.stdout), "line")) as [string];
    this.url = (JSON.parse(line) as { url: string }).url;
    await this.call("POST", "/_host/idle");
  }
  async stop(): Promise<void> {
    if (!this.process || this.process.exitCode !== null) return;
    this.process.kill("SIGTERM");
    await once(this.process, "exit");
  }
  async call(method: string, path: string, body?: unknown): Promise<unknown> {
    const sent = body === undefined ? null : JSON.stringify(body);
    const headers = { "Content-Type": "application/json" };
    const response = await fetch(new URL(path, this.url), { method, headers, body: sent });
    const text = await response.text();
    assert.ok(response.ok, `${method} ${path}: ${response.status} ${text}`);
    return text ? JSON.parse(text) : undefined;
  }
}

export async function startBrowser(): Promise<Browser> {
  // The host's own refusal of other pages is looked at, so the browser's is switched off.
  const options = ["--disable-features=LocalNetworkAccessChecks"];
  if (process.getuid?.() === 0) options.push("--no-sandbox");
  return chromium.launch({ executablePath: process.env["KEST_CHROMIUM"] ?? "/usr/bin/chromium", args: options });
}

export const host = new Host();
let browser: Browser;
before(async () => {
  await host.start();
  browser = await startBrowser();
});
after(async () => {
  await browser.close();
  await host.stop();
});

export interface Screen {
  width?: number;
  height?: number;
  colors?: "light" | "dark";
}

// Runs `work` with a page at the address. Nothing may be logged as an error meanwhile: that is where the browser reports
// what the content security policy stops.
export function onPage(name: string, address: string, work: (page: Page) => Promise<void>, screen: Screen = {}): void {
  test(name, async () => {
    const { width = 1280, height = 800, colors = "light" } = screen;
    const context = await browser.newContext({ viewport: { width, height }, colorScheme: colors, timezoneId: "Asia/Kathmandu" });
    const page = await context.newPage();
    page.setDefaultTimeout(20_000);
    const errors: string[] = [];
    page.on("console", (message) => message.type() === "error" && errors.push(message.text()));
    page.on("pageerror", (error) => errors.push(error.stack ?? error.message));
    try {
      await page.goto(new URL(address, host.url).href);
      if (!address.startsWith("/")) await page.getByText("Live", { exact: true }).waitFor({ state: "attached" });
      await work(page);
      assert.deepEqual(errors.filter((text) => !isExpected(text)), []);
    } catch (failure) {
      const file = `${screenshots}/${name.replaceAll(/\W+/g, "-")}.png`;
      await page.screenshot({ path: file });
      console.error(`Screenshot: ${file}`);
      throw failure;
    } finally {
      await context.close();
    }
  });
}

// Chromium reports refused connections and responses of status 400 and above as errors.
const isExpected = (text: string) => /ERR_CONNECTION|ERR_INCOMPLETE|the server responded with a status of/.test(text);

export async function reset(): Promise<void> {
  await host.call("POST", "/_host/reset");
  await host.call("POST", "/_host/idle");
}

// What axe finds wrong, as text.
export async function axe(page: Page): Promise<string[]> {
  await page.evaluate(axeText.replace(/^/, "window.module = undefined; "));
  const found = await page.evaluate(async () => {
    const run = (window as unknown as { axe: { run(): Promise<{ violations: Violation[] }> } }).axe;
    return (await run.run()).violations;
  });
  return found.flatMap(({ id, help, nodes }) => nodes.map((node) => `${id}: ${help}: ${node.html.slice(0, 200)}`));
}
interface Violation {
  id: string;
  help: string;
  nodes: { html: string }[];
}

// The tile of an item.
export const tile = (page: Page, lootId: string) => page.locator(`[data-loot-id="${lootId}"]`);
