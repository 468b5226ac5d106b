#include "host/openapi/api_help.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/json/json.h"

namespace Kest::Host {
namespace {

// A value of the document and its place: "help.types.3".
struct Node {
  const Json& value;
  std::string place;
};

// Reads the document; the first fault is kept, and values that do not fit become defaults.
class HelpReader {
 public:
  ApiHelp Read(const Node& root) {
    ApiHelp help;
    help.types = List<TypeHelp>(root, "types", &HelpReader::ReadType);
    help.events = List<EventHelp>(root, "events", &HelpReader::ReadEvent);
    return help;
  }
  const std::optional<Failure>& Fault() const { return fault_; }

 private:
  enum class Presence { kOptional, kRequired };

  // The member, or null when it is missing or of another kind.
  const Json* Member(const Node& node, const char* name, Json::value_t kind, Presence presence) {
    const auto found = node.value.find(name);
    if (found == node.value.end() && node.value.is_object() && presence == Presence::kOptional) {
      return nullptr;
    }
    if (found != node.value.end() && found->type() == kind) return &*found;
    const char* const fault = found == node.value.end() ? " has no member \"" : " cannot read \"";
    if (!fault_) fault_ = Failure{node.place + fault + name + "\""};
    return nullptr;
  }

  std::string String(const Node& node, const char* name, Presence presence = Presence::kOptional) {
    const Json* const member = Member(node, name, Json::value_t::string, presence);
    return member == nullptr ? "" : member->get_ref<const std::string&>();
  }

  template <typename Item>
  std::vector<Item> List(const Node& node, const char* name,
                         Item (HelpReader::*read)(const Node& item)) {
    std::vector<Item> items;
    const Json* const list = Member(node, name, Json::value_t::array, Presence::kOptional);
    for (size_t i = 0; list != nullptr && i < list->size(); ++i) {
      const std::string place = node.place + "." + name + "." + std::to_string(i);
      items.push_back((this->*read)({(*list)[i], place}));
    }
    return items;
  }

  TypeHelpName ReadTypeName(const Node& node) {
    const Json* const type = Member(node, "type", Json::value_t::object, Presence::kRequired);
    if (type == nullptr) return {};
    const Node parts{*type, node.place + ".type"};
    return {String(parts, "type"), String(parts, "elementType")};
  }

  FieldHelp ReadField(const Node& node) {
    const Json* const optional =
        Member(node, "optional", Json::value_t::boolean, Presence::kOptional);
    return {.name = String(node, "name", Presence::kRequired),
            .description = String(node, "description"),
            .type = ReadTypeName(node),
            .optional = optional == nullptr || optional->get<bool>()};
  }

  std::string ReadEnumerator(const Node& node) { return String(node, "name", Presence::kRequired); }

  TypeHelp ReadType(const Node& node) {
    return {.name = String(node, "name", Presence::kRequired),
            .nameSpace = String(node, "nameSpace"),
            .description = String(node, "description"),
            .fields = List<FieldHelp>(node, "fields", &HelpReader::ReadField),
            .enumerators = List<std::string>(node, "values", &HelpReader::ReadEnumerator)};
  }

  EventHelp ReadEvent(const Node& node) {
    return {.name = String(node, "name", Presence::kRequired),
            .description = String(node, "description"),
            .type = ReadTypeName(node)};
  }

  std::optional<Failure> fault_;
};

}  // namespace

const TypeHelp* ApiHelp::FindType(std::string_view name) const {
  const auto found = std::find_if(types.begin(), types.end(),
                                  [name](const TypeHelp& type) { return type.name == name; });
  return found == types.end() ? nullptr : &*found;
}

Maybe<ApiHelp> ReadApiHelp(std::string_view json) {
  const Json document = ParseJson(json);
  if (document.is_discarded()) return Failure{"help is not JSON"};
  HelpReader reader;
  ApiHelp help = reader.Read({document, "help"});
  if (reader.Fault()) return *reader.Fault();
  return help;
}

}  // namespace Kest::Host
