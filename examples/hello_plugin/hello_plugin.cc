#include "examples/hello_plugin/hello_plugin.h"

#include "binding/convert/define_struct.h"
#include "log/logger.h"

namespace Kest::Examples {

HelloPlugin::HelloPlugin(PluginRuntime& runtime)
    : PluginBase(runtime), client_(Host(), Module(), FullName()) {}

// Runs at the handshake, before the host starts the plugin.
void HelloPlugin::RegisterApi() {
  TypeRegistry& types = TypeRegistry::Process();
  DefineEnum<Tone>(types, "HelloTone")
      .Enumerator("PLAIN", Tone::kPlain)
      .Enumerator("WARM", Tone::kWarm, "With an exclamation mark");
  DefineStruct<Greeting>(types, "HelloGreeting")
      .Field<&Greeting::text>(kRequired, "What to show")
      .Fields<&Greeting::tone, &Greeting::number>()
      .Field<&Greeting::note>("remark");  // on the wire under a name of its own
  Api()
      .Route(HttpMethod::kPost, "/hello/v1/greetings/{name}", "PostGreeting", this,
             &HelloPlugin::Greet)
      .Describe("Greets and publishes the greeting")
      .Path("name", "Whom to greet")
      .Query("tone", "PLAIN unless given")
      .Body("note", "Comes back with the greeting");
}

// Runs at start, on a module task: subscribe and load here.
bool HelloPlugin::Initialise() {
  LogAlways("%s says hello", FullName().c_str());
  return true;
}

Maybe<Greeting> HelloPlugin::Greet(const std::string& name, std::optional<Tone> tone,
                                   std::optional<BindingProperty> note) {
  if (name == "ghost") return Failure{"Cannot greet a ghost", 404};
  Greeting greeting;
  greeting.tone = tone.value_or(Tone::kPlain);
  greeting.text = "Hello, " + name + (greeting.tone == Tone::kWarm ? "!" : ".");
  greeting.number = ++greetings_;
  if (note) greeting.note = *std::move(note);
  client_.Publish("/hello/v1/latest-greeting", ResourceEventType::kUpdate, greeting);
  return greeting;
}

}  // namespace Kest::Examples
