// The player: signed in or out, level, and the phase of the game.
import { call } from "../../api/client";
import { login, logout } from "../../state/player";
import type { World } from "../../state/world";
import { useAction } from "../../ui/action";
import { Badge, Button, Card, Field } from "../../ui/controls";
import { NumberInput, useNumber } from "../../ui/number";

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
  const typed = useNumber(level, { least: 0, most: 2147483647 });
  const set = useAction(async (summonerLevel: number) => {
    await call("put", "/_host/summoner", { body: { summonerLevel } });
    typed.forget();
  });
  const run = () => typed.value !== undefined && void set.run(typed.value);
  return (
    <Field label="Level" hint={typed.reason}>
      <span class="row">
        <NumberInput number={typed} onEnter={run} />
        <Button isRunning={set.isRunning} disabled={!typed.isTyped || typed.value === undefined} title={typed.reason} onClick={run}>
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
