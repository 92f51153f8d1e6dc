#include "model/calculation_problem.h"

#include "base/number_text.h"

namespace merlane {

Message SumOfProbabilitiesNotOne(double sum) {
  return InaccurateProbabilities("Calculation problem: Sum of probabilities <> 1 @ " + Format(sum, "0.00000000"),
                                 "Do_Likelihoods");
}

}  // namespace merlane
