#include "tests/api/sample_api.h"

namespace Kest::Sample {
namespace {

TEST(BindQuery, ReachesEveryArgumentOrSaysWhyNot) {
  ExpectAnswers(
      {{"all absent", "", "200 {}"},
       {"scalars", "n=0x1F&flag=0", "200 {\"n\":31}"},
       {"later wins", "n=x&n=2", "200 {\"n\":2}"},
       {"bool without a value", "flag=", "200 {\"flag\":true}"},
       {"object without a value", "o", "200 {\"o\":{}}"},
       {"list without a value", "list", "200 {\"list\":[]}"},
       {"structure without a value", "slot",
        "400 Couldn't assign value to 'slot' of type Slot because the input structure doesn't have "
        "required field 'name'."},
       {"number without a value", "n", "400 Expected value for argument 'n'."},
       {"empty name", "=1", "400 Unknown argument '' for 'Query'."},
       {"first failure wins", "x.y=1&n", "400 Unknown argument 'x' for 'Query'."},
       {"conversion names the argument", "n=12abc",
        "400 Value 12abc for 'n' of type int32 is in an incorrect format"},
       {"JSON for a structure", "slot={\"name\":\"a\"}", "200 {\"list\":[\"a*7\"]}"},
       {"JSON behind a blank", "o=+[1,{}]", "200 {\"o\":[1,{}]}"},
       {"other text for an object", "o=1", "200 {\"o\":\"1\"}"},
       {"broken JSON", "o=[",
        "400 Couldn't deserialize JSON value for parameter 'o' of 'Query': Invalid value."},
       {"MessagePack for a list", "list=%91%81%A4name%A1z", "200 {\"list\":[\"z*7\"]}"},
       {"bytes behind it", "o=%81%A1z%C3%C3",
        "400 Couldn't deserialize MessagePack value for parameter 'o' of 'Query': Extra MessgePack "
        "data found in body"},
       {"YAML", "o=---+{a:+1}", "200 {\"o\":{\"a\":1}}"},
       {"members", "o.a.b=1&o.a.c=[2]", "200 {\"o\":{\"a\":{\"b\":\"1\",\"c\":\"[2]\"}}}"},
       {"empty member name", "o..a=", "200 {\"o\":{\"\":{\"a\":\"\"}}}"},
       {"a point alone is no path", "n.=5", "200 {\"n\":5}"},
       {"without a value empties", "o.a=1&o", "200 {\"o\":{}}"},
       {"index extends", "o.2.a=1", "200 {\"o\":[null,null,{\"a\":\"1\"}]}"},
       {"index in a typed list", "list.0.name=a&list.0.count=2", "200 {\"list\":[\"a*2\"]}"},
       {"bases", "o.010=8&o.0x1=1&o.0=0",
        "200 {\"o\":[\"0\",\"1\",null,null,null,null,null,null,\"8\"]}"},
       {"index replaces a structure", "o.a=1&o.1=b", "200 {\"o\":[null,\"b\"]}"},
       {"rest of a number", "o.1x=1", "400 Index 1x is in an incorrect format"},
       {"no octal digit", "o.08=1", "400 Index 08 is in an incorrect format"},
       {"no hexadecimal digit", "o.0x=1", "400 Index 0x is in an incorrect format"},
       {"above 32 bits", "o.4294967296=1", "400 Index 4294967296 is out of range"},
       {"above 64 bits", "o.0xFFFFFFFFFFFFFFFFF=1",
        "400 Index 0xFFFFFFFFFFFFFFFFF is out of range"},
       {"and a rest", "o.9999999999x=1", "400 Index 9999999999x is in an incorrect format"}},
      "/query?");
}

TEST(BindQuery, IndexesShareOneBudgetPerRequest) {
  ExpectAnswers({{"all of it", "list.1048575=x", "200 1048576"},
                 {"one too many", "list.1048576=x", "400 Index 1048576 is out of range"},
                 {"existing elements are free", "list.1048575=x&list.1048575=y", "200 1048576"},
                 {"used up", "list.1048575=x&list.0.0=y", "400 Index 0 is out of range"},
                 {"replaced elements count", "list.524288=x&list.a=1&list.524288=x",
                  "400 Index 524288 is out of range"},
                 {"nested ones count", "list.524287=x&list.0.524287=x&list.1.0=x",
                  "400 Index 0 is out of range"}},
                "/size?");
}

TEST(BindPath, DecodesCapturesAndRefusesTheOtherSources) {
  ExpectAnswers({{"decoded once, plus stays", "/path/a%2Fb+c%2525/-1", "200 \"a/b+c%25:-1\""},
                 {"empty capture", "/path//1", "400 Expected value for argument 'id'."},
                 {"empty capture of a bool", "/flag/", "200 true"},
                 {"false", "/flag/0", "200 false"},
                 {"from the query", "/path/a/1?id=b",
                  "400 Argument 'id' for 'Path' was specified in an invalid location."},
                 {"rest", "/rest/a/b", "200 \"a/b/-\""},
                 {"any location, no JSON in a text", "/rest/a?any=[b]", "200 \"a/[b]\""},
                 {"query replaces the path where both may", "/rest/a?name=b", "200 \"b/-\""},
                 {"nameless parameter", "/stray/a", "400 Unknown argument '' for 'Stray'."}});
}

TEST(BindHeaders, AreStrictAndTheLastOfANameCounts) {
  const Api api;
  const auto get = [&api](std::initializer_list<HeaderPair> headers) {
    Request request{"GET", "/header", {}, {}, {}, {headers.begin(), headers.size()}};
    return Summary(api.dispatcher().Handle(request));
  };
  EXPECT_EQ(get({{"name", ""}, {"any", "b"}, {"name", "a"}}), "200 \"a/b\"");
  EXPECT_EQ(get({{"name", "a"}, {"Name", "b"}}), "400 Unknown argument 'Name' for 'Header'.");
  EXPECT_EQ(get({}), "400 A value for 'name' is required.");
  EXPECT_EQ(Summary(api.Get("/header?name=a")),
            "400 Argument 'name' for 'Header' was specified in an invalid location.");
}

TEST(BindBody, IsReadByItsContentType) {
  const char* const kNoList =
      "400 Couldn't assign value to 'items' of type vector because the input not a collection.";
  const char* const kNoDecoder = "400 Unsupported body content type";
  ExpectAnswers(
      {{"JSON", "/body", "200 [\"a\",\"b\"]", "application/json", "[\"a\",\"b\"]"},
       {"other JSON type", "/body?reverse", "200 [\"b\",\"a\"]", "APPLICATION/VND.API+JSON;x",
        "[\"a\",\"b\"]"},
       {"not a list", "/body", kNoList, "application/json", "{}"},
       {"broken", "/body",
        "400 Couldn't deserialize JSON value for parameter 'items' of 'Body': Invalid value.",
        "application/json", "["},
       {"MessagePack", "/body", "200 [\"a\",\"b\"]", "application/x-msgpack-ext",
        "\x92\xA1\x61\xA1\x62"},
       {"cut off", "/body",
        "400 Couldn't deserialize MessagePack value for parameter 'items' of 'Body': Invalid "
        "MessagePack data. String of size 2 at position 1 is truncated.",
        "application/x-msgpack", "\x91\xA2z"},
       {"followed by more", "/body", "400 Extra MessgePack data found in body",
        "application/x-msgpack", "\x91\xA1z\x90"},
       {"YAML", "/body", "200 [\"a\",\"b\"]", "application/x-yaml", "- a\n- b"},
       {"two documents", "/body",
        "400 Couldn't deserialize YAML value for parameter 'items' of 'Body': Multi-document YAML "
        "is not supported.",
        "application/x-yaml", "[]\n---\n[]"},
       {"plain text", "/body", kNoDecoder, "text/plain", "[]"},
       {"no type", "/body", kNoDecoder, "", "[]"},
       {"type of values only", "/body", kNoDecoder, "text/x-yaml", "[]"},
       {"no bytes are no body", "/body", kNoList, "text/plain", ""},
       {"earlier steps win", "/body?x", "400 Unknown argument 'x' for 'Body'.", "text/plain", "[]"},
       {"nobody asks for it", "/flag/1", "200 true", "text/plain", "[]"},
       {"from the query", "/body?items=[]",
        "400 Argument 'items' for 'Body' was specified in an invalid location."}});
}

}  // namespace
}  // namespace Kest::Sample
