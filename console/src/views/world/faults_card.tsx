// What goes wrong between the plugin, the platform, the siblings and the event stream: rules, in order.
import { useSignal } from "@preact/signals";
import { rules, setRules, type Rule } from "../../state/faults";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field, Select } from "../../ui/controls";
import { actionsFor, patternOf, patterns, ruleOf, targets, textOf, type Choice, type Target } from "./fault_rules";

function RuleRow({ rule, place }: { rule: Rule; place: number }) {
  const remove = useAction(() => setRules(rules.peek().filter((_, index) => index !== place)));
  return (
    <li>
      <span>
        <code>{patternOf(rule)}</code> {textOf(rule)} <Badge>{rule.applied ?? 0} so far</Badge>
      </span>
      <Button icon="close" kind="plain" label={`Remove the rule for ${patternOf(rule)}`} isRunning={remove.isRunning} onClick={() => void remove.run()} />
    </li>
  );
}

const start = (target: Target): Choice => ({
  target,
  pattern: patterns[target][0] ?? "",
  action: actionsFor(target)[0]?.key ?? "delay",
  value: actionsFor(target)[0]?.value?.[1] ?? "",
  times: "",
});

function Form({ choice, onChange }: { choice: Choice; onChange: (next: Partial<Choice>) => void }) {
  const known = actionsFor(choice.target);
  const needed = known.find(({ key }) => key === choice.action)?.value;
  const choose = (action: Choice["action"]) => onChange({ action, value: known.find(({ key }) => key === action)?.value?.[1] ?? "" });
  return (
    <div class="fields">
      <Field label="What">
        <Select label="What" options={targets} value={choice.target} onChange={(target) => onChange(start(target))} />
      </Field>
      <Field label={choice.target === "service" ? "Method" : "Path"} hint={'"*" matches any part'}>
        <input type="text" list="fault-patterns" value={choice.pattern} onInput={(event) => onChange({ pattern: event.currentTarget.value })} />
      </Field>
      <datalist id="fault-patterns">
        {patterns[choice.target].map((pattern) => (
          <option key={pattern} value={pattern} />
        ))}
      </datalist>
      <Field label="What happens">
        <Select label="What happens" options={known.map(({ key, text }) => [key, text] as const)} value={choice.action} onChange={choose} />
      </Field>
      {needed && (
        <Field label={needed[0]}>
          <input type="text" value={choice.value} onInput={(event) => onChange({ value: event.currentTarget.value })} />
        </Field>
      )}
      <Field label="How often" hint="empty: each time">
        <input type="text" inputMode="numeric" value={choice.times} onInput={(event) => onChange({ times: event.currentTarget.value })} />
      </Field>
    </div>
  );
}

export function FaultsCard() {
  const choice = useSignal(start("service"));
  const add = useAction(() => setRules([...rules.peek(), ruleOf(choice.value)]));
  const clear = useAction(() => setRules([]));
  return (
    <Card title="Faults" actions={<Badge kind={rules.value.length > 0 ? "warn" : ""}>{rules.value.length > 0 ? "Faults on" : "No faults"}</Badge>}>
      <Form choice={choice.value} onChange={(next) => (choice.value = { ...choice.value, ...next })} />
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
