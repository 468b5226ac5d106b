// TournamentLogos reads which tournament logos the player owns: the inventory service returns a
// signed token whose payload lists them. Every failure ends the load after its log line.
// Threads: module tasks only; Load waits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"
#include "loot/calls/forward.h"
#include "loot/calls/in_progress.h"
#include "loot/calls/source_wait.h"
#include "loot/model/collections.h"

namespace Kest::Client::Loot {

class TournamentLogos {
 public:
  // All outlive it.
  TournamentLogos(AppModule& module, SiblingClient& client, Collections& collections,
                  SourceReadiness& readiness)
      : module_(module), client_(client), collections_(collections), readiness_(readiness) {}

  // Replaces the owned logos by those the token lists, and reports the source as read. The set is
  // emptied once a token has come; a load that fails before leaves it.
  void Load();
  // The same as a task.
  void PostLoad();

  // What the source waits for, if it has not responded.
  SourceWait Wait() const;

 private:
  bool Apply(std::string_view token);
  void ReadLogo(const BindingProperty& element);
  // Logs it, and keeps it.
  void Fail(const std::string& reason);

  AppModule& module_;
  SiblingClient& client_;
  Collections& collections_;
  SourceReadiness& readiness_;
  const InProgress running_;
  std::string failure_;  // of the last load; empty when it did not fail
  uint64_t loads_ = 0;
  uint64_t applied_ = 0;  // which load brought the owned logos; an earlier one comes too late
};

}  // namespace Kest::Client::Loot
