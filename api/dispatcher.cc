#include "api/dispatcher.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "api/argument_binder.h"
#include "api/query_string.h"
#include "log/logger.h"

namespace Kest {
namespace {

constexpr std::string_view kBuiltinPrefix = "$builtin.";
constexpr size_t kMaxLoggedName = 200;

// Runs `handle`; exceptions become responses. `name` is the request or function, for the log.
template <typename Handle>
Response HandleSafely(std::string_view name, Handle&& handle) noexcept {
  try {
    try {
      return handle();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& exception) {
      return InternalServerError(exception.what());
    } catch (...) {
      return InternalServerError();
    }
  } catch (const std::bad_alloc&) {
    const auto length = static_cast<int>(std::min(name.size(), kMaxLoggedName));
    LogError("%.*s: Out of memory", length, name.data());
    Response response;
    response.status = kStatusServerError;
    response.message = "Out of memory";  // short enough to need no memory
    return response;
  }
}

// Binds arguments. Those that outgrow a value's bounds fail like those that cannot be decoded.
template <typename Bind>
void BindBounded(ConversionContext& context, Bind&& bind) {
  try {
    bind();
  } catch (const TreeBoundExceeded& exceeded) {
    context.Fail(exceeded.what());
  }
}

Response BadRequest(const ConversionContext& context) {
  return FailureResponse({context.ErrorMessage(), kStatusBadRequest});
}

}  // namespace

Dispatcher::Dispatcher(TypeRegistry& registry)
    : registry_(registry), builtins_(registry, [this] { return FunctionRecords(); }) {}

BoundFunction& Dispatcher::Add(HttpMethod method, std::string_view pathTemplate,
                               BoundFunction&& function) {
  Endpoint& endpoint =
      endpoints_.emplace_back(method, pathTemplate, std::move(function), memory_.Resource());
  routes_.Add(method, endpoint.route);
  const auto& parameters = endpoint.route.Parameters();
  if (std::any_of(parameters.begin(), parameters.end(),
                  [](const TemplateParameter& parameter) { return parameter.name.empty(); })) {
    const std::string_view text = endpoint.route.Text();
    LogWarning("Route %.*s has a parameter without a name", static_cast<int>(text.size()),
               text.data());
  }
  return endpoint.function;
}

Response Dispatcher::Handle(const Request& request) const noexcept {
  return HandleSafely(request.url, [&] { return HandleRequest(request); });
}

Response Dispatcher::Invoke(std::string_view functionName,
                            std::span<const NamedValue> arguments) const noexcept {
  return HandleSafely(functionName, [&] { return HandleInvocation(functionName, arguments); });
}

Response Dispatcher::Invoke(std::string_view nameSpace, std::string_view name,
                            std::span<const NamedValue> arguments) const noexcept {
  return HandleSafely(name, [&] { return HandleInvocation(FullName(nameSpace, name), arguments); });
}

std::vector<const FunctionRecord*> Dispatcher::FunctionRecords() const {
  std::vector<const FunctionRecord*> records;
  records.reserve(endpoints_.size());
  for (const Endpoint& endpoint : endpoints_) records.push_back(&endpoint.function.Record());
  return records;
}

const BoundFunction* Dispatcher::FindRegistered(std::string_view functionName) const {
  const auto found =
      std::find_if(endpoints_.begin(), endpoints_.end(), [functionName](const Endpoint& endpoint) {
        return endpoint.function.Name() == functionName;
      });
  return found != endpoints_.end() ? &found->function : nullptr;
}

Response Dispatcher::HandleRequest(const Request& request) const {
  const UrlParts url = SplitUrl(request.url);
  RouteCaptures captures;
  const auto found = routes_.Find(ParseMethod(request.method), url.path, &captures);
  if (!found) return NotFound();
  if (request.body.size() > kMaxBodyBytes) {
    return FailureResponse({"Body is too large", kStatusTooLarge});
  }
  const Endpoint& endpoint = endpoints_[*found];
  ConversionContext context(registry_);
  ArgumentBinder binder(endpoint.function, context);
  BindBounded(context, [&] {
    binder.BindHeaders(request.headers);
    binder.BindCaptures(endpoint.route, captures);
    binder.BindQuery(url.query);
    binder.BindBody(request.contentType, request.body);
  });
  if (!context.Ok()) return BadRequest(context);
  return endpoint.function.Call(
      {endpoint.function, registry_, request.accept, binder.TakeValues()});
}

Response Dispatcher::HandleInvocation(std::string_view functionName,
                                      std::span<const NamedValue> arguments) const {
  const bool isBuiltin = functionName.starts_with(kBuiltinPrefix);
  const BoundFunction* const found =
      isBuiltin ? builtins_.Find(functionName.substr(kBuiltinPrefix.size()))
                : FindRegistered(functionName);
  if (found == nullptr) {
    return NotFound(isBuiltin ? "Unsupported builtin function" : "Invalid function");
  }
  const BoundFunction& function = *found;
  ConversionContext context(registry_);
  ArgumentBinder binder(function, context);
  BindBounded(context, [&] { binder.BindList(arguments); });
  if (!context.Ok()) return BadRequest(context);
  return function.Call({function, registry_, {}, binder.TakeValues()});
}

}  // namespace Kest
