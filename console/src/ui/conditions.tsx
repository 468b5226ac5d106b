// The conditions of a decision, each with its reason.
import type { Schemas } from "../api/types";
import { Icon } from "./icon";

export function Conditions({ list }: { list: Schemas["ExplainedCondition"][] | undefined }) {
  if (!list || list.length === 0) return null;
  return (
    <ul class="conditions">
      {list.map((condition) => (
        <li key={condition.name} class={condition.holds ? "holds" : "fails"}>
          <Icon name={condition.holds ? "check" : "close"} />
          <span>
            {condition.reason} <span class="hidden">({condition.holds ? "holds" : "does not hold"})</span>
          </span>
        </li>
      ))}
    </ul>
  );
}
