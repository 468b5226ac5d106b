// Puts one value over another, for a file that says only how it differs from another file.
//
// Objects are merged member by member; null takes a member away. A list takes the other's place,
// unless its elements have names of their own ("definitions", "inventory", ...): then an element of
// the same name is merged, and others are appended.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {

// Removes the member at a path such as "player.inventory", where there is one.
void RemoveMember(Json* root, std::string_view path);
void MergeOver(Json* base, const Json& over);

// The way from the root of a value to a part of it: the part, after all that it is in.
using ValuePath = std::vector<const Json*>;

// Empty when `part` is no part of `root`.
ValuePath PathTo(const Json& root, const Json& part);
// The part of `layer` that the last value of `path` was made from; null when it is not from there.
const Json* FindInLayer(const Json& layer, const ValuePath& path);

}  // namespace Kest::Host
