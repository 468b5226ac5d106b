// The result of an operation that can fail: a failure with a text, or a value.
#pragma once

#include <cassert>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>

namespace Kest {

// Why an operation failed. `text` is fit to be shown; `status` is an HTTP status code where one is
// known (400 bad input, 404 missing, 500 anything else).
struct Failure {
  std::string text;
  int32_t status = 500;

  friend bool operator==(const Failure&, const Failure&) = default;
};

// The value of an operation whose only result is success.
struct Nothing {
  friend bool operator==(const Nothing&, const Nothing&) = default;
};

// Either an F (the failure) or a T (the value). Test it before use: `if (!reply) return ...`.
// GetValue requires a value, GetFailure a failure; both are checked in debug builds.
template <typename F, typename T>
class [[nodiscard]] MaybeType {
 public:
  using FailureType = F;
  using ValueType = T;

  MaybeType(F failure) : state_(std::in_place_index<0>, std::move(failure)) {}  // NOLINT
  MaybeType(T value) : state_(std::in_place_index<1>, std::move(value)) {}      // NOLINT

  explicit operator bool() const { return state_.index() == 1; }

  const T& GetValue() const {
    assert(state_.index() == 1);
    return *std::get_if<1>(&state_);
  }
  T& GetValue() {
    assert(state_.index() == 1);
    return *std::get_if<1>(&state_);
  }
  const F& GetFailure() const {
    assert(state_.index() == 0);
    return *std::get_if<0>(&state_);
  }

 private:
  std::variant<F, T> state_;
};

// The common case.
template <typename T>
using Maybe = MaybeType<Failure, T>;

}  // namespace Kest
