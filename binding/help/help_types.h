// The types that describe the API ("Help"), and those of asynchronous operations that every plugin
// shares. Member names and their order are wire format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "binding/tree/binding_property.h"

namespace Kest {

class TypeRegistry;

// The namespace of functions and events that every plugin brings along, and their types' tag.
inline constexpr std::string_view kBuiltinNameSpace = "$builtin";
inline constexpr std::string_view kBuiltinTag = "$builtin";
// A second tag says what a built-in type is for.
inline constexpr std::string_view kHelpTag = "help";
inline constexpr std::string_view kAsyncTag = "async";
inline constexpr std::string_view kPluginTag = "plugin";

// There is no format 0.
enum class BindingHelpFormat : int32_t { kFull = 1, kEpytext = 2 };

// A type by name: "int32", "vector", or the registered name of an enumeration or structure. Both
// texts are empty for no value at all, `elementType` for all but vectors and maps.
struct BindingFullTypeIdentifier {
  std::string type;
  std::string elementType;
};

struct BindingFullArgumentHelp {
  std::string name;
  std::string description;
  BindingFullTypeIdentifier type;
  bool optional = false;
};

struct BindingFullFunctionHelp {
  std::string name;
  std::string nameSpace;
  std::vector<BindingFullArgumentHelp> arguments;
  BindingFullTypeIdentifier returns;
  std::string description;
  std::string help;
  bool threadSafe = false;
  std::string async;  // the type of what is delivered later; empty: nothing is
  std::vector<std::string> tags;
};

struct BindingFullEnumValueHelp {
  std::string name;
  std::string description;
  int32_t value = 0;
};

struct BindingFullFieldHelp {
  std::string name;
  std::string description;
  uint32_t offset = 0;  // in the native structure
  BindingFullTypeIdentifier type;
  bool optional = false;
};

// A structure has fields, an enumeration values.
struct BindingFullTypeHelp {
  std::string name;
  std::string nameSpace;
  uint32_t size = 0;  // of the native type, in bytes
  std::string description;
  std::vector<std::string> tags;
  std::vector<BindingFullFieldHelp> fields;
  std::vector<BindingFullEnumValueHelp> values;
};

struct BindingFullEventHelp {
  std::string name;
  std::string nameSpace;
  BindingFullTypeIdentifier type;  // of the payload
  std::string description;
  std::vector<std::string> tags;
};

struct BindingFullApiHelp {
  std::vector<BindingFullFunctionHelp> functions;
  std::vector<BindingFullTypeHelp> types;
  std::vector<BindingFullEventHelp> events;
};

enum class BindingAsyncState : int32_t {
  kNone = 0,
  kRunning = 1,
  kCancelling = 2,
  kCancelled = 3,
  kSucceeded = 4,
  kFailed = 5,
};

struct BindingGenericEvent {
  BindingProperty data;
};

struct BindingCallbackEvent {
  uint32_t id = 0;
  BindingProperty parameters;
};

struct BindingGenericAsyncEvent {
  uint32_t asyncToken = 0;
  BindingProperty data;
};

struct BindingAsyncFailureEvent {
  std::string error;
};

struct BindingAsyncCancelEvent {
  uint32_t asyncToken = 0;
};

inline constexpr std::string_view kCallbackEvent = "OnCallback";

// Registers the types, then the event "OnCallback", in their fixed order. Repeating it changes
// nothing.
void RegisterHelpTypes(TypeRegistry& registry);

}  // namespace Kest
