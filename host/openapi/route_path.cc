#include "host/openapi/route_path.h"

#include <algorithm>
#include <utility>

#include "base/ascii.h"

namespace Kest::Host {
namespace {

// A parameter as it is written: `form` is '+', '#' or, for one segment, '{'; 0 when nothing opens
// it.
struct WrittenParameter {
  char form = 0;
  std::string name;
};

// Calls `literal(character)` and `parameter(WrittenParameter)` for the parts of a template in
// order.
template <typename Literal, typename Parameter>
void WalkTemplate(std::string_view pathTemplate, Literal literal, Parameter parameter) {
  WrittenParameter open;
  for (const char c : pathTemplate) {
    if (c == '{') {
      open = {c, {}};
    } else if (c == '}') {
      parameter(std::exchange(open, {}));
    } else if (open.form == 0) {
      literal(c);
    } else if (open.name.empty() && (c == '+' || c == '#')) {
      open.form = c;
    } else {
      open.name += c;
    }
  }
}

std::string_view GroupPattern(char form) {
  switch (form) {
    case '{':
      return "[^/]*";
    case '+':
      return ".*";
    case '#':
      return "#.*";
    default:
      return "";
  }
}

}  // namespace

std::vector<PathParameter> PathParameters(std::string_view pathTemplate) {
  std::vector<PathParameter> parameters;
  WalkTemplate(
      pathTemplate, [](char) {},
      [&](WrittenParameter parameter) {
        parameters.push_back({std::move(parameter.name), parameter.form != '{'});
      });
  return parameters;
}

std::string OperationName(std::string_view method) {
  std::string name(method);
  std::transform(name.begin(), name.end(), name.begin(), ToLower);
  return name;
}

std::string DocumentPath(std::string_view pathTemplate) {
  std::string path;
  WalkTemplate(
      pathTemplate, [&](char c) { path += c; },
      [&](const WrittenParameter& parameter) {
        if (parameter.form == 0) return;
        path.append(parameter.form == '#' ? "#{" : "{").append(parameter.name).append("}");
      });
  return path.starts_with('/') ? path : "/" + path;
}

std::string PathPattern(std::string_view pathTemplate) {
  std::string pattern = "^";
  WalkTemplate(
      pathTemplate,
      [&](char c) {
        if (std::string_view("^$.*+?()[]{}|\\").find(c) != std::string_view::npos) pattern += '\\';
        pattern += c;
      },
      [&](const WrittenParameter& parameter) { pattern.append(GroupPattern(parameter.form)); });
  return pattern + "$";
}

}  // namespace Kest::Host
