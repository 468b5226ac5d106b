// A short notation, itself JSON, for the schemas of the development host's own values.
//
//   "string"                  a type; "any": any value; "string|null": one of two types
//   "integer 0..9"            with bounds, of which the upper may be missing: "int32 0.."
//   "=a|b"                    one of these strings; "=a": this string
//   "uint64"                  any other name refers to a named schema
//   [item]                    an array
//   {"id": .., "note?": ..}   an object; its members are required unless their names end in "?"
//   {"*": value}              an object with members of any name
//   {"$": shorthand, ..}      the shorthand's schema, followed by members as they are; "oneOf" is
//                             an array of shorthands
#pragma once

#include "host/json/json.h"

namespace Kest::Host {

Json ExpandSchema(const Json& shorthand);

}  // namespace Kest::Host
