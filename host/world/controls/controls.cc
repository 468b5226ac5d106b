#include "host/world/controls/controls.h"

#include <algorithm>

#include "host/world/controls/control_call.h"
#include "host/world/input/document.h"
#include "host/world/input/url_text.h"

namespace Kest::Host {
namespace {

struct ControlRow {
  ControlDescription description;
  ControlFunction call;
};

constexpr ControlRow kControls[] = {
    {{.method = "GET",
      .path = "/_host/world",
      .operationId = "GetWorld",
      .summary = "What the emulated platform holds",
      .response = R"("HostWorld")"},
     ShowWorld},
    {{.method = "POST",
      .path = "/_host/login",
      .operationId = "SignIn",
      .summary = "Signs the player in",
      .body = R"({"summonerId?": "uint64", "accountId?": "uint64"})",
      .response = R"({"summonerId": "uint64", "accountId": "uint64"})"},
     SignIn},
    {{.method = "POST",
      .path = "/_host/logout",
      .operationId = "SignOut",
      .summary = "Signs the player out",
      .response = R"({"wasSignedIn": "boolean"})"},
     SignOut},
    {{.method = "PUT",
      .path = "/_host/summoner",
      .operationId = "SetSummoner",
      .summary = "Sets the player's level",
      .body = R"({"summonerLevel": "int32 0..2147483647"})",
      .response = R"({"summonerLevel": "int32 0..2147483647"})"},
     SetSummoner},
    {{.method = "PUT",
      .path = "/_host/gameflow",
      .operationId = "SetGameflow",
      .summary = "Sets the phase of the game; null ends it",
      .body = R"({"phase?": "string|null"})",
      .response = R"({"phase": "string|null"})"},
     SetGameflow},
    {{.method = "PUT",
      .path = "/_host/configuration/{name}",
      .operationId = "SetConfiguration",
      .summary = "Sets a configuration value",
      .body = kAnyValue,
      .response = R"({"name": "string", "value": "any"})"},
     SetConfiguration},
    {{.method = "DELETE",
      .path = "/_host/configuration/{name}",
      .operationId = "RemoveConfiguration",
      .summary = "Removes a configuration value",
      .response = R"({"name": "string"})"},
     RemoveConfiguration},
    {{.method = "PUT",
      .path = "/_host/collections/{collection}/{id}",
      .operationId = "SetOwnership",
      .summary = "Changes what the player owns",
      .parameters = R"({"collection": "=champions|skins|chromas|ward-skins|summoner-icons|emotes)"
                    R"(|tournament-logos", "id": "int64"})",
      .body = R"({"owned?": "boolean", "rented?": "boolean", "freeToPlayReward?": "boolean"})",
      .response = R"({"owned": "boolean", "rented": "boolean", "freeToPlayReward": "boolean"})"},
     SetOwnership},
    {{.method = "POST",
      .path = "/_host/inventory",
      .operationId = "ChangeInventory",
      .summary = "Changes a count without an event; the next retrieval shows it",
      .body = R"({"lootName": "string", "delta": "int32", "refId?": "string"})",
      .response = R"({"lootName": "string", "refId": "string", "count": "int32"})"},
     ChangeInventory},
    {{.method = "POST",
      .path = "/_host/messages",
      .operationId = "PushMessage",
      .summary = "Pushes a platform message",
      .body = R"({"name?": {"$": "string",)"
              R"( "description": "A message of the world, instead of the members below."},)"
              R"( "clientId?": "string", "subtopic?": "string", "typeName?": "string",)"
              R"( "body?": "any", "as?": {"$": "=object|text", "default": "object"}})",
      .response = R"({"clientId": "string", "subtopic": "string", "typeName": "string",)"
                  R"( "body": "any"})"},
     PushMessage},
    {{.method = "POST",
      .path = "/_host/login-packet",
      .operationId = "SetLoginPacket",
      .summary = "Replaces the messages that wait for the player",
      .body = R"({"simpleMessages?": [{"msgId?": "string", "type?": "string",)"
              R"( "params?": ["string"], "body?": "any"}]})",
      .response = R"({"messages": ["string"]})"},
     SetLoginPacket},
    {{.method = "PUT",
      .path = "/_host/token",
      .operationId = "SetToken",
      .summary = "Sets the signed inventory's token; null stands for none",
      .body = R"({"token": "string|null"})",
      .response = R"({"token": "string|null"})"},
     SetToken},
    {{.method = "DELETE",
      .path = "/_host/token",
      .operationId = "ResetToken",
      .summary = "Goes back to the world's own token",
      .response = R"("object")"},
     ResetToken},
    {{.method = "PUT",
      .path = "/_host/service/{method}",
      .operationId = "OverrideService",
      .summary = "Makes the next calls of a service method slow or fail",
      .body = R"({"latency?": {"$": "integer 0..600000", "description": "Milliseconds."},)"
              R"( "error?": "string", "status?": "string",)"
              R"( "times?": {"$": "integer 1..1000000", "default": 1}})",
      .response = R"({"method": "string", "latency": "integer|null", "error": "string",)"
                  R"( "status": "string", "times": "integer 0.."})"},
     OverrideService},
    {{.method = "DELETE",
      .path = "/_host/service/{method}",
      .operationId = "ResetService",
      .summary = "Lets calls of a service method succeed at once again",
      .response = R"({"method": "string"})"},
     ResetService},
};

bool Matches(std::string_view pathTemplate, const std::vector<std::string>& parts) {
  const std::vector<std::string> wanted = PathParts(pathTemplate.substr(kControlPrefix.size()));
  return std::equal(wanted.begin(), wanted.end(), parts.begin(), parts.end(),
                    [](const std::string& literal, const std::string& part) {
                      return literal.starts_with('{') || literal == part;
                    });
}

WorldResponse Refuse(const Failure& failure) {
  return {failure.status, "", "", failure.text};
}

// The row of that path and method; else why there is none.
Maybe<const ControlRow*> FindRow(std::string_view method, const std::vector<std::string>& parts,
                                 std::string_view path) {
  std::string methods;
  for (const ControlRow& row : kControls) {
    if (!Matches(row.description.path, parts)) continue;
    if (method == row.description.method) return &row;
    methods += (methods.empty() ? "" : ", ") + std::string(row.description.method);
  }
  if (methods.empty()) return Failure{"there is no control " + std::string(path), 404};
  return Failure{"this control takes " + methods + ", not " + std::string(method), 405};
}

}  // namespace

std::vector<ControlDescription> WorldControls() {
  std::vector<ControlDescription> descriptions;
  for (const ControlRow& row : kControls) descriptions.push_back(row.description);
  return descriptions;
}

WorldResponse CallControl(Platform& platform, std::string_view method, std::string_view path,
                          std::string_view body) {
  std::vector<std::string> parts = PathParts(UrlPath(path));
  if (parts.empty()) return Refuse({"there is no control of an empty name", 404});
  const auto row = FindRow(method, parts, path);
  if (!row) return Refuse(row.GetFailure());
  if (body.empty() && row.GetValue()->description.body != kAnyValue) body = "{}";
  auto document = Document::FromJson("body", body);
  if (!document) return Refuse(document.GetFailure());

  const ControlResult result =
      row.GetValue()->call(platform, {std::move(parts), std::move(document.GetValue())});
  if (!result) return Refuse(result.GetFailure());
  return {200, "application/json", WriteJson(result.GetValue()), ""};
}

}  // namespace Kest::Host
