// The host's timeline, followed while a view shows it.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { Schemas } from "../api/types";

export type Row = Schemas["TimelineRow"];
export const rows = signal<readonly Row[]>([]);
export const isPaused = signal(false);
// Rows that came while it was paused.
export const missed = signal(0);

const mostRows = 5000;
let source: EventSource | undefined;
let fresh: Row[] = [];
let isDrawing = false;
let last = 0;
// What was cleared stays away.
let clearedUpTo = 0;
let timer: ReturnType<typeof setTimeout> | undefined;

function draw(): void {
  isDrawing = false;
  if (isPaused.value) {
    missed.value = fresh.length;
    return;
  }
  rows.value = [...rows.value, ...fresh].slice(-mostRows);
  fresh = [];
  missed.value = 0;
}

function add(row: Row): void {
  if (row.id <= last) return;
  last = row.id;
  fresh.push(row);
  if (fresh.length > mostRows) fresh.shift();
  if (isDrawing) return;
  isDrawing = true;
  requestAnimationFrame(draw);
}

function follow(): void {
  const opened = new EventSource(`/_host/timeline/stream?lastEventId=${last}`);
  source = opened;
  opened.addEventListener("row", (message: MessageEvent<string>) => add(JSON.parse(message.data) as Row));
  opened.addEventListener("gap", (message: MessageEvent<string>) => {
    if ((JSON.parse(message.data) as Schemas["GapEvent"]).restarted) void start();
  });
  opened.onerror = () => {
    opened.close();
    if (source === opened) timer = setTimeout(() => void start(), 1000);
  };
}

// A host that was started again counts its rows from 1 again.
function take(held: readonly Row[]): void {
  const newest = held.at(-1)?.id ?? 0;
  if (newest < last) {
    rows.value = [];
    fresh = [];
    last = clearedUpTo = 0;
  }
  if (isPaused.value) fresh = [...fresh, ...held.filter((row) => row.id > last)].slice(-mostRows);
  else {
    rows.value = held.filter((row) => row.id > clearedUpTo);
    fresh = [];
  }
  last = newest;
  missed.value = fresh.length;
}

// Reads what is held and follows what comes.
async function start(): Promise<void> {
  stop();
  try {
    const page = await call("get", "/_host/timeline", { query: { limit: 1000 } });
    take(page.rows);
    follow();
  } catch {
    timer = setTimeout(() => void start(), 1000);
  }
}

function stop(): void {
  clearTimeout(timer);
  source?.close();
  source = undefined;
}

function onVisibility(): void {
  if (document.hidden) stop();
  else void start();
}

// Follows until what it returns is called.
export function followTimeline(): () => void {
  void start();
  document.addEventListener("visibilitychange", onVisibility);
  return () => {
    document.removeEventListener("visibilitychange", onVisibility);
    stop();
  };
}

export function setPaused(paused: boolean): void {
  isPaused.value = paused;
  draw();
}

export function clear(): void {
  clearedUpTo = rows.value.at(-1)?.id ?? clearedUpTo;
  rows.value = [];
}
