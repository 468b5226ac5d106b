// A plugin whose operations a test writes as lambdas.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "plugin/handshake.h"
#include "plugin/plugin_base.h"
#include "tests/support/fake_host.h"

namespace Kest::Testing {

class ScriptedPlugin;

struct PluginScript {
  std::function<void(ScriptedPlugin&)> registerApi = [](ScriptedPlugin&) {};
  std::function<bool(ScriptedPlugin&)> initialise = [](ScriptedPlugin&) { return true; };
  std::function<Maybe<std::string>(ScriptedPlugin&)> handler = [](ScriptedPlugin&) {
    return Maybe<std::string>(std::string("response"));
  };
  std::function<void()> shutdown = [] {};
  std::function<Response(std::string_view)> explain = [](std::string_view) { return Response(); };
  bool hasMemory = true;
  int alive = 0;  // plugin objects that exist
};

class ScriptedPlugin final : public PluginBase {
 public:
  // The factory has no captures, so the script is static: one test, one script.
  static inline PluginScript script;

  explicit ScriptedPlugin(PluginRuntime& runtime) : PluginBase(runtime) { ++script.alive; }
  ~ScriptedPlugin() override { --script.alive; }

  void RegisterApi() override {
    Api()
        .Route(HttpMethod::kGet, "/test/v1/word/{name}", "GetWord", this, &ScriptedPlugin::Word)
        .Path("name", "Any word");
    script.registerApi(*this);
  }
  bool Initialise() override { return script.initialise(*this); }
  void Shutdown() override { script.shutdown(); }

  Response Explain(std::string_view question) override { return script.explain(question); }

  using PluginBase::Host;
  using PluginBase::IsStopping;
  using PluginBase::Module;

  static void Handshake(KestHandshakeBlock* block) {
    Kest::Handshake(block, "test", [](PluginRuntime& runtime) -> std::unique_ptr<PluginBase> {
      if (!script.hasMemory) return nullptr;
      return std::make_unique<ScriptedPlugin>(runtime);
    });
  }

 private:
  Maybe<std::string> Word(std::string /*name*/) { return script.handler(*this); }
};

}  // namespace Kest::Testing
