// A resource that the plugin publishes changes of once it was read.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import { connections, dataOf, onEvent } from "../state/stream";

// The value at `uri`, read with `read`; undefined while it is not known.
export function useWatched<T>(uri: string, read: () => Promise<T>): T | undefined {
  const value = useSignal<T | undefined>(undefined);
  const connection = connections.value;
  useEffect(() => {
    let isUsed = true;
    const set = (next: T | undefined) => {
      if (isUsed) value.value = next;
    };
    const load = () => void read().then(set, () => set(undefined));
    const end = onEvent((event) => {
      if (event.kind !== "resource") load();
      else if (event.uri === uri) set(dataOf(event) as T);
    });
    load();
    return () => {
      isUsed = false;
      end();
    };
  }, [uri, connection]);
  return value.value;
}
