// Reads the members of one JSON object into typed values and reports what does not fit.
//
// Usage: make one per object, ask for every member it may have, then call Finish, which reports a
// member that was not asked for. After a report every later question returns its default, so a
// caller checks the report once at the end.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/world/input/document.h"

namespace Kest::Host {

// The first issue of a reading; later ones are dropped.
class IssueReport {
 public:
  // The document must outlive the report.
  explicit IssueReport(const Document& document) : document_(document) {}

  // What is wrong with `part` of the document, or with the name of that member.
  void Add(const Json& part, std::string_view message) { Add(part, false, message); }
  void AddToName(const Json& part, std::string_view message) { Add(part, true, message); }

  bool failed() const { return failure_.has_value(); }
  // Of status 400; the text begins with the issue's place. REQUIRES: failed().
  const Failure& failure() const { return *failure_; }

 private:
  void Add(const Json& part, bool atName, std::string_view message) {
    if (!failure_) failure_ = Failure{document_.Describe(part, atName, message), 400};
  }

  const Document& document_;
  std::optional<Failure> failure_;
};

class FieldReader {
 public:
  static constexpr int64_t kMin32 = std::numeric_limits<int32_t>::min();
  static constexpr int64_t kMax32 = std::numeric_limits<int32_t>::max();
  static constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();

  // Both must outlive the reader. A value that is no object is reported.
  FieldReader(const Json& value, IssueReport& report);

  // A member that must be there, or may be missing. A required string must not be empty.
  std::string String(std::string_view name);
  std::string StringOr(std::string_view name, std::string_view missing);
  int64_t Integer(std::string_view name, int64_t lowest, int64_t highest);
  int64_t IntegerOr(std::string_view name, int64_t missing, int64_t lowest, int64_t highest);
  uint64_t UnsignedOr(std::string_view name, uint64_t missing);
  double NumberOr(std::string_view name, double missing, double lowest, double highest);
  bool BoolOr(std::string_view name, bool missing);
  std::vector<std::string> StringsOr(std::string_view name);
  // The list; an empty one when it is missing.
  const Json& ListOr(std::string_view name);
  // The object; an empty one when it is missing.
  const Json& ObjectOr(std::string_view name);
  // The member, or null when it is missing. Any kind of value.
  const Json* Find(std::string_view name);

  // The member as a part to report, or the object when it has none of that name.
  const Json& At(std::string_view name) const;
  void Finish();

 private:
  const Json* FindRequired(std::string_view name);
  void WrongKind(std::string_view name, const Json& value, std::string_view wanted);
  int64_t ToInteger(std::string_view name, const Json& value, int64_t lowest, int64_t highest);
  template <typename T>
  void OutOfRange(std::string_view name, const Json& value, T lowest, T highest);

  const Json& value_;
  IssueReport& report_;
  std::vector<std::string_view> asked_;
};

}  // namespace Kest::Host
