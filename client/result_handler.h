// ResultHandler reads the result of a service call on the thread that brings the response, and has
// it used on a module task. So a large result costs the tasks only what must be done in their turn.
//
// A result is used in parts, between which other tasks run; between two parts no other result is
// used. What is used in one part needs no more than InOnePart.
//
// Failure messages: the response's `error`, the decoder's message for an unreadable `payload`, the
//   message of an exception ("Out of memory") of any step.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/maybe_type.h"
#include "binding/convert/convert.h"
#include "binding/json/json_adapter.h"
#include "binding/types/static_type.h"
#include "client/arrival_queue.h"
#include "plugin/boundary.h"
#include "plugin/plugin_events.h"

namespace Kest::Client {

// Each call does a part of the work; true: it was the last one. Must not wait.
using Parts = std::function<bool()>;

// Makes of a result what can be made of it without the plugin's state, and returns the rest of the
// work. Runs on any thread: what it touches is its own or constant.
template <class R>
using Preparation = std::function<Parts(R result)>;

// For a result that `use` uses at once.
template <class R>
Preparation<R> InOnePart(std::function<void(R result)> use) {
  return [use = std::move(use)](R result) -> Parts {
    return [use, result = std::move(result)]() mutable {
      use(std::move(result));
      return true;
    };
  };
}

// "%s: Couldn't convert SVDS DTO %s to C++ from %s", as an error.
void LogUnreadableResult(const std::string& pluginName, std::string_view typeName,
                         std::string_view text);

template <class R>
class ResultHandler final : public ResponseHandler {
 public:
  // Called once, on a module task, after the last part or instead of it.
  using Finish = std::function<void(Maybe<Nothing> outcome)>;

  // `pluginName` is the prefix of log lines and outlives the handler.
  ResultHandler(const std::string& pluginName, Preparation<R> prepare, Finish finish)
      : pluginName_(pluginName), prepare_(std::move(prepare)), finish_(std::move(finish)) {}

  void Read(PluginServiceProxyResponse response) noexcept override {
    RunOrFail([&] {
      Maybe<R> result = Decode(response);
      if (result) {
        parts_ = prepare_(std::move(result.GetValue()));
      } else {
        failure_ = result.GetFailure();
      }
    });
  }

  bool Handle() noexcept override {
    bool isLast = true;
    if (!failure_) RunOrFail([&] { isLast = parts_(); });
    if (!isLast) return false;
    RunAndLog("Service proxy response", [this] {
      finish_(failure_ ? Maybe<Nothing>(std::move(*failure_)) : Maybe<Nothing>(Nothing{}));
    });
    return true;
  }

 private:
  Maybe<R> Decode(const PluginServiceProxyResponse& response) const {
    if (!response.error.empty()) return Failure{response.error};
    R result{};
    if constexpr (!std::is_same_v<R, Nothing>) {
      ConversionContext context;
      ReadJsonValue(context, "<result>", response.payload, &result);
      if (!context.Ok()) {
        LogUnreadableResult(pluginName_, StaticType::Name<R>(), response.payload);
        return Failure{context.ErrorMessage()};
      }
    }
    return result;
  }
  template <class Work>
  void RunOrFail(Work&& work) noexcept {
    RunAtBoundary(std::forward<Work>(work),
                  [this](const char* text) noexcept { failure_ = Failure{CopyMessage(text)}; });
  }

  const std::string& pluginName_;
  const Preparation<R> prepare_;
  const Finish finish_;
  Parts parts_;
  std::optional<Failure> failure_;
};

}  // namespace Kest::Client
