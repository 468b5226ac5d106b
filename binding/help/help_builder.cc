#include "binding/help/help_builder.h"

#include <algorithm>
#include <iterator>

namespace Kest {
namespace {

template <typename Help, typename Records, typename Describe>
std::vector<Help> DescribeAll(const Records& records, Describe describe) {
  std::vector<Help> list;
  list.reserve(records.size());
  std::transform(records.begin(), records.end(), std::back_inserter(list), describe);
  return list;
}

BindingFullTypeIdentifier NameType(const TypeIdentifier& type) {
  return {std::string(TypeName(type)), std::string(TypeName(type.Element()))};
}

BindingFullArgumentHelp DescribeArgument(const ArgumentRecord& argument) {
  return {argument.name, argument.description, NameType(argument.type), argument.optional};
}

BindingFullFunctionHelp DescribeFunction(const FunctionRecord* function) {
  BindingFullFunctionHelp help;
  help.name = function->name;
  help.nameSpace = function->nameSpace;
  help.arguments = DescribeAll<BindingFullArgumentHelp>(function->arguments, &DescribeArgument);
  help.returns = NameType(function->returns);
  help.description = function->description;
  help.help = function->help;
  help.threadSafe = function->threadSafe;
  help.async = TypeName(function->async);
  help.tags = function->tags;
  return help;
}

BindingFullFieldHelp DescribeField(const FieldRecord& field) {
  return {std::string(field.name), std::string(field.description),
          static_cast<uint32_t>(field.offset), NameType(field.type), field.optional};
}

BindingFullEnumValueHelp DescribeEnumerator(const EnumeratorRecord& enumerator) {
  return {std::string(enumerator.name), std::string(enumerator.description), enumerator.value};
}

BindingFullTypeHelp DescribeType(const TypeRecord* type) {
  BindingFullTypeHelp help;
  help.name = type->name;
  help.nameSpace = type->nameSpace;
  help.size = static_cast<uint32_t>(type->size);
  help.description = type->description;
  help.tags.assign(type->tags.begin(), type->tags.end());
  help.fields = DescribeAll<BindingFullFieldHelp>(type->fields, &DescribeField);
  help.values = DescribeAll<BindingFullEnumValueHelp>(type->enumerators, &DescribeEnumerator);
  return help;
}

BindingFullEventHelp DescribeEvent(const EventRecord* event) {
  return {event->name, event->nameSpace, NameType(event->payload), event->description, event->tags};
}

}  // namespace

BindingFullApiHelp BuildFullHelp(const ApiRecords& api) {
  return {DescribeAll<BindingFullFunctionHelp>(api.functions, &DescribeFunction),
          DescribeAll<BindingFullTypeHelp>(api.types, &DescribeType),
          DescribeAll<BindingFullEventHelp>(api.events, &DescribeEvent)};
}

}  // namespace Kest
