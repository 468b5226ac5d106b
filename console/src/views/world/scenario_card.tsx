// The worlds to begin with, and copies of the present one.
import { useSignal } from "@preact/signals";
import { call, send } from "../../api/client";
import { loadHeld, wantInventory } from "../../state/inventory";
import { scenarios } from "../../state/scenarios";
import { connections, controls } from "../../state/stream";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { Icon } from "../../ui/icon";

export function ScenarioCard() {
  const choose = useAction(async (name: string) => {
    wantInventory();
    await call("post", "/_host/scenario/{name}", { path: { name } });
    return `The scenario "${name}" has started`;
  });
  return (
    <Card title="Scenarios">
      <ul class="lines actions">
        {scenarios.value.map(({ name, description, current }) => (
          <li key={name}>
            <span>
              <b>{name}</b> {current && <Badge kind="good">current</Badge>}
              <br />
              <span class="quiet">{description}</span>
            </span>
            <Button label={`Start the scenario ${name}`} disabled={choose.isRunning} onClick={() => void choose.run(name)}>
              Start
            </Button>
          </li>
        ))}
      </ul>
    </Card>
  );
}

async function upload(file: File): Promise<string> {
  const type = file.name.endsWith(".json") ? "application/json" : "application/yaml";
  const reply = await send("PUT", "/_host/import", { body: await file.text(), type });
  if (reply.status >= 400) throw new Error((JSON.parse(reply.text) as { detail: string }).detail);
  wantInventory();
  await loadHeld();
  return `The world is now that of ${file.name}`;
}

export function SnapshotCard() {
  const name = useSignal("before");
  const list = useFetched(() => call("get", "/_host/snapshots"), `${connections.value} ${controls.value}`);
  const act = useAction(async (work: () => Promise<unknown>, done: string) => {
    await work();
    list.again();
    return done;
  });
  const bring = useAction(upload);
  const restore = (of: string) => {
    wantInventory();
    return call("post", "/_host/snapshots/{name}/restore", path(of));
  };
  const path = (of: string) => ({ path: { name: of } });
  return (
    <Card title="Snapshots">
      <Field label="Save the world as">
        <span class="row">
          <input type="text" value={name.value} onInput={(event) => (name.value = event.currentTarget.value)} />
          <Button
            kind="main"
            disabled={!name.value || act.isRunning}
            onClick={() => void act.run(() => call("put", "/_host/snapshots/{name}", path(name.value)), `Saved as "${name.value}"`)}
          >
            Save
          </Button>
        </span>
      </Field>
      <ul class="lines actions">
        {list.value?.map((snapshot) => (
          <li key={snapshot.name}>
            <span>
              <b>{snapshot.name}</b> <span class="quiet">{snapshot.bytes.toLocaleString("en")} bytes</span>
            </span>
            <span class="row">
              <Button
                label={`Restore ${snapshot.name}`}
                disabled={act.isRunning}
                onClick={() => void act.run(() => restore(snapshot.name), `Restored "${snapshot.name}"`)}
              >
                Restore
              </Button>
              <Button
                icon="close"
                kind="plain"
                label={`Remove ${snapshot.name}`}
                disabled={act.isRunning}
                onClick={() => void act.run(() => call("delete", "/_host/snapshots/{name}", path(snapshot.name)), `Removed "${snapshot.name}"`)}
              />
            </span>
          </li>
        ))}
      </ul>
      <div class="row">
        <a class="button normal" href="/_host/export?format=yaml" download="world.yaml">
          <Icon name="download" />
          <span>Download the world</span>
        </a>
        <label class="button normal">
          <Icon name="upload" />
          <span>Upload a world</span>
          <input
            class="hidden"
            type="file"
            accept=".yaml,.yml,.json"
            onChange={(event) => {
              const file = event.currentTarget.files?.[0];
              if (file) void bring.run(file);
              event.currentTarget.value = "";
            }}
          />
        </label>
      </div>
    </Card>
  );
}
