// What the auditor compared, and what it found; it is switched here.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import { call } from "../../api/client";
import type { Schemas } from "../../api/types";
import { connections } from "../../state/stream";
import { useAction } from "../../ui/action";
import { Badge, Card, Segmented } from "../../ui/controls";

type Report = Schemas["AuditReport"];
type Finding = Schemas["AuditFinding"];

const period = 2000;
const modes = [
  ["off", "Off"],
  ["on", "On"],
] as const;

function Found({ finding }: { finding: Finding }) {
  return (
    <li>
      <Badge kind="bad">{finding.check}</Badge> <code>{finding.path}</code>
      {finding.event !== null && <span class="quiet">{` event ${finding.event}`}</span>}
      <p class="quiet">{`Expected: ${finding.expected}`}</p>
      <p class="quiet">{`Found: ${finding.found}`}</p>
    </li>
  );
}

function summaryOf(report: Report): string {
  if (report.mode === "off") return "Changes are not compared with their events.";
  if (!report.last) return "Nothing has been compared yet.";
  const { values, views, items } = report.last;
  return `${report.runs} runs; the last compared ${values} values, ${views} views and ${items} items.`;
}

export function AuditCard() {
  const report = useSignal<Report | undefined>(undefined);
  const set = useAction(async (mode: Report["mode"]) => void (report.value = await call("put", "/_host/audit", { body: { mode } })));
  const connection = connections.value;
  useEffect(() => {
    const read = () => {
      if (!document.hidden) void call("get", "/_host/audit").then((value) => (report.value = value), () => undefined);
    };
    read();
    const timer = setInterval(read, period);
    return () => clearInterval(timer);
  }, [connection]);
  const known = report.value;
  if (!known) return null;
  const chosen = known.mode === "off" ? "off" : "on";
  return (
    <Card
      title="Audit"
      actions={<Segmented label="Whether changes are compared" options={modes} value={chosen} disabled={set.isRunning} onChange={(mode) => void set.run(mode)} />}
    >
      <p>{summaryOf(known)}</p>
      <ul class="lines" aria-label="Findings">
        {[...known.findings].reverse().map((finding) => (
          <Found key={finding.id} finding={finding} />
        ))}
      </ul>
      {known.mode !== "off" && known.findings.length === 0 && <p class="quiet">No finding.</p>}
    </Card>
  );
}
