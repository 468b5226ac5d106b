// What the properties share: rules whose breach is a finding, and the mark of one decoding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Kest::Fuzz {

// A broken rule, and what it was about.
class Finding : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

// A finding unless `holds`. `detail` is what it was about.
void Require(bool holds, std::string_view rule, std::string_view detail = {});

// A finding unless both strings are the same bytes.
void RequireSame(std::string_view expected, std::string_view actual, std::string_view rule);

// Whether `message` is what `pattern` can become: "%1" to "%9" are any strings. A message of 4096
// bytes may have been truncated.
bool IsMadeFrom(std::string_view pattern, std::string_view message);

// A finding unless `message` is made from one of the listed patterns.
using MessageList = std::span<const std::string_view>;
void RequireListed(std::string_view message, std::initializer_list<MessageList> lists);

// Takes what is before the next `end` off `*text`, and the `end` with it.
std::string_view TakeUntil(char end, std::string_view* text);

// Called around each decoding, when set: the fuzzers measure what it takes.
struct DecoderWatch {
  void (*begin)() = nullptr;
  void (*end)() = nullptr;
};
inline DecoderWatch decoderWatch;

// Marks one decoding. A decoder promises for any text within its limit at most a second of
// processor time, and 256 MiB on the heap at any moment.
// Threads: one, and one object at a time.
class DecoderBounds {
 public:
  DecoderBounds() {
    if (decoderWatch.begin != nullptr) decoderWatch.begin();
  }
  ~DecoderBounds() {
    if (decoderWatch.end != nullptr) decoderWatch.end();
  }
  DecoderBounds(const DecoderBounds&) = delete;
  DecoderBounds& operator=(const DecoderBounds&) = delete;
};

// A text that is long where the input is short, for what grows faster than the text does. When
// `input` begins with `mark`, which no good text does, a byte follows whose low half says how long:
// '5' is 32 KiB, each step above doubles that, but never beyond `limit`. Then come, between marks,
// a head, a unit that is repeated up to that size, and a tail; in the unit the byte after `mark`
// is the number of the repetition. Any other input stays as it is.
std::string Stretched(std::string_view input, char mark, size_t limit = size_t{64} << 10);

}  // namespace Kest::Fuzz
