// What must hold for any bytes that reach a reader or what follows it. A property takes one input
// and throws a Finding when a rule is broken. The fuzzers feed them (fuzzer_entry.cc), and so does
// the ordinary test suite of every build.
#pragma once

#include <span>
#include <string_view>

namespace Kest::Fuzz {

void CheckArgumentBinding(std::string_view input);
void CheckConversion(std::string_view input);
void CheckFormatter(std::string_view input);
void CheckJsonRead(std::string_view input);
void CheckJsonWriteRead(std::string_view input);
void CheckMsgpackRead(std::string_view input);
void CheckRouteMatch(std::string_view input);
void CheckTokenLoad(std::string_view input);
void CheckTreeEdits(std::string_view input);
void CheckYamlRead(std::string_view input);

// The part of CheckJsonRead that is about the fast pass alone; false: it gave up.
bool CheckJsonScan(std::string_view text);

struct Property {
  std::string_view name;  // of its fuzzer, and of the folder of its seeds in fuzz/corpus/
  void (*check)(std::string_view input);
};

// All of them, in the order of their names.
std::span<const Property> Properties();

}  // namespace Kest::Fuzz
