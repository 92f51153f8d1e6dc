#include "uncertainty/cholesky.h"

#include <gtest/gtest.h>

#include <limits>

namespace merlane {
namespace {

Matrix1<double> Symmetric(const std::vector<std::vector<double>>& rows) {
  const int n = static_cast<int>(rows.size());
  Matrix1<double> a(n, n);
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j)
      a(i, j) = rows[static_cast<std::size_t>(std::min(i, j)) - 1][static_cast<std::size_t>(std::max(i, j)) - 1];
  return a;
}

TEST(Cholesky, PositiveDefiniteMatrixPasses) {
  EXPECT_EQ(FirstNotPositive(Symmetric({{4, 2, 1}, {0, 3, 0.5}, {0, 0, 2}})), 0);
}

TEST(Cholesky, NegativeVarianceOnTheDiagonalCannotPass) {
  EXPECT_EQ(FirstNotPositive(Symmetric({{-1e-300}})), 1);
  EXPECT_EQ(FirstNotPositive(Symmetric({{4, 0, 0}, {0, 1, 0}, {0, 0, -2}})), 3);
}

TEST(Cholesky, DeadParameterFailsAtItsRow) { EXPECT_EQ(FirstNotPositive(Symmetric({{4, 0}, {0, 0}})), 2); }

TEST(Cholesky, PerfectlyCorrelatedPairFailsAtItsSecond) {
  EXPECT_EQ(FirstNotPositive(Symmetric({{1, 1, 0}, {0, 1, 0}, {0, 0, 1}})), 2);
}

TEST(Cholesky, IndefiniteMatrixOfPositiveDiagonalFails) { EXPECT_EQ(FirstNotPositive(Symmetric({{1, 2}, {0, 1}})), 2); }

TEST(Cholesky, NotANumberFails) {
  EXPECT_EQ(FirstNotPositive(Symmetric({{1, std::numeric_limits<double>::quiet_NaN()}, {0, 1}})), 2);
}

// Of a matrix on the edge the order of subtraction decides: running forwards, this one would pass.
TEST(Cholesky, SumsRunBackwards) {
  EXPECT_EQ(
      FirstNotPositive(Symmetric({{8.6, -3.8, 6.3, -0.8}, {0, 7.4, -2.7, 6.4}, {0, 0, 8.1, 2.7}, {0, 0, 0, 9.4}})), 4);
}

TEST(Cholesky, NoRowsPass) { EXPECT_EQ(FirstNotPositive(Matrix1<double>(0, 0)), 0); }

}  // namespace
}  // namespace merlane
