// The items as tiles. Only those in view are drawn; the arrow keys move over all.
import { useSignal } from "@preact/signals";
import { useEffect, useRef } from "preact/hooks";
import type { PlayerLoot } from "../../api/types";
import { reveal, rowsInView, useVisible } from "../../ui/visible";
import { Tile } from "./tile";

// In rem.
const heightOfTile = 6.4;
const leastWidth = 16.5;
const between = 0.7;

interface GridProps {
  items: PlayerLoot[];
  selected: string;
  onSelect: (lootId: string) => void;
}

// The place after a key, or nothing for other keys.
function placeAfter(key: string, place: number, count: number, columns: number, rows: number): number | undefined {
  const moves: Record<string, number> = {
    ArrowRight: place + 1,
    ArrowLeft: place - 1,
    ArrowDown: place + columns,
    ArrowUp: place - columns,
    PageDown: place + columns * rows,
    PageUp: place - columns * rows,
    Home: 0,
    End: count - 1,
  };
  const next = moves[key];
  return next === undefined ? undefined : Math.max(0, Math.min(count - 1, next));
}

export function Grid({ items, selected, onSelect }: GridProps) {
  const element = useRef<HTMLDivElement>(null);
  const visible = useVisible(element);
  const active = useSignal("");
  const gap = between * visible.rem;
  const tileHeight = heightOfTile * visible.rem;
  const columns = Math.max(1, Math.floor((visible.width - gap) / (leastWidth * visible.rem + gap)));
  const width = (visible.width - gap) / columns - gap;
  const rowHeight = tileHeight + gap;
  const rows = Math.ceil(items.length / columns);
  const range = rowsInView(visible, rowHeight, rows);
  const activePlace = Math.max(0, items.findIndex((item) => item.lootId === (active.value || selected)));

  useEffect(() => {
    const place = items.findIndex((item) => item.lootId === selected);
    if (place >= 0) reveal(element.current, Math.floor(place / columns), rowHeight);
  }, [selected, columns, items.length === 0]);

  const onKeyDown = (event: KeyboardEvent) => {
    const current = items[activePlace];
    if ((event.key === "Enter" || event.key === " ") && current) {
      event.preventDefault();
      return onSelect(current.lootId);
    }
    const next = placeAfter(event.key, activePlace, items.length, columns, Math.floor(visible.height / rowHeight));
    if (next === undefined || !items[next]) return;
    event.preventDefault();
    active.value = items[next].lootId;
    reveal(element.current, Math.floor(next / columns), rowHeight);
  };

  const shown = items.slice(range.first * columns, range.end * columns);
  // Names only what is drawn.
  const drawn = shown[activePlace - range.first * columns];
  return (
    <div
      ref={element}
      class="grid"
      role="listbox"
      aria-label="Items"
      tabIndex={0}
      aria-activedescendant={drawn && `item-${drawn.lootId}`}
      onKeyDown={onKeyDown}
    >
      <div class="grid-inner" role="presentation" style={{ height: `${rows * rowHeight + gap}px` }}>
        {shown.map((item, index) => {
          const place = range.first * columns + index;
          return (
            <Tile
              key={item.lootId}
              id={`item-${item.lootId}`}
              item={item}
              place={place}
              count={items.length}
              isSelected={item.lootId === selected}
              isActive={place === activePlace}
              style={{
                width: `${width}px`,
                height: `${tileHeight}px`,
                transform: `translate(${gap + (place % columns) * (width + gap)}px, ${gap + Math.floor(place / columns) * rowHeight}px)`,
              }}
              onSelect={() => {
                active.value = item.lootId;
                onSelect(item.lootId);
              }}
            />
          );
        })}
      </div>
    </div>
  );
}
