// The platform's side: the player, the game, configuration, collections, grants and messages.
import { world } from "../../state/world";
import { Empty } from "../../ui/controls";
import { ClockCard } from "./clock_card";
import { CollectionsCard } from "./collections_card";
import { ConfigurationCard } from "./configuration_card";
import { FaultsCard } from "./faults_card";
import { GrantCard } from "./grant_card";
import { HeldCard } from "./held_card";
import { MessagesCard } from "./messages_card";
import { NoticesCard } from "./notices_card";
import { PlayerCard } from "./player_card";
import { ScenarioCard, SnapshotCard } from "./scenario_card";

export function WorldView() {
  const state = world.value;
  if (!state) return <Empty icon="globe" title="Asking the host …" />;
  return (
    <div class="page scroll">
      <h1>{state.name}</h1>
      <div class="cards">
        <PlayerCard state={state} />
        <ClockCard />
        <FaultsCard />
        <HeldCard />
        <ConfigurationCard state={state} />
        <GrantCard />
        <ScenarioCard />
        <SnapshotCard />
        <MessagesCard state={state} />
        <NoticesCard />
        <CollectionsCard state={state} />
      </div>
    </div>
  );
}
