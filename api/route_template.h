// The path template of an endpoint: "/tav-loot/v1/player-loot/{lootId}/context-menu".
//
// A parameter is a name in braces:
//   {name}   one path segment, possibly empty: everything but "/"        pattern "([^/]*)"
//   {+name}  the rest, "/" included, but no line feed or carriage return  pattern "(.*)"
//   {#name}  a "#" and such a rest after it                               pattern "#(.*)"
// Everything else is literal. The pattern is the template as an ECMAScript regular expression for
// the whole path; it defines the template and is displayed. Matching does not use it: the matcher
// finds the same captures (greedy, from left to right) with bounded stack and in time proportional
// to the path's length times the number of parameters.
#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

namespace Kest {

enum class ParameterForm { kSegment, kRest, kFragment };

struct TemplateParameter {
  std::string_view name;  // a part of the template
  ParameterForm form = ParameterForm::kSegment;

  friend bool operator==(const TemplateParameter&, const TemplateParameter&) = default;
};

// What the groups of a pattern matched: views into the path. Up to kInline of them need no memory.
class RouteCaptures {
 public:
  static constexpr size_t kInline = 8;

  void Clear() {
    size_ = 0;
    more_.clear();
  }
  void Append(std::string_view capture) {
    if (size_ < kInline) {
      inline_[size_] = capture;
    } else {
      more_.push_back(capture);
    }
    ++size_;
  }
  size_t Size() const { return size_; }
  // Capture `i`; empty beyond the last one.
  std::string_view At(size_t i) const {
    if (i >= size_) return {};
    return i < kInline ? inline_[i] : more_[i - kInline];
  }

 private:
  std::array<std::string_view, kInline> inline_;
  std::vector<std::string_view> more_;
  size_t size_ = 0;
};

// One compiled template. Immutable: any thread may match.
// Lifetime: what it returns is a part of it.
class RouteTemplate {
 public:
  // Compiles any string: unfinished and stray braces have a meaning too. An unfinished parameter
  // matches nothing and names nothing. A "}" without its "{" names a parameter "" that has no group
  // in the pattern, so later parameters have the capture of the one before.
  // Its texts and lists are in `memory`, which outlives it.
  explicit RouteTemplate(std::string_view text,
                         std::pmr::memory_resource* memory = std::pmr::get_default_resource());
  RouteTemplate(const RouteTemplate&) = delete;
  RouteTemplate& operator=(const RouteTemplate&) = delete;

  std::string_view Text() const { return text_; }
  std::string Pattern() const;
  // In order; parameter i has capture i.
  const std::pmr::vector<TemplateParameter>& Parameters() const { return parameters_; }

  // The literals before the first group and after the last one (the whole template without one).
  std::string_view Prefix() const { return prefix_; }
  std::string_view Suffix() const { return groups_.empty() ? prefix_ : groups_.back().literal; }
  // Bytes of all literals: no shorter path matches. Without groups no longer one does either.
  size_t MinimumLength() const { return minimumLength_; }
  bool IsLiteral() const { return groups_.empty(); }

  // Whether the whole path matches. `*captures` is overwritten, also when it does not.
  // Allocates only for more than RouteCaptures::kInline groups, or when a group is followed by
  // anything but "/" or the last literal.
  bool Match(std::string_view path, RouteCaptures* captures) const;

 private:
  struct Group {
    bool isRest;               // else a segment
    std::string_view literal;  // after it, up to the next group
  };

  void AppendGroup(ParameterForm form);
  void AppendLiteral(char c);
  bool MatchLast(std::string_view rest, RouteCaptures* captures) const;
  bool MatchAmbiguous(std::string_view rest, RouteCaptures* captures) const;

  std::pmr::string characters_;  // the template, then all literals; it never moves
  std::string_view text_;
  std::pmr::vector<TemplateParameter> parameters_;
  std::string_view prefix_;
  std::pmr::vector<Group> groups_;
  size_t minimumLength_ = 0;
  bool isDirect_ = true;  // each group but the last is a segment that ends at the next "/"
};

}  // namespace Kest
