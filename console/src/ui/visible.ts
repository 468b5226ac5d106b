// Which rows of a long list are in view, so that only these are drawn.
import { useSignal } from "@preact/signals";
import type { RefObject } from "preact";
import { useEffect } from "preact/hooks";

export interface Visible {
  width: number;
  height: number;
  top: number;
  // The size of a rem, which grows with the screen.
  rem: number;
}

const remOf = () => Number.parseFloat(getComputedStyle(document.documentElement).fontSize);

// The size and scroll position of an element that scrolls.
export function useVisible(ref: RefObject<HTMLElement | null>): Visible {
  const visible = useSignal<Visible>({ width: 0, height: 0, top: 0, rem: 14 });
  useEffect(() => {
    const element = ref.current;
    if (!element) return;
    const measure = () => {
      const next = { width: element.clientWidth, height: element.clientHeight, top: element.scrollTop, rem: remOf() };
      const now = visible.peek();
      if (next.width !== now.width || next.height !== now.height || next.top !== now.top || next.rem !== now.rem) visible.value = next;
    };
    const observer = new ResizeObserver(measure);
    observer.observe(element);
    element.addEventListener("scroll", measure, { passive: true });
    measure();
    return () => {
      observer.disconnect();
      element.removeEventListener("scroll", measure);
    };
  }, []);
  return visible.value;
}

export interface Range {
  first: number;
  end: number;
}

// The rows in view and some around them.
export function rowsInView(visible: Visible, rowHeight: number, count: number, around = 3): Range {
  const first = Math.max(0, Math.floor(visible.top / rowHeight) - around);
  const end = Math.min(count, Math.ceil((visible.top + visible.height) / rowHeight) + around);
  return { first, end: Math.max(first, end) };
}

// Scrolls so that the row is in view.
export function reveal(element: HTMLElement | null, row: number, rowHeight: number): void {
  if (!element) return;
  const top = row * rowHeight;
  if (top < element.scrollTop) element.scrollTop = top;
  else if (top + rowHeight > element.scrollTop + element.clientHeight) {
    element.scrollTop = top + rowHeight - element.clientHeight;
  }
}

// Scrolls so that the row is in the upper third, with what follows it in view.
export function goTo(element: HTMLElement | null, row: number, rowHeight: number): void {
  if (!element) return;
  const top = row * rowHeight;
  const third = element.clientHeight / 3;
  if (top < element.scrollTop || top + rowHeight > element.scrollTop + third) element.scrollTop = Math.max(0, top - third / 2);
}
