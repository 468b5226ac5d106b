// Starts the development host of the loot plugin, for tests.
import { fileURLToPath } from "node:url";
import { LootHostFailure } from "./failure.js";
import { LootHost } from "./loot_host.js";
import { Program } from "./program.js";

export { ApiFailure } from "./api/client.js";
export type { Given, PlayerLoot, PlayerLootDelta, PlayerLootUpdate, Result, Schemas } from "./api/types.js";
export { LootHostFailure } from "./failure.js";
export type { HeldCall } from "./held_call.js";
export type { Added, LootHost, WaitCondition } from "./loot_host.js";
export type { ResourceEvent, ResourcePath } from "./resource_types.js";

/** What is left out is as the program has it. */
export interface LootHostOptions {
  /** a world inside the program */
  scenario?: string;
  /** a world file instead */
  world?: string;
  /** the same seed and requests give the same loot */
  seed?: number | bigint;
  /** a time such as "2030-01-01T12:00:00Z", frozen until it is advanced */
  clock?: string;
  /** any free one */
  port?: number;
  /** false: the player is not signed in */
  signIn?: boolean;
  /** of pages, beside those of this machine */
  allowOrigins?: readonly string[];
  /** a folder of pictures */
  assets?: string;
  /** further ones of the program */
  arguments?: readonly string[];
  /** in place of that of this package */
  program?: string;
  /** how long it may take to start: 30,000 */
  startMilliseconds?: number;
  /** gets each line that the program writes to standard error */
  log?: (line: string) => void;
}

function argumentsOf(options: LootHostOptions): string[] {
  const { scenario, world, seed, clock, assets } = options;
  const named = { scenario, world, seed, clock, assets };
  return [
    ...["--port", String(options.port ?? 0)],
    ...Object.entries(named).flatMap(([name, value]) => (value === undefined ? [] : [`--${name}`, String(value)])),
    ...(options.allowOrigins ?? []).flatMap((origin) => ["--allow-origin", origin]),
    ...(options.signIn === false ? ["--no-login"] : []),
    ...(options.arguments ?? []),
  ];
}

function packedProgram(): string {
  const machine = `${process.platform}-${process.arch}`;
  if (machine === "linux-x64") return fileURLToPath(new URL("../host/tav-loot-host", import.meta.url));
  throw new LootHostFailure(`The package has the program for linux-x64, not for ${machine}: name one with the option "program".`);
}

/**
 * Starts a host and waits until its plugin has settled: in worlds where loot can be ready, it is. The host ends with this
 * process at the latest. Throws LootHostFailure, with the program's last lines, when it does not start.
 */
export async function startLootHost(options: LootHostOptions = {}): Promise<LootHost> {
  const path = options.program ?? packedProgram();
  const program = await Program.start(path, argumentsOf(options), options.startMilliseconds ?? 30_000, options.log ?? (() => {}));
  const host = new LootHost(program);
  try {
    await host.settle();
  } catch (failure) {
    await host.stop();
    throw failure;
  }
  return host;
}
