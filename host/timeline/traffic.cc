#include "host/timeline/traffic.h"

#include <chrono>
#include <iterator>
#include <optional>
#include <utility>

#include "host/json/json.h"
#include "host/world/data/inventory.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kJson = "application/json";
constexpr std::string_view kInvokePath = "/tav-login/v1/session/invoke";
constexpr std::string_view kAcceptingPaths[] = {"/tav-login/v1/service-proxy-uuid-requests",
                                                "/tav-login/v1/service-proxy-method-requests"};
constexpr std::string_view kTokenPath = "/tav-inventory/v1/signedInventory";
constexpr std::string_view kMessageEvent = "OnSvdsEvent";
constexpr std::string_view kResourcePrefix = "OnJsonApiEvent_";
constexpr std::string_view kFailed = "ERROR";
constexpr size_t kMostResultBytes = size_t{4} * 1024 * 1024;  // of a transaction

std::string_view PathOf(std::string_view url) {
  return url.substr(0, url.find('?'));
}

bool IsAccepting(std::string_view url) {
  const std::string_view path = PathOf(url);
  return path == kAcceptingPaths[0] || path == kAcceptingPaths[1];
}

std::string StringOf(const Json& record, const char* name) {
  const bool isThere = record.is_object() && record.contains(name) && record[name].is_string();
  return isThere ? record[name].get<std::string>() : std::string();
}

std::string MethodOf(const Json& message) {
  return StringOf(message, "serviceName") + "." + StringOf(message, "methodName");
}

// What a transaction asks for: its second argument, itself JSON.
Json OrderOf(const Json& call) {
  if (!call.contains("args") || !call["args"].is_array() || call["args"].size() != 2) return {};
  return call["args"][1].is_string() ? ParseJson(call["args"][1].get_ref<const std::string&>())
                                     : Json();
}

Json LedgerOrder(const Json& order) {
  Json asked = Json::object();
  if (!order.is_object()) return asked;
  for (const auto& [from, to] :
       {std::pair("recipeName", "recipe"), std::pair("lootName", "lootName"),
        std::pair("repeat", "repeat")}) {
    if (order.contains(from) && order[from].is_primitive()) asked[to] = order[from];
  }
  if (!order.contains("lootNameRefIds") || !order["lootNameRefIds"].is_array()) return asked;
  Json& items = asked["items"] = Json::array();
  for (const Json& item : order["lootNameRefIds"]) {
    items.push_back(LootKey{StringOf(item, "lootName"), StringOf(item, "refId")}.LootId());
  }
  return asked;
}

std::string ArgumentsSummary(const Json& call) {
  std::string summary;
  if (!call.is_object() || !call.contains("args")) return summary;
  for (const Json& argument : call["args"]) {
    summary += summary.empty() ? "" : ", ";
    summary += argument.is_primitive() ? WriteJson(argument) : "{...}";
  }
  return summary;
}

std::string OrderSummary(const Json& asked) {
  std::string summary = StringOf(asked, "recipe") + StringOf(asked, "lootName");
  if (asked.contains("repeat") && asked["repeat"] != 1)
    summary += " x" + WriteJson(asked["repeat"]);
  if (asked.contains("items")) {
    std::string separator = " from ";
    for (const Json& item : asked["items"]) {
      summary += separator + item.get<std::string>();
      separator = ", ";
    }
  }
  return summary;
}

std::string Counts(const Json& result, const char* list, std::string_view label) {
  std::string text;
  if (!result.contains(list) || !result[list].is_array()) return text;
  for (const Json& record : result[list]) {
    text.append(text.empty() ? label : ", ");
    text +=
        record.contains("count") && record["count"].is_number() ? WriteJson(record["count"]) : "";
    text += " " + StringOf(record, "lootName");
  }
  return text.empty() ? text : text + "; ";
}

}  // namespace

// ---- Requests of the plugin --------------------------------------------------------------------

uint64_t Traffic::AddRequest(std::string_view method, std::string_view url, const Message& sent) {
  if (method == "POST" && (IsAccepting(url) || PathOf(url) == kInvokePath))
    return AddCall(sent.body);
  return timeline_->Add({.kind = RowKind::kSiblingRequest,
                         .name = std::string(url),
                         .method = std::string(method),
                         .payload = std::string(sent.body),
                         .payloadType = std::string(sent.contentType)});
}

