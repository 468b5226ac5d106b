// The host's clock, as it was last read and as it must be now.
import { signal } from "@preact/signals";
import { call } from "../api/client";
import type { Schemas } from "../api/types";
import { connection, connections, controls } from "./stream";

export type Clock = Schemas["HostClock"];
export const clock = signal<Clock | undefined>(undefined);
export const shownTime = signal("");
let readAt = 0;

export function setClock(next: Clock): void {
  clock.value = next;
  readAt = performance.now();
  show();
}

function show(): void {
  const known = clock.value;
  if (!known) return;
  const passed = known.mode === "frozen" ? 0 : (performance.now() - readAt) * known.scale;
  shownTime.value = new Date(known.milliseconds + passed).toISOString().slice(0, 19).replace("T", " ");
}

async function read(): Promise<void> {
  try {
    setClock(await call("get", "/_host/clock"));
  } catch {
    // The connection's state shows it.
  }
}

export function startClock(): void {
  connections.subscribe((count) => void (count > 0 && read()));
  controls.subscribe((count) => void (count > 0 && read()));
  setInterval(show, 1000);
  setInterval(() => void (!document.hidden && connection.value === "live" && read()), 5000);
}
