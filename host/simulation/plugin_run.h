// One run of the plugin's code, which is linked into the program, from the handshake to stop.
//
// Threads: the scheduler's.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/simulation/machine/virtual_scheduler.h"
#include "host/simulation/simulated_host.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

struct PluginReply {
  int32_t status = 0;  // 0: no memory for a response
  std::string message;
  std::string body;
};

class PluginRun {
 public:
  using TakeReply = std::function<void(const PluginReply& reply)>;

  // Both outlive it.
  PluginRun(SimulatedHost* host, VirtualScheduler* scheduler)
      : host_(host), scheduler_(scheduler) {}

  // The handshake. False: the plugin has no memory.
  bool Load(KestLoadFunction load);
  // Each begins a task; what it waits for is up to the scheduler.
  void Start();
  void Ask(std::string method, std::string url, std::string body, TakeReply take);
  void Stop();
  // Asks for an explanation, which waits for nothing and so needs no task.
  PluginReply Explain(std::string_view question);

  bool IsLoaded() const { return block_.context != nullptr; }
  bool HasStarted() const { return started_; }
  bool HasStopped() const { return stopped_; }
  // Requests without a response so far.
  size_t OpenAsks() const { return openAsks_; }
  const KestApiDescriptor& Api() const { return *block_.api; }

 private:
  // Copies the plugin's response and gives it back.
  PluginReply Copy(const KestResponse* response);
  PluginReply Call(const std::string& method, const std::string& url, const std::string& body);

  SimulatedHost* const host_;
  VirtualScheduler* const scheduler_;
  KestHandshakeBlock block_ = {};
  bool started_ = false;
  bool stopped_ = false;
  size_t openAsks_ = 0;
};

}  // namespace Kest::Host
