// What goes wrong between the plugin and the platform: rules, in order.
import { useSignal } from "@preact/signals";
import { rules, setRules, type Rule } from "../../state/faults";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field, Select } from "../../ui/controls";

const methods = [
  "craftPlayerLootWithRefId",
  "redeemPlayerLoot",
  "getAllPlayerLootAndAllDefinitions",
  "checkAndGrantNewPlayerChest",
  "getClientConfiguration",
  "*",
].map((name) => [name, name === "*" ? "all methods" : name] as const);

const actions = [
  ["hold", "is held until you release it"],
  ["delay", "is slow"],
  ["fail", "fails"],
  ["refuse", "is refused"],
  ["drop", "is never responded to"],
  ["double", "is responded to twice"],
  ["garble", "has a result that does not fit"],
] as const;
type Action = (typeof actions)[number][0];

const needsValue: Partial<Record<Action, [label: string, start: string]>> = {
  delay: ["Milliseconds", "3000"],
  fail: ["Message", "the tide is out"],
  refuse: ["Status word", "INVENTORY_FULL"],
};

function ruleOf(service: string, action: Action, value: string, times: string): Rule {
  const rule: Rule = { service, action };
  if (times) rule.times = Number(times);
  if (action === "delay") rule.delay = Number(value) || 0;
  if (action === "fail") rule.error = value;
  if (action === "refuse") rule.status = value;
  return rule;
}

function textOf(rule: Rule): string {
  const action = actions.find(([key]) => key === rule.action)?.[1] ?? rule.action ?? "is slow";
  const detail = rule.error ?? rule.status ?? (rule.delay === undefined ? "" : `${JSON.stringify(rule.delay)} ms`);
  const often = rule.times === undefined ? "" : `, ${rule.times} times`;
  return `${action}${detail === "" ? "" : `: ${detail}`}${often}`;
}

function RuleRow({ rule, place }: { rule: Rule; place: number }) {
  const remove = useAction(() => setRules(rules.peek().filter((_, index) => index !== place)));
  return (
    <li>
      <span>
        <code>{rule.service ?? rule.sibling ?? rule.published}</code> {textOf(rule)} <Badge>{rule.applied ?? 0} so far</Badge>
      </span>
      <Button icon="close" kind="plain" label={`Remove the rule for ${rule.service ?? ""}`} isRunning={remove.isRunning} onClick={() => void remove.run()} />
    </li>
  );
}

export function ServiceCard() {
  const method = useSignal(methods[0]?.[0] ?? "");
  const action = useSignal<Action>("hold");
  const value = useSignal("");
  const times = useSignal("");
  const add = useAction(() => setRules([...rules.peek(), ruleOf(method.value, action.value, value.value, times.value)]));
  const clear = useAction(() => setRules([]));
  const needed = needsValue[action.value];
  const choose = (next: Action) => {
    action.value = next;
    value.value = needsValue[next]?.[1] ?? "";
  };
  return (
    <Card title="Service" actions={<Badge kind={rules.value.length > 0 ? "warn" : ""}>{rules.value.length > 0 ? "Faults on" : "No faults"}</Badge>}>
      <div class="fields">
        <Field label="A call of">
          <Select label="Method" options={methods} value={method.value} onChange={(next) => (method.value = next)} />
        </Field>
        <Field label="What happens">
          <Select label="What happens" options={actions} value={action.value} onChange={choose} />
        </Field>
        {needed && (
          <Field label={needed[0]}>
            <input type="text" value={value.value} onInput={(event) => (value.value = event.currentTarget.value)} />
          </Field>
        )}
        <Field label="How often" hint="empty: each time">
          <input type="text" inputMode="numeric" value={times.value} onInput={(event) => (times.value = event.currentTarget.value)} />
        </Field>
      </div>
      <div class="row">
        <Button kind="main" isRunning={add.isRunning} onClick={() => void add.run()}>
          Add the rule
        </Button>
        {rules.value.length > 0 && (
          <Button isRunning={clear.isRunning} onClick={() => void clear.run()}>
            Remove all
          </Button>
        )}
      </div>
      <ul class="lines actions">
        {rules.value.map((rule, place) => (
          <RuleRow key={place} rule={rule} place={place} />
        ))}
      </ul>
    </Card>
  );
}
