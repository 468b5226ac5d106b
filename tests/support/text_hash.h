// One number for a long run of results (FNV-1a), to hold several builds to the same ones.
#pragma once

#include <cstdint>
#include <string_view>

namespace Kest::Testing {

class TextHash {
 public:
  void Add(std::string_view text) {
    for (const char c : text) AddByte(static_cast<uint8_t>(c));
    AddByte(0xff);  // where it ends
  }
  void Add(uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) AddByte(static_cast<uint8_t>(number >> shift));
  }
  uint64_t Value() const { return value_; }

 private:
  void AddByte(uint8_t byte) { value_ = (value_ ^ byte) * 0x100000001b3; }

  uint64_t value_ = 0xcbf29ce484222325;
};

}  // namespace Kest::Testing
