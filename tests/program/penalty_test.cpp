// A minimum that is a penalty is no fit, and is not told as one.
#include <gmock/gmock.h>

#include "base/number_text.h"
#include "program/analysis.h"
#include "program/fresh_program.h"
#include "survival/parameter_layout.h"

namespace merlane {
namespace {

using test::Analysis;
using test::CallOnce;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

struct PenaltyTest : ::testing::Test, Analysis {
  static constexpr const char* Words = "of this minimum is a penalty: these values lie outside what the model can do";
};

TEST_F(PenaltyTest, OfAMinimumIsToldWithTheVerdictAndInTheReport) {
  Ready("juveniles_only");
  state.algorithm.Value(13) = 1.5;  // a probability above 1, and held there
  Simplex();
  EXPECT_EQ(windows.LastText(), "Minimum found using Simplex!");
  EXPECT_THAT(windows.messages.back().details, HasSubstr(Words));
  EXPECT_THAT(program.frmSimplex.rtbSimplex.text, HasSubstr(Words));
}

TEST_F(PenaltyTest, OfTrialsOnTheWayToAFitIsNotTold) {
  Ready("juveniles_only");
  Simplex();
  EXPECT_THAT(windows.messages.back().details, IsEmpty());
  EXPECT_THAT(program.frmSimplex.rtbSimplex.text, Not(HasSubstr("penalty")));
}

TEST_F(PenaltyTest, ThatTheChecksOfAFunctionCallAddToThoseOfTheObjectiveIsSaid) {
  Ready("effective_limit");
  ASSERT_TRUE(desk.Press(menu.cmdOneFunction));
  const double once = CallOnce(program).F.value();
  ASSERT_LT(once, program.fit.objective) << "the tables are filled twice";
  EXPECT_THAT(program.frmOneFunction.rtbOneFunction.text,
              HasSubstr("at these values a minimization finds " + Format(once, "####0.000000")));
  EXPECT_EQ(program.fit.ofOneCall, once);
}

TEST_F(PenaltyTest, AFunctionCallWithoutPenaltiesNeedsNoWord) {
  Ready("juveniles_only");
  ASSERT_TRUE(desk.Press(menu.cmdOneFunction));
  EXPECT_THAT(program.frmOneFunction.rtbOneFunction.text, Not(HasSubstr("minimization")));
  EXPECT_EQ(program.fit.ofOneCall, std::nullopt);
}

TEST_F(PenaltyTest, OfAValueThatWasBroughtBackToItsLimitIsSaid) {
  Ready("juveniles_only");
  AlgorithmData& a = state.algorithm;
  for (double& step : a.Step) step = 0;
  a.Value(parameter::c_B) = 1.5;
  a.Step(parameter::c_B) = 0.1;
  a.MaxCalls = 1;
  Marquardt();
  ASSERT_EQ(a.Value(parameter::c_B), 1) << program.fit.minimisation->ending << windows.LastText();
  const double once = CallOnce(program).F.value();
  ASSERT_LT(once, program.fit.objective) << "which was reached above the limit";
  EXPECT_THAT(program.frmMarquardt.rtbMarquardt.text,
              HasSubstr("one function call at these values gives " + Format(once, "####0.000000")));
  EXPECT_EQ(program.fit.ofOneCall, once);
}

TEST_F(PenaltyTest, OfTheEstimatesIsKeptAndNotThatOfThePointEvaluatedLast) {
  Ready("juveniles_only");
  state.algorithm.MaxCalls = 1;
  Marquardt();
  EXPECT_EQ(program.fit.penalty, 0);
}

}  // namespace
}  // namespace merlane
