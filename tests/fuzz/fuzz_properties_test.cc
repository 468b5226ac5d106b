// The properties of the fuzzers, in every build: on the seeds that the fuzzers keep, and on what a
// fixed seed makes of those.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "log/logger.h"
#include "tests/support/classic_locale.h"

namespace Kest::Fuzz {
namespace {

constexpr int kRounds = 3000;

// The contents of a property's files, in the order of their names.
std::vector<std::string> ReadSeeds(std::string_view property) {
  std::map<std::string, std::string> seeds;
  const std::filesystem::path folder = std::filesystem::path(FUZZ_CORPUS) / property;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    seeds[entry.path().filename().string()].assign(std::istreambuf_iterator<char>(file), {});
  }
  std::vector<std::string> contents;
  for (auto& [name, bytes] : seeds) contents.push_back(std::move(bytes));
  return contents;
}

// Makes inputs of seeds. No distribution of the library: every build draws the same inputs.
class InputMaker {
 public:
  explicit InputMaker(const std::vector<std::string>& seeds) : seeds_(seeds) {}

  // Pieces of seeds one after another, or a seed with some edits.
  std::string Next() {
    std::string input;
    if (Below(2) == 0) {
      for (size_t pieces = 1 + Below(30); pieces > 0; --pieces) input += Piece();
      return input;
    }
    input = Seed();
    for (size_t edits = 1 + Below(5); edits > 0; --edits) Edit(&input);
    return input;
  }

 private:
  size_t Below(size_t end) { return draw_() % end; }
  const std::string& Seed() { return seeds_[Below(seeds_.size())]; }
  std::string Piece() {
    const std::string& seed = Seed();
    return seed.substr(Below(seed.size() + 1), 1 + Below(Below(4) == 0 ? 30 : 5));
  }
  void Edit(std::string* input) {
    const size_t at = Below(input->size() + 1);
    switch (Below(5)) {
      case 0:
        input->insert(at, 1, static_cast<char>(Below(256)));
        break;
      case 1:
        input->erase(at, 1 + Below(8));
        break;
      case 2:
        if (at < input->size()) (*input)[at] = static_cast<char>((*input)[at] ^ (1 << Below(8)));
        break;
      case 3:
        input->insert(at, Piece());
        break;
      default:
        input->insert(at, input->substr(Below(at + 1), 1 + Below(16)));
    }
  }

  const std::vector<std::string>& seeds_;
  std::mt19937 draw_{301};
};

class FuzzProperty : public ::testing::TestWithParam<Property> {
 protected:
  FuzzProperty() { Logger::Instance().SetDisabled(true); }

  static void Check(const std::string& input) {
    try {
      GetParam().check(input);
    } catch (const std::exception& finding) {
      FAIL() << finding.what() << "\ninput: " << ::testing::PrintToString(input);
    }
  }

 private:
  const Testing::ClassicLocale classic_;  // the C library is the reference of some properties
};

TEST_P(FuzzProperty, HoldsForItsSeedsAndWhatIsMadeOfThem) {
  const std::vector<std::string> seeds = ReadSeeds(GetParam().name);
  ASSERT_FALSE(seeds.empty());
  for (const std::string& seed : seeds) ASSERT_NO_FATAL_FAILURE(Check(seed));
  InputMaker inputs(seeds);
  for (int i = 0; i < kRounds; ++i) ASSERT_NO_FATAL_FAILURE(Check(inputs.Next()));
}

INSTANTIATE_TEST_SUITE_P(Each, FuzzProperty, ::testing::ValuesIn(Properties()),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace Kest::Fuzz
