#include "client/resource_subscriptions.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"
#include "log/logger.h"
#include "log/trace.h"
#include "plugin/boundary.h"

namespace Kest::Client {

namespace {

// What is lost this often in a row is asked for again only when something else has been read.
constexpr int kMostLossesInARow = 8;

bool IsPattern(std::string_view url) {
  return url.find('*') != std::string_view::npos;
}

std::string EventName(std::string_view url) {
  if (IsPattern(url)) return std::string(kJsonApiEvent);
  std::string name;
  name.reserve(kJsonApiEvent.size() + 1 + url.size());
  return name.append(kJsonApiEvent).append("_").append(url);
}

}  // namespace

ResourceSubscriptions::~ResourceSubscriptions() {
  for (const auto& [name, event] : events_) host_.Unsubscribe(name);
}

void ResourceSubscriptions::Add(std::string_view url, Handler handler, std::string_view typeName) {
  std::string name = EventName(url);
  auto entry = std::make_shared<Entry>();
  entry->url = url;
  entry->typeName = typeName;
  entry->handler = std::move(handler);
  // The record is complete before the host knows of it: it may deliver at once.
  const auto known = events_.find(name);
  if (known != events_.end()) return known->second.entries.push_back(std::move(entry));
  const auto added = events_.try_emplace(std::move(name)).first;
  try {
    added->second.entries.push_back(std::move(entry));
    auto deliver = [this, event = added->first](std::string_view body) { OnEvent(event, body); };
    if (host_.Subscribe(added->first, std::move(deliver))) return;
    LogError("%s: Could not subscribe to %s", pluginName_.c_str(), added->first.c_str());
    events_.erase(added);
  } catch (...) {
    events_.erase(added);
    throw;
  }
}

void ResourceSubscriptions::Remove(std::string_view url) noexcept {
  const auto isOfUrl = [url](const auto& entry) { return entry->url == url; };
  for (auto event = events_.begin(); event != events_.end(); ++event) {
    EntryList& entries = event->second.entries;
    const auto last = std::find_if(entries.rbegin(), entries.rend(), isOfUrl);
    if (last == entries.rend()) continue;
    (*last)->active = false;
    entries.erase(std::next(last).base());
    if (!entries.empty()) return;
    host_.Unsubscribe(event->first);
    events_.erase(event);
    return;
  }
  LogWarning("%s: Not subscribed to %.*s", pluginName_.c_str(), static_cast<int>(url.size()),
             url.data());
}

std::string_view ResourceSubscriptions::ConversionFailureOf(std::string_view url) const {
  const auto event = events_.find(EventName(url));
  if (event == events_.end()) return {};
  for (const std::shared_ptr<Entry>& entry : event->second.entries) {
    if (entry->url == url && !entry->failure.empty()) return entry->failure;
  }
  return {};
}

ResourceSubscriptions::EntryList ResourceSubscriptions::HandlersOf(const std::string& name,
                                                                   std::string_view uri) const {
  const auto event = events_.find(name);
  if (event == events_.end()) return {};
  EntryList matching;
  for (const std::shared_ptr<Entry>& entry : event->second.entries) {
    if (!IsPattern(entry->url) || MatchesPattern(entry->url, uri)) matching.push_back(entry);
  }
  return matching;
}

void ResourceSubscriptions::OnEvent(const std::string& name, std::string_view body) noexcept {
  bool isLost = false;
  const auto lose = [&](const char* text) noexcept {
    isLost = true;
    LogError("%s: Lost an event of %s: %s", pluginName_.c_str(), name.c_str(), text);
  };
  RunAtBoundary([&] { Deliver(name, body); }, lose);
  // A resource that is gone has no present value to ask for. What only looks like its end, and has
  // a value of its own, is put right by the one that is asked for.
  if (isLost && body.find("\"Delete\"") != std::string_view::npos) {
    isLost = body.find("\"data\"") != std::string_view::npos;
    RunAtBoundary([&] { DeliverDelete(name); }, lose);
  }
  if (!isLost) AskAgainForLost();
  const auto event = events_.find(name);
  if (event == events_.end()) return;
  event->second.lossesInARow = isLost ? event->second.lossesInARow + 1 : 0;
  if (!isLost) return;
  hasGivenUp_ = hasGivenUp_ || event->second.lossesInARow > kMostLossesInARow;
  if (event->second.lossesInARow <= kMostLossesInARow) host_.Resubscribe(name);
}

void ResourceSubscriptions::AskAgainForLost() noexcept {
  if (!std::exchange(hasGivenUp_, false)) return;
  for (auto& [name, event] : events_) {
    if (event.lossesInARow <= kMostLossesInARow) continue;
    event.lossesInARow = 0;
    host_.Resubscribe(name);
  }
}

// Needs no memory, if the handlers need none.
void ResourceSubscriptions::DeliverDelete(const std::string& name) {
  for (size_t i = 0;; ++i) {
    const auto event = events_.find(name);  // again each time: handlers may unsubscribe
    if (event == events_.end() || i >= event->second.entries.size()) return;
    const std::shared_ptr<Entry> entry = event->second.entries[i];
    if (!IsPattern(entry->url)) {
      entry->failure = entry->handler(nullptr, ResourceEventType::kDelete);
    }
  }
}

void ResourceSubscriptions::Deliver(const std::string& name, std::string_view body) {
  ConversionContext context;
  const BindingProperty event = ReadJson(context, body);
  const BindingProperty* const eventType = event.FindMember("eventType");
  const BindingProperty* const uriMember = event.FindMember("uri");
  const BindingProperty* const dataMember = event.FindMember("data");
  const BindingProperty none{};
  std::string uri;
  ResourceEventType type = ResourceEventType::kCreate;
  Assign(context, "uri", uriMember != nullptr ? *uriMember : none, &uri);
  Assign(context, "eventType", eventType != nullptr ? *eventType : none, &type);
  if (context.RanOutOfMemory()) throw std::bad_alloc();
  if (!context.Ok()) {
    Trace("Couldn't read resource event: %s", context.ErrorMessage().c_str());
    return;
  }
  const BindingProperty* data = dataMember != nullptr ? dataMember : &none;
  if (type == ResourceEventType::kDelete) data = nullptr;
  // A copy of the list: handlers may subscribe and unsubscribe while it is walked.
  for (const std::shared_ptr<Entry>& entry : HandlersOf(name, uri)) {
    if (!entry->active) continue;
    entry->failure = entry->handler(data, type);
    if (!entry->failure.empty()) {
      Trace("Couldn't convert resource %.*s to C++ while handling update for URL: %s",
            static_cast<int>(entry->typeName.size()), entry->typeName.data(), uri.c_str());
    }
  }
}

bool MatchesPattern(std::string_view pattern, std::string_view text) {
  size_t inPattern = 0;
  size_t inText = 0;
  size_t star = std::string_view::npos;  // the last "*" met, and where its match begins
  size_t starText = 0;
  while (inText < text.size()) {
    if (inPattern < pattern.size() && pattern[inPattern] == '*') {
      star = inPattern++;
      starText = inText;
    } else if (inPattern < pattern.size() && pattern[inPattern] == text[inText]) {
      ++inPattern;
      ++inText;
    } else if (star != std::string_view::npos) {
      inPattern = star + 1;  // the last "*" matches one character more
      inText = ++starText;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

}  // namespace Kest::Client
