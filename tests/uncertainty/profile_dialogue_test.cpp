#include "uncertainty/profile_dialogue.h"

#include <filesystem>

#include "base/arithmetic_failure.h"
#include "base/text.h"
#include "platform/files.h"
#include "uncertainty/evaluation_forms.h"

namespace merlane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* ProfileTitle = "ML parameter estimate evaluation";
constexpr const char* ParameterPrompt = "Choose the parameter number to be profiled:\r\n0 < parameter # <= 2";
constexpr const char* PointsPrompt = "Choose the number of x-y data points per plot:\r\n0 <= # points <= 1001";

/// The profile over F = 20 + 4 (x - 3)^2 + 3 (y - 1)^2, of which x = 3 has the SE 0.5.
struct ProfileDialogueTest : test::EvaluationForms {
  ProfileDialogueTest()
      : EvaluationForms({3, 1}, {0.25, 0.1}, [](Array1<double>& v) {
          return 20 + 4 * (v(1) - 3) * (v(1) - 3) + 3 * (v(2) - 1) * (v(2) - 1);
        }) {}

  void AnswerUpToParameter() {
    windows.Yes(ProfileTitle);
    windows.Enter("0.500", "Enter constant");
  }
  void AnswerUpToMinimiser(const std::string& parameter, const std::string& points) {
    AnswerUpToParameter();
    windows.Enter(parameter, ProfileTitle);
    windows.Enter(points, ProfileTitle);
  }
  void ProfileBySimplex(const std::string& points) {
    AnswerUpToMinimiser("1", points);
    windows.Yes(ProfileTitle);
    Edit();
    SeePlots();
    Choose(frmParEvals.cmdML);
  }
  /// Only the profiled parameter is free.
  void FreezeTheOther() { algorithm.Step(2) = 0; }
};

TEST_F(ProfileDialogueTest, TellsAndAsksInTheseWords) {
  windows.No(ProfileTitle);
  Choose(frmParEvals.cmdML);
  ASSERT_EQ(windows.messages.size(), 2U);
  EXPECT_EQ(windows.messages[0].style, 64);
  EXPECT_EQ(windows.messages[0].text,
            "This routine will create a series of plots, and if desired, save the x-y data. \r\n"
            "Choose plot 1 to get a likelihood profile plot. \r\n"
            "Choose plot 2 to get a confidence distribution at ML estimates. \r\n"
            "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
            "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
            "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
            "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
            "Choose plot 7 to get a mode-centered Gaussian distribution plot.");
  EXPECT_EQ(windows.messages[1].style, 36);
  EXPECT_EQ(windows.messages[1].text,
            "First choose the parameter to be profiled, then the number of data points. You may then wisely edit the "
            "mid-range of the parameter value and the step size. For example, if you choose 101 profile points then "
            "profile point 1 will be the parameter value - 50 * the step size, profile point 51 will be the parameter "
            "value, and profile point 101 will be the parameter value + 50 * the step size. This routine is works best "
            "when the value of the parameter corresponds to the minimum. We suggest you first build a covariance "
            "matrix for parameters with non-zero step sizes and thus let the statistical machinery determine "
            "approximate values for the step sizes. Be warned, however, that this choice will automatically change the "
            "values for step sizes in your algorithm data file.\r\n\r\nDo you want to continue?");
}

TEST_F(ProfileDialogueTest, NoAtTheIntroductionEndsTheCommand) {
  windows.No(ProfileTitle);
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
  EXPECT_THAT(run.calls, IsEmpty());
  EXPECT_THAT(windows.Titles(), Not(Contains("A friendly reminder")));
}

TEST_F(ProfileDialogueTest, ChoiceCanBeCancelled) {
  Choose(frmParEvals.cmdCancel);
  ExpectBackAtMenu();
  EXPECT_THAT(windows.messages, IsEmpty());
}

TEST_F(ProfileDialogueTest, TheChoiceCanBeShownMeanwhileButNeitherUsedNorClosed) {
  AnswerUpToMinimiser("1", "5");
  windows.No(ProfileTitle);
  Edit([this] {
    desk.Show(frmParEvals);
    EXPECT_FALSE(desk.Press(frmParEvals.cmdCancel));
    EXPECT_FALSE(desk.Close(frmParEvals));
  });
  windows.Reply(Answer::Cancel, "Marquardt minimization");
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, AnEmptyParameterEndsTheCommand) {
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
  EXPECT_EQ(windows.inputs.back().prompt, ParameterPrompt);
  EXPECT_EQ(windows.inputs.back().defaultText, "");
}

