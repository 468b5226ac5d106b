// The first bytes of MessagePack items.
#pragma once

#include <array>
#include <cstdint>

namespace Kest::MessagePack {

enum class Form : uint8_t {
  kRefused,  // never used, or an extension
  kNil,
  kBool,
  kSigned,
  kUnsigned,
  kFloat,
  kString,
  kBlob,
  kArray,
  kMap,
};

// What a first byte says. `width` bytes of a number follow it: the value itself, or the length of
// what comes behind. Without any, `value` is that number.
struct Lead {
  Form form = Form::kRefused;
  uint8_t width = 0;
  uint8_t value = 0;
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

constexpr std::array<Lead, 256> MakeLeads() {
  std::array<Lead, 256> leads{};
  const auto fix = [&leads](uint8_t first, uint32_t count, Form form) {
    for (uint32_t i = 0; i < count; ++i) leads[first + i] = {form, 0, static_cast<uint8_t>(i)};
  };
  // A family of byte codes in a row, each with twice the width of the one before.
  const auto family = [&leads](uint8_t first, uint8_t width, uint8_t last, Form form) {
    for (; width <= last; width = static_cast<uint8_t>(width * 2))
      leads[first++] = {form, width, 0};
  };
  fix(kPositiveFixint, kPositiveFixints, Form::kSigned);
  fix(kFixmap, kFixContainers, Form::kMap);
  fix(kFixarray, kFixContainers, Form::kArray);
  fix(kFixstr, kFixstrs, Form::kString);
  fix(kNil, 1, Form::kNil);
  fix(kFalse, 2, Form::kBool);
  family(kBin8, 1, 4, Form::kBlob);
  family(kFloat32, 4, 8, Form::kFloat);
  family(kUint8, 1, 8, Form::kUnsigned);
  family(kInt8, 1, 8, Form::kSigned);
  family(kStr8, 1, 4, Form::kString);
  family(kArray16, 2, 4, Form::kArray);
  family(kMap16, 2, 4, Form::kMap);
  for (uint32_t lead = kNegativeFixint; lead < leads.size(); ++lead) {
    leads[lead] = {Form::kSigned, 0, static_cast<uint8_t>(lead)};
  }
  return leads;
}

inline constexpr std::array<Lead, 256> kLeads = MakeLeads();

}  // namespace Kest::MessagePack
