#include "binding/msgpack_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "binding/byte_cursor.h"
#include "binding/msgpack_format.h"
#include "binding/tree_builder.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

using MessagePack::Form;
using MessagePack::kLeads;
using MessagePack::Lead;

// Enough for most small bodies.
constexpr size_t kSmallTree = 512;

// Feeds the builder with one value. The bytes lie in the builder's own memory: texts stay there.
class Reader {
 public:
  Reader(TreeBuilder& builder, std::span<const uint8_t> bytes)
      : builder_(builder), cursor_(bytes) {}

  // False: `failure` says why.
  bool Read();
  size_t Consumed() const { return cursor_.Position(); }
  const std::string& failure() const { return failure_; }

 private:
  // A container that is not complete. A map's keys are read together with their values.
  struct Open {
    uint32_t entriesLeft;
    bool isMap;
  };

  bool ReadKey();
  bool ReadValue();
  bool ReadScalar(Form form, uint8_t width, uint64_t number);
  bool ReadBlob(uint64_t size);
  bool ReadLead(Lead* lead);
  bool ReadNumber(const Lead& lead, uint64_t* number);
  template <typename Unsigned>
  bool ReadWidth(uint64_t* number);
  bool ReadText(uint64_t size, std::string_view* text);
  bool BeginContainer(bool isMap, uint64_t size);
  bool EndContainer();

  bool Check(bool isDone) { return isDone || FailAt(builder_.ErrorText()); }
  bool FailAt(std::string_view reason);
  bool FailTruncated(size_t bits);

  TreeBuilder& builder_;
  ByteCursor cursor_;
  size_t item_ = 0;         // where the item at hand begins
  Open current_{1, false};  // at first the place of the whole value
  std::vector<Open> open_;  // around it
  std::string failure_;
};

bool Reader::Read() {
  for (;;) {
    while (current_.entriesLeft == 0) {
      if (open_.empty()) return true;
      if (!EndContainer()) return false;
    }
    --current_.entriesLeft;
    if (current_.isMap && !ReadKey()) return false;
    if (!ReadValue()) return false;
  }
}

bool Reader::ReadKey() {
  Lead lead;
  if (!ReadLead(&lead)) return false;
  if (lead.form != Form::kString) return FailAt("Map keys must be strings.");
  uint64_t size = 0;
  std::string_view name;
  return ReadNumber(lead, &size) && ReadText(size, &name) && Check(builder_.StoredMember(name));
}

bool Reader::ReadValue() {
  Lead lead;
  uint64_t number = 0;
  if (!ReadLead(&lead) || !ReadNumber(lead, &number)) return false;
  switch (lead.form) {
    case Form::kString: {
      std::string_view text;
      return ReadText(number, &text) && Check(builder_.StoredString(text));
    }
    case Form::kArray:
      return BeginContainer(/*isMap=*/false, number);
    case Form::kMap:
      return BeginContainer(/*isMap=*/true, number);
    default:
      return ReadScalar(lead.form, lead.width, number);
  }
}

bool Reader::ReadScalar(Form form, uint8_t width, uint64_t number) {
  switch (form) {
    case Form::kNil:
      return Check(builder_.Null());
    case Form::kBool:
      return Check(builder_.Bool(number != 0));
    case Form::kSigned: {
      const int unused = 64 - 8 * std::max<int>(width, 1);
      return Check(builder_.Signed(static_cast<int64_t>(number << unused) >> unused));
    }
    case Form::kUnsigned:
      return Check(builder_.Unsigned(number));
    case Form::kFloat:
      if (width == 8) return Check(builder_.Float(std::bit_cast<double>(number)));
      return Check(builder_.Float(std::bit_cast<float>(static_cast<uint32_t>(number))));
    case Form::kBlob:
      return ReadBlob(number);
    default:
      return FailAt({});
  }
}

bool Reader::ReadBlob(uint64_t size) {
  std::span<const uint8_t> bytes;
  if (cursor_.ReadBytes(size, &bytes)) return Check(builder_.StoredBlob(bytes));
  failure_ = Format("Invalid MessagePack data. Raw bytes of size %1 at position %2 are truncated.",
                    size, item_);
  return false;
}

bool Reader::ReadLead(Lead* lead) {
  item_ = cursor_.Position();
  uint8_t byte = 0;
  if (!cursor_.Read(&byte)) return FailTruncated(8);
  *lead = kLeads[byte];
  return true;
}

bool Reader::ReadNumber(const Lead& lead, uint64_t* number) {
  switch (lead.width) {
    case 0:
      *number = lead.value;
      return true;
    case 1:
      return ReadWidth<uint8_t>(number);
    case 2:
      return ReadWidth<uint16_t>(number);
    case 4:
      return ReadWidth<uint32_t>(number);
    default:
      return ReadWidth<uint64_t>(number);
  }
}

template <typename Unsigned>
bool Reader::ReadWidth(uint64_t* number) {
  Unsigned value = 0;
  if (!cursor_.Read(&value)) return FailTruncated(8 * sizeof(Unsigned));
  *number = value;
  return true;
}

bool Reader::ReadText(uint64_t size, std::string_view* text) {
  std::span<const uint8_t> bytes;
  if (cursor_.ReadBytes(size, &bytes)) {
    *text = {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    return true;
  }
  failure_ = Format("Invalid MessagePack data. String of size %1 at position %2 is truncated.",
                    size, item_);
  return false;
}

bool Reader::BeginContainer(bool isMap, uint64_t size) {
  open_.push_back(current_);
  current_ = {static_cast<uint32_t>(size), isMap};
  // The builder is told no size: it grows with what really comes.
  return Check(isMap ? builder_.BeginStructure(0) : builder_.BeginCollection(0));
}

bool Reader::EndContainer() {
  const bool isDone = current_.isMap ? builder_.EndStructure() : builder_.EndCollection();
  current_ = open_.back();
  open_.pop_back();
  return Check(isDone);
}

bool Reader::FailAt(std::string_view reason) {
  failure_ = Format("Invalid MessagePack data at position %1.", item_);
  if (!reason.empty()) failure_.append(" ").append(reason);
  return false;
}

bool Reader::FailTruncated(size_t bits) {
  failure_ = Format("Invalid MessagePack data. %1-bit integer value at position %2 is truncated.",
                    bits, item_);
  return false;
}

BindingProperty ReadTree(ConversionContext& context, std::span<const uint8_t> bytes,
                         size_t* consumed) {
  // Nodes take about twice the room of the bytes.
  TreeBuilder builder(std::min(3 * bytes.size() + kSmallTree, kMaxTreeBytes));
  char* const copy = builder.TryReserveText(bytes.size());
  if (copy == nullptr) {
    context.Fail(builder.ErrorText());
    return {};
  }
  if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
  Reader reader(builder, {reinterpret_cast<const uint8_t*>(copy), bytes.size()});
  if (!reader.Read()) {
    context.Fail(reader.failure());
    return {};
  }
  *consumed = reader.Consumed();
  return builder.Take();
}

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
    context.Fail("Out of memory");
    return {};
  }
}

}  // namespace Kest
