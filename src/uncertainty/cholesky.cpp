#include "uncertainty/cholesky.h"

#include <cmath>

namespace merlane {

int FirstNotPositive(Matrix1<double> a) {
  const int n = a.Rows();
  Array1<double> p(n);
  for (int i = 1; i <= n; ++i)
    for (int j = i; j <= n; ++j) {
      double sum = a(i, j);
      for (int k = i - 1; k >= 1; --k) sum -= a(i, k) * a(j, k);
      if (j > i) {
        a(j, i) = sum / p(i);
      } else {
        if (!(sum > 0)) return i;
        p(i) = std::sqrt(sum);
      }
    }
  return 0;
}

}  // namespace merlane
