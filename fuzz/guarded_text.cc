#include "fuzz/guarded_text.h"

#include <cstddef>
#include <cstring>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace Kest::Fuzz {
namespace {

constexpr size_t kGuardedBytes = size_t{1} << 20;

// The end of kGuardedBytes that can be written, with a page after it that cannot be read; null when
// there is none.
char* GuardedEnd() {
#if defined(__linux__)
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  void* memory = mmap(nullptr, kGuardedBytes + page, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  char* const end = static_cast<char*>(memory) + kGuardedBytes;
  return mprotect(end, page, PROT_NONE) == 0 ? end : nullptr;
#else
  return nullptr;
#endif
}

}  // namespace

GuardedText::GuardedText(std::string_view text) {
  static char* const end = GuardedEnd();
  char* copy = nullptr;
  if (end != nullptr && text.size() <= kGuardedBytes) {
    copy = end - text.size();
  } else {
    block_ = std::make_unique<char[]>(text.size());
    copy = block_.get();
  }
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  view_ = {copy, text.size()};
}

}  // namespace Kest::Fuzz
