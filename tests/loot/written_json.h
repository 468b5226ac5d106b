// A value as JSON, written in full.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "binding/json/json_adapter.h"

namespace Kest::Client::Loot {

template <class T>
std::string Written(const T& value) {
  ConversionContext context;
  std::string json;
  WriteJsonValue(context, value, &json);
  EXPECT_TRUE(context.Ok()) << context.ErrorMessage();
  return json;
}

}  // namespace Kest::Client::Loot
