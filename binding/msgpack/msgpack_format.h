// The first bytes of MessagePack items.
#pragma once

#include <array>
#include <cstdint>

namespace Kest::MessagePack {

// What a first byte says. The names are the format's own; a number after them is the width of the
// number that follows the byte: the value itself, or the length of what comes next.
enum class Form : uint8_t {
  kRefused,  // never used, or an extension
  kFixint,
  kFixmap,
  kFixarray,
  kFixstr,
  kNil,
  kBool,
  kBin8,
  kBin16,
  kBin32,
  kFloat32,
  kFloat64,
  kUint8,
  kUint16,
  kUint32,
  kUint64,
  kInt8,
  kInt16,
  kInt32,
  kInt64,
  kStr8,
  kStr16,
  kStr32,
  kArray16,
  kArray32,
  kMap16,
  kMap32,
};

// First bytes, and the lowest ones of those that hold a number of their own.
inline constexpr uint8_t kPositiveFixint = 0x00;
inline constexpr uint8_t kFixmap = 0x80;
inline constexpr uint8_t kFixarray = 0x90;
inline constexpr uint8_t kFixstr = 0xA0;
inline constexpr uint8_t kNil = 0xC0;
inline constexpr uint8_t kFalse = 0xC2;
inline constexpr uint8_t kTrue = 0xC3;
inline constexpr uint8_t kBin8 = 0xC4;
inline constexpr uint8_t kFloat32 = 0xCA;
inline constexpr uint8_t kFloat64 = 0xCB;
inline constexpr uint8_t kUint8 = 0xCC;
inline constexpr uint8_t kInt8 = 0xD0;
inline constexpr uint8_t kInt16 = 0xD1;
inline constexpr uint8_t kInt32 = 0xD2;
inline constexpr uint8_t kInt64 = 0xD3;
inline constexpr uint8_t kStr8 = 0xD9;
inline constexpr uint8_t kArray16 = 0xDC;
inline constexpr uint8_t kMap16 = 0xDE;
inline constexpr uint8_t kNegativeFixint = 0xE0;

// How many of each hold a number of their own.
inline constexpr uint32_t kPositiveFixints = 128;
inline constexpr uint32_t kNegativeFixints = 32;
inline constexpr uint32_t kFixContainers = 16;
inline constexpr uint32_t kFixstrs = 32;

constexpr std::array<Form, 256> MakeForms() {
  std::array<Form, 256> forms{};
  const auto fill = [&forms](uint32_t first, uint32_t count, Form form) {
    for (uint32_t i = 0; i < count; ++i) forms[first + i] = form;
  };
  // Byte codes in a row whose forms stand in a row.
  const auto row = [&forms](uint32_t first, Form from, Form to) {
    for (auto form = static_cast<uint32_t>(from); form <= static_cast<uint32_t>(to); ++form) {
      forms[first++] = static_cast<Form>(form);
    }
  };
  fill(kPositiveFixint, kPositiveFixints, Form::kFixint);
  fill(kNegativeFixint, kNegativeFixints, Form::kFixint);
  fill(kFixmap, kFixContainers, Form::kFixmap);
  fill(kFixarray, kFixContainers, Form::kFixarray);
  fill(kFixstr, kFixstrs, Form::kFixstr);
  fill(kNil, 1, Form::kNil);
  fill(kFalse, 2, Form::kBool);
  row(kBin8, Form::kBin8, Form::kBin32);
  row(kFloat32, Form::kFloat32, Form::kInt64);
  row(kStr8, Form::kStr8, Form::kMap32);
  return forms;
}

inline constexpr std::array<Form, 256> kForms = MakeForms();

}  // namespace Kest::MessagePack