TEST_F(ProfileDialogueTest, AParameterThatIsNoneIsAskedForAgain) {
  AnswerUpToParameter();
  for (const char* refused : {"two", "0", "3", "-1", "1e30"}) windows.Enter(refused, ProfileTitle);
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.inputs.size(), 7U);
}

TEST_F(ProfileDialogueTest, APointCountOutsideZeroTo1001IsAskedForAgain) {
  AnswerUpToParameter();
  windows.Enter("1", ProfileTitle);
  for (const char* refused : {"-1", "1002", "many"}) windows.Enter(refused, ProfileTitle);
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.inputs.back().prompt, PointsPrompt);
  EXPECT_EQ(windows.inputs.back().defaultText, "25");
  EXPECT_EQ(windows.inputs.size(), 6U);
  ExpectBackAtMenu();
}

struct PointCount {
  const char* typed;
  int used;
};
struct PointCountTest : ProfileDialogueTest, ::testing::WithParamInterface<PointCount> {};

TEST_P(PointCountTest, IsMadeOddAndThreeAtLeast) {
  FreezeTheOther();
  ProfileBySimplex(GetParam().typed);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), GetParam().used);
  EXPECT_EQ(run.calls.size(), static_cast<std::size_t>(GetParam().used)) << "one function call each";
}

INSTANTIATE_TEST_SUITE_P(Typed, PointCountTest,
                         ::testing::Values(PointCount{"0", 25}, PointCount{"1", 3}, PointCount{"2", 3},
                                           PointCount{"3", 3}, PointCount{"4", 5}, PointCount{"25", 25},
                                           PointCount{"1000", 1001}, PointCount{"1001", 1001}),
                         [](const auto& count) { return std::string("N") + count.param.typed; });

TEST_F(ProfileDialogueTest, WithOnlyTheProfiledParameterFreeAsksForAMinimiserAndUsesNone) {
  FreezeTheOther();
  ProfileBySimplex("3");
  EXPECT_FALSE(frmSimplex.Loaded());
  EXPECT_THAT(Panel(1),
              ElementsAre("Calculating profile point 1 of 3, Value of parameter # 1 which is being profiled is: "
                          "2.7500E+00",
                          "Minimizations remaining: 2",
                          "Calculating profile point 2 of 3, Value of parameter # 1 which is being profiled is: "
                          "3.0000E+00",
                          "Minimizations remaining: 1",
                          "Calculating profile point 3 of 3, Value of parameter # 1 which is being profiled is: "
                          "3.2500E+00",
                          "Minimizations remaining: 0"));
  EXPECT_THAT(Panel(2), ElementsAre("Estimated time remaining (m:s): 0:00"));
}

TEST_F(ProfileDialogueTest, TheTimeRemainingIsThatOfThePointsLeft) {
  FreezeTheOther();
  const test::Function f = run.function;
  run.function = [this, f](Array1<double>& v) {
    host.clock.now.second += 25;
    return f(v);
  };
  ProfileBySimplex("5");
  const auto left = [](const char* time) { return "Estimated time remaining (m:s): " + std::string(time); };
  EXPECT_THAT(Panel(2), ElementsAre(left("1:40"), left("1:15"), left("0:50"), left("0:25"), left("0:00")));
}

TEST_F(ProfileDialogueTest, BySimplexGivesPlotsAndATable) {
  AnswerUpToMinimiser("1", "25");
  windows.Yes(ProfileTitle);
  Edit();
  SeePlots([this] {
    EXPECT_TRUE(state.profile.ProfileOn);
    EXPECT_EQ(algorithm.Step(1), 0) << "held as long as the plots are open";
    EXPECT_EQ(state.free.NFREE, 1);
    EXPECT_FALSE(frmMenu.Loaded());
    EXPECT_THAT(frmDistPlot.listVar.items, Contains("Parameter Confidence Distribution"));
    desk.Select(frmDistPlot.listVar, 1);
    desk.Press(frmDistPlot.cmdPlot);
    EXPECT_THAT(frmDistPlot.lblEstimateValues.text, StartsWith("3.000E+00"));
  });
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
  EXPECT_EQ(windows.messages[2].text,
            "Choose 'Yes' to minimize with SIMPLEX\r\nChoose 'No' to minimize with MARQUARDT");
  EXPECT_EQ(windows.messages[2].style, 36);
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder");
  EXPECT_EQ(windows.messages.back().text, "Your algorithm file may have been automatically edited");
  EXPECT_EQ(windows.messages.back().style, 48);
  EXPECT_TRUE(frmSimplex.Visible());
  EXPECT_TRUE(frmMaxLike.Visible());
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_EQ(state.free.NFREE, 2);
  EXPECT_FALSE(simplex.ResumesAt(run.objective.Present()));
  EXPECT_EQ(evaluation.LastProfileKind, EvaluationKind::Profile);
  EXPECT_EQ(state.profile.ProfileState, 1);
  const ConfidenceSeries& s = *evaluation.series;
  EXPECT_NEAR(s.ExpectedValue, 3, 1e-6);
  EXPECT_NEAR(s.EstimatedSE, 0.5, 1e-4) << "4 (x - 3)^2 is twice the -ln[L] of a normal of deviation 0.5";
}

