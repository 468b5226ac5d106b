#include <cstdio>
#include <string_view>

#include "bench/comparison.h"

#if !defined(NDEBUG) || !defined(__OPTIMIZE__)
#error "Only release builds are worth measuring: use the preset bench."
#endif

// Prints the rows of the program's table; with --times only our side's times, see Table.
int main(int argc, char** argv) {
  const bool timesOnly = argc == 2 && std::string_view(argv[1]) == "--times";
  if (argc > 1 && !timesOnly) {
    std::fprintf(stderr, "usage: %s [--times]\n", argv[0]);
    return 2;
  }
  Kest::Bench::Table table(timesOnly);
  Kest::Bench::AddRows(table);
  return 0;
}
