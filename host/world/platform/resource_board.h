// The resources of all sibling plugins, as their owners last published them. A change, and only a
// change, leaves an event in the outbox.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/json/json.h"
#include "host/world/data/world_events.h"

namespace Kest::Host {

class ResourceBoard {
 public:
  // `outbox` must outlive the board.
  explicit ResourceBoard(std::vector<WorldEvent>& outbox) : outbox_(outbox) {}

  void Set(const std::string& path, const Json& value);
  void Remove(const std::string& path);
  // An event of a resource; without data of its deletion.
  static WorldEvent Event(std::string_view path, std::string_view eventType, std::string_view data);

  // The value as JSON text, or null.
  const std::string* Find(std::string_view path) const;

 private:
  std::vector<WorldEvent>& outbox_;
  std::map<std::string, std::string, std::less<>> texts_;  // by path
};

}  // namespace Kest::Host
