#include "priors/priors_commands.h"

#include "priors/forms_fixture.h"

namespace merlane::test {
namespace {

using PriorsCommandsTest = PriorsForms;

TEST_F(PriorsCommandsTest, SavingGivesAFileWithoutANameTheClocks) {
  Begin(1);
  windows.CancelFile("Save Bayesian priors file in...");
  commands.SavePriors();
  EXPECT_EQ(windows.files.back().startName, "06011030.pri");
  windows.File(folder + "saved.pri");
  commands.SavePriors();
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: saved");
  EXPECT_EQ(windows.writes.back(), folder + "saved.pri");
}

}  // namespace
}  // namespace merlane::test
