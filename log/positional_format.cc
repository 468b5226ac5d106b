#include "log/positional_format.h"

#include <algorithm>

#include "log/conversion.h"

namespace Kest {
namespace {

constexpr size_t kMaximumSpecification = 60;  // bytes after the "%", the letter included

// One run over a template. Each step returns how the text goes on, false where formatting ends.
class PatternRun {
 public:
  PatternRun(std::span<const FormatArgument> arguments, FixedBuffer& out)
      : arguments_(arguments), out_(out) {}

  // Writes the conversion at the start of `text`, which follows a "%"; `*size` is its length.
  bool Specification(std::string_view text, size_t* size) {
    if (text.starts_with('%')) {
      out_.Append('%');
      *size = 1;
      return true;
    }
    size_t digits = 0;
    const uint64_t position = ReadPosition(text, &digits);
    if (position == 0 || position > arguments_.size()) return Convert(text, 0, 0, size);
    if (text.substr(digits).starts_with('$')) return Convert(text, digits + 1, position, size);
    RenderDefault(arguments_[position - 1], out_);
    *size = digits;
    return true;
  }

 private:
  // The conversion at text[start]; `position` 0 takes the next argument in sequence.
  bool Convert(std::string_view text, size_t start, uint64_t position, size_t* size) {
    ConversionText read;
    if (!ReadConversion(text.substr(start), &read)) return false;
    *size = start + read.size;
    if (*size > kMaximumSpecification) return false;
    int64_t number = 0;
    if (read.width.present) {
      if (!Star(read.width, &number)) return false;
      read.conversion.SetWidth(number);
    }
    if (read.precision.present) {
      if (!Star(read.precision, &number)) return false;
      read.conversion.SetPrecision(number);
    }
    const FormatArgument* argument = Take(position);
    return argument != nullptr && Render(read.conversion, *argument, out_);
  }

  const FormatArgument* Take(uint64_t position) {
    if (position == 0) position = next_++;
    return position <= arguments_.size() ? &arguments_[position - 1] : nullptr;
  }

  bool Star(const StarArgument& star, int64_t* number) {
    const FormatArgument* argument = Take(star.position);
    if (argument == nullptr) return false;
    if (argument->GetKind() == FormatArgument::Kind::kSigned) {
      *number = argument->Signed();
      return true;
    }
    if (argument->GetKind() != FormatArgument::Kind::kUnsigned) return false;
    constexpr uint64_t kLarge = kFormatCapacity;
    *number = static_cast<int64_t>(std::min(argument->Unsigned(), kLarge));
    return true;
  }

  std::span<const FormatArgument> arguments_;
  FixedBuffer& out_;
  uint64_t next_ = 1;
};

const NamedField* FindField(std::initializer_list<NamedField> fields, std::string_view name) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const NamedField& field) { return field.name == name; });
  return found != fields.end() ? found : nullptr;
}

}  // namespace

std::string FormatList(std::string_view pattern, std::span<const FormatArgument> arguments) {
  char buffer[kFormatCapacity];
  FixedBuffer out(buffer, sizeof(buffer));
  PatternRun run(arguments, out);
  while (!pattern.empty() && !out.IsFull()) {
    pattern.remove_prefix(out.AppendUntil('%', pattern));
    if (pattern.empty()) break;
    pattern.remove_prefix(1);
    size_t size = 0;
    if (!run.Specification(pattern, &size)) break;
    pattern.remove_prefix(size);
  }
  return std::string(out.View());
}

std::string FormatNamed(std::string_view pattern, std::initializer_list<NamedField> fields) {
  std::string text;
  while (!pattern.empty()) {
    const size_t open = std::min(pattern.find('{'), pattern.size());
    text.append(pattern.substr(0, open));
    pattern.remove_prefix(open);
    const size_t close = pattern.find('}');
    if (close == std::string_view::npos) break;
    if (const NamedField* field = FindField(fields, pattern.substr(1, close - 1))) {
      text.append(field->value);
      pattern.remove_prefix(close + 1);
    } else {
      text += '{';
      pattern.remove_prefix(1);
    }
  }
  return text.append(pattern);
}

}  // namespace Kest
