// Why the item is as it is, in the plugin's own words.
import { call } from "../../api/client";
import type { Schemas } from "../../api/types";
import { inventoryVersion } from "../../state/inventory";
import { Conditions } from "../../ui/conditions";
import { Badge } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";

type Explanation = Schemas["ItemExplanation"];
type Step = NonNullable<Explanation["steps"]>[number];

const spaced = (name: string) => name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);

function shown(value: unknown): string {
  return typeof value === "string" ? value : JSON.stringify(value);
}

function StepRow({ step }: { step: Step }) {
  const { step: name, reason, ...others } = step as Step & Record<string, unknown>;
  const inputs = Object.entries(others).filter(([, value]) => value !== "" && value !== null);
  return (
    <li>
      <p>
        <b>{spaced(name)}</b> {reason}
      </p>
      {inputs.length > 0 && (
        <p class="inputs">
          {inputs.map(([key, value]) => (
            <span key={key}>
              {spaced(key)} <code>{shown(value)}</code>
            </span>
          ))}
        </p>
      )}
    </li>
  );
}

export function WhyTab({ lootId }: { lootId: string }) {
  const { value, failure } = useFetched(
    () => call("get", "/_host/explain/item/{lootId}", { path: { lootId } }),
    `${lootId} ${inventoryVersion.value}`,
  );
  if (failure) return <p class="quiet">{failure}</p>;
  if (!value) return null;
  return (
    <div>
      <p class="reason">{value.reason}</p>
      {value.redeem && (
        <>
          <h3>Can it be redeemed?</h3>
          <p>
            <Badge kind={value.redeem.isEnabled ? "good" : "warn"}>
              {value.redeem.isEnabled ? "Yes" : value.redeem.isOffered ? "Offered, but disabled" : "Not offered"}
            </Badge>{" "}
            {value.redeem.reason}
          </p>
          <Conditions list={value.redeem.conditions} />
        </>
      )}
      <Conditions list={value.conditions} />
      {value.steps && (
        <>
          <h3>How it came to be</h3>
          <ol class="steps">
            {value.steps.map((step, index) => (
              <StepRow key={index} step={step} />
            ))}
          </ol>
        </>
      )}
    </div>
  );
}
