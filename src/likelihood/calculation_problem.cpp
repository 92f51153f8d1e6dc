#include "likelihood/calculation_problem.h"

#include "base/number_text.h"

namespace merlane {

Message InaccurateProbabilities(const std::string& title, const std::string& procedure) {
  return {title, "Unacceptably poor numerical accuracy in probability calculation in procedure '" + procedure + "'",
          style::Critical};
}

Message InaccurateSpanningDistribution() {
  return InaccurateProbabilities("Calculation problem", "Calc_Probs_and_Theta");
}

Message SumOfProbabilitiesNotOne(double sum) {
  return InaccurateProbabilities("Calculation problem: Sum of probabilities <> 1 @ " + Format(sum, "0.00000000"),
                                 "Do_Likelihoods");
}

}  // namespace merlane
