#include "binding/msgpack/msgpack_reader.h"

#include <cstring>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "binding/msgpack/byte_cursor.h"
#include "binding/msgpack/msgpack_format.h"
#include "binding/tree/tree_builder.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

using namespace MessagePack;

constexpr std::string_view kString =
    "Invalid MessagePack data. String of size %1 at position %2 is truncated.";
constexpr std::string_view kRawBytes =
    "Invalid MessagePack data. Raw bytes of size %1 at position %2 are truncated.";

constexpr bool IsFixstr(uint8_t lead) {
  return lead / kFixstrs == kFixstr / kFixstrs;
}

std::string_view TextOf(const uint8_t* bytes, uint64_t size) {
  return {reinterpret_cast<const char*>(bytes), static_cast<size_t>(size)};
}

// For what runs once or more for each item: the place in the bytes stays in a register only when
// nothing that takes it by reference is called.
#define KEST_PER_ITEM [[gnu::always_inline]] inline

// Feeds the builder with one value. The bytes lie in the builder's own memory: texts stay there.
class Reader {
 public:
  Reader(TreeBuilder& builder, std::span<const uint8_t> bytes) : builder_(builder), bytes_(bytes) {}

  // False: `failure` says why.
  bool Read();
  size_t consumed() const { return consumed_; }
  const std::string& failure() const { return failure_; }

 private:
  // A container that is not complete. A map's keys are read together with their values.
  struct Container {
    Container(uint32_t entries, bool map) : entriesLeft(entries), isMap(map) {}
    uint32_t entriesLeft;
    bool isMap;
  };

  bool ReadKey(ByteCursor& in);
  bool ReadValue(ByteCursor& in);
  bool ReadNumberOf(Form form, ByteCursor& in, const uint8_t* item);
  template <typename Number>
  bool ReadNumber(ByteCursor& in, const uint8_t* item);
  // `add` takes what has the size.
  template <typename Unsigned, auto add>
  bool ReadSized(ByteCursor& in, const uint8_t* item);
  bool AddString(ByteCursor& in, const uint8_t* item, size_t size);
  bool AddKey(ByteCursor& in, const uint8_t* item, size_t size);
  bool AddBlob(ByteCursor& in, const uint8_t* item, size_t size);
  bool BeginArray(ByteCursor& in, const uint8_t* item, size_t size);
  bool BeginMap(ByteCursor& in, const uint8_t* item, size_t size);
  void Open(bool isMap, size_t size);
  bool EndContainer();

  bool Check(bool isDone, const uint8_t* item) {
    return isDone || FailAt(item, builder_.ErrorMessage());
  }
  size_t PositionOf(const uint8_t* item) const { return static_cast<size_t>(item - bytes_.data()); }
  bool FailAt(const uint8_t* item, std::string_view reason = {});
  bool FailTruncated(const uint8_t* item, size_t width);
  bool FailTruncated(const uint8_t* item, std::string_view text, size_t size);

  TreeBuilder& builder_;
  std::span<const uint8_t> bytes_;
  Container current_{1, false};  // at first the place of the whole value
  std::vector<Container> open_;  // around it
  size_t consumed_ = 0;
  std::string failure_;
};

template <typename Number>
KEST_PER_ITEM bool Reader::ReadNumber(ByteCursor& in, const uint8_t* item) {
  if (!in.Has(sizeof(Number))) return FailTruncated(item, sizeof(Number));
  const auto number = in.Take<Number>();
  if constexpr (std::is_floating_point_v<Number>) {
    return Check(builder_.Float(number), item);
  } else if constexpr (std::is_signed_v<Number>) {
    return Check(builder_.Signed(number), item);
  } else {
    return Check(builder_.Unsigned(number), item);
  }
}

template <typename Unsigned, auto add>
KEST_PER_ITEM bool Reader::ReadSized(ByteCursor& in, const uint8_t* item) {
  if (!in.Has(sizeof(Unsigned))) return FailTruncated(item, sizeof(Unsigned));
  return (this->*add)(in, item, in.Take<Unsigned>());
}

