// One argument of a formatted text together with its type.
#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace Kest {

template <typename T>
concept Enumeration = std::is_enum_v<T>;
template <typename T>
concept StringClass = std::is_class_v<T> && std::convertible_to<const T&, std::string_view>;

// FormatArgument is a view: a text it was made from outlives it. Takes bools, characters, integers,
// enumerations (as their numbers), floating-point numbers, strings and pointers; nothing else
// compiles.
class FormatArgument {
 public:
  enum class Kind : uint8_t { kBool, kChar, kSigned, kUnsigned, kFloat, kText, kPointer };

  FormatArgument(bool value) : kind_(Kind::kBool), bits_(8), unsigned_(value) {}  // NOLINT
  FormatArgument(char value)                                                      // NOLINT
      : kind_(Kind::kChar), bits_(8), unsigned_(static_cast<unsigned char>(value)) {}
  template <std::integral T>
  FormatArgument(T value) : bits_(8 * sizeof(T)) {  // NOLINT
    if constexpr (std::is_signed_v<T>) {
      kind_ = Kind::kSigned;
      signed_ = value;  // NOLINT(bugprone-signed-char-misuse): a small number, not a character
    } else {
      kind_ = Kind::kUnsigned;
      unsigned_ = value;
    }
  }
  template <Enumeration T>
  FormatArgument(T value)  // NOLINT
      : FormatArgument(Widen(static_cast<std::underlying_type_t<T>>(value))) {}
  template <std::floating_point T>
  FormatArgument(T value)  // NOLINT
      : kind_(Kind::kFloat), float_(static_cast<double>(value)) {}
  FormatArgument(std::string_view text) : kind_(Kind::kText), text_(text) {}  // NOLINT
  FormatArgument(const char* text)                                            // NOLINT
      : FormatArgument(text != nullptr ? std::string_view(text) : std::string_view("(null)")) {}
  FormatArgument(char* text) : FormatArgument(static_cast<const char*>(text)) {}  // NOLINT
  template <StringClass Text>
  FormatArgument(const Text& text) : FormatArgument(std::string_view(text)) {}  // NOLINT
  FormatArgument(const void* pointer)                                           // NOLINT
      : kind_(Kind::kPointer),
        bits_(8 * sizeof(void*)),
        unsigned_(reinterpret_cast<uintptr_t>(pointer)) {}
  FormatArgument(std::nullptr_t) : FormatArgument(static_cast<const void*>(nullptr)) {}  // NOLINT

  Kind GetKind() const { return kind_; }
  uint32_t Bits() const { return bits_; }          // width of the value's own type
  int64_t Signed() const { return signed_; }       // kSigned
  uint64_t Unsigned() const { return unsigned_; }  // kUnsigned, kBool, kChar, kPointer
  double Float() const { return float_; }          // kFloat
  std::string_view Text() const { return text_; }  // kText

 private:
  // An enumeration over characters or bools is still a number.
  template <typename T>
  static auto Widen(T value) {
    if constexpr (std::is_same_v<T, char> || std::is_same_v<T, bool>) {
      return static_cast<int>(value);
    } else {
      return value;
    }
  }

  Kind kind_;
  uint8_t bits_ = 64;
  union {
    int64_t signed_;
    uint64_t unsigned_;
    double float_;
    std::string_view text_;
  };
};

}  // namespace Kest
