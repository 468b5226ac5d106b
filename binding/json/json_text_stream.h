// The text RapidJSON's reader reads, in place.
#pragma once

#include <cstring>

#include "base/utf8.h"
#include "base/word_scan.h"

namespace Kest {

// An in-situ stream: strings are decoded over their own text. RapidJSON moves a string character by
// character; this stream uses the first plain one it is given to move all that follow it, eight at
// a time, checking their encoding on the way. It never fails: MayHaveInvalidUtf8 says at the end
// whether there was anything that the reader let pass, or might have named wrongly. REQUIRES: the
// text ends with kPadding zeros, the first of which is its end.
class JsonTextStream {
 public:
  using Ch = char;
  static constexpr size_t kPadding = 16;

  // `size` is that of the text without the padding.
  JsonTextStream(char* text, size_t size)
      : source_(text), begin_(text), target_(text), end_(text + size) {}

  char Peek() const { return *source_; }
  char Take() { return *source_++; }
  size_t Tell() const { return static_cast<size_t>(source_ - begin_); }
  bool MayHaveInvalidUtf8() const { return isSuspect_; }

  char* PutBegin() { return target_ = source_; }
  size_t PutEnd(char* begin) { return static_cast<size_t>(target_ - begin); }
  void Flush() {}
  void Put(char c) {
    *target_++ = c;
    if (static_cast<uint8_t>(c) >= 0x80) return PutHigh(c);
    // Otherwise the end of the string, or of an escape that stands for it.
    if (c != '\0') MovePlain();
  }

 private:
  // A byte of a character that an escape stands for (of which more may come), or the first byte of
  // one in the text.
  void PutHigh(char c) {
    if (source_[-1] != c) {
      // Half a surrogate pair, alone.
      if (static_cast<uint8_t>(c) >= 0xa0 && target_[-2] == '\xed') isSuspect_ = true;
      return;
    }
    --source_;
    --target_;
    MoveCharacter();
    MovePlain();
  }

  void MoveCharacter() {
    size_t size = Utf8CharacterSize({source_, static_cast<size_t>(end_ - source_)});
    if (size == 0) {
      isSuspect_ = true;
      size = 1;
    }
    Move(size);
  }

  void MovePlain() {
    while (true) {
      const char* at = source_;
      uint64_t marks = EscapeMask(LoadWord(at));
      for (; marks == 0; marks = EscapeMask(LoadWord(at))) at += 8;
      at += IndexOfFirstSetByte(marks);
      Move(static_cast<size_t>(at - source_));
      if (static_cast<uint8_t>(*at) < 0x80) return;
      MoveCharacter();
    }
  }

  // Before the first escape of a string everything is in its place.
  void Move(size_t size) {
    if (target_ != source_) std::memmove(target_, source_, size);
    source_ += size;
    target_ += size;
  }

  // The two that change lie apart: as neighbours they would be loaded together right after being
  // stored one by one, which processors are slow at.
  char* source_;
  char* begin_;
  char* target_;
  char* end_;
  bool isSuspect_ = false;
};

}  // namespace Kest
