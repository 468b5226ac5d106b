// The smallest plugin that does all a plugin does: it registers a type, serves an endpoint and
// publishes an event. docs/sdk.md walks through these files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "binding/tree/binding_property.h"
#include "client/sibling_client.h"
#include "plugin/plugin_base.h"

namespace Kest::Examples {

enum class Tone : int32_t { kPlain = 0, kWarm = 1 };

// The resource that is served and published.
struct Greeting {
  std::string text;
  Tone tone = Tone::kPlain;
  int64_t number = 0;    // of the greetings so far
  BindingProperty note;  // any JSON value
};

class HelloPlugin final : public PluginBase {
 public:
  explicit HelloPlugin(PluginRuntime& runtime);

  void RegisterApi() override;
  bool Initialise() override;

 private:
  // An argument by value is required, an optional one is not. A Failure becomes the response.
  Maybe<Greeting> Greet(const std::string& name, std::optional<Tone> tone,
                        std::optional<BindingProperty> note);

  Client::SiblingClient client_;
  int64_t greetings_ = 0;
};

}  // namespace Kest::Examples
