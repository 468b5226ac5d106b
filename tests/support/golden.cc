#include "tests/support/golden.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace Kest::Testing {
namespace {

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

}  // namespace

testing::AssertionResult GoldenText(const std::string& path, std::string_view text) {
  const std::string file = KEST_SOURCE_DIR "/" + path;
  if (std::getenv("KEST_UPDATE_GOLDEN") != nullptr) {
    std::ofstream out(file, std::ios::binary);
    out << text << std::flush;
    return out.good() ? testing::AssertionSuccess()
                      : testing::AssertionFailure() << path << " cannot be written";
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) return testing::AssertionFailure() << path << " cannot be read";
  const std::string golden{std::istreambuf_iterator<char>(in), {}};
  if (golden == text) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << path << " (-) differs from what the code gives (+):\n"
         << testing::internal::edit_distance::CreateUnifiedDiff(Lines(golden), Lines(text));
}

}  // namespace Kest::Testing
