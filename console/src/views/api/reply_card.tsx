// A response: status, time, headers and body.
import type { Reply } from "../../api/client";
import { Badge } from "../../ui/controls";
import { Json, parsed } from "../../ui/json";

export function ReplyCard({ reply }: { reply: Reply }) {
  const isGood = reply.status < 400;
  return (
    <section class="reply" aria-label="Response" aria-live="polite">
      <p class="badges">
        <Badge kind={isGood ? "good" : "bad"}>{reply.status}</Badge>
        <Badge>{reply.milliseconds.toFixed(reply.milliseconds < 10 ? 1 : 0)} ms</Badge>
        <Badge>{reply.text.length.toLocaleString("en")} characters</Badge>
      </p>
      {reply.text === "" ? <p class="quiet">No body.</p> : <Json value={parsed(reply.text)} label="the response" />}
      <details>
        <summary>{reply.headers.length} headers</summary>
        <dl class="facts">
          {reply.headers.map(([name, value]) => (
            <div key={name}>
              <dt>{name}</dt>
              <dd>{value}</dd>
            </div>
          ))}
        </dl>
      </details>
    </section>
  );
}
