// Runs work that must not recurse on a stack of 256 KiB.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

namespace Kest::Testing {

inline void RunOnSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, size_t{256} * 1024), 0);
  pthread_t thread;
  const auto run = [](void* context) -> void* {
    (*static_cast<std::function<void()>*>(context))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace Kest::Testing
