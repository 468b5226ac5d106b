#include "host/auditor/auditor.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/audit/json_digest.h"
#include "host/library/methods.h"
#include "host/url/request_target.h"
#include "plugin/host_interface.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kChangeIsPublished = "a change is published";
constexpr size_t kMostSame = 80;  // characters in front of the first that differs

// Whether the plugin can return what the route promises.
bool HasRoute(const KestApiDescriptor& api, std::string_view path) {
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
    if (MethodName(endpoint.methodId) == "GET" && ToView(endpoint.pathTemplate) == path)
      return true;
  }
  return false;
}

// Holds while a scope is open, however that is left.
class ScopedFlag {
 public:
  explicit ScopedFlag(bool* flag) : flag_(flag) { *flag_ = true; }
  ~ScopedFlag() { *flag_ = false; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool* const flag_;
};

// Whether reading the inventory would retrieve it first.
bool HasInventory(PluginSession& session) {
  const Json document = ParseJson(session.Explain("retrieval").body);
  return document.is_object() && document.value("isPending", Json()) == Json(false);
}

}  // namespace

Auditor::Auditor(AuditMode mode, const Parts& parts, std::function<void(const std::string&)> fail)
    : parts_(parts), fail_(std::move(fail)), mode_(mode) {}

void Auditor::SetMode(AuditMode mode) {
  if (mode_ == AuditMode::kOff && mode != AuditMode::kOff) {
    Forget();
    mustAdopt_ = true;
    isDue_ = true;
  }
  mode_ = mode;
}

bool Auditor::IsDue() const {
  return isDue_ && mode_ != AuditMode::kOff && parts_.serviceEvents->Quiet();
}

void Auditor::Forget() {
  published_.Reset();
  knowledge_.Reset();
  views_.clear();
  newItems_.clear();
  lastItem_.clear();
}

// ---- What happens ------------------------------------------------------------------------------

void Auditor::OnBegin() {
  Forget();
  findings_.StartOver();
  begin_ = parts_.stream->Held().last;
  mustAdopt_ = mode_ == AuditMode::kOff;
  isDue_ = true;
}

void Auditor::OnPublished(uint64_t event, std::string_view path, int32_t eventType,
                          std::string_view json) {
  if (mode_ == AuditMode::kOff || mustAdopt_) return;
  event_ = event;
  if (isReading_) Add("a read publishes nothing", "no event", "an event", std::string(path));
  published_.Take(path, eventType, json);
  event_ = 0;
  if (!isReading_) isDue_ = true;
  if (PublishedPathOfView(RequestPath(path))) {
    if (views_.size() < kMostViews) views_.emplace(path);
  } else if (path.starts_with(kItemPrefix) && newItems_.size() < kMostItems) {
    newItems_.emplace(path.substr(kItemPrefix.size()));
  }
}

void Auditor::OnWorldCall(const World& world, std::span<const WorldEvent> caused, bool isControl) {
  if (mode_ != AuditMode::kOff) knowledge_.NoteCall(world.Held(), caused, isControl);
}

void Auditor::OnServiceEvent(uint64_t cause) {
  knowledge_.NoteArrival(cause);
  isDue_ = true;
}

// A view that shows something is one that the plugin follows from its first read on.
void Auditor::OnResponse(const HttpRequest& request, const HttpResponse& response) {
  if (mode_ == AuditMode::kOff) return;
  if (request.method != "GET") isDue_ = true;
  const auto path = PublishedPathOfView(RequestTarget::Split(request.target).path);
  const bool isList = response.contentType == "application/json" && response.body != "[]";
  if (!path || !isList || response.status != 200 || views_.size() >= kMostViews) return;
  views_.insert(*path);
  if (!published_.Find(*path)) published_.Adopt(*path, response.body);
}

void Auditor::Take(Finding finding) {
  if (!findings_.Add(std::move(finding), parts_.clock->Now(), event_)) return;
  const std::string text = findings_.DescribeNewest();
  parts_.log->Write(LogLevel::kWarning, "Audit: " + text);
  if (mode_ == AuditMode::kStrict) fail_(text);
}

