// An item's picture, or a tile drawn from its type where there is none.
import { useSignal } from "@preact/signals";
import type { PlayerLoot } from "../../api/types";

const missing = new Set<string>();

// What represents the kinds of loot: a line drawing each.
const drawings: [pattern: RegExp, path: string][] = [
  [/^CHEST/, "M8 22l5-9h22l5 9v16H8zM8 22h32M20 22v7h8v-7"],
  [/KEY|^MATERIAL/, "M17 16a7 7 0 1 0 0 14a7 7 0 1 0 0-14M24 23h17M35 23v7M41 23v5"],
  [/^CURRENCY/, "M24 9a15 15 0 1 0 0 30a15 15 0 1 0 0-30M24 16v16M19 20c0-5 10-5 10 0s-10 3-10 8 10 5 10 0"],
  [/^WARDSKIN/, "M24 8c-9 6-9 14-6 20h12c3-6 3-14-6-20M18 28l-3 12h18l-3-12M20 19h8"],
  [/SKIN|^CHROMA/, "M12 40c0-11 24-11 24 0M24 9a9 9 0 1 0 0 18a9 9 0 1 0 0-18M15 18c4 1 8-3 9-9"],
  [/^CHAMPION_TOKEN/, "M24 8l13 8v16l-13 8-13-8V16zM24 16l2.5 5.5 6 .5-4.5 4 1.5 6-5.5-3-5.5 3 1.5-6-4.5-4 6-.5z"],
  [/^CHAMPION/, "M10 40c0-14 28-14 28 0M24 8a10 10 0 1 0 0 20a10 10 0 1 0 0-20"],
  [/^EMOTE/, "M24 9a15 15 0 1 0 0 30a15 15 0 1 0 0-30M18 20v2M30 20v2M17 28c3 6 11 6 14 0"],
  [/ICON/, "M10 10h28v28H10zM10 32l9-9 8 8 5-5 6 6M29 17h.1"],
  [/LOGO/, "M14 8v33M14 11h22l-5 7 5 7H14"],
  [/BOOST/, "M26 7L12 27h10l-2 14 16-21H26z"],
];
const fallback = "M24 8l16 9v14l-16 9-16-9V17zM8 17l16 9 16-9M24 26v14";

const hues = ["slate", "teal", "violet", "amber", "rose", "blue", "green"];
// A type has the same color everywhere; a shard that of what it is a shard of.
export function hueOf(type: string): string {
  let sum = 0;
  for (const letter of type.replace(/_RENTAL$/, "")) sum = (sum * 31 + letter.charCodeAt(0)) >>> 0;
  return hues[sum % hues.length] ?? "slate";
}

function Drawing({ type }: { type: string }) {
  const path = drawings.find(([pattern]) => pattern.test(type))?.[1] ?? fallback;
  return (
    <svg class="drawing" viewBox="0 0 48 48" aria-hidden="true">
      <path d={path} />
    </svg>
  );
}

export function Picture({ item }: { item: Pick<PlayerLoot, "type" | "tilePath" | "rarity"> }) {
  const failed = useSignal(0);
  const path = item.tilePath;
  const hasFile = path.startsWith("/") && !missing.has(path) && failed.value >= 0;
  const onError = () => {
    missing.add(path);
    failed.value++;
  };
  return (
    <span class={`picture hue-${hueOf(item.type)} rarity-${item.rarity.toLowerCase()}`}>
      {hasFile ? <img src={path} alt="" loading="lazy" decoding="async" onError={onError} /> : <Drawing type={item.type} />}
    </span>
  );
}
