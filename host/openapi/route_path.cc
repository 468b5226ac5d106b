#include "host/openapi/route_path.h"

namespace Kest::Host {
namespace {

bool Has(std::string_view pathTemplate, std::string_view opening, std::string_view name) {
  const std::string parameter = std::string(opening).append(name) + "}";
  return pathTemplate.find(parameter) != std::string_view::npos;
}

// Calls `literal(character)` and `parameter(form, name)` for the parts of a template in order.
// `form` is '+', '#' or, for one segment, '{'.
template <typename Literal, typename Parameter>
void WalkTemplate(std::string_view pathTemplate, Literal literal, Parameter parameter) {
  size_t place = 0;
  while (place < pathTemplate.size()) {
    const char c = pathTemplate[place++];
    const size_t end = pathTemplate.find('}', place);
    if (c != '{' || end == std::string_view::npos) {
      literal(c);
      continue;
    }
    std::string_view name = pathTemplate.substr(place, end - place);
    char form = '{';
    if (name.starts_with('+') || name.starts_with('#')) {
      form = name.front();
      name.remove_prefix(1);
    }
    parameter(form, name);
    place = end + 1;
  }
}

}  // namespace

std::string DocumentPath(std::string_view pathTemplate) {
  std::string path;
  WalkTemplate(
      pathTemplate, [&](char c) { path += c; },
      [&](char form, std::string_view name) {
        path.append(form == '#' ? "#{" : "{").append(name).append("}");
      });
  return path;
}

std::string PathPattern(std::string_view pathTemplate) {
  std::string pattern = "^";
  WalkTemplate(
      pathTemplate,
      [&](char c) {
        if (std::string_view("^$.*+?()[]{}|\\").find(c) != std::string_view::npos) pattern += '\\';
        pattern += c;
      },
      [&](char form, std::string_view) {
        pattern.append(form == '{' ? "[^/]*" : form == '+' ? ".*" : "#.*");
      });
  return pattern + "$";
}

bool HasParameter(std::string_view pathTemplate, std::string_view name) {
  return Has(pathTemplate, "{", name) || IsRestParameter(pathTemplate, name) ||
         Has(pathTemplate, "{#", name);
}

bool IsRestParameter(std::string_view pathTemplate, std::string_view name) {
  return Has(pathTemplate, "{+", name);
}

}  // namespace Kest::Host
