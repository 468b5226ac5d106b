// Fault rules as people choose and read them.
import type { Rule } from "../../state/faults";

export const targets = [
  ["service", "Calls of the service"],
  ["sibling", "Resources of siblings"],
  ["published", "What the plugin publishes"],
] as const;
export type Target = (typeof targets)[number][0];

// What such a rule can be for; "*" matches any part.
export const patterns: Record<Target, readonly string[]> = {
  service: [
    "craftPlayerLootWithRefId",
    "redeemPlayerLoot",
    "getAllPlayerLootAndAllDefinitions",
    "checkAndGrantNewPlayerChest",
    "getClientConfiguration",
    "*",
  ],
  sibling: ["/tav-champions/*", "/tav-collections/*", "/tav-inventory/*", "/tav-game-data/*", "/tav-login/v1/session"],
  published: ["/tav-loot/v1/player-loot/*", "/tav-loot/v1/player-loot-map", "/tav-loot/v2/player-loot-map", "/tav-loot/v1/ready"],
};

interface ActionRow {
  readonly key: NonNullable<Rule["action"]>;
  // What happens to it, after the name of what the rule is for.
  readonly text: string;
  readonly for: readonly Target[];
  // What else such a rule has: its label and what it is at first.
  readonly value?: readonly [label: string, start: string, least?: number, most?: number];
}

export const actions: readonly ActionRow[] = [
  { key: "hold", text: "is held until you release it", for: ["service"] },
  { key: "delay", text: "is slow", for: ["service", "sibling", "published"], value: ["Milliseconds", "3000", 0, 600_000] },
  { key: "fail", text: "fails", for: ["service"], value: ["Message", "the tide is out"] },
  { key: "fail", text: "fails", for: ["sibling"], value: ["Status", "500", 400, 599] },
  { key: "refuse", text: "is refused", for: ["service"], value: ["Status word", "INVENTORY_FULL"] },
  { key: "drop", text: "is lost", for: ["service", "published"] },
  { key: "double", text: "comes twice", for: ["service", "published"] },
  { key: "garble", text: "has a value that does not fit", for: ["service", "sibling"] },
  { key: "delete", text: "seems to be deleted", for: ["sibling"] },
];

export const actionsFor = (target: Target) => actions.filter((action) => action.for.includes(target));

export interface Choice {
  target: Target;
  pattern: string;
  action: ActionRow["key"];
  value: string;
  times: string;
}

export const actionOf = (choice: Choice) => actionsFor(choice.target).find(({ key }) => key === choice.action);

function numberProblem(text: string, least: number, most: number): string | undefined {
  if (/^\d+$/.test(text) && Number(text) >= least && Number(text) <= most) return undefined;
  return `An integer from ${least.toLocaleString("en")} to ${most.toLocaleString("en")}`;
}

// Why it can be no rule, by the field that is to be mended.
export function problemsOf(choice: Choice): { value?: string | undefined; times?: string | undefined } {
  const [, , least, most] = actionOf(choice)?.value ?? [];
  return {
    value: least === undefined || most === undefined ? undefined : numberProblem(choice.value, least, most),
    times: choice.times === "" ? undefined : numberProblem(choice.times, 1, 1_000_000),
  };
}

// Of a choice without problems.
export function ruleOf({ target, pattern, action, value, times }: Choice): Rule {
  const rule: Rule = { action };
  rule[target] = pattern;
  if (times) rule.times = Number(times);
  if (action === "delay") rule.delay = Number(value);
  if (action === "fail" && target === "service") rule.error = value;
  if (action === "fail" && target === "sibling") rule.status = Number(value);
  if (action === "refuse") rule.status = value;
  return rule;
}

export const patternOf = (rule: Rule) => rule.service ?? rule.sibling ?? rule.published ?? "";

// What a sibling fails with is its status, what a method fails with its message.
const detailOf = ({ sibling, error, status }: Rule) => (sibling === undefined ? (error ?? status) : (status ?? error)) ?? "";

export function textOf(rule: Rule): string {
  const action = actions.find(({ key }) => key === rule.action)?.text ?? rule.action ?? "is slow";
  const { delay, times } = rule;
  const time = delay === undefined ? "" : typeof delay === "object" ? `${delay.from} to ${delay.to} ms` : `${delay} ms`;
  const details = [detailOf(rule), time].filter((text) => text !== "").join(", ");
  const chance = rule.probability === undefined || rule.probability === 1 ? "" : `, ${Number((100 * rule.probability).toPrecision(3))} % of them`;
  const first = rule.nth === undefined || rule.nth === 1 ? "" : `, from call ${rule.nth} on`;
  const often = times === undefined ? "" : times === 1 ? ", once" : `, ${times} times`;
  return `${action}${details === "" ? "" : `: ${details}`}${first}${chance}${often}`;
}
