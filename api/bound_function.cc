#include "api/bound_function.h"

#include <algorithm>
#include <cassert>

namespace Kest {
namespace {

// What callers of a function with a body would otherwise learn from a refusal.
constexpr std::string_view kBodyHelp =
    "The body is JSON (application/json), YAML (application/x-yaml) or MessagePack "
    "(application/x-msgpack). In YAML a character beyond U+FFFF is written as itself or as "
    "\\UXXXXXXXX: a pair of \\uXXXX, as JSON takes it, is refused.";

}  // namespace

BoundFunction::BoundFunction(std::string_view name, std::vector<ArgumentRecord> parameters,
                             TypeIdentifier returns, Handler handler)
    : handler_(std::move(handler)) {
  record_.name = name;
  record_.arguments = std::move(parameters);
  record_.returns = returns;
}

void BoundFunction::DeclareArgument(ArgumentLocation location, std::string_view name,
                                    std::string_view description) {
  assert(locations_.size() < record_.arguments.size());
  assert(!FindArgument(name));
  assert(location != ArgumentLocation::kBody || !BodyArgument());
  ArgumentRecord& argument = record_.arguments[locations_.size()];
  argument.name = name;
  argument.description = description;
  locations_.push_back(location);
  if (location == ArgumentLocation::kBody) record_.help = kBodyHelp;
}

// Functions have a handful of arguments: looking at each beats any index.
std::optional<size_t> BoundFunction::FindArgument(std::string_view name) const {
  for (size_t i = 0; i < locations_.size(); ++i) {
    if (record_.arguments[i].name == name) return i;
  }
  return std::nullopt;
}

std::optional<size_t> BoundFunction::BodyArgument() const {
  const auto found = std::find(locations_.begin(), locations_.end(), ArgumentLocation::kBody);
  if (found == locations_.end()) return std::nullopt;
  return static_cast<size_t>(found - locations_.begin());
}

}  // namespace Kest
