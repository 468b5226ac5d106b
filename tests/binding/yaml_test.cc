#include <chrono>

#include "binding/yaml_adapter.h"
#include "tests/binding/tree_text.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

// What reading makes of a text, the tree or the failure.
std::string Outcome(std::string_view yaml) {
  ConversionContext context(Registry());
  const BindingProperty tree = ReadYaml(context, yaml);
  return Shown(context, tree);
}

std::string Repeated(std::string_view part, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += part;
  return text;
}

struct Case {
  const char* why;
  std::string yaml;
  std::string outcome;
};

template <size_t count>
void ExpectOutcomes(const Case (&cases)[count]) {
  for (const Case& c : cases) EXPECT_EQ(Outcome(c.yaml), c.outcome) << c.why << '\n' << c.yaml;
}

TEST(ReadYaml, PlainScalarsAreKnownByTheirText) {
  ExpectOutcomes({
      {"words", "[true, True, TRUE, false, False, FALSE]", "[true,true,true,false,false,false]"},
      {"null words", "[null, Null, NULL, ~]", "[~,~,~,~]"},
      {"nothing", "- \n- a\n-", "[~,\"a\",~]"},
      {"no words", "[yes, on, tRUE, nULL, truex]", "[\"yes\",\"on\",\"tRUE\",\"nULL\",\"truex\"]"},
      {"quoted words", "['true', \"null\", '', \"~\", '5']",
       "[\"true\",\"null\",\"\",\"~\",\"5\"]"},
      {"blocks are texts", "- |\n 12\n- >-\n true\n", "[\"12\\n\",\"true\"]"},
      {"whole", "[5, +5, -5, -0, 007]", "[u5,u5,s-5,s0,u7]"},
      {"64 bits", "[18446744073709551615, -9223372036854775808, 0000000000000000000000000001]",
       "[u18446744073709551615,s-9223372036854775808,u1]"},
      {"beyond", "[18446744073709551616, -9223372036854775809, +18446744073709551616]",
       "[f18446744073709552000.0,f-9223372036854776000.0,f18446744073709552000.0]"},
      {"as JSON has them", "[1.5, -0.5, 1e3, 2E-2, 0e0]", "[f1.5,f-0.5,f1000.0,f0.02,f0.0]"},
      {"as JSON has not", "[1., .5, +1.5, 01.5, 1e, 1e+, 1.5x, 1.e5]",
       "[\"1.\",\".5\",\"+1.5\",\"01.5\",\"1e\",\"1e+\",\"1.5x\",\"1.e5\"]"},
      {"other notations", "[0x1F, 1_000, .inf, .nan, 2024-02-30, '-', '+']",
       "[\"0x1F\",\"1_000\",\".inf\",\".nan\",\"2024-02-30\",\"-\",\"+\"]"},
      {"too large", "a: 1e999", "Value 1e999 for 'yaml' of type double is out of range"},
  });
}

TEST(ReadYaml, TagsDecideAndOthersAreRefused) {
  ExpectOutcomes({
      {"texts", "[!!str 5, !!str true, !!str , !<tag:yaml.org,2002:str> ~]",
       "[\"5\",\"true\",\"\",\"~\"]"},
      {"integers", "[!!int 5, !!int -5, !!int \"7\", !!int 0x1F, !!int 017]",
       "[u5,s-5,u7,u31,u15]"},
      {"no integer", "!!int 5x", "Value 5x for 'yaml' of type uint64_t is in an incorrect format"},
      {"no negative one", "!!int -x",
       "Value -x for 'yaml' of type int64_t is in an incorrect format"},
      {"too large", "!!int 18446744073709551616",
       "Value 18446744073709551616 for 'yaml' of type uint64_t is out of range"},
      {"too small", "!!int -9223372036854775809",
       "Value -9223372036854775809 for 'yaml' of type int64_t is out of range"},
      {"floats", "[!!float 5, !!float .5]", "[f5.0,f0.5]"},
      {"no float", "!!float ''", "Value  for 'yaml' of type double is in an incorrect format"},
      {"bools", "[!!bool TRUE, !!bool False, !!bool 1, !!bool '0']", "[true,false,true,false]"},
      {"no bool", "!!bool yes",
       "Value yes for 'yaml' of type bool is in an incorrect format. Options are \"true\", "
       "\"false\", \"1\", \"0\"."},
      {"bytes", "!!binary aGk=", "Unsupported YAML tag 'tag:yaml.org,2002:binary'."},
      {"even null", "!!null ~", "Unsupported YAML tag 'tag:yaml.org,2002:null'."},
      {"lone mark", "! 12", "Unsupported YAML tag '!'."},
      {"of one's own", "- !relic x", "Unsupported YAML tag '!relic'."},
      {"by a directive", "%TAG ! tag:yaml.org,2002:\n---\n!int 5", "u5"},
      {"of containers mean nothing", "!relic {a: !!map [1]}", "{a:[u1]}"},
  });
}

