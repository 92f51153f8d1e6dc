// The results summary and the simulation of a data set, as a user meets them.
#include <gmock/gmock.h>

#include <fmt/format.h>

#include "base/text.h"
#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* Randomisations = "More simulations improve the goodness-of-fit (GOF) estimate";
constexpr const char* Options = "Choose among output options";

struct ResultsTest : ::testing::Test, Analysis {
  FrmSummary& summary = program.frmSummary;

  ResultsTest() { host.random.SetSeed(12345); }

  void Summary(const std::string& randomisations, Answer listing) {
    windows.Enter(randomisations, Randomisations);
    windows.Reply(listing, Options);
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  }
  const std::string& Text() const { return summary.rtbOut.text; }
  std::vector<std::string> StatusTexts() const {
    std::vector<std::string> texts;
    for (const auto& status : windows.statuses) texts.push_back(status.text);
    return texts;
  }
  /// Presses Abort in the n-th turn from now.
  void AbortAtTurn(int n) {
    windows.AtTurn(n, [this] { EXPECT_TRUE(desk.Press(program.frmAbort.cmdAbort)); });
  }
};

// --- The results summary ----------------------------------------------------------------------------------------

TEST_F(ResultsTest, SummaryGoesThroughItsQuestionsAndWindowsInOrder) {
  Ready("juveniles_only");
  windows.events.clear();
  Summary("2", Answer::Yes);
  std::vector<std::string> events;
  for (const std::string& event : windows.events)
    if (event.find("Virtually writing") == std::string::npos && event.find(" brood # ") == std::string::npos)
      events.push_back(event);
  EXPECT_THAT(
      events,
      ElementsAre("unloaded frmMenu", "status stbMain5 1 One moment please while one function call is executed...",
                  "status stbMain5 1 ", std::string("input ") + Randomisations, "shown frmAbort",
                  "status stbMain5 1 Pearson-deviates & Deviance: Performing randomization # 1 of 2",
                  "status stbMain5 1 ",
                  "status stbMain5 1 Pearson-deviates & Deviance: Performing randomization # 2 of 2",
                  "status stbMain5 1 ", "unloaded frmAbort",
                  "status stbMain5 1 Please be patient while survival probabilities are calculated, it can take a "
                  "while...",
                  "status stbMain5 1 ", "status stbMain5 1 ",
                  "status stbMain5 1 One moment please while output is consolidated...",
                  std::string("message ") + Options, "status stbMain5 1 One moment please...", "status stbMain5 1 ",
                  "shown frmSummary", "message Results Summary"));
  EXPECT_EQ(windows.LastText(), "Summary complete");
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_FALSE(menu.Loaded()) << "it comes back when the summary is closed";
  EXPECT_TRUE(desk.Close(summary));
  EXPECT_TRUE(menu.Visible());
}

TEST_F(ResultsTest, TheAbortWindowAsksWhatWouldBeAborted) {
  Ready("juveniles_only");
  std::string title;
  for (int turn = 1; turn <= 3000; ++turn)
    windows.AtTurn(turn, [&] {
      if (program.frmAbort.Visible()) title = program.frmAbort.title;
    });
  Summary("1", Answer::Yes);
  EXPECT_EQ(title, "Abort randomizations?");
}

TEST_F(ResultsTest, OutputOptionsAreOfferedInThreeParagraphs) {
  Ready("juveniles_only");
  Summary("1", Answer::Yes);
  const auto asked = std::ranges::find(windows.messages, Options, &Message::title);
  ASSERT_NE(asked, windows.messages.end());
  EXPECT_EQ(asked->style, style::YesNoCancelQuestion);
  EXPECT_EQ(asked->text,
            "Choose 'Yes' to view partitioning of random and correlated mortality predictions (no brood covariate "
            "output)\r\nChoose 'No' to simulate data, report brood covariates, and give survival summary "
            "statistics\r\n\r\nChoose 'Cancel' to invoke the plot routines without a results summary or data "
            "simulation");
}

