// The worlds inside the program, and which of them the present one began as.
import { computed, signal } from "@preact/signals";
import { call } from "../api/client";
import type { Result } from "../api/types";
import { connections, controls, onEvent } from "./stream";

export const scenarios = signal<Result<"/_host/scenarios", "get">>([]);
export const scenario = computed(() => scenarios.value.find(({ current }) => current)?.name);

async function read(): Promise<void> {
  try {
    scenarios.value = await call("get", "/_host/scenarios");
  } catch {
    // The connection's state shows it.
  }
}

export function startScenarios(): void {
  for (const count of [connections, controls]) count.subscribe((value) => void (value > 0 && read()));
  onEvent((event) => void (event.kind === "reset" && read()));
}
