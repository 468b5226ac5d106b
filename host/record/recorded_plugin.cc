#include "host/record/recorded_plugin.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/record/arguments.h"
#include "host/record/token_cut.h"
#include "plugin/text_view.h"

namespace Kest::Host {

struct RecordedTask {
  uint64_t number = 0;     // of the crossing that began it; 0: this thread runs no code of a plugin
  uint64_t resumedAt = 0;  // the recorder's activity when the task went on
};

namespace {

// A task that went on in vain goes on again when something has happened, and at least so often:
// it may wait for something outside of the interface.
constexpr int kMostTries = 1000;

thread_local RecordedTask currentTask;

Json CompletionJson(uint64_t request, std::string_view url, const KestResponse* response) {
  Json json = {{"of", request}};
  json.update(ResponseJson(response));
  if (HasTokens(url)) json["body"] = BytesJson(WithoutSignatures(ToView(response->body)));
  return json;
}

}  // namespace

class RecordedPlugin::Visit {
 public:
  Visit(RecordedPlugin* plugin, std::string_view function, const std::function<Json()>& arguments)
      : plugin_(plugin), function_(function), turn_(plugin->GetTurn()), former_(currentTask) {
    currentTask.number = plugin->Write(Crossing::Kind::kEnter, function, [&](Crossing* crossing) {
      crossing->session = plugin_->session_;
      crossing->arguments = arguments();
    });
    currentTask.resumedAt = 0;
  }
  ~Visit() { currentTask = former_; }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;

  // The plugin has returned.
  void Leave(const std::function<Json()>& result = {}) {
    plugin_->Write(Crossing::Kind::kLeave, function_, [&](Crossing* crossing) {
      if (result) crossing->result = result();
    });
  }
  uint64_t Number() const { return currentTask.number; }

 private:
  RecordedPlugin* const plugin_;
  const std::string_view function_;
  const TurnScope turn_;
  const RecordedTask former_;
};

// The context of every entry is the RecordedPlugin.
struct RecordedPlugin::Entries {
  static RecordedPlugin* Of(void* context) { return static_cast<RecordedPlugin*>(context); }

  static bool Start(void* context, const KestHostServices* services) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, "start", [] { return Json(); });
    plugin->SetHost(services);
    const bool isStarted = plugin->Callbacks().start(plugin->block_.context, plugin->Table());
    visit.Leave([&] { return Json(isStarted); });
    return isStarted;
  }
  static void Stop(void* context) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, "stop", [] { return Json(); });
    plugin->Callbacks().stop(plugin->block_.context);
    visit.Leave();
  }
  static void Statistics(void* context, KestStatistics* statistics) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, "statistics", [] { return Json(); });
    plugin->Callbacks().statistics(plugin->block_.context, statistics);
    visit.Leave([&] { return StatisticsJson(*statistics); });
  }
  static void SetLogging(void* context, int32_t leastLevel, uint32_t outputs) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, "setLogging", [&] {
      return Json{{"leastLevel", leastLevel}, {"outputs", outputs}};
    });
    plugin->block_.api->setLogging(plugin->block_.context, leastLevel, outputs);
    visit.Leave();
  }

  // A call that returns a response.
  template <typename Ask>
  static const KestResponse* Respond(void* context, std::string_view function,
                                     const std::function<Json()>& arguments, Ask ask) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, function, arguments);
    const KestResponse* const response = ask(*plugin->block_.api, plugin->block_.context);
    visit.Leave([&] { return ResponseJson(response); });
    plugin->NoteResponse(response, visit.Number());
    return response;
  }
  static const KestResponse* Request(void* context, const KestRequest* request) {
    return Respond(
        context, "request", [&] { return RequestJson(*request); },
        [&](const KestApiDescriptor& api, void* own) { return api.request(own, request); });
  }
  static const KestResponse* Invoke(void* context, KestText name, const KestValue* values,
                                    size_t count) {
    return Respond(
        context, "invoke",
        [&] {
          return Json{{"name", BytesJson(name)}, {"arguments", ValuesJson(values, count)}};
        },
        [&](const KestApiDescriptor& api, void* own) {
          return api.invoke(own, name, values, count);
        });
  }
  static const KestResponse* Explain(void* context, KestText question) {
    return Respond(
        context, "explain",
        [&] {
          return Json{{"question", BytesJson(question)}};
        },
        [&](const KestApiDescriptor& api, void* own) { return api.explain(own, question); });
  }
  static void Release(void* context, const KestResponse* response) {
    RecordedPlugin* const plugin = Of(context);
    Visit visit(plugin, "release", [&] { return Json{{"of", plugin->TakeResponse(response)}}; });
    plugin->block_.api->release(plugin->block_.context, response);
    visit.Leave();
  }
};

