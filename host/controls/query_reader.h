// The parameters of a control's query. The first that is wrong is the failure, which says what it
// must be.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/url/request_target.h"

namespace Kest::Host {

class QueryReader {
 public:
  // Borrows `target`.
  explicit QueryReader(const RequestTarget& target) : target_(target) {}

  std::optional<std::string> Text(std::string_view name) const { return target_.Parameter(name); }
  // Nothing when it is absent or wrong.
  std::optional<uint64_t> Number(std::string_view name, uint64_t least = 0,
                                 uint64_t most = std::numeric_limits<uint64_t>::max());
  std::optional<bool> Flag(std::string_view name);

  // `rule`: "must be ..".
  void Fail(std::string_view name, std::string_view rule, std::string_view found);
  const std::optional<Failure>& failure() const { return failure_; }

 private:
  const RequestTarget& target_;
  std::optional<Failure> failure_;
};

}  // namespace Kest::Host
