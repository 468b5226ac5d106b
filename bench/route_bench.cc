// Finding the route of a request among the 24 endpoints of the loot back end: the route table
// against a scan of compiled regular expressions. An iteration is one look-up; the endpoints are
// asked for in turn.
#include <deque>
#include <iterator>
#include <regex>
#include <string>
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
  std::cmatch groups;
  const auto scan = LookUp([&](const Endpoint& e) {
    for (size_t i = 0; i < kCount; ++i) {
      if (kEndpoints[i].method == e.method && std::regex_match(e.path, groups, patterns[i])) {
        return i;
      }
    }
    return kCount;
  });
  table.Compare("route of a request, 24 endpoints", find, "scan of std::regex", scan, AtLeast(20));
  table.Value("route of a request: allocations", Allocations(find), "", 0);
}

}  // namespace Kest::Bench
