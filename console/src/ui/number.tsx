// A number that is typed: what stands in the field stays as it is, also while it is no number yet.
import { useSignal } from "@preact/signals";

export interface Bounds {
  least: number;
  most: number;
  isInteger?: boolean;
}
export interface TypedNumber {
  text: string;
  isTyped: boolean;
  // Nothing as long as the text is no number within the bounds; then `reason` says what is wrong.
  value: number | undefined;
  reason: string;
  type: (text: string) => void;
  forget: () => void;
  bounds: Bounds;
}

function reasonOf(text: string, { least, most, isInteger = true }: Bounds): string {
  const value = Number(text);
  if (text.trim() === "" || !Number.isFinite(value)) return "A number is needed";
  if (isInteger && !Number.isInteger(value)) return "An integer is needed";
  if (value < least) return `At least ${least.toLocaleString("en")}`;
  return value > most ? `At most ${most.toLocaleString("en")}` : "";
}

// Shows `initial` until something is typed, and again once that is forgotten.
export function useNumber(initial: number, bounds: Bounds): TypedNumber {
  const typed = useSignal<string | undefined>(undefined);
  const text = typed.value ?? String(initial);
  const reason = reasonOf(text, bounds);
  return {
    text,
    isTyped: typed.value !== undefined,
    value: reason ? undefined : Number(text),
    reason,
    type: (next) => (typed.value = next),
    forget: () => (typed.value = undefined),
    bounds,
  };
}

export function NumberInput({ number, onEnter }: { number: TypedNumber; onEnter?: () => void }) {
  const { least, most, isInteger = true } = number.bounds;
  return (
    <input
      type="number"
      min={least}
      max={most}
      step={isInteger ? 1 : "any"}
      value={number.text}
      aria-invalid={number.reason !== ""}
      title={number.reason}
      onInput={(event) => number.type(event.currentTarget.value)}
      onKeyDown={(event) => event.key === "Enter" && number.value !== undefined && onEnter?.()}
    />
  );
}
