// What a data source of the collection waits for before it counts as read.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Client::Loot {

struct SourceWait {
  std::string_view kind;  // a word for programs: "signIn", "resource", "request", ...
  std::string reason;     // a sentence for people
  std::string path;       // of the resource or request; empty when there is none
};

}  // namespace Kest::Client::Loot
