#include "survival/failure_context.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {

ArithmeticFailure OfParameter(int parameter, double value, const ArithmeticFailure& failure) {
  return ArithmeticFailure(fmt::format("parameter {} at {}: {}", parameter, Shortest(value), failure.what()));
}

ArithmeticFailure AtVisit(const BroodData& data, std::size_t visit, std::size_t brood,
                          const ArithmeticFailure& failure) {
  return ArithmeticFailure(fmt::format("visit {} of brood {} in {}: {}",
                                       static_cast<int>(visit) - data.FirstVisit[brood] + 1,
                                       Trim(data.BroodCode[brood]), data.BroodYear[brood], failure.what()));
}

}  // namespace merlane
