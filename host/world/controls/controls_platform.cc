#include <algorithm>

#include "base/ascii.h"
#include "host/world/controls/control_call.h"
#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

// The message a body names or spells out.
PreparedMessage ReadMessage(FieldReader& fields, const WorldData& data) {
  PreparedMessage message;
  if (const Json* name = fields.Find("name")) {
    const auto prepared = data.messages.find(fields.StringOr("name", ""));
    if (prepared != data.messages.end()) return prepared->second;
    fields.FailPart(*name, "this world has no message " + WriteJson(*name));
    return message;
  }
  message.clientId = fields.StringOr("clientId", "");
  message.subtopic = fields.StringOr("subtopic", kDialogMessageSubtopic);
  message.typeName = fields.StringOr("typeName", kMasteryGrantType);
  if (const Json* body = fields.Find("body")) {
    message.body = *body;
  } else {
    fields.Fail(R"(one of "name" and "body" is needed)");
  }
  return message;
}

bool IsPlainName(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

// The known name that `name` is in another case; empty when there is none.
std::string_view MeantConfiguration(const std::string& name) {
  std::vector<std::string_view> known(kConfigurationSwitches.begin(), kConfigurationSwitches.end());
  known.insert(known.end(), kConfigurationNumbers.begin(), kConfigurationNumbers.end());
  for (const std::string_view word : known) {
    if (word != name && EqualIgnoringCase(word, name)) return word;
  }
  return "";
}

}  // namespace

ControlResult SetConfiguration(Platform& platform, const ControlCall& call) {
  const std::string& name = call.path.at("name");
  if (!IsPlainName(name)) {
    return Failure{"the name of a configuration value is made of letters and digits", 400};
  }
  if (const std::string_view meant = MeantConfiguration(name); !meant.empty()) {
    return Failure{
        "there is no configuration value " + name + "; did you mean " + std::string(meant) + "?",
        400};
  }
  platform.session.SetConfiguration(name, call.body.root());
  return Json({{"name", name}, {"value", call.body.root()}});
}

ControlResult RemoveConfiguration(Platform& platform, const ControlCall& call) {
  const std::string& name = call.path.at("name");
  if (!platform.session.RemoveConfiguration(name)) {
    return Failure{"there is no configuration value " + name, 404};
  }
  return Json({{"name", name}});
}

ControlResult ChangeDefinition(Platform& platform, const ControlCall& call) {
  const std::string& lootName = call.path.at("lootName");
  const auto found = platform.data.definitionIndex.find(lootName);
  if (found == platform.data.definitionIndex.end()) {
    return Failure{"there is no definition " + lootName, 404};
  }
  FieldReader fields(call.body);
  const int64_t value = fields.Integer("value", 0, kMax32);
  if (!fields.Finish()) return fields.failure();
  platform.data.definitions[found->second].record["value"] = value;
  return Json({{"lootName", lootName},
               {"value", value},
               {"lastUpdate", ++platform.data.versions.lootItems}});
}

ControlResult ChangeRecipe(Platform& platform, const ControlCall& call) {
  const std::string& recipeName = call.path.at("recipeName");
  const auto found = platform.data.recipeIndex.find(recipeName);
  if (found == platform.data.recipeIndex.end()) {
    return Failure{"there is no recipe " + recipeName, 404};
  }
  FieldReader fields(call.body);
  const std::string crafterName = fields.String("crafterName");
  if (!fields.Finish()) return fields.failure();
  platform.data.recipes[found->second].record["crafterName"] = crafterName;
  return Json({{"recipeName", recipeName},
               {"crafterName", crafterName},
               {"lastUpdate", ++platform.data.versions.recipes}});
}

ControlResult PushMessage(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  PreparedMessage message = ReadMessage(fields, platform.data);
  const std::string as = fields.StringOr("as", "object");
  if (as != "object" && as != "text") {
    fields.FailAt("as", "\"as\" must be \"object\" or \"text\", found " + WriteJson(as));
  }
  if (!fields.Finish()) return fields.failure();
  if (as == "text") message.body = WriteJson(message.body);
  Json event = Json{{"clientId", message.clientId},
                    {"subtopic", message.subtopic},
                    {"typeName", message.typeName},
                    {"body", message.body}};
  platform.outbox.push_back(
      {WorldEvent::Channel::kService, "OnSvdsEvent_" + message.subtopic, WriteJson(event), 0});
  return event;
}

ControlResult SetLoginPacket(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  std::vector<LoginMessage> messages;
  Json ids = Json::array();
  fields.ForEach("simpleMessages", [&](FieldReader& message) {
    messages.push_back(ReadLoginMessage(message));
    ids.push_back(messages.back().msgId);
  });
  if (!fields.Finish()) return fields.failure();
  platform.session.SetLoginMessages(std::move(messages));
  return Json({{"messages", std::move(ids)}});
}

ControlResult SetToken(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  TokenOverride override;
  const Json* value = fields.Find("token");
  if (value == nullptr) {
    fields.Fail("member \"token\" is missing");
  } else if (!value->is_null()) {
    override.token = fields.StringOr("token", "");
  }
  if (!fields.Finish()) return fields.failure();
  platform.data.state.token = override;
  return Json({{"token", *value}});
}

ControlResult ResetToken(Platform& platform, const ControlCall&) {
  platform.data.state.token.reset();
  return Json(Json::object());
}

}  // namespace Kest::Host
