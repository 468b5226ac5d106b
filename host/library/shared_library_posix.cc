#include <dlfcn.h>

#include "host/library/shared_library.h"

namespace Kest::Host {

void* OpenSharedLibrary(const std::string& path, std::string* reason) {
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
