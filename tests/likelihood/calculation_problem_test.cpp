#include "likelihood/calculation_problem.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

TEST(CalculationProblem, NamesTheProcedure) {
  const Message m = InaccurateSpanningDistribution();
  EXPECT_EQ(m.title, "Calculation problem");
  EXPECT_EQ(m.text,
            "Unacceptably poor numerical accuracy in probability calculation in procedure 'Calc_Probs_and_Theta'");
  EXPECT_EQ(m.style, style::Critical);
}

TEST(CalculationProblem, TellsASumToEightPlaces) {
  EXPECT_EQ(SumOfProbabilitiesNotOne(0.99).title, "Calculation problem: Sum of probabilities <> 1 @ 0.99000000");
  EXPECT_EQ(SumOfProbabilitiesNotOne(-0.004614).title, "Calculation problem: Sum of probabilities <> 1 @ -0.00461400");
}

}  // namespace
}  // namespace merlane
