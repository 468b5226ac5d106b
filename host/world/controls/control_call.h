// One call of a control, and the functions that carry them out.
#pragma once

#include "host/openapi/control_lookup.h"
#include "host/url/request_target.h"
#include "host/world/controls/platform.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {

struct ControlCall {
  PathArguments path;  // "collection": "skins", "id": "11002"
  Document body;       // an empty object when there was none
  RequestTarget target;
};

using ControlResult = Maybe<Json>;
using ControlFunction = ControlResult (*)(Platform& platform, const ControlCall& call);

// controls_player.cc: who plays, and what the player owns.
ControlResult ShowWorld(Platform& platform, const ControlCall& call);
ControlResult ShowState(Platform& platform, const ControlCall& call);
ControlResult WithholdCollections(Platform& platform, const ControlCall& call);
ControlResult SignIn(Platform& platform, const ControlCall& call);
ControlResult SignOut(Platform& platform, const ControlCall& call);
ControlResult SetSummoner(Platform& platform, const ControlCall& call);
ControlResult SetGameflow(Platform& platform, const ControlCall& call);
ControlResult SetOwnership(Platform& platform, const ControlCall& call);
ControlResult ChangeInventory(Platform& platform, const ControlCall& call);

// controls_platform.cc: configuration, messages, token.
ControlResult SetConfiguration(Platform& platform, const ControlCall& call);
ControlResult RemoveConfiguration(Platform& platform, const ControlCall& call);
ControlResult ChangeDefinition(Platform& platform, const ControlCall& call);
ControlResult ChangeRecipe(Platform& platform, const ControlCall& call);
ControlResult PushMessage(Platform& platform, const ControlCall& call);
ControlResult SetLoginPacket(Platform& platform, const ControlCall& call);
ControlResult SetToken(Platform& platform, const ControlCall& call);
ControlResult ResetToken(Platform& platform, const ControlCall& call);

// controls_faults.cc: fault rules, and held calls.
ControlResult ShowFaults(Platform& platform, const ControlCall& call);
ControlResult SetFaults(Platform& platform, const ControlCall& call);
ControlResult AddFault(Platform& platform, const ControlCall& call);
ControlResult RemoveFault(Platform& platform, const ControlCall& call);
ControlResult RemoveFaults(Platform& platform, const ControlCall& call);
ControlResult ShowHeld(Platform& platform, const ControlCall& call);
ControlResult EndHeld(Platform& platform, const ControlCall& call);
ControlResult OverrideService(Platform& platform, const ControlCall& call);
ControlResult ResetService(Platform& platform, const ControlCall& call);

// controls_results.cc: what crafts give.
ControlResult ShowNextResults(Platform& platform, const ControlCall& call);
ControlResult PrepareNextResult(Platform& platform, const ControlCall& call);
ControlResult ForgetNextResults(Platform& platform, const ControlCall& call);
ControlResult ShowOdds(Platform& platform, const ControlCall& call);

}  // namespace Kest::Host