TEST(ReadYaml, MembersAreNamedByStrings) {
  const char* const kInvalid =
      "Invalid mapping key. Only string scalar keys are allowed. At line: 0 col: 0";
  ExpectOutcomes({
      {"plain, quoted, tagged", "a b: 1\n'true': 2\n!!str null: 3\n", "{a b:u1,true:u2,null:u3}"},
      {"ids", "17: a\n1.5: b\n-3: c", "{17:\"a\",1.5:\"b\",-3:\"c\"}"},
      {"repeated: last value, first place", "a: 1\nb: 2\na: 3", "{a:u3,b:u2}"},
      {"no merging", "x: &x {b: 1}\n<<: *x\n", "{x:{b:u1},<<:{b:u1}}"},
      {"bool", "true: 1", kInvalid},
      {"null", "~: 1", kInvalid},
      {"nothing", "? \n: 1",
       "Invalid mapping key. Only string scalar keys are allowed. At line: 0 col: 1"},
      {"number tag", "!!int 1: 1", kInvalid},
      {"lone mark", "! a: 1", kInvalid},
      {"alias", "- &x a\n- *x : 1",
       "Invalid mapping key. Only string scalar keys are allowed. At line: 1 col: 2"},
      {"sequence", "{b: 1, [a]: 2}", "Unexpected start of sequence. At line: 0 col: 7"},
      {"mapping", "? {a: 1}\n: b", "Unexpected start of mapping. At line: 0 col: 2"},
  });
}

TEST(ReadYaml, AliasesAreCopiesOfWhatTheirAnchorsName) {
  ExpectOutcomes({
      {"scalar", "[&x 1.5, *x, &y , *y, &z ab, *z]", "[f1.5,f1.5,~,~,\"ab\",\"ab\"]"},
      {"containers", "a: &x {b: &y [1, {c: d}]}\ne: *x\nf: *y",
       "{a:{b:[u1,{c:\"d\"}]},e:{b:[u1,{c:\"d\"}]},f:[u1,{c:\"d\"}]}"},
      {"empty ones", "[&x [], &y {}, *x, *y]", "[[],{},[],{}]"},
      {"names", "&x a: *x\nb: [*x]", "{a:\"a\",b:[\"a\"]}"},
      {"number as name", "&x 1: *x", "{1:\"1\"}"},
      {"unknown", "- a\n- *x", "Undefined alias encountered: \"x\". At line: 1 col: 2"},
      {"later", "[*x, &x 1]", "Undefined alias encountered: \"x\". At line: 0 col: 1"},
      {"inside its own node", "&x\n- {a: *x}",
       "Cannot deserialize cyclic aliases. Alias \"x\". At line: 1 col: 6"},
      {"second time", "- &x [1]\n- \xc3\xa9: &x 2\n",
       "Duplicate occurrence of anchor \"x\". At line: 1 col: 5"},
  });
  ConversionContext context(Registry());
  BindingProperty tree = ReadYaml(context, "[&x {a: [1]}, *x]");
  tree.TakeElement(0).TakeMember("a").Append().SetBool(true);
  tree.TakeElement(1).TakeMember("b").SetBool(false);
  EXPECT_EQ(Shown(context, tree), "[{a:[u1,true]},{a:[u1],b:false}]");
}

TEST(ReadYaml, AliasesOfStructuresWithManyMembersFindEachName) {
  std::string yaml = "a: &x\n";
  for (int i = 0; i < 100; ++i) yaml += "  k" + std::to_string(i) + ": " + std::to_string(i) + "\n";
  ConversionContext context(Registry());
  const BindingProperty tree = ReadYaml(context, yaml + "b: *x");
  ASSERT_EQ(context.ErrorText(), "");
  EXPECT_TRUE(*tree.FindMember("a") == *tree.FindMember("b"));
  EXPECT_EQ(tree.FindMember("b")->FindMember("k77")->AsUnsigned(), 77u);
}

TEST(ReadYaml, StreamsHoldOneDocumentAndFailuresTheirPlace) {
  const char* const kMulti = "Multi-document YAML is not supported.";
  ExpectOutcomes({
      {"nothing", "", "~"},
      {"blanks and comments", "\n# only this\n", "~"},
      {"empty document", "---", "~"},
      {"byte-order mark", "\xef\xbb\xbf---\na: 1\n...\n", "{a:u1}"},
      {"mark alone", "\xef\xbb\xbf", "~"},
      {"two", "a: 1\n---\nb: 2", kMulti},
      {"second empty", "1\n---\n", kMulti},
      {"end alone", "...",
       "YAML parser error: did not find expected node content. At line: 0 col: 0"},
      {"grammar", "a: 1\n\xc3\xa9: b: c",
       "YAML parser error: mapping values are not allowed in this context. At line: 1 col: 4"},
      {"open at the end", "{a",
       "YAML parser error: did not find expected ',' or '}'. At line: 1 col: 0"},
      {"stray byte", "a: 1\r\n\xc3\xa9\xe2\x80\xa8\xc3\xa9: \xff",
       "YAML parser error: invalid leading UTF-8 octet. At line: 2 col: 3"},
      {"torn character", "a\xc2\x85\xc3",
       "YAML parser error: incomplete UTF-8 octet sequence. At line: 1 col: 0"},
      {"NUL", "a\rb\0"s,
       "YAML parser error: control characters are not allowed. At line: 1 col: 1"},
      {"surrogate pair", "\"\\ud83d\\ude00\"",
       "YAML parser error: found invalid Unicode character escape code. At line: 0 col: 3"},
  });
}

