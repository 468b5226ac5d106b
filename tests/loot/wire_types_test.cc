// What crosses the wire, line by line in wire_types.txt: a misspelt, missing, moved or retyped
// field, a type out of order or a renumbered enumerator shows as the lines that differ.
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

#include "binding/help/help_types.h"
#include "binding/types/type_registry.h"
#include "loot/wire/dto_class_names.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/register_resources.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

std::string Describe(const TypeIdentifier& type) {
  const std::string name(TypeName(type));
  return type.elementId == TypeId::kNone ? name : name + " of " + Describe(type.Element());
}

std::string Attributes(std::string_view description, std::span<const std::string_view> tags) {
  std::string text = description.empty() ? "" : " \"" + std::string(description) + "\"";
  for (const std::string_view tag : tags) text.append(" #").append(tag);
  return text + "\n";
}

// Every type of the registry; each line starts with the type's name.
std::string Describe(const TypeRegistry& registry, const SVDS::DtoClassNames& classNames) {
  std::string text;
  for (const TypeRecord* type : registry.Types()) {
    const bool isEnum = type->kind == TypeKind::kEnumeration;
    const std::string_view className = classNames.FindByShortName(type->name);
    EXPECT_EQ(classNames.FindByTypeKey(*type->staticKey), className) << type->name;
    text.append(type->name).append(isEnum ? " is enum " : " is struct ").append(type->nameSpace);
    text += className.empty() ? "" : ", class " + std::string(className);
    text += Attributes(type->description, type->tags);
    for (const FieldRecord& field : type->fields) {
      text.append(type->name).append(".").append(field.name);
      text += ": " + Describe(field.type);
      text += (field.optional ? "" : " required") + Attributes(field.description, field.tags);
    }
    for (const EnumeratorRecord& enumerator : type->enumerators) {
      text.append(type->name).append(".").append(enumerator.name);
      text += " = " + std::to_string(enumerator.value);
      text += Attributes(enumerator.description, {});
    }
  }
  return text;
}

TEST(WireTypes, AreRegisteredAsTheGoldenTextHasThem) {
  TypeRegistry resources, dtos, help;
  SVDS::DtoClassNames none, names;
  Api::RegisterLootResources(resources);
  SVDS::RegisterLootDtos(dtos, &names);
  RegisterHelpTypes(help);
  EXPECT_TRUE(Testing::GoldenText(
      "tests/loot/wire_types.txt",
      Describe(resources, none) + Describe(dtos, names) + Describe(help, none)));
  EXPECT_EQ(names.FindByShortName("PlayerLoot"), "") << "a resource is no DTO";
  EXPECT_EQ(names.FindByTypeKey(StaticType::Key<Api::PlayerLoot>()), "");
}

}  // namespace
}  // namespace Kest::Client::Loot
