#include "binding/yaml/yaml_adapter.h"
#include "tests/binding/tree_text.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

struct Case {
  const char* why;
  std::string yaml;
  std::string outcome;  // the tree or the failure
};

template <size_t count>
void ExpectOutcomes(const Case (&cases)[count]) {
  for (const Case& c : cases) {
    ConversionContext context(Registry());
    const BindingProperty tree = ReadYaml(context, c.yaml);
    EXPECT_EQ(Shown(context, tree), c.outcome) << c.why << '\n' << c.yaml;
  }
}

std::string Repeated(std::string_view part, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += part;
  return text;
}

TEST(ReadYaml, ScalarsAreKnownByTheirTextOrTheirTag) {
  ExpectOutcomes({
      {"words", "[true, True, TRUE, false, False, FALSE]", "[true,true,true,false,false,false]"},
      {"null words", "[null, Null, NULL, ~]", "[~,~,~,~]"},
      {"nothing", "- \n- a\n-", R"([~,"a",~])"},
      {"no words", "[yes, tRUE, nULL, truex]", R"(["yes","tRUE","nULL","truex"])"},
      {"quoted", "['true', \"null\", '', '5']", R"(["true","null","","5"])"},
      {"blocks are texts", "- |\n 12\n- >-\n true\n", R"(["12\n","true"])"},
      {"whole", "[5, +5, -5, -0, 007]", "[u5,u5,s-5,s0,u7]"},
      {"as JSON has them", "[1.5, -0.5, 1e3, 2E-2, 0e0]", "[f1.5,f-0.5,f1000.0,f0.02,f0.0]"},
      {"as JSON has not", "[1., .5, +1.5, 01.5, 1e, 1e+, 1.5x, 1.e5, 0x1F, .inf, '-']",
       R"(["1.",".5","+1.5","01.5","1e","1e+","1.5x","1.e5","0x1F",".inf","-"])"},
      {"too large", "a: 1e999", "Value 1e999 for 'yaml' of type double is out of range"},
      {"integers", "[!!int 5, !!int -5, !!int '7', !!int 0x1F, !!int 017]", "[u5,s-5,u7,u31,u15]"},
      {"too small an integer", "!!int -9223372036854775809",
       "Value -9223372036854775809 for 'yaml' of type int64_t is out of range"},
      {"floats", "[!!float 5, !!float .5]", "[f5.0,f0.5]"},
      {"bools", "[!!bool TRUE, !!bool False, !!bool 1, !!bool '0']", "[true,false,true,false]"},
      {"no bool", "!!bool yes",
       "Value yes for 'yaml' of type bool is in an incorrect format. Options are \"true\", "
       "\"false\", \"1\", \"0\"."},
      {"other tag", "!!binary aGk=", "Unsupported YAML tag 'tag:yaml.org,2002:binary'."},
      {"lone mark", "! 12", "Unsupported YAML tag '!'."},
      {"tag by a directive", "%TAG ! tag:yaml.org,2002:\n---\n!int 5", "u5"},
      {"tags of containers mean nothing", "!relic {a: !!map [1]}", "{a:[u1]}"},
  });
}

TEST(ReadYaml, MembersAreNamedByStrings) {
  const std::string invalid =
      "Invalid mapping key. Only string scalar keys are allowed. At line: 0 col: ";
  ExpectOutcomes({
      {"plain, quoted, tagged", "a b: 1\n'true': 2\n!!str null: 3\n", "{a b:u1,true:u2,null:u3}"},
      {"ids", "17: a\n-1.5: b", R"({17:"a",-1.5:"b"})"},
      {"repeated: last value, first place", "a: 1\nb: 2\na: 3", "{a:u3,b:u2}"},
      {"no merging", "x: &x {b: 1}\n<<: *x\n", "{x:{b:u1},<<:{b:u1}}"},
      {"bool", "true: 1", invalid + "0"},
      {"null", "~: 1", invalid + "0"},
      {"nothing", "? \n: 1", invalid + "1"},
      {"other tag", "!!int 1: 1", invalid + "0"},
      {"lone mark", "{b: 1, ! a: 1}", invalid + "7"},
      {"alias", "{b: &x a, *x : 1}", invalid + "10"},
      {"sequence", "{b: 1, [a]: 2}", "Unexpected start of sequence. At line: 0 col: 7"},
      {"mapping", "? {a: 1}\n: b", "Unexpected start of mapping. At line: 0 col: 2"},
  });
}

TEST(ReadYaml, AliasesAreCopiesOfWhatTheirAnchorsName) {
  ExpectOutcomes({
      {"scalars", "[&x 1.5, *x, &y , *y, &z ab, *z]", R"([f1.5,f1.5,~,~,"ab","ab"])"},
      {"containers", "a: &x {b: &y [1, {c: d}]}\ne: *x\nf: *y",
       R"({a:{b:[u1,{c:"d"}]},e:{b:[u1,{c:"d"}]},f:[u1,{c:"d"}]})"},
      {"empty ones", "[&x [], &y {}, *x, *y]", "[[],{},[],{}]"},
      {"names", "&x a: *x\n&y 1: [*y]", R"({a:"a",1:["1"]})"},
      {"unknown", "- a\n- *x", "Undefined alias encountered: \"x\". At line: 1 col: 2"},
      {"inside its own node", "&x\n- {a: *x}",
       "Cannot deserialize cyclic aliases. Alias \"x\". At line: 1 col: 6"},
      {"second time", "- &x [1]\n- \xc3\xa9: &x 2\n",
       "Duplicate occurrence of anchor \"x\". At line: 1 col: 5"},
  });
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

TEST(ReadYaml, StreamsHoldOneDocumentAndFailuresTheirPlace) {
  ExpectOutcomes({
      {"nothing", "", "~"},
      {"comments", "\n# only this\n", "~"},
      {"empty document", "---", "~"},
      {"byte-order mark", "\xef\xbb\xbf---\na: 1\n...\n", "{a:u1}"},
      {"two", "1\n---\n", "Multi-document YAML is not supported."},
      {"grammar", "a: 1\n\xc3\xa9: b: c",
       "YAML parser error: mapping values are not allowed in this context. At line: 1 col: 4"},
      {"stray byte: found before lines are", "a: 1\nb: \xff",
       "YAML parser error: invalid leading UTF-8 octet. At line: 0 col: 0"},
      {"NUL", "a\0"s, "YAML parser error: control characters are not allowed. At line: 0 col: 0"},
      {"surrogate pair", "\"\\ud83d\\ude00\"",
       "YAML parser error: found invalid Unicode character escape code. At line: 0 col: 3"},
  });
}

// What libyaml 0.2.5 makes of texts that other parsers read differently, or refuse. Callers may
// have come to rely on it: a new version must not change it unnoticed.
TEST(ReadYaml, OddTextsKeepTheirMeaning) {
  ExpectOutcomes({
      {"question mark before a name", "?foo: 1", "{?foo:u1}"},
      {"in a flow", "[?foo]", "[{foo:~}]"},
      {"anchor with a colon", "&an:chor x", "\":chor x\""},
      {"block without a last line end", "a: |\n  x", R"({a:"x"})"},
      {"block of nothing", "- |\n-", R"(["",~])"},
      {"second byte-order mark", "a\n\xef\xbb\xbf%b", "\"a \xef\xbb\xbf%b\""},
  });
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
  ExpectOutcomes({
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
  });
}

}  // namespace
}  // namespace Kest
