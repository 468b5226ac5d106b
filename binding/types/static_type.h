// What the compiler knows about native types and their members. All of it is constant, so any
// thread may use it at any time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Kest {

// Identifies a native type by its own address, which the linker keeps unique: two types of one name
// in unnamed namespaces of two files have two keys (of one number, which is for display).
struct TypeKey {
  explicit constexpr TypeKey(std::string_view typeName) : name(typeName) {
    for (const char c : typeName) number = (number ^ static_cast<uint8_t>(c)) * 16777619u;
    uint32_t rest = number;
    for (size_t i = 8; i > 0; --i, rest >>= 4) digits[i] = "0123456789ABCDEF"[rest & 15u];
  }
  TypeKey(const TypeKey&) = delete;
  TypeKey& operator=(const TypeKey&) = delete;

  // "#" and the number in eight upper-case hexadecimal digits.
  constexpr std::string_view String() const { return {digits.data(), digits.size()}; }

  std::string_view name;          // StaticType::Name; the string lives as long as the program
  uint32_t number = 2166136261u;  // FNV-1a of the name
  std::array<char, 9> digits = {'#'};
};

class StaticType {
 public:
  // The native name with its namespaces: "Kest::Client::Loot::Api::PlayerLoot".
  template <typename T>
  static constexpr std::string_view Name() {
    return ArgumentIn(Signature<T>(), "T = ");
  }

  template <typename T>
  static constexpr const TypeKey& Key() {
    return kKey<T>;
  }

  // The name of a data member, without its class: "count" for &PlayerLoot::count.
  template <auto member>
  static constexpr std::string_view MemberName() {
    return {kMemberName<member>.data(), kMemberName<member>.size()};
  }

 private:
  template <typename T>
  static constexpr std::string_view Signature() {
    return __PRETTY_FUNCTION__;
  }
  template <auto member>
  static constexpr std::string_view MemberSignature() {
    return __PRETTY_FUNCTION__;
  }

  // Both compilers write "[with T = name; ...]" or "[T = name]" after the function's own name.
  static constexpr std::string_view ArgumentIn(std::string_view signature, std::string_view mark) {
    const size_t start = signature.find(mark) + mark.size();
    const size_t end = signature.find(';', start);
    return signature.substr(start,
                            (end == std::string_view::npos ? signature.rfind(']') : end) - start);
  }

  // A copy, so that the binary keeps the name alone.
  template <auto member>
  static constexpr auto CopyMemberName() {
    constexpr std::string_view kPath = ArgumentIn(MemberSignature<member>(), "member = ");
    constexpr std::string_view kName = kPath.substr(kPath.rfind("::") + 2);
    std::array<char, kName.size()> name = {};
    for (size_t i = 0; i < name.size(); ++i) name[i] = kName[i];
    return name;
  }

  template <typename T>
  static constexpr TypeKey kKey{Name<T>()};
  template <auto member>
  static constexpr auto kMemberName = CopyMemberName<member>();
};

}  // namespace Kest