KEST_PER_ITEM bool Reader::AddString(ByteCursor& in, const uint8_t* item, size_t size) {
  if (!in.Has(size)) return FailTruncated(item, kString, size);
  return Check(builder_.StoredString(TextOf(in.Take(size), size)), item);
}

KEST_PER_ITEM bool Reader::AddKey(ByteCursor& in, const uint8_t* item, size_t size) {
  if (!in.Has(size)) return FailTruncated(item, kString, size);
  return Check(builder_.StoredMember(TextOf(in.Take(size), size)), item);
}

KEST_PER_ITEM bool Reader::AddBlob(ByteCursor& in, const uint8_t* item, size_t size) {
  if (!in.Has(size)) return FailTruncated(item, kRawBytes, size);
  return Check(builder_.StoredBlob({in.Take(size), size}), item);
}

// The builder is given no size: it grows with what really comes.
KEST_PER_ITEM bool Reader::BeginArray(ByteCursor&, const uint8_t* item, size_t size) {
  Open(/*isMap=*/false, size);
  return Check(builder_.BeginCollection(0), item);
}

KEST_PER_ITEM bool Reader::BeginMap(ByteCursor&, const uint8_t* item, size_t size) {
  Open(/*isMap=*/true, size);
  return Check(builder_.BeginStructure(0), item);
}

void Reader::Open(bool isMap, size_t size) {
  // Member by member: a copy of the whole would wait for the parts just written.
  open_.emplace_back(current_.entriesLeft, current_.isMap);
  current_.entriesLeft = static_cast<uint32_t>(size);
  current_.isMap = isMap;
}

// Forms are distinguished by branches, not by computed widths: those are guessed right most of the
// time, so the next item is looked at before this one is done.
KEST_PER_ITEM bool Reader::ReadKey(ByteCursor& in) {
  const uint8_t* const item = in.Next();
  if (!in.Has(1)) return FailTruncated(item, 1);
  const uint8_t lead = *in.Take(1);
  if (IsFixstr(lead)) return AddKey(in, item, lead - kFixstr);
  switch (kForms[lead]) {
    case Form::kStr8:
      return ReadSized<uint8_t, &Reader::AddKey>(in, item);
    case Form::kStr16:
      return ReadSized<uint16_t, &Reader::AddKey>(in, item);
    case Form::kStr32:
      return ReadSized<uint32_t, &Reader::AddKey>(in, item);
    default:
      return FailAt(item, "Map keys must be strings.");
  }
}

// The forms of one number, and those that are refused.
KEST_PER_ITEM bool Reader::ReadNumberOf(Form form, ByteCursor& in, const uint8_t* item) {
  switch (form) {
    case Form::kFloat32:
      return ReadNumber<float>(in, item);
    case Form::kFloat64:
      return ReadNumber<double>(in, item);
    case Form::kUint8:
      return ReadNumber<uint8_t>(in, item);
    case Form::kUint16:
      return ReadNumber<uint16_t>(in, item);
    case Form::kUint32:
      return ReadNumber<uint32_t>(in, item);
    case Form::kUint64:
      return ReadNumber<uint64_t>(in, item);
    case Form::kInt8:
      return ReadNumber<int8_t>(in, item);
    case Form::kInt16:
      return ReadNumber<int16_t>(in, item);
    case Form::kInt32:
      return ReadNumber<int32_t>(in, item);
    case Form::kInt64:
      return ReadNumber<int64_t>(in, item);
    default:
      return FailAt(item);
  }
}

