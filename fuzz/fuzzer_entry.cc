// The entry of one fuzzer: feeds what libFuzzer makes up to the property that KEST_PROPERTY names,
// and measures the decoders meanwhile. A finding ends the program, so that libFuzzer keeps the
// input.
#include <sanitizer/allocator_interface.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "log/logger.h"

namespace Kest::Fuzz {
namespace {

// Processor time, because other programs of the machine must not fail a run; three seconds of it
// for what promises one, because the sanitizers slow the code down.
constexpr int64_t kMaxNanoseconds = 3'000'000'000;
constexpr int64_t kMaxHeapBytes = int64_t{256} << 20;

// What a decoder takes while it runs.
struct Usage {
  bool isMeasured = false;
  int64_t start = 0;  // processor time, nanoseconds
  int64_t bytes = 0;
  int64_t peak = 0;
};
Usage usage;

void OnAllocate(const volatile void*, size_t size) {
  if (!usage.isMeasured) return;
  usage.bytes += static_cast<int64_t>(size);
  usage.peak = std::max(usage.peak, usage.bytes);
}

void OnFree(const volatile void* memory) {
  if (!usage.isMeasured || memory == nullptr) return;
  usage.bytes -=
      static_cast<int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(memory)));
}

int64_t ProcessorTime() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

void BeginDecoding() {
  usage = {true, ProcessorTime(), 0, 0};
}

void EndDecoding() {
  usage.isMeasured = false;
  const int64_t taken = ProcessorTime() - usage.start;
  if (taken <= kMaxNanoseconds && usage.peak <= kMaxHeapBytes) return;
  std::fprintf(stderr, "FINDING: a decoder took %lld ms and %lld bytes\n",
               static_cast<long long>(taken / 1'000'000), static_cast<long long>(usage.peak));
  std::abort();
}

}  // namespace
}  // namespace Kest::Fuzz

// Called by libFuzzer before the first input.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  using namespace Kest::Fuzz;
  Kest::Logger::Instance().SetDisabled(true);
  __sanitizer_install_malloc_and_free_hooks(OnAllocate, OnFree);
  decoderWatch = {BeginDecoding, EndDecoding};
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace Kest::Fuzz;
  try {
    KEST_PROPERTY({reinterpret_cast<const char*>(data), size});
  } catch (const Finding& finding) {
    std::fprintf(stderr, "FINDING: %.20000s\n", finding.what());
    std::abort();
  }
  return 0;
}
