// Any request to the sample API of the tests, and any direct invocation. Only listed statuses and
// failure messages leave, a success carries a body in the format it names, and the same request has
// the same response.
//
//   /query?n=5           the URL; or "!Query", the function to invoke
//   application/json     content type of the body, or of the arguments
//   */*                  the accepted format
//   name: value          header pairs; or arguments, one without a name by its place
//                        an empty line
//   {"x":1}              the body
#include <vector>

#include "binding/msgpack/msgpack_reader.h"
#include "fuzz/failure_messages.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "fuzz/samples.h"
#include "fuzz/strict_json.h"
#include "tests/api/sample_api.h"

namespace Kest::Fuzz {
namespace {

constexpr std::string_view kNotFoundMessages[] = {"Not found", "Invalid function",
                                                  "Unsupported builtin function"};
constexpr std::string_view kResultFailures[] = {
    "Failed to convert type %1 to BindingProperty for serialization",
};

struct Pair {
  std::string_view name;
  std::string_view value;
};

struct Call {
  std::string_view target;
  std::string_view contentType;
  std::string_view accept;
  std::vector<Pair> pairs;
  std::string_view body;
};

Call ReadCall(std::string_view text) {
  Call call;
  call.target = TakeUntil('\n', &text);
  call.contentType = TakeUntil('\n', &text);
  call.accept = TakeUntil('\n', &text);
  while (!text.empty()) {
    std::string_view line = TakeUntil('\n', &text);
    if (line.empty()) break;
    const std::string_view name = TakeUntil(':', &line);
    if (line.starts_with(' ')) line.remove_prefix(1);
    call.pairs.push_back({name, line});
  }
  call.body = text;
  return call;
}

Response Respond(const Sample::Api& api, const Call& call) {
  if (!call.target.starts_with('!')) {
    std::vector<HeaderPair> headers;
    for (const Pair& pair : call.pairs) headers.push_back({pair.name, pair.value});
    return api.dispatcher().Handle(
        {"GET", call.target, call.contentType, call.body, call.accept, headers});
  }
  std::vector<NamedValue> arguments;
  for (const Pair& pair : call.pairs) {
    NamedValue& argument = arguments.emplace_back();
    if (!pair.name.empty()) argument.name = pair.name;
    argument.contentType = call.contentType;
    argument.text = pair.value;
  }
  return api.dispatcher().Invoke(call.target.substr(1), arguments);
}

// The decoders' messages within those of each argument of each function.
std::vector<std::string> DecodingMessages(const Dispatcher& dispatcher) {
  const struct {
    std::string_view format;
    MessageList list;
  } kDecoders[] = {
      {"JSON", kJsonFailures},
      {"YAML", kYamlFailures},
      {"MessagePack", kMessagePackFailures},
      {"MessagePack", kMessagePackTruncations},
  };
  std::vector<std::string> texts;
  for (const Endpoint& endpoint : dispatcher.Endpoints()) {
    for (const ArgumentRecord& argument : endpoint.function.Arguments()) {
      const std::string owner =
          " value for parameter '" + argument.name + "' of '" + endpoint.function.Name() + "': ";
      for (const auto& [format, list] : kDecoders) {
        const std::string start = "Couldn't deserialize " + std::string(format) + owner;
        for (const std::string_view text : list) texts.push_back(start + std::string(text));
      }
      texts.push_back("Couldn't deserialize MessagePack" + owner +
                      "Extra MessgePack data found in body");
    }
  }
  return texts;
}

// These functions fail with the messages they are given.
bool FailsAsItIsAsked(std::string_view target) {
  return target.starts_with("/fail") || target.starts_with("/throw") || target == "!Fail" ||
         target == "!Throw";
}

void CheckSuccess(const Response& response) {
  Require(response.message.empty(), "a success has no message", response.message);
  if (response.status == 204) {
    return Require(response.body.empty(), "204 has no body", response.body);
  }
  Require(response.status == 200, "a success is 200 or 204");
  if (response.contentType == "application/json") {
    return Require(IsStrictJson(response.body), "the body is JSON", response.body);
  }
  RequireSame("application/x-msgpack", response.contentType, "the body has a format");
  ConversionContext context;
  size_t consumed = 0;
  ReadMessagePack(context,
                  {reinterpret_cast<const uint8_t*>(response.body.data()), response.body.size()},
                  &consumed);
  Require(context.Ok() && consumed == response.body.size(), "the body is MessagePack");
}

void CheckFailure(std::string_view target, const Response& response) {
  static const Sample::Api kApi;
  static const std::vector<std::string> kMessages = DecodingMessages(kApi.dispatcher());
  static const std::vector<std::string_view> kDecoding(kMessages.begin(), kMessages.end());
  Require(response.body.empty() && response.contentType.empty(), "a failure has no body");
  Require(!response.message.empty(), "a failure has a message");
  if (FailsAsItIsAsked(target)) return;
  switch (response.status) {
    case 400:
      return RequireListed(response.message, {kBindingFailures, kConversionFailures, kDecoding});
    case 404:
      return RequireListed(response.message, {kNotFoundMessages});
    default:
      Require(response.status == 500, "the status is listed", std::to_string(response.status));
      RequireListed(response.message, {kResultFailures, kJsonWriteFailures});
  }
}

}  // namespace

void CheckArgumentBinding(std::string_view input) {
  static const Sample::Api kApi;
  const Call call = ReadCall(input);
  const Response response = Respond(kApi, call);
  Require(response == Respond(kApi, call), "the same request has the same response");
  if (response.status < 300) {
    CheckSuccess(response);
  } else {
    CheckFailure(call.target, response);
  }
}

}  // namespace Kest::Fuzz
