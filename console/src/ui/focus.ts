// Where the keyboard is when what it was in goes away: back at what opened it.
import { useEffect } from "preact/hooks";
import { route } from "../route";

const parts = ".panel, .api-main";
let opener: HTMLElement | undefined;

function giveBack(): void {
  if (document.activeElement === document.body && opener?.isConnected) opener.focus({ preventScroll: true });
}

// Called once.
export function keepFocus(): void {
  addEventListener("focusin", ({ target }) => {
    if (target instanceof HTMLElement && !target.closest(parts)) opener = target;
  });
  // The page is drawn again after a change of the address.
  route.subscribe(() => {
    if (document.activeElement?.closest(parts)) requestAnimationFrame(() => requestAnimationFrame(giveBack));
  });
}

export function useEscape(close: () => void): void {
  useEffect(() => {
    const onKeyDown = (event: KeyboardEvent) => {
      if (event.key === "Escape") close();
    };
    addEventListener("keydown", onKeyDown);
    return () => removeEventListener("keydown", onKeyDown);
  }, []);
}
