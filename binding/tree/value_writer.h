// The one way values leave: a walk over a native value or a tree hands a ValueWriter what it
// meets. Writers exist for trees (TreeBuilder), JSON text (JsonWriter) and MessagePack
// (MessagePackWriter).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "binding/types/type_id.h"

namespace Kest {

// Receives one value. Every call returns false when it cannot be done; ErrorMessage then says why,
// and the walk ends there. REQUIRES of callers: calls form one value. Inside a structure each value
// follows its Member call. Texts and bytes are lent for the call. A member named twice keeps the
// place of the first and the value of the last. Threads: one writer is used by one thread.
class ValueWriter {
 public:
  virtual ~ValueWriter() = default;

  virtual bool Null() = 0;
  virtual bool Bool(bool value) = 0;
  virtual bool Signed(int64_t value) = 0;
  virtual bool Unsigned(uint64_t value) = 0;
  virtual bool Float(double value) = 0;
  virtual bool String(std::string_view text) = 0;
  virtual bool Blob(std::span<const uint8_t> bytes) = 0;
  virtual bool Enum(const TypeRecord& type, int32_t value) = 0;

  // `size` is the number of members or elements that follow.
  virtual bool BeginStructure(size_t size) = 0;
  virtual bool Member(std::string_view name) = 0;
  virtual bool EndStructure() = 0;
  virtual bool BeginCollection(size_t size) = 0;
  virtual bool EndCollection() = 0;

  // Inside of a structure: takes members of the native `object` of that type, each with its name,
  // from number `*next` on, in their order, and goes past them: as Member and its value would. It
  // may stop anywhere; what it leaves is written member by member.
  virtual bool SimpleMembers(const TypeRecord& /*type*/, const void* /*object*/, size_t* /*next*/) {
    return true;
  }

  virtual std::string_view ErrorMessage() const = 0;
};

class BindingProperty;

// Writes the whole tree, of any depth, to `writer`. False as soon as the writer returns false.
bool WriteTree(const BindingProperty& tree, ValueWriter& writer);

}  // namespace Kest
