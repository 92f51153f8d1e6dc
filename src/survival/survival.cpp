#include "survival/survival.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "survival/arithmetic_watch.h"
#include "survival/failure_context.h"

namespace merlane {
namespace {

struct Effective {
  double value = 0, Penalty = 0;
};

/// What a brood's properties make of a rate or shape: the attributes E[brood size@hatch] E and hatch date H, and the
/// covariates.
class BroodEffects {
 public:
  BroodEffects(const BroodData& data, int brood, double E, bool mainTerms)
      : E_(E),
        H_(data.HatchDate[static_cast<std::size_t>(brood)]),
        covariates_(data.CovariatesOf(brood)),
        NCov_(data.NCov),
        mainTerms_(mainTerms) {}

  /// base * exp(X), where X sums the effects on parameter `i`, whose value `base` is.
  Effective On(int i, double base, const Array1<double>& Z, const Matrix1<double>& Zx) const {
    try {
      return On(base, Z, Zx);
    } catch (const ArithmeticFailure& failure) {
      throw OfParameter(i, base, ArithmeticFailure(std::string(failure.what()) + " by the effects that act on it"));
    }
  }

 private:
  Effective On(double base, const Array1<double>& Z, const Matrix1<double>& Zx) const {
    if (AllZero(Z, Zx)) return Limited(Checked(base));  // X is 0
    const auto Covariate = [this](int m) { return covariates_[m - 1]; };
    double X = mainTerms_ ? E_ * Z(property::BroodSize) + H_ * Z(property::HatchDate) : 0.0;
    for (int m = 1; m <= NCov_; ++m) X = X + Covariate(m) * Z(property::Covariate(m));
    X = X + Zx(property::BroodSize, property::HatchDate) * E_ * H_;
    for (int m = 1; m <= NCov_; ++m)
      X = X + (Zx(property::BroodSize, property::Covariate(m)) * E_ * Covariate(m) +
               Zx(property::HatchDate, property::Covariate(m)) * H_ * Covariate(m));

    return Limited(Checked(base * Exp(std::min(Checked(X), 10.0))));
  }

  bool AllZero(const Array1<double>& Z, const Matrix1<double>& Zx) const {
    bool zero = Z(1) == 0 && Z(2) == 0 && Zx(1, 2) == 0;
    for (int m = 3; m <= NCov_ + 2; ++m) zero = zero && Z(m) == 0 && Zx(1, m) == 0 && Zx(2, m) == 0;
    return zero;
  }
  static Effective Limited(double value) {
    if (!(value > 10)) return {value, 0};
    const double excess = value - 10;
    return {10, Checked(excess * excess * 1e20)};
  }

