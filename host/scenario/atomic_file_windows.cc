#include <windows.h>

#include <system_error>

#include "host/scenario/atomic_file.h"

namespace Kest::Host {
namespace {

bool WriteToDisk(const std::string& path, std::string_view text) {
  HANDLE const file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  bool isGood = true;
  while (isGood && !text.empty()) {
    DWORD written = 0;
    isGood = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
    text.remove_prefix(written);
  }
  isGood = isGood && FlushFileBuffers(file) != 0;
  return CloseHandle(file) != 0 && isGood;
}

}  // namespace

Maybe<Nothing> WriteFileAtomically(const std::string& path, std::string_view text) {
  const std::string beside = path + ".new";
  if (WriteToDisk(beside, text) &&
      MoveFileExA(beside.c_str(), path.c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
    return Nothing{};
  }
  return Failure{"Cannot write " + path + ": " +
                 std::system_category().message(static_cast<int>(GetLastError()))};
}

}  // namespace Kest::Host
