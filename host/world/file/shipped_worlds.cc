#include "host/world/file/shipped_worlds.h"

#include "host/world/file/shipped_world_texts.h"

namespace Kest::Host {
namespace {

struct Shipped {
  std::string_view name;
  const std::string_view& text;
};

constexpr Shipped kShipped[] = {
    {"sample", kSampleWorldText},
    {"empty", kEmptyWorldText},
    {"new-player", kNewPlayerWorldText},
    {"collector", kCollectorWorldText},
    {"every-status", kEveryStatusWorldText},
    {"late-collections", kLateCollectionsWorldText},
    {"disabled", kDisabledWorldText},
    {"in-game", kInGameWorldText},
    {"service-down", kServiceDownWorldText},
    {"long-texts", kLongTextsWorldText},
};

}  // namespace

std::vector<std::string_view> ShippedWorldNames() {
  std::vector<std::string_view> names;
  for (const Shipped& world : kShipped) names.push_back(world.name);
  return names;
}

std::string_view WorldSchema() {
  return kWorldSchemaText;
}

std::string_view ShippedWorld(std::string_view name) {
  for (const Shipped& world : kShipped) {
    if (world.name == name) return world.text;
  }
  return "";
}

}  // namespace Kest::Host
