// One row of the timeline: something that happened in the host, and what led to it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/json/json.h"

namespace Kest::Host {

enum class RowKind {
  kRequest,          // of a client, to the plugin
  kControl,          // of a client, to the host; those that only read have no row
  kResponse,         // to either
  kSiblingRequest,   // of the plugin, to a sibling
  kSiblingResponse,  // to it
  kServiceCall,      // of the plugin, to the platform's service
  kServiceResponse,  // to it: the event, or the response itself
  kResource,         // a sibling's resource has changed
  kMessage,          // a message of the platform
  kTask,             // a module task that the plugin has posted begins
  kEvent,            // the plugin has published a change
  kLog,              // a line of the plugin or the host
  kFault,            // a fault that was asked for takes effect
  kClock,            // the host's clock was set
  kSession,          // the plugin is started, stopped, or read for the first time
};

std::string_view RowKindName(RowKind kind);
// Nothing for a name that no kind has.
std::optional<RowKind> ReadRowKind(std::string_view name);
// All names: "request, control, ...".
std::string RowKindNames();

struct TimelineRow {
  RowKind kind;
  std::string name = {};               // the path, "service.method", the task's name
  std::string method = {};             // of a request
  std::string status = {};             // "200", "OK", "Create", "ERROR"
  std::string summary = {};            // one line for people
  std::string payload = {};            // the body
  std::string payloadType = {};        // its content type
  std::optional<uint64_t> cause = {};  // without one: what the code that runs now follows from
  bool endsCause = false;              // it is the response to its cause
  uint64_t event = 0;                  // its id in the stream of events; 0: it is none

  // Of a client's request: what a command that repeats it needs beside the above.
  std::string host = {};
  std::string accept = {};

  // What the timeline adds.
  uint64_t id = 0;
  int64_t time = 0;                      // milliseconds since 1970
  std::optional<int64_t> duration = {};  // milliseconds, of what has ended
  size_t size = 0;                       // of the body, before it was shortened
  bool isShortened = false;

  size_t Bytes() const;
};

// Without the payload.
Json RowJson(const TimelineRow& row);
// The payload: as JSON where it is JSON, complete and not nested deeply, else as a string; bytes
// that are no UTF-8 as base64 with "encoding".
void AddPayload(const TimelineRow& row, Json* json);

// `text` without line feeds and at most `bytes` long; "..." is where the rest was.
std::string Shorten(std::string_view text, size_t bytes);

}  // namespace Kest::Host
