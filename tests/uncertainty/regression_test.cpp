#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "support/function_run.h"
#include "uncertainty/covariance.h"

// Regressions with certified results: Statistical Reference Datasets of the National Institute of Standards and
// Technology, https://www.itl.nist.gov/div898/strd: Norris (linear), Misra1a (nonlinear).
//
// The objective is the residual sum of squares S of n points. Where c S is -ln[L], c is (n - p) / (2 S) for the
// variance that the certified standard deviations use, and the covariances are the inverse Hessian of S times 1 / c.

namespace merlane {
namespace {

struct Point {
  double y, x;
};

constexpr std::array<Point, 36> Norris = {
    {{0.1, 0.2},     {338.8, 337.4}, {118.1, 118.2}, {888.0, 884.6}, {9.2, 10.1},    {228.1, 226.5},
     {668.5, 666.3}, {998.5, 996.3}, {449.1, 448.6}, {778.9, 777.0}, {559.2, 558.2}, {0.3, 0.4},
     {0.1, 0.6},     {778.1, 775.5}, {668.8, 666.9}, {339.3, 338.0}, {448.9, 447.5}, {10.8, 11.6},
     {557.7, 556.0}, {228.3, 228.1}, {998.0, 995.8}, {888.8, 887.6}, {119.6, 120.2}, {0.3, 0.3},
     {0.6, 0.3},     {557.6, 556.8}, {339.3, 339.1}, {888.0, 887.2}, {998.5, 999.0}, {778.9, 779.0},
     {10.2, 11.1},   {117.6, 118.3}, {228.9, 229.2}, {668.4, 669.1}, {449.2, 448.9}, {0.2, 0.5}}};

constexpr std::array<Point, 14> Misra1a = {{{10.07, 77.6},
                                            {14.73, 114.9},
                                            {17.94, 141.1},
                                            {23.93, 190.8},
                                            {29.61, 239.9},
                                            {35.18, 289.0},
                                            {40.02, 332.8},
                                            {44.82, 378.4},
                                            {50.76, 434.8},
                                            {55.05, 477.3},
                                            {61.01, 536.8},
                                            {66.40, 593.1},
                                            {75.47, 689.1},
                                            {81.78, 760.0}}};

template <class Points, class Curve>
double SumOfSquares(const Points& points, const Curve& curve) {
  double sum = 0;
  for (const Point& point : points) sum += (point.y - curve(point.x)) * (point.y - curve(point.x));
  return sum;
}

/// Covariances at the certified estimates, with one hundredth of the certified deviations on the smallest grid.
Covariances AtTheMinimum(test::FunctionRun& t, std::size_t points) {
  CovarianceOptions options;
  Covariances c = PrepareCovariances(options, t.state, t.objective);
  const double freedom = static_cast<double>(points) - c.CovCount;
  t.state.flags.ObjectiveConstant = 2 * c.CovF0 / freedom;
  CovarianceWatch watch;
  CalculateCovariances(c, false, t.state, t.objective, watch);
  return c;
}

TEST(CertifiedRegression, NorrisStandardDeviations) {
  const double deviation[] = {0.232818234301152, 0.429796848199937E-03};
  test::FunctionRun t(
      {-0.262323073774029, 1.00211681802045}, {deviation[0], deviation[1]},
      [](const Array1<double>& v) { return SumOfSquares(Norris, [&](double x) { return v(1) + v(2) * x; }); });
  const Covariances c = AtTheMinimum(t, Norris.size());
  EXPECT_NEAR(c.CovF0, 26.6173985294224, 1e-10);
  const double tolerance[] = {0, 1e-10, 1e-8, 1e-6};  // the sum of squares changes by 1e-4 of itself on the third grid
  for (int g = 1; g <= 3; ++g)
    for (int a = 1; a <= 2; ++a)
      EXPECT_NEAR(c.grid(g).standardErrors(a), deviation[a - 1], deviation[a - 1] * tolerance[g]) << g << a;
}

// The certified deviations of a nonlinear regression leave the curvature of the model out of the Hessian; the
// differences have it, and so does the closed form below. Here it makes 0.14 %.
TEST(CertifiedRegression, Misra1aStandardDeviations) {
  const double deviation[] = {2.7070075241E+00, 7.2668688436E-06};
  const double b1 = 2.3894212918E+02;
  const double b2 = 5.5015643181E-04;
  test::FunctionRun t({b1, b2}, {deviation[0], deviation[1]}, [](const Array1<double>& v) {
    return SumOfSquares(Misra1a, [&](double x) { return v(1) * (1 - std::exp(-v(2) * x)); });
  });
  const Covariances c = AtTheMinimum(t, Misra1a.size());
  EXPECT_NEAR(c.CovF0, 1.2455138894E-01, 1e-11);

  double h11 = 0, h12 = 0, h22 = 0;
  for (const Point& point : Misra1a) {
    const double decay = std::exp(-b2 * point.x);
    const double residual = point.y - b1 * (1 - decay);
    const double by1 = 1 - decay;
    const double by2 = b1 * point.x * decay;
    h11 += 2 * by1 * by1;
    h12 += 2 * (by1 * by2 - residual * point.x * decay);
    h22 += 2 * (by2 * by2 + residual * b1 * point.x * point.x * decay);
  }
  const double variance = 2 * c.CovF0 / (static_cast<double>(Misra1a.size()) - 2);
  const double determinant = h11 * h22 - h12 * h12;
  const double exact[] = {std::sqrt(variance * h22 / determinant), std::sqrt(variance * h11 / determinant)};
  for (int a = 1; a <= 2; ++a) {
    EXPECT_NEAR(c.grid(3).standardErrors(a), exact[a - 1], exact[a - 1] * 1e-5) << a;
    EXPECT_NEAR(c.grid(3).standardErrors(a), deviation[a - 1], deviation[a - 1] * 0.0015) << a;
  }
}

}  // namespace
}  // namespace merlane
