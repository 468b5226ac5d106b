// What the fuzzers share: rules whose breach is a finding, and the bounds on one decoding.
// Findings end the program, so that libFuzzer keeps the input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace Kest::Fuzz {

// A finding unless `holds`. `detail` is what it was about.
void Require(bool holds, std::string_view rule, std::string_view detail = {});

// A finding unless both texts are the same bytes.
void RequireSame(std::string_view expected, std::string_view actual, std::string_view rule);

// Whether `text` is what `pattern` can become: "%1" to "%9" stand for any text. A text of 4096
// bytes may have been cut.
bool IsMadeFrom(std::string_view pattern, std::string_view text);

// A finding unless `failure` is made from one of the listed patterns.
using FailureList = std::span<const std::string_view>;
void RequireListed(std::string_view failure, std::initializer_list<FailureList> lists);

inline std::string_view TextOf(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Takes the text before the next `end` off `*text`, and the `end` with it.
std::string_view TakeUntil(char end, std::string_view* text);

// Holds what a decoder promises for any text within its limit to what it does while the object
// lives: a second of processor time and 256 MiB on the heap at any moment. Processor time, because
// other programs of the machine must not fail a run; three seconds of it, because the sanitizers
// slow the code down by more than that. An endless loop ends by libFuzzer's -timeout.
// Threads: one, and one object at a time.
class DecoderBounds {
 public:
  DecoderBounds();
  ~DecoderBounds();
  DecoderBounds(const DecoderBounds&) = delete;
  DecoderBounds& operator=(const DecoderBounds&) = delete;

 private:
  int64_t start_;  // processor time, nanoseconds
};

// A text that is long where the input is short, for what grows faster than the text does. When
// `input` begins with `mark`, which no good text does, a byte follows whose low half says how long:
// '5' is 32 KiB, each step above doubles that, but never beyond `limit`. Then come, between marks,
// a head, a unit that is repeated up to that size, and a tail; in the unit the byte behind `mark`
// stands for the number of the repetition. Any other input stays as it is.
std::string Stretched(std::string_view input, char mark, size_t limit = size_t{64} << 10);

}  // namespace Kest::Fuzz
