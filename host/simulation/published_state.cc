#include "host/simulation/published_state.h"

#include <utility>

#include "host/simulation/json_digest.h"
#include "plugin/host_interface.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kItemPrefix = "/tav-loot/v1/player-loot/";
constexpr std::string_view kMapPath = "/tav-loot/v1/player-loot-map";
constexpr std::string_view kVersionedMapPath = "/tav-loot/v2/player-loot-map";
constexpr std::string_view kUnorderedLists[] = {"/tav-loot/v1/player-loot",
                                                "/tav-loot/v1/player-loot-notifications"};

std::string Describe(const PublishedState::Digests& digests) {
  std::string text = std::to_string(digests.size()) + " items:";
  for (const auto& [id, digest] : digests)
    text += " " + id + "=" + std::to_string(digest % 100'000);
  return text;
}

}  // namespace

void PublishedState::Reset() {
  items_.clear();
  map_.clear();
  values_.clear();
  version_ = 0;
}

uint64_t PublishedState::Digest(std::string_view path, std::string_view json) {
  for (const std::string_view list : kUnorderedLists) {
    if (path == list) return DigestJson(json, ArrayOrder::kIgnored);
  }
  return DigestJson(json);
}

std::optional<uint64_t> PublishedState::Find(std::string_view path) const {
  const auto found = values_.find(path);
  return found == values_.end() ? std::nullopt : std::optional<uint64_t>(found->second);
}

uint64_t PublishedState::TakeTrace() {
  return std::exchange(trace_, 0);
}

void PublishedState::Take(std::string_view path, int32_t eventType, std::string_view json) {
  const bool isDelete = eventType == KEST_EVENT_DELETE;
  const uint64_t digest = isDelete ? 0 : Digest(path, json);
  if (!isDelete && digest == 0) {
    findings_->Add("what is published is JSON", "a JSON document at " + std::string(path),
                   std::string(json.substr(0, 200)));
  }
  trace_ += Mix(Mix(DigestText(path), static_cast<uint64_t>(eventType)), digest);
  if (path.starts_with(kItemPrefix) && path.find('/', kItemPrefix.size()) == path.npos) {
    TakeItem(path.substr(kItemPrefix.size()), eventType, digest);
  } else if (path == kVersionedMapPath) {
    TakeVersionedMap(json);
  } else if (isDelete) {
    values_.erase(std::string(path));
  } else {
    values_[std::string(path)] = digest;
  }
  if (path == kMapPath) {
    map_.clear();
    DigestJson(json, ArrayOrder::kKept,
               [this](int depth, std::string_view id, uint64_t item, int64_t) {
                 if (depth == 1) map_.insert_or_assign(std::string(id), item);
               });
  }
}

void PublishedState::TakeItem(std::string_view lootId, int32_t eventType, uint64_t digest) {
  const bool isKnown = items_.contains(lootId);
  if (isKnown == (eventType == KEST_EVENT_CREATE)) {
    findings_->Add("an item is created once, then updated or deleted",
                   isKnown ? "an update or deletion of " + std::string(lootId)
                           : "the creation of " + std::string(lootId),
                   "an event of type " + std::to_string(eventType));
  }
  if (eventType == KEST_EVENT_DELETE) {
    items_.erase(std::string(lootId));
  } else {
    items_.insert_or_assign(std::string(lootId), digest);
  }
}

void PublishedState::TakeVersionedMap(std::string_view json) {
  Digests inside;
  int64_t version = -1;
  DigestJson(json, ArrayOrder::kKept,
             [&](int depth, std::string_view name, uint64_t digest, int64_t integer) {
               if (depth == 2) inside.insert_or_assign(std::string(name), digest);
               if (depth == 1 && name == "version") version = integer;
             });
  if (version != version_ + 1) {
    findings_->Add("the version grows by one with each publication",
                   "version " + std::to_string(version_ + 1), "version " + std::to_string(version));
  }
  version_ = version;
  if (inside != map_) {
    findings_->Add("the two maps of a publication agree", Describe(map_), Describe(inside));
  }
  if (inside != items_) {
    findings_->Add("the items published add up to the map", Describe(items_), Describe(inside));
  }
}

}  // namespace Kest::Host
