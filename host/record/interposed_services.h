// A service table to be put between a plugin and its host: each call becomes a function's name with
// arguments and a result as JSON, which a recording writes and a replay compares.
//
// Threads:  as the service table's. All of this class happens under the turn.
// Host:     has all the entries of the table.
// Failure:  no exception leaves an entry: what runs out of memory counts as refused.
// Lifetime: the table and what it keeps for the plugin are valid until destruction.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/json/json.h"
#include "host/library/owned_services.h"
#include "host/record/turn.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class InterposedServices {
 public:
  virtual ~InterposedServices() = default;
  InterposedServices(const InterposedServices&) = delete;
  InterposedServices& operator=(const InterposedServices&) = delete;

 protected:
  // A function of the plugin that the host may call later.
  struct Callback {
    InterposedServices* services = nullptr;
    uint64_t number = 0;    // of the crossing that brought a completion or task
    std::string name = {};  // of the task, or the URL of the request
    KestCompletion complete = nullptr;
    KestDelivery deliver = nullptr;
    KestTask run = nullptr;
    void* context = nullptr;
  };
  struct Call {
    std::string_view function;
    std::function<Json()> arguments;
    std::function<Json()> forward;  // calls the host and returns its result
  };
  struct Served {
    uint64_t number;  // of the crossing
    Json result;
  };

  InterposedServices();

  const KestHostServices* Table() const { return &services_.table; }
  Turn& GetTurn() { return turn_; }
  // The host that calls are forwarded to.
  void SetHost(const KestHostServices* host) { host_ = host; }

  virtual Served Serve(const Call& call) = 0;
  virtual void Yield() = 0;
  // The host calls one of the functions that were handed to it.
  virtual void OnCompletion(Callback* callback, const KestResponse* response) = 0;
  virtual void OnDelivery(Callback* callback, KestText name, KestText contentType,
                          KestBytes body) = 0;
  virtual void OnTask(Callback* callback) = 0;

  // The completion or task that came with that crossing, which is not called again; null when there
  // is none.
  std::unique_ptr<Callback> TakeOpen(uint64_t number);
  // The newest subscription of the name; null when there never was one.
  Callback* FindSubscription(std::string_view name);

  const KestHostServices* Host() const { return host_; }

 private:
  struct Entries;  // the functions of the table

  using OpenMap = std::map<uint64_t, std::unique_ptr<Callback>>;

  OpenMap::node_type MakeOpen(Callback callback);
  void Keep(OpenMap::node_type open, uint64_t number);
  bool Request(const KestRequest& request, KestCompletion completion, void* context);
  bool Subscribe(KestText name, KestDelivery delivery, void* context);
  int32_t PostTask(KestText name, KestTask run, void* context);

  OwnedServices<InterposedServices> services_;
  Turn turn_;
  const KestHostServices* host_ = nullptr;
  OpenMap open_;  // completions and tasks, by the number of their crossing
  // Those that ended are kept: a delivery may be on its way.
  std::map<std::string, std::unique_ptr<Callback>, std::less<>> subscriptions_;
};

}  // namespace Kest::Host
