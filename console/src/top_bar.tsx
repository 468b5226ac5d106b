// What always matters: which world and player, whether the host is there, and the way back to the start.
import { call } from "./api/client";
import { addressOf } from "./route";
import { nextTheme, theme } from "./theme";
import { wantInventory } from "./state/inventory";
import { connection, retryNow } from "./state/stream";
import { clock, shownTime } from "./state/clock";
import { waiting } from "./state/crafts";
import { scenario, scenarios } from "./state/scenarios";
import { faults, held, rulesOf } from "./state/faults";
import { world } from "./state/world";
import { useAction } from "./ui/action";
import { Badge, Button } from "./ui/controls";
import { Icon } from "./ui/icon";

const themeIcons = { system: "half", light: "sun", dark: "moon" } as const;
const connectionTexts = { connecting: "Connecting", live: "Live", lost: "Reconnecting" } as const;

function Connection() {
  const state = connection.value;
  return (
    <button type="button" class={`connection ${state}`} aria-live="polite" title="The stream of events" disabled={state !== "lost"} onClick={retryNow}>
      <span class="dot" aria-hidden="true" />
      <span>{connectionTexts[state]}</span>
    </button>
  );
}

export function TopBar() {
  const reset = useAction(async () => {
    wantInventory();
    await call("post", "/_host/reset");
    return "World and plugin have started again";
  });
  // All of it at once, so that what comes late moves nothing.
  const state = faults.value && scenarios.value.length > 0 ? world.value : undefined;
  const hasFaults = rulesOf(faults.value).length > 0;
  return (
    <header class="top">
      <p class="brand">
        <Icon name="grid" />
        <span>Loot console</span>
      </p>
      <p class="scene">
        {state && (
          <>
            <b>{state.name}</b>
            {scenario.value && (
              <span class="quiet" title="The scenario">
                {scenario.value}
              </span>
            )}
            <Badge kind={state.session ? "good" : "warn"}>{state.session ? "Signed in" : "Signed out"}</Badge>
            {state.phase && <Badge>{state.phase}</Badge>}
          </>
        )}
        {state && (
          <a class={`badge ${hasFaults ? "warn" : ""}`} href={addressOf("world", { card: "faults" })}>
            {hasFaults ? "Faults on" : "Faults off"}
          </a>
        )}
        {held.value.length > 0 && (
          <a class="badge new" href={addressOf("world", { card: "held" })}>
            <Icon name="hand" /> {held.value.length} held
          </a>
        )}
        {waiting.value.length > 0 && (
          <span class="badge strong" role="status">
            <span class="spinner" aria-hidden="true" /> {waiting.value.length} waiting
          </span>
        )}
      </p>
      <a class={`clock ${clock.value?.mode ?? ""}`} href={addressOf("world")} title="The clock of plugin and world">
        <Icon name="clock" />
        <span>{shownTime.value && `${shownTime.value} UTC`}</span>
      </a>
      <Connection />
      <Button icon={themeIcons[theme.value]} kind="plain" label={`Colors: ${theme.value}`} onClick={nextTheme} />
      <Button icon="reset" label="Reset world and plugin" isRunning={reset.isRunning} onClick={() => void reset.run()}>
        Reset
      </Button>
    </header>
  );
}
