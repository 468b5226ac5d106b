// What goes wrong between the plugin, the platform, the siblings and the event stream: rules, in order.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import { addRule, faults, readFaults, removeRule, removeRules, rulesOf, type Faults, type Rule } from "../../state/faults";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field, Select } from "../../ui/controls";
import { actionOf, actionsFor, patternOf, patterns, problemsOf, ruleOf, targets, textOf, type Choice, type Target } from "./fault_rules";

const period = 2000;

function RuleRow({ rule }: { rule: Rule }) {
  const remove = useAction(() => removeRule(rule.id ?? 0));
  const isUsedUp = (rule.applied ?? 0) >= (rule.times ?? Infinity);
  return (
    <li>
      <span>
        <code>{patternOf(rule)}</code> {textOf(rule)} <Badge kind={isUsedUp ? "quiet" : ""}>{isUsedUp ? "used up" : `${rule.applied ?? 0} so far`}</Badge>
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
  const needed = actionOf(choice)?.value;
  const problems = problemsOf(choice);
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
        <Field label={needed[0]} problem={problems.value}>
          <input type="text" aria-invalid={problems.value !== undefined} value={choice.value} onInput={(event) => onChange({ value: event.currentTarget.value })} />
        </Field>
      )}
      <Field label="How often" hint="empty: each time" problem={problems.times}>
        <input
          type="text"
          inputMode="numeric"
          aria-invalid={problems.times !== undefined}
          value={choice.times}
          onInput={(event) => onChange({ times: event.currentTarget.value })}
        />
      </Field>
    </div>
  );
}

// What goes with all of the rules.
function Together({ known }: { known: Faults }) {
  if (known.rules.length === 0) return null;
  return <p class="quiet">{`${known.keep ? "Kept over a reset" : "Until the next reset"} · seed ${known.seed}`}</p>;
}

export function FaultsCard() {
  const choice = useSignal(start("service"));
  const hasProblem = Object.values(problemsOf(choice.value)).some((problem) => problem !== undefined);
  const add = useAction(() => addRule(ruleOf(choice.value)));
  const clear = useAction(removeRules);
  useEffect(() => {
    const read = () => void (document.hidden || readFaults());
    read();
    const timer = setInterval(read, period);
    return () => clearInterval(timer);
  }, []);
  const rules = rulesOf(faults.value);
  return (
    <Card title="Faults" name="faults" actions={<Badge kind={rules.length > 0 ? "warn" : ""}>{rules.length > 0 ? "Faults on" : "No faults"}</Badge>}>
      <Form choice={choice.value} onChange={(next) => (choice.value = { ...choice.value, ...next })} />
      <div class="row">
        <Button kind="main" isRunning={add.isRunning} disabled={hasProblem} onClick={() => void add.run()}>
          Add the rule
        </Button>
        {rules.length > 0 && (
          <Button isRunning={clear.isRunning} onClick={() => void clear.run()}>
            Remove all
          </Button>
        )}
      </div>
      <ul class="lines actions">
        {rules.map((rule) => (
          <RuleRow key={rule.id} rule={rule} />
        ))}
      </ul>
      {faults.value && <Together known={faults.value} />}
    </Card>
  );
}