TEST_F(ProfileDialogueTest, TableHasItsColumns) {
  ProfileBySimplex("3");
  const std::vector<std::string> lines = Lines(frmMaxLike.rtbTable.text);
  ASSERT_EQ(lines.size(), 13U);
  EXPECT_EQ(lines[0], "Maximum-likelihood confidence distribution data");
  EXPECT_EQ(lines[1], "");
  EXPECT_EQ(lines[2],
            "  Point       Value         -ln[L]           PDF        CI on mode     CI on mean     Normal PDF");
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4],
            "    1     2.7500E+000    1.2500E-001    1.8369E+000    5.3121E-001    5.3121E-001    5.6329E-001   ");
  EXPECT_THAT(lines[5], StartsWith("    2     3.0000E+000    0.0000E+000"));
  EXPECT_THAT(lines[6], StartsWith("    3     3.2500E+000    1.2500E-001"));
  EXPECT_EQ(lines[7], "");
  EXPECT_EQ(lines[8], "Max Likelihood:  3.0000E+000   ");
  EXPECT_EQ(lines[9], "Expected Value:  3.0000E+000   ");
  EXPECT_THAT(lines[10], StartsWith("Estimated Diff: "));
  EXPECT_THAT(lines[11], StartsWith("Percent Diff:   "));
  EXPECT_THAT(lines[12], StartsWith("Estimated SE:    "));
}

TEST_F(ProfileDialogueTest, TheFirstPointBySimplexVoidsTheCovariances) {
  TakeCovariances({0.5, 0.1});
  covariances.OptimisticSE = true;
  AnswerUpToMinimiser("1", "3");
  windows.Yes(ProfileTitle);
  windows.Enter("N", ProfileTitle);
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_FALSE(covariances.AreOf(run.objective.Present()));
  EXPECT_TRUE(covariances.OptimisticSE) << "which they stay";
}

TEST_F(ProfileDialogueTest, ByMarquardtAsksForDerivativesOnce) {
  AnswerUpToMinimiser("1", "5");
  windows.No(ProfileTitle);
  Edit();
  windows.No("Marquardt minimization");
  windows.No("Marquardt minimization");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_TRUE(frmMarquardt.Visible());
  EXPECT_NEAR(evaluation.series->ProfileF(1), 0.5 * 4 * 0.25, 1e-9);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, WithoutDerivativesItGivesUp) {
  AnswerUpToMinimiser("1", "5");
  windows.No(ProfileTitle);
  Edit();
  windows.Reply(Answer::Cancel, "Marquardt minimization");
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
  EXPECT_FALSE(evaluation.series);
  EXPECT_FALSE(frmDistPlot.Loaded());
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder");
}

TEST_F(ProfileDialogueTest, StepsAreOfferedFromTheCovariances) {
  TakeCovariances({0.5, 0.1});
  AnswerUpToMinimiser("1", "25");
  windows.Yes(ProfileTitle);
  for (const char* refused : {"4", "yes", "1.0"}) windows.Enter(refused, ProfileTitle);
  windows.Enter("2", ProfileTitle);
  Edit([this] {
    EXPECT_DOUBLE_EQ(algorithm.Step(1), 1.0 * 24 / (24 * 3));
    EXPECT_DOUBLE_EQ(algorithm.Step(2), 0.2 * 24 / (24 * 3)) << "of each free parameter";
  });
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.inputs[3].prompt,
            "Base step sizes on SD's from covariance grid 1, 2, 3, No or Quit?\r\nPlease enter 1, 2, 3, N, or Q");
  EXPECT_EQ(windows.inputs[3].defaultText, "N");
  EXPECT_DOUBLE_EQ(algorithm.Step(1), 1.0 / 3);
}

