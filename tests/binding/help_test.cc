// One made-up API, described in both forms to the letter.
#include "binding/help_builder.h"

#include <gtest/gtest.h>

#include "binding/epytext_writer.h"
#include "binding/json_adapter.h"
#include "binding/type_registry.h"

namespace Kest {
namespace {

// A harbour with a crane. The records outlive the description of them.
class Harbour {
 public:
  Harbour() {
    crate_.name = "Crate";
    crate_.nameSpace = "Harbour";
    crate_.size = 24;
    crate_.description = "- holds {goods}";
    crate_.tags = {"cargo", "wood"};
    crate_.fields = {Field("label", "", 0, {TypeId::kString}, false),
                     Field("seal", "X{1}-", 16, {TypeId::kEnum, TypeId::kNone, &seal_}, true)};
    seal_.kind = TypeKind::kEnumeration;
    seal_.name = "Seal";
    seal_.size = 4;
    seal_.enumerators = {{"Broken", "-1 {", -1}, {"Whole", "", 0}};
    lift_.name = "Lift";
    lift_.nameSpace = "crane";
    lift_.description = "Lifts crates";
    lift_.help = "Slowly.";
    lift_.arguments = {{"crates", "What", {TypeId::kVector, TypeId::kStruct, &crate_}, false},
                       {"chain", "-", {TypeId::kBlob}, true},
                       {"marks", "", {TypeId::kMap, TypeId::kEnum, &seal_}, true}};
    lift_.returns = {TypeId::kVector, TypeId::kBlob};
    lift_.threadSafe = true;
    lift_.async = {TypeId::kStruct, TypeId::kNone, &crate_};
    lift_.tags = {"heavy"};
    rest_.name = "Rest";
    landed_ = {"OnLanded", "crane", "A crate {is} down.", {TypeId::kObject}, {"cargo"}};
    quiet_.name = "OnQuiet";
  }

  ApiRecords Records() const { return {{&lift_, &rest_}, {&seal_, &crate_}, {&landed_, &quiet_}}; }

 private:
  static FieldRecord Field(const char* name, const char* description, size_t offset,
                           TypeIdentifier type, bool optional) {
    return {name, description, offset, 0, type, {}, optional, nullptr};
  }

  TypeRecord seal_, crate_;
  FunctionRecord lift_, rest_;
  EventRecord landed_, quiet_;
};

constexpr std::string_view kEpytext = R"(function crane.Lift
Lifts crates
@param crates: What
@type crates: list[L{Crate}]
@param chain: (optional) E{-}
@type chain: bytearray
@param marks: (optional) 
@type marks: dict[L{Seal}]
@rtype: list[bytearray]
@threadsafe: true
@async: L{Crate}
@tags: heavy

function Rest

enum Seal
@cvar Broken: (-1) E{-}1 E{lb}
@cvar Whole: (0) 
@size: 4

struct Crate
E{-} holds E{lb}goodsE{rb}
@ivar label: 
@type label: string
@ivar seal: XE{lb}1E{rb}-
@type seal: L{Seal}
@size: 24
@tags: cargo, wood

event OnLanded: object
A crate E{lb}isE{rb} down.
@tags: cargo

event OnQuiet
)";

constexpr std::string_view kFull = R"({"functions":[
{"name":"Lift","nameSpace":"crane","arguments":[
{"name":"crates","description":"What","type":{"type":"vector","elementType":"Crate"},"optional":false},
{"name":"chain","description":"-","type":{"type":"blob","elementType":""},"optional":true},
{"name":"marks","description":"","type":{"type":"map","elementType":"Seal"},"optional":true}],
"returns":{"type":"vector","elementType":"blob"},"description":"Lifts crates","help":"Slowly.",
"threadSafe":true,"async":"Crate","tags":["heavy"]},
{"name":"Rest","nameSpace":"","arguments":[],"returns":{"type":"","elementType":""},
"description":"","help":"","threadSafe":false,"async":"","tags":[]}],
"types":[
{"name":"Seal","nameSpace":"","size":4,"description":"","tags":[],"fields":[],"values":[
{"name":"Broken","description":"-1 {","value":-1},{"name":"Whole","description":"","value":0}]},
{"name":"Crate","nameSpace":"Harbour","size":24,"description":"- holds {goods}",
"tags":["cargo","wood"],"fields":[
{"name":"label","description":"","offset":0,"type":{"type":"string","elementType":""},"optional":false},
{"name":"seal","description":"X{1}-","offset":16,"type":{"type":"Seal","elementType":""},"optional":true}],
"values":[]}],
"events":[
{"name":"OnLanded","nameSpace":"crane","type":{"type":"object","elementType":""},
"description":"A crate {is} down.","tags":["cargo"]},
{"name":"OnQuiet","nameSpace":"","type":{"type":"","elementType":""},"description":"","tags":[]}]}
)";

