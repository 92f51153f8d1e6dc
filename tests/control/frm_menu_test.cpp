#include "control/frm_menu.h"

#include <gmock/gmock.h>

#include "control/frm_main.h"
#include "control/version.h"
#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

struct MenuTest : ::testing::Test {
  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
  FrmMenu menu{desk, state};

  std::vector<std::string> Enabled() const {
    std::vector<std::string> names;
    for (const Control* control : menu.Controls())
      if (dynamic_cast<const Button*>(control) != nullptr && control->enabled) names.push_back(control->name);
    return names;
  }
};

TEST_F(MenuTest, BareRunOffersInitializeAndQuit) {
  desk.Show(menu);
  EXPECT_THAT(Enabled(), ElementsAre("cmdInitialize", "cmdQuit"));
  EXPECT_EQ(menu.lblVersion.text, "Version: " + std::string(Version()));
  EXPECT_EQ(menu.lblModelname.text, "Merlane Survivorship Model");
}

TEST_F(MenuTest, LoadWithoutAlgorithmDataEnablesLoadAlone) {
  state.flags.ModelInitialised = true;
  desk.Show(menu);
  EXPECT_THAT(Enabled(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdQuit"));
}

TEST_F(MenuTest, LoadWithAlgorithmDataEnablesAllEvenInASimulation) {
  state.flags.ModelInitialised = true;
  state.flags.SimulationMode = true;
  state.algorithm.AlgName = "a.alg";
  desk.Show(menu);
  EXPECT_EQ(Enabled().size(), 13U);
}

TEST_F(MenuTest, SimulationPatternLeavesEditSaveAndSimulate) {
  state.flags.ModelInitialised = true;
  state.flags.SimulationMode = true;
  state.algorithm.AlgName = "a.alg";
  desk.Show(menu);
  menu.ApplyPattern(menu.cmdEditAlg);
  EXPECT_THAT(Enabled(),
              ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdEditAlg", "cmdSaveAlg", "cmdUserSummary", "cmdQuit"));
  EXPECT_EQ(menu.cmdUserSummary.text, "S&imulate a data set");
  EXPECT_EQ(menu.cmdUserSummary.toolTip,
            "Simulates brood survivorship data using your initialization input and parameter values from the "
            "algorithm data");
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
}

TEST_F(MenuTest, WithoutAlgorithmDataThePatternEnablesNothing) {
  state.flags.ModelInitialised = true;
  desk.Show(menu);
  menu.ApplyPattern(menu.cmdUserSummary);
  EXPECT_THAT(Enabled(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdQuit"));
  EXPECT_EQ(menu.focus, &menu.cmdLoadAlg);
}

TEST_F(MenuTest, BehindAnInitialisationAlgorithmDataCanBeLoadedAndModelsRanked) {
  state.algorithm.AlgName = "a.alg";
  desk.Show(menu);
  menu.ApplyPattern();  // of the analysis before
  state.algorithm.AlgName.clear();
  state.flags.SimulationMode = true;
  menu.ApplyPatternOfNewData();
  EXPECT_THAT(Enabled(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
  EXPECT_EQ(menu.cmdUserSummary.text, "S&imulate a data set");
  EXPECT_EQ(menu.focus, &menu.cmdLoadAlg);
}

TEST_F(MenuTest, AnalysisPatternEnablesTheTenAndNamesTheSummary) {
  state.algorithm.AlgName = "a.alg";
  desk.Show(menu);
  menu.ApplyPattern(menu.cmdEditAlg);
  EXPECT_FALSE(menu.cmdLoadAlg.enabled);
  EXPECT_EQ(Enabled().size(), 12U);
  EXPECT_EQ(menu.cmdUserSummary.text, "Single model res&ults summary");
  EXPECT_EQ(menu.focus, &menu.cmdEditAlg);
}

TEST_F(MenuTest, ReloadReturnsToTheDesignState) {
  state.algorithm.AlgName = "a.alg";
  desk.Show(menu);
  menu.ApplyPattern();
  desk.Unload(menu);
  desk.Show(menu);
  EXPECT_THAT(Enabled(), ElementsAre("cmdInitialize", "cmdQuit"));
}

TEST_F(MenuTest, CalledForWhileAWindowIsInChargeItTakesNoInput) {
  Form describing{desk, "frmInitialize", ""};
  desk.Show(describing);
  desk.charge.Take(describing, Charge::Resting::Commands);
  desk.Show(menu);
  EXPECT_FALSE(desk.Usable(menu.cmdInitialize));
  desk.Unload(menu);
  desk.Show(menu);
  EXPECT_FALSE(desk.Usable(menu.cmdInitialize));
  desk.Unload(describing);
  EXPECT_TRUE(desk.Usable(menu.cmdInitialize));
}

TEST_F(MenuTest, FrameKeepsItWhileTheApplicationMenuCannotBringItBack) {
  desk.Show(main);
  desk.Show(menu);
  {
    const auto command = desk.charge.LongCommand();
    EXPECT_FALSE(main.mnuApplication.enabled);
    desk.Close(menu);
    EXPECT_TRUE(menu.Visible());
  }
  EXPECT_TRUE(main.mnuApplication.enabled);
  desk.Close(menu);
  EXPECT_FALSE(menu.Loaded());
}

TEST_F(MenuTest, WindowEntriesAskTheDesktopForTheLayout) {
  desk.Show(main);
  std::vector<Arrangement> asked;
  desk.Press(main.windowMenu.mnuCascade);  // without a desktop nothing happens
  main.onArrange = [&](Arrangement arrangement) { asked.push_back(arrangement); };
  for (MenuEntry* entry : {&main.windowMenu.mnuCascade, &main.windowMenu.mnuTileHorizontal,
                           &main.windowMenu.mnuTileVertical, &main.windowMenu.mnuArrangeIcons})
    EXPECT_TRUE(desk.Press(*entry));
  EXPECT_THAT(asked, ElementsAre(Arrangement::Cascade, Arrangement::TileHorizontal, Arrangement::TileVertical,
                                 Arrangement::Icons));
}

TEST_F(MenuTest, EntriesOfADisabledMenuCannotBePressed) {
  desk.Show(main);
  main.mnuApplication.enabled = false;
  EXPECT_FALSE(desk.Press(main.mnuMenu));
}

}  // namespace
}  // namespace merlane