TEST_F(ResultsTest, TheNumberOfRandomisationsIsAskedUntilItIsAtLeastOne) {
  Ready("juveniles_only");
  for (const char* refused : {"0", "-3", "0.5", "many"}) windows.Enter(refused, Randomisations);
  Summary("1.5 or so", Answer::Yes);
  EXPECT_EQ(windows.inputs.back().defaultText, "1");
  EXPECT_EQ(windows.inputs.back().prompt,
            "Choose at least one (1) randomization for the Pearson-deviates and Deviance GOF calculation:");
  EXPECT_THAT(Text(), HasSubstr("> n: 2; Mean:")) << "a half is rounded to even";
}

TEST_F(ResultsTest, AnEmptyAnswerIsOneRandomisation) {
  Ready("juveniles_only");
  Summary("", Answer::Yes);
  EXPECT_THAT(Text(), HasSubstr("> n: 1; Mean:"));
  EXPECT_THAT(Text(), HasSubstr("SD: Undefined"));
}

TEST_F(ResultsTest, ManyRandomisationsCanBeHadAndTooManyAreAskedForAgain) {
  Ready("juveniles_only");
  windows.Enter("3000000", Randomisations);
  windows.Enter("40000", Randomisations);
  windows.Reply(Answer::Yes, Options);
  AbortAtTurn(1000);
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(StatusTexts(), Contains("Pearson-deviates & Deviance: Performing randomization # 1 of 40000"));
}

TEST_F(ResultsTest, ImpossibleVisitIsToldWithItsBroodAndStepAndTheRestIsGiven) {
  Ready("juveniles_only");
  // A count so improbable that its probability is 0, behind the evaluation that the summary makes.
  windows.onStatus = [this](const test::ScriptedWindows::Status& shown) {
    if (shown.text.empty()) program.model.Evaluated().best.VisitDeviance[1] = 2000;
  };
  Summary("2", Answer::Yes);
  const std::string line = "    brood C00001 of 1995, visit 2: Pearson deviate (division by zero)";
  EXPECT_THAT(Text(),
              EndsWith("What follows could not be calculated and has been left out above:\r\n" + line + "\r\n"));
  EXPECT_THAT(Text(), HasSubstr("p[Deviance]"));
  EXPECT_THAT(Text(), Not(HasSubstr("p[Pearson-deviates]")));
  EXPECT_THAT(Text(), HasSubstr("The listing that follows"));
  EXPECT_THAT(windows.messages[windows.messages.size() - 2].text, EndsWith("\r\n" + line));
  EXPECT_EQ(windows.LastText(), "Summary complete");
}

TEST_F(ResultsTest, SimulatedCountsOfAnEarlierSummaryAreGone) {
  Ready("juveniles_only");
  Summary("1", Answer::No);
  EXPECT_THAT(program.model.simulation.SimCount, Contains(testing::Ge(0)));
  desk.Close(summary);
  Summary("1", Answer::Yes);
  EXPECT_THAT(program.model.simulation.SimCount, testing::Each(Missing)) << "the plots would show them";
}

TEST_F(ResultsTest, NoEvaluatedPredictionLeavesNoGoodnessOfFitBlock) {
  Ready("repair");
  OneFunction();
  Summary("5", Answer::Yes);
  EXPECT_THAT(Text(), Not(HasSubstr("c-hat")));
  EXPECT_THAT(Text(), HasSubstr("Undefined (too few degrees of freedom)"));
  EXPECT_EQ(host.random.StreamNumber(), 0u) << "no random number is drawn";
}

TEST_F(ResultsTest, WithoutAnAgeAtFledgingNoSurvivalIsEstimated) {
  Ready("juveniles_only");
  state.algorithm.Value(10) = 0;
  Summary("1", Answer::No);
  EXPECT_THAT(StatusTexts(), Not(Contains(HasSubstr("survival probabilities"))));
  EXPECT_THAT(program.model.Estimates().LiveDay, testing::Each(Missing));
}

