#include "binding/msgpack/msgpack_writer.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "base/word_scan.h"
#include "binding/convert/conversion_context.h"
#include "binding/msgpack/byte_cursor.h"
#include "binding/msgpack/msgpack_format.h"
#include "binding/types/simple_member.h"
#include "binding/types/type_record.h"

namespace Kest {

using namespace MessagePack;

namespace {

constexpr size_t kBlock = 16;  // copied at once, where that many bytes can be read

// Copies a text and, after it, up to a block of no meaning.
inline void CopyText(const std::string& text, char* to) {
  const size_t size = text.size();
  if (size <= kBlock && text.capacity() + 1 >= kBlock) {
    std::memcpy(to, text.data(), kBlock);
  } else if (size > kBlock) {
    for (size_t i = 0; i + kBlock < size; i += kBlock) std::memcpy(to + i, text.data() + i, kBlock);
    std::memcpy(to + size - kBlock, text.data() + size - kBlock, kBlock);
  } else {
    CopyBytes(to, text.data(), size);
  }
}

}  // namespace

inline bool MessagePackWriter::Byte(uint8_t byte) {
  char* to = block_.Reserve(1);
  *to = static_cast<char>(byte);
  block_.FilledTo(to + 1);
  return true;
}

// A first byte and the number after it.
template <typename Width>
bool MessagePackWriter::Number(uint8_t lead, Width number) {
  char* to = block_.Reserve(1 + sizeof(number));
  *to = static_cast<char>(lead);
  StoreBigEndian(number, to + 1);
  block_.FilledTo(to + 1 + sizeof(number));
  return true;
}

// `lead8` begins a family with one first byte for each width.
bool MessagePackWriter::NarrowNumber(uint8_t lead8, uint64_t number) {
  if (number <= UINT8_MAX) return Number(lead8, static_cast<uint8_t>(number));
  if (number <= UINT16_MAX) {
    return Number(static_cast<uint8_t>(lead8 + 1), static_cast<uint16_t>(number));
  }
  if (number <= UINT32_MAX) {
    return Number(static_cast<uint8_t>(lead8 + 2), static_cast<uint32_t>(number));
  }
  return Number(static_cast<uint8_t>(lead8 + 3), number);
}

bool MessagePackWriter::Null() {
  return Byte(kNil);
}
bool MessagePackWriter::Bool(bool value) {
  return Byte(value ? kTrue : kFalse);
}

bool MessagePackWriter::Unsigned(uint64_t value) {
  return value < kPositiveFixints ? Byte(static_cast<uint8_t>(value)) : NarrowNumber(kUint8, value);
}

bool MessagePackWriter::Signed(int64_t value) {
  constexpr int64_t kLowestFixint = -int64_t{kNegativeFixints};
  if (value >= kLowestFixint && value < int64_t{kPositiveFixints}) {
    return Byte(static_cast<uint8_t>(value));
  }
  if (value == static_cast<int8_t>(value)) return Number(kInt8, static_cast<uint8_t>(value));
  if (value == static_cast<int16_t>(value)) return Number(kInt16, static_cast<uint16_t>(value));
  if (value == static_cast<int32_t>(value)) return Number(kInt32, static_cast<uint32_t>(value));
  return Number(kInt64, static_cast<uint64_t>(value));
}

bool MessagePackWriter::Float(double value) {
  const auto bits = std::bit_cast<uint64_t>(value);
  if (!std::isfinite(value) || std::fabs(value) <= FLT_MAX) {
    const auto narrow = static_cast<float>(value);
    // By their bits: a NaN keeps what it carries.
    if (std::bit_cast<uint64_t>(double{narrow}) == bits) {
      return Number(kFloat32, std::bit_cast<uint32_t>(narrow));
    }
  }
  return Number(kFloat64, bits);
}

bool MessagePackWriter::String(std::string_view text) {
  if (text.size() > UINT8_MAX) {
    return CheckSize(text.size()) && NarrowNumber(kStr8, text.size()) && Bytes(text);
  }
  // Its size and its bytes in one go: nearly all strings are short.
  char* to = block_.Reserve(2 + text.size());
  if (text.size() < kFixstrs) {
    *to++ = static_cast<char>(kFixstr + text.size());
  } else {
    *to++ = static_cast<char>(kStr8);
    *to++ = static_cast<char>(text.size());
  }
  CopyBytes(to, text.data(), text.size());
  block_.FilledTo(to + text.size());
  return true;
}

bool MessagePackWriter::Blob(std::span<const uint8_t> bytes) {
  return CheckSize(bytes.size()) && NarrowNumber(kBin8, bytes.size()) &&
         Bytes({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool MessagePackWriter::Enum(const TypeRecord& type, int32_t value) {
  const EnumeratorRecord* named = type.FindEnumerator(value);
  return named != nullptr ? String(named->name) : Signed(value);
}

// Writes the short name. Returns space for a value of `bytes`.
inline char* MessagePackWriter::BeginMember(std::string_view name, size_t bytes) {
  char* const to = block_.Reserve(1 + kFixstrs + bytes);
  *to = static_cast<char>(kFixstr + name.size());
  std::memcpy(to + 1, name.data(), kBlock);
  if (name.size() > kBlock) std::memcpy(to + 1 + kBlock, name.data() + kBlock, kBlock);
  return to + 1 + name.size();
}

inline void MessagePackWriter::WriteMember(std::string_view name, bool value) {
  char* const to = BeginMember(name, 1);
  *to = static_cast<char>(value ? kTrue : kFalse);
  block_.FilledTo(to + 1);
}

template <typename Integer>
inline void MessagePackWriter::WriteMember(std::string_view name, Integer value) {
  char* const to = BeginMember(name, 1);
  if (value >= 0 && value < Integer{kPositiveFixints}) {
    *to = static_cast<char>(value);
    return block_.FilledTo(to + 1);
  }
  block_.FilledTo(to);
  if constexpr (std::is_signed_v<Integer>) {
    Signed(value);
  } else {
    Unsigned(value);
  }
}

inline void MessagePackWriter::WriteMember(std::string_view name, const std::string& text) {
  const size_t size = text.size();
  if (size > UINT8_MAX) {
    block_.FilledTo(BeginMember(name, 0));
    String(text);
    return;
  }
  char* to = BeginMember(name, 2 + kBlock + size);
  if (size < kFixstrs) {
    *to++ = static_cast<char>(kFixstr + size);
  } else {
    *to++ = static_cast<char>(kStr8);
    *to++ = static_cast<char>(size);
  }
  CopyText(text, to);
  block_.FilledTo(to + size);
}

inline void MessagePackWriter::WriteMember(std::string_view name, const TypeRecord& type,
                                           int32_t value) {
  block_.FilledTo(BeginMember(name, 0));
  Enum(type, value);
}

bool MessagePackWriter::SimpleMembers(const TypeRecord& type, const void* object, size_t* next) {
  WalkSimpleMembers(type, object, next, [this](const FieldRecord& field, const auto&... value) {
    if (field.name.size() >= kFixstrs) return false;
    WriteMember(field.name, value...);
    return true;
  });
  return true;
}

bool MessagePackWriter::BeginStructure(size_t size) {
  return Container(kFixmap, kMap16, size);
}
bool MessagePackWriter::BeginCollection(size_t size) {
  return Container(kFixarray, kArray16, size);
}

bool MessagePackWriter::Container(uint8_t fix, uint8_t lead16, size_t size) {
  if (size < kFixContainers) return Byte(static_cast<uint8_t>(fix + size));
  if (size <= UINT16_MAX) return Number(lead16, static_cast<uint16_t>(size));
  return CheckSize(size) && Number(static_cast<uint8_t>(lead16 + 1), static_cast<uint32_t>(size));
}

bool MessagePackWriter::Bytes(std::string_view bytes) {
  if (bytes.size() > OutputBlock::kBytes / 2) {
    block_.Append(bytes);
  } else if (!bytes.empty()) {
    char* to = block_.Reserve(bytes.size());
    std::memcpy(to, bytes.data(), bytes.size());
    block_.FilledTo(to + bytes.size());
  }
  return true;
}

bool MessagePackWriter::CheckSize(size_t size) {
  if (size <= UINT32_MAX) return true;
  error_ = "A size above 4294967295 cannot be written as MessagePack.";
  return false;
}

void MessagePackWriter::Finish(const ConversionContext& context) {
  block_.Finish(context.Ok());
}

}  // namespace Kest
