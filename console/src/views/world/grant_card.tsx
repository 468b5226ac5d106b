// Gives the player loot, or takes it away.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import { inventoryVersion } from "../../state/inventory";
import { useAction } from "../../ui/action";
import { Button, Card, Field, Switch } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";
import { NumberInput, useNumber } from "../../ui/number";

export function GrantCard() {
  const lootName = useSignal("");
  const refId = useSignal("");
  const delta = useNumber(1, { least: -2147483648, most: 2147483647 });
  const retrieves = useSignal(true);
  const definitions = useFetched(() => call("get", "/tav-loot/v1/loot-items"), inventoryVersion.value > 0);
  const give = useAction(async () => {
    const body = { lootName: lootName.peek(), refId: refId.peek(), delta: delta.value ?? 0 };
    const { count } = await call("post", "/_host/inventory", { body });
    if (retrieves.peek()) await call("post", "/tav-loot/v1/refresh", { query: { force: true } });
    return `The platform holds ${count} of ${body.lootName}`;
  });
  const reason = delta.reason || (delta.value === 0 ? "0 changes nothing" : "") || (lootName.value ? "" : "Name the loot first");
  return (
    <Card title="Inventory of the platform">
      <div class="fields">
        <Field label="Loot name">
          <input
            type="text"
            list="definitions"
            spellcheck={false}
            autocomplete="off"
            value={lootName.value}
            onInput={(event) => (lootName.value = event.currentTarget.value)}
          />
        </Field>
        <Field label="Champion id" hint="for tokens only">
          <input type="text" inputMode="numeric" value={refId.value} onInput={(event) => (refId.value = event.currentTarget.value)} />
        </Field>
        <Field label="Change" hint={delta.reason || "negative takes away"}>
          <NumberInput number={delta} />
        </Field>
      </div>
      <datalist id="definitions">
        {definitions.value?.map((item) => (
          <option key={item.lootName} value={item.lootName} />
        ))}
      </datalist>
      <Switch label="Let the plugin retrieve it at once" on={retrieves.value} onChange={(on) => (retrieves.value = on)} />
      <div class="row">
        <Button kind="main" isRunning={give.isRunning} disabled={reason !== ""} title={reason} onClick={() => void give.run()}>
          Change
        </Button>
      </div>
    </Card>
  );
}
