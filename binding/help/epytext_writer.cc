#include "binding/help/epytext_writer.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace Kest {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// A line break would end a field, an empty line the whole item: text stays on one line.
std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '-' && escaped.empty()) {
      escaped += "E{-}";
    } else if (c == '{') {
      escaped += "E{lb}";
    } else if (c == '}') {
      escaped += "E{rb}";
    } else if (c != '\r' && c != '\n') {
      escaped += c;
    } else if (!escaped.empty() && !escaped.ends_with(' ')) {
      escaped += ' ';
    }
  }
  return escaped;
}

std::string ShowType(const TypeIdentifier& type) {
  std::string name(TypeName(type));
  switch (type.id) {
    case TypeId::kBlob:
      return "bytearray";
    case TypeId::kVector:
      return "list[" + ShowType(type.Element()) + "]";
    case TypeId::kMap:
      return "dict[" + ShowType(type.Element()) + "]";
    case TypeId::kEnum:
    case TypeId::kStruct:
      return type.record != nullptr ? "L{" + name + "}" : name;
    default:
      return name;
  }
}

// Collects the lines of the items.
class ItemList {
 public:
  void Begin(std::string_view kind, std::string_view name) {
    if (!text_.empty()) text_ += kLineEnd;
    Line({kind, " ", name});
  }
  void Line(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) text_ += part;
    text_ += kLineEnd;
  }
  void Description(std::string_view text) {
    if (!text.empty()) Line({Escape(text)});
  }
  void Type(std::string_view name, const TypeIdentifier& type) {
    Line({"@type ", name, ": ", ShowType(type)});
  }
  template <typename Names>
  void Tags(const Names& tags) {
    if (tags.empty()) return;
    std::string joined;
    for (const auto& tag : tags) joined.append(joined.empty() ? "" : ", ").append(tag);
    Line({"@tags: ", joined});
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

void WriteFunction(const FunctionRecord& function, ItemList& items) {
  items.Begin("function", FullName(function.nameSpace, function.name));
  items.Description(function.description);
  for (const ArgumentRecord& argument : function.arguments) {
    items.Line({"@param ", argument.name, ": ", argument.optional ? "(optional) " : "",
                Escape(argument.description)});
    items.Type(argument.name, argument.type);
  }
  if (function.returns.id != TypeId::kNone) items.Line({"@rtype: ", ShowType(function.returns)});
  if (function.threadSafe) items.Line({"@threadsafe: true"});
  if (function.async.id != TypeId::kNone) items.Line({"@async: ", ShowType(function.async)});
  items.Tags(function.tags);
}

void WriteType(const TypeRecord& type, ItemList& items) {
  items.Begin(type.kind == TypeKind::kStructure ? "struct" : "enum", type.name);
  items.Description(type.description);
  for (const FieldRecord& field : type.fields) {
    items.Line({"@ivar ", field.name, ": ", Escape(field.description)});
    items.Type(field.name, field.type);
  }
  for (const EnumeratorRecord& enumerator : type.enumerators) {
    items.Line({"@cvar ", enumerator.name, ": (", std::to_string(enumerator.value), ") ",
                Escape(enumerator.description)});
  }
  items.Line({"@size: ", std::to_string(type.size)});
  items.Tags(type.tags);
}

void WriteEvent(const EventRecord& event, ItemList& items) {
  const bool hasPayload = event.payload.id != TypeId::kNone;
  items.Begin("event", event.name + (hasPayload ? ": " + ShowType(event.payload) : ""));
  items.Description(event.description);
  items.Tags(event.tags);
}

}  // namespace

std::string WriteEpytext(const ApiRecords& api) {
  ItemList items;
  for (const FunctionRecord* function : api.functions) WriteFunction(*function, items);
  for (const TypeRecord* type : api.types) WriteType(*type, items);
  for (const EventRecord* event : api.events) WriteEvent(*event, items);
  return items.Take();
}

}  // namespace Kest