TEST_F(ResultsTest, CancelLeavesHeadAndGoodnessOfFitWithoutListing) {
  Ready("juveniles_only");
  windows.Enter("3", Randomisations);
  windows.Reply(Answer::Cancel, Options);
  windows.No("Data and prediction plots");
  windows.No("Data and prediction plots");
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(Text(), StartsWith("Note: This model"));
  EXPECT_THAT(Text(), Not(HasSubstr("The listing that follows")));
  EXPECT_EQ(Lines(Text()).back(), "");
  EXPECT_THAT(Lines(Text())[Lines(Text()).size() - 2], StartsWith("A deviance-based estimate of c-hat is: "));
}

TEST_F(ResultsTest, AnAbortOfTheRandomisationsLeavesNoLineOfThemAndTheSummaryGoesOn) {
  Ready("juveniles_only");
  windows.Enter("50", Randomisations);
  windows.Reply(Answer::No, Options);
  AbortAtTurn(3000);
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(StatusTexts(), Not(Contains(HasSubstr("# 50 of 50"))));
  EXPECT_THAT(Text(), Not(HasSubstr("Pearson-deviates>")));
  EXPECT_THAT(Text(), HasSubstr("BI) distribution"));
  const auto lines = Lines(Text());
  EXPECT_EQ(std::ranges::count_if(lines, [](const std::string& line) { return line.starts_with("  C0"); }),
            program.model.data.TotalRecords)
      << "the listing is whole";
  EXPECT_EQ(windows.LastText(), "Summary complete");
}

TEST_F(ResultsTest, AnAbortOfTheSimulationEndsTheListingBehindItsHeadings) {
  Ready("juveniles_only");
  windows.Enter("1", Randomisations);
  windows.Reply(Answer::No, Options);
  // Abort is pressed when the simulation has begun, which is seen by its status text.
  for (int turn = 1; turn <= 3000; ++turn)
    windows.AtTurn(turn, [this] {
      if (program.frmMain.stbMain5.Get(1).starts_with("Simulating data")) desk.Press(program.frmAbort.cmdAbort);
    });
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(Text(), EndsWith("    #\r\n"));
  EXPECT_THAT(Text(), HasSubstr("p[Pearson-deviates]"));
  EXPECT_EQ(windows.LastText(), "Summary complete");
  desk.Close(summary);
  Summary("1", Answer::Yes);
  EXPECT_THAT(Text(), HasSubstr("p[Pearson-deviates]")) << "the next one is not aborted";
}

TEST_F(ResultsTest, TheAbortWindowGoesWithWhatItWouldAbort) {
  Ready("juveniles_only");
  Summary("1", Answer::No);
  EXPECT_FALSE(program.frmAbort.Loaded());
}

TEST_F(ResultsTest, AParameterWithANegativeStepIsFreeToo) {
  Ready("juveniles_only");
  for (double& step : state.algorithm.Step) step = 0;
  state.algorithm.Step(17) = -0.01;
  Summary("1", Answer::Yes);
  EXPECT_THAT(Text(), HasSubstr("The number of free parameters is:                   1\r\n"));
}

