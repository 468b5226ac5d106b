// Finding the route of a request among the 24 endpoints of the loot back end: the route table
// against switches written by hand for just these, and against a scan of compiled regular
// expressions. An iteration is one look-up; the endpoints are asked for in turn.
#include <deque>
#include <iterator>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "api/route_table.h"
#include "bench/allocation_counter.h"
#include "bench/comparison.h"

namespace Kest::Bench {
namespace {

struct Endpoint {
  HttpMethod method;
  const char* text;
  const char* path;  // of a request for it
};

constexpr HttpMethod kGet = HttpMethod::kGet;
constexpr HttpMethod kPost = HttpMethod::kPost;
constexpr HttpMethod kDelete = HttpMethod::kDelete;
constexpr Endpoint kEndpoints[] = {
    {kPost, "/tav-loot/v1/refresh", "/tav-loot/v1/refresh"},
    {kGet, "/tav-loot/v1/enabled", "/tav-loot/v1/enabled"},
    {kGet, "/tav-loot/v1/ready", "/tav-loot/v1/ready"},
    {kGet, "/tav-loot/v1/player-loot", "/tav-loot/v1/player-loot"},
    {kGet, "/tav-loot/v1/player-loot-map", "/tav-loot/v1/player-loot-map"},
    {kGet, "/tav-loot/v2/player-loot-map", "/tav-loot/v2/player-loot-map"},
    {kGet, "/tav-loot/v1/player-loot/{lootId}", "/tav-loot/v1/player-loot/CHEST_41"},
    {kGet, "/tav-loot/v1/player-display-categories", "/tav-loot/v1/player-display-categories"},
    {kGet, "/tav-loot/v1/new-player-check-done", "/tav-loot/v1/new-player-check-done"},
    {kPost, "/tav-loot/v1/new-player-check-done/{newValue}",
     "/tav-loot/v1/new-player-check-done/false"},
    {kGet, "/tav-loot/v1/recipes/configuration", "/tav-loot/v1/recipes/configuration"},
    {kGet, "/tav-loot/v1/currency-configuration", "/tav-loot/v1/currency-configuration"},
    {kGet, "/tav-loot/v1/recipes/initial-item/{lootId}",
     "/tav-loot/v1/recipes/initial-item/CHEST_41"},
    {kPost, "/tav-loot/v1/recipes/initial-item/{lootId}",
     "/tav-loot/v1/recipes/initial-item/CHEST_41"},
    {kPost, "/tav-loot/v1/recipes/{recipeName}/craft", "/tav-loot/v1/recipes/CHEST_41_OPEN/craft"},
    {kPost, "/tav-loot/v1/player-loot/{lootName}/redeem",
     "/tav-loot/v1/player-loot/SKIN_RENTAL_9/redeem"},
    {kGet, "/tav-loot/v1/loot-grants", "/tav-loot/v1/loot-grants"},
    {kDelete, "/tav-loot/v1/loot-grants/{id}", "/tav-loot/v1/loot-grants/17"},
    {kGet, "/tav-loot/v1/player-loot/{lootId}/context-menu",
     "/tav-loot/v1/player-loot/CHEST_41/context-menu"},
    {kPost, "/tav-loot/v1/player-loot/{lootId}/context-menu",
     "/tav-loot/v1/player-loot/CHEST_41/context-menu"},
    {kDelete, "/tav-loot/v1/player-loot/{lootId}/new-notification",
     "/tav-loot/v1/player-loot/CHEST_41/new-notification"},
    {kGet, "/tav-loot/v1/loot-items", "/tav-loot/v1/loot-items"},
    {kGet, "/tav-loot/v1/player-loot-notifications", "/tav-loot/v1/player-loot-notifications"},
    {kPost, "/tav-loot/v1/player-loot-notifications/{id}/acknowledge",
     "/tav-loot/v1/player-loot-notifications/CHEST_41/acknowledge"},
};
constexpr size_t kCount = std::size(kEndpoints);

// Asks `find(endpoint)` for one endpoint after the other, expecting its place in the list.
template <typename Find>
auto LookUp(Find find) {
  return [find, next = size_t{0}]() mutable {
    Require(find(kEndpoints[next]) == next, "wrong route");
    if (++next == kCount) next = 0;
  };
}

// A path below `prefix` with one segment, and `suffix` after it.
bool IsBetween(std::string_view path, std::string_view prefix, std::string_view suffix,
               RouteCaptures* captures) {
  if (path.size() < prefix.size() + suffix.size() || !path.starts_with(prefix) ||
      !path.ends_with(suffix)) {
    return false;
  }
  const std::string_view segment =
      path.substr(prefix.size(), path.size() - prefix.size() - suffix.size());
  if (segment.find('/') != std::string_view::npos) return false;
  captures->Append(segment);
  return true;
}

size_t FindGetByHand(std::string_view path, RouteCaptures* captures) {
  switch (path.size()) {
    case 18:
      if (path == "/tav-loot/v1/ready") return 2;
      break;
    case 20:
      if (path == "/tav-loot/v1/enabled") return 1;
      break;
    case 23:
      if (path == "/tav-loot/v1/loot-items") return 21;
      break;
    case 24:
      if (path == "/tav-loot/v1/player-loot") return 3;
      if (path == "/tav-loot/v1/loot-grants") return 16;
      break;
    case 28:
      if (path == "/tav-loot/v1/player-loot-map") return 4;
      if (path == "/tav-loot/v2/player-loot-map") return 5;
      break;
    case 34:
      if (path == "/tav-loot/v1/recipes/configuration") return 10;
      if (path == "/tav-loot/v1/new-player-check-done") return 8;
      break;
    case 35:
      if (path == "/tav-loot/v1/currency-configuration") return 11;
      break;
    case 38:
      if (path == "/tav-loot/v1/player-loot-notifications") return 22;
      if (path == "/tav-loot/v1/player-display-categories") return 7;
      break;
    default:
      break;
  }
  if (IsBetween(path, "/tav-loot/v1/player-loot/", "", captures)) return 6;
  if (IsBetween(path, "/tav-loot/v1/recipes/initial-item/", "", captures)) return 12;
  if (IsBetween(path, "/tav-loot/v1/player-loot/", "/context-menu", captures)) return 18;
  return kCount;
}

size_t FindByHand(HttpMethod method, std::string_view path, RouteCaptures* captures) {
  captures->Clear();
  const auto isBetween = [&](std::string_view prefix, std::string_view suffix) {
    return IsBetween(path, prefix, suffix, captures);
  };
  switch (method) {
    case kGet:
      return FindGetByHand(path, captures);
    case kPost:
      if (path == "/tav-loot/v1/refresh") return 0;
      if (isBetween("/tav-loot/v1/new-player-check-done/", "")) return 9;
      if (isBetween("/tav-loot/v1/recipes/initial-item/", "")) return 13;
      if (isBetween("/tav-loot/v1/recipes/", "/craft")) return 14;
      if (isBetween("/tav-loot/v1/player-loot/", "/redeem")) return 15;
      if (isBetween("/tav-loot/v1/player-loot/", "/context-menu")) return 19;
      if (isBetween("/tav-loot/v1/player-loot-notifications/", "/acknowledge")) return 23;
      return kCount;
    case kDelete:
      if (isBetween("/tav-loot/v1/loot-grants/", "")) return 17;
      if (isBetween("/tav-loot/v1/player-loot/", "/new-notification")) return 20;
      return kCount;
    default:
      return kCount;
  }
}

}  // namespace

void AddRows(Table& table) {
  std::deque<RouteTemplate> routes;
  RouteTable routeTable;
  std::vector<std::regex> patterns;
  for (const Endpoint& e : kEndpoints) {
    routeTable.Add(e.method, routes.emplace_back(e.text));
    patterns.emplace_back(routes.back().Pattern(), std::regex::optimize);
  }
  RouteCaptures captures;
  const auto find = LookUp([&](const Endpoint& e) {
    const auto found = routeTable.Find(e.method, e.path, &captures);
    Keep(captures);
    return found.value_or(kCount);
  });
  const auto findByHand = LookUp([&](const Endpoint& e) {
    const size_t found = FindByHand(e.method, e.path, &captures);
    Keep(captures);
    return found;
  });
  std::cmatch groups;
  const auto scan = LookUp([&](const Endpoint& e) {
    for (size_t i = 0; i < kCount; ++i) {
      if (kEndpoints[i].method == e.method && std::regex_match(e.path, groups, patterns[i])) {
        return i;
      }
    }
    return kCount;
  });
  table.Compare("route of a request, 24 endpoints", find, "switch by hand", findByHand,
                AtMost(1.3));
  table.Compare("route of a request, 24 endpoints", find, "scan of std::regex", scan, AtLeast(20));
  table.Value("route of a request: allocations", Allocations(find), "", 0);
}

}  // namespace Kest::Bench
