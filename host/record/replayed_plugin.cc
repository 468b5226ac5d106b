#include "host/record/replayed_plugin.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

// What the plugin gets once nothing is compared any more, so that it comes to its end.
Json FinalResult(std::string_view function) {
  if (function == "request" || function == "subscribe") return false;
  if (function == "publish") return true;
  if (function == "postTask") return int32_t{KEST_TASK_REFUSED};
  if (function == "createUuid") return std::string(32, '0');
  return nullptr;
}

}  // namespace

const ReplayedPlugin::Row ReplayedPlugin::kFunctions[] = {
    {"start", &ReplayedPlugin::Start},
    {"stop", &ReplayedPlugin::StopAsRecorded},
    {"statistics", &ReplayedPlugin::Statistics},
    {"setLogging", &ReplayedPlugin::SetLogging},
    {"request", &ReplayedPlugin::Request},
    {"invoke", &ReplayedPlugin::Invoke},
    {"explain", &ReplayedPlugin::Explain},
    {"release", &ReplayedPlugin::Release},
    {"completion", &ReplayedPlugin::Completion},
    {"delivery", &ReplayedPlugin::Delivery},
    {"task", &ReplayedPlugin::Task},
};

ReplayedPlugin::ReplayedPlugin(const Crossing& load, Surroundings surroundings)
    : fullName_(load.result.is_object() ? load.result.value("fullName", Json()) : Json()),
      surroundings_(std::move(surroundings)) {}

ReplayedPlugin::~ReplayedPlugin() {
  for (const auto& [task, response] : responses_) {
    library_->Block().api->release(library_->Block().context, response);
  }
}

Maybe<Nothing> ReplayedPlugin::Open(const std::string& path) {
  if (library_) return Nothing{};
  auto library = PluginLibrary::Open(path);
  if (!library) return library.GetFailure();
  const Json name = BytesJson(library.GetValue()->Block().fullName);
  if (name != fullName_) {
    return Failure{"The plugin " + path + " is " + WriteJson(name) + ", the recording is of " +
                   WriteJson(fullName_)};
  }
  library_ = std::move(library.GetValue());
  return Nothing{};
}

void ReplayedPlugin::Enter(const Crossing& crossing) {
  const auto* const row = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                       [&](const Row& r) { return r.name == crossing.function; });
  if (row == std::end(kFunctions)) {
    return surroundings_.cursor->Fail("the plugin has no \"" + crossing.function + "\"");
  }
  ArgumentReader reader(crossing.arguments);
  const Json result = (this->*row->function)(reader);
  const std::string problem =
      reader.Problem().empty() ? std::exchange(problem_, {}) : reader.Problem();
  if (!problem.empty()) return surroundings_.cursor->Fail(problem);
  surroundings_.cursor->MatchLeave(crossing.number, crossing.function, result);
}

void ReplayedPlugin::Stop() {
  if (!std::exchange(mustStop_, false)) return;
  library_->Block().callbacks->stop(library_->Block().context);
}

// ---- What the host calls -----------------------------------------------------------------------

Json ReplayedPlugin::Start(ArgumentReader&) {
  mustStop_ = true;
  return library_->Block().callbacks->start(library_->Block().context, Table());
}

Json ReplayedPlugin::StopAsRecorded(ArgumentReader&) {
  Stop();
  return {};
}

Json ReplayedPlugin::Statistics(ArgumentReader&) {
  KestStatistics statistics = {};
  library_->Block().callbacks->statistics(library_->Block().context, &statistics);
  return StatisticsJson(statistics);
}

Json ReplayedPlugin::SetLogging(ArgumentReader& reader) {
  const auto leastLevel = reader.Integer<int32_t>("leastLevel");
  const auto outputs = reader.Integer<uint32_t>("outputs");
  const KestApiDescriptor* const api = library_->Block().api;
  if (reader.Problem().empty() && KestCanSetLogging(api)) {
    api->setLogging(library_->Block().context, leastLevel, outputs);
  }
  return {};
}

