#pragma once

#include <functional>

#include "base/array1.h"

namespace merlane {

/// What a decomposition leaves beside the factors.
struct LUPermutation {
  Array1<int> row;    // the row that was exchanged with row j when column j was reduced
  double sign = 1;    // 1 or -1, for the determinant
  int failedRow = 0;  // first row that holds nothing but zeros; then there is no decomposition
  bool Failed() const { return failedRow > 0; }
};

/// Decomposes the upper left n x n elements of `matrix` in place into a lower factor (its unit diagonal not stored) and
/// an upper one, by Crout's method with implicitly scaled partial pivoting (W. H. Press, B. P. Flannery, S. A.
/// Teukolsky and W. T. Vetterling, Numerical Recipes, 1986, chapter 2.3). A diagonal element of 0 becomes 1E-20. Fails,
/// and leaves the matrix as it was, when a whole row is zero; RuntimeFailure on an overflow. Calls `turn` at each row
/// and column.
///
/// The order of operations decides whole runs of a minimiser that factorises factors again: sums are running
/// subtractions, the column below a pivot is divided by it, and a row of equal figure takes the pivot over.
LUPermutation LUDecompose(int n, Matrix1<double>& matrix, const std::function<void()>& turn = {});

/// Solves for one right-hand side in place, rows 1..n of `rhs`, with the factors and the permutation of LUDecompose.
/// RuntimeFailure on an overflow.
void LUBackSubstitute(int n, const Matrix1<double>& factors, const LUPermutation& permutation, Array1<double>& rhs,
                      const std::function<void()>& turn = {});

/// The same for one column of a matrix of right-hand sides.
void LUBackSubstitute(int n, const Matrix1<double>& factors, const LUPermutation& permutation, Matrix1<double>& rhs,
                      int column, const std::function<void()>& turn = {});

}  // namespace merlane