// ---- A run -------------------------------------------------------------------------------------

void Auditor::Run() {
  isDue_ = false;
  PluginSession* const session = parts_.sessions->Current();
  if (session == nullptr || mode_ == AuditMode::kOff) return;
  const ScopedFlag reading(&isReading_);
  compared_ = {.time = parts_.clock->Now()};
  const bool hasInventory = HasInventory(*session);
  CompareValues(*session, hasInventory);
  if (hasInventory && HasRoute(session->Api(), kVersionedMapPath)) CompareItems(*session);
  mustAdopt_ = false;
  ++runs_;
}

void Auditor::CompareValues(PluginSession& session, bool hasInventory) {
  for (const ReadableRoute& route : ReadableRoutes()) {
    if (route.kind != ReadableRoute::Kind::kValue || (route.needsInventory && !hasInventory) ||
        !HasRoute(session.Api(), route.path)) {
      continue;
    }
    ++compared_.values;
    CompareValue(session, std::string(route.path));
  }
  for (const std::string& path : views_) CompareValue(session, path);
  compared_.views = views_.size();
}

std::optional<std::string> Auditor::Read(PluginSession& session, std::string_view path) {
  HttpResponse response = session.ReadAside(RequestPath(path));
  if (response.status == 200) return std::move(response.body);
  AddMismatch("a read of what is held succeeds", std::string(path), "200",
              std::to_string(response.status) + " " + response.body);
  return std::nullopt;
}

void Auditor::CompareValue(PluginSession& session, const std::string& path) {
  const auto read = Read(session, path);
  if (!read) return;
  const auto known = mustAdopt_ ? std::nullopt : published_.Find(path);
  if (known == PublishedState::Digest(path, *read)) return;
  if (known) AddDifference(path, *read);
  published_.Adopt(path, *read);
}

void Auditor::CompareItems(PluginSession& session) {
  const auto map = Read(session, kMapPath);
  const auto versioned = Read(session, kVersionedMapPath);
  const auto list = Read(session, kItemListPath);
  if (!map || !versioned || !list) return;
  const ReadMap items = ReadItemMap(*map);
  compared_.items = items.items.size();
  if (!CompareMaps(items, ReadVersionedItemMap(*versioned))) {
    published_.Adopt(kMapPath, *map);
    published_.Adopt(kVersionedMapPath, *versioned);
  }
  CompareList(items, *list);
  ComparePlatform(session.GetWorld(), items.counts);
  CompareSingleItems(session);
}

bool Auditor::CompareMaps(const ReadMap& map, const ReadMap& versioned) {
  const std::string between = Differences(map.items, versioned.items);
  if (!between.empty()) {
    AddMismatch("the two maps agree", std::string(kVersionedMapPath), "the items of the other map",
                between);
  }
  if (mustAdopt_) return false;
  const std::string since = Differences(published_.items(), map.items);
  if (!since.empty()) {
    AddMismatch("the items published add up to those returned", std::string(kMapPath),
                "the items published", since);
  }
  if (versioned.version != published_.version()) {
    AddMismatch(std::string(kChangeIsPublished), std::string(kVersionedMapPath),
                "version " + std::to_string(published_.version()),
                "version " + std::to_string(versioned.version));
  }
  return since.empty() && versioned.version == published_.version();
}

void Auditor::CompareList(const ReadMap& map, std::string_view list) {
  std::vector<uint64_t> digests;
  for (const auto& [lootId, digest] : map.items) digests.push_back(digest);
  if (DigestJson(list, ArrayOrder::kIgnored) == DigestOfList(digests)) return;
  PublishedState::Digests items;
  for (const Json& item : ParseJson(list)) {
    if (!item.is_object()) continue;
    items[item.value("lootId", "")] = DigestJson(WriteJson(item));
  }
  AddMismatch("the list has the items of the map", std::string(kItemListPath),
              "the items of the map", Differences(map.items, items));
}

