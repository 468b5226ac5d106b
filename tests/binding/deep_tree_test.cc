// A million nested values on a stack of 256 KiB: no walk of a tree may recurse.
#include <pthread.h>

#include <functional>

#include "binding/binding_property.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

constexpr size_t kDepth = 1'000'000;

void RunOnSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread;
  const auto run = [](void* context) -> void* {
    (*static_cast<std::function<void()>*>(context))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

std::string Nested(std::string_view open, std::string_view close) {
  std::string text;
  for (size_t i = 0; i < kDepth; ++i) text += open;
  text += "null";
  for (size_t i = 0; i < kDepth; ++i) text += close;
  return text;
}

void WalkEveryWay(std::string_view open, std::string_view close) {
  const std::string text = Nested(open, close);
  BindingProperty copy;
  {
    const BindingProperty tree = Tree(text);
    copy = tree;
    EXPECT_TRUE(copy == tree);
    ConversionContext context(Registry());
    BindingProperty object;
    Assign(context, "p", tree, &object);
    EXPECT_TRUE(object == tree);
    EXPECT_EQ(Json(ToProperty(context, object)) == text, context.Ok());
  }
  EXPECT_TRUE(Json(copy) == text);
}

TEST(DeepTree, AMillionNestedCollectionsNeedNoDeepStack) {
  RunOnSmallStack([] { WalkEveryWay("[", "]"); });
}

TEST(DeepTree, AMillionNestedStructuresNeedNoDeepStack) {
  RunOnSmallStack([] { WalkEveryWay("{\"a\":", "}"); });
}

TEST(DeepTree, OpenBracketsAloneAreRefusedInTheDecodersWords) {
  RunOnSmallStack([] {
    ConversionContext context(Registry());
    ReadJson(context, std::string(kDepth, '['));
    EXPECT_EQ(context.ErrorText(), "Invalid value.");
  });
}

}  // namespace
}  // namespace Kest
