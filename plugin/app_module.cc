#include "plugin/app_module.h"

#include <memory>

#include "log/fatal.h"
#include "log/logger.h"
#include "log/positional_format.h"
#include "plugin/boundary.h"
#include "plugin/once_promise.h"

namespace Kest {

void AppModule::WaitUntil(const std::function<bool()>& isReady, std::string_view typeName) {
  if (isReady()) return;
  bool isShown = false;
  RunAndLog("Wait", [&] {
    host_.WaitBegin(Format("Wait: future<%1>", typeName));
    isShown = true;
  });
  do {
    host_.Yield();
  } while (!isReady());
  if (isShown) host_.WaitEnd();
}

bool AppModule::LetOthersRun(std::string_view name) noexcept {
  RunAtBoundary(
      [&] {
        auto promise = std::make_shared<OncePromise<Nothing>>();
        auto future = promise->GetFuture();
        const TaskPosting posting =
            PostTask(name, [promise = std::move(promise)] { promise->Set(Nothing{}); });
        // At stop the task is dropped, which ends the wait too.
        if (posting == TaskPosting::kQueued) static_cast<void>(Await(std::move(future)));
      },
      [](const char*) noexcept {});
  return !host_.IsStopping();
}

void AppModule::EndProcess(const std::future_error& error) {
  const std::string text = Format("Caught std::future_error in AppModule::Await: (%1) %2",
                                  error.code().value(), error.what());
  LogError("%s", text.c_str());
  Fatal(kFatalAwait);
}

}  // namespace Kest
