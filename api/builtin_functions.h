// The functions that every plugin has without registering them. They are in the namespace
// "$builtin" and are invoked by name; no route leads to them.
//
//   "$builtin.Help"  describes the functions, types and events of the API. Its argument "format",
//                    a BindingHelpFormat: "Full", also when absent, returns a BindingFullApiHelp
//                    (binding/help/help_types.h), "Epytext" a string
//                    (binding/help/epytext_writer.h). Functions are listed in the order of their
//                    registration, then the built-in ones, Help included.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "api/bound_function.h"
#include "base/maybe_type.h"
#include "binding/help/help_types.h"
#include "binding/types/type_registry.h"

namespace Kest {

// Threads:  any, once the API is registered.
// Lifetime: the registry outlives it.
class BuiltinFunctions {
 public:
  // Returns the functions registered at the time of the call.
  using RegisteredFunctions = std::function<std::vector<const FunctionRecord*>()>;

  // Registers the types of Help.
  BuiltinFunctions(TypeRegistry& registry, RegisteredFunctions registered);
  BuiltinFunctions(const BuiltinFunctions&) = delete;
  BuiltinFunctions& operator=(const BuiltinFunctions&) = delete;

  // By the name without the namespace; null when there is none.
  const BoundFunction* Find(std::string_view name) const;

 private:
  // Builds the description at each call: calls are rare, and loading stays cheap.
  Maybe<BindingProperty> Help(std::optional<BindingHelpFormat> format) const;

  const TypeRegistry& registry_;
  RegisteredFunctions registered_;
  std::vector<BoundFunction> functions_;
};

}  // namespace Kest
