#include "fuzz/fuzz_support.h"

#include <sanitizer/allocator_interface.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "log/logger.h"

namespace Kest::Fuzz {
namespace {

constexpr int64_t kMaxNanoseconds = 3'000'000'000;
constexpr int64_t kMaxHeapBytes = int64_t{256} << 20;
constexpr size_t kFormatCapacity = 4096;

// The heap since a DecoderBounds began; only counted while there is one.
struct Heap {
  bool isWatched = false;
  int64_t bytes = 0;
  int64_t peak = 0;
};
Heap heap;

void OnAllocate(const volatile void*, size_t size) {
  if (!heap.isWatched) return;
  heap.bytes += static_cast<int64_t>(size);
  heap.peak = std::max(heap.peak, heap.bytes);
}

void OnFree(const volatile void* memory) {
  if (!heap.isWatched || memory == nullptr) return;
  heap.bytes -=
      static_cast<int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(memory)));
}

int64_t ProcessorTime() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

[[noreturn]] void EndWithFinding(std::string_view rule, std::string_view detail) {
  std::fprintf(stderr, "FINDING: %.*s\n%.*s\n", static_cast<int>(rule.size()), rule.data(),
               static_cast<int>(std::min<size_t>(detail.size(), 20000)), detail.data());
  std::abort();
}

bool IsPlace(std::string_view pattern) {
  return pattern.size() >= 2 && pattern[0] == '%' && pattern[1] >= '1' && pattern[1] <= '9';
}

// The bytes ahead of the next place.
std::string_view LiteralOf(std::string_view pattern) {
  size_t end = 0;
  while (end < pattern.size() && !IsPlace(pattern.substr(end))) ++end;
  return pattern.substr(0, end);
}

}  // namespace

void Require(bool holds, std::string_view rule, std::string_view detail) {
  if (!holds) EndWithFinding(rule, detail);
}

void RequireSame(std::string_view expected, std::string_view actual, std::string_view rule) {
  if (expected == actual) return;
  std::string detail = "expected: ";
  detail.append(expected).append("\nactual:   ").append(actual);
  EndWithFinding(rule, detail);
}

bool IsMadeFrom(std::string_view pattern, std::string_view text) {
  const bool mayBeCut = text.size() == kFormatCapacity;
  std::string_view literal = LiteralOf(pattern);
  if (!text.starts_with(literal)) return false;
  pattern.remove_prefix(literal.size());
  text.remove_prefix(literal.size());
  while (IsPlace(pattern)) {
    pattern.remove_prefix(2);
    literal = LiteralOf(pattern);
    pattern.remove_prefix(literal.size());
    if (pattern.empty()) return mayBeCut || text.ends_with(literal);
    const size_t found = text.find(literal);
    if (found == std::string_view::npos) return mayBeCut;
    text.remove_prefix(found + literal.size());
  }
  return text.empty();
}

void RequireListed(std::string_view failure, std::initializer_list<FailureList> lists) {
  for (const FailureList& list : lists) {
    for (const std::string_view pattern : list) {
      if (IsMadeFrom(pattern, failure)) return;
    }
  }
  EndWithFinding("this failure text is not listed", failure);
}

std::string_view TakeUntil(char end, std::string_view* text) {
  const size_t size = std::min(text->find(end), text->size());
  const std::string_view taken = text->substr(0, size);
  text->remove_prefix(std::min(size + 1, text->size()));
  return taken;
}

DecoderBounds::DecoderBounds() : start_(ProcessorTime()) {
  heap = {true, 0, 0};
}

DecoderBounds::~DecoderBounds() {
  const int64_t taken = ProcessorTime() - start_;
  heap.isWatched = false;
  Require(taken <= kMaxNanoseconds, "a decoder ends within its time",
          std::to_string(taken / 1'000'000) + " ms");
  Require(heap.peak <= kMaxHeapBytes, "a decoder needs at most 256 MiB",
          std::to_string(heap.peak) + " bytes");
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

// Called by libFuzzer before the first input.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Kest::Logger::Instance().SetDisabled(true);
  __sanitizer_install_malloc_and_free_hooks(Kest::Fuzz::OnAllocate, Kest::Fuzz::OnFree);
  return 0;
}
