// Route templates of the plugin in the terms of an API document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Kest::Host {

// A "{name}" of a template. Read as the plugin does: a "+" or "#" in front is no part of the name,
// an opening brace that is never closed hides all after it, and a closing one that was never
// opened is a parameter without a name.
struct PathParameter {
  std::string name;
  bool isRest = false;  // "{+name}" or "{#name}": slashes included
};
std::vector<PathParameter> PathParameters(std::string_view pathTemplate);

// A method as the document writes it: "get".
std::string OperationName(std::string_view method);

// "/a/{id}/{+rest}" with plain parameters: "/a/{id}/{rest}". A fragment, "{#name}", keeps its "#".
// Always begins with "/".
std::string DocumentPath(std::string_view pathTemplate);

// The pattern of the paths a template matches: "^/a/[^/]*/.*$".
std::string PathPattern(std::string_view pathTemplate);

}  // namespace Kest::Host
