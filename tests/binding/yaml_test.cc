#include "binding/yaml/yaml_adapter.h"
#include "tests/binding/tree_text.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

// The tree, or why there is none.
std::string OutcomeOf(const std::string& yaml) {
  ConversionContext context(Registry());
  const BindingProperty tree = ReadYaml(context, yaml);
  return Shown(context, tree);
}

std::string Repeated(std::string_view part, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += part;
  return text;
}

TEST(ReadYaml, EachTextHasItsOutcome) {
  EXPECT_TRUE(Testing::GoldenCases("tests/binding/yaml_cases.txt", OutcomeOf));
}

TEST(ReadYaml, NoTextIsEmpty) {
  ConversionContext context(Registry());
  EXPECT_EQ(Shown(context, ReadYaml(context, std::string_view())), "~");
}

TEST(ReadYaml, AliasesAreCopies) {
  std::string yaml = "[&x {a: [1]";  // large enough for an index of its names
  for (char name = 'b'; name <= 'z'; ++name) yaml += ", "s + name + ": 0";
  ConversionContext context(Registry());
  BindingProperty tree = ReadYaml(context, yaml + "}, *x]");
  EXPECT_TRUE(tree.Element(0) == tree.Element(1));
  tree.GetOrAddElement(0).GetOrAddMember("a").Append();
  tree.GetOrAddElement(1).GetOrAddMember("z").SetBool(true);
  EXPECT_EQ(tree.Element(1).FindMember("a")->Size(), 1u);
  EXPECT_TRUE(*tree.Element(0).FindMember("z") == Unsigned(0));
}

TEST(ReadYaml, BoundsAreKept) {
  const std::string outer = Repeated("[", kMaxYamlDepth - 2);
  const std::string end = Repeated("]", kMaxYamlDepth - 2);
  const std::string longTags = "%TAG ! " + std::string(kMaxYamlTagBytes / 32, 't') + "\n--- [";
  const std::string sixty = Repeated("#\xe2\x80\xa9%\r%\n\xc2\x85%", 20);
  std::string bomb = "- &a0 [1]\n";
  for (char i = '1'; i <= '9'; ++i) {
    const std::string last = "*a"s + static_cast<char>(i - 1) + ",";
    bomb += "- &a"s + i + " [" + Repeated(last, 9) + "]\n";
  }
  const struct {
    const char* why;
    std::string yaml, outcome;
  } cases[] = {
      {"longest", std::string(kMaxYamlBytes, '#'), "~"},
      {"too long", std::string(kMaxYamlBytes + 1, '#'), "YAML text is too large."},
      {"deepest", "[[" + outer + end + "]]", "[[" + outer + end + "]]"},
      {"too deep", "a: [[" + outer, "YAML nesting is too deep. At line: 0 col: 130"},
      {"deepest by an alias", "- &x [1]\n- " + outer + "*x" + end,
       "[[u1]," + outer + "[u1]" + end + "]"},
      {"too deep by an alias", "- &x [[1]]\n- " + outer + "*x" + end,
       "YAML nesting is too deep. At line: 1 col: 128"},
      {"64 directives", sixty + "\n%\n%\n%\n%a",
       "YAML parser error: could not find expected directive name. At line: 1 col: 1"},
      {"65 directives", sixty + "\n%\n%\n%\n%\n \n%",
       "Too many YAML directives. At line: 86 col: 0"},
      {"long tags", longTags + Repeated("!a [],", 31) + "]", "[[]" + Repeated(",[]", 30) + "]"},
      {"too many of them", longTags + Repeated("!a {},", 32) + "]", "YAML text is too large."},
      {"aliases of aliases", bomb, "Too many values. At line: 7 col: 15"},
  };
  for (const auto& c : cases) EXPECT_EQ(OutcomeOf(c.yaml), c.outcome) << c.why;
}

}  // namespace
}  // namespace Kest
