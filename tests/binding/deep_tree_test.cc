// A million nested values on a stack of 256 KiB: no walk of a tree may recurse.
#include <pthread.h>

#include "binding/binding_property.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;

constexpr size_t kDepth = 1'000'000;

void RunOnSmallStack(void* (*work)(void*)) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, work, nullptr), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

void WalkEveryWay(std::string_view open, std::string_view close) {
  std::string text;
  for (size_t i = 0; i < kDepth; ++i) text += open;
  text += "null";
  for (size_t i = 0; i < kDepth; ++i) text += close;
  BindingProperty copy;
  {
    const BindingProperty tree = Tree(text);
    ConversionContext context(Registry());
    Assign(context, "p", tree, &copy);
    EXPECT_TRUE(copy == tree);
    EXPECT_TRUE(ToProperty(context, tree) == tree);
  }
  EXPECT_TRUE(Json(copy) == text);
}

TEST(DeepTree, AMillionNestedValuesNeedNoDeepStack) {
  RunOnSmallStack([](void*) -> void* {
    WalkEveryWay("[", "]");
    WalkEveryWay("{\"a\":", "}");
    ConversionContext context(Registry());
    ReadJson(context, std::string(kDepth, '['));
    EXPECT_EQ(context.ErrorText(), "Invalid value.");
    return nullptr;
  });
}

}  // namespace
}  // namespace Kest
