#include "tests/support/golden.h"

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace Kest::Testing {
namespace {

const std::string kSources = KEST_SOURCE_DIR "/";

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

std::string Unescaped(std::string_view line) {
  std::string bytes;
  for (size_t at = 0; at < line.size(); ++at) {
    uint8_t byte = 0;
    const char* const digits = line.data() + at + 2;
    if (line.substr(at).starts_with("~x") && at + 4 <= line.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      bytes += static_cast<char>(byte);
      at += 3;
    } else {
      bytes += line[at];
    }
  }
  return bytes;
}

std::string Escaped(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string line;
  for (const char c : bytes) {
    const auto byte = static_cast<uint8_t>(c);
    const bool isPlain = byte >= 0x20 && byte < 0x7F;
    line +=
        isPlain ? std::string(1, c) : std::string("~x") + kDigits[byte >> 4] + kDigits[byte & 15];
  }
  return line;
}

}  // namespace

std::string SourceText(const std::string& path) {
  std::ifstream in(kSources + path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

testing::AssertionResult GoldenText(const std::string& path, std::string_view text) {
  const std::string file = kSources + path;
  if (std::getenv("KEST_UPDATE_GOLDEN") != nullptr) {
    std::ofstream out(file, std::ios::binary);
    out << text << std::flush;
    return out.good() ? testing::AssertionSuccess()
                      : testing::AssertionFailure() << path << " cannot be written";
  }
  const std::string golden = SourceText(path);
  if (golden == text) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << path << " (-) differs from what the code gives (+):\n"
         << testing::internal::edit_distance::CreateUnifiedDiff(Lines(golden), Lines(text));
}

testing::AssertionResult GoldenCases(
    const std::string& path, const std::function<std::string(const std::string&)>& outcome) {
  std::ifstream in(kSources + path, std::ios::binary);
  std::string text, input;
  bool isInput = false;
  for (std::string line; std::getline(in, line);) {
    const bool isOutcome = isInput && line.starts_with("=> ");
    text += isOutcome ? "=> " + Escaped(outcome(input.substr(0, input.size() - 1))) : line;
    text += '\n';
    if (isOutcome) isInput = false;
    if (isInput) input += Unescaped(line) + "\n";
    if (!isInput && line.starts_with("# ")) {
      isInput = true;
      input.clear();
    }
  }
  if (text.empty()) return testing::AssertionFailure() << path << " holds no cases";
  return GoldenText(path, text);
}

}  // namespace Kest::Testing
