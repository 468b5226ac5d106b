// ResourceSubscriptions follows other plugins' resources: it counts the uses of each host event
// name, so that one name is registered once, and delivers each event to the handlers of its url.
//
// A url with "*" is a pattern: it is served by "OnJsonApiEvent", the event of all resources, and
// sorted out here. Any other url is served by "OnJsonApiEvent_" + url.
//
// An event that is lost because reading or handling it throws (memory ran out) is asked for again:
// the host then sends the resource's present value. A handler may therefore see a value twice, and
// a Delete before the value that follows it. One that is lost several times in a row is asked for
// again when something else could be read.
//
// Threads: module tasks only. Handlers may subscribe and unsubscribe; one that is removed while its
//          event is under way is not called any more.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "binding/tree/binding_property.h"
#include "plugin/host_services.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

class ResourceSubscriptions {
 public:
  // `data` is null on kDelete, otherwise lent for the call. Returns why it does not convert; empty
  // when it was taken.
  using Handler = std::function<std::string(const BindingProperty* data, ResourceEventType)>;

  ResourceSubscriptions(HostServices& host, const std::string& pluginName)
      : host_(host), pluginName_(pluginName) {}
  ~ResourceSubscriptions();
  ResourceSubscriptions(const ResourceSubscriptions&) = delete;
  ResourceSubscriptions& operator=(const ResourceSubscriptions&) = delete;

  // `typeName`, a constant, names the handler's type in traces. A subscription that the host
  // refuses is logged and not kept.
  void Add(std::string_view url, Handler handler, std::string_view typeName);
  // Removes the handler added last for the url.
  // Needs no memory.
  void Remove(std::string_view url) noexcept;
  // Why the newest value of the url did not convert; empty when it did, or when the url is not
  // followed. Valid until the next event of it.
  std::string_view ConversionFailureOf(std::string_view url) const;
  // Memory suffices again: asks for the events that were lost too often in a row. Mostly there is
  // none.
  void AskAgainForLost() noexcept;

 private:
  struct Entry {
    std::string url;
    std::string_view typeName;
    Handler handler;
    std::string failure;  // why the newest value did not convert
    bool active = true;
  };
  using EntryList = std::vector<std::shared_ptr<Entry>>;
  struct Event {
    EntryList entries;  // in the order they were added; never empty
    int lossesInARow = 0;
  };

  void OnEvent(const std::string& name, std::string_view body) noexcept;
  void Deliver(const std::string& name, std::string_view body);
  void DeliverDelete(const std::string& name);
  // The handlers that an event of this name concerns.
  EntryList HandlersOf(const std::string& name, std::string_view uri) const;

  HostServices& host_;
  const std::string& pluginName_;
  std::map<std::string, Event> events_;  // by the host's event name
  bool hasGivenUp_ = false;              // on an event that was lost too often in a row
};

// True when `text` matches `pattern`, in which "*" is any number of any characters.
bool MatchesPattern(std::string_view pattern, std::string_view text);

}  // namespace Kest::Client