KEST_PER_ITEM bool Reader::ReadValue(ByteCursor& in) {
  const uint8_t* const item = in.Next();
  if (!in.Has(1)) return FailTruncated(item, 1);
  const uint8_t lead = *in.Take(1);
  if (IsFixstr(lead)) return AddString(in, item, lead - kFixstr);
  const Form form = kForms[lead];
  switch (form) {
    case Form::kFixint:
      return Check(builder_.Signed(static_cast<int8_t>(lead)), item);
    case Form::kFixmap:
      return BeginMap(in, item, lead - kFixmap);
    case Form::kFixarray:
      return BeginArray(in, item, lead - kFixarray);
    case Form::kNil:
      return Check(builder_.Null(), item);
    case Form::kBool:
      return Check(builder_.Bool(lead == kTrue), item);
    case Form::kBin8:
      return ReadSized<uint8_t, &Reader::AddBlob>(in, item);
    case Form::kBin16:
      return ReadSized<uint16_t, &Reader::AddBlob>(in, item);
    case Form::kBin32:
      return ReadSized<uint32_t, &Reader::AddBlob>(in, item);
    case Form::kStr8:
      return ReadSized<uint8_t, &Reader::AddString>(in, item);
    case Form::kStr16:
      return ReadSized<uint16_t, &Reader::AddString>(in, item);
    case Form::kStr32:
      return ReadSized<uint32_t, &Reader::AddString>(in, item);
    case Form::kArray16:
      return ReadSized<uint16_t, &Reader::BeginArray>(in, item);
    case Form::kArray32:
      return ReadSized<uint32_t, &Reader::BeginArray>(in, item);
    case Form::kMap16:
      return ReadSized<uint16_t, &Reader::BeginMap>(in, item);
    case Form::kMap32:
      return ReadSized<uint32_t, &Reader::BeginMap>(in, item);
    default:
      return ReadNumberOf(form, in, item);
  }
}

bool Reader::Read() {
  ByteCursor in(bytes_);
  const uint8_t* item = in.Next();
  for (;;) {
    while (current_.entriesLeft == 0) {
      if (open_.empty()) {
        consumed_ = PositionOf(in.Next());
        return true;
      }
      if (!Check(EndContainer(), item)) return false;
    }
    --current_.entriesLeft;
    if (current_.isMap && !ReadKey(in)) return false;
    item = in.Next();
    if (!ReadValue(in)) return false;
  }
}

bool Reader::EndContainer() {
  const bool isMap = current_.isMap;
  current_.entriesLeft = open_.back().entriesLeft;
  current_.isMap = open_.back().isMap;
  open_.pop_back();
  return isMap ? builder_.EndStructure() : builder_.EndCollection();
}

bool Reader::FailAt(const uint8_t* item, std::string_view reason) {
  failure_ = Format("Invalid MessagePack data at position %1.", PositionOf(item));
  if (!reason.empty()) failure_.append(" ").append(reason);
  return false;
}

bool Reader::FailTruncated(const uint8_t* item, size_t width) {
  failure_ = Format("Invalid MessagePack data. %1-bit integer value at position %2 is truncated.",
                    8 * width, PositionOf(item));
  return false;
}

bool Reader::FailTruncated(const uint8_t* item, std::string_view text, size_t size) {
  failure_ = Format(text, size, PositionOf(item));
  return false;
}

BindingProperty ReadTree(ConversionContext& context, std::span<const uint8_t> bytes,
                         size_t* consumed) {
  TreeBuilder builder(bytes.size(), /*nodesPerByte=*/2);
  char* const copy = builder.TryReserveText(bytes.size());
  if (copy == nullptr) {
    context.Fail(builder.ErrorMessage());
    return {};
  }
  if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
  Reader reader(builder, {reinterpret_cast<const uint8_t*>(copy), bytes.size()});
  if (!reader.Read()) {
    context.Fail(reader.failure());
    return {};
  }
  *consumed = reader.consumed();
  return builder.Take();
}

#undef KEST_PER_ITEM

}  // namespace

BindingProperty ReadMessagePack(ConversionContext& context, std::span<const uint8_t> bytes,
                                size_t* consumed) {
  if (!context.Ok()) return {};
  if (bytes.size() > kMaxMessagePackBytes) {
    context.Fail("Body is too large");
    return {};
  }
  try {
    return ReadTree(context, bytes, consumed);
  } catch (const std::bad_alloc&) {
    context.FailOutOfMemory();
    return {};
  }
}

}  // namespace Kest
