// The inventory: filters, the grid, and the panel of the selected item.
import { useMemo } from "preact/hooks";
import { change, route } from "../../route";
import { inventoryVersion, items, load, loadFailure, loadState } from "../../state/inventory";
import { login } from "../../state/player";
import { world } from "../../state/world";
import { useAction } from "../../ui/action";
import { Button, Empty } from "../../ui/controls";
import { readFilters, select } from "./filters";
import { Grid } from "./grid";
import { ItemPanel } from "./item_panel";
import { Toolbar } from "./toolbar";

function NothingHere({ isFiltered }: { isFiltered: boolean }) {
  const signIn = useAction(login);
  const again = useAction(load);
  const isSignedOut = world.value !== undefined && world.value.session === null;
  if (loadState.value === "loading") return <Empty icon="grid" title="Reading the inventory …" />;
  if (loadState.value === "failed") {
    return (
      <Empty icon="warn" title={isSignedOut ? "No player is signed in" : "The inventory could not be read"}>
        <p>{loadFailure.value}</p>
        {isSignedOut ? (
          <Button kind="main" icon="person" isRunning={signIn.isRunning} onClick={() => void signIn.run()}>
            Sign in
          </Button>
        ) : (
          <Button isRunning={again.isRunning} onClick={() => void again.run()}>
            Try again
          </Button>
        )}
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
