#pragma once

#include <string>

#include "priors/distributions.h"

namespace merlane::test {

/// Gives parameter `i` this prior.
inline void SetPrior(Priors& priors, int i, const std::string& code, double mean, double sd,
                     const PriorTerm& secondMean = PriorUnused, const PriorTerm& secondSD = PriorUnused) {
  priors.PriorCode(i) = code;
  priors.PriorFirstMean(i) = mean;
  priors.PriorFirstSD(i) = sd;
  priors.PriorSecondMean(i) = secondMean;
  priors.PriorSecondSD(i) = secondSD;
}

/// The priors of so many parameters, of which the first has this one.
inline Priors PriorsOf(int parameters, const std::string& code, double mean, double sd,
                       const PriorTerm& secondMean = PriorUnused, const PriorTerm& secondSD = PriorUnused) {
  Priors priors;
  priors.Reset(parameters);
  SetPrior(priors, 1, code, mean, sd, secondMean, secondSD);
  return priors;
}

}  // namespace merlane::test
