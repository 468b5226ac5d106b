#include "binding/tree/binding_property.h"

#include <new>

#include "binding/tree/seeded_hash.h"
#include "binding/tree/tree_builder.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

TEST(BindingProperty, OnlyContainersHoldSomething) {
  for (const auto& leaf : {BindingProperty(), Bool(true), Signed(-1), Unsigned(1), Float(2),
                           Text("a"), Blob("a"), Enum(1)}) {
    EXPECT_EQ(leaf.FindElement(0), nullptr) << KindName(leaf.kind());
    EXPECT_EQ(leaf.FindMember("a"), nullptr) << KindName(leaf.kind());
    EXPECT_EQ(leaf.Size(), 0u) << KindName(leaf.kind());
  }
}

TEST(BindingProperty, FindingChangesNothingAndAHintOnlySavesTime) {
  const BindingProperty value = Tree(R"({"a":[1],"b":2,"c":3})");
  EXPECT_EQ(value.FindElement(0), nullptr);
  EXPECT_EQ(value.FindMember("a")->FindElement(1), nullptr);
  EXPECT_EQ(value.FindMember("a")->FindMember("0"), nullptr);
  size_t hint = 0;
  for (const char* name : {"c", "a", "b", "b", "x", "c"}) {
    EXPECT_EQ(value.FindMember(name, &hint), value.FindMember(name)) << name;
  }
  EXPECT_EQ(hint, 3u);
  EXPECT_EQ(Json(value), R"({"a":[1],"b":2,"c":3})");
}

TEST(BindingProperty, ValuesCanBeAssignedIntoTheirOwnTree) {
  BindingProperty value = Tree(R"([1,{"c":"text"}])");
  value.GetOrAddElement(0) = value;  // the parent into its child
  value.GetOrAddElement(2);
  value.Append() = *value.FindElement(1);  // an element beside itself, as the array grows
  EXPECT_EQ(Json(value), R"([[1,{"c":"text"}],{"c":"text"},null,{"c":"text"}])");
  value = *value.FindElement(0)->FindElement(1);  // the child over its parent
  value.SetString(value.FindMember("c")->AsString());
  EXPECT_EQ(value.AsString(), "text");
  value.GetOrAddMember(value.AsString()).SetBool(true);  // a string as a name where it was
  EXPECT_EQ(Json(value), R"({"text":true})");
}

TEST(BindingProperty, CopiesAreIndependentAndMovesOfRootsKeepTheStorage) {
  BindingProperty first = Tree(R"({"name":"a long text that is stored apart"})");
  const char* chars = first.FindMember("name")->AsString().data();
  BindingProperty copy = first;
  BindingProperty moved = std::move(first);
  EXPECT_EQ(moved.FindMember("name")->AsString().data(), chars);
  EXPECT_TRUE(first.IsEmpty());  // NOLINT: that is the promise
  moved.GetOrAddMember("name").SetBool(false);
  EXPECT_EQ(Json(copy), R"({"name":"a long text that is stored apart"})");
  const BindingProperty another = Tree(R"({"name":"a longer text for the same memory"})");
  BindingProperty part = std::move(copy.GetOrAddMember("name"));
  EXPECT_TRUE(copy.FindMember("name")->IsEmpty()) << "a part that is moved out leaves its tree";
  copy.GetOrAddMember("other") = std::move(moved);
  EXPECT_EQ(Json(copy), R"({"name":null,"other":{"name":false}})");
  copy = std::move(copy.GetOrAddMember("other"));
  EXPECT_EQ(Json(copy), R"({"name":false})") << "and may replace it";
  const BindingProperty next = another;  // would be stored where a tree was freed
  EXPECT_EQ(part.AsString(), "a long text that is stored apart") << "its storage outlives the tree";
}

TEST(BindingProperty, EqualityLooksAtKindsAndNames) {
  EXPECT_TRUE(Tree(R"({"a":1,"b":[2]})") == Tree(R"({"b":[2],"a":1})"));
  const std::pair<BindingProperty, BindingProperty> different[] = {
      {Tree(R"({"a":1,"b":2})"), Tree(R"({"a":1,"c":2})")},
      {Tree("[1,2]"), Tree("[2,1]")},
      {Tree("[1]"), Tree("[1,2]")},
      {Tree(R"([{"a":["x"]}])"), Tree(R"([{"a":["y"]}])")},
      {Tree("{}"), Tree("[]")},
      {Signed(1), Unsigned(1)},
      {Text("a"), Blob("a")},
      {Enum(1), Enum(2)},
  };
  for (const auto& [left, right] : different) EXPECT_FALSE(left == right) << Json(left);
}

TEST(BindingProperty, ATreeHasBoundsThatReplacingValuesCannotHide) {
  BindingProperty value;
  EXPECT_THROW(value.GetOrAddElement(kMaxTreeValues), std::bad_alloc);
  EXPECT_THROW(value.GetOrAddElement(SIZE_MAX), std::bad_alloc);
  EXPECT_EQ(value.Size(), 0u);
  BindingProperty& child = value.Append();
  child.GetOrAddElement(kMaxTreeValues / 2 - 1);
  EXPECT_THROW(child.GetOrAddMember("a").GetOrAddElement(kMaxTreeValues / 2), std::bad_alloc);

  BindingProperty other;
  BindingProperty& node = other.GetOrAddMember("x");
  const std::string text(1 << 20, 'x');
  size_t flips = 0;
  const auto flip = [&] {
    for (; flips < 1000; ++flips) {
      node.SetString(text);
      node.SetCollection();
    }
  };
  EXPECT_THROW(flip(), std::bad_alloc);
  EXPECT_LE(flips, kMaxTreeBytes >> 20);
  EXPECT_GT(flips, (kMaxTreeBytes >> 20) / 2);
}

TEST(TreeBuilder, OfRepeatedMembersTheLastValueTakesTheFirstPlace) {
  EXPECT_EQ(Json(Tree(R"({"a":{"a":0},"b":{"a":1},"a":{"b":2,"a":3,"b":4},"c":{"a":5},"b":-6})")),
            R"({"a":{"b":4,"a":3},"b":-6,"c":{"a":5}})");
}

TEST(TreeBuilder, StopsAtTheBoundOfATree) {
  ConversionContext context(Registry());
  EXPECT_TRUE(ToProperty(context, std::vector<int8_t>(kMaxTreeValues)).IsEmpty());
  EXPECT_EQ(context.ErrorMessage(), "Too many values.");

  // The names take space of their own while they are gathered.
  TreeBuilder builder;
  builder.BeginStructure(0);
  size_t names = 0;
  while (names < kMaxTreeValues && builder.Member(std::to_string(names)) && builder.Null()) ++names;
  EXPECT_LT(names, kMaxTreeBytes / 80);
  EXPECT_GT(names, kMaxTreeBytes / 300);
}

TEST(SeededHashDeathTest, DiffersFromProcessToProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process of its own, not a copy of this one
  const std::string own = std::to_string(SeededHash("a name"));
  const auto printOwn = [] {
    std::fputs(std::to_string(SeededHash("a name")).c_str(), stderr);
    std::exit(0);
  };
  EXPECT_EXIT(printOwn(), testing::ExitedWithCode(0), testing::Not(testing::HasSubstr(own)));
}

}  // namespace
}  // namespace Kest
