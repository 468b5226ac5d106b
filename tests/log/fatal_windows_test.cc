#include "log/fatal.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace Kest {
namespace {

constexpr DWORD kSystemError = 0x5eed;

// Ends well only if the violation is a store to address zero with the error code at hand.
LONG CALLBACK ReadViolation(EXCEPTION_POINTERS* violation) {
  const EXCEPTION_RECORD& record = *violation->ExceptionRecord;
  if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION) return EXCEPTION_CONTINUE_SEARCH;
  const CONTEXT& at = *violation->ContextRecord;
  const DWORD registers[] = {at.Eax, at.Ebx, at.Ecx, at.Edx, at.Esi, at.Edi};
  const bool isAtHand = std::ranges::find(registers, kSystemError) != std::end(registers);
  const bool isStore = record.ExceptionInformation[0] == 1 && record.ExceptionInformation[1] == 0;
  std::_Exit(isStore && isAtHand ? 42 : 1);
}

TEST(FatalDeathTest, TheViolationCarriesTheSystemsErrorCode) {
  EXPECT_EXIT((AddVectoredExceptionHandler(1, ReadViolation), SetLastError(kSystemError),
               Fatal(kFatalUuid)),
              ::testing::ExitedWithCode(42), "ALE-8B4DC795");
}

}  // namespace
}  // namespace Kest
