// Crafts and redeems that were sent from here, and what came of the latest.
import { signal } from "@preact/signals";
import { ApiFailure, ask, headerOf, type Reply, type Returned } from "../api/client";
import type { PlayerLootUpdate } from "../api/types";
import { onEvent } from "./stream";
import { refreshWorld } from "./world";

export interface Outcome {
  id: number;
  title: string;
  // The item it was started from.
  lootId: string;
  milliseconds: number;
  update?: PlayerLootUpdate;
  failure?: string;
  // Why the platform refused it.
  details?: string;
  // The request's row in the timeline.
  row?: string;
}
export interface Waiting {
  id: number;
  title: string;
  lootId: string;
  since: number;
}

export const waiting = signal<Waiting[]>([]);
export const outcome = signal<Outcome | undefined>(undefined);
// A browser opens six connections to a host: some have to stay free to end what hangs.
export const mostWaiting = 3;
let last = 0;
// Results up to this one are of a world that has gone.
let gone = 0;

function addReply(result: Outcome, reply: Reply | undefined): void {
  const row = headerOf(reply, "x-loot-host-row");
  if (row) result.row = row;
  const refusal = headerOf(reply, "x-loot-host-refusal");
  if (refusal) result.details = (JSON.parse(refusal) as { details: string }).details;
}

async function track(title: string, lootId: string, work: () => Promise<Returned<PlayerLootUpdate>>): Promise<void> {
  const id = ++last;
  const since = performance.now();
  waiting.value = [...waiting.value, { id, title, lootId, since }];
  const result: Outcome = { id, title, lootId, milliseconds: 0 };
  try {
    const returned = await work();
    result.update = returned.result;
    addReply(result, returned.reply);
  } catch (failure) {
    result.failure = (failure as Error).message;
    if (failure instanceof ApiFailure) addReply(result, failure.reply);
  }
  result.milliseconds = performance.now() - since;
  waiting.value = waiting.value.filter((entry) => entry.id !== id);
  if (id > gone) outcome.value = result;
  refreshWorld();
}

export function startCrafts(): void {
  onEvent((event) => {
    if (event.kind !== "reset" && !(event.kind === "gap" && event.restarted)) return;
    gone = last;
    outcome.value = undefined;
  });
}

export const craft = (title: string, lootId: string, recipeName: string, items: string[], repeat: number) =>
  track(title, lootId, () =>
    ask("post", "/tav-loot/v1/recipes/{recipeName}/craft", { path: { recipeName }, query: { repeat }, body: items }),
  );

export const redeem = (title: string, lootId: string, lootName: string) =>
  track(title, lootId, () => ask("post", "/tav-loot/v1/player-loot/{lootName}/redeem", { path: { lootName } }));
