// The service's class names of the DTOs, by short name and by type identity.
// Threads: filled at registration, read-only afterwards.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace Kest {
class TypeRegistry;
struct TypeKey;
}  // namespace Kest

namespace Kest::Client::Loot::SVDS {

class DtoClassNames {
 public:
  // `shortName` and `className` are literals. A repeated short name or key keeps its first entry.
  void Enter(std::string_view shortName, const TypeKey& typeKey, std::string_view className);

  // Empty for a name, or key, that is not a DTO's.
  std::string_view FindByShortName(std::string_view shortName) const;
  std::string_view FindByTypeKey(const TypeKey& typeKey) const;

 private:
  struct Entry {
    std::string_view shortName;
    const TypeKey* typeKey;
    std::string_view className;
  };

  template <class Test>
  std::string_view Find(Test test) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), test);
    return found == entries_.end() ? std::string_view() : found->className;
  }

  std::vector<Entry> entries_;  // few: looking at each is enough
};

// Enters the names of every DTO in `*names` and registers its structure, DTO by DTO in the one
// order the API description shows. Runs once, after the resources and before any service call.
void RegisterLootDtos(TypeRegistry& registry, DtoClassNames* names);

}  // namespace Kest::Client::Loot::SVDS