Json ReplayedPlugin::Keep(const KestResponse* response, uint64_t task) {
  Json json = ResponseJson(response);
  responses_[task] = response;
  return json;
}

Json ReplayedPlugin::Request(ArgumentReader& reader) {
  OwnedRequest request = ReadRequest(reader);
  if (!reader.Problem().empty()) return {};
  const uint64_t task = surroundings_.task();
  const KestRequest view = request.View();
  return Keep(library_->Block().api->request(library_->Block().context, &view), task);
}

Json ReplayedPlugin::Invoke(ArgumentReader& reader) {
  const std::string name = reader.Bytes("name");
  struct Value {
    std::string name, contentType, bytes;
  };
  std::vector<Value> values;
  for (const Json& json : reader.List("arguments")) {
    ArgumentReader value(json);
    values.push_back({value.Bytes("name"), value.Bytes("contentType"), value.Bytes("bytes")});
    if (problem_.empty()) problem_ = value.Problem();
  }
  if (!reader.Problem().empty() || !problem_.empty()) return {};
  std::vector<KestValue> views;
  views.reserve(values.size());
  for (const Value& value : values) {
    views.push_back({ToText(value.name), ToText(value.contentType), ToBytes(value.bytes)});
  }
  const uint64_t task = surroundings_.task();
  return Keep(library_->Block().api->invoke(library_->Block().context, ToText(name), views.data(),
                                            views.size()),
              task);
}

Json ReplayedPlugin::Explain(ArgumentReader& reader) {
  const std::string question = reader.Bytes("question");
  const KestApiDescriptor* const api = library_->Block().api;
  if (!reader.Problem().empty() || !KestCanExplain(api)) return {};
  const uint64_t task = surroundings_.task();
  return Keep(api->explain(library_->Block().context, ToText(question)), task);
}

Json ReplayedPlugin::Release(ArgumentReader& reader) {
  const auto response = responses_.extract(reader.Integer<uint64_t>("of"));
  if (response.empty()) {
    problem_ = "there is no such response to release";
  } else {
    library_->Block().api->release(library_->Block().context, response.mapped());
  }
  return {};
}

Json ReplayedPlugin::Completion(ArgumentReader& reader) {
  const auto callback = TakeOpen(reader.Integer<uint64_t>("of"));
  const OwnedResponse response = ReadResponse(reader);
  if (!reader.Problem().empty()) return {};
  if (callback == nullptr || callback->complete == nullptr) {
    problem_ = "there is no such request to complete";
    return {};
  }
  const KestResponse view = response.View();
  callback->complete(callback->context, &view);
  return {};
}

Json ReplayedPlugin::Delivery(ArgumentReader& reader) {
  const std::string name = reader.Bytes("name");
  const std::string contentType = reader.Bytes("contentType");
  const std::string body = reader.Bytes("body");
  if (!reader.Problem().empty()) return {};
  const Callback* const callback = FindSubscription(name);
  if (callback == nullptr || callback->deliver == nullptr) {
    problem_ = "there is no such subscription";
    return {};
  }
  callback->deliver(callback->context, ToText(name), ToText(contentType), ToBytes(body));
  return {};
}

Json ReplayedPlugin::Task(ArgumentReader& reader) {
  const auto callback = TakeOpen(reader.Integer<uint64_t>("of"));
  if (callback == nullptr || callback->run == nullptr) {
    problem_ = "there is no such task to run";
    return {};
  }
  callback->run(callback->context);
  return {};
}

// ---- What the plugin calls ---------------------------------------------------------------------

InterposedServices::Served ReplayedPlugin::Serve(const Call& call) {
  auto match =
      surroundings_.cursor->MatchCall(surroundings_.task(), call.function, call.arguments());
  if (match) return {match->number, std::move(match->result)};
  return {0, FinalResult(call.function)};
}

void ReplayedPlugin::Yield() {
  surroundings_.cursor->MatchCall(surroundings_.task(), kYield, Json());
  // Other tasks have the turn meanwhile.
  GetTurn().Give();
  surroundings_.suspend();
  GetTurn().Take();
}

}  // namespace Kest::Host
