#include "binding/convert/conversion_context.h"

namespace Kest {

void ConversionContext::Fail(std::string_view text) {
  if (!ok_) return;
  ok_ = false;
  property_.SetStructure();
  property_.GetOrAddMember("error").SetString(text);
}

void ConversionContext::FailOutOfMemory() {
  ranOutOfMemory_ = ok_;
  Fail("Out of memory");
}

std::string ConversionContext::ErrorMessage() const {
  if (ok_) return {};
  const BindingProperty* error = property_.FindMember("error");
  return error != nullptr && error->kind() == BindingKind::kString ? std::string(error->AsString())
                                                                   : std::string();
}

}  // namespace Kest
