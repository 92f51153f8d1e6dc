#include "control/frm_one_function.h"

#include <gmock/gmock.h>

#include "control/frm_menu.h"
#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

struct OneFunctionTest : ::testing::Test {
  OneFunctionTest() {
    AlgorithmData& a = state.algorithm;
    a.NPAR = 2;
    a.Value = {3, -4};
    a.Step = {0, 0};
    a.Fuse = {"~~", "AB"};
    a.ParName = {"first", "second"};
  }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  std::vector<std::int32_t> codes;
  Objective objective{state, [this](ModelCall& call) {
                        codes.push_back(call.NF);
                        call.F = call.X(1) * call.X(1) + call.X(2) * call.X(2);
                        host.clock.now.second += 1.256;
                      }};
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  FrmOneFunction form{desk, state, objective, main};
};

TEST_F(OneFunctionTest, StepsOfZeroStillEvaluateAndShow) {
  form.Run();
  EXPECT_EQ(codes, std::vector<std::int32_t>{1});
  EXPECT_EQ(form.rtbOneFunction.text,
            "\r\nCurrent minimum of 25.000000 found at the following parameter values: \r\n\r\n"
            "    001)  3.0000000E+00  ~~  first\r\n"
            "    002) -4.0000000E+00  AB  second\r\n"
            "\r\nNote: One function call requires about 1.26 seconds\r\n");
  EXPECT_TRUE(form.Visible());
  ASSERT_EQ(host.windows.statuses.size(), 2U);
  EXPECT_EQ(host.windows.statuses[0].text, "One moment please...");
  EXPECT_EQ(main.stbMain5.Get(1), "");
}

TEST_F(OneFunctionTest, PriorsAddTheirTermAndAreReviewed) {
  state.flags.BayesOn = true;
  objective.priorTerm = [](const Array1<double>&) { return 0.5; };
  bool reviewed = false;
  form.reviewPriors = [&] { reviewed = true; };
  form.Run();
  EXPECT_NE(form.rtbOneFunction.text.find("minimum of 25.500000 found"), std::string::npos);
  EXPECT_TRUE(reviewed);
}

TEST_F(OneFunctionTest, WithoutPriorsThereIsNoReview) {
  form.reviewPriors = [] { FAIL(); };
  form.Run();
}

TEST_F(OneFunctionTest, CloseClearsThePaneAndBringsTheMenu) {
  form.Run();
  EXPECT_TRUE(desk.Close(form));
  EXPECT_EQ(form.rtbOneFunction.text, "");
  EXPECT_TRUE(menu.Visible());
}

}  // namespace
}  // namespace merlane
