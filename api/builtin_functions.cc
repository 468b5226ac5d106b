#include "api/builtin_functions.h"

#include <algorithm>
#include <utility>

#include "api/bind_handler.h"
#include "binding/convert/convert.h"
#include "binding/help/epytext_writer.h"

namespace Kest {

BuiltinFunctions::BuiltinFunctions(TypeRegistry& registry, RegisteredFunctions registered)
    : registry_(registry), registered_(std::move(registered)) {
  RegisterHelpTypes(registry);
  BoundFunction& help =
      functions_.emplace_back(BindHandler<Maybe<BindingProperty>, std::optional<BindingHelpFormat>>(
          registry, "Help",
          [this](std::optional<BindingHelpFormat> format) { return Help(format); }));
  help.DeclareArgument(ArgumentLocation::kAny, "format", "Full when absent");
  help.SetDescription("Describes the API: {functions, types, events}, or all of it as epytext");
  help.SetNameSpace(kBuiltinNameSpace);
  help.SetTags({kBuiltinTag, kHelpTag});
}

const BoundFunction* BuiltinFunctions::Find(std::string_view name) const {
  const auto found = std::find_if(functions_.begin(), functions_.end(),
                                  [name](const BoundFunction& f) { return f.Name() == name; });
  return found != functions_.end() ? &*found : nullptr;
}

Maybe<BindingProperty> BuiltinFunctions::Help(std::optional<BindingHelpFormat> format) const {
  ApiRecords api{registered_(), registry_.Types(), registry_.Events()};
  for (const BoundFunction& function : functions_) api.functions.push_back(&function.Record());
  if (format == BindingHelpFormat::kEpytext) return BindingProperty::FromString(WriteEpytext(api));
  ConversionContext context(registry_);
  BindingProperty help = ToProperty(context, BuildFullHelp(api));
  if (!context.Ok()) return Failure{context.ErrorMessage()};
  return help;
}

}  // namespace Kest
