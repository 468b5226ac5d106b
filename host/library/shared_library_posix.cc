#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "host/library/elf_extent_posix.h"
#include "host/library/shared_library.h"

namespace Kest::Host {
namespace {

// As the file of a build that ran out of disk, or has not ended.
bool IsCutShort(const std::string& path, std::string* reason) {
  std::error_code error;
  const uint64_t size = std::filesystem::file_size(path, error);  // fails for all but plain files
  if (error) return false;
  const uint64_t needed = ElfExtent(path).value_or(0);
  if (needed <= size) return false;
  *reason = "the file is cut short: it has " + std::to_string(size) + " bytes and needs ";
  *reason += std::to_string(needed);
  return true;
}

}  // namespace

void* OpenSharedLibrary(const std::string& path, std::string* reason) {
  if (IsCutShort(path, reason)) return nullptr;
  // A name without a separator would be searched for in the system's directories.
  const bool isPath = path.find('/') != std::string::npos;
  void* const library = dlopen((isPath ? path : "./" + path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* const text = dlerror();
    *reason = text != nullptr ? text : "unknown reason";
  }
  return library;
}

void* FindSymbol(void* library, const char* name) {
  return dlsym(library, name);
}

void CloseSharedLibrary(void* library) {
  dlclose(library);
}

}  // namespace Kest::Host
