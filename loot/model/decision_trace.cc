#include "loot/model/decision_trace.h"

namespace Kest::Client::Loot {

void DecisionTrace::Add(std::string_view step, std::string_view reason, Inputs inputs) {
  BindingProperty& added = steps_.Append();
  added.GetOrAddMember("step").SetString(step);
  added.GetOrAddMember("reason").SetString(reason);
  for (const auto& [name, value] : inputs) added.GetOrAddMember(name) = value.tree();
}

}  // namespace Kest::Client::Loot
