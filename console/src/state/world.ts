// What the emulated platform holds, read again after each change that is known of.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { Result } from "../api/types";
import { connection, connections, controls, onEvent } from "./stream";

export type World = Result<"/_host/state", "get">;
export const world = signal<World | undefined>(undefined);

let timer: ReturnType<typeof setTimeout> | undefined;
let isReading = false;

async function read(): Promise<void> {
  if (isReading) return refreshWorld();
  isReading = true;
  try {
    world.value = await call("get", "/_host/state");
  } catch {
    // The connection's state shows it.
  }
  isReading = false;
}

// Reads it soon; many calls in a row read it once.
export function refreshWorld(): void {
  clearTimeout(timer);
  timer = setTimeout(() => void read(), 150);
}

export function startWorld(): void {
  onEvent(refreshWorld);
  controls.subscribe((count) => void (count > 0 && refreshWorld()));
  connections.subscribe((count) => void (count > 0 && refreshWorld()));
  setInterval(() => {
    if (!document.hidden && connection.value === "live") void read();
  }, 5000);
}
