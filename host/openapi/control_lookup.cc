#include "host/openapi/control_lookup.h"

#include <optional>
#include <utility>

namespace Kest::Host {
namespace {

// Takes the first part from `path`, "/collections/{id}"; nothing at its end.
std::optional<std::string_view> TakePart(std::string_view* path) {
  if (path->size() < 2) return std::nullopt;
  const size_t end = path->find('/', 1);
  const std::string_view part = path->substr(1, end == path->npos ? path->npos : end - 1);
  *path = end == path->npos ? std::string_view() : path->substr(end);
  return part;
}

std::optional<PathArguments> Match(std::string_view path, const std::vector<std::string>& parts) {
  if (path.starts_with(kControlPrefix)) path.remove_prefix(kControlPrefix.size());
  PathArguments arguments;
  for (const std::string& part : parts) {
    const auto wanted = TakePart(&path);
    if (!wanted || part.empty()) return std::nullopt;
    if (wanted->starts_with('{')) {
      arguments.emplace(wanted->substr(1, wanted->size() - 2), part);
    } else if (*wanted != part) {
      return std::nullopt;
    }
  }
  if (TakePart(&path)) return std::nullopt;
  return arguments;
}

}  // namespace

FoundControl FindControl(std::string_view method, const std::vector<std::string>& parts,
                         const std::function<bool(std::string_view operationId)>& isServed) {
  FoundControl found;
  std::string methods;
  for (const ControlDescription& control : AllControls()) {
    if (!isServed(control.operationId)) continue;
    auto arguments = Match(control.path, parts);
    if (!arguments) continue;
    if (method != control.method) {
      methods += (methods.empty() ? "" : ", ") + control.method;
    } else if (found.control == nullptr || arguments->size() < found.arguments.size()) {
      found.control = &control;
      found.arguments = std::move(*arguments);
    }
  }
  if (found.control == nullptr) found.methods = std::move(methods);
  return found;
}

}  // namespace Kest::Host
