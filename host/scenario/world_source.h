// Where a world comes from: a file, or one of the worlds inside the program.
#pragma once

#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "host/world/world.h"

namespace Kest::Host {

// A world by its name among the shipped ones, or by its file.
struct WorldChoice {
  std::string scenario = "sample";
  std::string file = {};  // not empty: this file instead
};

// The text of the world; its name in messages is the file's path, or the scenario's name.
Maybe<WorldText> ReadWorldText(const WorldChoice& choice);

// Finds what the file `from` extends: a shipped world by its name, or a file in the same folder.
// A file's path is appended to `read`.
Maybe<WorldText> FindExtendedWorld(const std::string& extends, const std::string& from,
                                   std::vector<std::string>* read);

// A text file of at most 64 MiB. `what` names it in a failure's message: "the world".
Maybe<std::string> ReadTextFile(const std::string& path, std::string_view what);

}  // namespace Kest::Host
