#include "binding/binding_property.h"

#include <new>

#include "binding/tree_builder.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

TEST(BindingProperty, TakingTurnsOtherKindsIntoEmptyContainers) {
  BindingProperty value = BindingProperty::FromString("text");
  value.TakeElement(2).SetBool(true);
  EXPECT_EQ(Json(value), "[null,null,true]");
  value.TakeMember("a").TakeElement(0).TakeMember("").SetSigned(-1);
  EXPECT_EQ(Json(value), R"({"a":[{"":-1}]})");
  value.TakeMember("b");
  value.TakeMember("a").SetUnsigned(1);
  EXPECT_EQ(Json(value), R"({"a":1,"b":null})") << "a member keeps its place";
  value.TakeMember("b").Append().SetFloat(2);
  value.TakeMember("b").Append().SetString("x");
  EXPECT_EQ(Json(value), R"({"a":1,"b":[2.0,"x"]})");
}

TEST(BindingProperty, SettingAnEmptyContainerEmptiesAFullOne) {
  BindingProperty value = Tree(R"({"a":{"b":1},"c":[1]})");
  value.TakeMember("a").SetStructure();
  value.TakeMember("c").SetCollection();
  EXPECT_EQ(Json(value), R"({"a":{},"c":[]})");
  value.SetStructure();
  EXPECT_EQ(Json(value), "{}");
}

TEST(BindingProperty, FindingNeverChangesAnything) {
  const BindingProperty value = Tree(R"({"a":[1]})");
  EXPECT_EQ(value.FindElement(0), nullptr);
  EXPECT_EQ(value.FindMember("b"), nullptr);
  EXPECT_EQ(value.FindMember("a")->FindElement(1), nullptr);
  EXPECT_EQ(value.FindMember("a")->FindMember("0"), nullptr);
  EXPECT_EQ(value.FindMember("a")->FindElement(0)->Size(), 0u);
  EXPECT_EQ(Json(value), R"({"a":[1]})");
}

TEST(BindingProperty, AHintOnlySavesTime) {
  const BindingProperty value = Tree(R"({"a":1,"b":2,"c":3})");
  size_t hint = 0;
  for (const char* name : {"c", "a", "b", "b", "x", "c"}) {
    const BindingProperty* found = value.FindMember(name, &hint);
    EXPECT_EQ(found, value.FindMember(name)) << name;
  }
  EXPECT_EQ(hint, 3u);
}

TEST(BindingProperty, ValuesCanBeAssignedIntoTheirOwnTree) {
  BindingProperty value = Tree(R"({"a":{"b":[1,{"c":"text"}]}})");
  value.TakeMember("a").TakeMember("b").TakeElement(0) = value;  // the parent into its child
  EXPECT_EQ(Json(value), R"({"a":{"b":[{"a":{"b":[1,{"c":"text"}]}},{"c":"text"}]}})");
  BindingProperty& list = value.TakeMember("a").TakeMember("b");
  list.Append();
  list.TakeElement(2) = list.TakeElement(1);        // an element beside itself
  value = *value.FindMember("a")->FindMember("b");  // the child over its parent
  EXPECT_EQ(Json(value), R"([{"a":{"b":[1,{"c":"text"}]}},{"c":"text"},{"c":"text"}])");
  value.TakeElement(0).SetString(value.FindElement(1)->FindMember("c")->AsString());
  value.SetString(value.FindElement(0)->AsString());
  EXPECT_EQ(value.AsString(), "text");
}

TEST(BindingProperty, CopiesAreIndependentAndMovesOfRootsKeepTheStorage) {
  BindingProperty first = Tree(R"({"name":"a long text that is stored apart"})");
  const char* chars = first.FindMember("name")->AsString().data();
  BindingProperty copy = first;
  BindingProperty moved = std::move(first);
  EXPECT_EQ(moved.FindMember("name")->AsString().data(), chars);
  EXPECT_TRUE(first.IsEmpty());  // NOLINT: that is the promise
  moved.TakeMember("name").SetBool(false);
  EXPECT_EQ(Json(copy), R"({"name":"a long text that is stored apart"})");
  BindingProperty part = std::move(copy.TakeMember("name"));
  EXPECT_EQ(part.AsString(), copy.FindMember("name")->AsString());
  copy.TakeMember("other") = std::move(moved);
  EXPECT_EQ(Json(copy), R"({"name":"a long text that is stored apart","other":{"name":false}})");
}

