// Hides the tokens of the signed inventory in what the timeline keeps: a token is proof of what the
// player owns, and what the timeline shows is copied into tickets and chats.
//
// Threads: no lock; the owner guards it.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace Kest::Host {

class TokenMask {
 public:
  static constexpr std::string_view kMask = "(masked)";

  // Hides `token` from now on, as it is and as a JSON string has it. The newest 16 are known. What
  // is too short to be a token is left.
  void Learn(std::string_view token);
  void Apply(std::string* text) const;
  // The longest text that is hidden.
  size_t LongestBytes() const;

 private:
  std::deque<std::string> hidden_;
};

}  // namespace Kest::Host
