// The time that plugin and world live in.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import { clock, setClock, shownTime, type Clock } from "../../state/clock";
import { useAction } from "../../ui/action";
import { Button, Card, Field, Segmented } from "../../ui/controls";
import { NumberInput, useNumber } from "../../ui/number";

const modes = [
  ["real", "Real"],
  ["frozen", "Frozen"],
  ["scaled", "Scaled"],
] as const;
const steps = [
  [1000, "1 s"],
  [60_000, "1 min"],
  [3_600_000, "1 h"],
  [86_400_000, "1 day"],
] as const;

export function ClockCard() {
  const typed = useSignal<string | undefined>(undefined);
  const scale = useNumber(60, { least: 0.001, most: 100_000, isInteger: false });
  const set = useAction(async (body: { mode: Clock["mode"]; now?: string; scale?: number }) => {
    setClock(await call("put", "/_host/clock", { body }));
    typed.value = undefined;
  });
  const advance = useAction(async (milliseconds: number) => {
    setClock(await call("post", "/_host/clock/advance", { body: { milliseconds } }));
  });
  const known = clock.value;
  if (!known) return null;
  const choose = (mode: Clock["mode"]) => void set.run(mode === "scaled" ? { mode, scale: scale.value ?? 1 } : { mode });
  return (
    <Card title="Clock" actions={<Segmented label="How time passes" options={modes} value={known.mode} disabled={set.isRunning} onChange={choose} />}>
      <p class="time">{shownTime.value} UTC</p>
      {known.dueIn !== null && <p class="quiet">Next event in {known.dueIn.toLocaleString("en")} ms.</p>}
      {known.mode === "frozen" && (
        <>
          <div class="row" role="group" aria-label="Let time pass">
            {steps.map(([milliseconds, text]) => (
              <Button key={text} isRunning={advance.isRunning} label={`Let ${text} pass`} onClick={() => void advance.run(milliseconds)}>
                {`+ ${text}`}
              </Button>
            ))}
          </div>
          <Field label="Set the time (UTC)">
            <span class="row">
              <input
                type="datetime-local"
                step={1}
                value={typed.value ?? shownTime.value.replace(" ", "T")}
                onInput={(event) => (typed.value = event.currentTarget.value)}
              />
              <Button isRunning={set.isRunning} disabled={!typed.value} onClick={() => void set.run({ mode: "frozen", now: `${typed.value}Z` })}>
                Set
              </Button>
            </span>
          </Field>
        </>
      )}
      {known.mode === "scaled" && (
        <Field label="Seconds in one second" hint={scale.reason}>
          <span class="row">
            <NumberInput number={scale} onEnter={() => choose("scaled")} />
            <Button isRunning={set.isRunning} disabled={scale.value === undefined} title={scale.reason} onClick={() => choose("scaled")}>
              Set
            </Button>
          </span>
        </Field>
      )}
    </Card>
  );
}