TEST_F(ResultsTest, WithAllValuesZeroThereIsNothingToReport) {
  Ready("juveniles_only");
  state.algorithm.Value.Fill(0);
  windows.ExpectFailure("all parameters are 0");
  desk.Press(menu.cmdUserSummary);
  EXPECT_TRUE(menu.Visible());
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(ResultsTest, SameSeedSameBytes) {
  Ready("hatch_day");
  Summary("4", Answer::No);
  const std::string first = Text();
  desk.Close(summary);
  host.random.SetSeed(12345);
  Summary("4", Answer::No);
  EXPECT_EQ(Text(), first);
  desk.Close(summary);
  Summary("4", Answer::No);
  EXPECT_NE(Text(), first) << "a second summary goes on counting the streams";
  EXPECT_EQ(host.random.StreamNumber(), 4u);
}

TEST_F(ResultsTest, TheSummaryReportsThePresentValuesNotALowerPointMetBefore) {
  Ready("juveniles_only");
  const double before = state.algorithm.Value(17);
  OneFunction();
  state.algorithm.Value(17) = 3 * before;
  Summary("1", Answer::Yes);
  EXPECT_THAT(Text(), HasSubstr(fmt::format("Parameter # 017 estimate: {:.7f}", 3 * before)));
  EXPECT_EQ(program.model.Evaluated().best.parameters.Alpha_BR, 3 * before);
}

// --- Simulation -------------------------------------------------------------------------------------------------

struct SimulationTest : ResultsTest {
  void Plan(const std::string& firstAge = "0") {
    ASSERT_TRUE(desk.Press(menu.cmdInitialize));
    ASSERT_TRUE(desk.Choose(program.frmInitialize.optSimulate));
    ASSERT_TRUE(desk.SetText(program.frmInitialize.cboNClutchesBroods, "3"));
    ASSERT_TRUE(desk.SetText(program.frmInitialize.cboInitBroodAge, firstAge));
    ASSERT_TRUE(desk.Press(program.frmInitialize.cmdDone));
    LoadAlg(Golden("juveniles_only.alg"));
  }
};

TEST_F(SimulationTest, SimulatesShowsAndSavesADataSet) {
  const Folder folder("simulation_test");
  Plan();
  windows.events.clear();
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(Text(), StartsWith("    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ\r\n       1,Y01B0001,"));
  EXPECT_EQ(summary.cmdSaveSummary.text, "Save simulated data as...");
  EXPECT_THAT(StatusTexts(), Contains("One moment please while simulated data are consolidated for output ..."));
  EXPECT_THAT(StatusTexts(), Contains("Simulating data, one moment please..."));
  EXPECT_EQ(program.frmMain.stbMain5.Get(1), "");
  EXPECT_EQ(host.random.StreamNumber(), 2u) << "the plan, then the data set";
  windows.File(folder / "mine", "Save simulated data in...");
  EXPECT_TRUE(desk.Press(summary.cmdSaveSummary));
  EXPECT_EQ(ReadWholeFile(folder / "mine.sim"), Text());
  desk.Close(summary);
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);

  const std::string first = Text();
  desk.Press(menu.cmdUserSummary);
  EXPECT_NE(Text(), first);
  EXPECT_EQ(host.random.StreamNumber(), 3u);
}

TEST_F(SimulationTest, NothingIsWrittenWhenTheUserPressedAbort) {
  Plan();
  AbortAtTurn(10);
  desk.Press(menu.cmdUserSummary);
  EXPECT_FALSE(summary.Loaded());
  EXPECT_THAT(StatusTexts(), Not(Contains(HasSubstr("consolidated")))) << "nor begun to be";
  EXPECT_TRUE(menu.Visible()) << "there is no window that would bring it back";
  EXPECT_TRUE(ApplicationMenuUsable());
  desk.Press(menu.cmdUserSummary);
  EXPECT_TRUE(summary.Visible()) << "the next one is not aborted";
}

TEST_F(SimulationTest, AnAbortOfTheWritingShowsNothing) {
  Plan();
  std::vector<std::string> titles;
  windows.AtTurn(3 * 31 + 20, [&] {
    titles.push_back(program.frmAbort.title);
    EXPECT_TRUE(desk.Press(program.frmAbort.cmdAbort));
  });
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(titles, ElementsAre("Abort writing output?"));
  EXPECT_FALSE(summary.Loaded());
  EXPECT_TRUE(menu.Visible());
}

