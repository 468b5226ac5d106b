// libyaml's event parser and its current event, owned.
#pragma once

#include <yaml.h>

#include <string_view>

#include "binding/convert/conversion_context.h"

namespace Kest {

// Threads: one. Lifetime: borrows the text; an event is valid until the next call of Next.
class YamlParser {
 public:
  // Skips one byte-order mark in front. REQUIRES: `text` is UTF-8 by intent and not empty. Throws
  // std::bad_alloc.
  explicit YamlParser(std::string_view text);
  ~YamlParser();
  YamlParser(const YamlParser&) = delete;
  YamlParser& operator=(const YamlParser&) = delete;

  // The next event; null past the last one, and after a failure ("YAML parser error: …"), beyond
  // which nothing may be asked. Throws std::bad_alloc.
  const yaml_event_t* Next(ConversionContext& context);

 private:
  void Fail(ConversionContext& context) const;

  yaml_parser_t parser_;
  yaml_event_t event_ = {};
};

}  // namespace Kest
