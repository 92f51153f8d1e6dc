#pragma once

#include <cstddef>

#include "base/arithmetic_failure.h"
#include "data/brood_data.h"

namespace merlane {

/// The failure, told with the parameter (from 1) from which it came and its value.
ArithmeticFailure OfParameter(int parameter, double value, const ArithmeticFailure& failure);

/// What `calculate` makes of a parameter's value; what fails in it is told with the parameter.
template <class Calculation>
decltype(auto) OfParameter(int parameter, double value, const Calculation& calculate) {
  try {
    return calculate(value);
  } catch (const ArithmeticFailure& failure) {
    throw OfParameter(parameter, value, failure);
  }
}

/// The failure, told with the visit and the brood (both from 0, as the data have them) at which it came.
ArithmeticFailure AtVisit(const BroodData& data, std::size_t visit, std::size_t brood,
                          const ArithmeticFailure& failure);

/// What `calculate` gives; what fails in it is told with the visit and the brood.
template <class Calculation>
decltype(auto) AtVisit(const BroodData& data, std::size_t visit, std::size_t brood, const Calculation& calculate) {
  try {
    return calculate();
  } catch (const ArithmeticFailure& failure) {
    throw AtVisit(data, visit, brood, failure);
  }
}

}  // namespace merlane
