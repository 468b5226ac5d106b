#include "loot/explain/condition_tree.h"

namespace Kest::Client::Loot {

BindingProperty ConditionsTree(std::span<const Condition> conditions) {
  BindingProperty tree = BindingProperty::Collection();
  for (const Condition& condition : conditions) {
    tree.Append() = Structure{
        {"name", condition.name}, {"holds", condition.holds}, {"reason", condition.Reason()}};
  }
  return tree;
}

}  // namespace Kest::Client::Loot
