#include <windows.h>

#include "host/library/shared_library.h"

namespace Kest::Host {

void* OpenSharedLibrary(const std::string& path, std::string* reason) {
  void* const library = LoadLibraryA(path.c_str());
  if (library == nullptr) *reason = "system error " + std::to_string(GetLastError());
  return library;
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void CloseSharedLibrary(void* library) {
  FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace Kest::Host
