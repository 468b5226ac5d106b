#include "host/record/interposed_services.h"

#include <array>
#include <utility>

#include "host/record/arguments.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr size_t kUuidBytes = 16;

std::string HexOf(const uint8_t* bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (size_t i = 0; i < kUuidBytes; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text;
}

// False: not 32 such digits.
bool ReadHex(const Json& value, uint8_t* bytes) {
  const std::string text = value.is_string() ? value.get<std::string>() : "";
  if (text.size() != 2 * kUuidBytes) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const size_t digit = std::string_view("0123456789abcdef").find(text[i]);
    if (digit == std::string_view::npos) return false;
    uint8_t& byte = bytes[i / 2];
    byte = static_cast<uint8_t>(i % 2 == 0 ? digit << 4 : byte | digit);
  }
  return true;
}

bool IsTrue(const Json& result) {
  return result.is_boolean() && result.get<bool>();
}

template <typename Number>
Number NumberOf(const Json& result) {
  return result.is_number_integer() ? result.get<Number>() : Number{0};
}

}  // namespace

struct InterposedServices::Entries {
  using Self = const KestHostServices*;

  template <typename Result, typename Work>
  static Result Guarded(Self self, Result refused, Work work) noexcept {
    InterposedServices& services = OwnedServices<InterposedServices>::Of(self);
    try {
      const TurnScope turn(services.turn_);
      return work(services);
    } catch (...) {
      return refused;
    }
  }
  // For a call that returns nothing; `forward` gets the host's table.
  template <typename Arguments, typename Forward>
  static void Notify(Self self, std::string_view function, Arguments arguments, Forward forward) {
    Guarded(self, false, [&](InterposedServices& services) {
      services.Serve({function, arguments, [&] {
                        forward(services.host_);
                        return Json();
                      }});
      return true;
    });
  }
  // For a call without arguments that returns a value.
  template <typename Ask>
  static Json Result(InterposedServices& services, std::string_view function, Ask ask) {
    return services
        .Serve({function, [] { return Json(); }, [&] { return Json(ask(services.host_)); }})
        .result;
  }

  static bool Request(Self self, const KestRequest* request, KestCompletion completion,
                      void* context) {
    return Guarded(self, false, [&](InterposedServices& services) {
      return request != nullptr && completion != nullptr &&
             services.Request(*request, completion, context);
    });
  }
  static bool Subscribe(Self self, KestText name, KestDelivery delivery, void* context) {
    return Guarded(self, false, [&](InterposedServices& services) {
      return delivery != nullptr && services.Subscribe(name, delivery, context);
    });
  }
  static void Unsubscribe(Self self, KestText name) {
    Notify(
        self, "unsubscribe",
        [&] {
          return Json{{"name", BytesJson(name)}};
        },
        [&](Self host) { host->unsubscribe(host, name); });
  }
  static bool Publish(Self self, KestText path, int32_t eventType, KestBytes json) {
    return Guarded(self, false, [&](InterposedServices& services) {
      const Call call = {
          "publish",
          [&] {
            return Json{
                {"path", BytesJson(path)}, {"eventType", eventType}, {"json", BytesJson(json)}};
          },
          [&] { return Json(services.host_->publish(services.host_, path, eventType, json)); }};
      return IsTrue(services.Serve(call).result);
    });
  }
  static int32_t PostTask(Self self, KestText name, KestTask run, void* context) {
    return Guarded(self, int32_t{KEST_TASK_REFUSED}, [&](InterposedServices& services) {
      return run == nullptr ? int32_t{KEST_TASK_REFUSED} : services.PostTask(name, run, context);
    });
  }
  static void WaitBegin(Self self, KestText label) {
    Notify(
        self, "waitBegin",
        [&] {
          return Json{{"label", BytesJson(label)}};
        },
        [&](Self host) { host->waitBegin(host, label); });
  }
  static void WaitEnd(Self self) {
    Notify(
        self, "waitEnd", [] { return Json(); }, [](Self host) { host->waitEnd(host); });
  }
  static void Yield(Self self) {
    Guarded(self, false, [](InterposedServices& services) {
      services.Yield();
      return true;
    });
  }
  static void Log(Self self, int32_t level, KestText line) {
    Notify(
        self, "log",
        [&] {
          return Json{{"level", level}, {"line", BytesJson(line)}};
        },
        [&](Self host) { host->log(host, level, line); });
  }
  static void Telemetry(Self self, KestText name, KestBytes json) {
    Notify(
        self, "telemetry",
        [&] {
          return Json{{"name", BytesJson(name)}, {"json", BytesJson(json)}};
        },
        [&](Self host) { host->telemetry(host, name, json); });
  }
  static void Identify(Self self, KestText fullName, KestText userAgent) {
    Notify(
        self, "identify",
        [&] {
          return Json{{"fullName", BytesJson(fullName)}, {"userAgent", BytesJson(userAgent)}};
        },
        [&](Self host) { host->identify(host, fullName, userAgent); });
  }
  static int64_t Now(Self self) {
    return Guarded(self, int64_t{0}, [](InterposedServices& services) {
      return NumberOf<int64_t>(Result(services, "now", [](Self host) { return host->now(host); }));
    });
  }
  static bool CreateUuid(Self self, uint8_t* uuid) {
    return Guarded(self, false, [uuid](InterposedServices& services) {
      const auto create = [](Self host) {
        std::array<uint8_t, kUuidBytes> bytes = {};
        return host->createUuid(host, bytes.data()) ? Json(HexOf(bytes.data())) : Json(false);
      };
      return ReadHex(Result(services, "createUuid", create), uuid);
    });
  }
  static uint64_t Cause(Self self) {
    return Guarded(self, uint64_t{0}, [](InterposedServices& services) {
      return NumberOf<uint64_t>(
          Result(services, "cause", [](Self host) { return host->cause(host); }));
    });
  }
  static void SetCause(Self self, uint64_t cause) {
    Notify(
        self, "setCause",
        [&] {
          return Json{{"cause", cause}};
        },
        [&](Self host) { host->setCause(host, cause); });
  }

