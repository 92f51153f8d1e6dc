#include "likelihood/stage_errors.h"

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "survival/failure_context.h"

namespace merlane {

double StageErrors::Theta(bool isCorrelated, double age) const {
  if (!isCorrelated) return ThetaR;
  return OfParameter(
      numberOfV, v, [&](double fading) { return Checked(ThetaC * Checked(Exp(Checked(-fading * (age - startAge))))); });
}

CountErrors::CountErrors(const Parameters& p)
    : eggs{.CodeR = p.CodeEggR,
           .CodeC = p.CodeEggC,
           .ThetaR = p.ThetaEggR,
           .ThetaC = p.ThetaEggC,
           .v = p.v_N,
           .startAge = static_cast<double>(p.LayAge),
           .numberOfV = parameter::v_N,
           .random = p.EggsRandom(),
           .correlated = p.EggsCorrelated()},
      juveniles{.CodeR = p.CodeJuvR,
                .CodeC = p.CodeJuvC,
                .ThetaR = p.ThetaJuvR,
                .ThetaC = p.ThetaJuvC,
                .v = p.v_B,
                .startAge = 0,
                .numberOfV = parameter::v_B,
                .random = p.JuvsRandom(),
                .correlated = p.JuvsCorrelated()} {}

}  // namespace merlane
