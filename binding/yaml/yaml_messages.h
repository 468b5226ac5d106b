// The failure messages of YAML. They are returned to callers: never change a character.
#pragma once

#include <string_view>

namespace Kest {

// No positions
inline constexpr std::string_view kYamlTooLarge = "YAML text is too large.";
inline constexpr std::string_view kYamlMultiDocument = "Multi-document YAML is not supported.";
// %1 the tag
inline constexpr std::string_view kYamlUnsupportedTag = "Unsupported YAML tag '%1'.";
// %1 the line, %2 the column
inline constexpr std::string_view kYamlTooManyDirectives =
    "Too many YAML directives. At line: %1 col: %2";
inline constexpr std::string_view kYamlTooDeep = "YAML nesting is too deep. At line: %1 col: %2";
inline constexpr std::string_view kYamlTooManyValues = "Too many values. At line: %1 col: %2";
inline constexpr std::string_view kYamlInvalidKey =
    "Invalid mapping key. Only string scalar keys are allowed. At line: %1 col: %2";
inline constexpr std::string_view kYamlSequenceKey =
    "Unexpected start of sequence. At line: %1 col: %2";
inline constexpr std::string_view kYamlMappingKey =
    "Unexpected start of mapping. At line: %1 col: %2";
// %1 the name or the parser's words, %2 the line, %3 the column
inline constexpr std::string_view kYamlParserError = "YAML parser error: %1. At line: %2 col: %3";
inline constexpr std::string_view kYamlDuplicateAnchor =
    "Duplicate occurrence of anchor \"%1\". At line: %2 col: %3";
inline constexpr std::string_view kYamlUndefinedAlias =
    "Undefined alias encountered: \"%1\". At line: %2 col: %3";
inline constexpr std::string_view kYamlCyclicAlias =
    "Cannot deserialize cyclic aliases. Alias \"%1\". At line: %2 col: %3";

}  // namespace Kest