TEST_F(ProfileDialogueTest, CovariancesOfAnotherAlgorithmFileProposeNoSteps) {
  TakeCovariances({0.5, 0.1});
  FreezeTheOther();  // as a file does that is loaded behind them
  AnswerUpToMinimiser("1", "3");
  windows.Yes(ProfileTitle);
  Edit([this] { EXPECT_EQ(algorithm.Step(2), 0) << "not minimised over"; });
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.inputs.size(), 3U) << "constant, parameter and points";
}

TEST_F(ProfileDialogueTest, CovariancesUnderAnotherConstantProposeNoSteps) {
  TakeCovariances({0.5, 0.1});
  covariances.basis->constant = 1;
  AnswerUpToMinimiser("1", "3");
  windows.Yes(ProfileTitle);
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.inputs.size(), 3U);
}

TEST_F(ProfileDialogueTest, AGridThatFailedProposesNoStepsAndAsksAgain) {
  TakeCovariances({0.5, 0.1});
  covariances.grid(2).ending = GridEnding::NotPositiveDefinite;
  covariances.grid(2).standardErrors.Fill(-1);
  AnswerUpToMinimiser("1", "25");
  windows.Yes(ProfileTitle);
  windows.Enter("2", ProfileTitle);
  windows.Enter("1", ProfileTitle);
  Edit([this] { EXPECT_DOUBLE_EQ(algorithm.Step(1), 0.5 * 24 / (24 * 3)); });
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(windows.messages[3].text, StartsWith("Covariance grid 2 has no standard errors"));
}

TEST_F(ProfileDialogueTest, AParameterWithoutAStandardErrorKeepsItsStep) {
  TakeCovariances({0.5, 0.1});
  covariances.grid(1).standardErrors(2) = -1;
  const double step = algorithm.Step(2);
  AnswerUpToMinimiser("1", "25");
  windows.Yes(ProfileTitle);
  windows.Enter("1", ProfileTitle);
  Edit([&] { EXPECT_EQ(algorithm.Step(2), step); });
  SeePlots();
  Choose(frmParEvals.cmdML);
}

TEST_F(ProfileDialogueTest, QuitOrNothingAtTheStepsEndsTheCommand) {
  TakeCovariances({0.5, 0.1});
  for (const char* quit : {"Q", "q", ""}) {
    AnswerUpToMinimiser("1", "25");
    windows.Yes(ProfileTitle);
    windows.Enter(quit, ProfileTitle);
    Choose(frmParEvals.cmdML);
    ExpectBackAtMenu();
    EXPECT_FALSE(frmAlgo.Loaded());
    EXPECT_EQ(algorithm.Step(1), 0.25);
  }
}

TEST_F(ProfileDialogueTest, EditorOffersValuesAndStepsAlone) {
  AnswerUpToMinimiser("1", "3");
  windows.Yes(ProfileTitle);
  Edit([this] {
    EXPECT_TRUE(frmAlgo.Marks().Offered(EditItem::Values));
    EXPECT_TRUE(frmAlgo.Marks().Offered(EditItem::Steps));
    EXPECT_FALSE(frmAlgo.Marks().Offered(EditItem::Fuses));
    EXPECT_FALSE(frmAlgo.Marks().Offered(EditItem::Log));
    algorithm.Value(1) = 2.5;
    algorithm.Step(1) = 1;
  });
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ((Array1<double>{1.5, 2.5, 3.5}), evaluation.series->ProfileX);
  EXPECT_EQ(algorithm.Value(1), 2.5);
}

TEST_F(ProfileDialogueTest, AStepOfZeroIsRefusedAndTheParameterAskedForAgain) {
  AnswerUpToMinimiser("2", "3");
  windows.Yes(ProfileTitle);
  Edit([this] { algorithm.Step(2) = 0; });
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].text,
            "The parameter chosen has a step size of zero; please try again");
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].style, 48);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].title, ProfileTitle);
  EXPECT_EQ(windows.inputs.back().prompt, ParameterPrompt);
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder");
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, ANegativeStepTurnsTheSeriesAndComesBackPositive) {
  FreezeTheOther();
  algorithm.Step(1) = -0.25;
  ProfileBySimplex("5");
  EXPECT_EQ((Array1<double>{2.5, 2.75, 3, 3.25, 3.5}), evaluation.series->ProfileX);
  EXPECT_EQ(run.calls[0].X(1), 3.5);
  EXPECT_EQ(algorithm.Step(1), 0.25);
}

TEST_F(ProfileDialogueTest, AMinimumAtTheFirstPointSkipsTheRegionOnTheMode) {
  FreezeTheOther();
  algorithm.Value(1) = 4;
  algorithm.Step(1) = 0.5;
  ProfileBySimplex("5");
  EXPECT_EQ(evaluation.series->ModeValue, 3);
  EXPECT_EQ(Array1<double>(5), evaluation.series->ProfileCIMode);
  EXPECT_THAT(frmMaxLike.rtbTable.text, HasSubstr("    5     5.0000E+000"));
}

