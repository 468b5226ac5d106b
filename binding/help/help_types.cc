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
      .Field<&BindingFullTypeIdentifier::type>("type", kRequired)
      .Field<&BindingFullTypeIdentifier::elementType>("elementType", kRequired)
      .Description("Describes the type of a value.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullArgumentHelp>(registry, "BindingFullArgumentHelp", kNameSpace)
      .Field<&BindingFullArgumentHelp::name>("name", kRequired)
      .Field<&BindingFullArgumentHelp::description>("description", kRequired)
      .Field<&BindingFullArgumentHelp::type>("type", kRequired)
      .Field<&BindingFullArgumentHelp::optional>("optional", kRequired)
      .Description("Describes a function parameter.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullFunctionHelp>(registry, "BindingFullFunctionHelp", kNameSpace)
      .Field<&BindingFullFunctionHelp::name>("name", kRequired)
      .Field<&BindingFullFunctionHelp::nameSpace>("nameSpace", kRequired)
      .Field<&BindingFullFunctionHelp::arguments>("arguments", kRequired)
      .Field<&BindingFullFunctionHelp::returns>("returns", kRequired)
      .Field<&BindingFullFunctionHelp::description>("description", kRequired)
      .Field<&BindingFullFunctionHelp::help>("help", kRequired)
      .Field<&BindingFullFunctionHelp::threadSafe>("threadSafe", kRequired)
      .Field<&BindingFullFunctionHelp::async>("async", kRequired)
      .Field<&BindingFullFunctionHelp::tags>("tags", kRequired)
      .Description("Describes a function.")
      .Tags({kBuiltinTag, kHelpTag});
}

void RegisterTypeHelp(TypeRegistry& registry) {
  DefineStruct<BindingFullEnumValueHelp>(registry, "BindingFullEnumValueHelp", kNameSpace)
      .Field<&BindingFullEnumValueHelp::name>("name", kRequired)
      .Field<&BindingFullEnumValueHelp::description>("description", kRequired)
      .Field<&BindingFullEnumValueHelp::value>("value", kRequired)
      .Description("Describes an enumerator.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullFieldHelp>(registry, "BindingFullFieldHelp", kNameSpace)
      .Field<&BindingFullFieldHelp::name>("name", kRequired)
      .Field<&BindingFullFieldHelp::description>("description", kRequired)
      .Field<&BindingFullFieldHelp::offset>("offset", kRequired)
      .Field<&BindingFullFieldHelp::type>("type", kRequired)
      .Field<&BindingFullFieldHelp::optional>("optional", kRequired)
      .Description("Describes a member of a struct.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullTypeHelp>(registry, "BindingFullTypeHelp", kNameSpace)
      .Field<&BindingFullTypeHelp::name>("name", kRequired)
      .Field<&BindingFullTypeHelp::nameSpace>("nameSpace", kRequired)
      .Field<&BindingFullTypeHelp::size>("size", kRequired)
      .Field<&BindingFullTypeHelp::description>("description", kRequired)
      .Field<&BindingFullTypeHelp::tags>("tags", kRequired)
      .Field<&BindingFullTypeHelp::fields>("fields", kRequired)
      .Field<&BindingFullTypeHelp::values>("values", kRequired)
      .Description("Describes a struct or enum type.")
      .Tags({kBuiltinTag, kHelpTag});
}

void RegisterApiHelp(TypeRegistry& registry) {
  DefineStruct<BindingFullEventHelp>(registry, "BindingFullEventHelp", kNameSpace)
      .Field<&BindingFullEventHelp::name>("name", kRequired)
      .Field<&BindingFullEventHelp::nameSpace>("nameSpace", kRequired)
      .Field<&BindingFullEventHelp::type>("type", kRequired)
      .Field<&BindingFullEventHelp::description>("description", kRequired)
      .Field<&BindingFullEventHelp::tags>("tags", kRequired)
      .Description("Describes an event.")
      .Tags({kBuiltinTag, kHelpTag});
  DefineStruct<BindingFullApiHelp>(registry, "BindingFullApiHelp", kNameSpace)
      .Field<&BindingFullApiHelp::functions>("functions", kRequired)
      .Field<&BindingFullApiHelp::types>("types", kRequired)
      .Field<&BindingFullApiHelp::events>("events", kRequired)
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
      .Field<&BindingGenericEvent::data>("data", kOptional, kData)
      .Description("Represents generic data for an event.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingCallbackEvent>(registry, "BindingCallbackEvent", kNameSpace)
      .Field<&BindingCallbackEvent::id>("id", kRequired, "ID of the callback being invoked")
      .Field<&BindingCallbackEvent::parameters>("parameters", kOptional, "Callback parameters")
      .Description("Represents the parameters of a call to a provided callback.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingGenericAsyncEvent>(registry, "BindingGenericAsyncEvent", kNameSpace)
      .Field<&BindingGenericAsyncEvent::asyncToken>("asyncToken", kRequired, kToken)
      .Field<&BindingGenericAsyncEvent::data>("data", kOptional, kData)
      .Description("Represents generic data for an asynchronous event.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingAsyncFailureEvent>(registry, "BindingAsyncFailureEvent", kNameSpace)
      .Field<&BindingAsyncFailureEvent::error>("error", kRequired, "Error message")
      .Description("Represents a failed asynchronous operation.")
      .Tags({kBuiltinTag, kAsyncTag});
  DefineStruct<BindingAsyncCancelEvent>(registry, "BindingAsyncCancelEvent", kNameSpace)
      .Field<&BindingAsyncCancelEvent::asyncToken>("asyncToken", kRequired, kToken)
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
