// Route templates of the plugin in the terms of an API document.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Host {

// "/a/{id}/{+rest}" with plain parameters: "/a/{id}/{rest}". A fragment, "{#name}", keeps its "#".
std::string DocumentPath(std::string_view pathTemplate);

// The pattern of the paths a template stands for: "^/a/[^/]*/.*$".
std::string PathPattern(std::string_view pathTemplate);

// Whether the template has a parameter of that name, of any form.
bool HasParameter(std::string_view pathTemplate, std::string_view name);
// Whether that one takes the rest of the path, slashes included.
bool IsRestParameter(std::string_view pathTemplate, std::string_view name);

}  // namespace Kest::Host
