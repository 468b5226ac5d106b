#include "host/timeline/ledger.h"

#include <utility>

#include "host/timeline/row.h"
#include "host/world/data/inventory.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kDone = "OK";
constexpr size_t kDetailsBytes = 1000;

// The value of a string or integer member; anything else, of a result that a fault made, is left.
Json Member(const Json& record, const char* name) {
  if (!record.is_object() || !record.contains(name)) return nullptr;
  const Json& value = record[name];
  return value.is_structured() ? Json() : value;
}

Json Items(const Json& result, const char* list) {
  Json items = Json::array();
  if (!result.is_object() || !result.contains(list) || !result[list].is_array()) return items;
  for (const Json& record : result[list]) {
    const Json lootName = Member(record, "lootName");
    const Json refId = Member(record, "refId");
    if (!lootName.is_string()) continue;
    const LootKey key{lootName.get<std::string>(),
                      refId.is_string() ? refId.get<std::string>() : ""};
    items.push_back({{"lootId", key.LootId()},
                     {"lootName", key.lootName},
                     {"refId", key.refId},
                     {"count", Member(record, "count")}});
  }
  return items;
}

Json Redeemed(const Json& result) {
  Json names = Json::array();
  if (!result.is_object() || !result.contains("redeemed")) return names;
  for (const Json& name : result["redeemed"]) {
    if (name.is_string()) names.push_back(name);
  }
  return names;
}

}  // namespace

bool IsTransaction(std::string_view serviceAndMethod) {
  if (!serviceAndMethod.starts_with(kLootService)) return false;
  for (const std::string_view method : {kCraftMethod, kRedeemMethod, kNewPlayerChestMethod}) {
    if (serviceAndMethod.substr(kLootService.size()) == "." + std::string(method)) return true;
  }
  return false;
}

std::string RefusalHeader(const Refusal& refusal) {
  const Json json = {
      {"row", refusal.row}, {"status", refusal.status}, {"details", refusal.details}};
  return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

void Ledger::Open(uint64_t call, Call asked) {
  const MutexLock lock(mutex_);
  open_[call] = std::move(asked);
  if (open_.size() > kMostOpen) open_.erase(open_.begin());
}

void Ledger::Close(uint64_t call, const Response& response) {
  const MutexLock lock(mutex_);
  const auto found = open_.find(call);
  if (found == open_.end()) return;
  Json json = {{"row", response.row},
               {"call", call},
               {"request", found->second.request == 0 ? Json() : Json(found->second.request)},
               {"time", response.time},
               {"method", found->second.method}};
  json.update(found->second.order);
  Entry entry{found->second.request, std::nullopt, response.row, {}};
  open_.erase(found);
  json["status"] = response.status;
  json["details"] = Shorten(response.details, kDetailsBytes);
  json["took"] = Items(response.result, "removed");
  json["gave"] = Items(response.result, "added");
  json["redeemed"] = Redeemed(response.result);
  if (response.status != kDone) {
    entry.refusal = {response.row, response.status, json["details"]};
  }
  entry.json = WriteJson(json);
  bytes_ += entry.json.size();
  entries_.push_back(std::move(entry));
  while (entries_.size() > kMostEntries || (bytes_ > kMostBytes && entries_.size() > 1)) {
    bytes_ -= entries_.front().json.size();
    entries_.pop_front();
  }
}

Json Ledger::Entries(uint64_t after, std::optional<bool> refused, size_t limit) const {
  const MutexLock lock(mutex_);
  std::deque<const Entry*> found;
  for (const Entry& entry : entries_) {
    if (entry.row <= after || (refused && *refused != entry.refusal.has_value())) continue;
    found.push_back(&entry);
    if (found.size() > limit) found.pop_front();
  }
  Json list = Json::array();
  for (const Entry* entry : found) list.push_back(ParseJson(entry->json));
  return list;
}

std::optional<Refusal> Ledger::RefusalOf(uint64_t request) const {
  const MutexLock lock(mutex_);
  for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
    if (request != 0 && entry->request == request && entry->refusal) return entry->refusal;
  }
  return std::nullopt;
}

}  // namespace Kest::Host
