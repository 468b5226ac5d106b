// Tables of cases: what goes in, what must come out, and the reason for each row.
//
//   ExpectEach<int>({{"zero", 0, "0"}, {"below zero", -1, "-1"}}, [](int i) { return Text(i); });
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>

namespace Kest::Testing {

template <typename Input, typename Expected>
struct Case {
  const char* why;
  Input input;
  Expected expected;
};

template <typename Input, typename Expected = const char*, typename Function>
void ExpectEach(std::initializer_list<Case<Input, Expected>> cases, const Function& function) {
  for (const auto& c : cases) EXPECT_EQ(function(c.input), c.expected) << c.why;
}

}  // namespace Kest::Testing
