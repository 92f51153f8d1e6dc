// A minimum that is a penalty is no fit, and is not told as one.
#include <gmock/gmock.h>

#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

struct PenaltyTest : ::testing::Test, Analysis {
  void Simplex() {
    windows.Yes("Just checking");
    ASSERT_TRUE(desk.Press(menu.cmdSimplex));
  }
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

}  // namespace
}  // namespace merlane
