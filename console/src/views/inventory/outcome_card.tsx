// What came of the latest craft or redeem of the item.
import { useEffect, useRef } from "preact/hooks";
import type { PlayerLootDelta } from "../../api/types";
import { addressOf, change } from "../../route";
import { outcome, waiting, type Outcome } from "../../state/crafts";
import { Badge, Button } from "../../ui/controls";
import { Icon } from "../../ui/icon";
import { Json } from "../../ui/json";
import { nameOf } from "../../state/names";
import { Picture } from "./picture";

function Delta({ delta, sign }: { delta: PlayerLootDelta; sign: string }) {
  const item = delta.playerLoot;
  return (
    <li class="delta">
      <Picture item={item} />
      <button type="button" class="link" onClick={() => change({ item: item.lootId }, "push")}>
        {nameOf(item)}
      </button>
      <span class={sign === "−" ? "minus" : "plus"}>
        {sign}
        {delta.deltaCount || ""}
      </span>
      <span class="quiet">now {item.count.toLocaleString("en")}</span>
    </li>
  );
}

function Deltas({ title, list, sign }: { title: string; list: PlayerLootDelta[]; sign: string }) {
  if (list.length === 0) return null;
  return (
    <>
      <h4>{title}</h4>
      <ul class="deltas">
        {list.map((delta) => (
          <Delta key={delta.playerLoot.lootId} delta={delta} sign={sign} />
        ))}
      </ul>
    </>
  );
}

function Shown({ result }: { result: Outcome }) {
  const { update } = result;
  const card = useRef<HTMLElement>(null);
  useEffect(() => card.current?.scrollIntoView({ block: "nearest" }), []);
  return (
    <section ref={card} class={`outcome ${update ? "good" : "bad"}`} aria-label="Result">
      <header>
        <Icon name={update ? "check" : "warn"} />
        <h3>{result.title}</h3>
        <Badge>{Math.round(result.milliseconds).toLocaleString("en")} ms</Badge>
        <Button icon="close" kind="plain" label="Close the result" onClick={() => (outcome.value = undefined)} />
      </header>
      {result.failure && <p>{result.failure}</p>}
      {result.details && <p class="reason">{result.details}</p>}
      {update && (
        <>
          <Deltas title="Added" list={update.added} sign="+" />
          <Deltas title="Redeemed" list={update.redeemed} sign="✓" />
          <Deltas title="Removed" list={update.removed} sign="−" />
          <details>
            <summary>Raw response</summary>
            <Json value={update} label="the response" />
          </details>
        </>
      )}
      {result.row && (
        <a class="more" href={addressOf("timeline", { row: result.row })}>
          What happened, step by step
        </a>
      )}
    </section>
  );
}

export function OutcomeCard({ lootId }: { lootId: string }) {
  const running = waiting.value.filter((entry) => entry.lootId === lootId);
  const result = outcome.value?.lootId === lootId ? outcome.value : undefined;
  return (
    <div aria-live="polite">
      {running.map((entry) => (
        <p class="running" key={entry.id}>
          <span class="spinner" aria-hidden="true" /> {entry.title} waits for the platform …
        </p>
      ))}
      {result && <Shown result={result} key={result.id} />}
    </div>
  );
}
