#include "host/record/arguments.h"

#include <algorithm>
#include <iterator>

#include "base/utf8.h"
#include "host/json/base64.h"

namespace Kest::Host {
namespace {

constexpr const char* kBase64 = "base64";

std::optional<std::string> BytesOf(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_object() || value.size() != 1) return std::nullopt;
  const auto encoded = value.find(kBase64);
  if (encoded == value.end() || !encoded->is_string()) return std::nullopt;
  return DecodeBase64(encoded->get_ref<const std::string&>());
}

}  // namespace

Json BytesJson(std::string_view bytes) {
  if (IsValidUtf8(bytes)) return Json(bytes);
  return Json{{kBase64, EncodeBase64(bytes)}};
}

Json RequestJson(const KestRequest& request) {
  Json json = {{"method", BytesJson(request.method)}, {"url", BytesJson(request.url)}};
  Json headers = Json::array();
  for (size_t i = 0; i < request.headerCount; ++i) {
    headers.push_back(BytesJson(request.headers[i].name));
    headers.push_back(BytesJson(request.headers[i].value));
  }
  json["headers"] = std::move(headers);
  json["contentType"] = BytesJson(request.contentType);
  json["body"] = BytesJson(request.body);
  json["accept"] = BytesJson(request.accept);
  return json;
}

Json ResponseJson(const KestResponse* response) {
  if (response == nullptr) return nullptr;
  return {{"status", response->status},
          {"message", BytesJson(response->message)},
          {"contentType", BytesJson(response->contentType)},
          {"body", BytesJson(response->body)}};
}

Json ValuesJson(const KestValue* values, size_t count) {
  Json json = Json::array();
  for (size_t i = 0; i < count; ++i) {
    json.push_back({{"name", BytesJson(values[i].name)},
                    {"contentType", BytesJson(values[i].contentType)},
                    {"bytes", BytesJson(values[i].bytes)}});
  }
  return json;
}

Json StatisticsJson(const KestStatistics& statistics) {
  const auto number = [](const uint32_t(&halves)[2]) {
    return uint64_t{halves[1]} << 32 | halves[0];
  };
  return {{"requestsHandled", number(statistics.requestsHandled)},
          {"requestsFailed", number(statistics.requestsFailed)},
          {"eventsReceived", number(statistics.eventsReceived)},
          {"eventsPublished", number(statistics.eventsPublished)},
          {"warningsLogged", number(statistics.warningsLogged)},
          {"errorsLogged", number(statistics.errorsLogged)}};
}

const Json* ArgumentReader::Find(const char* name) {
  if (!problem_.empty() || !arguments_.is_object()) return nullptr;
  const auto found = arguments_.find(name);
  return found == arguments_.end() ? nullptr : &*found;
}

void ArgumentReader::Miss(const char* name, std::string_view kind) {
  if (!problem_.empty()) return;
  problem_.append("\"").append(name).append("\" must be ").append(kind);
}

std::string ArgumentReader::Bytes(const char* name) {
  const Json* const found = Find(name);
  auto bytes = found != nullptr ? BytesOf(*found) : std::nullopt;
  if (bytes) return std::move(*bytes);
  Miss(name, "a string, or an object with \"base64\"");
  return {};
}

int64_t ArgumentReader::ReadInteger(const char* name) {
  const Json* const found = Find(name);
  if (found != nullptr && found->is_number_integer()) return found->get<int64_t>();
  Miss(name, "an integer");
  return 0;
}

std::vector<Json> ArgumentReader::List(const char* name) {
  const Json* const found = Find(name);
  if (found != nullptr && found->is_array()) return {found->begin(), found->end()};
  Miss(name, "a list");
  return {};
}

KestRequest OwnedRequest::View() {
  for (size_t i = 0; i + 1 < headers.size(); i += 2) {
    headerViews.push_back({ToText(headers[i]), ToText(headers[i + 1])});
  }
  return {ToText(method),      ToText(url),   headerViews.data(), headerViews.size(),
          ToText(contentType), ToBytes(body), ToText(accept)};
}

KestResponse OwnedResponse::View() const {
  return {status, ToText(message), ToText(contentType), ToBytes(body)};
}

OwnedRequest ReadRequest(ArgumentReader& reader) {
  OwnedRequest request = {.method = reader.Bytes("method"),
                          .url = reader.Bytes("url"),
                          .contentType = reader.Bytes("contentType"),
                          .body = reader.Bytes("body"),
                          .accept = reader.Bytes("accept"),
                          .headers = {}};
  for (const Json& header : reader.List("headers")) {
    request.headers.push_back(BytesOf(header).value_or(""));
  }
  return request;
}

OwnedResponse ReadResponse(ArgumentReader& reader) {
  return {.status = reader.Integer<int32_t>("status"),
          .message = reader.Bytes("message"),
          .contentType = reader.Bytes("contentType"),
          .body = reader.Bytes("body")};
}

}  // namespace Kest::Host
