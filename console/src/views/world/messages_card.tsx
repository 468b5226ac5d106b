// The platform messages of the world, pushed by name.
import { call } from "../../api/client";
import type { World } from "../../state/world";
import { useAction } from "../../ui/action";
import { Button, Card } from "../../ui/controls";

export function MessagesCard({ state }: { state: World }) {
  const push = useAction(async (name: string) => {
    await call("post", "/_host/messages", { body: { name } });
    return `Pushed "${name}"`;
  });
  return (
    <Card title="Messages">
      {state.messages.length === 0 && <p class="quiet">The world has none.</p>}
      <ul class="lines actions">
        {state.messages.map((name) => (
          <li key={name}>
            <span>{name}</span>
            <Button label={`Push the message ${name}`} disabled={push.isRunning} onClick={() => void push.run(name)}>
              Push
            </Button>
          </li>
        ))}
      </ul>
      <p class="quiet">
        {state.loginMessages.length} wait in the login packet · {state.acknowledgements.length} acknowledged
      </p>
    </Card>
  );
}
