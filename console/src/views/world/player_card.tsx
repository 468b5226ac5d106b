// The player: signed in or out, level, and the phase of the game.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import { login, logout } from "../../state/player";
import type { World } from "../../state/world";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field } from "../../ui/controls";

// Grants wait in those that are marked.
const phases = [
  "Lobby",
  "Matchmaking",
  "ReadyCheck *",
  "ChampSelect *",
  "GameStart *",
  "FailedToLaunch *",
  "InProgress *",
  "Reconnect *",
  "WaitingForStats *",
  "PreEndOfGame *",
  "EndOfGame",
];
const phaseOf = (text: string) => text.replace(" *", "");

function Level({ level }: { level: number }) {
  const typed = useSignal<number | undefined>(undefined);
  const set = useAction(async () => {
    const summonerLevel = typed.peek();
    if (summonerLevel === undefined || Number.isNaN(summonerLevel)) return;
    await call("put", "/_host/summoner", { body: { summonerLevel } });
    typed.value = undefined;
  });
  return (
    <Field label="Level">
      <span class="row">
        <input
          type="number"
          min={0}
          value={typed.value ?? level}
          onInput={(event) => (typed.value = event.currentTarget.valueAsNumber)}
          onKeyDown={(event) => event.key === "Enter" && void set.run()}
        />
        <Button isRunning={set.isRunning} disabled={typed.value === undefined} onClick={() => void set.run()}>
          Set
        </Button>
      </span>
    </Field>
  );
}

function Phase({ phase }: { phase: string | null }) {
  const set = useAction(async (next: string) => {
    await call("put", "/_host/gameflow", { body: { phase: next || null } });
  });
  const isKnown = phase === null || phases.some((text) => phaseOf(text) === phase);
  return (
    <Field label="Game phase" hint="* grants wait until the game is over">
      <select value={phase ?? ""} disabled={set.isRunning} onChange={(event) => void set.run(event.currentTarget.value)}>
        <option value="">none</option>
        {!isKnown && <option value={phase}>{phase}</option>}
        {phases.map((text) => (
          <option key={text} value={phaseOf(text)}>
            {text}
          </option>
        ))}
      </select>
    </Field>
  );
}

export function PlayerCard({ state }: { state: World }) {
  const signIn = useAction(login);
  const signOut = useAction(logout);
  const { session } = state;
  const badge = <Badge kind={session ? "good" : "warn"}>{session ? "Signed in" : "Signed out"}</Badge>;
  return (
    <Card title="Player" actions={badge}>
      {session && (
        <dl class="facts">
          <div>
            <dt>Summoner</dt>
            <dd>{session.summonerId}</dd>
          </div>
          <div>
            <dt>Account</dt>
            <dd>{session.accountId}</dd>
          </div>
        </dl>
      )}
      <div class="row">
        {session ? (
          <Button icon="person" isRunning={signOut.isRunning} onClick={() => void signOut.run()}>
            Sign out
          </Button>
        ) : (
          <Button kind="main" icon="person" isRunning={signIn.isRunning} onClick={() => void signIn.run()}>
            Sign in
          </Button>
        )}
      </div>
      <div class="fields">
        <Level level={state.summonerLevel} />
        <Phase phase={state.phase} />
      </div>
    </Card>
  );
}
