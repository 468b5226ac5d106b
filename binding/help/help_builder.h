// Describes an API from its records, as values.
#pragma once

#include <vector>

#include "binding/help/help_types.h"
#include "binding/types/type_record.h"

namespace Kest {

// What Help describes, in the order in which it does. The records outlive the call they are
// handed to.
struct ApiRecords {
  std::vector<const FunctionRecord*> functions;
  std::vector<const TypeRecord*> types;
  std::vector<const EventRecord*> events;
};

BindingFullApiHelp BuildFullHelp(const ApiRecords& api);

}  // namespace Kest
