#pragma once

#include <cstdint>

#include "base/array1.h"
#include "survival/parameter_layout.h"

namespace merlane {

/// The flat vector of parameters, decoded into the quantities that the survival functions and the likelihood compute
/// with; valid for one evaluation. The coefficient tables are indexed by property: E[brood size@hatch], the hatch date,
/// and the covariates behind them.
struct Parameters {
  std::int16_t CodeEggR = 1, CodeJuvR = 1, CodeEggC = 1, CodeJuvC = 1;  // 1 binomial, 2 beta-binomial
  double ThetaEggR = 0, ThetaJuvR = 0;  // always 0: random mortality knows no overdispersion
  double ThetaEggC = 0, ThetaJuvC = 0;  // overdispersion, 0 to 0.999999
  double v_N = 0, v_B = 0;              // its attenuation by age, per day
  std::int16_t LayAge = 0;              // I, days relative to hatch, 0 or negative
  std::int16_t FledgeAge = 0;           // D, days; 0: no age at fledging limits the model
  // In the names that follow N is a clutch, B a brood; R random, C correlated mortality.
  double c_N = 0, f_N = 0, c_B = 0, f_B = 0;  // probability of correlated mortality, its attenuation by age
  // Weibull rates (per day where the shape is 1) and shapes.
  double Alpha_NR = 0, Beta_NR = 0, Alpha_BR = 0, Beta_BR = 0;
  double Alpha_NC = 0, Beta_NC = 0, Alpha_BC = 0, Beta_BC = 0;
  /// Coefficients of attributes and covariates on the rates (Zeta) and shapes (Gamma) of broods, 1..NCov+2.
  Array1<double> ZetaBR, GammaBR, ZetaBC, GammaBC;
  /// (a, k): interaction of attribute a, 1 or 2, with attribute or covariate k, 2..NCov+2; for k = 2 only (1, 2).
  Matrix1<double> ZetaBRx, GammaBRx, ZetaBCx, GammaBCx;
  Array1<double>& Coefficients(Family family) { return *std::array{&ZetaBR, &GammaBR, &ZetaBC, &GammaBC}[Of(family)]; }
  Matrix1<double>& Interactions(Family family) {
    return *std::array{&ZetaBRx, &GammaBRx, &ZetaBCx, &GammaBCx}[Of(family)];
  }
  bool UsesBroodSize = false, UsesHatchDate = false;  // a coefficient that needs the attribute is in play

  // Which kinds of mortality can befall a clutch and a brood.
  bool EggsRandom() const { return !(c_N >= 1 && f_N <= 0); }
  bool EggsCorrelated() const { return !(c_N <= 0); }
  bool JuvsRandom() const { return !(c_B >= 1 && f_B <= 0); }
  bool JuvsCorrelated() const { return !(c_B <= 0); }

  // Which ages the model knows of.
  bool CoversClutchOf(double age) const { return age >= LayAge; }
  bool CoversBroodOf(double age) const { return age < FledgeAge || FledgeAge == 0; }

 private:
  static std::size_t Of(Family family) { return static_cast<std::size_t>(family); }
};

}  // namespace merlane
