#pragma once

#include <cstdint>
#include <string>

#include "data/brood_data.h"
#include "model/evaluation_setting.h"
#include "model/likelihood_pass.h"
#include "model/likelihood_state.h"
#include "model/prepared_visits.h"
#include "model/survival_pass.h"

namespace merlane {

/// The objective of a data set. To be made anew whenever data have been read; an evaluation allocates nothing.
class Likelihood {
 public:
  /// Prepares for the data, which must stay where they are and as they are.
  explicit Likelihood(const BroodData& data) : data_(data), prepared_(data) {}
  Likelihood(const Likelihood&) = delete;
  Likelihood& operator=(const Likelihood&) = delete;

  /// F = -2 ln[L] of the visits plus penalties, at `Value`, which is decoded and thereby brought into range in place.
  /// `NF` counts the calls of a run from 1: the first presets all tables and, in a run of one function call or a
  /// simulation, may repair `Value`, `Step`, `Names` and `Fuse`. `state` must have the shape of the data. The first
  /// call and each lower F are kept in it as the best, and they alone write `SampleSize`. For a vector of zeros nothing
  /// is evaluated: F is 0 and all else stays as it was.
  ///
  /// ArithmeticFailure, told with parameter or visit and brood, where a number overflows for which there is no penalty.
  void EvaluateObjective(const EvaluationSetting& setting, LikelihoodState& state, double& F, Array1<double>& Value,
                         Array1<double>& Step, Array1<std::string>& Names, Array1<std::string>& Fuse, std::int16_t NPAR,
                         std::int32_t NF, std::int32_t& SampleSize);

 private:
  const BroodData& data_;
  const PreparedVisits prepared_;
  SurvivalPass survivalPass_{data_, prepared_};
  LikelihoodPass likelihoodPass_{data_, prepared_};
};

}  // namespace merlane
