// A resource that the plugin publishes changes of once it was read.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import { loadState, mapPath } from "../state/inventory";
import { connections, dataOf, onEvent } from "../state/stream";


// The value at `uri`, read with `read`; undefined while it is not known. The plugin follows only what can have a value
// when it is read: a change of the inventory may give it one later. As long as the inventory is waited for, this is too.
export function useWatched<T>(uri: string, read: () => Promise<T>): T | undefined {
  const value = useSignal<T | undefined>(undefined);
  const connection = connections.value;
  const isHeld = loadState.value !== "waiting";
  useEffect(() => {
    let isUsed = true;
    let latest = 0; // what was read before an event is older than the event
    const set = (next: T | undefined) => {
      if (isUsed) value.value = next;
    };
    const load = () => {
      const own = ++latest;
      const setOwn = (next?: T) => own === latest && set(next);
      void read().then(setOwn, () => setOwn());
    };
    if (!isHeld) return undefined;
    const end = onEvent((event) => {
      if (event.kind === "resource" && event.uri === mapPath) load();
      else if (event.kind === "reset" || (event.kind === "resource" && event.uri === uri)) {
        ++latest;
        set(event.kind === "reset" ? undefined : (dataOf(event) as T));
      }
    });
    load();
    return () => {
      isUsed = false;
      end();
    };
  }, [uri, connection, isHeld]);
  return value.value;
}
