#include "plugin/app_module.h"

#include "log/fatal.h"
#include "log/logger.h"
#include "log/positional_format.h"
#include "plugin/boundary.h"

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

void AppModule::EndProcess(const std::future_error& error) {
  const std::string text = Format("Caught std::future_error in AppModule::Await: (%1) %2",
                                  error.code().value(), error.what());
  LogError("%s", text.c_str());
  Fatal(kFatalAwait);
}

}  // namespace Kest
