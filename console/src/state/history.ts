// Published items over time, from the events that the host still holds: what an item was at each event.
import { signal } from "@preact/signals";
import type { PlayerLoot } from "../api/types";
import { itemIdOf, items } from "./inventory";
import { dataOf, onEvent, readResourceEvent, type StreamEvent } from "./stream";

interface Change {
  id: number;
  type: string;
  item: PlayerLoot | undefined;
}
export interface Point {
  id: number;
  text: string;
}

const mostPoints = 20_000;
// By loot id, oldest first.
const changes = new Map<string, Change[]>();
const resets: number[] = [];
export const points = signal<readonly Point[]>([]);
let known: Point[] = [];
let isDrawing = false;

function draw(): void {
  if (isDrawing) return;
  isDrawing = true;
  setTimeout(() => {
    isDrawing = false;
    points.value = known.slice();
  }, 50);
}

function add(event: StreamEvent): void {
  // A host that was started again counts its events from 1 again.
  if (event.kind === "gap" && event.restarted) {
    forget();
    draw();
    return;
  }
  if (known.length > 0 && event.id <= (known.at(-1)?.id ?? 0)) return;
  if (event.kind === "reset") {
    resets.push(event.id);
    known.push({ id: event.id, text: "reset" });
  } else if (event.kind === "resource") {
    const lootId = itemIdOf(event.uri);
    if (lootId === undefined) return;
    const item = event.type === "Delete" ? undefined : (dataOf(event) as PlayerLoot);
    const list = changes.get(lootId) ?? [];
    list.push({ id: event.id, type: event.type, item });
    changes.set(lootId, list);
    known.push({ id: event.id, text: `${event.type} ${lootId}` });
  }
  if (known.length > mostPoints) known = known.slice(-mostPoints);
  draw();
}

function forget(): void {
  changes.clear();
  resets.length = 0;
  known = [];
}

// An item at an event; "unknown" when the events that said so are not held any more.
function itemAt(lootId: string, list: Change[], id: number): PlayerLoot | undefined | "unknown" {
  const before = list.findLast((change) => change.id <= id);
  const reset = resets.findLast((place) => place <= id) ?? 0;
  if (before && before.id > reset) return before.item;
  if (reset > 0) return undefined;
  const next = list.find((change) => change.id > id);
  if (!next) return items.get(lootId);
  return next.type === "Create" ? undefined : "unknown";
}

// All items as they were published at an event.
export function inventoryAt(id: number): Map<string, PlayerLoot | "unknown"> {
  const held = new Map<string, PlayerLoot | "unknown">();
  const isUnchanged = resets.every((place) => place <= id);
  for (const [lootId, item] of items) if (isUnchanged && !changes.has(lootId)) held.set(lootId, item);
  for (const [lootId, list] of changes) {
    const item = itemAt(lootId, list, id);
    if (item) held.set(lootId, item);
  }
  return held;
}

let readUpTo: Promise<void> | undefined;

// Reads the events that are held, once, and follows those that come.
export function startHistory(): void {
  if (readUpTo) return;
  const waiting: StreamEvent[] = [];
  let isRead = false;
  onEvent((event) => (isRead ? add(event) : waiting.push(event)));
  readUpTo = new Promise((done) => {
    const source = new EventSource("/_host/events?lastEventId=0");
    let quiet: ReturnType<typeof setTimeout> | undefined;
    const finish = () => {
      source.close();
      isRead = true;
      waiting.forEach(add);
      done();
    };
    // What is held comes at once: a pause is its end.
    const wait = () => {
      clearTimeout(quiet);
      quiet = setTimeout(finish, 400);
    };
    source.onopen = wait;
    source.onerror = finish;
    const on = (kind: "resource" | "reset") =>
      source.addEventListener(kind, (message: MessageEvent<string>) => {
        const id = Number(message.lastEventId);
        const event: StreamEvent | undefined = kind === "reset" ? { kind, id } : readResourceEvent(id, message.data);
        if (event) add(event);
        wait();
      });
    on("resource");
    on("reset");
  });
}
