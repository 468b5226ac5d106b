// The outcome of one conversion: a success flag and, after a failure, its text.
#pragma once

#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"
#include "binding/types/type_registry.h"

namespace Kest {

// Passed through every conversion. Code that meets a failure calls Fail and returns; converters do
// nothing once Ok is false, so the first failure is the one that is reported.
// Threads: one.
class ConversionContext {
 public:
  // `registry` says which native types are known; it outlives the context.
  explicit ConversionContext(const TypeRegistry& registry = TypeRegistry::Process())
      : registry_(&registry) {}

  bool Ok() const { return ok_; }
  // Makes the property a structure whose member "error" holds `text`. Only the first call counts.
  void Fail(std::string_view text);
  // Fails with "Out of memory". The input may be right: asking for it again may help.
  void FailOutOfMemory();
  bool RanOutOfMemory() const { return ranOutOfMemory_; }
  // The failure's text; empty while Ok.
  std::string ErrorMessage() const;

  const BindingProperty& property() const { return property_; }
  BindingProperty& property() { return property_; }
  const TypeRegistry& registry() const { return *registry_; }

 private:
  const TypeRegistry* registry_;
  BindingProperty property_;
  bool ok_ = true;
  bool ranOutOfMemory_ = false;
};

}  // namespace Kest
