#include "likelihood/first_evaluation.h"

#include <gmock/gmock.h>

#include "likelihood/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using ::testing::IsEmpty;

/// Hypotheses of brood size at hatch and of hatch day, over a brood of which neither is known.
struct DeficientAnalysis : Analysis {
  DeficientAnalysis() {
    WithoutHatchDay("A", 165, 5, 6).WithoutHatchDay("A", 170, 10, 5).Read();
    Value(13) = 0.3;
    Value(17) = Value(21) = 0.02;
    Value(23) = Value(24) = 1e-5;
  }
};

TEST(FirstEvaluation, TellsOfEachVisitYoungerThanLaying) {
  Analysis a;
  a.Visit("A", -22, 6).Visit("A", -12, 6).Visit("B", -21, 6).Visit("B", -10, 6).Visit("C", -25, 6).Read();
  a.Value(9) = -20;
  a.Value(15) = 0.02;
  a.Value(17) = 0.02;
  a.setting.OneCallRun = true;
  a.Evaluate();
  ASSERT_GE(a.told.size(), 3u);
  EXPECT_EQ(a.told[0].title, "Warning: data record will be ignored!");
  EXPECT_EQ(a.told[0].text,
            "Visit #1 of clutch #1 in year 1995 is younger (-22 days) than the laying day of -20 set in the algorithm "
            "data\r\n\r\nYoungest age so far is: -22 days.");
  EXPECT_EQ(a.told[1].text,
            "Visit #1 of clutch #2 in year 1995 is younger (-21 days) than the laying day of -20 set in the algorithm "
            "data\r\n\r\nYoungest age so far is: -22 days.");
  EXPECT_THAT(a.told[2].text, ::testing::HasSubstr("Youngest age so far is: -25 days."));
  const std::string firstText = a.told[0].text;
  a.told.clear();
  a.Evaluate();
  EXPECT_EQ(a.told[0].text, firstText) << "each first evaluation begins anew";
}

TEST(FirstEvaluation, WritesTheDescriptionsAnewBeforeTheHypothesisIsChecked) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  a.Names.Fill("DO NOT ESTIMATE what an earlier repair said");
  a.Evaluate();
  EXPECT_EQ(a.Names(9), "DO NOT ESTIMATE what an earlier repair said") << "nothing is checked";
  a.setting.OneCallRun = true;
  a.Evaluate();
  EXPECT_EQ(a.Names(9), "Age @ laying (I, a negative number of days prior to hatch day) Fix and DNE    [0]");
  EXPECT_EQ(a.Names(12), "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (c_N)");
}

TEST(FirstEvaluation, AVectorThatNeedsNoRepairIsToldNothing) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  a.setting.OneCallRun = true;
  a.Evaluate();
  EXPECT_THAT(a.told, IsEmpty());
}

TEST(FirstEvaluation, SaysThatParametersWereAlteredAndEvaluatesTheAlteredVector) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  a.Value(12) = 0.3;  // attenuation of a mortality that does not exist
  a.setting.OneCallRun = true;
  a.Evaluate();
  ASSERT_EQ(a.told.size(), 1u);
  EXPECT_EQ(a.told[0].title, "Parameters altered to suit hypothesis or data");
  EXPECT_EQ(a.told[0].text,
            "At least one parameter fixed at 0 or 1, or made > 0; altered values are unfused.  Click on '1 Function "
            "call' once more.");
  EXPECT_EQ(a.Value(12), 0);
  EXPECT_EQ(a.state.parameters.f_N, 0);
  EXPECT_EQ(a.state.best.Value(12), 0);
}

TEST(FirstEvaluation, WarnsOfAttributesThatAreMissing) {
  DeficientAnalysis a;
  a.setting.OneCallRun = true;
  a.Evaluate();
  a.told.clear();
  a.Evaluate();  // after the repair of what concerns eggs
  ASSERT_EQ(a.told.size(), 2u);
  EXPECT_EQ(a.told[0].title, "Warning: Hypotheses concerning the E[brood size@hatch] are invalid!");
  EXPECT_EQ(a.told[0].text,
            "A data deficiency means the E[brood size@hatch] cannot be calculated for at least some broods.\r\nReview "
            "your data or the Results Summary to locate the deficient broods.\r\n");
  EXPECT_EQ(a.told[0].style, style::Critical);
  EXPECT_EQ(a.told[1].title, "Warning: Hypotheses concerning Hatch Day are invalid!");
  EXPECT_EQ(a.told[1].text,
            "A data deficiency means that Hatch Day is not available for at least some broods.\r\nReview your data or "
            "the Results Summary to locate the deficient broods.\r\n");
}

TEST(FirstEvaluation, ASimulationIsCheckedWithoutAOneCallRunAndHearsNothingOfMissingAttributes) {
  DeficientAnalysis a;
  a.setting.SimulationMode = true;
  a.Evaluate();
  EXPECT_THAT(a.told, IsEmpty());
  EXPECT_TRUE(a.state.survival.BroodSizeDeficient && a.state.survival.HatchDateDeficient);
  a.Value(5) = 0.2;
  a.Evaluate();
  ASSERT_EQ(a.told.size(), 1u);
  EXPECT_EQ(a.told[0].title, "Parameters altered to suit hypothesis or data");
}

TEST(FirstEvaluation, OutsideAOneCallRunNothingIsCheckedOrRepaired) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(9) = -8;  // visits younger than laying
  a.Value(12) = 0.3;
  a.Value(17) = 0.02;
  a.Evaluate();
  EXPECT_THAT(a.told, IsEmpty());
  EXPECT_EQ(a.Value(12), 0.3);
}

}  // namespace
}  // namespace merlane
