#include "minimise/lu.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/runtime_failure.h"

namespace merlane::test {
namespace {

Matrix1<double> Square3(std::initializer_list<double> rows) {
  Matrix1<double> m(3, 3);
  int k = 0;
  for (const double x : rows) {
    m(k / 3 + 1, k % 3 + 1) = x;
    ++k;
  }
  return m;
}

double Determinant(int n, const Matrix1<double>& factors, const LUPermutation& p) {
  double d = p.sign;
  for (int i = 1; i <= n; ++i) d *= factors(i, i);
  return d;
}

TEST(LUDecompose, PicksPivotsByTheLargestElementOfTheirRow) {
  // Worked by hand. Scales 1/8, 1/7, 1/9; figures of column 1: 2/8, 4/7, 8/9: row 3 leads.
  Matrix1<double> m = Square3({2, 1, 8, 4, 3, 7, 8, 7, 9});
  const LUPermutation p = LUDecompose(3, m);
  ASSERT_FALSE(p.Failed());
  EXPECT_EQ(p.row(1), 3);
  EXPECT_EQ(m(1, 1), 8);
  EXPECT_EQ(m(1, 2), 7);
  EXPECT_EQ(m(1, 3), 9);
  EXPECT_NEAR(Determinant(3, m, p), 2 * (27 - 49) - 1 * (36 - 56) + 8 * (28 - 24), 1e-13);
}

TEST(LUDecompose, InATieTheLaterRowTakesOver) {
  // All rows have the same figure in column 1.
  Matrix1<double> m = Square3({1, 0, 0, 1, 1, 0, 1, 1, 1});
  const LUPermutation p = LUDecompose(3, m);
  EXPECT_EQ(p.row(1), 3);
  EXPECT_EQ(p.sign * m(1, 1) * m(2, 2) * m(3, 3), 1);
}

TEST(LUDecompose, DividesTheColumnBelowAPivotElementByElement) {
  // 5 times the reciprocal of 49 is another number than 5 / 49.
  Matrix1<double> m(2, 2);
  m(1, 1) = 5;
  m(1, 2) = 49;
  m(2, 1) = 49;
  m(2, 2) = 1;
  LUDecompose(2, m);
  EXPECT_EQ(m(2, 1), 5.0 / 49.0);
  EXPECT_NE(m(2, 1), 5.0 * (1 / 49.0)) << "or this test shows nothing";
}

TEST(LUDecompose, FailsAtTheFirstRowOfZerosAndLeavesTheMatrix) {
  Matrix1<double> m = Square3({1, 2, 3, 0, 0, 0, 0, 0, 0});
  const LUPermutation p = LUDecompose(3, m);
  EXPECT_TRUE(p.Failed());
  EXPECT_EQ(p.failedRow, 2);
  EXPECT_EQ(m(1, 2), 2);
}

TEST(LUDecompose, APivotOfZeroBecomesATinyNumber) {
  Matrix1<double> middle = Square3({0, 1, 2, 0, 3, 1, 0, 1, 1});
  EXPECT_FALSE(LUDecompose(3, middle).Failed());
  EXPECT_EQ(middle(1, 1), 1E-20);
  Matrix1<double> last(2, 2, 1.0);
  EXPECT_FALSE(LUDecompose(2, last).Failed());
  EXPECT_EQ(last(2, 2), 1E-20);
}

TEST(LUDecompose, GivesATurnAtEachRowAndColumn) {
  int turns = 0;
  Matrix1<double> m = Square3({2, 1, 8, 4, 3, 7, 8, 7, 9});
  LUDecompose(3, m, [&] { ++turns; });
  EXPECT_EQ(turns, 6);
}

TEST(LUDecompose, UsesTheUpperLeftPartOfALargerMatrix) {
  Matrix1<double> m(5, 5);
  m(1, 1) = 2;
  m(2, 2) = 4;
  const LUPermutation p = LUDecompose(2, m);
  Array1<double> b{2, 4};
  LUBackSubstitute(2, m, p, b);
  EXPECT_EQ(b, (Array1<double>{1, 1}));
}

TEST(LUDecompose, AnOverflowIsARuntimeFailure) {
  Matrix1<double> m(2, 2);
  m(1, 1) = m(1, 2) = m(2, 2) = 1e308;
  m(2, 1) = -1e308;
  EXPECT_THROW(LUDecompose(2, m), RuntimeFailure);
}

TEST(LUBackSubstitute, SkipsLeadingZerosAndSolves) {
  Matrix1<double> m = Square3({4, 1, 0, 1, 5, 2, 0, 2, 6});
  Matrix1<double> a = m;
  const LUPermutation p = LUDecompose(3, m);
  Array1<double> b{0, 0, 6};
  LUBackSubstitute(3, m, p, b);
  for (int i = 1; i <= 3; ++i) {
    double sum = 0;
    for (int j = 1; j <= 3; ++j) sum += a(i, j) * b(j);
    EXPECT_NEAR(sum, i == 3 ? 6 : 0, 1e-14);
  }
}

TEST(LUBackSubstitute, InvertsColumnByColumn) {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (int n = 1; n <= 12; ++n) {
    Matrix1<double> a(n, n);
    for (int i = 1; i <= n; ++i)
      for (int j = 1; j <= n; ++j) a(i, j) = uniform(engine);
    Matrix1<double> factors = a;
    const LUPermutation p = LUDecompose(n, factors);
    Matrix1<double> inverse(n, n);
    for (int i = 1; i <= n; ++i) inverse(i, i) = 1;
    for (int column = 1; column <= n; ++column) LUBackSubstitute(n, factors, p, inverse, column);
    for (int i = 1; i <= n; ++i)
      for (int j = 1; j <= n; ++j) {
        double sum = 0;
        for (int k = 1; k <= n; ++k) sum += a(i, k) * inverse(k, j);
        EXPECT_NEAR(sum, i == j ? 1 : 0, 1e-11) << n;
      }
  }
}

}  // namespace
}  // namespace merlane::test
