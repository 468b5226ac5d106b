#include "binding/yaml/yaml_parser.h"

#include <new>

#include "binding/yaml/yaml_messages.h"
#include "log/positional_format.h"

namespace Kest {

YamlParser::YamlParser(std::string_view text) {
  if (yaml_parser_initialize(&parser_) == 0) throw std::bad_alloc();
  yaml_parser_set_encoding(&parser_, YAML_UTF8_ENCODING);
  yaml_parser_set_input_string(&parser_, reinterpret_cast<const unsigned char*>(text.data()),
                               text.size());
}

YamlParser::~YamlParser() {
  yaml_event_delete(&event_);
  yaml_parser_delete(&parser_);
}

const yaml_event_t* YamlParser::Next(ConversionContext& context) {
  yaml_event_delete(&event_);
  if (yaml_parser_parse(&parser_, &event_) == 0) {
    Fail(context);
    return nullptr;
  }
  return event_.type == YAML_NO_EVENT ? nullptr : &event_;
}

void YamlParser::Fail(ConversionContext& context) const {
  // libyaml has no words for the end of memory.
  if (parser_.problem == nullptr) throw std::bad_alloc();
  // Bytes that are no character are found before lines are counted: their mark is 0, 0.
  const yaml_mark_t& mark = parser_.problem_mark;
  context.Fail(Format(kYamlParserError, parser_.problem, mark.line, mark.column));
}

}  // namespace Kest
