// Reads the members of one JSON object into typed values and reports what does not fit.
//
// Usage: make one per object, ask for every member it may have, then call Finish, which reports a
// member that was not asked for. Readers of one document share their issue, the first one: after it
// every question returns its default, so a caller checks once at the end. They share their warnings
// too, of which the first hundred are kept.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/world/input/document.h"

namespace Kest::Host {

// The range of the numbers that the wire types keep.
inline constexpr int64_t kMin32 = std::numeric_limits<int32_t>::min();
inline constexpr int64_t kMax32 = std::numeric_limits<int32_t>::max();
inline constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();

class FieldReader {
 public:
  // Reads the document's root, or `value`, a part of the document that `owner` reads. All must
  // outlive the reader. A value that is no object is reported.
  explicit FieldReader(const Document& document);
  FieldReader(const Json& value, FieldReader& owner);
  FieldReader(const FieldReader&) = delete;
  FieldReader& operator=(const FieldReader&) = delete;

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
  // The strings, numbers, bools and lists of strings asked for so far, in that order, each as it
  // was returned: defaults are part of it.
  Json Values() const { return values_; }
  // The member, or null when it is missing. Any kind of value.
  const Json* Find(std::string_view name);

  // Calls read(FieldReader&) for each object of the list, and Finish after it.
  template <typename Read>
  void ForEach(std::string_view name, Read read) {
    for (const Json& value : ListOr(name)) {
      FieldReader fields(value, *this);
      read(fields);
      if (!fields.Finish()) return;
    }
  }

  // Report an issue of the object, of a member or (when it is missing) the object, of any part of
  // the document, and of the name of a part that is a member.
  void Fail(std::string_view message) { FailPart(value_, message); }
  void FailAt(std::string_view name, std::string_view message);
  void FailPart(const Json& part, std::string_view message) { Report(part, false, message); }
  void FailName(const Json& part, std::string_view message) { Report(part, true, message); }

  // Note what is allowed but probably not meant.
  void WarnAt(std::string_view name, std::string_view message);
  void WarnPart(const Json& part, std::string_view message) { Note(part, false, message); }
  void WarnName(const Json& part, std::string_view message) { Note(part, true, message); }
  // "name:line:column: message" for each warning so far.
  std::vector<std::string> Warnings() const;

  // Where the object is in the text: "name:line:column".
  std::string Place() const;

  // Whether there is no issue so far.
  bool Finish();
  bool ok() const { return !findings_->failure; }
  // Of status 400; the message begins with the place. REQUIRES: !ok().
  const Failure& failure() const { return *findings_->failure; }

 private:
  struct Findings {
    std::optional<Failure> failure;
    std::vector<Document::Note> warnings;
  };

  FieldReader(const Json& value, const Document& document, Findings* findings);

  const Json* FindRequired(std::string_view name);
  // Puts a value that is returned among Values.
  template <typename T>
  T Keep(std::string_view name, T value);
  int64_t ToInteger(std::string_view name, const Json& value, int64_t lowest, int64_t highest);
  void WrongKind(std::string_view name, const Json& value, std::string_view wanted);
  template <typename T>
  void OutOfRange(std::string_view name, const Json& value, T lowest, T highest);
  void Report(const Json& part, bool atName, std::string_view message);
  void Note(const Json& part, bool atName, std::string_view message);

  const Json& value_;
  const Document& document_;
  Findings own_;  // of the document's reader
  Findings* findings_;
  std::vector<std::string_view> asked_;
  Json values_ = Json::object();
};

}  // namespace Kest::Host
