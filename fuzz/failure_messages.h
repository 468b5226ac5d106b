// The failure messages that may leave each layer, for RequireListed. They repeat what callers were
// promised, apart from the code on purpose: a message that changes there is a finding.
#pragma once

#include <string_view>

namespace Kest::Fuzz {

// The decoder's messages for handler and unknown errors, and "Out of memory", are left out: no
// input within the bounds may cause them.
inline constexpr std::string_view kJsonFailures[] = {
    "The document is empty.",
    "The document root must not be followed by other values.",
    "Invalid value.",
    "Missing a name for object member.",
    "Missing a colon after a name of object member.",
    "Missing a comma or '}' after an object member.",
    "Missing a comma or ']' after an array element.",
    "Incorrect hex digit after \\u escape in string.",
    "The surrogate pair in string is invalid.",
    "Invalid escape character in string.",
    "Missing a closing quotation mark in string.",
    "Invalid encoding in string.",
    "Number too big to be stored in double.",
    "Miss fraction part in number.",
    "Miss exponent in number.",
    "Too many values.",
};

inline constexpr std::string_view kJsonWriteFailures[] = {
    "A number that is not finite cannot be written as JSON.",
    "A blob that is not UTF-8 cannot be written as JSON.",
};

inline constexpr std::string_view kConversionFailures[] = {
    "A value for '%1' is required.",
    ("Value %1 for '%2' of type bool is in an incorrect format. Options are \"true\", \"false\", "
     "\"1\", \"0\"."),
    "Couldn't assign value to '%1' of type %2 because the input is of an invalid type %3.",
    "Value %1 for '%2' of type %3 is out of range",
    "Value %1 for '%2' of type %3 is in an incorrect format",
    "Couldn't assign value to '%1' because the input is not a string.",
    "%1 is not a valid enumeration value for '%2'.",
    "%1 is not a valid %2 enumeration value for '%3'.",
    "Couldn't assign value to '%1' of enum type because the input is of an invalid type %2.",
    "Couldn't assign value to '%1' of type %2 because the input not a structure.",
    ("Couldn't assign value to '%1' of type %2 because the input structure doesn't have required "
     "field '%3'."),
    "Couldn't assign value to '%1' of type vector because the input not a collection.",
};

inline constexpr std::string_view kBindingFailures[] = {
    "Unknown argument '%1' for '%2'.",
    "Argument '%1' for '%2' was specified in an invalid location.",
    "Expected value for argument '%1'.",
    "Index %1 is in an incorrect format",
    "Index %1 is out of range",
    "Unsupported body content type",
    "Extra MessgePack data found in body",
};

// A tag "int" or "float" parses its scalar as one of these three types.
inline constexpr std::string_view kYamlFailures[] = {
    "YAML text is too large.",
    "Multi-document YAML is not supported.",
    "YAML parser error: %1. At line: %2 col: %3",
    "Invalid mapping key. Only string scalar keys are allowed. At line: %1 col: %2",
    "Unexpected start of sequence. At line: %1 col: %2",
    "Unexpected start of mapping. At line: %1 col: %2",
    "Duplicate occurrence of anchor \"%1\". At line: %2 col: %3",
    "Undefined alias encountered: \"%1\". At line: %2 col: %3",
    "Cannot deserialize cyclic aliases. Alias \"%1\". At line: %2 col: %3",
    "Unsupported YAML tag '%1'.",
    "YAML nesting is too deep. At line: %1 col: %2",
    "Too many YAML directives. At line: %1 col: %2",
    "Too many values. At line: %1 col: %2",
    "Value %1 for 'yaml' of type int64_t is in an incorrect format",
    "Value %1 for 'yaml' of type int64_t is out of range",
    "Value %1 for 'yaml' of type uint64_t is in an incorrect format",
    "Value %1 for 'yaml' of type uint64_t is out of range",
    "Value %1 for 'yaml' of type double is in an incorrect format",
    "Value %1 for 'yaml' of type double is out of range",
    ("Value %1 for 'yaml' of type bool is in an incorrect format. Options are \"true\", \"false\", "
     "\"1\", \"0\"."),
};

inline constexpr std::string_view kMessagePackTruncations[] = {
    "Invalid MessagePack data. 8-bit integer value at position %1 is truncated.",
    "Invalid MessagePack data. 16-bit integer value at position %1 is truncated.",
    "Invalid MessagePack data. 32-bit integer value at position %1 is truncated.",
    "Invalid MessagePack data. 64-bit integer value at position %1 is truncated.",
    "Invalid MessagePack data. String of size %1 at position %2 is truncated.",
    "Invalid MessagePack data. Raw bytes of size %1 at position %2 are truncated.",
};

inline constexpr std::string_view kMessagePackFailures[] = {
    "Invalid MessagePack data at position %1.",
    "Invalid MessagePack data at position %1. Map keys must be strings.",
    "Invalid MessagePack data at position %1. Too many values.",
};

inline constexpr std::string_view kTokenJsonFailures[] = {
    "The token segment is missing",
    "Unexpected character in stream: %1",
    "Unrecognized escape sequence found in string: \\%1",
    "Expected string: %1",
    "Unexpected character in NUMBER token: %1",
    "Unexpected token: %1",
    "Unexpected end of token stream",
    "Unexpected End of token stream",
    "Duplicate object member token: %1",
    "Expected End of token stream; found %1",
    "Too many values.",
};

}  // namespace Kest::Fuzz
