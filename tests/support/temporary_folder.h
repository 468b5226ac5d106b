// A folder for the files of one test, which goes with it. No other run of the tests uses it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace Kest::Testing {

class TemporaryFolder {
 public:
  TemporaryFolder() { std::filesystem::create_directories(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
    EXPECT_FALSE(error) << path_ << ": " << error.message();
  }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  const std::filesystem::path path_ = std::filesystem::path(testing::TempDir()) /
                                      ("kest-test-" + std::to_string(std::random_device()()));
};

}  // namespace Kest::Testing