std::string WithLineEnds(std::string_view text, std::string_view lineEnd) {
  std::string changed;
  for (const char c : text) {
    if (c == '\n') {
      changed += lineEnd;
    } else {
      changed += c;
    }
  }
  return changed;
}

TEST(Help, DescribesAnApiToTheLetter) {
  const Harbour harbour;
  EXPECT_EQ(WriteEpytext(harbour.Records()), WithLineEnds(kEpytext, "\r\n"));

  TypeRegistry registry;
  RegisterHelpTypes(registry);
  ConversionContext context(registry);
  std::string json;
  WriteJsonValue(context, BuildFullHelp(harbour.Records()), &json);
  EXPECT_EQ(json, WithLineEnds(kFull, ""));
}

// The built-in types, written down a second time: [x] is a list of x.
constexpr std::string_view kBuiltinTypes =
    R"(BindingHelpFormat "Help format for binding functions and types." help
  Full=1 "Native help format"
  Epytext=2 "Python epytext format"
BindingFullTypeIdentifier "Describes the type of a value." help type:string elementType:string
BindingFullArgumentHelp "Describes a function parameter." help name:string description:string type:BindingFullTypeIdentifier optional:bool
BindingFullFunctionHelp "Describes a function." help name:string nameSpace:string arguments:[BindingFullArgumentHelp] returns:BindingFullTypeIdentifier description:string help:string threadSafe:bool async:string tags:[string]
BindingFullEnumValueHelp "Describes an enumerator." help name:string description:string value:int32
BindingFullFieldHelp "Describes a member of a struct." help name:string description:string offset:uint32 type:BindingFullTypeIdentifier optional:bool
BindingFullTypeHelp "Describes a struct or enum type." help name:string nameSpace:string size:uint32 description:string tags:[string] fields:[BindingFullFieldHelp] values:[BindingFullEnumValueHelp]
BindingFullEventHelp "Describes an event." help name:string nameSpace:string type:BindingFullTypeIdentifier description:string tags:[string]
BindingFullApiHelp "Describes the exposed native API." help functions:[BindingFullFunctionHelp] types:[BindingFullTypeHelp] events:[BindingFullEventHelp]
BindingAsyncState "Possible states of an asynchronous operation." async
  None=0 "Invalid state"
  Running=1 "The operation is in flight"
  Cancelling=2 "A request to cancel the operation has been made"
  Cancelled=3 "The operation was cancelled"
  Succeeded=4 "The operation completed successfully"
  Failed=5 "The operation encountered an error"
BindingGenericEvent "Represents generic data for an event." async data:object "Event data"
BindingCallbackEvent "Represents the parameters of a call to a provided callback." async id:uint32 "ID of the callback being invoked" parameters:object "Callback parameters"
BindingGenericAsyncEvent "Represents generic data for an asynchronous event." async asyncToken:uint32 "Asynchronous operation token" data:object "Event data"
BindingAsyncFailureEvent "Represents a failed asynchronous operation." async error:string "Error message"
BindingAsyncCancelEvent "Represents a cancelled asynchronous operation." async asyncToken:uint32 "Asynchronous operation token"
)";

std::string Quoted(const std::string& text) {
  return text.empty() ? "" : " \"" + text + "\"";
}

TEST(Help, RegistersItsTypesAndItsEventOnce) {
  TypeRegistry registry;
  RegisterHelpTypes(registry);
  RegisterHelpTypes(registry);
  const BindingFullApiHelp help = BuildFullHelp({{}, registry.Types(), registry.Events()});
  std::string types;
  for (const BindingFullTypeHelp& type : help.types) {
    ASSERT_EQ(type.tags.size(), 2u) << type.name;
    EXPECT_EQ(type.tags[0], "$builtin") << type.name;
    types += type.name + Quoted(type.description) + " " + type.tags[1];
    for (const auto& [name, description, offset, value, optional] : type.fields) {
      const bool isList = value.type == "vector";
      types += " " + name + ":" + (isList ? "[" + value.elementType + "]" : value.type);
      types += Quoted(description);
    }
    for (const auto& [name, description, value] : type.values) {
      types += "\n  " + name + "=" + std::to_string(value) + Quoted(description);
    }
    types += "\n";
  }
  EXPECT_EQ(types, kBuiltinTypes);
  EXPECT_EQ(WriteEpytext({{}, {}, registry.Events()}),
            "event OnCallback: L{BindingCallbackEvent}\r\nFired when a callback is invoked.\r\n");
  EXPECT_EQ(help.events[0].nameSpace, "$builtin");
}

}  // namespace
}  // namespace Kest
