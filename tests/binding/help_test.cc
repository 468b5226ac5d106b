// One made-up API, described in both forms to the letter.
#include "binding/help/help_builder.h"

#include <gtest/gtest.h>

#include <sstream>

#include "binding/help/epytext_writer.h"
#include "binding/json/json_adapter.h"
#include "binding/types/type_registry.h"
#include "tests/support/golden.h"

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
    return {name, description, offset, nullptr, type, {}, optional, nullptr};
  }

  TypeRecord seal_, crate_;
  FunctionRecord lift_, rest_;
  EventRecord landed_, quiet_;
};

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

TEST(Help, DescribesAnApiToTheLetter) {
  const Harbour harbour;
  const std::string epytext = WriteEpytext(harbour.Records());
  const std::string lines = Replaced(epytext, "\r\n", "\n");
  EXPECT_TRUE(Testing::GoldenText("tests/binding/help_epytext.txt", lines));
  EXPECT_EQ(Replaced(lines, "\n", "\r\n"), epytext);

  TypeRegistry registry;
  RegisterHelpTypes(registry);
  ConversionContext context(registry);
  std::string json;
  WriteJsonValue(context, BuildFullHelp(harbour.Records()), &json);
  EXPECT_TRUE(Testing::GoldenText("tests/binding/help_full.txt",
                                  Replaced(json, "{\"name\"", "\n{\"name\"") + "\n"));
}

TEST(Help, RegistersItsTypesAndItsEventOnce) {
  TypeRegistry registry;
  RegisterHelpTypes(registry);
  RegisterHelpTypes(registry);
  std::istringstream epytext(WriteEpytext({{}, registry.Types(), registry.Events()}));
  std::string lines;  // but for the sizes, which depend on the width of an address
  for (std::string line; std::getline(epytext, line, '\r'); epytext.ignore()) {
    if (!line.starts_with("@size")) lines += line + "\n";
  }
  EXPECT_TRUE(Testing::GoldenText("tests/binding/help_builtins.txt", lines));
  EXPECT_EQ(registry.Events().front()->nameSpace, "$builtin");
}

}  // namespace
}  // namespace Kest
