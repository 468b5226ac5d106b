#include "plugin/callbacks.h"

#include <new>
#include <utility>
#include <vector>

#include "api/request.h"
#include "api/response.h"
#include "base/utf8.h"
#include "plugin/boundary.h"
#include "plugin/once_promise.h"
#include "plugin/plugin_base.h"
#include "plugin/plugin_runtime.h"
#include "plugin/text_view.h"

namespace Kest {

namespace {

// What the host reads, with the memory that its views point into.
struct LentResponse {
  KestResponse view{};  // first, so that both have one address
  Response response;
};

const KestResponse* Lend(Response response) noexcept {
  auto* const lent = new (std::nothrow) LentResponse;
  if (lent == nullptr) return nullptr;
  lent->response = std::move(response);
  lent->view.status = lent->response.status;
  lent->view.message = ToText(lent->response.message);
  lent->view.contentType = ToText(lent->response.contentType);
  lent->view.body = ToBytes(lent->response.Body());
  return &lent->view;
}

// A failure that is produced even when memory is short: its message may then be missing.
Response FailWithMessage(const char* text) noexcept {
  Response response;
  response.status = kStatusServerError;
  try {
    response = InternalServerError(text);
  } catch (const std::bad_alloc&) {
    response.message = kOutOfMemory;  // short enough for the string itself, allocates nothing
  }
  return response;
}

enum class InStatistics { kNo, kYes };

// Responds with `handle(plugin)`, counted in the gate; any failure becomes a response too.
template <class Handle>
const KestResponse* HandleInGate(void* context, InStatistics inStatistics,
                                 Handle&& handle) noexcept {
  auto* const runtime = static_cast<PluginRuntime*>(context);
  if (runtime == nullptr) return Lend(FailWithMessage(""));
  const GateEntry entry(runtime->gate);
  if (!entry) return Lend(FailWithMessage(kFinalizing.data()));
  Response response;
  RunAtBoundary(
      [&] {
        response = handle(*runtime->plugin);
        // It may quote the request, or be cut inside a character.
        if (!IsValidUtf8(response.message)) response.message = RepairUtf8(response.message);
      },
      [&response](const char* text) noexcept {
        LogException("Request", text);
        response = FailWithMessage(text);
      });
  if (inStatistics == InStatistics::kYes) {
    ++runtime->counters.requestsHandled;
    if (response.status >= kStatusBadRequest) ++runtime->counters.requestsFailed;
  }
  return Lend(std::move(response));
}

bool KEST_ABI Start(void* context, const KestHostServices* services) noexcept {
  auto* const runtime = static_cast<PluginRuntime*>(context);
  if (runtime == nullptr || services == nullptr) return false;
  bool started = false;
  RunAndLog("Start", [&] { started = runtime->Start(*services); });
  return started;
}

void KEST_ABI Stop(void* context) noexcept {
  auto* const runtime = static_cast<PluginRuntime*>(context);
  if (runtime != nullptr) runtime->Stop();
}

void KEST_ABI Statistics(void* context, KestStatistics* statistics) noexcept {
  const auto* const runtime = static_cast<const PluginRuntime*>(context);
  if (runtime != nullptr && statistics != nullptr) WriteStatistics(runtime->counters, statistics);
}

}  // namespace

const KestCallbackTable& CallbackTable() {
  static constexpr KestCallbackTable kTable = {&Start, &Stop, &Statistics};
  return kTable;
}

const KestResponse* KEST_ABI HandleRequest(void* context, const KestRequest* request) noexcept {
  if (request == nullptr) return Lend(FailWithMessage(""));
  return HandleInGate(context, InStatistics::kYes, [request](PluginBase& plugin) {
    std::vector<HeaderPair> headers;
    headers.reserve(request->headerCount);
    for (size_t i = 0; i < request->headerCount; ++i) {
      headers.push_back({ToView(request->headers[i].name), ToView(request->headers[i].value)});
    }
    Request bound;
    bound.method = ToView(request->method);
    bound.url = ToView(request->url);
    bound.contentType = ToView(request->contentType);
    bound.body = ToView(request->body);
    bound.accept = ToView(request->accept);
    bound.headers = headers;
    return plugin.Api().Handle(bound);
  });
}

const KestResponse* KEST_ABI InvokeFunction(void* context, KestText functionName,
                                            const KestValue* arguments,
                                            size_t argumentCount) noexcept {
  return HandleInGate(context, InStatistics::kYes, [&](PluginBase& plugin) {
    std::vector<NamedValue> values;
    values.reserve(argumentCount);
    for (size_t i = 0; i < argumentCount; ++i) {
      NamedValue value;
      if (arguments[i].name.size != 0) value.name = ToView(arguments[i].name);
      value.contentType = ToView(arguments[i].contentType);
      value.text = ToView(arguments[i].bytes);
      values.push_back(value);
    }
    return plugin.Api().Invoke(ToView(functionName), values);
  });
}

void KEST_ABI SetLogging(void* context, int32_t leastLevel, uint32_t outputs) noexcept {
  auto* const runtime = static_cast<PluginRuntime*>(context);
  if (runtime != nullptr) runtime->logOutputs.Set(leastLevel, outputs);
}

const KestResponse* KEST_ABI ExplainDecision(void* context, KestText question) noexcept {
  return HandleInGate(context, InStatistics::kNo,
                      [question](PluginBase& plugin) { return plugin.Explain(ToView(question)); });
}

void KEST_ABI ReleaseResponse(void* /*context*/, const KestResponse* response) noexcept {
  delete reinterpret_cast<const LentResponse*>(response);
}

}  // namespace Kest
