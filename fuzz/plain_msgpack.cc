#include "fuzz/plain_msgpack.h"

#include <bit>
#include <cstdint>

#include "binding/tree/tree_builder.h"

namespace Kest::Fuzz {
namespace {

constexpr int kMaxDepth = 100;

class PlainReader {
 public:
  explicit PlainReader(std::string_view bytes) : all_(bytes), bytes_(bytes) {}

  TreeBuilder tree;
  std::string failure;

  bool Value(int depth) {
    uint64_t lead = 0;
    if (depth > kMaxDepth || !Begin(&lead)) return false;
    if (lead <= 0x7F) return tree.Signed(static_cast<int64_t>(lead));
    if (lead <= 0x8F) return Map(lead - 0x80, depth);
    if (lead <= 0x9F) return Array(lead - 0x90, depth);
    if (lead <= 0xBF) return Text(lead - 0xA0, /*isKey=*/false);
    if (lead >= 0xE0) return tree.Signed(static_cast<int64_t>(lead) - 0x100);
    switch (lead) {
      case 0xC0:
        return tree.Null();
      case 0xC2:
      case 0xC3:
        return tree.Bool(lead == 0xC3);
      case 0xC4:
      case 0xC5:
      case 0xC6:
        return Blob(size_t{1} << (lead - 0xC4));
      case 0xCA:
      case 0xCB:
        return Float(lead == 0xCA);
      case 0xD9:
      case 0xDA:
      case 0xDB:
        return Sized(size_t{1} << (lead - 0xD9),
                     [&](uint64_t size) { return Text(size, /*isKey=*/false); });
      case 0xDC:
      case 0xDD:
        return Sized(lead == 0xDC ? 2 : 4, [&](uint64_t size) { return Array(size, depth); });
      case 0xDE:
      case 0xDF:
        return Sized(lead == 0xDE ? 2 : 4, [&](uint64_t size) { return Map(size, depth); });
      default:
        return Integer(lead);
    }
  }

 private:
  bool Fail(const std::string& message) {
    failure = "Invalid MessagePack data" + message;
    return false;
  }
  std::string Position() const { return " at position " + std::to_string(item_); }

  // The first byte of an item, which failures name.
  bool Begin(uint64_t* lead) {
    item_ = all_.size() - bytes_.size();
    return Number(1, lead);
  }

  bool Number(size_t width, uint64_t* number) {
    if (bytes_.size() < width) {
      return Fail(". " + std::to_string(8 * width) + "-bit integer value" + Position() +
                  " is truncated.");
    }
    *number = 0;
    for (size_t i = 0; i < width; ++i) *number = *number << 8 | static_cast<uint8_t>(bytes_[i]);
    bytes_.remove_prefix(width);
    return true;
  }

  template <typename Take>
  bool Sized(size_t width, Take take) {
    uint64_t size = 0;
    return Number(width, &size) && take(size);
  }

  bool Integer(uint64_t lead) {
    const bool isUnsigned = lead >= 0xCC && lead <= 0xCF;
    if (!isUnsigned && (lead < 0xD0 || lead > 0xD3)) return Fail(Position() + ".");
    return Sized(size_t{1} << (lead & 3), [&](uint64_t number) {
      if (isUnsigned) return tree.Unsigned(number);
      if (lead == 0xD0) return tree.Signed(static_cast<int8_t>(number));
      if (lead == 0xD1) return tree.Signed(static_cast<int16_t>(number));
      if (lead == 0xD2) return tree.Signed(static_cast<int32_t>(number));
      return tree.Signed(static_cast<int64_t>(number));
    });
  }

  bool Float(bool isNarrow) {
    return Sized(isNarrow ? 4 : 8, [&](uint64_t bits) {
      if (isNarrow) return tree.Float(std::bit_cast<float>(static_cast<uint32_t>(bits)));
      return tree.Float(std::bit_cast<double>(bits));
    });
  }

  bool Bytes(std::string_view what, uint64_t size, std::string_view* bytes) {
    if (size > bytes_.size()) {
      const std::string of = " of size " + std::to_string(size) + Position();
      return Fail(". " + std::string(what) + of +
                  (what == "String" ? " is truncated." : " are truncated."));
    }
    *bytes = bytes_.substr(0, static_cast<size_t>(size));
    bytes_.remove_prefix(bytes->size());
    return true;
  }

  bool Text(uint64_t size, bool isKey) {
    std::string_view text;
    return Bytes("String", size, &text) && (isKey ? tree.Member(text) : tree.String(text));
  }

  bool Blob(size_t width) {
    return Sized(width, [&](uint64_t size) {
      std::string_view bytes;
      return Bytes("Raw bytes", size, &bytes) &&
             tree.Blob({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
    });
  }

  bool Array(uint64_t size, int depth) {
    bool isRead = tree.BeginCollection(0);
    for (; isRead && size > 0; --size) isRead = Value(depth + 1);
    return isRead && tree.EndCollection();
  }

  bool Map(uint64_t size, int depth) {
    bool isRead = tree.BeginStructure(0);
    for (; isRead && size > 0; --size) isRead = Key() && Value(depth + 1);
    return isRead && tree.EndStructure();
  }

  bool Key() {
    uint64_t lead = 0;
    if (!Begin(&lead)) return false;
    if (lead >= 0xA0 && lead <= 0xBF) return Text(lead - 0xA0, /*isKey=*/true);
    if (lead < 0xD9 || lead > 0xDB) return Fail(Position() + ". Map keys must be strings.");
    return Sized(size_t{1} << (lead - 0xD9),
                 [&](uint64_t size) { return Text(size, /*isKey=*/true); });
  }

  std::string_view all_;
  std::string_view bytes_;  // what is left of them
  size_t item_ = 0;
};

}  // namespace

PlainReading ReadPlainMessagePack(std::string_view bytes) {
  PlainReader reader(bytes);
  if (!reader.Value(0)) return {std::nullopt, reader.failure};
  return {reader.tree.Take(), {}};
}

}  // namespace Kest::Fuzz
