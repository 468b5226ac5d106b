#include "host/world/file/quantity_expression.h"

#include <charconv>
#include <vector>

namespace Kest::Host {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

int Priority(char sign) {
  if (sign == '(') return 0;
  return sign == '+' || sign == '-' ? 1 : 2;
}

// Numbers and signs still to be worked off, as in reading from left to right by hand.
class Evaluation {
 public:
  void Push(int64_t number) { numbers_.push_back(number); }

  // Works off every sign that binds at least as tightly, then remembers `sign`.
  bool PushSign(char sign) {
    while (!signs_.empty() && Priority(signs_.back()) >= Priority(sign)) {
      if (!ApplyLast()) return false;
    }
    signs_.push_back(sign);
    return true;
  }
  void OpenParenthesis() { signs_.push_back('('); }
  bool CloseParenthesis() {
    while (!signs_.empty() && signs_.back() != '(') {
      if (!ApplyLast()) return false;
    }
    if (signs_.empty()) return false;
    signs_.pop_back();
    return true;
  }
  std::optional<int64_t> Finish() {
    while (!signs_.empty()) {
      if (signs_.back() == '(' || !ApplyLast()) return std::nullopt;
    }
    return numbers_.back();
  }

 private:
  bool ApplyLast() {
    const char sign = signs_.back();
    signs_.pop_back();
    const int64_t right = numbers_.back();
    numbers_.pop_back();
    int64_t& left = numbers_.back();
    if (sign == '+') return !__builtin_add_overflow(left, right, &left);
    if (sign == '-') return !__builtin_sub_overflow(left, right, &left);
    if (sign == '*') return !__builtin_mul_overflow(left, right, &left);
    if (right == 0 || (right == -1 && left == INT64_MIN)) return false;
    left /= right;
    return true;
  }

  std::vector<int64_t> numbers_;
  std::vector<char> signs_;
};

}  // namespace

std::optional<int64_t> EvaluateQuantity(std::string_view expression) {
  Evaluation evaluation;
  bool wantsNumber = true;
  const char* const end = expression.data() + expression.size();
  for (const char* at = expression.data(); at != end;) {
    if (*at == ' ' || *at == '\t') {
      ++at;
    } else if (wantsNumber && IsDigit(*at)) {
      int64_t number = 0;
      const auto [rest, error] = std::from_chars(at, end, number);
      if (error != std::errc()) return std::nullopt;
      evaluation.Push(number);
      at = rest;
      wantsNumber = false;
    } else if (wantsNumber && *at == '(') {
      evaluation.OpenParenthesis();
      ++at;
    } else if (!wantsNumber && *at == ')') {
      if (!evaluation.CloseParenthesis()) return std::nullopt;
      ++at;
    } else if (!wantsNumber && std::string_view("+-*/").find(*at) != std::string_view::npos) {
      if (!evaluation.PushSign(*at++)) return std::nullopt;
      wantsNumber = true;
    } else {
      return std::nullopt;
    }
  }
  return wantsNumber ? std::nullopt : evaluation.Finish();
}

}  // namespace Kest::Host
