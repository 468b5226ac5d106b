#include "binding/help/help_types.h"

#include <utility>

#include "binding/convert/define_struct.h"
#include "binding/types/type_registry.h"

namespace Kest {
namespace {

// The definition of a builtin type, described, and tagged with what it belongs to.
template <typename Definition>
Definition Builtin(TypeRegistry& registry, std::string_view name, std::string_view tag,
                   std::string_view description) {
  Definition definition(registry, name, "Kest");
  definition.Description(description).Tags({kBuiltinTag, tag});
  return definition;
}

void RegisterItemHelp(TypeRegistry& registry) {
  Builtin<DefineEnum<BindingHelpFormat>>(registry, "BindingHelpFormat", kHelpTag,
                                         "Help format for binding functions and types.")
      .Enumerator("Full", BindingHelpFormat::kFull, "Native help format")
      .Enumerator("Epytext", BindingHelpFormat::kEpytext, "Python epytext format");
  Builtin<DefineStruct<BindingFullTypeIdentifier>>(registry, "BindingFullTypeIdentifier", kHelpTag,
                                                   "Describes the type of a value.")
      .Fields<&BindingFullTypeIdentifier::type, &BindingFullTypeIdentifier::elementType>(kRequired);
  Builtin<DefineStruct<BindingFullArgumentHelp>>(registry, "BindingFullArgumentHelp", kHelpTag,
                                                 "Describes a function parameter.")
      .Fields<&BindingFullArgumentHelp::name, &BindingFullArgumentHelp::description,
              &BindingFullArgumentHelp::type, &BindingFullArgumentHelp::optional>(kRequired);
  Builtin<DefineStruct<BindingFullFunctionHelp>>(registry, "BindingFullFunctionHelp", kHelpTag,
                                                 "Describes a function.")
      .Fields<&BindingFullFunctionHelp::name, &BindingFullFunctionHelp::nameSpace,
              &BindingFullFunctionHelp::arguments, &BindingFullFunctionHelp::returns,
              &BindingFullFunctionHelp::description, &BindingFullFunctionHelp::help,
              &BindingFullFunctionHelp::threadSafe, &BindingFullFunctionHelp::async,
              &BindingFullFunctionHelp::tags>(kRequired);
}

void RegisterTypeHelp(TypeRegistry& registry) {
  Builtin<DefineStruct<BindingFullEnumValueHelp>>(registry, "BindingFullEnumValueHelp", kHelpTag,
                                                  "Describes an enumerator.")
      .Fields<&BindingFullEnumValueHelp::name, &BindingFullEnumValueHelp::description,
              &BindingFullEnumValueHelp::value>(kRequired);
  Builtin<DefineStruct<BindingFullFieldHelp>>(registry, "BindingFullFieldHelp", kHelpTag,
                                              "Describes a member of a struct.")
      .Fields<&BindingFullFieldHelp::name, &BindingFullFieldHelp::description,
              &BindingFullFieldHelp::offset, &BindingFullFieldHelp::type,
              &BindingFullFieldHelp::optional>(kRequired);
  Builtin<DefineStruct<BindingFullTypeHelp>>(registry, "BindingFullTypeHelp", kHelpTag,
                                             "Describes a struct or enum type.")
      .Fields<&BindingFullTypeHelp::name, &BindingFullTypeHelp::nameSpace,
              &BindingFullTypeHelp::size, &BindingFullTypeHelp::description,
              &BindingFullTypeHelp::tags, &BindingFullTypeHelp::fields,
              &BindingFullTypeHelp::values>(kRequired);
}

void RegisterApiHelp(TypeRegistry& registry) {
  Builtin<DefineStruct<BindingFullEventHelp>>(registry, "BindingFullEventHelp", kHelpTag,
                                              "Describes an event.")
      .Fields<&BindingFullEventHelp::name, &BindingFullEventHelp::nameSpace,
              &BindingFullEventHelp::type, &BindingFullEventHelp::description,
              &BindingFullEventHelp::tags>(kRequired);
  Builtin<DefineStruct<BindingFullApiHelp>>(registry, "BindingFullApiHelp", kHelpTag,
                                            "Describes the exposed native API.")
      .Fields<&BindingFullApiHelp::functions, &BindingFullApiHelp::types,
              &BindingFullApiHelp::events>(kRequired);
}

void RegisterAsyncTypes(TypeRegistry& registry) {
  constexpr std::string_view kToken = "Asynchronous operation token";
  constexpr std::string_view kData = "Event data";
  Builtin<DefineEnum<BindingAsyncState>>(registry, "BindingAsyncState", kAsyncTag,
                                         "Possible states of an asynchronous operation.")
      .Enumerator("None", BindingAsyncState::kNone, "Invalid state")
      .Enumerator("Running", BindingAsyncState::kRunning, "The operation is in flight")
      .Enumerator("Cancelling", BindingAsyncState::kCancelling,
                  "A request to cancel the operation has been made")
      .Enumerator("Cancelled", BindingAsyncState::kCancelled, "The operation was cancelled")
      .Enumerator("Succeeded", BindingAsyncState::kSucceeded,
                  "The operation completed successfully")
      .Enumerator("Failed", BindingAsyncState::kFailed, "The operation encountered an error");
  Builtin<DefineStruct<BindingGenericEvent>>(registry, "BindingGenericEvent", kAsyncTag,
                                             "Represents generic data for an event.")
      .Field<&BindingGenericEvent::data>(kOptional, kData);
  Builtin<DefineStruct<BindingCallbackEvent>>(
      registry, "BindingCallbackEvent", kAsyncTag,
      "Represents the parameters of a call to a provided callback.")
      .Field<&BindingCallbackEvent::id>(kRequired, "ID of the callback being invoked")
      .Field<&BindingCallbackEvent::parameters>(kOptional, "Callback parameters");
  Builtin<DefineStruct<BindingGenericAsyncEvent>>(
      registry, "BindingGenericAsyncEvent", kAsyncTag,
      "Represents generic data for an asynchronous event.")
      .Field<&BindingGenericAsyncEvent::asyncToken>(kRequired, kToken)
      .Field<&BindingGenericAsyncEvent::data>(kOptional, kData);
  Builtin<DefineStruct<BindingAsyncFailureEvent>>(registry, "BindingAsyncFailureEvent", kAsyncTag,
                                                  "Represents a failed asynchronous operation.")
      .Field<&BindingAsyncFailureEvent::error>(kRequired, "Error message");
  Builtin<DefineStruct<BindingAsyncCancelEvent>>(registry, "BindingAsyncCancelEvent", kAsyncTag,
                                                 "Represents a cancelled asynchronous operation.")
      .Field<&BindingAsyncCancelEvent::asyncToken>(kRequired, kToken);
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
