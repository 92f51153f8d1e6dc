#include "control/objective_constant.h"

#include <gmock/gmock.h>

#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

struct ObjectiveConstantTest : ::testing::Test {
  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
};

TEST_F(ObjectiveConstantTest, EntryOfOneHalfGivesTwo) {
  state.flags.ObjectiveHint = 0.5;
  main.ShowProgress("busy");
  host.windows.Enter("0.5", "Enter constant");
  EXPECT_TRUE(SetObjectiveConstant(desk, main, state, 100));
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_EQ(host.windows.inputs[0].prompt,
            "Enter the constant WHICH WILL MAKE the objective function the -ln[likelihood]\r\n"
            "Your model suggests you use this constant: ");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "0.500");
  EXPECT_EQ(main.stbMain5.Get(1), "");
}

TEST_F(ObjectiveConstantTest, CancelAsksAgain) {
  host.windows.CancelInput();
  host.windows.CancelInput();
  host.windows.Enter("1");
  EnterObjectiveConstant(desk, main, state);
  EXPECT_EQ(host.windows.inputs.size(), 3U);
  EXPECT_EQ(host.windows.turns, 3);
  EXPECT_EQ(host.windows.inputs[0].defaultText, "") << "a model without a hint proposes nothing";
  EXPECT_EQ(state.flags.ObjectiveConstant, 1);
}

TEST_F(ObjectiveConstantTest, ZeroNegativeAndNoNumberAreReportedAndAskedAgain) {
  for (const char* refused : {"0", "-0.5", "half"}) host.windows.Enter(refused);
  host.windows.Enter("0.25");
  EnterObjectiveConstant(desk, main, state);
  EXPECT_EQ(state.flags.ObjectiveConstant, 4);
  EXPECT_EQ(host.windows.messages.size(), 3U);
  EXPECT_EQ(host.windows.messages[0].title, "Insufficient degrees of freedom");
  EXPECT_EQ(host.windows.messages[0].text,
            "Cannot accept a negative or zero constant; perhaps the degrees of freedom are zero or fewer");
  EXPECT_EQ(host.windows.messages[0].style, style::Exclamation);
}

TEST_F(ObjectiveConstantTest, NumbersThatCannotBeReadOrHaveNoReciprocalAreReportedAndAskedAgain) {
  for (const char* refused : {"1e400", "1e-320"}) host.windows.Enter(refused);
  host.windows.Enter("0.5");
  EnterObjectiveConstant(desk, main, state);
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_THAT(host.windows.Titles(), ElementsAre("Enter constant", "Enter constant"));
  EXPECT_THAT(host.windows.messages[0].text, testing::HasSubstr("1e400 is too large a number"));
}

TEST_F(ObjectiveConstantTest, SumOfSquaresComputesTheConstantUnasked) {
  state.flags.NOBS = 21;
  state.free.NFREE = 4;
  EXPECT_TRUE(SetObjectiveConstant(desk, main, state, 2));
  EXPECT_EQ(state.flags.ObjectiveConstant, 4);
}

TEST_F(ObjectiveConstantTest, SumOfSquaresWithoutDegreesOfFreedomIsReported) {
  state.flags.NOBS = 5;
  state.free.NFREE = 4;
  EXPECT_FALSE(SetObjectiveConstant(desk, main, state, 2));
  EXPECT_THAT(host.windows.Titles(), ElementsAre("Insufficient degrees of freedom"));
  EXPECT_EQ(state.flags.ObjectiveConstant, 0);
}

TEST_F(ObjectiveConstantTest, SumOfSquaresIsProposedWhereTheUserIsAsked) {
  state.flags.NOBS = 20;
  state.free.NFREE = 4;
  host.windows.Enter("4");
  EnterObjectiveConstant(desk, main, state, 2);
  EXPECT_EQ(host.windows.inputs[0].prompt,
            "Enter the constant WHICH WILL MAKE the objective function the -ln[likelihood]\r\n"
            "If your objective function is the sum of squares, then use this constant: ");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "4.0000000E+00");
}

}  // namespace
}  // namespace merlane
