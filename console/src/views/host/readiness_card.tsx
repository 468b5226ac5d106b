// Why loot is enabled, and what each source of the player's collection waits for.
import { call } from "../../api/client";
import { resource } from "../../state/resources";
import { connections } from "../../state/stream";
import { world } from "../../state/world";
import { Conditions } from "../../ui/conditions";
import { Badge, Card } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";

const spaced = (name: string) => name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);

export function ReadinessCard() {
  const ready = resource("/tav-loot/v1/ready").value;
  const enabled = resource("/tav-loot/v1/enabled").value;
  const key = `${connections.value} ${ready} ${enabled} ${JSON.stringify(world.value?.session)} ${world.value?.phase}`;
  const why = useFetched(
    () => Promise.all([call("get", "/_host/explain/enabled"), call("get", "/_host/explain/ready"), call("get", "/_host/explain/retrieval")]),
    key,
  );
  const [enablement, readiness, retrieval] = why.value ?? [];
  return (
    <Card title="Readiness" actions={<Badge kind={ready ? "good" : "warn"}>{ready ? "Ready" : "Not ready"}</Badge>}>
      {why.failure && <p class="quiet">{why.failure}</p>}
      {enablement && <p>{enablement.reason}</p>}
      <Conditions list={enablement?.conditions} />
      {readiness && <p>{readiness.reason}</p>}
      <ul class="conditions">
        {readiness?.sources.map((source) => (
          <li key={source.name} class={source.hasResponded ? "holds" : source.isInGoal ? "fails" : ""}>
            <Badge kind={source.hasResponded ? "good" : source.isInGoal ? "warn" : ""}>{spaced(source.name)}</Badge>
            <span>{source.reason}</span>
          </li>
        ))}
      </ul>
      {retrieval && <p>{retrieval.reason}</p>}
    </Card>
  );
}