TEST_F(ProfileDialogueTest, AnExpectedValueOfZeroCostsThePercentageAlone) {
  FreezeTheOther();
  run.function = [](Array1<double>& v) { return v(1) * v(1); };
  algorithm.Value(1) = 0;
  ProfileBySimplex("5");
  EXPECT_THAT(frmMaxLike.rtbTable.text, HasSubstr("\nPercent Diff:      undefined   \nEstimated SE:   "));
  ExpectBackAtMenu();
}

// A parameter whose sign the model drops.

struct WithoutASign : ProfileDialogueTest {
  WithoutASign() {
    FreezeTheOther();
    run.function = [](Array1<double>& v) {
      v(1) = std::fabs(v(1));
      return 20 + 4 * (v(1) - 3) * (v(1) - 3);
    };
    algorithm.Step(1) = 2;  // from -1 to 7
  }
  void Profile(const std::function<void()>& answer) {
    AnswerUpToMinimiser("1", "5");
    windows.Yes(ProfileTitle);
    answer();
    Edit();
    SeePlots();
    Choose(frmParEvals.cmdML);
  }
  std::vector<Message> Mirrored() const {
    std::vector<Message> told;
    for (const Message& message : windows.messages)
      if (message.text.find("without its sign") != std::string::npos) told.push_back(message);
    return told;
  }
};

TEST_F(WithoutASign, PointsBeyondZeroAreToldToBeMirroredAndAStepIsOffered) {
  Profile([this] { windows.No(ProfileTitle); });
  ASSERT_EQ(Mirrored().size(), 1U);
  EXPECT_EQ(Mirrored()[0].text,
            "Parameter #1 is taken without its sign: beyond 0 the curves are mirror images of those before it.\r\n"
            "With a step of 1.0000E+00 all points would lie on the side of 0 on which its value lies.\r\n\r\n"
            "Evaluate them with that step instead?");
  EXPECT_EQ(*evaluation.series->ProfileX.begin(), -1);
  EXPECT_EQ(algorithm.Step(1), 2);
}

TEST_F(WithoutASign, TheOfferIsTakenWithoutAnotherQuestion) {
  Profile([this] { windows.Yes(ProfileTitle); });
  EXPECT_EQ(Mirrored().size(), 1U);
  EXPECT_EQ(*evaluation.series->ProfileX.begin(), 1);
  EXPECT_EQ(*(evaluation.series->ProfileX.end() - 1), 5);
  EXPECT_EQ(algorithm.Step(1), 1) << "as a step that is edited";
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_THAT(windows.Titles(), Contains("A friendly reminder"));
  ExpectBackAtMenu();
}

TEST_F(WithoutASign, AtAValueOfZeroThereIsNoSideToBeOffered) {
  algorithm.Value(1) = 0;
  Profile([] {});
  ASSERT_EQ(Mirrored().size(), 1U);
  EXPECT_EQ(Mirrored()[0].style, style::Information);
}

TEST_F(WithoutASign, WithTheStepThatWasToldNothingIsMirrored) {
  algorithm.Step(1) = 1;
  Profile([] {});
  EXPECT_THAT(Mirrored(), IsEmpty());
  EXPECT_EQ(*evaluation.series->ProfileX.begin(), 1);
}

TEST_F(ProfileDialogueTest, AParameterWithASignMayCrossZeroWithoutAWord) {
  FreezeTheOther();
  algorithm.Step(1) = 2;
  ProfileBySimplex("5");
  EXPECT_EQ(*evaluation.series->ProfileX.begin(), -1);
  for (const Message& message : windows.messages) EXPECT_THAT(message.text, Not(HasSubstr("without its sign")));
}

// Earlier results.

