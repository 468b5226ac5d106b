// Which view the address names, and what it shows: "#/inventory?item=CHEST_1". Addresses can be shared; back and
// forward work.
import { signal } from "@preact/signals";

export const views = ["inventory", "timeline", "world", "api", "host"] as const;
export type View = (typeof views)[number];
export interface Route {
  view: View;
  values: Readonly<Record<string, string>>;
}

function read(): Route {
  const [path = "", query = ""] = location.hash.replace(/^#\/?/, "").split("?", 2);
  const view = views.find((name) => name === path) ?? "inventory";
  return { view, values: Object.fromEntries(new URLSearchParams(query)) };
}

export const route = signal<Route>(read());
addEventListener("popstate", () => (route.value = read()));
addEventListener("hashchange", () => (route.value = read()));

export function addressOf(view: View, values: Record<string, string> = {}): string {
  const query = new URLSearchParams(Object.entries(values).filter(([, value]) => value !== "")).toString();
  return `#/${view}${query ? `?${query}` : ""}`;
}

export function go(view: View, values: Record<string, string> = {}): void {
  history.pushState(null, "", addressOf(view, values));
  route.value = read();
}

// Changes values of the present view. What is typed letter by letter replaces the address; a step that back should undo
// is pushed.
export function change(values: Record<string, string>, step: "push" | "replace" = "replace"): void {
  const { view, values: present } = route.value;
  const address = addressOf(view, { ...present, ...values });
  if (step === "push") history.pushState(null, "", address);
  else history.replaceState(null, "", address);
  route.value = read();
}