TEST_F(SimulationTest, WithAllValuesZeroTheUserIsToldToLoadAlgorithmData) {
  Plan();
  desk.Press(menu.cmdUserSummary);
  desk.Close(summary);
  state.algorithm.Value.Fill(0);
  windows.statuses.clear();
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(windows.Titles(), Contains("Simulation Error"));
  EXPECT_EQ(windows.LastText(), "Check that algorithm data are loaded and parameters have appropriate values");
  EXPECT_EQ(Lines(Text()).size(), 1u) << "the heading stands alone";
  EXPECT_EQ(host.random.StreamNumber(), 3u) << "as any simulation";
  EXPECT_THAT(StatusTexts(), Contains("Simulating data, one moment please..."));
  EXPECT_THAT(StatusTexts(), Not(Contains(HasSubstr("one function call"))));
}

TEST_F(SimulationTest, AHatchDayThatNoBroodHasIsWarnedOf) {
  Plan();
  state.algorithm.Value(24) = 0.001;
  windows.messages.clear();
  desk.Press(menu.cmdUserSummary);
  ASSERT_THAT(windows.Titles(), ElementsAre("Warning: Simulations as a function of Hatch Day are invalid!"));
  EXPECT_EQ(windows.LastText(),
            "A lack of data means that Hatch Day cannot be calculated for at least some broods.\r\nReview your "
            "simulation choices during initialization to overcome this limitation.\r\n");
  EXPECT_EQ(windows.messages[0].style, style::Critical);
  EXPECT_TRUE(summary.Visible()) << "it is a warning";
}

TEST_F(SimulationTest, ABroodSizeAtHatchThatNoBroodHasIsWarnedOf) {
  Plan("5");
  state.algorithm.Value(13) = 0.3;  // both mortalities: nothing is repaired
  state.algorithm.Value(21) = 0.05;
  state.algorithm.Value(23) = 0.001;
  windows.messages.clear();
  desk.Press(menu.cmdUserSummary);
  ASSERT_THAT(windows.Titles(), ElementsAre("Warning: Simulations as a function of E[brood size@hatch] are invalid!"));
  EXPECT_EQ(windows.LastText(),
            "A lack of clutch visits means the E[brood size@hatch] cannot be calculated for at least some "
            "broods.\r\nReview your simulation choices during initialization to overcome this limitation.\r\n");
}

TEST_F(SimulationTest, PlanOfWhichNothingCanBePredictedSaysSo) {
  Plan("5");
  state.algorithm.Value(10) = 3;  // all ages lie behind fledging
  desk.Press(menu.cmdUserSummary);
  EXPECT_EQ(windows.Titles().back(), "Warning: Nothing could be simulated!");
  EXPECT_THAT(windows.LastText(),
              StartsWith("No count behind the first one of a brood could be predicted; the data hold "
                         "the first counts alone.\r\n"));
  EXPECT_EQ(Lines(Text()).size(), 4u) << "the heading and three first counts";
}

TEST_F(SimulationTest, APlanWithoutVisitsIsRefusedInWords) {
  desk.Press(menu.cmdInitialize);
  desk.Choose(program.frmInitialize.optSimulate);
  desk.SetText(program.frmInitialize.cboNClutchesBroods, "3");
  desk.SetText(program.frmInitialize.cboInitBroodAge, "31");  // the day behind the last one
  windows.ExpectFailure("a simulation cannot have 3 broods of 0 visits");
  desk.Press(program.frmInitialize.cmdDone);
  EXPECT_EQ(program.model.data.Visits(), 0);
}

TEST_F(SimulationTest, ARepairedHypothesisIsToldAndSimulatedAtOnce) {
  Plan("5");
  state.algorithm.Value(23) = 0.001;  // random mortality alone: what no brood has is fixed at 0
  windows.messages.clear();
  desk.Press(menu.cmdUserSummary);
  ASSERT_THAT(windows.Titles(), ElementsAre("Parameters altered to suit hypothesis or data"));
  EXPECT_EQ(state.algorithm.Value(23), 0);
  EXPECT_TRUE(summary.Visible());
}

}  // namespace
}  // namespace merlane
