// The states of a run and what can be pressed in each.
#include <gmock/gmock.h>

#include "control/version.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct StatesTest : ::testing::Test, Analysis {};

TEST_F(StatesTest, StartShowsTheMainWindowAndTheMenu) {
  EXPECT_THAT(windows.events, ElementsAre("shown frmMain", "shown frmMenu"));
  EXPECT_EQ(program.frmMain.title, "Tolvane");
  EXPECT_FALSE(state.flags.ModelInitialised || state.flags.BayesOn || program.covariances.basis);
  EXPECT_EQ(state.algorithm.AlgName, "");
  EXPECT_EQ(state.algorithm.Tolerance, 0);
}

TEST_F(StatesTest, Bare) { EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdQuit")); }

TEST_F(StatesTest, Initialising) {
  desk.Press(menu.cmdInitialize);
  EXPECT_THAT(windows.messages, IsEmpty()) << "without algorithm data nothing is asked";
  EXPECT_FALSE(menu.Loaded());
  EXPECT_THAT(Usable(), IsEmpty());
  EXPECT_TRUE(program.frmInitialize.Visible());
  EXPECT_EQ(program.frmMain.title, "Merlane Survival Estimation Model: Version" + std::string(Version()));
  EXPECT_FALSE(state.flags.ReadSimulatedFile || state.flags.BootstrapMode);
}

TEST_F(StatesTest, InitializeWithoutAlgorithmDataAsksNothing) {
  Initialize({.path = Golden("juveniles_only.dat")});
  windows.messages.clear();
  desk.Press(menu.cmdInitialize);
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_TRUE(program.frmInitialize.Visible());
}

TEST_F(StatesTest, MenuCalledForWhileInitialisingTakesNoInputUntilThatIsOver) {
  Initialize({.path = Golden("juveniles_only.dat")});
  for (Button* const ending : {&program.frmInitialize.cmdCancel, &program.frmInitialize.cmdDone}) {
    desk.Press(menu.cmdInitialize);
    desk.Press(program.frmMain.mnuMenu);
    EXPECT_TRUE(menu.Visible());
    EXPECT_THAT(Usable(), IsEmpty());
    desk.Choose(program.frmInitialize.optSimulate);
    desk.Press(*ending);
    EXPECT_FALSE(program.frmInitialize.Loaded());
    EXPECT_TRUE(desk.Usable(menu.cmdLoadAlg));
  }
}

TEST_F(StatesTest, InitialisingCancelledReturnsToTheMenu) {
  desk.Press(menu.cmdInitialize);
  desk.Press(program.frmInitialize.cmdCancel);
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdQuit"));
  EXPECT_FALSE(program.frmInitialize.Loaded());
}

TEST_F(StatesTest, DataReadWithoutAlgorithmData) {
  Initialize({.path = Golden("juveniles_only.dat")});
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
  EXPECT_EQ(menu.focus, &menu.cmdLoadAlg);
  EXPECT_EQ(program.frmMain.stbMain0.Get(1), "Brood data file name: " + Golden("juveniles_only.dat"));
  EXPECT_EQ(program.frmMain.stbMain1.Get(2), "Bayesian priors file: ");
  EXPECT_FALSE(program.frmInitialize.Loaded());
  EXPECT_TRUE(state.flags.ModelInitialised);
  EXPECT_EQ(state.algorithm.NPAR, 34);
  EXPECT_EQ(state.algorithm.Fuse, (Array1<std::string>(34, "~~")));
  EXPECT_EQ(state.algorithm.Value, Array1<double>(34));
  EXPECT_EQ(program.priors.PriorCode, (Array1<std::string>(34, "U")));
}

TEST_F(StatesTest, EndOfInitialisationVoidsWhatBelongedToTheRunBefore) {
  state.flags.PriorFileName = "old.pri";
  state.flags.BayesOn = true;
  program.covariances.basis = program.simplex.left = program.objective.Present();
  Initialize({.path = Golden("juveniles_only.dat")});
  EXPECT_EQ(state.flags.PriorFileName, "");
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_FALSE(program.covariances.AreOf(program.objective.Present()));
  EXPECT_FALSE(program.simplex.ResumesAt(program.objective.Present()));
}

TEST_F(StatesTest, ReadyToAnalyse) {
  Ready("juveniles_only");
  EXPECT_EQ(Usable().size(), 13U);
  EXPECT_EQ(menu.focus, &menu.cmdEditAlg);
  EXPECT_EQ(program.frmMain.stbMain1.Get(1), "Algorithm file: juveniles_only");
}

TEST_F(StatesTest, ReadyToSimulate) {
  InitializeSimulation();
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
  EXPECT_EQ(menu.cmdUserSummary.text, "S&imulate a data set");
  EXPECT_EQ(program.frmMain.stbMain0.Get(1), "Brood data file name: << no data file, simulating data >>");
  LoadDefaults();
  EXPECT_THAT(Usable(),
              ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdEditAlg", "cmdSaveAlg", "cmdUserSummary", "cmdQuit"));
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
}

TEST_F(StatesTest, ReloadOfTheMenuInASimulationEnablesAllUntilTheNextPattern) {
  InitializeSimulation();
  LoadDefaults();
  desk.Unload(menu);
  desk.Press(program.frmMain.mnuMenu);
  EXPECT_EQ(Usable().size(), 13U);
  windows.CancelFile("Save algorithm data in...");
  desk.Press(menu.cmdSaveAlg);
  EXPECT_EQ(Usable().size(), 6U);
}

TEST_F(StatesTest, AnalysesThatAReloadedMenuOffersInASimulationRefuseInWordsBeforeAnyQuestion) {
  InitializeSimulation();
  LoadDefaults();
  desk.Unload(menu);
  desk.Press(program.frmMain.mnuMenu);
  const Button* const analyses[] = {&menu.cmdOneFunction, &menu.cmdSimplex, &menu.cmdMarquardt, &menu.cmdCovariance,
                                    &menu.cmdParEstimate};
  for (const Button* button : analyses) {
    windows.messages.clear();
    windows.ExpectFailure("frmMenu." + button->name + ": data are simulated here, so there are none to fit");
    EXPECT_TRUE(desk.Press(const_cast<Button&>(*button)));
    EXPECT_TRUE(menu.Visible());
    EXPECT_EQ(windows.messages.size(), 0U) << button->name;
  }
  EXPECT_EQ(Usable().size(), 13U);
  EXPECT_FALSE(program.fit.basis);
  desk.Press(menu.cmdRank);
  windows.ExpectFailure("frmRank.cmdAICc: data are simulated here");
  desk.Press(program.frmRank.cmdAICc);
  EXPECT_EQ(program.frmRank.Models().ModelCount(), 0);
}

TEST_F(StatesTest, BusyOffersNothingOfTheMenuNorTheApplicationMenu) {
  Ready("juveniles_only");
  bool looked = false;
  windows.AtTurn(1, [&] {
    looked = true;
    EXPECT_THAT(Usable(), IsEmpty());
    EXPECT_FALSE(menu.Loaded());
    EXPECT_FALSE(desk.Press(program.frmMain.mnuMenu));
    EXPECT_FALSE(desk.Press(program.frmMain.mnuExit));
    EXPECT_FALSE(desk.Press(program.frmMain.mnuWisdom));
    EXPECT_FALSE(desk.Press(program.frmMain.mnuInterruptML)) << "this is no profile";
    EXPECT_FALSE(desk.Press(program.frmMain.mnuInterruptBayes)) << "nor a posterior";
  });
  desk.Press(menu.cmdOneFunction);
  EXPECT_TRUE(looked);
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(StatesTest, EditorDisablesTheMenuUntilItCloses) {
  Ready("juveniles_only");
  desk.Press(menu.cmdEditAlg);
  EXPECT_TRUE(program.frmAlgo.Visible());
  EXPECT_NE(program.frmAlgo.focus, nullptr);
  EXPECT_THAT(Usable(), IsEmpty());
  EXPECT_FALSE(desk.Close(menu));
  EXPECT_EQ(menu.focus, &menu.cmdOneFunction);
  desk.Press(program.frmAlgo.cmdFinish);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(StatesTest, InitializeAgainAndCancelLeavesAllAsItWas) {
  Ready("juveniles_only");
  const auto before = Usable();
  windows.Reply(Answer::Cancel, "Initialize");
  desk.Press(menu.cmdInitialize);
  EXPECT_EQ(windows.LastText(),
            "  Do you need to save current algorithm data?\r\n\r\n"
            "Algorithm data will be lost during this initialization.");
  EXPECT_EQ(windows.messages.back().style, 51);
  EXPECT_EQ(Usable(), before);
  EXPECT_EQ(state.algorithm.AlgName, Golden("juveniles_only.alg"));
  EXPECT_FALSE(program.frmInitialize.Loaded());
}

TEST_F(StatesTest, InitializeAgainAndNoClearsTheNameEvenIfTheFormIsCancelled) {
  Ready("juveniles_only");
  windows.No("Initialize");
  desk.Press(menu.cmdInitialize);
  desk.Press(program.frmInitialize.cmdCancel);
  EXPECT_EQ(state.algorithm.AlgName, "");
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdQuit"));
}

TEST_F(StatesTest, InitializeAgainAndYesSavesFirst) {
  const test::Folder folder("initialize");
  Ready("juveniles_only");
  windows.Yes("Initialize");
  windows.File(folder / "kept.alg", "Save algorithm data in...");
  desk.Press(menu.cmdInitialize);
  EXPECT_THAT(windows.writes, ElementsAre(folder / "kept.alg"));
  EXPECT_EQ(state.algorithm.AlgName, "");
  EXPECT_TRUE(program.frmInitialize.Visible());
}

TEST_F(StatesTest, InitializeAgainYesAndCancelInTheSaveDialogueLeavesAllAsItWas) {
  Ready("juveniles_only");
  windows.Yes("Initialize");
  windows.CancelFile("Save algorithm data in...");
  desk.Press(menu.cmdInitialize);
  EXPECT_EQ(state.algorithm.AlgName, Golden("juveniles_only.alg"));
  EXPECT_FALSE(program.frmInitialize.Loaded());
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(StatesTest, FailedReadIsToldAndTheMenuOpensAsIfItHadSucceeded) {
  Initialize({.path = Golden("no_such_file.dat")});
  EXPECT_EQ(windows.messages.back().title, "Problem finding data file or reading data");
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
  EXPECT_EQ(program.model.data.Visits(), 0);
  EXPECT_EQ(state.algorithm.NPAR, 34);
}

TEST_F(StatesTest, InformationWindowsHideTheMainWindowUntilTheyClose) {
  const std::vector<std::pair<MenuEntry*, Form*>> windowsOf = {{&program.frmMain.mnuDefaultNames, &program.frmDefaults},
                                                               {&program.frmMain.mnuWisdom, &program.frmWisdom},
                                                               {&program.frmMain.mnuCredits, &program.frmCredits}};
  for (const auto& [entry, form] : windowsOf) {
    EXPECT_TRUE(desk.Press(*entry));
    EXPECT_TRUE(form->Visible());
    EXPECT_FALSE(program.frmMain.Visible());
    EXPECT_TRUE(desk.Close(*form));
    EXPECT_TRUE(program.frmMain.Visible());
  }
}

TEST_F(StatesTest, EvaluationIsBusyUntilItsChoiceIsCancelled) {
  Ready("juveniles_only");
  const auto before = Usable();
  EXPECT_TRUE(desk.Press(menu.cmdParEstimate));
  EXPECT_TRUE(program.frmParEvals.Visible());
  EXPECT_FALSE(menu.Loaded());
  EXPECT_FALSE(ApplicationMenuUsable());
  EXPECT_TRUE(desk.Press(program.frmParEvals.cmdCancel));
  EXPECT_EQ(Usable(), before);
  EXPECT_TRUE(ApplicationMenuUsable());
}

}  // namespace
}  // namespace merlane
