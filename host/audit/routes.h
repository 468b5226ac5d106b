// The routes of the plugin that can be read, and what can be compared at each with what was
// published: one row for each GET endpoint.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Kest::Host {

inline constexpr std::string_view kItemPrefix = "/tav-loot/v1/player-loot/";
inline constexpr std::string_view kItemListPath = "/tav-loot/v1/player-loot";
inline constexpr std::string_view kMapPath = "/tav-loot/v1/player-loot-map";
inline constexpr std::string_view kVersionedMapPath = "/tav-loot/v2/player-loot-map";

struct ReadableRoute {
  enum class Kind {
    kValue,  // the value last published at the path
    kItems,  // the items, which their own events add up to
    kItem,   // the value last published at the path; 404 once that was a deletion
    kView,   // as kValue once a client has read it, and not before: the first read has effects
    kNone,   // nothing; `because` says why
  };

  std::string_view path;  // the endpoint's template
  Kind kind = Kind::kNone;
  // Of kValue and kItems: the JSON that is returned before the first event.
  std::string_view initial = {};
  // The first read would retrieve the inventory; it is not read before there is one.
  bool needsInventory = false;
  bool isUnordered = false;  // a list without an order of its own
  bool mayRepeat = false;    // an event may bring what was published last
  std::string_view because = {};
};

std::span<const ReadableRoute> ReadableRoutes();

// The row whose path is exactly this; null when there is none.
const ReadableRoute* FindRoute(std::string_view path);

// Where the value of a view is published, by the path of a request for it, which may have escapes;
// nothing for other paths.
std::optional<std::string> PublishedPathOfView(std::string_view requestPath);
// The path that reads what is published there.
std::string RequestPath(std::string_view publishedPath);

}  // namespace Kest::Host
