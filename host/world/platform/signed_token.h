// The signed inventory: a token of three base64 segments (header, payload, signature) joined with
// points. Nothing on this side is secret, so the signature is a plain text.
#pragma once

#include <string>

#include "host/world/data/collections.h"

namespace Kest::Host {

// The token that lists the owned tournament logos.
std::string TournamentLogoToken(const PlatformCollections& collections, uint64_t summonerId);

}  // namespace Kest::Host
