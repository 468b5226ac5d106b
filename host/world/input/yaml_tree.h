// YAML to a value, with the place of each part. Of YAML it takes what JSON has a form for: one
// document, names that are scalars, no tags and no aliases.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {

// Both count from 1, columns in characters.
struct Mark {
  size_t line = 0;
  size_t column = 0;
};

struct YamlTree {
  struct Place {
    Mark name;  // of a member; else that of the value
    Mark value;
  };

  Json root;
  std::vector<Place> places;  // of the values as they follow each other in the text
  std::string problem;        // empty, or why reading ended
  Mark problemMark;
};

YamlTree ReadYamlTree(std::string_view text);

}  // namespace Kest::Host