TEST(BindingProperty, EqualityLooksAtKindsAndNames) {
  const struct {
    const char* why;
    const char* left;
    const char* right;
    bool equal;
  } cases[] = {
      {"order of members", R"({"a":1,"b":[2]})", R"({"b":[2],"a":1})", true},
      {"names", R"({"a":1,"b":2})", R"({"a":1,"c":2})", false},
      {"sign", "1", "1.0", false},
      {"order of elements", "[1,2]", "[2,1]", false},
      {"prefix", "[1]", "[1,2]", false},
      {"deep", R"([{"a":["x"]}])", R"([{"a":["y"]}])", false},
      {"empty containers", "{}", "[]", false},
  };
  for (const auto& c : cases) EXPECT_EQ(Tree(c.left) == Tree(c.right), c.equal) << c.why;
  EXPECT_FALSE(BindingProperty::FromSigned(1) == BindingProperty::FromUnsigned(1));
  EXPECT_FALSE(BindingProperty::FromString("a") ==
               BindingProperty::FromBlob(std::vector<uint8_t>{'a'}));
  EXPECT_TRUE(BindingProperty::FromEnum(GradeRecord(), 1) ==
              BindingProperty::FromEnum(GradeRecord(), 1));
}

TEST(BindingProperty, ATreeHasBounds) {
  BindingProperty value;
  EXPECT_THROW(value.TakeElement(kMaxTreeValues), std::bad_alloc);
  EXPECT_THROW(value.TakeElement(SIZE_MAX), std::bad_alloc);
  EXPECT_EQ(value.Size(), 0u);
  BindingProperty& child = value.Append();
  child.TakeElement(kMaxTreeValues / 2);
  EXPECT_THROW(child.TakeMember("a").TakeElement(kMaxTreeValues / 2), std::bad_alloc)
      << "replacing a value does not give back what it counted";
}

TEST(BindingProperty, FlippingKindsCannotHideGrowth) {
  BindingProperty value;
  BindingProperty& child = value.TakeMember("x");
  const std::string text(1 << 20, 'x');
  size_t flips = 0;
  try {
    for (; flips < 1000; ++flips) {
      child.SetString(text);
      child.SetCollection();
    }
  } catch (const std::bad_alloc&) {
  }
  EXPECT_LE(flips, kMaxTreeBytes >> 20);
  EXPECT_GT(flips, (kMaxTreeBytes >> 20) / 2);
}

TEST(TreeBuilder, OfRepeatedMembersTheLastValueTakesTheFirstPlace) {
  TreeBuilder builder;
  builder.BeginStructure(5);
  for (const char* name : {"a", "b", "a", "c", "b"}) {
    builder.Member(name);
    builder.BeginStructure(1);  // the same names inside do not count
    builder.Member("a");
    builder.String(name);
    builder.EndStructure();
  }
  builder.Member("a");
  builder.Signed(-6);
  builder.EndStructure();
  EXPECT_EQ(Json(builder.Take()), R"({"a":-6,"b":{"a":"b"},"c":{"a":"c"}})");
}

TEST(TreeBuilder, StopsAtTheBoundOfATree) {
  TreeBuilder builder;
  builder.BeginCollection(0);
  size_t values = 1;
  while (builder.Null()) ++values;
  EXPECT_EQ(values, kMaxTreeValues);
  EXPECT_EQ(builder.ErrorText(), "Too many values.");

  TreeBuilder bytes;
  const std::string text(16u << 20, 'x');
  bytes.BeginCollection(0);
  size_t texts = 0;
  while (texts < 100 && bytes.String(text)) ++texts;
  EXPECT_LE(texts, kMaxTreeBytes / text.size());
}

}  // namespace
}  // namespace Kest
