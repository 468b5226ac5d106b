#include "host/world/json/json_reader.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <new>
#include <optional>

namespace Kest::Host {
namespace {

// The reader's stack: running out of memory throws instead of handing the reader a null pointer.
struct ThrowingAllocator {
  void* Malloc(size_t size) { return Checked(std::malloc(size), size); }
  void* Realloc(void* old, size_t, size_t size) {
    if (size != 0) return Checked(std::realloc(old, size), size);
    Free(old);
    return nullptr;
  }
  static void Free(void* block) { std::free(block); }

 private:
  static void* Checked(void* block, size_t size) {
    if (block == nullptr && size != 0) throw std::bad_alloc();
    return block;
  }
};

using Reader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, ThrowingAllocator>;

// Line and column of offsets that only grow.
class LineCounter {
 public:
  explicit LineCounter(std::string_view text) : text_(text) {}

  TextPosition At(size_t offset) {
    for (; offset_ < std::min(offset, text_.size()); ++offset_) {
      const char c = text_[offset_];
      if (c == '\n') {
        position_ = {position_.line + 1, 1};
      } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
        ++position_.column;
      }
    }
    return position_;
  }

 private:
  std::string_view text_;
  size_t offset_ = 0;
  TextPosition position_ = {1, 1};
};

// The reader lets the escape of a lone low surrogate through as three bytes that are no UTF-8.
bool HasSurrogate(std::string_view text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == '\xED' && static_cast<unsigned char>(text[i + 1]) >= 0xA0) return true;
  }
  return false;
}

// Digits to a value: whole numbers exactly while 64 bits hold them, everything else as a double.
std::optional<JsonValue> ReadNumber(std::string_view digits) {
  const char* end = digits.data() + digits.size();
  if (digits.find_first_of(".eE") == std::string_view::npos) {
    int64_t whole = 0;
    if (std::from_chars(digits.data(), end, whole).ec == std::errc()) return JsonValue(whole);
    uint64_t natural = 0;
    if (digits[0] != '-' && std::from_chars(digits.data(), end, natural).ec == std::errc()) {
      return JsonValue(natural);
    }
  }
  double number = 0;
  const auto result = std::from_chars(digits.data(), end, number);
  if (result.ec == std::errc() && std::isfinite(number)) return JsonValue(number);
  return std::nullopt;
}

// Builds the value from the reader's calls. A call's token starts behind the last one, after
// blanks, commas and colons, whether or not the reader has consumed the token when it calls.
class TreeBuilder {
 public:
  TreeBuilder(std::string_view text, const rapidjson::MemoryStream& stream)
      : text_(text), stream_(stream), lines_(text) {}

  bool Null() { return AddScalar(JsonValue()); }
  bool Bool(bool value) { return AddScalar(JsonValue(value)); }
  bool RawNumber(const char* digits, rapidjson::SizeType size, bool) {
    std::optional<JsonValue> number = ReadNumber({digits, size});
    if (!number) return Fail(StartToken(), "Number out of range of a double.");
    return AddScalar(std::move(*number));
  }
  bool String(const char* text, rapidjson::SizeType size, bool) {
    const std::string_view view(text, size);
    if (HasSurrogate(view)) return Fail(StartToken(), kSurrogateText);
    return AddScalar(JsonValue(view));
  }
  bool Key(const char* text, rapidjson::SizeType size, bool) {
    keys_.push_back({std::string(text, size), JsonValue(), StartToken()});
    tokenEnd_ = stream_.Tell();
    return !HasSurrogate(keys_.back().name) || Fail(keys_.back().position, kSurrogateText);
  }
  bool StartObject() { return Open(JsonValue::Object()); }
  bool StartArray() { return Open(JsonValue::Array()); }
  bool EndArray(rapidjson::SizeType) { return Close(); }
  bool EndObject(rapidjson::SizeType) { return CheckNames(*open_.back().AsObject()) && Close(); }
  // Never called: numbers come as digits.
  bool Int(int) { return false; }
  bool Uint(unsigned) { return false; }
  bool Int64(int64_t) { return false; }
  bool Uint64(uint64_t) { return false; }
  bool Double(double) { return false; }

  JsonValue& root() { return root_; }
  std::optional<JsonIssue>& issue() { return issue_; }

 private:
  static constexpr const char* kSurrogateText = "The surrogate pair in string is invalid.";

  TextPosition StartToken() {
    while (tokenEnd_ < text_.size() &&
           std::string_view(" \t\r\n,:").find(text_[tokenEnd_]) != std::string_view::npos) {
      ++tokenEnd_;
    }
    return lines_.At(tokenEnd_);
  }

  bool AddScalar(JsonValue value) {
    value.set_position(StartToken());
    tokenEnd_ = stream_.Tell();
    return Add(std::move(value));
  }

  bool Add(JsonValue value) {
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (JsonValue::Array* array = open_.back().AsArray()) {
      array->push_back(std::move(value));
    } else {
      keys_.back().value = std::move(value);
      open_.back().AsObject()->push_back(std::move(keys_.back()));
      keys_.pop_back();
    }
    return true;
  }

  bool Open(JsonValue container) {
    container.set_position(StartToken());
    ++tokenEnd_;
    if (open_.size() == kMaxJsonDepth) return Fail(container.position(), "Nesting is too deep.");
    open_.push_back(std::move(container));
    return true;
  }

  bool Close() {
    StartToken();
    ++tokenEnd_;
    JsonValue value = std::move(open_.back());
    open_.pop_back();
    return Add(std::move(value));
  }

  bool CheckNames(const JsonValue::Object& members) {
    std::vector<const JsonValue::Member*> sorted;
    for (const JsonValue::Member& member : members) sorted.push_back(&member);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto* a, const auto* b) { return a->name < b->name; });
    const auto twice =
        std::adjacent_find(sorted.begin(), sorted.end(),
                           [](const auto* a, const auto* b) { return a->name == b->name; });
    if (twice == sorted.end()) return true;
    return Fail(twice[1]->position, "member \"" + twice[1]->name + "\" stands here a second time");
  }

  bool Fail(TextPosition position, std::string text) {
    issue_ = JsonIssue{position, std::move(text)};
    return false;
  }

  std::string_view text_;
  const rapidjson::MemoryStream& stream_;
  LineCounter lines_;
  size_t tokenEnd_ = 0;
  std::vector<JsonValue> open_;
  std::vector<JsonValue::Member> keys_;  // names still waiting for their value
  JsonValue root_;
  std::optional<JsonIssue> issue_;
};

}  // namespace

MaybeType<JsonIssue, JsonValue> ReadJson(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());

  rapidjson::MemoryStream stream(text.data(), text.size());
  TreeBuilder builder(text, stream);
  Reader reader;
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                              rapidjson::kParseValidateEncodingFlag |
                              rapidjson::kParseNumbersAsStringsFlag;
  const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, builder);
  if (builder.issue()) return std::move(*builder.issue());
  if (result.IsError()) {
    return JsonIssue{LineCounter(text).At(result.Offset()),
                     rapidjson::GetParseError_En(result.Code())};
  }
  if (stream.Tell() != text.size()) {  // a NUL byte ends the reader's look-out for more
    return JsonIssue{LineCounter(text).At(stream.Tell()),
                     rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular)};
  }
  return std::move(builder.root());
}

std::string DescribeIssue(std::string_view name, const JsonIssue& issue) {
  return std::string(name) + ":" + std::to_string(issue.position.line) + ":" +
         std::to_string(issue.position.column) + ": " + issue.text;
}

}  // namespace Kest::Host
