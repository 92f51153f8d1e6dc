#pragma once

#include <cstdint>

#include "survival/parameter_layout.h"
#include "survival/parameters.h"

namespace merlane {

/// How the counts of one stage scatter about what is expected of them, under random and under correlated mortality.
struct StageErrors {
  std::int16_t CodeR = 1, CodeC = 1;  // 1 binomial, 2 beta-binomial
  double ThetaR = 0, ThetaC = 0;      // overdispersion; of correlated mortality that at the start of the stage ...
  double v = 0, startAge = 0;         // ... which fades with the days since then
  int numberOfV = parameter::v_N;     // in the vector of parameters
  bool random = false, correlated = false;  // which mortality can befall the stage

  bool CanBe(bool isCorrelated) const { return isCorrelated ? correlated : random; }
  std::int16_t Code(bool isCorrelated) const { return isCorrelated ? CodeC : CodeR; }
  /// At an age in days since hatch. ArithmeticFailure, told with v, on an overflow.
  double Theta(bool isCorrelated, double age) const;

  bool operator==(const StageErrors&) const = default;
};

/// All that a prediction takes from the parameters beside what they let expect.
struct CountErrors {
  StageErrors eggs, juveniles;

  CountErrors() = default;
  explicit CountErrors(const Parameters& p);
  const StageErrors& Of(bool brood) const { return brood ? juveniles : eggs; }

  bool operator==(const CountErrors&) const = default;
};

}  // namespace merlane
