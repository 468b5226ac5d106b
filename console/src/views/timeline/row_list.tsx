// The rows in view. New ones are followed while the list is at its end.
import { useEffect, useRef } from "preact/hooks";
import type { Row } from "../../state/timeline";
import { goTo, reveal, rowsInView, useVisible } from "../../ui/visible";
import { groupOf, isBad, summaryOf, timeText } from "./kinds";

// In rem, as in the styles.
const heightOfRow = 1.95;
const heightOfNarrowRow = 4.2;
const leastWidth = 44;

interface ListProps {
  rows: readonly Row[];
  // What the rows were chosen by.
  filters: string;
  selected: number;
  causes: ReadonlySet<number>;
  effects: ReadonlySet<number>;
  isFollowing: boolean;
  onSelect: (id: number) => void;
}

function Line({ row, relation }: { row: Row; relation: string }) {
  return (
    <>
      <span class="row-time">{timeText(row.time)}</span>
      <span class={`row-kind group-${groupOf(row)}`}>{row.kind}</span>
      <span class="row-name">
        {row.method && <b>{row.method} </b>}
        {row.name}
      </span>
      <span class={`row-status${isBad(row) ? " bad" : ""}`}>{row.status}</span>
      <span class="row-summary">{summaryOf(row)}</span>
      <span class="row-duration">{row.duration === undefined ? "" : `${row.duration} ms`}</span>
      {relation && <span class="hidden">{relation}</span>}
    </>
  );
}

export function RowList({ rows, filters, selected, causes, effects, isFollowing, onSelect }: ListProps) {
  const element = useRef<HTMLDivElement>(null);
  const isAtEnd = useRef(true);
  // Chosen in the list itself, where the eye is already.
  const chosenHere = useRef(0);
  const visible = useVisible(element);
  const isNarrow = visible.width > 0 && visible.width < leastWidth * visible.rem;
  const rowHeight = (isNarrow ? heightOfNarrowRow : heightOfRow) * visible.rem;
  const range = rowsInView(visible, rowHeight, rows.length, 8);
  const place = rows.findIndex((row) => row.id === selected);

  useEffect(() => {
    if (element.current && isAtEnd.current && isFollowing) element.current.scrollTop = element.current.scrollHeight;
  }, [rows.length, rows.at(-1)?.id, visible.height]);
  useEffect(() => {
    if (place < 0) return;
    const scroll = chosenHere.current === selected ? reveal : goTo;
    scroll(element.current, place, rowHeight);
    if (scroll === goTo) chosenHere.current = 0;
  }, [selected, filters, place >= 0, rowHeight]);
  const choose = (id: number) => {
    chosenHere.current = id;
    onSelect(id);
  };

  const relationOf = (row: Row) =>
    row.id === selected ? "selected" : causes.has(row.id) ? "cause" : effects.has(row.id) ? "effect" : "";
  const onKeyDown = (event: KeyboardEvent) => {
    const step = { ArrowDown: 1, ArrowUp: -1, PageDown: 20, PageUp: -20, Home: -rows.length, End: rows.length }[event.key];
    if (step === undefined) return;
    event.preventDefault();
    const next = rows[Math.max(0, Math.min(rows.length - 1, (place < 0 ? rows.length : place) + step))];
    if (next) choose(next.id);
  };
  return (
    <div
      ref={element}
      class={isNarrow ? "rows narrow" : "rows"}
      role="listbox"
      aria-label="Timeline"
      tabIndex={0}
      aria-activedescendant={place >= range.first && place < range.end ? `row-${selected}` : undefined}
      onKeyDown={onKeyDown}
      onScroll={(event) => {
        const { scrollTop, scrollHeight, clientHeight } = event.currentTarget;
        isAtEnd.current = scrollTop + clientHeight >= scrollHeight - rowHeight;
      }}
    >
      <div class="rows-inner" role="presentation" style={{ height: `${rows.length * rowHeight}px` }}>
        {rows.slice(range.first, range.end).map((row, index) => (
          <div
            key={row.id}
            id={`row-${row.id}`}
            role="option"
            class={`line ${relationOf(row)}`}
            aria-selected={row.id === selected}
            aria-setsize={rows.length}
            aria-posinset={range.first + index + 1}
            style={{ transform: `translateY(${(range.first + index) * rowHeight}px)` }}
            onClick={() => choose(row.id)}
          >
            <Line row={row} relation={relationOf(row)} />
          </div>
        ))}
      </div>
    </div>
  );
}
