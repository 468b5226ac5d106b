// The order in which the platform acted and in which its responses reached the plugin. It says
// whether the plugin can know the platform's inventory: the plugin applies responses in the order
// they reach it, so a response that overtook another, or that never came, leaves it wrong until
// the next snapshot.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace Kest::Host {

class ResponseLedger {
 public:
  // kGrant changes the inventory, and the plugin reads its response for a hint only.
  enum class Kind { kOther, kSnapshot, kChange, kGrant };

  // What the response in an event's payload is about.
  static Kind KindOf(std::string_view payload);

  // The plugin starts and knows nothing.
  void Reset() {
    *this = ResponseLedger(now_);
    NoteUntold();
  }
  // The platform acts; returns the number of the act.
  uint64_t NoteAct(Kind kind) {
    if (kind == Kind::kGrant) NoteUntold();
    return ++now_;
  }
  // It changed the inventory, and no response says so.
  void NoteUntold() { unknownSince_ = ++now_; }
  void NoteLost(Kind kind) {
    if (kind == Kind::kChange) NoteUntold();
  }
  // The response to act `number` reaches the plugin.
  void NoteArrival(Kind kind, uint64_t number);

  // Whether the last snapshot and the changes since then are all there is to know.
  bool PluginKnowsAll() const { return lastSnapshot_ > unknownSince_; }

 private:
  explicit ResponseLedger(uint64_t now) : now_(now) {}

 public:
  ResponseLedger() = default;

 private:
  uint64_t now_ = 0;
  uint64_t unknownSince_ = 0;  // the last act that a snapshot must have seen
  uint64_t lastSnapshot_ = 0;
  uint64_t newestSnapshot_ = 0;
  uint64_t newestChange_ = 0;
};

}  // namespace Kest::Host