  // What the host is given in the place of the plugin's functions.
  static void OnCompletion(void* context, const KestResponse* response) {
    auto* const callback = static_cast<Callback*>(context);
    callback->services->OnCompletion(callback, response);
  }
  static void OnDelivery(void* context, KestText name, KestText contentType, KestBytes body) {
    auto* const callback = static_cast<Callback*>(context);
    callback->services->OnDelivery(callback, name, contentType, body);
  }
  static void OnTask(void* context) {
    auto* const callback = static_cast<Callback*>(context);
    callback->services->OnTask(callback);
  }
};

InterposedServices::InterposedServices()
    : services_(OwnedServices<InterposedServices>::Make<Entries>(this)) {}

std::unique_ptr<InterposedServices::Callback> InterposedServices::TakeOpen(uint64_t number) {
  auto found = open_.extract(number);
  return found.empty() ? nullptr : std::move(found.mapped());
}

InterposedServices::Callback* InterposedServices::FindSubscription(std::string_view name) {
  const auto found = subscriptions_.find(name);
  return found == subscriptions_.end() ? nullptr : found->second.get();
}

// Made before the host is asked: once it has taken the callback, nothing may fail.
InterposedServices::OpenMap::node_type InterposedServices::MakeOpen(Callback callback) {
  callback.services = this;
  OpenMap made;
  made.emplace(0, std::make_unique<Callback>(std::move(callback)));
  return made.extract(made.begin());
}

// The host can call it no sooner than the turn is given on: its number is known then.
void InterposedServices::Keep(OpenMap::node_type open, uint64_t number) {
  open.mapped()->number = number;
  open.key() = number;
  open_.insert(std::move(open));
}

bool InterposedServices::Request(const KestRequest& request, KestCompletion completion,
                                 void* context) {
  auto open = MakeOpen(
      {.name = std::string(ToView(request.url)), .complete = completion, .context = context});
  Callback* const callback = open.mapped().get();
  const Served served = Serve(
      {"request", [&] { return RequestJson(request); },
       [&] { return Json(host_->request(host_, &request, Entries::OnCompletion, callback)); }});
  if (!IsTrue(served.result)) return false;
  Keep(std::move(open), served.number);
  return true;
}

int32_t InterposedServices::PostTask(KestText name, KestTask run, void* context) {
  auto open = MakeOpen({.name = std::string(ToView(name)), .run = run, .context = context});
  Callback* const callback = open.mapped().get();
  const Served served =
      Serve({"postTask",
             [&] {
               return Json{{"name", BytesJson(name)}};
             },
             [&] { return Json(host_->postTask(host_, name, Entries::OnTask, callback)); }});
  const auto posting = NumberOf<int32_t>(served.result);
  if (posting == KEST_TASK_QUEUED) Keep(std::move(open), served.number);
  return posting;
}

bool InterposedServices::Subscribe(KestText name, KestDelivery delivery, void* context) {
  std::unique_ptr<Callback>& kept = subscriptions_[std::string(ToView(name))];
  if (!kept) kept = std::make_unique<Callback>(Callback{.services = this});
  Callback* const callback = kept.get();
  const Served served =
      Serve({"subscribe",
             [&] {
               return Json{{"name", BytesJson(name)}};
             },
             [&] { return Json(host_->subscribe(host_, name, Entries::OnDelivery, callback)); }});
  if (!IsTrue(served.result)) return false;
  callback->deliver = delivery;
  callback->context = context;
  return true;
}

}  // namespace Kest::Host
