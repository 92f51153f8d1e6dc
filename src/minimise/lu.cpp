#include "minimise/lu.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/arithmetic.h"

namespace merlane {
namespace {

constexpr double TinyPivot = 1E-20;

double LargestOfRow(int n, const Matrix1<double>& a, int i) {
  double largest = 0;
  for (int j = 1; j <= n; ++j) largest = std::max(largest, std::fabs(a(i, j)));
  return largest;
}

/// Element (i, j) less the products of the first `count` factors of its row and column.
double Reduced(const Matrix1<double>& a, int i, int j, int count) {
  double sum = a(i, j);
  for (int k = 1; k <= count; ++k) sum -= a(i, k) * a(k, j);
  return Checked(sum);
}

void SwapRows(int n, Matrix1<double>& a, int i, int j) {
  for (int k = 1; k <= n; ++k) std::swap(a(i, k), a(j, k));
}

void Turn(const std::function<void()>& turn) {
  if (turn) turn();
}

}  // namespace

LUPermutation LUDecompose(int n, Matrix1<double>& a, const std::function<void()>& turn) {
  LUPermutation p;
  p.row.Dimension(n);
  Array1<double> scale(n);
  for (int i = 1; i <= n; ++i) {
    Turn(turn);
    const double largest = LargestOfRow(n, a, i);
    if (largest == 0) {
      p.failedRow = i;
      return p;
    }
    scale(i) = Divide(1, largest);
  }
  for (int j = 1; j <= n; ++j) {
    Turn(turn);
    for (int i = 1; i < j; ++i) a(i, j) = Reduced(a, i, j, i - 1);
    double best = 0;
    int pivot = j;
    for (int i = j; i <= n; ++i) {
      a(i, j) = Reduced(a, i, j, j - 1);
      const double figure = scale(i) * std::fabs(a(i, j));
      if (figure >= best) {
        best = figure;
        pivot = i;
      }
    }
    if (pivot != j) {
      SwapRows(n, a, pivot, j);
      p.sign = -p.sign;
      scale(pivot) = scale(j);
    }
    p.row(j) = pivot;
    if (a(j, j) == 0) a(j, j) = TinyPivot;
    for (int i = j + 1; i <= n; ++i) a(i, j) = Divide(a(i, j), a(j, j));
  }
  return p;
}

void LUBackSubstitute(int n, const Matrix1<double>& a, const LUPermutation& p, Array1<double>& b,
                      const std::function<void()>& turn) {
  int first = 0;  // first element that is not zero
  for (int i = 1; i <= n; ++i) {
    Turn(turn);
    double sum = b(p.row(i));
    b(p.row(i)) = b(i);
    if (first > 0)
      for (int j = first; j < i; ++j) sum -= a(i, j) * b(j);
    else if (sum != 0)
      first = i;
    b(i) = Checked(sum);
  }
  for (int i = n; i >= 1; --i) {
    Turn(turn);
    double sum = b(i);
    for (int j = i + 1; j <= n; ++j) sum -= a(i, j) * b(j);
    b(i) = Divide(sum, a(i, i));
  }
}

void LUBackSubstitute(int n, const Matrix1<double>& a, const LUPermutation& p, Matrix1<double>& b, int column,
                      const std::function<void()>& turn) {
  Array1<double> rhs(n);
  for (int i = 1; i <= n; ++i) rhs(i) = b(i, column);
  LUBackSubstitute(n, a, p, rhs, turn);
  for (int i = 1; i <= n; ++i) b(i, column) = rhs(i);
}

}  // namespace merlane
