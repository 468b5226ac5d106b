// One step of a publication, made before the first one leaves. Threads: module tasks only.
#pragma once

#include <string>

#include "client/sibling_client.h"

namespace Kest::Client::Loot {

struct PublicationStep {
  ResourceChange change;
  std::string announcement{};  // logged before the change leaves; empty: nothing
};

}  // namespace Kest::Client::Loot