TEST_F(ProfileDialogueTest, EarlierResultsCanBeSeenAgain) {
  ProfileBySimplex("3");
  const std::string table = frmMaxLike.rtbTable.text;
  desk.Unload(frmMaxLike);
  const std::size_t calls = run.calls.size();
  windows.Yes(ProfileTitle);
  windows.No(ProfileTitle);
  SeePlots([this] {
    EXPECT_EQ(algorithm.Step(1), 0);
    EXPECT_EQ(state.free.NFREE, 1);
  });
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.messages.back().text,
            "Do you want to perform minimizations now?\r\nChoosing 'NO' will give you the previous ML plots");
  EXPECT_EQ(windows.messages.back().style, 36);
  EXPECT_EQ(run.calls.size(), calls);
  EXPECT_EQ(frmMaxLike.rtbTable.text, table);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_EQ(state.free.NFREE, 2);
  ExpectBackAtMenu();

  windows.Yes(ProfileTitle);
  windows.Yes(ProfileTitle);
  windows.Enter("0.5", "Enter constant");
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, CancelledQuestionsLeaveTheConstantAndTheEarlierResults) {
  ProfileBySimplex("3");
  const double constant = state.flags.ObjectiveConstant;
  windows.Yes(ProfileTitle);
  windows.Yes(ProfileTitle);
  windows.Enter("50", "Enter constant");
  windows.Enter("1", ProfileTitle);
  windows.Enter("5", ProfileTitle);
  windows.Yes(ProfileTitle);
  TakeCovariances(Array1<double>(2, 0.1));
  covariances.basis->constant = 1.0 / 50;
  windows.Enter("q", ProfileTitle);
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(state.flags.ObjectiveConstant, constant) << "priors weigh as before";
  windows.Yes(ProfileTitle);
  windows.No(ProfileTitle);
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_TRUE(frmMaxLike.Visible());
}

TEST_F(ProfileDialogueTest, EarlierResultsAreGoneOncePackedForAnotherCommand) {
  ProfileBySimplex("3");
  run.Pack();
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
}

TEST_F(ProfileDialogueTest, EarlierResultsOfOtherAlgorithmDataAreNotOffered) {
  ProfileBySimplex("3");
  algorithm.Value(2) += 1;
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
}

TEST_F(ProfileDialogueTest, EarlierResultsUnderOtherPriorsAreNotOffered) {
  ProfileBySimplex("3");
  state.flags.BayesOn = true;
  run.objective.priorTerm = [](const Array1<double>&) { return 0.0; };
  run.objective.priorsInForce = [] { return std::string("1: N 3 1"); };
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
}

TEST_F(ProfileDialogueTest, EarlierResultsOfAPosteriorAreNotThose) {
  ProfileBySimplex("3");
  evaluation.LastProfileKind = EvaluationKind::Posterior;
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
}

// Interrupts.

TEST_F(ProfileDialogueTest, AnInterruptOfTheRunKeepsThePointsDone) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "11");
  windows.Yes(ProfileTitle);
  // The first turn is the constant's, then each point gives one.
  windows.AtTurn(1 + 7, [this] { EXPECT_TRUE(desk.Press(frmMain.mnuInterruptML)); });
  Edit();
  windows.Yes("Maximum-likelihood calculations");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].text, "Interrupt received.  Quit calculations?");
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].style, 36);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 6) << "asked at point 8";
  EXPECT_EQ(evaluation.series->ProfileCum(6), 0) << "an even number";
  EXPECT_EQ(windows.beeps, 1);
  EXPECT_FALSE(state.flags.InterruptML);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, TheInterruptMenuStandsWhileTheProfileRunsAndNoLonger) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  bool stood = false;
  windows.AtTurn(1 + 2, [&] { stood = frmMain.mnuMLInt.visible && !frmMain.mnuBayesianInt.visible; });
  Edit([this] { EXPECT_FALSE(frmMain.mnuMLInt.visible); });
  SeePlots([this] { EXPECT_FALSE(frmMain.mnuMLInt.visible); });
  Choose(frmParEvals.cmdML);
  EXPECT_TRUE(stood);
}

TEST_F(ProfileDialogueTest, AFailureTakesTheInterruptMenuAway) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  bool stood = false;
  windows.AtTurn(1 + 2, [&] {
    stood = frmMain.mnuMLInt.visible;
    throw RuntimeFailure("broken");
  });
  windows.ExpectFailure("broken");
  Edit();
  Choose(frmParEvals.cmdML);
  EXPECT_TRUE(stood);
  EXPECT_FALSE(frmMain.mnuMLInt.visible);
}

TEST_F(ProfileDialogueTest, NoAtTheInterruptGoesOn) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  windows.AtTurn(1 + 2, [this] { desk.Press(frmMain.mnuInterruptML); });
  Edit();
  windows.No("Maximum-likelihood calculations");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 5);
}

