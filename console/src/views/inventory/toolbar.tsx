// Filters and sorting; all of it is in the address.
import { change } from "../../route";
import { inventoryVersion, items, publishedVersion } from "../../state/inventory";
import { SearchField, Select } from "../../ui/controls";
import { countsOf, sorts, type Filters } from "./filters";
import { redeemableText } from "./status";

type Option = readonly [string, string];

// What is chosen is an option, too, when no item has it any more.
function options(all: string, chosen: string, field: Parameters<typeof countsOf>[1], text = (value: string) => value): Option[] {
  const counts = new Map(countsOf(items.values(), field));
  if (chosen && !counts.has(chosen)) counts.set(chosen, 0);
  return [["", all], ...[...counts].map(([value, count]): Option => [value, `${text(value)} (${count})`])];
}

export function Toolbar({ filters, shown }: { filters: Filters; shown: number }) {
  void inventoryVersion.value;
  return (
    <div class="toolbar" role="search" aria-label="Filters">
      <SearchField label="Name, id or tag" value={filters.text} onInput={(q) => change({ q })} />
      <Select label="Type" options={options("All types", filters.type, "type")} value={filters.type} onChange={(type) => change({ type })} />
      <Select
        label="Status"
        options={options("Any status", filters.status, "redeemableStatus", redeemableText)}
        value={filters.status}
        onChange={(status) => change({ status })}
      />
      <Select
        label="Category"
        options={options("All categories", filters.category, "displayCategories")}
        value={filters.category}
        onChange={(category) => change({ category })}
      />
      <button type="button" class="toggle" aria-pressed={filters.isNew} onClick={() => change({ new: filters.isNew ? "" : "1" })}>
        New only
      </button>
      <Select label="Order" options={sorts} value={filters.sort} onChange={(sort) => change({ sort })} />
      <p class="toolbar-count">
        <b>{shown.toLocaleString("en")}</b>
        {shown !== items.size && ` of ${items.size.toLocaleString("en")}`} items
        <span class="quiet"> · version {publishedVersion.value}</span>
      </p>
    </div>
  );
}
