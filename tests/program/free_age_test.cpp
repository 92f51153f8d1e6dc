// A search that moves an age at laying or fledging: visits that an age leaves out keep the prediction of an earlier
// call and count with it, so that its objective is not that of its estimates.
#include <gmock/gmock.h>

#include "base/number_text.h"
#include "program/analysis.h"
#include "program/fresh_program.h"
#include "survival/parameter_layout.h"

namespace merlane {
namespace {

using test::Analysis;
using test::CallOnce;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

struct FreeAgeTest : ::testing::Test, Analysis {
  /// Ages are rounded to days, so that a search goes round among them without an end: it is stopped.
  void StoppedSimplex(int calls = 500) {
    state.algorithm.MaxCalls = calls;
    windows.Yes("Just checking");
    windows.No("Simplex minimization");
    ASSERT_TRUE(desk.Press(menu.cmdSimplex));
  }
  const std::string& Report() const { return program.frmSimplex.rtbSimplex.text; }
  static constexpr const char* Words =
      "is the objective of this search alone: one function call at these values gives ";
};

TEST_F(FreeAgeTest, TheObjectiveOfTheSearchIsToldBesideThatOfOneCall) {
  Ready("juveniles_only");
  state.algorithm.Step(parameter::FledgeAge) = -15;
  StoppedSimplex();
  const double ofOneCall = CallOnce(program).F.value();
  ASSERT_GT(std::fabs(ofOneCall - program.fit.objective), 1) << "the age has moved";
  EXPECT_THAT(Report(), HasSubstr(Words + Format(ofOneCall, "####0.000000")));
  EXPECT_THAT(Report(), HasSubstr("Give ages a step of 0"));
  EXPECT_EQ(program.fit.ofOneCall, ofOneCall);
}

TEST_F(FreeAgeTest, WhoTellsOfItLeavesTheRunAsTheSearchLeftIt) {
  Ready("juveniles_only");
  state.algorithm.Step(parameter::FledgeAge) = -15;
  StoppedSimplex();
  EXPECT_EQ(program.model.Evaluated().BestObjective, program.fit.objective);
  EXPECT_EQ(program.fit.sampleSize, state.flags.SampleSize);
  EXPECT_NE(state.flags.SampleSize, CallOnce(program).SampleSize) << "the search counts what it left out";
}

TEST_F(FreeAgeTest, AFunctionCallAtTheEstimatesWarnsOnceOfEachVisitThatIsLeftOut) {
  Ready("fuses");
  state.algorithm.Value(parameter::LayAge) = -5;
  state.algorithm.Step(parameter::LayAge) = 0.01;
  StoppedSimplex(10);
  windows.messages.clear();
  OneFunction();
  const std::vector<std::string> told = windows.Titles();
  EXPECT_THAT(told, Contains("Warning: data record will be ignored!"));
  windows.messages.clear();
  program.fit = {};
  OneFunction();
  EXPECT_EQ(told, windows.Titles());
}

TEST_F(FreeAgeTest, AnAgeThatFollowsAFreeParameterIsTold) {
  Ready("juveniles_only");
  AlgorithmData& a = state.algorithm;
  a.Value(parameter::v_B) = 40;  // an attenuation without effect
  a.Step(parameter::v_B) = -15;
  a.Fuse(parameter::v_B) = a.Fuse(parameter::FledgeAge) = "A";
  StoppedSimplex();
  EXPECT_THAT(Report(), HasSubstr(Words));
}

TEST_F(FreeAgeTest, AgesThatAreFixedNeedNoWord) {
  Ready("juveniles_only");
  Simplex();
  EXPECT_THAT(Report(), Not(HasSubstr("one function call")));
  EXPECT_EQ(program.fit.ofOneCall, std::nullopt);
}

}  // namespace
}  // namespace merlane
