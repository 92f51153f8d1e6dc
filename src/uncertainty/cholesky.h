#pragma once

#include "base/array1.h"

namespace merlane {

/// The first row of a symmetric matrix at which it turns out not to be positive definite, 0 when it is: the row whose
/// pivot in Cholesky's decomposition is not strictly positive (a NaN is not). Reads the upper triangle and diagonal.
int FirstNotPositive(Matrix1<double> a);

}  // namespace merlane
