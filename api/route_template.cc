#include "api/route_template.h"

#include <algorithm>

#include "base/word_scan.h"

namespace Kest {
namespace {

constexpr std::string_view kEscaped = "^$.*+?()[]|\\";

void AppendEscaped(std::string_view literal, std::string* pattern) {
  for (const char c : literal) {
    if (kEscaped.find(c) != std::string_view::npos) pattern->push_back('\\');
    pattern->push_back(c);
  }
}

// Whether a group matches `c`: "." or "[^/]" in the pattern.
bool MatchesChar(bool isRest, char c) {
  return isRest ? c != '\n' && c != '\r' : c != '/';
}

bool MatchesRemainder(bool isRest, std::string_view text) {
  const size_t refused = isRest ? text.find_first_of("\n\r") : text.find('/');
  return refused == std::string_view::npos;
}

}  // namespace

RouteTemplate::RouteTemplate(std::string_view text, std::pmr::memory_resource* memory)
    : characters_(memory), parameters_(memory), groups_(memory) {
  // The literals are what is not in braces, and a "#" in place of a brace.
  characters_.reserve(2 * text.size());
  text_ = characters_.append(text);
  prefix_ = {text_.data() + text_.size(), 0};
  const auto parameters = static_cast<size_t>(std::count(text.begin(), text.end(), '}'));
  parameters_.reserve(parameters);
  groups_.reserve(parameters);
  bool inParameter = false;
  TemplateParameter parameter;
  for (size_t i = 0; i < text_.size(); ++i) {
    const char c = text_[i];
    if (c == '{') {
      inParameter = true;
      parameter = {};
    } else if (c == '}') {
      if (inParameter) AppendGroup(parameter.form);
      parameters_.push_back(parameter);
      inParameter = false;
      parameter = {};
    } else if (!inParameter) {
      AppendLiteral(c);
    } else if (parameter.name.empty() && (c == '+' || c == '#')) {
      parameter.form = c == '+' ? ParameterForm::kRest : ParameterForm::kFragment;
    } else {
      parameter.name = text_.substr(i - parameter.name.size(), parameter.name.size() + 1);
    }
  }
  for (size_t i = 0; i + 1 < groups_.size(); ++i) {
    if (groups_[i].isRest || !groups_[i].literal.starts_with('/')) isDirect_ = false;
  }
}

std::string RouteTemplate::Pattern() const {
  std::string pattern;
  AppendEscaped(prefix_, &pattern);
  for (const Group& group : groups_) {
    pattern += group.isRest ? "(.*)" : "([^/]*)";
    AppendEscaped(group.literal, &pattern);
  }
  return pattern;
}

void RouteTemplate::AppendGroup(ParameterForm form) {
  if (form == ParameterForm::kFragment) AppendLiteral('#');
  groups_.push_back(
      {form != ParameterForm::kSegment, std::string_view(characters_).substr(characters_.size())});
}

void RouteTemplate::AppendLiteral(char c) {
  std::string_view& literal = groups_.empty() ? prefix_ : groups_.back().literal;
  characters_.push_back(c);
  literal = {literal.data(), literal.size() + 1};
  ++minimumLength_;
}

bool RouteTemplate::Match(std::string_view path, RouteCaptures* captures) const {
  captures->Clear();
  if (path.size() < minimumLength_ || !EqualBytes(path.data(), prefix_.data(), prefix_.size())) {
    return false;
  }
  std::string_view rest = path.substr(prefix_.size());
  if (groups_.empty()) return rest.empty();
  if (!isDirect_) return MatchAmbiguous(rest, captures);
  for (size_t i = 0; i + 1 < groups_.size(); ++i) {
    const size_t end = rest.find('/');
    if (end == std::string_view::npos) return false;
    const std::string_view after = rest.substr(end);
    if (!after.starts_with(groups_[i].literal)) return false;
    captures->Append(rest.substr(0, end));
    rest = after.substr(groups_[i].literal.size());
  }
  return MatchLast(rest, captures);
}

// The last group matches all but the last literal, or nothing does.
bool RouteTemplate::MatchLast(std::string_view rest, RouteCaptures* captures) const {
  const Group& last = groups_.back();
  if (rest.size() < last.literal.size()) return false;
  const std::string_view capture = rest.substr(0, rest.size() - last.literal.size());
  if (!EqualBytes(rest.data() + capture.size(), last.literal.data(), last.literal.size())) {
    return false;
  }
  if (!MatchesRemainder(last.isRest, capture)) return false;
  captures->Append(capture);
  return true;
}

// For groups that could end in several places. From the back, marks for each group the positions
// from which it and all after it match; then each group in order extends to the last such position.
bool RouteTemplate::MatchAmbiguous(std::string_view rest, RouteCaptures* captures) const {
  const size_t columns = rest.size() + 1;
  std::vector<bool> matches((groups_.size() + 1) * columns);
  matches[groups_.size() * columns + rest.size()] = true;
  for (size_t g = groups_.size(); g-- > 0;) {
    const std::string_view literal = groups_[g].literal;
    const size_t row = g * columns;
    for (size_t at = columns; at-- > 0;) {
      const bool endsHere = rest.size() - at >= literal.size() &&
                            matches[row + columns + at + literal.size()] &&
                            rest.compare(at, literal.size(), literal) == 0;
      const bool goesOn =
          at < rest.size() && matches[row + at + 1] && MatchesChar(groups_[g].isRest, rest[at]);
      matches[row + at] = endsHere || goesOn;
    }
  }
  if (!matches[0]) return false;
  size_t begin = 0;
  for (size_t g = 0; g < groups_.size(); ++g) {
    size_t end = begin;
    while (end < rest.size() && matches[g * columns + end + 1] &&
           MatchesChar(groups_[g].isRest, rest[end])) {
      ++end;
    }
    captures->Append(rest.substr(begin, end - begin));
    begin = end + groups_[g].literal.size();
  }
  return true;
}

}  // namespace Kest
