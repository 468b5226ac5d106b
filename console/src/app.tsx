// The frame of the console: top bar, navigation, and the view that the address names.
import { useEffect } from "preact/hooks";
import { addressOf, go, route, views, type View } from "./route";
import { Icon, type IconName } from "./ui/icon";
import { Notices } from "./ui/notices";
import { TopBar } from "./top_bar";
import { ApiView } from "./views/api/api_view";
import { HostView } from "./views/host/host_view";
import { InventoryView } from "./views/inventory/inventory_view";
import { TimelineView } from "./views/timeline/timeline_view";
import { WorldView } from "./views/world/world_view";

const titles: Record<View, [text: string, icon: IconName]> = {
  inventory: ["Inventory", "grid"],
  timeline: ["Timeline", "timeline"],
  world: ["World", "globe"],
  api: ["API", "braces"],
  host: ["Host", "server"],
};
const pages: Record<View, () => preact.JSX.Element> = {
  inventory: InventoryView,
  timeline: TimelineView,
  world: WorldView,
  api: ApiView,
  host: HostView,
};

const isTyping = (target: EventTarget | null) => target instanceof Element && target.closest("input, textarea, select") !== null;

// Digits go to the views, "/" to the view's search field.
function onKey(event: KeyboardEvent): void {
  if (isTyping(event.target) || event.ctrlKey || event.metaKey || event.altKey) return;
  const view = views[Number(event.key) - 1];
  if (view) go(view);
  else if (event.key === "/") {
    const field = document.querySelector<HTMLInputElement>("main input[type=search]");
    if (field) event.preventDefault();
    field?.focus();
  }
}

export function App() {
  const { view } = route.value;
  const Page = pages[view];
  useEffect(() => {
    addEventListener("keydown", onKey);
    return () => removeEventListener("keydown", onKey);
  }, []);
  useEffect(() => {
    document.title = `${titles[view][0]} · Loot console`;
  }, [view]);
  return (
    <div class="app">
      <a class="skip" href="#main" onClick={(event) => (event.preventDefault(), document.getElementById("main")?.focus())}>
        Skip to the content
      </a>
      <TopBar />
      <nav class="views" aria-label="Views">
        {views.map((name, index) => (
          <a key={name} href={addressOf(name)} aria-current={name === view ? "page" : undefined} title={`${titles[name][0]} (${index + 1})`}>
            <Icon name={titles[name][1]} />
            <span>{titles[name][0]}</span>
          </a>
        ))}
        <a href="/_host/docs" target="docs" rel="noreferrer" title="The documentation, in a new tab">
          <Icon name="book" />
          <span>Docs</span>
        </a>
      </nav>
      <main id="main" tabIndex={-1}>
        <Page key={view} />
      </main>
      <Notices />
    </div>
  );
}
