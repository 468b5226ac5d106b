// One item in the grid.
import type { PlayerLoot } from "../../api/types";
import { changedAt } from "../../state/inventory";
import { nameOf } from "../../state/names";
import { Picture } from "./picture";
import { isWorthShowing, RedeemableBadge } from "./status";

const flashMilliseconds = 1600;

interface TileProps {
  id: string;
  item: PlayerLoot;
  place: number;
  count: number;
  isSelected: boolean;
  isActive: boolean;
  style: Record<string, string>;
  onSelect: () => void;
}

export function Tile({ id, item, place, count, isSelected, isActive, style, onSelect }: TileProps) {
  const changed = changedAt.get(item.lootId) ?? -Infinity;
  const flashes = performance.now() - changed < flashMilliseconds;
  return (
    <div
      id={id}
      role="option"
      class={`tile${isSelected ? " selected" : ""}${isActive ? " active" : ""}`}
      aria-selected={isSelected}
      aria-setsize={count}
      aria-posinset={place + 1}
      data-loot-id={item.lootId}
      style={style}
      onClick={onSelect}
    >
      {flashes && <span class="flash" key={changed} />}
      <Picture item={item} />
      <span class="tile-text">
        <span class="tile-name">{nameOf(item)}</span>
        <span class="tile-type">{item.type}</span>
        {isWorthShowing(item.redeemableStatus) && <RedeemableBadge item={item} />}
      </span>
      <span class="tile-count" aria-label={`${item.count} held`}>
        {item.count.toLocaleString("en")}
      </span>
      {item.isNew && <span class="tile-new">New</span>}
    </div>
  );
}
