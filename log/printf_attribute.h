// Lets the compiler check printf-style formats against their arguments.
#pragma once

// Parameter `format` (counted from 1, `this` included) is a printf format for the parameters from
// `first` on; `first` is 0 for a va_list.
#if defined(__MINGW32__) && !defined(__clang__)
#define KEST_PRINTF(format_, first_) __attribute__((format(gnu_printf, format_, first_)))
#else
#define KEST_PRINTF(format_, first_) __attribute__((format(printf, format_, first_)))
#endif
