#include "host/audit/published_state.h"

#include <utility>

#include "host/audit/comparisons.h"
#include "host/audit/json_digest.h"
#include "host/audit/routes.h"
#include "plugin/host_interface.h"

namespace Kest::Host {
namespace {

bool IsItem(std::string_view path) {
  return path.starts_with(kItemPrefix) && path.find('/', kItemPrefix.size()) == path.npos;
}

}  // namespace

void PublishedState::Reset() {
  items_.clear();
  map_.clear();
  values_.clear();
  version_ = 0;
  for (const ReadableRoute& route : ReadableRoutes()) {
    if (route.initial.empty()) continue;
    values_.emplace(std::string(route.path), Digest(route.path, route.initial));
  }
}

uint64_t PublishedState::Digest(std::string_view path, std::string_view json) {
  const ReadableRoute* const route = FindRoute(path);
  const bool isUnordered = route != nullptr && route->isUnordered;
  return DigestJson(json, isUnordered ? ArrayOrder::kIgnored : ArrayOrder::kKept);
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
  ReadMap map;
  if (path == kMapPath) map = ReadItemMap(json);
  if (path == kVersionedMapPath) map = ReadVersionedItemMap(json);
  const uint64_t digest = isDelete || map.digest != 0 ? map.digest : Digest(path, json);
  if (!isDelete && digest == 0) {
    findings_->Add("what is published is JSON", "a JSON document", std::string(json.substr(0, 200)),
                   std::string(path));
  }
  trace_ += Mix(Mix(DigestText(path), static_cast<uint64_t>(eventType)), digest);
  if (IsItem(path)) {
    TakeItem(path, eventType, digest);
  } else if (path == kVersionedMapPath) {
    TakeVersionedMap(map);
  } else if (isDelete) {
    values_.erase(std::string(path));
  } else {
    TakeValue(path, digest);
  }
  if (path == kMapPath) map_ = std::move(map.items);
}

void PublishedState::Adopt(std::string_view path, std::string_view json) {
  if (path == kVersionedMapPath) {
    version_ = ReadVersionedItemMap(json).version;
  } else if (IsItem(path)) {
    items_.insert_or_assign(std::string(path.substr(kItemPrefix.size())), Digest(path, json));
  } else {
    values_.insert_or_assign(std::string(path), Digest(path, json));
  }
  if (path == kMapPath) items_ = map_ = ReadItemMap(json).items;
}

void PublishedState::AddRepeated(std::string_view path) {
  findings_->Add("an event brings a change", "a value other than the one published last",
                 "the same value", std::string(path));
}

void PublishedState::TakeItem(std::string_view path, int32_t eventType, uint64_t digest) {
  const std::string_view lootId = path.substr(kItemPrefix.size());
  const auto known = items_.find(lootId);
  const bool isKnown = known != items_.end();
  if (isKnown == (eventType == KEST_EVENT_CREATE)) {
    findings_->Add("an item is created once, then updated or deleted",
                   isKnown ? "an update or deletion" : "a creation",
                   "an event of type " + std::to_string(eventType), std::string(path));
  } else if (isKnown && known->second == digest) {
    AddRepeated(path);
  }
  if (eventType == KEST_EVENT_DELETE) {
    items_.erase(std::string(lootId));
  } else {
    items_.insert_or_assign(std::string(lootId), digest);
  }
}

void PublishedState::TakeValue(std::string_view path, uint64_t digest) {
  const auto [known, isNew] = values_.try_emplace(std::string(path), digest);
  if (isNew) return;
  const ReadableRoute* const route = FindRoute(path);
  const bool mayRepeat = route != nullptr && route->mayRepeat;
  if (known->second == digest && !mayRepeat) AddRepeated(path);
  known->second = digest;
}

void PublishedState::TakeVersionedMap(const ReadMap& map) {
  const std::string path(kVersionedMapPath);
  if (map.version != version_ + 1) {
    findings_->Add("the version grows by one with each publication",
                   "version " + std::to_string(version_ + 1),
                   "version " + std::to_string(map.version), path);
  }
  version_ = map.version;
  if (map.items != map_) {
    findings_->Add("the two maps of a publication agree", "the items of the other map",
                   Differences(map_, map.items), path);
  }
  if (map.items != items_) {
    findings_->Add("the items published add up to the map", "the items published",
                   Differences(items_, map.items), path);
  }
}

}  // namespace Kest::Host
