// The host's live events. The connection comes back by itself and goes on after the last event that was seen; it rests
// while the page is hidden, because a browser has few connections for all its pages.
import { signal } from "@preact/signals";
import { targetOf } from "../api/client";
import type { Schemas } from "../api/types";

export type StreamEvent =
  | { kind: "resource"; id: number; uri: string; type: string; text: string }
  | { kind: "reset"; id: number }
  | { kind: "gap"; id: number; restarted: boolean };

export type ConnectionState = "connecting" | "live" | "lost";
export const connection = signal<ConnectionState>("connecting");
// Counts connections: what was read before may have changed meanwhile.
export const connections = signal(0);
// Counts what the host's controls have changed for any client; what comes close together counts once.
export const controls = signal(0);

type Listener = (event: StreamEvent) => void;
const listeners = new Set<Listener>();

let source: EventSource | undefined;
let lastId: number | undefined;
let retry = 0;
let timer: ReturnType<typeof setTimeout> | undefined;

// The head of a resource event, without reading its data: the maps of thousands of items come with every change.
const head = /^\{"uri":("(?:[^"\\]|\\.)*"),"eventType":"(\w+)"/;

export function readResourceEvent(id: number, text: string): StreamEvent | undefined {
  const found = head.exec(text);
  if (!found) return undefined;
  return { kind: "resource", id, uri: JSON.parse(found[1] ?? '""') as string, type: found[2] ?? "", text };
}

export function dataOf(event: { text: string }): unknown {
  return (JSON.parse(event.text) as { data?: unknown }).data;
}

// Gets every event. Returns what ends that.
export function onEvent(listener: Listener): () => void {
  listeners.add(listener);
  return () => listeners.delete(listener);
}

function deliver(event: StreamEvent | undefined): void {
  if (!event) return;
  lastId = event.id;
  for (const listener of listeners) listener(event);
}

const controlPause = 150;
let controlTimer: ReturnType<typeof setTimeout> | undefined;

function noteControls({ operationIds }: Schemas["ControlEvent"]): void {
  if (operationIds.every((id) => id.startsWith("Await"))) return;
  controlTimer ??= setTimeout(() => {
    controlTimer = undefined;
    controls.value++;
  }, controlPause);
}

function open(): void {
  clearTimeout(timer);
  source?.close();
  const opened = new EventSource(targetOf("/_host/events", { query: { controls: true, lastEventId: lastId } }));
  source = opened;
  opened.onopen = () => {
    retry = 0;
    connection.value = "live";
    connections.value++;
  };
  opened.onerror = () => {
    if (source !== opened) return;
    opened.close();
    connection.value = "lost";
    timer = setTimeout(open, Math.min(4000, 250 * 2 ** retry++));
  };
  const on = (name: string, read: (id: number, data: string) => StreamEvent | undefined) =>
    opened.addEventListener(name, (message: MessageEvent<string>) =>
      deliver(read(Number(message.lastEventId), message.data)),
    );
  opened.addEventListener("control", (message: MessageEvent<string>) => noteControls(JSON.parse(message.data) as Schemas["ControlEvent"]));
  on("resource", readResourceEvent);
  on("reset", (id) => ({ kind: "reset", id }));
  on("gap", (id, data) => ({ kind: "gap", id, restarted: (JSON.parse(data) as { restarted: boolean }).restarted }));
}

// Called once.
export function connect(): void {
  open();
  document.addEventListener("visibilitychange", () => {
    if (document.hidden) {
      clearTimeout(timer);
      source?.close();
      source = undefined;
    } else if (!source) {
      retry = 0;
      open();
    }
  });
}

export function retryNow(): void {
  retry = 0;
  open();
}
