// The edge where calls from the host come in: no exception passes it.
// Threads: any.
#pragma once

#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "log/logger.h"

namespace Kest {

inline constexpr char kOutOfMemory[] = "Out of memory";  // short: a string of it allocates nothing

// Runs `work()`. An exception ends here: `handle(message)` gets its message, "Out of memory" for
// std::bad_alloc and an empty string for what is no std::exception.
template <class Work, class Handle>
void RunAtBoundary(Work&& work, Handle&& handle) noexcept {
  static_assert(std::is_nothrow_invocable_v<Handle, const char*>,
                "what handles an exception must not throw one: mark it noexcept");
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

// The error line of an exception: "<what>: <message>".
inline void LogException(const char* what, const char* text) noexcept {
  LogError("%s: %s", what, *text != '\0' ? text : "unknown exception");
}

// The same for calls that return nothing: the error line only.
template <class Work>
void RunAndLog(const char* what, Work&& work) noexcept {
  RunAtBoundary(std::forward<Work>(work),
                [what](const char* text) noexcept { LogException(what, text); });
}

// A copy of an exception's message, or "Out of memory" when there is none for it.
inline std::string CopyMessage(std::string_view text) noexcept {
  try {
    return std::string(text);
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  }
}

}  // namespace Kest