// What libyaml 0.2.5 makes of texts that other parsers read differently, or refuse. Callers may
// have come to rely on it: a new version must not change it unnoticed.
TEST(ReadYaml, OddTextsKeepTheirMeaning) {
  ExpectOutcomes({
      {"question mark in a flow", "{?foo: 1, [?a]: 2}",
       "Unexpected start of sequence. At line: 0 col: 10"},
      {"question mark before a name", "?foo: 1", "{?foo:u1}"},
      {"question mark in a sequence", "[?foo]", "[{foo:~}]"},
      {"anchor with a colon", "&an:chor x", "\":chor x\""},
      {"block without a last line end", "a: |\n  x", "{a:\"x\"}"},
      {"kept line ends at the end", "a: |+\n x\n\n", "{a:\"x\\n\\n\"}"},
      {"block of nothing", "- |\n-", "[\"\",~]"},
      {"later version", "%YAML 1.2\n---\n1", "u1"},
      {"unknown directive", "%FOO bar\n---\n1",
       "YAML parser error: found unknown directive name. At line: 0 col: 4"},
      {"two ends", "a: b\n...\n...", "{a:\"b\"}"},
      {"tab behind a colon", "a:\tb", "{a:\"b\"}"},
      {"tab in front", "\ta: b",
       "YAML parser error: found character that cannot start any token. At line: 0 col: 0"},
      {"pair in a sequence", "[a: 1, b]", "[{a:u1},\"b\"]"},
      {"second mark", "a\n\xef\xbb\xbf%b", "\"a \xef\xbb\xbf%b\""},
  });
}

TEST(ReadYaml, BoundsAreKept) {
  const std::string deep = Repeated("[", kMaxYamlDepth) + Repeated("]", kMaxYamlDepth);
  const std::string outer = Repeated("[", kMaxYamlDepth - 2);
  const std::string end = Repeated("]", kMaxYamlDepth - 2);
  const std::string sixty = Repeated("#\n", 3) + Repeated("#\xe2\x80\xa9%\r%\n\xc2\x85%", 20);
  std::string bomb = "- &a0 [1]\n";
  for (char i = '1'; i <= '9'; ++i) {
    const std::string last = "*a" + std::string(1, static_cast<char>(i - 1));
    bomb += "- &a" + std::string(1, i) + " [" + Repeated(last + ",", 9) + "]\n";
  }
  ExpectOutcomes({
      {"too long", std::string(kMaxYamlBytes + 1, '#'), "YAML text is too large."},
      {"longest", std::string(kMaxYamlBytes, '#'), "~"},
      {"deepest", "!!str\n#" + deep, "\"\""},
      {"too deep", "a: [" + deep, "YAML nesting is too deep. At line: 0 col: 130"},
      {"deepest by an alias", "- &x [1]\n- " + outer + "*x" + end,
       "[[u1]," + outer + "[u1]" + end + "]"},
      {"too deep by an alias", "- &x [[1]]\n- " + outer + "*x" + end,
       "YAML nesting is too deep. At line: 1 col: 128"},
      {"64 directives", sixty + "\n%\n%\n%\n%a",
       "YAML parser error: could not find expected directive name. At line: 4 col: 1"},
      {"65 directives", sixty + "\n%\n%\n%\n%\n \n%",
       "Too many YAML directives. At line: 89 col: 0"},
      {"aliases of aliases", bomb, "Too many values. At line: 7 col: 15"},
  });
}

// A text within the bounds cannot keep its reader busy.
TEST(ReadYaml, HostileTextsEndSoon) {
  std::string levels = "- ";
  for (size_t i = 0; i < 100; ++i) levels += "&a" + std::to_string(i) + " [";
  const std::string texts[] = {
      Repeated("[", kMaxYamlBytes),
      Repeated("{a: ", kMaxYamlBytes / 4),
      Repeated("[", kMaxYamlDepth) + Repeated("1,", kMaxYamlBytes / 2 - kMaxYamlDepth),
      levels + Repeated("1,", 100000) + Repeated("]", 100) + Repeated("\n- *a0", 100),
      "- &a \"" + std::string(kMaxYamlBytes / 2, 'x') + "\"\n" + Repeated("- *a\n", 100000),
      Repeated("%TAG !a! tag:b\n", kMaxYamlBytes / 15),
  };
  for (const std::string& text : texts) {
    const auto start = std::chrono::steady_clock::now();
    ConversionContext context(Registry());
    ReadYaml(context, text);
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_LT(elapsed, std::chrono::seconds(5)) << text.substr(0, 40);
  }
}

}  // namespace
}  // namespace Kest
