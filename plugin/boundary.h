// The edge where calls from the host come in: no exception passes it.
// Threads: any.
#pragma once

#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "log/logger.h"

namespace Kest {

inline constexpr char kOutOfMemory[] = "Out of memory";

// Runs `work()`. An exception ends here: `handle(message)` gets its message, "Out of memory" for
// std::bad_alloc and an empty string for what is no std::exception.
template <class Work, class Handle>
void RunAtBoundary(Work&& work, Handle&& handle) noexcept {
  try {
    std::forward<Work>(work)();
  } catch (const std::bad_alloc&) {
    std::forward<Handle>(handle)(kOutOfMemory);
  } catch (const std::exception& error) {
    std::forward<Handle>(handle)(error.what());
  } catch (...) {
    std::forward<Handle>(handle)("");
  }
}

// The same for calls that return nothing: one error line "<what>: <message>".
template <class Work>
void RunAndLog(const char* what, Work&& work) noexcept {
  RunAtBoundary(std::forward<Work>(work), [what](const char* text) {
    LogError("%s: %s", what, *text != '\0' ? text : "unknown exception");
  });
}

}  // namespace Kest
