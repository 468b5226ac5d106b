#include "host/session/plugin_subscriptions.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/cause/cause.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kContentType = "application/json";

// Events of which a name may continue with "_" and the path or subtopic it is about.
constexpr std::string_view kKinds[] = {"OnJsonApiEvent", "OnSvdsEvent"};
constexpr std::string_view kServiceProxyEvents[] = {
    "OnServiceProxyUuidEvent", "OnServiceProxyMethodEvent", "OnServiceProxyAsyncEvent"};

}  // namespace

std::string_view PluginSubscriptions::KindOf(std::string_view name) {
  for (const std::string_view kind : kKinds) {
    if (name.starts_with(kind) && name.size() > kind.size() + 1 && name[kind.size()] == '_') {
      return kind;
    }
  }
  return name;
}

bool PluginSubscriptions::IsKnown(std::string_view name) {
  const auto holds = [](const auto& names, std::string_view wanted) {
    return std::find(std::begin(names), std::end(names), wanted) != std::end(names);
  };
  return holds(kKinds, KindOf(name)) || holds(kServiceProxyEvents, name);
}

void PluginSubscriptions::Add(std::string_view name, KestDelivery delivery, void* context) {
  const MutexLock lock(mutex_);
  Shared& subscription = byName_[std::string(name)];
  if (!subscription) subscription = std::make_shared<Subscription>();
  subscription->name = name;
  subscription->delivery = delivery;
  subscription->context = context;
}

void PluginSubscriptions::Remove(std::string_view name) {
  const MutexLock lock(mutex_);
  const auto place = byName_.find(name);
  if (place == byName_.end()) return;
  place->second->ended = true;
  byName_.erase(place);
}

void PluginSubscriptions::Clear() {
  const MutexLock lock(mutex_);
  for (const auto& entry : byName_) entry.second->ended = true;
  byName_.clear();
}

std::vector<std::string> PluginSubscriptions::Names() const {
  const MutexLock lock(mutex_);
  std::vector<std::string> names;
  for (const auto& entry : byName_) names.push_back(entry.first);
  return names;
}

PluginSubscriptions::Shared PluginSubscriptions::Find(std::string_view name) const {
  const MutexLock lock(mutex_);
  const auto place = byName_.find(name);
  return place == byName_.end() ? nullptr : place->second;
}

void PluginSubscriptions::QueueResourceEvent(std::string_view name, std::string_view payload) {
  const Shared subscription = Find(name);
  if (!subscription) return;
  subscription->queued.push_back({std::string(payload), CurrentCause()});
  if (subscription->delivering) return;
  subscription->delivering = true;
  scheduler_->Post(
      {.name = subscription->name, .work = [subscription] { DeliverQueued(subscription); }});
}

void PluginSubscriptions::DeliverQueued(const Shared& subscription) {
  while (!subscription->queued.empty() && !subscription->ended) {
    const Queued next = std::move(subscription->queued.front());
    subscription->queued.pop_front();
    const CauseScope scope(next.cause);
    subscription->delivery(subscription->context, ToText(subscription->name), ToText(kContentType),
                           ToBytes(next.payload));
  }
  subscription->delivering = false;
}

bool PluginSubscriptions::DeliverServiceEvent(std::string_view name, std::string_view payload) {
  const Shared subscription = Find(name);
  if (!subscription || subscription->ended) return false;
  subscription->delivery(subscription->context, ToText(subscription->name), ToText(kContentType),
                         ToBytes(payload));
  return true;
}

}  // namespace Kest::Host
