// One made-up API, described in both forms to the letter.
#include "binding/help/help_builder.h"

#include <gtest/gtest.h>

#include <span>

#include "binding/help/epytext_writer.h"
#include "binding/json/json_adapter.h"
#include "binding/types/type_registry.h"

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
    lift_.description = "Lifts\r\n\ncrates";
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
"returns":{"type":"vector","elementType":"blob"},"description":"Lifts\r\n\ncrates","help":"Slowly.",
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
  for (const char c : text) changed += c == '\n' ? lineEnd : std::string_view(&c, 1);
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

// Names, group and numbers that other plugins rely on and no description above shows.
constexpr std::string_view kAsyncTypes =
    R"(BindingAsyncState async None=0 Running=1 Cancelling=2 Cancelled=3 Succeeded=4 Failed=5
BindingGenericEvent async data:object
BindingCallbackEvent async id:uint32 parameters:object
BindingGenericAsyncEvent async asyncToken:uint32 data:object
BindingAsyncFailureEvent async error:string
BindingAsyncCancelEvent async asyncToken:uint32
)";

TEST(Help, RegistersItsTypesAndItsEventOnce) {
  TypeRegistry registry;
  RegisterHelpTypes(registry);
  RegisterHelpTypes(registry);
  const BindingFullApiHelp help = BuildFullHelp({{}, registry.Types(), registry.Events()});
  ASSERT_EQ(help.types.size(), 15u);
  std::string types;
  for (const BindingFullTypeHelp& type : std::span(help.types).last(6)) {
    types += type.name + " " + type.tags.at(1);
    for (const auto& field : type.fields) types += " " + field.name + ":" + field.type.type;
    for (const auto& value : type.values)
      types += " " + value.name + "=" + std::to_string(value.value);
    types += "\n";
  }
  EXPECT_EQ(types, kAsyncTypes);
  EXPECT_EQ(WriteEpytext({{}, {}, registry.Events()}),
            "event OnCallback: L{BindingCallbackEvent}\r\nFired when a callback is invoked.\r\n");
  EXPECT_EQ(help.events[0].nameSpace, "$builtin");
}

}  // namespace
}  // namespace Kest
