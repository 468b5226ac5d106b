// A function that requests and invocations can call: its description, the locations of its
// arguments, and its handler.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/response.h"
#include "binding/tree/binding_property.h"
#include "binding/types/type_record.h"

namespace Kest {

// The one source an argument is taken from. The numbers cross to the host: never renumber.
enum class ArgumentLocation : int32_t {
  kAny = 0,  // from the path, the query or a header
  kQuery = 1,
  kPath = 2,  // a parameter of the route's template
  kHeader = 4,
  kBody = 5,
};

// The bound arguments of a call, in the order of their declaration. Absent ones are empty.
using ArgumentValues = std::vector<BindingProperty>;

class BoundFunction;

// One call. Its values are released once they are converted, before the handler runs.
struct FunctionCall {
  const BoundFunction& function;
  const TypeRegistry& registry;
  std::string_view accept;  // content type wanted for the result; empty: JSON
  ArgumentValues values;
};

// Threads: declared by one thread; constant and free for any thread afterwards.
class BoundFunction {
 public:
  using Handler = std::function<Response(FunctionCall)>;

  // `parameters` are the handler's, in order, still without names.
  BoundFunction(std::string_view name, std::vector<ArgumentRecord> parameters,
                TypeIdentifier returns, Handler handler);

  // Names the next parameter; a body argument's description gets the accepted formats.
  // REQUIRES: one is left, the name is new, and no second body argument.
  void DeclareArgument(ArgumentLocation location, std::string_view name,
                       std::string_view description);
  void SetDescription(std::string_view description) { record_.description = description; }
  void SetNameSpace(std::string_view nameSpace) { record_.nameSpace = nameSpace; }
  void SetTags(std::initializer_list<std::string_view> tags) {
    record_.tags.assign(tags.begin(), tags.end());
  }

  const FunctionRecord& Record() const { return record_; }
  const std::string& Name() const { return record_.name; }
  const std::vector<ArgumentRecord>& Arguments() const { return record_.arguments; }
  ArgumentLocation LocationOf(size_t argument) const { return locations_[argument]; }
  std::optional<size_t> FindArgument(std::string_view name) const;
  std::optional<size_t> BodyArgument() const;

  // REQUIRES: a value for each argument. Exceptions of the handler pass through.
  Response Call(FunctionCall call) const { return handler_(std::move(call)); }

 private:
  FunctionRecord record_;
  std::vector<ArgumentLocation> locations_;  // of the declared arguments
  Handler handler_;
};

}  // namespace Kest
