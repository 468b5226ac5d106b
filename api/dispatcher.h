// The dispatcher maps requests and invocations to registered functions.
//
//   dispatcher.Route(HttpMethod::kPost, "/tav-loot/v1/recipes/{recipeName}/craft", "PostCraft",
//                    &transactions_, &Transactions::Craft)
//       .Describe("Runs a recipe")
//       .Path("recipeName")
//       .Body("playerLootList", "Loot ids to use");
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "api/bind_handler.h"
#include "api/bound_function.h"
#include "api/builtin_functions.h"
#include "api/http_names.h"
#include "api/request.h"
#include "api/response.h"
#include "api/route_table.h"
#include "api/route_template.h"
#include "base/kept_memory.h"
#include "binding/types/type_registry.h"

namespace Kest {

struct Endpoint {
  // The route's texts are in `memory`, which outlives it.
  Endpoint(HttpMethod of, std::string_view pathTemplate, BoundFunction runs,
           std::pmr::memory_resource* memory)
      : method(of), route(pathTemplate, memory), function(std::move(runs)) {}

  HttpMethod method;
  RouteTemplate route;
  BoundFunction function;
};

// A route whose parameters all have a name.
class DeclaredRoute {
 public:
  explicit DeclaredRoute(BoundFunction& function) : function_(function) {}

  DeclaredRoute Describe(std::string_view text) {
    function_.SetDescription(text);
    return *this;
  }

 private:
  BoundFunction& function_;
};

// A route with `left` unnamed parameters: name each with Path, Query, Body, Header or Any, in the
// order of the handler's. Too few are reported as an unused result, too many do not compile.
template <size_t left>
class [[nodiscard("name each parameter of the handler")]] RouteDeclaration {
 public:
  using Next = std::conditional_t<left == 1, DeclaredRoute, RouteDeclaration<left - 1>>;

  explicit RouteDeclaration(BoundFunction & function) : function_(function) {}

  RouteDeclaration Describe(std::string_view text) {
    function_.SetDescription(text);
    return *this;
  }
  Next Path(std::string_view name, std::string_view description = {}) {
    return Declare(ArgumentLocation::kPath, name, description);
  }
  Next Query(std::string_view name, std::string_view description = {}) {
    return Declare(ArgumentLocation::kQuery, name, description);
  }
  Next Header(std::string_view name, std::string_view description = {}) {
    return Declare(ArgumentLocation::kHeader, name, description);
  }
  Next Body(std::string_view name, std::string_view description = {}) {
    return Declare(ArgumentLocation::kBody, name, description);
  }
  Next Any(std::string_view name, std::string_view description = {}) {
    return Declare(ArgumentLocation::kAny, name, description);
  }

 private:
  Next Declare(ArgumentLocation location, std::string_view name, std::string_view description) {
    function_.DeclareArgument(location, name, description);
    return Next(function_);
  }

  BoundFunction& function_;
};

// Routes are registered first, on one thread, after the types they mention; from then on Handle and
// Invoke may run on any thread, nested calls included.
//
// Responses: 200 with a body, 204 without one. 404 "Not found" when no route of the method matches;
// 404 "Invalid function" or "Unsupported builtin function" for a name that cannot be invoked; 413
// "Body is too large"; 400 when arguments cannot be bound or converted; a handler's failure with
// its own status; 500 with its message for an exception of a handler, 500 "Out of memory" (and a
// log line) when memory runs out. Nothing is thrown.
class Dispatcher {
 public:
  // Registers the types and events of the built-in functions. The registry outlives the dispatcher.
  explicit Dispatcher(TypeRegistry& registry);
  Dispatcher(const Dispatcher&) = delete;
  Dispatcher& operator=(const Dispatcher&) = delete;

  // Adds an endpoint after the former ones; the first match handles a request. `object` outlives
  // the dispatcher. Of several functions with one name, invocation uses the first.
  // For parameters and results see api/bind_handler.h.
  template <typename Object, typename Class, typename R, typename... A>
  auto Route(HttpMethod method, std::string_view pathTemplate, std::string_view functionName,
             Object* object, R (Class::*handler)(A...)) {
    return AddMember<R, A...>(method, pathTemplate, functionName, object, handler);
  }
  template <typename Object, typename Class, typename R, typename... A>
  auto Route(HttpMethod method, std::string_view pathTemplate, std::string_view functionName,
             Object* object, R (Class::*handler)(A...) const) {
    return AddMember<R, A...>(method, pathTemplate, functionName, object, handler);
  }

  Response Handle(const Request& request) const noexcept;
  // `functionName` is "GetPlayerLoot", or "$builtin.Help" for a built-in function.
  Response Invoke(std::string_view functionName,
                  std::span<const NamedValue> arguments) const noexcept;
  // The same for a name and its namespace apart: "$builtin" and "Help".
  Response Invoke(std::string_view nameSpace, std::string_view name,
                  std::span<const NamedValue> arguments) const noexcept;

  // In the order of their registration.
  const std::pmr::deque<Endpoint>& Endpoints() const { return endpoints_; }

 private:
  template <typename R, typename... A, typename Object, typename Handler>
  auto AddMember(HttpMethod method, std::string_view pathTemplate, std::string_view functionName,
                 Object* object, Handler handler) {
    BoundFunction& function =
        Add(method, pathTemplate,
            BindHandler<R, A...>(registry_, functionName, std::bind_front(handler, object)));
    if constexpr (sizeof...(A) == 0) {
      return DeclaredRoute(function);
    } else {
      return RouteDeclaration<sizeof...(A)>(function);
    }
  }

  BoundFunction& Add(HttpMethod method, std::string_view pathTemplate, BoundFunction&& function);
  std::vector<const FunctionRecord*> FunctionRecords() const;
  const BoundFunction* FindRegistered(std::string_view functionName) const;
  Response HandleRequest(const Request& request) const;
  Response HandleInvocation(std::string_view functionName,
                            std::span<const NamedValue> arguments) const;

  TypeRegistry& registry_;
  const BuiltinFunctions builtins_;
  KeptMemory memory_;
  std::pmr::deque<Endpoint> endpoints_{memory_.Resource()};
  RouteTable routes_;
};

}  // namespace Kest
