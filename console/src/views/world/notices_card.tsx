// What the plugin shows the player: grants and chest notifications.
import { call } from "../../api/client";
import type { Schemas } from "../../api/types";
import { resource } from "../../state/resources";
import { useAction } from "../../ui/action";
import { Badge, Button, Card } from "../../ui/controls";

function Grant({ grant }: { grant: Schemas["LootGrantNotification"] }) {
  const dismiss = useAction(async () => {
    await call("delete", "/tav-loot/v1/loot-grants/{id}", { path: { id: grant.id } });
  });
  return (
    <li>
      <span>
        Game {grant.gameId} {grant.lootName && <code>{grant.lootName}</code>} {grant.messageKey && <Badge>{grant.messageKey}</Badge>}
      </span>
      <Button label={`Dismiss grant ${grant.id}`} isRunning={dismiss.isRunning} onClick={() => void dismiss.run()}>
        Dismiss
      </Button>
    </li>
  );
}

function Chest({ notice }: { notice: Schemas["PlayerLootNotification"] }) {
  const acknowledge = useAction(async () => {
    await call("post", "/tav-loot/v1/player-loot-notifications/{id}/acknowledge", { path: { id: notice.id } });
  });
  return (
    <li>
      <span>
        <code>{notice.id}</code> {notice.count}× {notice.acknowledged && <Badge>seen</Badge>}
      </span>
      {!notice.acknowledged && (
        <Button label={`Acknowledge ${notice.id}`} isRunning={acknowledge.isRunning} onClick={() => void acknowledge.run()}>
          Acknowledge
        </Button>
      )}
    </li>
  );
}

export function NoticesCard() {
  const grants = resource("/tav-loot/v1/loot-grants").value ?? [];
  const chests = resource("/tav-loot/v1/player-loot-notifications").value ?? [];
  return (
    <Card title="Shown to the player">
      {grants.length + chests.length === 0 && <p class="quiet">No grants and no chest notifications.</p>}
      <ul class="lines actions">
        {grants.map((grant) => (
          <Grant key={grant.id} grant={grant} />
        ))}
        {chests.map((notice) => (
          <Chest key={notice.id} notice={notice} />
        ))}
      </ul>
    </Card>
  );
}
