#include "host/audit/routes.h"

#include <algorithm>

#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

using Kind = ReadableRoute::Kind;

constexpr std::string_view kAsksPlatform =
    "A read asks the platform for the settings, which may publish them.";

constexpr ReadableRoute kReadableRoutes[] = {
    {.path = "/tav-loot/v1/enabled", .kind = Kind::kValue, .initial = "false"},
    {.path = "/tav-loot/v1/ready", .kind = Kind::kValue, .initial = "false"},
    {.path = "/tav-loot/v1/player-loot-notifications",
     .kind = Kind::kValue,
     .initial = "[]",
     .isUnordered = true,
     .mayRepeat = true,
     .because = "Each acknowledgement publishes the list."},
    {.path = "/tav-loot/v1/loot-grants",
     .kind = Kind::kValue,
     .initial = "[]",
     .mayRepeat = true,
     .because = "The end of a game publishes the list, with or without a new grant."},
    {.path = "/tav-loot/v1/player-display-categories",
     .kind = Kind::kValue,
     .initial = "[]",
     .needsInventory = true},
    {.path = kMapPath, .kind = Kind::kItems, .initial = "{}", .needsInventory = true},
    {.path = kVersionedMapPath, .kind = Kind::kItems, .needsInventory = true},
    {.path = kItemListPath,
     .kind = Kind::kItems,
     .needsInventory = true,
     .isUnordered = true,
     .because = "Has no event of its own."},
    {.path = "/tav-loot/v1/player-loot/{lootId}", .kind = Kind::kItem, .needsInventory = true},
    {.path = "/tav-loot/v1/player-loot/{lootId}/context-menu",
     .kind = Kind::kView,
     .because = "Published once a client has read it."},
    {.path = "/tav-loot/v1/recipes/initial-item/{lootId}",
     .kind = Kind::kView,
     .because = "Published once a client has read it."},
    {.path = "/tav-loot/v1/recipes/configuration", .because = kAsksPlatform},
    {.path = "/tav-loot/v1/currency-configuration", .because = kAsksPlatform},
    {.path = "/tav-loot/v1/loot-items", .because = "The definitions have no event."},
    {.path = "/tav-loot/v1/new-player-check-done", .because = "The check has no event."},
};

// A template around its one parameter.
struct Around {
  std::string_view prefix;
  std::string_view suffix;
};

Around Split(std::string_view path) {
  const size_t begin = path.find('{');
  const size_t end = path.find('}');
  if (begin == path.npos || end == path.npos) return {path, {}};
  return {path.substr(0, begin), path.substr(end + 1)};
}

// The part of a path in the place of the parameter; empty when the path does not match.
std::string_view ParameterIn(std::string_view path, std::string_view pathTemplate) {
  const Around around = Split(pathTemplate);
  if (path.size() <= around.prefix.size() + around.suffix.size() ||
      !path.starts_with(around.prefix) || !path.ends_with(around.suffix)) {
    return {};
  }
  path.remove_prefix(around.prefix.size());
  path.remove_suffix(around.suffix.size());
  return path;
}

}  // namespace

std::span<const ReadableRoute> ReadableRoutes() {
  return kReadableRoutes;
}

const ReadableRoute* FindRoute(std::string_view path) {
  const auto* const found =
      std::find_if(std::begin(kReadableRoutes), std::end(kReadableRoutes),
                   [path](const ReadableRoute& route) { return route.path == path; });
  return found != std::end(kReadableRoutes) ? found : nullptr;
}

std::optional<std::string> PublishedPathOfView(std::string_view requestPath) {
  for (const ReadableRoute& route : kReadableRoutes) {
    if (route.kind != Kind::kView) continue;
    const std::string_view part = ParameterIn(requestPath, route.path);
    if (part.empty() || part.find('/') != part.npos) continue;
    const std::string id = DecodePercent(part);
    if (id.find('/') != id.npos) continue;
    const Around around = Split(route.path);
    return std::string(around.prefix).append(id).append(around.suffix);
  }
  return std::nullopt;
}

std::string RequestPath(std::string_view publishedPath) {
  if (FindRoute(publishedPath) != nullptr) return std::string(publishedPath);
  for (const ReadableRoute& route : kReadableRoutes) {
    const std::string_view id = ParameterIn(publishedPath, route.path);
    if (id.empty() || id.find('/') != id.npos) continue;
    const Around around = Split(route.path);
    return std::string(around.prefix).append(EncodePercent(id)).append(around.suffix);
  }
  return std::string(publishedPath);
}

}  // namespace Kest::Host
