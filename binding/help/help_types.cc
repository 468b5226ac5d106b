#include "binding/help/help_types.h"

#include <utility>

#include "binding/convert/define_struct.h"
#include "binding/types/type_registry.h"

namespace Kest {
namespace {

constexpr std::string_view kNameSpace = "Kest";

void RegisterItemHelp(TypeRegistry& registry) {
  DefineEnum<BindingHelpFormat>(registry, "BindingHelpFormat", kNameSpace)
      .Enumerator("Full", BindingHelpFormat::kFull, "Native help format")
      .Enumerator("Epytext", BindingHelpFormat::kEpytext, "Python epytext format")
      .Description("Help format for binding functions and types.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullTypeIdentifier>(registry, "BindingFullTypeIdentifier", kNameSpace)
      .Fields<&BindingFullTypeIdentifier::type, &BindingFullTypeIdentifier::elementType>(kRequired)
      .Description("Describes the type of a value.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullArgumentHelp>(registry, "BindingFullArgumentHelp", kNameSpace)
      .Fields<&BindingFullArgumentHelp::name, &BindingFullArgumentHelp::description,
              &BindingFullArgumentHelp::type, &BindingFullArgumentHelp::optional>(kRequired)
      .Description("Describes a function parameter.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullFunctionHelp>(registry, "BindingFullFunctionHelp", kNameSpace)
      .Fields<&BindingFullFunctionHelp::name, &BindingFullFunctionHelp::nameSpace,
              &BindingFullFunctionHelp::arguments, &BindingFullFunctionHelp::returns,
              &BindingFullFunctionHelp::description, &BindingFullFunctionHelp::help,
              &BindingFullFunctionHelp::threadSafe, &BindingFullFunctionHelp::async,
              &BindingFullFunctionHelp::tags>(kRequired)
      .Description("Describes a function.")
      .Tags({kBuiltinTag, kHelpTag});
}

void RegisterTypeHelp(TypeRegistry& registry) {
  DefineStruct<BindingFullEnumValueHelp>(registry, "BindingFullEnumValueHelp", kNameSpace)
      .Fields<&BindingFullEnumValueHelp::name, &BindingFullEnumValueHelp::description,
              &BindingFullEnumValueHelp::value>(kRequired)
      .Description("Describes an enumerator.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullFieldHelp>(registry, "BindingFullFieldHelp", kNameSpace)
      .Fields<&BindingFullFieldHelp::name, &BindingFullFieldHelp::description,
              &BindingFullFieldHelp::offset, &BindingFullFieldHelp::type,
              &BindingFullFieldHelp::optional>(kRequired)
      .Description("Describes a member of a struct.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullTypeHelp>(registry, "BindingFullTypeHelp", kNameSpace)
      .Fields<&BindingFullTypeHelp::name, &BindingFullTypeHelp::nameSpace,
              &BindingFullTypeHelp::size, &BindingFullTypeHelp::description,
              &BindingFullTypeHelp::tags, &BindingFullTypeHelp::fields,
              &BindingFullTypeHelp::values>(kRequired)
      .Description("Describes a struct or enum type.")
      .Tags({kBuiltinTag, kHelpTag});
}

void RegisterApiHelp(TypeRegistry& registry) {
  DefineStruct<BindingFullEventHelp>(registry, "BindingFullEventHelp", kNameSpace)
      .Fields<&BindingFullEventHelp::name, &BindingFullEventHelp::nameSpace,
              &BindingFullEventHelp::type, &BindingFullEventHelp::description,
              &BindingFullEventHelp::tags>(kRequired)
      .Description("Describes an event.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullApiHelp>(registry, "BindingFullApiHelp", kNameSpace)
      .Fields<&BindingFullApiHelp::functions, &BindingFullApiHelp::types,
              &BindingFullApiHelp::events>(kRequired)
      .Description("Describes the exposed native API.")
      .Tags({kBuiltinTag, kHelpTag});
}

void RegisterAsyncTypes(TypeRegistry& registry) {
  constexpr std::string_view kToken = "Asynchronous operation token";
  constexpr std::string_view kData = "Event data";
  DefineEnum<BindingAsyncState>(registry, "BindingAsyncState", kNameSpace)
      .Enumerator("None", BindingAsyncState::kNone, "Invalid state")
      .Enumerator("Running", BindingAsyncState::kRunning, "The operation is in flight")
      .Enumerator("Cancelling", BindingAsyncState::kCancelling,
                  "A request to cancel the operation has been made")
      .Enumerator("Cancelled", BindingAsyncState::kCancelled, "The operation was cancelled")
      .Enumerator("Succeeded", BindingAsyncState::kSucceeded,
                  "The operation completed successfully")
      .Enumerator("Failed", BindingAsyncState::kFailed, "The operation encountered an error")
      .Description("Possible states of an asynchronous operation.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingGenericEvent>(registry, "BindingGenericEvent", kNameSpace)
      .Field<&BindingGenericEvent::data>(kOptional, kData)
      .Description("Represents generic data for an event.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingCallbackEvent>(registry, "BindingCallbackEvent", kNameSpace)
      .Field<&BindingCallbackEvent::id>(kRequired, "ID of the callback being invoked")
      .Field<&BindingCallbackEvent::parameters>(kOptional, "Callback parameters")
      .Description("Represents the parameters of a call to a provided callback.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingGenericAsyncEvent>(registry, "BindingGenericAsyncEvent", kNameSpace)
      .Field<&BindingGenericAsyncEvent::asyncToken>(kRequired, kToken)
      .Field<&BindingGenericAsyncEvent::data>(kOptional, kData)
      .Description("Represents generic data for an asynchronous event.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingAsyncFailureEvent>(registry, "BindingAsyncFailureEvent", kNameSpace)
      .Field<&BindingAsyncFailureEvent::error>(kRequired, "Error message")
      .Description("Represents a failed asynchronous operation.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingAsyncCancelEvent>(registry, "BindingAsyncCancelEvent", kNameSpace)
      .Field<&BindingAsyncCancelEvent::asyncToken>(kRequired, kToken)
      .Description("Represents a cancelled asynchronous operation.")
      .Tags({kBuiltinTag, kAsyncTag});
}

}  // namespace

void RegisterHelpTypes(TypeRegistry& registry) {
  RegisterItemHelp(registry);
  RegisterTypeHelp(registry);
  RegisterApiHelp(registry);
  RegisterAsyncTypes(registry);
  EventRecord event;
  event.name = kCallbackEvent;
  event.nameSpace = kBuiltinNameSpace;
  event.description = "Fired when a callback is invoked.";
  event.payload = IdentifyType<BindingCallbackEvent>(registry);
  registry.RegisterEvent(std::move(event));
}

}  // namespace Kest
