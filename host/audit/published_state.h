// What a subscriber of all of the plugin's events knows, and what their order must be: each
// item is created before it is updated or deleted, an event brings a change, a publication's items
// add up to its maps, and the version grows by one.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host/audit/finding.h"
#include "host/audit/item_map.h"

namespace Kest::Host {

class PublishedState {
 public:
  using Digests = ItemDigests;

  // `findings` outlives it.
  explicit PublishedState(FindingSink* findings) : findings_(findings) { Reset(); }

  // The plugin starts: nothing has been published.
  void Reset();
  // `eventType` is one of KEST_EVENT_....
  void Take(std::string_view path, int32_t eventType, std::string_view json);
  // What was read there counts as what was published last, without any check. Adopting the map
  // means its items, too.
  void Adopt(std::string_view path, std::string_view json);

  // 0 before the first inventory.
  int64_t version() const { return version_; }
  const Digests& items() const { return items_; }
  // The digest of the value last published at a path that is no item, or else of the one returned
  // before the first event; nothing when neither is known.
  std::optional<uint64_t> Find(std::string_view path) const;
  // A sum over all events since the last call that does not depend on the order of items.
  uint64_t TakeTrace();

  // How a document at that path is hashed: lists without an order of their own as sets.
  static uint64_t Digest(std::string_view path, std::string_view json);

 private:
  void TakeItem(std::string_view path, int32_t eventType, uint64_t digest);
  void TakeValue(std::string_view path, uint64_t digest);
  void TakeVersionedMap(const ReadMap& map);
  void AddRepeated(std::string_view path);

  FindingSink* const findings_;
  Digests items_;
  Digests map_;  // the last "/tav-loot/v1/player-loot-map"
  Digests values_;
  int64_t version_ = 0;
  uint64_t trace_ = 0;
};

}  // namespace Kest::Host
