#include "host/timeline/token_mask.h"

#include <algorithm>

#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr size_t kShortestToken = 8;
constexpr size_t kMostHidden = 32;  // two forms of each

}  // namespace

void TokenMask::Learn(std::string_view token) {
  if (token.size() < kShortestToken) return;
  const std::string quoted = JsonString(token);
  const std::string_view inJson = std::string_view(quoted).substr(1, quoted.size() - 2);
  for (const std::string_view form : {token, inJson}) {
    if (std::find(hidden_.begin(), hidden_.end(), form) != hidden_.end()) continue;
    hidden_.emplace_back(form);
    if (hidden_.size() > kMostHidden) hidden_.pop_front();
  }
}

void TokenMask::Apply(std::string* text) const {
  for (const std::string& token : hidden_) {
    size_t at = 0;
    while ((at = text->find(token, at)) != std::string::npos) {
      text->replace(at, token.size(), kMask);
      at += kMask.size();
    }
  }
}

size_t TokenMask::LongestBytes() const {
  size_t longest = 0;
  for (const std::string& token : hidden_) longest = std::max(longest, token.size());
  return longest;
}

}  // namespace Kest::Host
