// The host and the plugin: what they are, what they do now, and what they log.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import { call } from "../../api/client";
import type { Health } from "../../api/types";
import { connections } from "../../state/stream";
import { Badge, Card, Empty } from "../../ui/controls";
import { AuditCard } from "./audit_card";
import { LogCard } from "./log_card";
import { ReadinessCard } from "./readiness_card";

const period = 2000;

function useHealth(): Health | undefined {
  const health = useSignal<Health | undefined>(undefined);
  const connection = connections.value;
  useEffect(() => {
    const read = () => {
      if (!document.hidden) void call("get", "/_host/health").then((value) => (health.value = value), () => undefined);
    };
    read();
    const timer = setInterval(read, period);
    return () => clearInterval(timer);
  }, [connection]);
  return health.value;
}

function Facts({ facts }: { facts: [string, unknown][] }) {
  return (
    <dl class="facts">
      {facts.map(([name, value]) => (
        <div key={name}>
          <dt>{name}</dt>
          <dd>{String(value)}</dd>
        </div>
      ))}
    </dl>
  );
}

const spaced = (name: string) => name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);

function Statistics({ health }: { health: Health }) {
  const counters = Object.entries(health.statistics ?? {});
  return (
    <Card title="Statistics">
      <div class="numbers">
        {counters.map(([name, value]) => (
          <p key={name}>
            <b>{Number(value).toLocaleString("en")}</b>
            <span>{spaced(name)}</span>
          </p>
        ))}
      </div>
    </Card>
  );
}

function Tasks({ health }: { health: Health }) {
  const { running, queued, delayed } = health.tasks;
  const others = running.filter((task) => !task.name.startsWith("GET /_host/health"));
  return (
    <Card title="Tasks" actions={<span class="quiet">{`${queued} queued · ${delayed} delayed`}</span>}>
      {others.length === 0 && <p class="quiet">Nothing is running.</p>}
      <ul class="lines">
        {others.map((task, index) => (
          <li key={index}>
            <code>{task.name}</code> {task.waitsFor && <Badge kind="warn">{task.waitsFor}</Badge>}
          </li>
        ))}
      </ul>
    </Card>
  );
}

export function HostView() {
  const health = useHealth();
  if (!health) return <Empty icon="server" title="Asking the host …" />;
  return (
    <div class="page scroll">
      <h1>Host</h1>
      <div class="cards">
        <Card title="Plugin" actions={<Badge kind={health.status === "running" ? "good" : "bad"}>{health.status}</Badge>}>
          <Facts
            facts={[
              ["Name", health.plugin ?? "–"],
              ["Version", health.version ?? "–"],
              ["User agent", health.userAgent ?? "–"],
              ["Events held", `${health.events.first} to ${health.events.last}`],
            ]}
          />
        </Card>
        <ReadinessCard />
        <Statistics health={health} />
        <Tasks health={health} />
        <Card title="Subscriptions" actions={<span class="quiet">{health.subscriptions?.length ?? 0}</span>}>
          <ul class="lines">
            {(health.subscriptions ?? []).map((name) => (
              <li key={name}>
                <code>{name}</code>
              </li>
            ))}
          </ul>
        </Card>
        <AuditCard />
        <LogCard />
      </div>
    </div>
  );
}
