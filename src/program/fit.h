#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "control/basis.h"

namespace merlane {

/// How a minimisation ended.
struct Minimisation {
  std::string minimiser;  // "simplex" or "marquardt"
  std::string ending;
  std::int32_t functionCalls = 0;  // all evaluations
  std::int32_t iterations = 0;
  std::int32_t restarts = 0;  // of the simplex
};

/// The objective that was reached last from the menu, by a function call or a minimisation, with all that is told of
/// it.
struct Fit {
  std::optional<Basis> basis;                // none before the first
  std::optional<Minimisation> minimisation;  // that led here; none for a function call elsewhere
  double objective = 0;                      // priors included
  // What one evaluation at the estimates gives, where a search, or a call that checks the values, has come to another;
  // UnevaluatedF where it cannot be evaluated.
  std::optional<double> ofOneCall;
  double penalty = 0;
  double prior = 0;  // the prior term, 0 without priors
  std::int32_t sampleSize = 0;
  std::int32_t eggsAtRisk = 0, juvenilesAtRisk = 0;
  std::int32_t clutchIntervals = 0, broodIntervals = 0;
  std::int32_t freeParameters = 0;
};

}  // namespace merlane