  const double E_, H_;
  const double* const covariates_;
  const int NCov_;
  const bool mainTerms_;
};

}  // namespace

SurvivalFunctions::SurvivalFunctions(const Mortality& mortality) : m_(mortality) {
  const auto [AlphaR, BetaR, AlphaC, BetaC, c, f] = m_;
  ArithmeticWatch common;
  if (c != 0 && f != 0) {
    const double divisor = common(common(f + AlphaR) * common(f + AlphaC));
    normaliser_ = common(1 + common(common(c * f * (AlphaC - AlphaR)) / divisor));
  }
  ArithmeticWatch random = common;
  shareR_ = random(c * AlphaR / random(f + AlphaR));
  failedR_ = random.Failed();
  ArithmeticWatch correlated = common;
  shareC_ = correlated(c * AlphaC / correlated(f + AlphaC));
  failedC_ = correlated.Failed();
}

SharesAlive SurvivalFunctions::At(double t) const {
  SharesAlive alive;
  ArithmeticWatch watch;
  if (!CorrelatedOnly()) {
    alive.failed |= failedR_;
    const double w = watch(Pow(t, m_.BetaR));
    const double surviving = watch(Exp(watch(-m_.AlphaR * w)));
    const double attenuation = watch(Exp(watch(-m_.f * w)));
    alive.SR = watch(watch(surviving * watch(1 - watch(shareR_ * attenuation))) / normaliser_);
  }
  if (!RandomOnly()) {
    alive.failed |= failedC_;
    const double w = watch(Pow(t, m_.BetaC));
    alive.SC = watch(watch(shareC_ * watch(Exp(watch(-(m_.f + m_.AlphaC) * w)))) / normaliser_);
  }
  alive.failed |= watch.Failed();
  return alive;
}

Survivors ExpectedSurvivors(const Mortality& mortality, double T1, double T2, double N, bool BootstrapMode) {
  const SurvivalFunctions functions(mortality);
  return ExpectedSurvivors(functions, functions.At(T1), functions.At(T2), N, BootstrapMode);
}

Survivors ExpectedSurvivors(const SurvivalFunctions& functions, const SharesAlive& atT1, const SharesAlive& atT2,
                            double N, bool BootstrapMode) {
  Survivors out;
  ArithmeticWatch watch;
  const auto outOf = [&](double S1, double S2) { return watch(watch(S2 / S1) * N); };
  if (functions.RandomOnly()) {
    if (atT1.SR > 0 && N != Missing) out = {0, outOf(atT1.SR, atT2.SR), 0, 0};
    out.OutAll = out.OutR;
  } else if (functions.CorrelatedOnly()) {
    if (atT1.SC > 0 && N != Missing) out = {1, 0, outOf(atT1.SC, atT2.SC), 0};
    out.OutAll = out.OutC;
  } else {
    const double S1 = watch(atT1.SR + atT1.SC);
    const double S2 = watch(atT2.SR + atT2.SC);
    if (S1 > 0) out.OutAll = outOf(S1, S2);
    if (atT1.SC > 0) out.OutC = outOf(atT1.SC, atT2.SC);
    if (atT1.SR > 0) out.OutR = outOf(atT1.SR, atT2.SR);
    out.PCorr = watch(atT1.SC / S1);
  }
  if (atT1.failed || atT2.failed || watch.Failed()) return {0, Missing, Missing, Missing, 0};

  if (out.OutAll < 1e-8 && N > 0 && !BootstrapMode) {
    out.Penalty = -Log(1e-8 - out.OutAll) * 1e20;
    out.OutAll = 1e-8;
  }
  if (out.OutAll == 0 && N > 0 && BootstrapMode) out.Penalty = 1e20;
  return out;
}

void BroodMortality::AddTo(double& Penalty) const {
  if (PenaltyAlphaR == 0 && PenaltyBetaR == 0 && PenaltyAlphaC == 0 && PenaltyBetaC == 0) return;
  Penalty = Penalty + PenaltyAlphaR;
  Penalty = Penalty + PenaltyBetaR;
  Penalty = Penalty + PenaltyAlphaC;
  Penalty = Penalty + PenaltyBetaC;
}

BroodMortality BroodMortalityByAge(const Parameters& p, const BroodData& data, int brood, double E) {
  const BroodEffects effects(data, brood, E, true);
  const Effective AlphaR = effects.On(parameter::Alpha_BR, p.Alpha_BR, p.ZetaBR, p.ZetaBRx);
  const Effective BetaR = effects.On(parameter::Beta_BR, p.Beta_BR, p.GammaBR, p.GammaBRx);
  const Effective AlphaC = effects.On(parameter::Alpha_BC, p.Alpha_BC, p.ZetaBC, p.ZetaBCx);
  const Effective BetaC = effects.On(parameter::Beta_BC, p.Beta_BC, p.GammaBC, p.GammaBCx);
  return {{AlphaR.value, BetaR.value, AlphaC.value, BetaC.value, p.c_B, p.f_B},
          AlphaR.Penalty,
          BetaR.Penalty,
          AlphaC.Penalty,
          BetaC.Penalty};
}

BroodMortality BroodMortalityByDate(const Parameters& p, const BroodData& data, int brood, double E) {
  const BroodEffects effects(data, brood, E, false);
  const Effective AlphaR = effects.On(parameter::Alpha_BR, p.Alpha_BR, p.ZetaBR, p.ZetaBRx);
  const Effective AlphaC = effects.On(parameter::Alpha_BC, p.Alpha_BC, p.ZetaBC, p.ZetaBCx);
  return {{AlphaR.value, 1, AlphaC.value, 1, p.c_B, p.f_B}, AlphaR.Penalty, 0, AlphaC.Penalty, 0};
}

Mortality ClutchMortalityByAge(const Parameters& p) {
  return {p.Alpha_NR, p.Beta_NR, p.Alpha_NC, p.Beta_NC, p.c_N, p.f_N};
}

Mortality ClutchMortalityByDate(const Parameters& p) { return {p.Alpha_NR, 1, p.Alpha_NC, 1, p.c_N, p.f_N}; }

}  // namespace merlane
