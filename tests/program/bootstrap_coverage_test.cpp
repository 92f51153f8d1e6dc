// What the intervals of a bootstrap are worth: over many data sets simulated from a known truth they must hold it as
// often as they claim.
#include <fmt/format.h>

#include <filesystem>

#include "control/algorithm_file.h"
#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;

constexpr double TrueMortality = 0.03;  // of juveniles per day, the same at all ages
constexpr int DataSets = 100;
/// The least and the largest of 39 replicates leave one part in 40 on either side: an interval of 95 %.
constexpr int Replicates = 39;

/// Thirty broods of eight juveniles, visited every six days; the counts behind the first are of no account.
std::string Design() {
  std::string text = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ\n";
  for (int brood = 1; brood <= 30; ++brood)
    for (int age = 0; age <= 30; age += 6)
      text += fmt::format("    1995,  C{:05},{:8},     150,{:8},       8\n", brood, 150 + age, age);
  return text;
}

std::string Truth() {
  AlgorithmData a;
  a.NPAR = 34;
  SetDefaultAlgorithm(a);
  a.ParName.Dimension(a.NPAR);
  a.Value(1) = a.Value(2) = a.Value(3) = a.Value(4) = 1;
  a.Value(9) = -28;
  a.Value(10) = 40;
  a.Value(17) = TrueMortality;
  a.Step(17) = TrueMortality / 10;
  a.Tolerance = 0.0001;
  return AlgorithmText(a, AlgorithmForm::Menu);
}

/// A data set with the truth as the starting point.
struct Study : Analysis {
  Study(const Folder& folder, const std::string& data) {
    Initialize({.path = folder / data});
    LoadAlg(folder / "truth.alg");
    OneFunction();
  }
  BootstrapResults Bootstrap(const std::string& where, std::uint64_t seed, int replicates) {
    std::filesystem::create_directory(where);
    desk.host.bootstrapFolder = where;
    host.random.SetSeed(seed);
    return program.parametricBootstrap.Run({static_cast<std::int16_t>(replicates), 40});
  }
};

TEST(BootstrapCoverage, IntervalsOf95PercentHoldTheTruthAsOftenAsTheBinomialAllows) {
  const Folder folder("coverage");
  WriteWholeFile(folder / "design.dat", Design());
  WriteWholeFile(folder / "truth.alg", Truth());
  Study truth(folder, "design.dat");
  truth.Bootstrap(folder / "sets", 1, DataSets);

  int covered = 0;
  std::uint64_t seed = 1;
  for (const auto& set : std::filesystem::directory_iterator(folder / "sets")) {
    Study study(folder, "sets/" + set.path().filename().string());
    study.windows.Yes("Just checking");
    study.desk.Press(study.menu.cmdSimplex);
    study.windows.File(folder / "fitted.alg");
    study.desk.Press(study.menu.cmdSaveAlg);
    const BootstrapResults results = study.Bootstrap(folder / "replicates", ++seed, Replicates);
    ASSERT_EQ(results.BootCount(), Replicates);
    const Spread& estimate = results.estimates(1);
    if (estimate.Minimum() <= TrueMortality && TrueMortality <= estimate.Maximum()) ++covered;
    std::filesystem::remove_all(folder / "replicates");
  }
  // Of 100 draws with a chance of 0.95 each, fewer than 88 or all 100 come in one case of a hundred.
  EXPECT_GE(covered, 88);
  EXPECT_LT(covered, DataSets);
  RecordProperty("covered", covered);
}

}  // namespace
}  // namespace merlane
