// What a button does: one call at a time, its failure shown.
import { useSignal } from "@preact/signals";
import { useRef } from "preact/hooks";
import { refreshWorld } from "../state/world";
import { say } from "./notices";

export interface Action<Arguments extends unknown[]> {
  run: (...values: Arguments) => Promise<void>;
  isRunning: boolean;
}

// Runs `work` when asked; what it returns is shown as done, what it throws as failed.
export function useAction<Arguments extends unknown[]>(
  work: (...values: Arguments) => Promise<string | void>,
): Action<Arguments> {
  const isRunning = useSignal(false);
  const latest = useRef(work);
  latest.current = work;
  const run = useRef(async (...values: Arguments) => {
    if (isRunning.peek()) return;
    isRunning.value = true;
    try {
      const done = await latest.current(...values);
      if (done) say("done", done);
    } catch (failure) {
      say("failed", (failure as Error).message);
    }
    isRunning.value = false;
    refreshWorld();
  });
  return { run: run.current, isRunning: isRunning.value };
}
