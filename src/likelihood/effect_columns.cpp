#include "likelihood/effect_columns.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/elementary_rows.h"

namespace merlane {
namespace {

/// Above it a rate or shape costs a penalty.
constexpr double Limit = 10;

bool AllZero(const Array1<double>& Z, const Matrix1<double>& Zx, int NCov) {
  bool zero = Zx(property::BroodSize, property::HatchDate) == 0;
  for (int k = 1; k <= NCov + 2; ++k) zero = zero && Z(k) == 0;
  for (int k = 3; k <= NCov + 2; ++k) zero = zero && Zx(1, k) == 0 && Zx(2, k) == 0;
  return zero;
}

}  // namespace

EffectColumns::EffectColumns(const BroodData& data, const ObjectivePlan& plan)
    : NCov_(data.NCov), covariates_(static_cast<std::size_t>(data.NCov)) {
  for (const ObjectivePlan::BroodMortalityOf& of : plan.broods) {
    H_.push_back(data.HatchDate[static_cast<std::size_t>(of.brood)]);
    for (std::size_t m = 0; m < covariates_.size(); ++m) covariates_[m].push_back(data.CovariatesOf(of.brood)[m]);
  }
}

EffectColumns::Rows::Rows(const ObjectivePlan& plan) {
  std::size_t most = 0;
  for (const ObjectivePlan::Piece& piece : plan.broodPieces) most = std::max(most, piece.mortality.Size());
  for (auto* row : {&E, &X, &effect, &values[0], &values[1], &values[2], &values[3]}) row->resize(most);
}

bool EffectColumns::Serve(const ObjectivePlan& plan, const ObjectivePlan::Piece& piece) {
  for (std::size_t m = piece.mortality.begin; m < piece.mortality.end; ++m)
    if (!plan.broods[m - ObjectivePlan::ClutchMortalities].byAge) return false;
  return true;
}

bool EffectColumns::Fill(const ObjectivePlan::Piece& piece, const Parameters& p, Rows& rows) const {
  return Fill(piece, p.Alpha_BR, p.ZetaBR, p.ZetaBRx, rows.values[0], rows) &&
         Fill(piece, p.Beta_BR, p.GammaBR, p.GammaBRx, rows.values[1], rows) &&
         Fill(piece, p.Alpha_BC, p.ZetaBC, p.ZetaBCx, rows.values[2], rows) &&
         Fill(piece, p.Beta_BC, p.GammaBC, p.GammaBCx, rows.values[3], rows);
}

/// base * exp(X), where X sums the effects in the order of BroodEffects. A term whose coefficient is 0 is left out: it
/// would change nothing but the sign of a zero, of which the exponential is 1 either way.
bool EffectColumns::Fill(const ObjectivePlan::Piece& piece, double base, const Array1<double>& Z,
                         const Matrix1<double>& Zx, std::vector<double>& values, Rows& rows) const {
  const std::size_t size = piece.mortality.Size(), first = piece.mortality.begin - ObjectivePlan::ClutchMortalities;
  if (AllZero(Z, Zx, NCov_)) {
    std::fill_n(values.begin(), size, base);
    return base <= Limit;
  }
  const double *const E = rows.E.data(), *const H = H_.data() + first;
  double* const X = rows.X.data();
  const double byE = Z(property::BroodSize), byH = Z(property::HatchDate);
  for (std::size_t i = 0; i < size; ++i) X[i] = E[i] * byE + H[i] * byH;
  for (int m = 1; m <= NCov_; ++m) {
    const double by = Z(property::Covariate(m));
    const double* const covariate = covariates_[static_cast<std::size_t>(m) - 1].data() + first;
    for (std::size_t i = 0; by != 0 && i < size; ++i) X[i] = X[i] + covariate[i] * by;
  }
  if (const double by = Zx(property::BroodSize, property::HatchDate); by != 0)
    for (std::size_t i = 0; i < size; ++i) X[i] = X[i] + by * E[i] * H[i];
  for (int m = 1; m <= NCov_; ++m) {
    const double withE = Zx(property::BroodSize, property::Covariate(m));
    const double withH = Zx(property::HatchDate, property::Covariate(m));
    const double* const covariate = covariates_[static_cast<std::size_t>(m) - 1].data() + first;
    for (std::size_t i = 0; (withE != 0 || withH != 0) && i < size; ++i)
      X[i] = X[i] + (withE * E[i] * covariate[i] + withH * H[i] * covariate[i]);
  }

  bool sound = true;
  for (std::size_t i = 0; i < size; ++i) {
    sound &= std::isfinite(X[i]);
    X[i] = std::min(X[i], 10.0);
  }
  ExpRow(std::span(rows.X).first(size), std::span(rows.effect).first(size));
  for (std::size_t i = 0; i < size; ++i) {
    values[i] = base * rows.effect[i];
    sound &= values[i] <= Limit;
  }
  return sound;
}

}  // namespace merlane
