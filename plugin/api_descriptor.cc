#include "plugin/api_descriptor.h"

#include "api/dispatcher.h"
#include "binding/types/type_registry.h"
#include "plugin/callbacks.h"
#include "plugin/text_view.h"

namespace Kest {

ApiDescriptor::ApiDescriptor() {
  table_.size = sizeof table_;
  table_.endpointSize = sizeof(KestEndpoint);
  table_.argumentSize = sizeof(KestArgument);
  table_.request = &HandleRequest;
  table_.invoke = &InvokeFunction;
  table_.release = &ReleaseResponse;
  table_.setLogging = &SetLogging;
  table_.explain = &ExplainDecision;
}

KestText ApiDescriptor::Keep(std::string_view text) {
  return ToText(texts_.Copy(text));
}

KestTypeName ApiDescriptor::Name(const TypeIdentifier& type) {
  return {Keep(TypeName(type)), Keep(TypeName(type.Element()))};
}

void ApiDescriptor::Build(const Dispatcher& dispatcher, const TypeRegistry& registry) {
  for (const Endpoint& endpoint : dispatcher.Endpoints()) {
    const BoundFunction& function = endpoint.function;
    std::vector<KestArgument>& list = arguments_.emplace_back();
    for (size_t i = 0; i < function.Arguments().size(); ++i) {
      const ArgumentRecord& argument = function.Arguments()[i];
      list.push_back({Keep(argument.name), Keep(argument.description), Name(argument.type),
                      static_cast<int32_t>(function.LocationOf(i)), argument.optional});
    }
    endpoints_.push_back({static_cast<int32_t>(endpoint.method), Keep(endpoint.route.Text()),
                          Keep(function.Name()), Keep(function.Record().description), list.data(),
                          list.size(), Name(function.Record().returns)});
  }
  for (const EventRecord* event : registry.Events()) eventNames_.push_back(Keep(event->name));
  table_.endpoints = endpoints_.data();
  table_.endpointCount = endpoints_.size();
  table_.eventNames = eventNames_.data();
  table_.eventNameCount = eventNames_.size();
}

}  // namespace Kest
