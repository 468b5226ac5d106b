// The failure messages of conversions. They are returned to callers: never change a character.
#pragma once

#include <string_view>

namespace Kest {

// %1 the path
inline constexpr std::string_view kValueRequired = "A value for '%1' is required.";
// %1 the text, %2 the path
inline constexpr std::string_view kBoolFormat =
    "Value %1 for '%2' of type bool is in an incorrect format. Options are \"true\", \"false\", "
    "\"1\", \"0\".";
// %1 the path, %2 the target type, %3 the kind of the input
inline constexpr std::string_view kInvalidKind =
    "Couldn't assign value to '%1' of type %2 because the input is of an invalid type %3.";
// %1 the value, %2 the path, %3 the target type
inline constexpr std::string_view kOutOfRange = "Value %1 for '%2' of type %3 is out of range";
inline constexpr std::string_view kNumberFormat =
    "Value %1 for '%2' of type %3 is in an incorrect format";
// %1 the path
inline constexpr std::string_view kNotAString =
    "Couldn't assign value to '%1' because the input is not a string.";
// %1 the value, %2 the path
inline constexpr std::string_view kNamelessEnumerator =
    "%1 is not a valid enumeration value for '%2'.";
// %1 the value or text, %2 the enumeration, %3 the path
inline constexpr std::string_view kNotAnEnumerator =
    "%1 is not a valid %2 enumeration value for '%3'.";
// %1 the path, %2 the kind of the input
inline constexpr std::string_view kEnumInvalidKind =
    "Couldn't assign value to '%1' of enum type because the input is of an invalid type %2.";
// %1 the path
inline constexpr std::string_view kUnregistered =
    "Couldn't assign value to '%1' because the input is an unregistered structure or not a "
    "structure at all.";
// %1 the path, %2 the structure. Callers match it as it is, without its verb.
inline constexpr std::string_view kNotAStructure =
    "Couldn't assign value to '%1' of type %2 because the input not a structure.";
// %1 the path, %2 the structure, %3 the field
inline constexpr std::string_view kFieldRequired =
    "Couldn't assign value to '%1' of type %2 because the input structure doesn't have required "
    "field '%3'.";
// %1 the path
inline constexpr std::string_view kNotACollection =
    "Couldn't assign value to '%1' of type vector because the input not a collection.";
inline constexpr std::string_view kReadUnregistered =
    "Couldn't convert native value because it's an unregistered structure.";
// %1 the path, %2 the kind of the input
inline constexpr std::string_view kIncompatibleObject =
    "Couldn't assign value to '%1' of type object because the input is of an incompatible type "
    "'%2'.";

}  // namespace Kest
