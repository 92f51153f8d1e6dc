#include "base/processor.h"

namespace merlane {

#ifdef __x86_64__
bool HasAvx2() { return __builtin_cpu_supports("avx2") != 0; }
bool HasAvx512() {
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0 &&
         __builtin_cpu_supports("avx512vl") != 0;
}
#else
bool HasAvx2() { return false; }
bool HasAvx512() { return false; }
#endif

}  // namespace merlane
