#include "binding/yaml/yaml_adapter.h"

#include <new>

#include "base/utf8.h"
#include "binding/tree/tree_builder.h"
#include "binding/yaml/yaml_directives.h"
#include "binding/yaml/yaml_messages.h"
#include "binding/yaml/yaml_parser.h"
#include "binding/yaml/yaml_tree_reader.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

BindingProperty ReadStream(ConversionContext& context, std::string_view text) {
  TreeBuilder builder(text.size());
  YamlTreeReader reader(context, builder);
  YamlParser parser(text);
  while (const yaml_event_t* event = parser.Next(context)) {
    reader.Take(*event);
    if (!context.Ok()) break;
  }
  return context.Ok() && reader.HasDocument() ? builder.Take() : BindingProperty();
}

}  // namespace

BindingProperty ReadYaml(ConversionContext& context, std::string_view text) {
  if (!context.Ok()) return {};
  if (text.size() > kMaxYamlBytes) {
    context.Fail(kYamlTooLarge);
    return {};
  }
  const std::string_view unmarked = WithoutByteOrderMark(text);
  // libyaml skips one mark as well, but then knows no "---" or directive in that line. Of two, the
  // first is left to it, so that it takes the second for a character.
  if (WithoutByteOrderMark(unmarked).size() == unmarked.size()) text = unmarked;
  if (text.empty()) return {};  // libyaml takes no null for a text
  if (const auto line = FindDirectiveBeyond(unmarked, kMaxYamlDirectives)) {
    context.Fail(Format(kYamlTooManyDirectives, *line, 0));
    return {};
  }
  try {
    return ReadStream(context, text);
  } catch (const std::bad_alloc&) {
    context.Fail("Out of memory");
    return {};
  }
}

}  // namespace Kest
