// Other things that the plugin publishes, by path: each is read when it is first asked for and kept by its events.
import { signal, type Signal } from "@preact/signals";
import { call } from "../api/client";
import type { PathOf, Result } from "../api/types";
import { connections, dataOf, onEvent } from "./stream";

type Path = Exclude<Extract<PathOf<"get">, `/tav-loot/${string}`>, `${string}{${string}`>;
interface Kept {
  value: Signal<unknown>;
  read: () => Promise<void>;
}
const kept = new Map<string, Kept>();

function keep(path: Path): Kept {
  const value = signal<unknown>(undefined);
  const read = async () => {
    try {
      value.value = await call("get", path);
    } catch {
      value.value = undefined;
    }
  };
  const entry = { value, read };
  kept.set(path, entry);
  if (connections.value > 0) void read();
  return entry;
}

// The value at the path; undefined while it is not known.
export function resource<P extends Path>(path: P): Signal<Result<P, "get"> | undefined> {
  return (kept.get(path) ?? keep(path)).value as Signal<Result<P, "get"> | undefined>;
}

export function startResources(): void {
  onEvent((event) => {
    if (event.kind !== "resource") {
      for (const entry of kept.values()) void entry.read();
      return;
    }
    const entry = kept.get(event.uri);
    if (!entry) return;
    // A deletion is of a part of the list: the rest is read again.
    if (event.type === "Delete") void entry.read();
    else entry.value.value = dataOf(event);
  });
  connections.subscribe((count) => {
    if (count > 0) for (const entry of kept.values()) void entry.read();
  });
}
