// What is saved when the session ends and nobody can be asked.
#include <gmock/gmock.h>

#include "control/algorithm_file.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

struct UnaskedTest : ::testing::Test, Analysis {
  Folder folder{"unasked"};

  UnaskedTest() {
    host.clock.now = {2024, 6, 1, 10, 30, 0};
    std::filesystem::copy(Golden("juveniles_only.dat"), folder / "lake.dat");
    Initialize({.path = folder / "lake.dat"});
  }
  void SaveOwn() {
    windows.File(folder / "own.alg");
    desk.Press(menu.cmdSaveAlg);
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) names.push_back(entry.path().filename());
    return names;
  }
  double ValueIn(const std::string& file, int parameter) const {
    AlgorithmData kept;
    kept.NPAR = state.algorithm.NPAR;
    ReadAlgorithm(ReadWholeFile(folder / file), kept);
    return kept.Value(parameter);
  }
};

TEST_F(UnaskedTest, WithoutAlgorithmDataThereIsNothing) {
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), ElementsAre("lake.dat"));
}

TEST_F(UnaskedTest, WhatStandsInItsFileIsLeftAlone) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "own.alg"));
}

TEST_F(UnaskedTest, ChangedAlgorithmDataGoBesideTheirFileAndReplaceNone) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  const double before = state.algorithm.Value(17);
  for (const char* const name : {"own_06011030.alg", "own_06011030_2.alg"}) {
    state.algorithm.Value(17) += 0.01;
    windows.messages.clear();
    EXPECT_THAT(program.SaveUnasked(), IsEmpty());
    EXPECT_THAT(windows.messages, IsEmpty());
    EXPECT_NEAR(ValueIn(name, 17), state.algorithm.Value(17), 1e-9);
  }
  EXPECT_NEAR(ValueIn("own.alg", 17), before, 1e-9);
}

TEST_F(UnaskedTest, AlgorithmDataThatWereNeverSavedGoBesideTheData) {
  LoadDefaults();
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "06011030_06011030.alg"));
}

TEST_F(UnaskedTest, PriorsGoBesideTheData) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  program.priors.Reset(state.algorithm.NPAR);
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.05;
  program.priors.PriorFirstSD(17) = 0.01;
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "own.alg", "priors_06011030.pri"));
}

TEST_F(UnaskedTest, ARankingGoesBesideTheDataUnlessAFileHoldsIt) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  ASSERT_TRUE(desk.Press(program.frmMenu.cmdRank));
  windows.Enter("0.5", "Enter constant");
  ASSERT_TRUE(desk.Press(program.frmRank.cmdAICc));
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "own.alg"));

  ASSERT_TRUE(desk.Press(program.frmRank.cmdRank));
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(ReadWholeFile(folder / "ranking_06011030.mms"), HasSubstr("  own.alg  "));

  windows.File(folder / "kept.mms");
  ASSERT_TRUE(desk.Press(program.frmRank.cmdSaveRank));
  EXPECT_THAT(program.SaveUnasked(), IsEmpty());
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "own.alg", "kept.mms", "ranking_06011030.mms"));
}

TEST_F(UnaskedTest, InABootstrapTheUsersValuesAreSavedAndNoReplicates) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  state.algorithm.Value(17) = 0.0625;
  AtEachFit([this](int attempt) {
    if (attempt == 2) {
      EXPECT_THAT(program.SaveUnasked(), IsEmpty());
    }
  });
  program.parametricBootstrap.Run({2, 40, BootstrapResults::Minimiser::Simplex});
  EXPECT_EQ(ValueIn("own_06011030.alg", 17), 0.0625);
}

TEST_F(UnaskedTest, SoTheyAreWhileTheQuestionsOfSomebodyWhoLeavesABootstrapAreOpen) {
  LoadAlg(Golden("juveniles_only.alg"));
  SaveOwn();
  state.algorithm.Value(17) = 0.0625;
  AtEachFit([this](int attempt) {
    if (attempt != 2) return;
    const double replicates = state.algorithm.Value(17);
    {
      const auto leaving = program.parametricBootstrap.UsersRun();
      EXPECT_THAT(program.SaveUnasked(), IsEmpty());
      EXPECT_EQ(state.algorithm.Value(17), 0.0625);
    }
    EXPECT_EQ(state.algorithm.Value(17), replicates);
  });
  program.parametricBootstrap.Run({2, 40, BootstrapResults::Minimiser::Simplex});
  EXPECT_EQ(ValueIn("own_06011030.alg", 17), 0.0625);
}

TEST_F(UnaskedTest, WhatCannotBeSavedIsReturnedAndTheRestIsSaved) {
  LoadAlg(Golden("juveniles_only.alg"));
  state.algorithm.AlgName = folder / "missing/own.alg";
  program.priors.Reset(state.algorithm.NPAR);
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.05;
  program.priors.PriorFirstSD(17) = 0.01;
  EXPECT_THAT(program.SaveUnasked(), ElementsAre(HasSubstr("missing/own_06011030.alg")));
  EXPECT_THAT(Files(), UnorderedElementsAre("lake.dat", "priors_06011030.pri"));
}

}  // namespace
}  // namespace merlane
