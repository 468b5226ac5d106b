#include "client/resource_subscriptions.h"

#include <utility>

#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"
#include "log/logger.h"
#include "log/trace.h"

namespace Kest::Client {

namespace {

bool IsPattern(std::string_view url) {
  return url.find('*') != std::string_view::npos;
}

std::string EventName(std::string_view url) {
  std::string name(kJsonApiEvent);
  if (!IsPattern(url)) name.append("_").append(url);
  return name;
}

}  // namespace

void ResourceSubscriptions::Add(std::string_view url, Handler handler, std::string_view typeName) {
  const bool isPattern = IsPattern(url);
  // The record is complete before the host knows of it: it may deliver at once.
  auto entry = std::make_shared<Entry>();
  entry->typeName = typeName;
  entry->handler = std::move(handler);
  (isPattern ? patterns_ : exact_)[std::string(url)].push_back(std::move(entry));
  const std::string name = EventName(url);
  if (++uses_[name] > 1) return;
  const std::string exactUrl = isPattern ? std::string() : std::string(url);
  if (host_.Subscribe(name, [this, exactUrl](std::string_view body) { OnEvent(exactUrl, body); })) {
    return;
  }
  LogError("%s: Could not subscribe to %s", pluginName_.c_str(), name.c_str());
  Remove(url);
}

void ResourceSubscriptions::Remove(std::string_view url) {
  Table& table = IsPattern(url) ? patterns_ : exact_;
  const auto found = table.find(url);
  if (found == table.end()) {
    LogWarning("%s: Not subscribed to %s", pluginName_.c_str(), std::string(url).c_str());
    return;
  }
  found->second.back()->active = false;
  found->second.pop_back();
  if (found->second.empty()) table.erase(found);
  const auto use = uses_.find(EventName(url));
  if (--use->second > 0) return;
  host_.Unsubscribe(use->first);
  uses_.erase(use);
}

void ResourceSubscriptions::RemoveAll() {
  for (Table* table : {&exact_, &patterns_}) {
    while (!table->empty()) Remove(std::string(table->begin()->first));
  }
}

ResourceSubscriptions::EntryList ResourceSubscriptions::HandlersOf(std::string_view url,
                                                                   std::string_view uri) const {
  if (!url.empty()) {
    const auto found = exact_.find(url);
    return found != exact_.end() ? found->second : EntryList();
  }
  EntryList matching;
  for (const auto& [pattern, entries] : patterns_) {
    if (!MatchesPattern(pattern, uri)) continue;
    matching.insert(matching.end(), entries.begin(), entries.end());
  }
  return matching;
}

void ResourceSubscriptions::OnEvent(std::string_view url, std::string_view body) {
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
  if (!context.Ok()) {
    Trace("Couldn't read resource event: %s", context.ErrorMessage().c_str());
    return;
  }
  const BindingProperty* data = dataMember != nullptr ? dataMember : &none;
  if (type == ResourceEventType::kDelete) data = nullptr;
  // A copy of the list: handlers may subscribe and unsubscribe while it is walked.
  for (const std::shared_ptr<Entry>& entry : HandlersOf(url, uri)) {
    if (!entry->active) continue;
    if (entry->handler(data, type) == ResourceDelivery::kUnconvertible) {
      Trace("Couldn't convert resource %s to C++ while handling update for URL: %s",
            entry->typeName.c_str(), uri.c_str());
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
