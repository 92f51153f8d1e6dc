#include <cstdio>
#include <cstdlib>

#include "targets.h"

namespace merlane::fuzz {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace merlane::fuzz
