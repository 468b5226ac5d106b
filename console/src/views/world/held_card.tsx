// Calls of the plugin that wait for a decision.
import { useSignal } from "@preact/signals";
import { endHeld, held, type HeldCall, type HeldEnd } from "../../state/faults";
import { useAction } from "../../ui/action";
import { Button, Card, Field } from "../../ui/controls";
import { Json, jsonProblem } from "../../ui/json";

function Held({ entry }: { entry: HeldCall }) {
  const payload = useSignal("{}");
  const error = useSignal("the tide is out");
  const end = useAction((body: HeldEnd) => endHeld(entry.id, body));
  const problem = jsonProblem(payload.value);
  const name = `${entry.service}.${entry.method}`;
  return (
    <li class="held">
      <p class="row">
        <span class="spinner" aria-hidden="true" />
        <b>{name}</b>
        <Button kind="main" icon="play" label={`Release ${name}`} disabled={end.isRunning} onClick={() => void end.run({ action: "release" })}>
          Release
        </Button>
      </p>
      <details>
        <summary>Let it fail or respond with something else</summary>
        <div class="fields">
          <Field label="Fail with">
            <input type="text" value={error.value} onInput={(event) => (error.value = event.currentTarget.value)} />
          </Field>
        </div>
        <Button kind="danger" disabled={end.isRunning} onClick={() => void end.run({ action: "fail", error: error.value })}>
          Fail
        </Button>
        <Field label="Respond with, JSON" problem={problem}>
          <textarea rows={3} spellcheck={false} aria-invalid={problem !== undefined} value={payload.value} onInput={(event) => (payload.value = event.currentTarget.value)} />
        </Field>
        <Button disabled={end.isRunning || problem !== undefined} onClick={() => void end.run({ action: "respond", payload: JSON.parse(payload.value) })}>
          Respond
        </Button>
        <Json value={entry.arguments} label="the arguments" />
      </details>
    </li>
  );
}

export function HeldCard() {
  const list = held.value;
  return (
    <Card title="Held calls" name="held" actions={<span class="quiet">{list.length}</span>}>
      {list.length === 0 && <p class="quiet">None. Hold calls of a method under "Faults", then craft something.</p>}
      <ul class="held-list">
        {list.map((entry) => (
          <Held key={entry.id} entry={entry} />
        ))}
      </ul>
    </Card>
  );
}
