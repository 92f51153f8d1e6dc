// The way from the menu into the ranking of models and back.
#include <gmock/gmock.h>

#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct RankingTest : ::testing::Test, Analysis {
  FrmRank& form = program.frmRank;
};

TEST_F(RankingTest, RankingTakesThePlaceOfTheMenuUntilItCloses) {
  Ready("juveniles_only");
  windows.events.clear();
  desk.Press(menu.cmdRank);
  EXPECT_THAT(windows.events, ElementsAre("unloaded frmMenu", "shown frmRank"));
  EXPECT_FALSE(ApplicationMenuUsable());
  desk.Press(form.cmdFinish);
  EXPECT_EQ(Usable().size(), 13U);
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(RankingTest, RankingCanBeOpenedBeforeAnyAlgorithmDataAreLoaded) {
  Initialize({.path = Golden("juveniles_only.dat")});
  desk.Press(menu.cmdRank);
  windows.File(Golden("juveniles_only.alg"), "Open algorithm data file");
  desk.Press(form.cmdLoadAlg);
  windows.Enter("0.5", "Enter constant");
  desk.Press(form.cmdAICc);
  EXPECT_EQ(form.grdRank.At(1, 6).text, "juveniles_only.alg");
  EXPECT_EQ(form.grdRank.At(1, 7).text, "juveniles_only.cov");
  EXPECT_EQ(form.grdRank.At(1, 2).text, "2");
  EXPECT_EQ(form.Models().entered[0].RankNegLnL, 696.6901981048221 / 2);
  desk.Press(form.cmdFinish);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(RankingTest, CommandThatFailsKeepsTheRankingOpenAndClearsTheProgressText) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  state.algorithm.Value(5) = 1e200;
  windows.ExpectFailure("frmRank.cmdAICc");
  desk.Press(form.cmdAICc);
  EXPECT_TRUE(desk.Usable(form.cmdAICc));
  EXPECT_THAT(Usable(), IsEmpty());
  EXPECT_EQ(program.frmMain.stbMain5.Get(1), "");
  desk.Press(form.cmdFinish);
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(RankingTest, ChooserOfPriorsBringsTheRankingBackAndNotTheMenu) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  desk.Press(form.cmdBayesian);
  EXPECT_FALSE(form.Visible());
  desk.Press(program.frmLoadPriors.cmdUniform);
  EXPECT_TRUE(form.Visible());
  EXPECT_FALSE(menu.Visible());
}

TEST_F(RankingTest, PriorsFileThatFailsBringsTheRankingBackAndNotTheMenu) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  desk.Press(program.frmRank.cmdBayesian);
  windows.File(Golden("missing.pri"));
  windows.ExpectFailure("missing.pri");
  desk.Press(program.frmLoadPriors.cmdOpen);
  EXPECT_TRUE(desk.Usable(program.frmRank.cmdBayesian));
  EXPECT_FALSE(menu.Visible());
}

TEST_F(RankingTest, EditorLocksTheRankingAndGivesItBack) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  desk.Press(form.cmdEditAlg);
  EXPECT_FALSE(desk.Usable(form.cmdRank));
  desk.DoubleClick(program.frmAlgo.grdVS, 18, 1);
  desk.Enter(program.frmAlgo.grdVS, 18, 1, "1");
  desk.Press(program.frmAlgo.cmdFinish);
  EXPECT_TRUE(desk.Usable(form.cmdRank));
  EXPECT_FALSE(menu.Visible());
  EXPECT_EQ(state.algorithm.Value(18), 1);
}

}  // namespace
}  // namespace merlane
