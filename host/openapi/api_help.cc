#include "host/openapi/api_help.h"

#include <algorithm>
#include <utility>

#include "host/world/json/field_reader.h"
#include "host/world/json/json_reader.h"

namespace Kest::Host {
namespace {

TypeHelpName ReadTypeName(FieldReader& fields, IssueReport& report) {
  const JsonValue* const value = fields.Find("type");
  if (value == nullptr) {
    report.Add(fields.Place("type"), "member \"type\" is missing");
    return {};
  }
  FieldReader parts(*value, report);
  return {parts.TextOr("type", ""), parts.TextOr("elementType", "")};
}

FieldHelp ReadField(const JsonValue& value, IssueReport& report) {
  FieldReader fields(value, report);
  FieldHelp field;
  field.name = fields.Text("name");
  field.description = fields.TextOr("description", "");
  field.type = ReadTypeName(fields, report);
  field.optional = fields.FlagOr("optional", true);
  return field;
}

TypeHelp ReadType(const JsonValue& value, IssueReport& report) {
  FieldReader fields(value, report);
  TypeHelp type;
  type.name = fields.Text("name");
  type.nameSpace = fields.TextOr("nameSpace", "");
  type.description = fields.TextOr("description", "");
  for (const JsonValue& field : fields.ListOr("fields")) {
    type.fields.push_back(ReadField(field, report));
  }
  for (const JsonValue& enumerator : fields.ListOr("values")) {
    type.enumerators.push_back(FieldReader(enumerator, report).Text("name"));
  }
  return type;
}

EventHelp ReadEvent(const JsonValue& value, IssueReport& report) {
  FieldReader fields(value, report);
  EventHelp event;
  event.name = fields.Text("name");
  event.description = fields.TextOr("description", "");
  event.type = ReadTypeName(fields, report);
  return event;
}

}  // namespace

const TypeHelp* ApiHelp::FindType(std::string_view name) const {
  const auto found = std::find_if(types.begin(), types.end(),
                                  [name](const TypeHelp& type) { return type.name == name; });
  return found == types.end() ? nullptr : &*found;
}

Maybe<ApiHelp> ReadApiHelp(std::string_view json) {
  const auto value = ReadJson(json);
  if (!value) return Failure{DescribeIssue("help", value.GetFailure())};
  IssueReport report;
  FieldReader lists(value.GetValue(), report);
  ApiHelp help;
  for (const JsonValue& type : lists.ListOr("types")) help.types.push_back(ReadType(type, report));
  for (const JsonValue& event : lists.ListOr("events")) {
    help.events.push_back(ReadEvent(event, report));
  }
  if (report.failed()) return Failure{DescribeIssue("help", report.issue())};
  return help;
}

}  // namespace Kest::Host
