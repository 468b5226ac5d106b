// Named schemas of the development host, in the notation of schema_shorthand.h.
#pragma once

#include <string_view>

namespace Kest::Host {

constexpr std::string_view kControlSchemas = R"({
  "Problem": {
    "$": {"status": "int32 400..599",
          "title": {"$": "string", "description": "The reason phrase of the status."},
          "detail": {"$": "string", "description": "What happened."}},
    "description": "A failure, of the plugin or of the development host."
  },
  "GapEvent": {
    "$": {"from": "uint64", "to": "uint64",
          "restarted": {"$": "boolean",
                        "description": "The reader's position was of an earlier run of the host."}},
    "description": "What an event of the kind \"gap\" reports: the events of these ids are lost to the reader."
  },
  "EventStreamMessage": {
    "$": "any",
    "description": "One message of the event stream, as a browser's EventSource hands it out: `data` is a JSON text.",
    "oneOf": [
      {"id": {"$": "string", "pattern": "^[0-9]+$"}, "event": "=resource",
       "data": {"$": "string", "contentMediaType": "application/json",
                "contentSchema": {"$ref": "#/components/schemas/ResourceEvent"}}},
      {"id": {"$": "string", "pattern": "^[0-9]+$"}, "event": "=gap",
       "data": {"$": "string", "contentMediaType": "application/json",
                "contentSchema": {"$ref": "#/components/schemas/GapEvent"}}}
    ]
  },
  "HostIndex": {
    "plugin": "string", "version": "string", "events": "string", "health": "string",
    "help": "string", "openapi": "string",
    "endpoints": [{"method": "string", "path": "string", "function": "string"}]
  },
  "HostHealth": {
    "$": {
      "status": "=running|stopped",
      "tasks": {"queued": "integer 0..", "delayed": "integer 0..",
                "running": [{"name": "string", "waitsFor?": "string"}]},
      "events": {"first": "uint64", "last": "uint64"},
      "plugin?": "string", "version?": "string", "userAgent?": "string",
      "subscriptions?": ["string"],
      "statistics?": {"requestsHandled": "uint64", "requestsFailed": "uint64",
                      "eventsReceived": "uint64", "eventsPublished": "uint64",
                      "warningsLogged": "uint64", "errorsLogged": "uint64"}
    },
    "description": "The optional members are there while a plugin runs."
  },
  "HostWorld": {
    "$": {
      "name": "string",
      "session": {"$": "any", "oneOf": [{"summonerId": "uint64", "accountId": "uint64"}, "null"]},
      "summonerLevel": "int32 0..2147483647",
      "phase": "string|null",
      "configuration": {"*": "any"},
      "inventory": [{"lootName": "string", "refId": "string", "count": "int32", "expiryTime": "int64"}],
      "collections": {
        "$": {"*": {"*": "=OWNED|RENTED|F2P|NONE"}},
        "propertyNames": {
          "type": "string",
          "enum": ["champions", "skins", "chromas", "ward-skins", "summoner-icons", "emotes", "tournament-logos"]
        }
      },
      "newPlayerChestGranted": "boolean",
      "loginMessages": ["string"],
      "messages": ["string"],
      "acknowledgements": [{"accountId": "uint64", "msgId": "string", "command": "string"}],
      "serviceCalls": {"*": "integer 0.."},
      "outstanding": [{"key": "string", "call": "string", "milliseconds": "int64"}]
    },
    "description": "What the emulated platform holds."
  }
})";

}  // namespace Kest::Host
