// Reads the members of one JSON object into typed values and reports what does not fit.
//
// Usage: make one per object, ask for every member it may have, then call Finish, which reports a
// member nobody asked for. After a report every later question answers its default, so a caller
// checks the report once at the end.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/world/json/json_reader.h"
#include "host/world/json/json_value.h"

namespace Kest::Host {

// The first issue of a reading; later ones are dropped.
class IssueReport {
 public:
  void Add(TextPosition position, std::string text) {
    if (!issue_) issue_ = JsonIssue{position, std::move(text)};
  }
  bool failed() const { return issue_.has_value(); }
  const JsonIssue& issue() const { return *issue_; }

 private:
  std::optional<JsonIssue> issue_;
};

class FieldReader {
 public:
  static constexpr int64_t kMin32 = std::numeric_limits<int32_t>::min();
  static constexpr int64_t kMax32 = std::numeric_limits<int32_t>::max();

  // Both must outlive the reader. A value that is no object is reported.
  FieldReader(const JsonValue& value, IssueReport& report);

  // A member that must be there, or may be missing. Text answers never are empty.
  std::string Text(std::string_view name);
  std::string TextOr(std::string_view name, std::string_view missing);
  int64_t Whole(std::string_view name, int64_t lowest, int64_t highest);
  int64_t WholeOr(std::string_view name, int64_t missing, int64_t lowest, int64_t highest);
  uint64_t NaturalOr(std::string_view name, uint64_t missing);
  double NumberOr(std::string_view name, double missing, double lowest, double highest);
  bool FlagOr(std::string_view name, bool missing);
  std::vector<std::string> TextsOr(std::string_view name);
  // The list's elements; none when it is missing.
  const JsonValue::Array& ListOr(std::string_view name);
  // The member, or null when it is missing. Any kind of value.
  const JsonValue* Find(std::string_view name);

  // Where the member stands, or the object when it has none of that name.
  TextPosition Place(std::string_view name) const;
  void Finish();

 private:
  const JsonValue* FindRequired(std::string_view name);
  void WrongKind(std::string_view name, const JsonValue& value, std::string_view wanted);
  int64_t ToWhole(std::string_view name, const JsonValue& value, int64_t lowest, int64_t highest);

  const JsonValue& value_;
  IssueReport& report_;
  std::vector<std::string_view> asked_;
};

}  // namespace Kest::Host
