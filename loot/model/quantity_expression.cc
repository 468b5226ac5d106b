#include "loot/model/quantity_expression.h"

#include <vector>

#include "base/ascii.h"

namespace Kest::Client::Loot {
namespace {

constexpr char kNegate = '~';  // a minus sign before an operand

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsOperator(char c) {
  return c == '+' || c == '-' || c == '*' || c == '/';
}

int Precedence(char symbol) {
  if (symbol == kNegate) return 3;
  if (symbol == '*' || symbol == '/') return 2;
  return symbol == '(' ? 0 : 1;
}

// False when the step leaves 64 bits or divides by zero.
bool Combine(char symbol, int64_t left, int64_t right, int64_t* result) {
  switch (symbol) {
    case '+':
      return !__builtin_add_overflow(left, right, result);
    case '-':
      return !__builtin_sub_overflow(left, right, result);
    case '*':
      return !__builtin_mul_overflow(left, right, result);
    default:
      if (right == 0) return false;
      if (right == -1) return !__builtin_sub_overflow(int64_t{0}, left, result);
      *result = left / right;
      return true;
  }
}

// Operator-precedence evaluation with one stack of operands and one of pending symbols.
class QuantityReader {
 public:
  std::optional<int64_t> Read(std::string_view text) {
    for (size_t i = 0; i < text.size();) {
      if (IsSpace(text[i])) {
        ++i;
      } else if (IsDigit(text[i])) {
        if (!ReadNumber(text, &i)) return std::nullopt;
      } else if (!ReadSymbol(text[i++])) {
        return std::nullopt;
      }
    }
    if (operandExpected_ || !ReduceDownTo(1)) return std::nullopt;
    if (!symbols_.empty()) return std::nullopt;  // an open parenthesis
    return operands_.back();
  }

 private:
  bool ReadNumber(std::string_view text, size_t* position) {
    if (!operandExpected_) return false;
    int64_t value = 0;
    for (; *position < text.size() && IsDigit(text[*position]); ++*position) {
      if (__builtin_mul_overflow(value, int64_t{10}, &value)) return false;
      if (__builtin_add_overflow(value, int64_t{text[*position] - '0'}, &value)) return false;
    }
    operands_.push_back(value);
    operandExpected_ = false;
    return true;
  }

  bool ReadSymbol(char symbol) {
    if (operandExpected_) {
      if (symbol != '(' && symbol != '-') return false;
      symbols_.push_back(symbol == '-' ? kNegate : symbol);
      return true;
    }
    if (symbol == ')') {
      if (!ReduceDownTo(1) || symbols_.empty()) return false;
      symbols_.pop_back();
      return true;
    }
    if (!IsOperator(symbol) || !ReduceDownTo(Precedence(symbol))) return false;
    symbols_.push_back(symbol);
    operandExpected_ = true;
    return true;
  }

  // Applies the pending symbols that bind at least as tightly; an open parenthesis stops it.
  bool ReduceDownTo(int precedence) {
    while (!symbols_.empty() && Precedence(symbols_.back()) >= precedence) {
      const char symbol = symbols_.back();
      symbols_.pop_back();
      const int64_t right = operands_.back();
      int64_t left = 0;
      if (symbol != kNegate) {
        operands_.pop_back();
        left = operands_.back();
      }
      if (!Combine(symbol == kNegate ? '-' : symbol, left, right, &operands_.back())) return false;
    }
    return true;
  }

  std::vector<int64_t> operands_;
  std::vector<char> symbols_;
  bool operandExpected_ = true;
};

}  // namespace

std::optional<int32_t> EvaluateQuantity(std::string_view expression) {
  const std::optional<int64_t> value = QuantityReader().Read(expression);
  if (!value) return std::nullopt;
  return static_cast<int32_t>(*value);
}

}  // namespace Kest::Client::Loot
