#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "host/library/shared_library.h"
#include "tests/support/temporary_folder.h"

namespace Kest::Host {
namespace {

using ::testing::HasSubstr;

class SharedLibraryFile : public ::testing::Test {
 protected:
  SharedLibraryFile()
      : path_(folder_ / "library.so"), size_(std::filesystem::file_size(ECHO_PLUGIN)) {
    Restore();
  }

  void Restore() {
    std::filesystem::remove(path_);
    std::filesystem::copy_file(ECHO_PLUGIN, path_);
  }

  void Write(size_t offset, size_t bytes) {
    std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(offset))
        .write("\xF8\xFF\xFF\xFF\xFF\xFF\xFF\xFF", bytes);
  }

  // Why it is not loaded; empty when it is.
  std::string Refusal() const {
    std::string reason;
    void* const library = OpenSharedLibrary(path_, &reason);
    if (library != nullptr) CloseSharedLibrary(library);
    return reason;
  }

  const Testing::TemporaryFolder folder_;
  const std::string path_;
  const uint64_t size_;
};

TEST_F(SharedLibraryFile, IsRefusedAtEachLengthButItsOwn) {
  EXPECT_EQ(Refusal(), "");
  std::string reason = "the file is cut short: it has ";
  reason.append(std::to_string(size_ - 1)).append(" bytes and needs ");
  reason.append(std::to_string(size_));
  for (uint64_t left = size_ - 1; left < size_; left -= left < 200 ? 1 : 61) {
    std::filesystem::resize_file(path_, left);
    EXPECT_THAT(Refusal(), HasSubstr(reason));
    reason = left <= sizeof(ElfW(Ehdr)) ? path_ : "cut short";  // at last the loader's words
  }
}

TEST_F(SharedLibraryFile, IsRefusedForPlacesBeyondAllNumbers) {
  const size_t segment = sizeof(ElfW(Ehdr));  // the first follows the header
  const std::pair<size_t, size_t> places[] = {
      {offsetof(ElfW(Ehdr), e_phoff), sizeof(ElfW(Off))},
      {offsetof(ElfW(Ehdr), e_shoff), sizeof(ElfW(Off))},
      {offsetof(ElfW(Ehdr), e_phnum), sizeof(ElfW(Half))},
      {segment + offsetof(ElfW(Phdr), p_offset), sizeof(ElfW(Off))},
      {segment + offsetof(ElfW(Phdr), p_filesz), sizeof(ElfW(Off))}};
  for (const auto& [offset, bytes] : places) {
    Restore();
    Write(offset, bytes);
    EXPECT_THAT(Refusal(), HasSubstr("cut short")) << "at " << offset;
  }
}

}  // namespace
}  // namespace Kest::Host
