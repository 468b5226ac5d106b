// The inventory: filters, the grid, and the panel of the selected item.
import { useMemo } from "preact/hooks";
import { call } from "../../api/client";
import { addressOf, change, route } from "../../route";
import { inventoryVersion, items, load, loadFailure, loadState } from "../../state/inventory";
import { login } from "../../state/player";
import { resource } from "../../state/resources";
import { controls } from "../../state/stream";
import { world } from "../../state/world";
import { useAction } from "../../ui/action";
import { Button, Empty } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { readFilters, select } from "./filters";
import { Grid } from "./grid";
import { ItemPanel } from "./item_panel";
import { Toolbar } from "./toolbar";

function SignIn() {
  const signIn = useAction(login);
  return (
    <Button kind="main" icon="person" isRunning={signIn.isRunning} onClick={() => void signIn.run()}>
      Sign in
    </Button>
  );
}

// The plugin retrieves by itself when it can: what it waits for is said, and reading makes it try.
function NotRetrieved() {
  const read = useAction(load);
  const why = useFetched(() => call("get", "/_host/explain/retrieval"), controls.value);
  return (
    <Empty icon="grid" title="Waiting for the plugin to publish an inventory">
      {why.value && <p>{why.value.reason}</p>}
      <Button isRunning={read.isRunning} onClick={() => void read.run()}>
        Read it now
      </Button>
    </Empty>
  );
}

function SwitchedOff() {
  const why = useFetched(() => call("get", "/_host/explain/enabled"), controls.value);
  return (
    <Empty icon="grid" title="Loot is switched off">
      {why.value && <p>{why.value.reason}</p>}
      <a class="button" href={addressOf("world", { card: "configuration" })}>
        Go to the configuration
      </a>
    </Empty>
  );
}

function NothingHere({ isFiltered }: { isFiltered: boolean }) {
  const again = useAction(load);
  if (!isFiltered && world.value?.session === null) {
    return (
      <Empty icon="person" title="No player is signed in">
        <SignIn />
      </Empty>
    );
  }
  if (!isFiltered && resource("/tav-loot/v1/enabled").value === false) return <SwitchedOff />;
  if (loadState.value === "waiting") return <NotRetrieved />;
  if (loadState.value === "loading") return <Empty icon="grid" title="Reading the inventory …" />;
  if (loadState.value === "failed") {
    return (
      <Empty icon="warn" title="The inventory could not be read">
        <p>{loadFailure.value}</p>
        <Button isRunning={again.isRunning} onClick={() => void again.run()}>
          Try again
        </Button>
      </Empty>
    );
  }
  if (!isFiltered) return <Empty icon="grid" title="The player holds no loot" />;
  return (
    <Empty icon="search" title="No item fits these filters">
      <Button onClick={() => change({ q: "", type: "", status: "", category: "", new: "" }, "push")}>Show all</Button>
    </Empty>
  );
}

export function InventoryView() {
  const version = inventoryVersion.value;
  const { values } = route.value;
  const filters = readFilters(values);
  const shown = useMemo(() => select(items.values(), filters), [version, JSON.stringify(filters)]);
  const selected = values["item"] ?? "";
  return (
    <div class={`inventory${selected ? " with-panel" : ""}`}>
      <h1 class="hidden">Inventory</h1>
      <div class="inventory-main">
        <Toolbar filters={filters} shown={shown.length} />
        {items.size > 0 && world.value?.session === null && (
          <div class="toolbar">
            <p>No player is signed in: this was published last.</p>
            <SignIn />
          </div>
        )}
        {shown.length > 0 ? (
          <Grid items={shown} selected={selected} onSelect={(item) => change({ item }, "push")} />
        ) : (
          <NothingHere isFiltered={items.size > 0} />
        )}
      </div>
      {selected && <ItemPanel lootId={selected} key={selected} />}
    </div>
  );
}
