// Misuse that must not compile. check_misuse.cmake compiles this file and looks for the messages
// that the comments at the ends of lines name (as regular expressions).
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "binding/convert/define_struct.h"

namespace Kest {

struct Misuse {
  std::optional<int32_t> optional;
  std::string_view view;
  std::array<int32_t, 3> array;
  std::shared_ptr<Misuse> shared;
  std::map<int32_t, std::string> map;
  std::set<std::string> set;
  std::multimap<std::string, int32_t> multimap;
  const std::string constant;
  std::vector<bool> flags;
  long double precise;
  long long big;  // int64_t on some platforms, where the letter alone is refused
  char letter;
  const char* pointer;
  std::vector<std::vector<bool>> nested;
  std::vector<Misuse> recursive;
  void Function() {}
};
enum class Narrow : uint8_t {};

void Register(TypeRegistry& types, BindingProperty value) {
  DefineStruct<Misuse>(types, "Misuse")
      .Field<&Misuse::optional>()  // error: use the plain type: a member the input lacks keeps
      .Field<&Misuse::view>()      // error: use std::string: a bound value owns its characters
      .Field<&Misuse::array>()     // error: use std::vector: the input decides the size
      .Field<&Misuse::shared>()    // error: use std::shared_ptr<const T>: shared items never change
      .Field<&Misuse::map>()       // error: use std::string for the keys of a map
      .Field<&Misuse::set>()       // error: wrap others in a structure of your own
      .Field<&Misuse::multimap>()  // error: StructId.*multimap
      .Field<&Misuse::constant>()  // error: drop the const: reading a value assigns its members
      .Field<&Misuse::flags>()     // error: use a vector of int32_t, or of a structure
      .Field<&Misuse::precise>()   // error: use double
      .Field<&Misuse::big>()       // error: use int8_t .. uint64_t of <cstdint>
      .Field<&Misuse::letter>()    // error: IntegerId.*char
      .Field<&Misuse::pointer>()   // error: only values can be bound
      .Field<&Misuse::nested>()    // error: wrap the inner one in a registered structure
      .Field<&Misuse::recursive>()      // error: a structure cannot hold itself
      .Field<&Misuse::Function>();      // error: Field takes a data member
  DefineEnum<Narrow>(types, "Narrow");  // error: declare the enumeration as .enum class X : int32_t
  value.SetSigned(UINT64_MAX);          // error: deleted.*SetSigned
  value.SetUnsigned(-1);                // error: deleted.*SetUnsigned
  value = BindingProperty::FromBool("false");  // error: deleted.*FromBool
  value = BindingProperty::FromSigned(2.9);    // error: deleted.*FromSigned
  value.SetFloat(INT64_MAX);                   // error: deleted.*SetFloat
}

}  // namespace Kest
