// The system's loader of shared libraries: three functions for the two systems.
#pragma once

#include <string>

namespace Kest::Host {

// Null when the library cannot be loaded; `*reason` then says why.
void* OpenSharedLibrary(const std::string& path, std::string* reason);
// The address of an exported function, or null.
void* FindSymbol(void* library, const char* name);
void CloseSharedLibrary(void* library);

}  // namespace Kest::Host
