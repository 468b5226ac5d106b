// The platform's configuration: switches, and other values as JSON.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import type { World } from "../../state/world";
import { useAction } from "../../ui/action";
import { Button, Card, Field, Switch } from "../../ui/controls";
import { jsonProblem } from "../../ui/json";

const switches: [name: string, text: string][] = [
  ["Enabled", "Loot enabled"],
  ["PxhEnabled", "Loot enabled in the client (PxhEnabled)"],
  ["NewPlayerChestEnabled", "New player's chest"],
];
const numbers: [name: string, hint: string][] = [
  ["MinSummonerLevel", "level that earns the new player's chest"],
  ["InitializationGoalFlags", "which sources count for readiness, as a bit sum up to 63"],
];

const set = (name: string, value: unknown) => call("put", "/_host/configuration/{name}", { path: { name }, body: value as never });

function NumberField({ name, hint, value }: { name: string; hint: string; value: unknown }) {
  const typed = useSignal<string | undefined>(undefined);
  const problem = typed.value ? jsonProblem(typed.value) : undefined;
  const save = useAction(async () => {
    const text = typed.peek();
    if (text === undefined || problem) return;
    if (text === "") await call("delete", "/_host/configuration/{name}", { path: { name } });
    else await set(name, JSON.parse(text));
    typed.value = undefined;
  });
  return (
    <Field label={name} hint={hint} problem={problem}>
      <span class="row">
        <input
          type="text"
          inputMode="numeric"
          placeholder="not set"
          aria-invalid={problem !== undefined}
          value={typed.value ?? (value === undefined ? "" : JSON.stringify(value))}
          onInput={(event) => (typed.value = event.currentTarget.value)}
          onKeyDown={(event) => event.key === "Enter" && void save.run()}
        />
        <Button isRunning={save.isRunning} disabled={typed.value === undefined || problem !== undefined} onClick={() => void save.run()}>
          Set
        </Button>
      </span>
    </Field>
  );
}

export function ConfigurationCard({ state }: { state: World }) {
  const values = state.configuration as Record<string, unknown>;
  const flip = useAction(async (name: string, on: boolean) => void (await set(name, on)));
  return (
    <Card title="Configuration" name="configuration">
      {switches.map(([name, text]) => (
        <Switch key={name} label={text} on={values[name] === true} disabled={flip.isRunning} onChange={(on) => void flip.run(name, on)} />
      ))}
      <div class="fields">
        {numbers.map(([name, hint]) => (
          <NumberField key={name} name={name} hint={hint} value={values[name]} />
        ))}
      </div>
    </Card>
  );
}