uint64_t Traffic::AddCall(std::string_view body) {
  const Json call = ParseJson(body);
  const std::string method = MethodOf(call);
  const bool isTransaction = IsTransaction(method);
  const Json asked = isTransaction ? LedgerOrder(OrderOf(call)) : Json::object();
  const uint64_t row =
      timeline_->Add({.kind = RowKind::kServiceCall,
                      .name = method,
                      .summary = asked.empty() ? ArgumentsSummary(call) : OrderSummary(asked),
                      .payload = std::string(body),
                      .payloadType = std::string(kJson)});
  if (isTransaction) {
    ledger_->Open(row, {method, timeline_->NearestCause(row, RowKind::kRequest), asked});
  }
  return row;
}

uint64_t Traffic::AddResponse(uint64_t request, std::string_view url, int status,
                              std::string_view failure, const Message& received) {
  if (PathOf(url) == kInvokePath || (IsAccepting(url) && status >= 400)) {
    return AddServiceResponse(request, timeline_->NameOf(request), failure, received.body);
  }
  if (IsAccepting(url)) return request;
  std::string_view body = received.body;
  if (PathOf(url) == kTokenPath) {
    for (const Json& token : ParseJson(body)) {
      if (token.is_string()) timeline_->Hide(token.get_ref<const std::string&>());
    }
  }
  return timeline_->Add({.kind = RowKind::kSiblingResponse,
                         .name = std::string(url),
                         .status = std::to_string(status),
                         .summary = std::string(failure),
                         .payload = std::string(body),
                         .payloadType = std::string(received.contentType),
                         .cause = request,
                         .endsCause = true});
}

uint64_t Traffic::AddServiceResponse(uint64_t call, std::string_view method, std::string_view error,
                                     std::string_view result) {
  TimelineRow row = {.kind = RowKind::kServiceResponse,
                     .name = std::string(method),
                     .status = error.empty() ? "OK" : std::string(kFailed),
                     .summary = std::string(error),
                     .payload = std::string(result),
                     .payloadType = std::string(kJson),
                     .cause = call,
                     .endsCause = true};
  if (!IsTransaction(method)) return timeline_->Add(std::move(row));
  Ledger::Response entry = {.status = row.status, .details = row.summary};
  if (error.empty() && result.size() <= kMostResultBytes) entry.result = ParseJson(result);
  if (error.empty() && !entry.result.is_object()) {
    entry.status = kFailed;
    entry.details = "The result is no transaction.";
  } else if (error.empty()) {
    row.status = entry.status = StringOf(entry.result, "status");
    entry.details = StringOf(entry.result, "details");
    row.summary = entry.details.empty() ? Counts(entry.result, "removed", "took ") +
                                              Counts(entry.result, "added", "gave ")
                                        : entry.details;
  }
  entry.row = timeline_->Add(std::move(row));
  entry.time = timeline_->Now();
  ledger_->Close(call, entry);
  return entry.row;
}

// ---- Events to the plugin ----------------------------------------------------------------------

uint64_t Traffic::AddServiceEvent(std::string_view name, std::string_view payload, uint64_t cause) {
  if (name.starts_with(kMessageEvent)) {
    const Json message = ParseJson(payload);
    return timeline_->Add({.kind = RowKind::kMessage,
                           .name = StringOf(message, "subtopic"),
                           .summary = StringOf(message, "typeName"),
                           .payload = std::string(payload),
                           .payloadType = std::string(kJson),
                           .cause = cause});
  }
  const Json response = ParseJson(payload);
  const bool isFailure = StringOf(response, "status") == kFailed;
  std::string error = StringOf(response, "error");
  if (isFailure && error.empty()) error = kFailed;
  return AddServiceResponse(cause, MethodOf(response), error, StringOf(response, "payload"));
}

uint64_t Traffic::AddResourceEvent(std::string_view name, std::string_view payload) {
  return timeline_->Add({.kind = RowKind::kResource,
                         .name = std::string(name.substr(kResourcePrefix.size())),
                         .status = StringOf(ParseJson(payload), "eventType"),
                         .payload = std::string(payload),
                         .payloadType = std::string(kJson)});
}

}  // namespace Kest::Host