RecordedPlugin::RecordedPlugin(Recorder* recorder, uint64_t session,
                               const KestHandshakeBlock& block)
    : recorder_(recorder), session_(session), block_(block) {
  const size_t known = std::min<size_t>(block.api->size, sizeof(api_));
  std::memcpy(&api_, block.api, known);
  api_.size = static_cast<uint32_t>(known);
  api_.request = Entries::Request;
  api_.invoke = Entries::Invoke;
  api_.release = Entries::Release;
  if (KestCanSetLogging(block.api)) api_.setLogging = Entries::SetLogging;
  if (KestCanExplain(block.api)) api_.explain = Entries::Explain;
}

RecordedPlugin::~RecordedPlugin() {
  Visit(this, kUnload, [] { return Json(); }).Leave();
}

void RecordedPlugin::ReplaceIn(KestHandshakeBlock* block) {
  static constexpr KestCallbackTable kCallbacks = {Entries::Start, Entries::Stop,
                                                   Entries::Statistics};
  block->callbacks = &kCallbacks;
  block->context = this;
  block->api = &api_;
}

uint64_t RecordedPlugin::Write(Crossing::Kind kind, std::string_view function,
                               const std::function<void(Crossing*)>& fill) noexcept {
  return recorder_->Write([&] {
    const bool isEvent = !recorder_->OnTaskThread() && currentTask.number != 0;
    Crossing crossing = {.task = currentTask.number,
                         .thread = recorder_->OnTaskThread() ? "task"
                                   : isEvent                 ? "service event"
                                                             : "other",
                         .kind = kind,
                         .function = std::string(function)};
    fill(&crossing);
    return crossing;
  });
}

void RecordedPlugin::NoteResponse(const KestResponse* response, uint64_t number) noexcept {
  try {
    if (response != nullptr) responses_[response] = number;
  } catch (...) {  // its release then names none
  }
}

uint64_t RecordedPlugin::TakeResponse(const KestResponse* response) {
  const auto taken = responses_.extract(response);
  return taken.empty() ? 0 : taken.mapped();
}

// ---- What the plugin calls ---------------------------------------------------------------------

InterposedServices::Served RecordedPlugin::Serve(const Call& call) {
  Json result = call.forward();
  const uint64_t number = Write(Crossing::Kind::kCall, call.function, [&](Crossing* crossing) {
    crossing->arguments = call.arguments();
    crossing->result = result;
  });
  return {number, std::move(result)};
}

void RecordedPlugin::Yield() {
  const RecordedTask own = currentTask;
  const uint64_t activity = recorder_->Activity();
  const bool wasInVain = own.resumedAt == activity;
  Write(Crossing::Kind::kCall, kYield, [](Crossing*) {});
  currentTask = {};
  GetTurn().Give();
  int tries = 0;
  do {
    Host()->yield(Host());
  } while (wasInVain && recorder_->Activity() == activity && ++tries < kMostTries);
  GetTurn().Take();
  currentTask = own;
  Write(Crossing::Kind::kResume, kYield, [](Crossing*) {});
  currentTask.resumedAt = recorder_->Activity();
}

// ---- What the host calls later -----------------------------------------------------------------

void RecordedPlugin::OnCompletion(Callback* callback, const KestResponse* response) {
  const TurnScope turn(GetTurn());
  const auto taken = TakeOpen(callback->number);
  Visit visit(this, "completion",
              [&] { return CompletionJson(taken->number, taken->name, response); });
  taken->complete(taken->context, response);
  visit.Leave();
}

void RecordedPlugin::OnDelivery(Callback* callback, KestText name, KestText contentType,
                                KestBytes body) {
  Visit visit(this, "delivery", [&] {
    return Json{{"name", BytesJson(name)},
                {"contentType", BytesJson(contentType)},
                {"body", BytesJson(body)}};
  });
  callback->deliver(callback->context, name, contentType, body);
  visit.Leave();
}

void RecordedPlugin::OnTask(Callback* callback) {
  const TurnScope turn(GetTurn());
  const auto taken = TakeOpen(callback->number);
  Visit visit(this, "task", [&] { return Json{{"of", taken->number}}; });
  taken->run(taken->context);
  visit.Leave();
}

}  // namespace Kest::Host
