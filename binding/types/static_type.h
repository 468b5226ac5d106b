// The build-time identity of a native type: its full name, a 32-bit key made from the name, and the
// key's text. All of it is computed by the compiler, so any thread may use it at any time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Kest {

class StaticType {
 public:
  // The native name with its namespaces: "Kest::Client::Loot::Api::PlayerLoot".
  template <typename T>
  static constexpr std::string_view Name() {
    return NameIn(Signature<T>());
  }

  // FNV-1a of the name.
  template <typename T>
  static constexpr uint32_t Key() {
    uint32_t hash = 2166136261u;
    for (const char c : Name<T>()) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
    return hash;
  }

  // "#" and the key in eight upper-case hexadecimal digits.
  template <typename T>
  static constexpr std::string_view KeyText() {
    return {kKeyText<T>.data(), kKeyText<T>.size()};
  }

 private:
  template <typename T>
  static constexpr std::string_view Signature() {
    return __PRETTY_FUNCTION__;
  }

  // Both compilers write "[with T = name; ...]" or "[T = name]" behind the function's own name.
  static constexpr std::string_view NameIn(std::string_view signature) {
    constexpr std::string_view kMark = "T = ";
    const size_t start = signature.find(kMark) + kMark.size();
    const size_t end = signature.find(';', start);
    return signature.substr(start,
                            (end == std::string_view::npos ? signature.rfind(']') : end) - start);
  }

  static constexpr std::array<char, 9> Render(uint32_t key) {
    std::array<char, 9> text = {'#'};
    for (size_t i = 8; i > 0; --i, key >>= 4) text[i] = "0123456789ABCDEF"[key & 15u];
    return text;
  }

  template <typename T>
  static constexpr std::array<char, 9> kKeyText = Render(Key<T>());
};

}  // namespace Kest