TEST_F(ProfileDialogueTest, FewerThanThreePointsGiveNoPlots) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "11");
  windows.Yes(ProfileTitle);
  windows.AtTurn(1 + 3, [this] { desk.Press(frmMain.mnuInterruptML); });
  Edit();
  windows.Yes("Maximum-likelihood calculations");
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.beeps, 1) << "in all cases";
  EXPECT_FALSE(evaluation.series);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].text,
            "The likelihood profile was interrupted too early for a curve.\r\nThe points done, 3 in number, are shown "
            "and can be "
            "saved.");
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, ThePointsDoneBeforeAnInterruptThatIsTooEarlyAreShown) {
  FreezeTheOther();
  AnswerUpToMinimiser("1", "11");
  windows.Yes(ProfileTitle);
  windows.AtTurn(1 + 2, [this] { desk.Press(frmMain.mnuInterruptML); });
  Edit();
  windows.Yes("Maximum-likelihood calculations");
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(
      Lines(frmMaxLike.rtbTable.text),
      ElementsAre("Points of a likelihood profile that was interrupted", "", "  Point       Value         -ln[L]", "",
                  StartsWith("    1     1.7500E+000"), StartsWith("    2     2.0000E+000")));
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, ALowestPointThatIsNotKeptGivesNoPlots) {
  FreezeTheOther();
  algorithm.Value(1) = 2;
  algorithm.Step(1) = 0.1;
  AnswerUpToMinimiser("1", "11");
  windows.Yes(ProfileTitle);
  windows.AtTurn(1 + 6, [this] { desk.Press(frmMain.mnuInterruptML); });
  Edit();
  windows.Yes("Maximum-likelihood calculations");
  Choose(frmParEvals.cmdML);
  EXPECT_FALSE(evaluation.series);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, AnInterruptFromBeforeTheRunIsNone) {
  FreezeTheOther();
  state.flags.InterruptML = true;
  ProfileBySimplex("3");
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 3);
}

TEST_F(ProfileDialogueTest, AnInterruptInsideASimplexCanQuitTheProcedure) {
  algorithm.TerminalFreq = 0;  // no reports, so the turns are those of the iterations
  AnswerUpToMinimiser("1", "9");
  windows.Yes(ProfileTitle);
  Edit();
  PressAtUsableTurn(frmSimplex.cmdStop, 60);
  windows.Yes("Simplex interrupt");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(windows.Titles(), Not(Contains("Maximum-likelihood calculations")));
  EXPECT_EQ(evaluation.series->ProfileX.Size(), profileRun.ProfilePoint - 2);
  EXPECT_EQ(algorithm.Value(1), 3);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, AnInterruptInsideASimplexCanGoOnWithTheNextPoint) {
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  Edit();
  PressAtUsableTurn(frmSimplex.cmdStop, 10);
  windows.No("Simplex interrupt");
  windows.Yes("Simplex interrupt");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 5);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, AnInterruptInsideMarquardtCanQuitTheProcedure) {
  AnswerUpToMinimiser("1", "9");
  windows.No(ProfileTitle);
  Edit();
  windows.No("Marquardt minimization");
  windows.No("Marquardt minimization");
  PressAtUsableTurn(frmMarquardt.cmdStop, 60);
  windows.Yes("Marquardt interrupt");
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), profileRun.ProfilePoint - 2);
  ExpectBackAtMenu();
}

TEST_F(ProfileDialogueTest, AFailureOfTheModelGivesTheParameterBack) {
  FreezeTheOther();
  run.function = [](Array1<double>&) { return std::nan(""); };
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  Edit();
  windows.ExpectFailure("overflow");
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder") << "the table was open all the same";
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_FALSE(state.profile.ProfileOn);
  EXPECT_TRUE(frmMenu.Visible());
}

TEST_F(ProfileDialogueTest, TheReminderComesAfterAFailureTooIfTheTableWasOpen) {
  AnswerUpToParameter();
  windows.CancelInput(ProfileTitle);
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(windows.Titles(), Not(Contains("A friendly reminder")));

  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  Edit([this] { algorithm.Value(2) = 1e200; });
  windows.ExpectFailure("the starting point cannot be evaluated");
  Choose(frmParEvals.cmdML);
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder");
  EXPECT_EQ(windows.messages.back().text, "Your algorithm file may have been automatically edited");
}

TEST_F(ProfileDialogueTest, PointsThatCannotBeEvaluatedAreToldAndTheProfileGoesOn) {
  run.function = [](Array1<double>& v) {
    return v(1) > 3.3 ? throw ArithmeticFailure("too far out") : 20 + 4 * (v(1) - 3) * (v(1) - 3) + v(2) * v(2);
  };
  AnswerUpToMinimiser("1", "5");
  windows.Yes(ProfileTitle);
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(windows.messages[windows.messages.size() - 2].text,
              StartsWith("1 of 5 points could not be evaluated and count as impossible"));
  EXPECT_THAT(windows.messages[windows.messages.size() - 2].text, HasSubstr("too far out"));
  EXPECT_THAT(frmMaxLike.rtbTable.text, HasSubstr("1.0000E+020"));
}

