#pragma once

#include <string>

#include "base/array1.h"
#include "data/brood_data.h"

namespace merlane {

/// How the invented field data of the benchmarks look.
struct FieldDataPlan {
  int years = 2;
  int broodsPerYear = 1000;
  int visitsPerBrood = 10;
  /// None; two indicators of years and the productivity of one of 20 lakes; or three numbers that no two broods share.
  enum class Covariates { None, Recurring, Continuous } covariates = Covariates::None;
};

constexpr int FirstFieldYear = 1990;

/// A data file of clutches followed through hatch, each visited every 2 to 6 days; the same for the same plan.
std::string FieldData(const FieldDataPlan& plan);

/// The same, read.
BroodData ReadFieldData(const FieldDataPlan& plan);

/// A vector of parameters for such data: eggs and juveniles with both kinds of mortality, the correlated share falling
/// with age and, when there are covariates, all of them acting on all rates and shapes of the juveniles.
Array1<double> FieldVector(const BroodData& data, bool overdispersed);

}  // namespace merlane
