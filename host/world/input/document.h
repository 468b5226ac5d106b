// A value read from text that can say where in the text a part of it is. Nesting ends at 64; a
// duplicate member is refused.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/json/json.h"

namespace Kest::Host {

class Document {
 public:
  // `name` stands for the text in messages. The text must outlive the document. A failure has
  // status 400.
  static Maybe<Document> FromJson(std::string_view name, std::string_view text);
  // JSON as FromJson reads it, or YAML 1.2's core schema without tags and aliases.
  static Maybe<Document> FromYaml(std::string_view name, std::string_view text);

  const Json& root() const { return root_; }

  // "name:line:column: message" with the place of `part` or of its name; "name: message" when the
  // document does not hold `part`.
  std::string Describe(const Json& part, bool atName, std::string_view message) const;

 private:
  Document(std::string_view name, std::string_view text, Json root)
      : name_(name), text_(text), root_(std::move(root)) {}

  std::string name_;
  std::string_view text_;
  Json root_;
};

}  // namespace Kest::Host
