#include "uncertainty/covariance.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "control/fuses.h"
#include "minimise/lu.h"
#include "minimise/second_differences.h"
#include "uncertainty/cholesky.h"

namespace merlane {
namespace {

void SetMeanAndSD(CovarianceGrid& grid, double CovF0, double sum, double sumOfSquares, int n) {
  const double mean = Divide(sum, n);
  const double variance = Checked(sumOfSquares / n - mean * mean);
  grid.GridMean = mean + CovF0;
  grid.GridSD = std::copysign(std::sqrt(std::fabs(variance)), variance);
}

/// The points of the grid at which the row of parameter `a` is evaluated, in this order; `f` is the factor of the
/// first.
std::vector<Array1<double>> GridRow(const Covariances& c, int a, double f) {
  std::vector<Array1<double>> points;
  for (int b = a; b <= (c.OptimisticSE ? a : c.CovCount); ++b)
    for (const double factor : {f, -f}) {
      Array1<double>& point = points.emplace_back(c.CovBaseValue);
      for (const int position : {a, b}) {
        const int p = c.CovIndex(position);
        point(p) = c.CovBaseValue(p) + c.CovStep(p) * factor;
      }
    }
  return points;
}

/// The differences on a grid; false when the user has abandoned it.
bool EvaluateGrid(int g, Covariances& c, Objective& objective, CovarianceWatch& watch, SecondDifferences& differences) {
  const int calls = c.CovCount * (c.CovCount + 1);
  double sum = 0;
  double sumOfSquares = 0;
  int call = 0;
  for (int a = 1; a <= c.CovCount; ++a) {
    std::vector<Array1<double>> points = GridRow(c, a, c.grid(g).GridFactor);
    objective.Announce(points, 1);
    auto point = points.begin();
    for (int b = a; b <= c.CovCount; ++b)
      for (Matrix1<double>* side : {&differences.plus, &differences.minus}) {
        watch.OnCall(++call, calls);
        const double value = c.OptimisticSE && a != b ? c.CovF0 : objective(*point++, 1);
        if (watch.AbandonGrid()) return false;
        const double D = Checked(value - c.CovF0);
        sum += D;
        sumOfSquares += D * D;
        (*side)(a, b) = D;
        watch.OnCalled(g, call, calls);
      }
  }
  SetMeanAndSD(c.grid(g), c.CovF0, sum, sumOfSquares, call);
  return true;
}

Matrix1<double> BuildHessian(const Covariances& c, double f, const SecondDifferences& differences) {
  const auto s = [&](int a) { return c.CovStep(c.CovIndex(a)); };
  const auto square = [&](int a) { return (s(a) * f) * (s(a) * f); };
  if (c.OptimisticSE) return DiagonalHessian(differences, square);
  return FullHessian(differences, square, [&](int a, int b) { return 2 * (f * f) * s(a) * s(b); });
}

/// The rows and columns of the model's own Hessian that belong to parameters taking part.
Matrix1<double> PackedHessian(const Covariances& c, const Matrix1<double>& all) {
  Matrix1<double> H(c.CovCount, c.CovCount);
  for (int a = 1; a <= c.CovCount; ++a)
    for (int b = 1; b <= c.CovCount; ++b) H(a, b) = all(c.CovIndex(a), c.CovIndex(b));
  return H;
}

/// The inverse of a positive definite matrix, and in `determinant` the inverse's.
Matrix1<double> Inverse(Matrix1<double> H, double& determinant, CovarianceWatch& watch) {
  const int n = H.Rows();
  const auto turn = [&] { watch.Turn(); };
  Matrix1<double> inverse(n, n);
  for (int i = 1; i <= n; ++i) inverse(i, i) = 1;
  const LUPermutation permutation = LUDecompose(n, H, turn);
  determinant = permutation.sign;
  for (int i = 1; i <= n; ++i) determinant = Divide(determinant, H(i, i));
  for (int j = 1; j <= n; ++j) LUBackSubstitute(n, H, permutation, inverse, j, turn);
  return inverse;
}

void ClearResults(CovarianceGrid& grid, int count) {
  grid.GridMean = -1;
  grid.GridSD = -1;
  grid.failedAt = 0;
  grid.standardErrors.Dimension(count, -1);
  grid.covariances.Dimension(count, count, -1);
  grid.determinant = -1;
  grid.productOfVariances = -1;
}

/// Covariances of a grid from its Hessian; those of a Hessian that is not positive definite stay -1. One that is has no
/// row of zeros, so its decomposition cannot fail.
void InvertHessian(int g, const Matrix1<double>& H, Covariances& c, CovarianceWatch& watch) {
  CovarianceGrid& grid = c.grid(g);
  if (const int row = FirstNotPositive(H); row > 0) {
    grid.ending = GridEnding::NotPositiveDefinite;
    grid.failedAt = c.CovIndex(row);
    watch.OnNotPositiveDefinite(grid.failedAt);
    return;
  }
  watch.OnInverting(g);
  double determinant = 0;
  const Matrix1<double> inverse = Inverse(H, determinant, watch);
  grid.determinant = Checked(Pow(c.CovConstantInverse, c.CovCount) * determinant);
  watch.OnDeterminant(grid.determinant);
  grid.productOfVariances = 1;
  for (int a = 1; a <= c.CovCount; ++a) {
    for (int b = 1; b <= c.CovCount; ++b) grid.covariances(a, b) = Checked(inverse(a, b) * c.CovConstantInverse);
    const double variance = grid.covariances(a, a);
    if (variance != 0) grid.standardErrors(a) = std::copysign(std::sqrt(std::fabs(variance)), variance);
    grid.productOfVariances = Checked(grid.productOfVariances * variance);
  }
  grid.ending = GridEnding::Calculated;
}

void CalculateGrid(int g, Covariances& c, Objective& objective, CovarianceWatch& watch) {
  watch.OnGrid(g);
  SecondDifferences differences(c.CovCount);
  if (!EvaluateGrid(g, c, objective, watch, differences)) {
    c.grid(g).ending = GridEnding::Abandoned;
    return;
  }
  watch.OnSummary(g, c.grid(g).GridMean / c.CovConstantInverse, c.grid(g).GridSD / c.CovConstantInverse);
  InvertHessian(g, BuildHessian(c, c.grid(g).GridFactor, differences), c, watch);
}

void CalculateFromDerivatives(int g, Covariances& c, RunState& state, Objective& objective, CovarianceWatch& watch) {
  const int NPAR = state.algorithm.NPAR;
  state.Gradient.Dimension(NPAR);
  state.Hessian.Dimension(NPAR, NPAR);
  ApplyFuses(c.CovBaseValue, state);
  objective.Call(c.CovBaseValue, -2);
  InvertHessian(g, PackedHessian(c, state.Hessian), c, watch);
}

}  // namespace

double CovarianceGrid::Correlation(int a, int b) const {
  const double product = standardErrors(a) * standardErrors(b);
  return product == 0 ? -1 : Divide(covariances(a, b), product);
}

double CovarianceGrid::CorrelationDeterminant() const {
  return productOfVariances == 0 || productOfVariances == -1 ? -1 : Divide(determinant, productOfVariances);
}

bool Covariances::AreOf(const Basis& now) const {
  if (!basis) return false;
  Basis then = BesidePresent(now);
  if (stepsTaken == now.Step) then.Step = now.Step;
  return then.SameEstimates(now) && then.SameSearch(now) && then.constant == now.constant;
}

std::string Covariances::ChangesUntil(const Basis& now) const { return ChangesBetween(BesidePresent(now), now); }

Basis Covariances::BesidePresent(const Basis& now) const {
  Basis then = *basis;
  // A function call may since have written the values as the model reads them: that is the same point.
  if (CovBaseValue == now.Value) then.Value = CovBaseValue;
  return then;
}

Covariances PrepareCovariances(const CovarianceOptions& options, RunState& state, Objective& objective) {
  const AlgorithmData& algorithm = state.algorithm;
  Covariances c;
  c.mode = options.mode;
  c.CovBaseValue = algorithm.Value;
  c.CovStep = algorithm.Step;
  c.CovCount = static_cast<std::int16_t>(std::ranges::count_if(c.CovStep, [](double step) { return step != 0; }));
  c.CovIndex.Dimension(c.CovCount);
  for (std::int16_t i = 1, a = 0; i <= algorithm.NPAR; ++i)
    if (c.CovStep(i) != 0) c.CovIndex(++a) = i;
  for (int g = 1; g <= 3; ++g)
    c.grid(g).GridFactor = options.mode == CovarianceMode::Analytical ? 0 : options.GridFactor(g);
  state.free.NFREE = c.CovCount;
  c.CovF0 = Checked(objective(c.CovBaseValue, 1));
  return c;
}

void CalculateCovariances(Covariances& c, bool optimistic, RunState& state, Objective& objective,
                          CovarianceWatch& watch) {
  c.OptimisticSE = optimistic;
  c.CovConstantInverse = state.flags.ObjectiveConstant;
  for (int g = 1; g <= 3; ++g) {
    ClearResults(c.grid(g), c.CovCount);
    if (c.mode == CovarianceMode::Numerical)
      CalculateGrid(g, c, objective, watch);
    else
      CalculateFromDerivatives(g, c, state, objective, watch);
  }
  c.CovFuse = state.algorithm.Fuse;
  c.CovName = state.algorithm.ParName;
  c.basis = objective.PresentToShow();
  c.basis->Step = c.CovStep;  // also when the model has meanwhile repaired its hypothesis
}

}  // namespace merlane
