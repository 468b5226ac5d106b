// PluginLogTarget hands the plugin's log lines to the host's log.
// Threads:  any.
// Lifetime: the host's service table outlives it; Detach before it goes.
#pragma once

#include "log/log_target.h"
#include "plugin/host_interface.h"

namespace Kest {

class PluginLogTarget : public LogTarget {
 public:
  explicit PluginLogTarget(const KestHostServices& services) : services_(services) {}

  const char* ClassName() const override { return kClassName; }
  void Write(const LogRecord& record) override;
  void Flush() override {}  // the host's log is the host's to flush

  static constexpr char kClassName[] = "PluginLogTarget";

 private:
  const KestHostServices& services_;
};

}  // namespace Kest