TEST_F(ProfileDialogueTest, ASumOfSquaresIsAskedForNoConstant) {
  FreezeTheOther();
  state.flags.NOBS = 100;
  windows.Yes(ProfileTitle);
  windows.Enter("1", ProfileTitle);
  windows.Enter("5", ProfileTitle);
  windows.Yes(ProfileTitle);
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdML);
  EXPECT_DOUBLE_EQ(state.flags.ObjectiveConstant, 99 / (2 * 21.0)) << "of the last point";
}

TEST_F(ProfileDialogueTest, ASumOfSquaresWithoutADegreeOfFreedomIsReported) {
  FreezeTheOther();
  state.flags.NOBS = 1;
  windows.Yes(ProfileTitle);
  windows.Enter("1", ProfileTitle);
  windows.Enter("5", ProfileTitle);
  windows.Yes(ProfileTitle);
  Edit();
  windows.ExpectFailure("division by zero");
  Choose(frmParEvals.cmdML);
  EXPECT_THAT(windows.Titles(), Contains("Insufficient degrees of freedom"));
}

// The table's window.

struct TableTest : ProfileDialogueTest {
  void SetUp() override {
    FreezeTheOther();
    ProfileBySimplex("3");
    std::filesystem::create_directories(folder);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  const std::string folder = ::testing::TempDir() + "merlane_table";
};

TEST_F(TableTest, IsSavedAsItStandsWithItsNameOnTop) {
  desk.SetText(frmMaxLike.rtbTable, "edited\n");
  windows.File(folder + "/x.mlc", "Save maximum-likelihood values in...");
  desk.Press(frmMaxLike.cmdSave);
  EXPECT_EQ(ReadWholeFile(folder + "/x.mlc"),
            "Originally saved with the file name: " + folder + "/x.mlc\r\n\r\nedited\r\n");
  EXPECT_EQ(windows.files.back().filter, "All files (*.*)|*.*|Max-like files (*.mlc)|*.mlc");
  EXPECT_EQ(windows.files.back().startName, "06011030.mlc");
  windows.File(folder + "/x.mlc");
  desk.Press(frmMaxLike.cmdSave);
  EXPECT_THAT(Lines(ReadWholeFile(folder + "/x.mlc")),
              ElementsAre(StartsWith("Originally"), "", StartsWith("Originally"), "", "edited"));
}

TEST_F(TableTest, CancelledSavingLeavesNoFile) {
  windows.CancelFile();
  desk.Press(frmMaxLike.cmdSave);
  EXPECT_THAT(windows.writes, IsEmpty());
}

TEST_F(TableTest, AFileThatCannotBeWrittenIsToldAndThePaneStays) {
  const std::string before = frmMaxLike.rtbTable.text;
  windows.File(folder + "/nowhere/x.mlc");
  windows.ExpectFailure("nowhere");
  desk.Press(frmMaxLike.cmdSave);
  EXPECT_EQ(frmMaxLike.rtbTable.text, before);
}

TEST_F(TableTest, HasItsTexts) {
  EXPECT_EQ(frmMaxLike.title, "Maximum likelihood statistics");
  EXPECT_EQ(frmMaxLike.cmdSave.name, "cmdSaveML");
  EXPECT_EQ(frmMaxLike.cmdSave.text, "&Save maximum-likelihood data as...");
  EXPECT_EQ(frmMaxLike.cmdSave.toolTip, "Saves the (possibly edited) output appearing in the textbox below");
  EXPECT_EQ(frmMaxLike.rtbTable.name, "rtbMaxLike");
  EXPECT_EQ(frmParEvals.title, "Evaluation of estimates");
  EXPECT_EQ(frmParEvals.cmdML.text, "&Maximium likelihood (ML) confidence distributions");
  EXPECT_EQ(frmParEvals.cmdBP.text, "&Bayesian posterior (BP) distributions");
  EXPECT_EQ(frmParEvals.lblChoice.text, "For any free parameter you have the choice to generate:");
  EXPECT_EQ(frmParEvals.lblValid.text,
            "Results are valid only if the objective function is the Sum of Squares or the -ln[L]");
  EXPECT_EQ(frmParEvals.lblEdits.text,
            "These routines can automatically edit your algorithm file so take care not to inadvertently save these "
            "edits");
  EXPECT_EQ(frmParEvals.lblLinked.text, "Only the lowest ordinal linked parameter can be evaluated");
}

}  // namespace
}  // namespace merlane
