// A value that is read for a part of the page, again when what it depends on changes.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";

export interface Fetched<T> {
  value: T | undefined;
  failure: string;
  again: () => void;
}

// `key` says what the value depends on. The value shown stays until the new one has come.
export function useFetched<T>(read: () => Promise<T>, key: unknown): Fetched<T> {
  const state = useSignal<{ value: T | undefined; failure: string }>({ value: undefined, failure: "" });
  const turn = useSignal(0);
  useEffect(() => {
    let isLatest = true;
    read().then(
      (value) => isLatest && (state.value = { value, failure: "" }),
      (failure: Error) => isLatest && (state.value = { value: undefined, failure: failure.message }),
    );
    return () => void (isLatest = false);
  }, [key, turn.value]);
  return { ...state.value, again: () => void turn.value++ };
}
