#include "fuzz/fuzz_support.h"

#include <algorithm>

namespace Kest::Fuzz {
namespace {

constexpr size_t kFormatCapacity = 4096;

[[noreturn]] void Throw(std::string_view rule, std::string_view detail) {
  throw Finding(std::string(rule).append("\n").append(detail));
}

bool IsPlace(std::string_view pattern) {
  return pattern.size() >= 2 && pattern[0] == '%' && pattern[1] >= '1' && pattern[1] <= '9';
}

// The bytes before the next place.
std::string_view LiteralOf(std::string_view pattern) {
  size_t end = 0;
  while (end < pattern.size() && !IsPlace(pattern.substr(end))) ++end;
  return pattern.substr(0, end);
}

}  // namespace

void Require(bool holds, std::string_view rule, std::string_view detail) {
  if (!holds) Throw(rule, detail);
}

void RequireSame(std::string_view expected, std::string_view actual, std::string_view rule) {
  if (expected == actual) return;
  std::string detail = "expected: ";
  detail.append(expected).append("\nactual:   ").append(actual);
  Throw(rule, detail);
}

bool IsMadeFrom(std::string_view pattern, std::string_view message) {
  const bool mayBeTruncated = message.size() == kFormatCapacity;
  std::string_view literal = LiteralOf(pattern);
  if (!message.starts_with(literal)) return false;
  pattern.remove_prefix(literal.size());
  message.remove_prefix(literal.size());
  while (IsPlace(pattern)) {
    pattern.remove_prefix(2);
    literal = LiteralOf(pattern);
    pattern.remove_prefix(literal.size());
    if (pattern.empty()) return mayBeTruncated || message.ends_with(literal);
    const size_t found = message.find(literal);
    if (found == std::string_view::npos) return mayBeTruncated;
    message.remove_prefix(found + literal.size());
  }
  return message.empty();
}

void RequireListed(std::string_view message, std::initializer_list<MessageList> lists) {
  for (const MessageList& list : lists) {
    for (const std::string_view pattern : list) {
      if (IsMadeFrom(pattern, message)) return;
    }
  }
  Throw("this failure message is not listed", message);
}

std::string_view TakeUntil(char end, std::string_view* text) {
  const size_t size = std::min(text->find(end), text->size());
  const std::string_view taken = text->substr(0, size);
  text->remove_prefix(std::min(size + 1, text->size()));
  return taken;
}

std::string Stretched(std::string_view input, char mark, size_t limit) {
  if (input.size() < 2 || input.front() != mark) return std::string(input);
  const size_t size = std::min(size_t{1024} << (static_cast<uint8_t>(input[1]) & 15u), limit);
  input.remove_prefix(2);
  std::string text(TakeUntil(mark, &input));
  const std::string_view unit = TakeUntil(mark, &input);
  const char counter = static_cast<char>(mark + 1);
  constexpr size_t kMaxDigits = 8;
  for (size_t i = 0; !unit.empty() && text.size() + unit.size() + kMaxDigits <= size; ++i) {
    std::string_view rest = unit;
    text += TakeUntil(counter, &rest);
    if (unit.find(counter) != std::string_view::npos) text.append(std::to_string(i)).append(rest);
  }
  return text.append(input);
}

}  // namespace Kest::Fuzz