void Auditor::ComparePlatform(const World& world, const Counts& counts) {
  if (!knowledge_.IsComplete()) return;
  compared_.platform = true;
  const std::string difference = Differences(HeldCounts(world.Held()), counts);
  if (difference.empty()) return;
  AddMismatch("the items and their counts are the platform's", std::string(kMapPath),
              "what the platform holds", difference);
}

// Those published since the last run, and as many of the others as may be, going round.
std::set<std::string> Auditor::ChooseItems() {
  std::set<std::string> chosen = std::exchange(newItems_, {});
  const PublishedState::Digests& items = published_.items();
  auto next = items.upper_bound(lastItem_);
  for (size_t tries = 0; tries < items.size() && chosen.size() < kMostItems; ++tries) {
    if (next == items.end()) next = items.begin();
    lastItem_ = next->first;
    chosen.insert(lastItem_);
    ++next;
  }
  return chosen;
}

void Auditor::CompareSingleItems(PluginSession& session) {
  for (const std::string& lootId : ChooseItems()) CompareSingleItem(session, lootId);
}

void Auditor::CompareSingleItem(PluginSession& session, const std::string& lootId) {
  ++compared_.single;
  const std::string path = std::string(kItemPrefix) + lootId;
  const HttpResponse response = session.ReadAside(RequestPath(path));
  const auto held = published_.items().find(lootId);
  const bool isHeld = held != published_.items().end();
  if (isHeld ? response.status == 200 && DigestJson(response.body) == held->second
             : response.status == 404) {
    return;
  }
  AddMismatch("a single item is that of the map", path, isHeld ? "the item of the map" : "404",
              std::to_string(response.status) + " " + response.body);
}

// ---- Findings ----------------------------------------------------------------------------------

// Long values begin shortly before they begin to differ.
void Auditor::AddDifference(const std::string& path, std::string read) {
  const Json event = ParseJson(LastEvent(path).data);
  std::string expected = event.is_object() && event.contains("data")
                             ? WriteJson(event["data"])
                             : "no change since the first read, or the start";
  const auto differ = std::mismatch(expected.begin(), expected.end(), read.begin(), read.end());
  const auto same = static_cast<size_t>(differ.first - expected.begin());
  if (same > kMostSame) {
    expected.replace(0, same - kMostSame, "...");
    read.replace(0, same - kMostSame, "...");
  }
  AddMismatch(std::string(kChangeIsPublished), path, std::move(expected), std::move(read));
}

PublishedEvent Auditor::LastEvent(std::string_view path) const {
  PublishedEvent last;
  uint64_t position = std::max(begin_, parts_.stream->Held().first - 1);
  while (auto event = parts_.stream->Find(&position, path)) last = std::move(*event);
  return last;
}

void Auditor::AddMismatch(const std::string& check, const std::string& path, std::string expected,
                          std::string found) {
  event_ = LastEvent(path).id;
  Add(check, std::move(expected), std::move(found), path);
  event_ = 0;
}

Json Auditor::Report() const {
  Json routes = Json::array();
  for (const ReadableRoute& route : ReadableRoutes()) {
    Json& row = routes.emplace_back(
        Json{{"path", route.path}, {"compared", route.kind != ReadableRoute::Kind::kNone}});
    if (!route.because.empty()) row["because"] = route.because;
  }
  const bool hasRun = runs_ != 0;
  return {{"mode", AuditModeName(mode_)},
          {"runs", runs_},
          {"last", hasRun ? Json{{"time", compared_.time},
                                 {"values", compared_.values},
                                 {"views", compared_.views},
                                 {"items", compared_.items},
                                 {"singleItems", compared_.single},
                                 {"platform", compared_.platform}}
                          : Json()},
          {"found", findings_.Count()},
          {"findings", findings_.ToJson()},
          {"routes", std::move(routes)}};
}

}  // namespace Kest::Host
