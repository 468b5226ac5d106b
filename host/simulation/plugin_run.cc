#include "host/simulation/plugin_run.h"

#include <utility>

#include "host/simulation/machine/plugin_memory.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr uint32_t kApiMajor = 18;

}  // namespace

bool PluginRun::Load(KestLoadFunction load) {
  block_ = {};
  block_.major = kApiMajor;
  started_ = false;
  stopped_ = false;
  openAsks_ = 0;
  const RunningCode code(RunningCode::Of::kPlugin);
  load(&block_);
  return IsLoaded();
}

void PluginRun::Start() {
  scheduler_->PostFree([this] {
    const RunningCode code(RunningCode::Of::kPlugin);
    started_ = block_.callbacks->start(block_.context, host_->Table());
  });
}

void PluginRun::Ask(std::string method, std::string url, std::string body, TakeReply take) {
  ++openAsks_;
  scheduler_->PostFree([this, method = std::move(method), url = std::move(url),
                        body = std::move(body), take = std::move(take)] {
    if (stopped_) return;
    const PluginReply reply = Call(method, url, body);
    --openAsks_;
    take(reply);
  });
}

PluginReply PluginRun::Call(const std::string& method, const std::string& url,
                            const std::string& body) {
  const std::string_view contentType = body.empty() ? "" : "application/json";
  const KestRequest request = {ToText(method),      ToText(url),   nullptr,   0,
                               ToText(contentType), ToBytes(body), KestText{}};
  const KestResponse* response = nullptr;
  {
    const RunningCode code(RunningCode::Of::kPlugin);
    response = block_.api->request(block_.context, &request);
  }
  return Copy(response);
}

PluginReply PluginRun::Explain(std::string_view question) {
  const KestResponse* response = nullptr;
  {
    const RunningCode code(RunningCode::Of::kPlugin);
    response = block_.api->explain(block_.context, ToText(question));
  }
  return Copy(response);
}

PluginReply PluginRun::Copy(const KestResponse* response) {
  if (response == nullptr) return {};
  PluginReply reply{response->status, std::string(ToView(response->message)),
                    std::string(ToView(response->body))};
  const RunningCode code(RunningCode::Of::kPlugin);
  block_.api->release(block_.context, response);
  return reply;
}

void PluginRun::Stop() {
  scheduler_->PostFree([this] {
    const RunningCode code(RunningCode::Of::kPlugin);
    block_.callbacks->stop(block_.context);
    stopped_ = true;
  });
}

}  // namespace Kest::Host
