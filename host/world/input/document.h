// A value read from text that can say where in the text a part of it is. Nesting ends at 64; a
// duplicate member is refused.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "host/json/json.h"

namespace Kest::Host {

class Document {
 public:
  // Something to say about a part of the document, or about the part's name.
  struct Note {
    const Json* part;
    bool atName;
    std::string message;
  };

  // `name` stands for the text in messages. The text must outlive the document. A failure has
  // status 400.
  static Maybe<Document> FromJson(std::string_view name, std::string_view text);
  // JSON as FromJson reads it, or YAML 1.2's core schema without tags and aliases.
  static Maybe<Document> FromYaml(std::string_view name, std::string_view text);
  // `base`, less the members at the paths `without` ("player.inventory"), with what `over` says put
  // into it, as document_layers.h merges them. Parts keep the place of the text they come from.
  static Document Layered(Document base, Document over, const std::vector<std::string>& without);

  const Json& root() const { return root_; }

  // "name:line:column: message" with the place of the part or of its name; "name: message" when the
  // document's text does not hold the part. Many notes at once cost little more than one.
  std::vector<std::string> Describe(const std::vector<Note>& notes) const;
  std::string Describe(const Json& part, bool atName, std::string_view message) const;

 private:
  class Places;

  Document(std::string_view name, std::string_view text, Json root)
      : name_(name), text_(text), root_(std::move(root)) {}

  std::string name_;
  std::string_view text_;
  Json root_;
  std::vector<std::shared_ptr<const Document>> layers_ = {};  // the topmost first; none: one text
};

}  // namespace Kest::Host
