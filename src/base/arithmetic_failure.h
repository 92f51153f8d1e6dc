#pragma once

#include "base/runtime_failure.h"

namespace merlane {

/// A calculation has no result with these numbers: an overflow, a division by zero, a logarithm of 0. It is what the
/// routines of base/arithmetic.h raise. With other numbers there may be a result, so that a search can go on elsewhere.
class ArithmeticFailure : public RuntimeFailure {
 public:
  using RuntimeFailure::RuntimeFailure;
};

}  // namespace merlane
