// The batch runner as a person meets it: the program itself, its exact output, error text and exit status.

#include <sys/stat.h>
#include <sys/wait.h>

#include "batch/golden_batch.h"
#include "batch/replay.h"
#include "batch/stopped.h"

namespace merlane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class MerlaneBatch : public testing::Test {
 protected:
  void SetUp() override {
    folder = testing::TempDir() + "merlane_batch_XXXXXX";
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  /// Runs a command of the shell in `folder`.
  int Shell(const std::string& command) const {
    const int result = std::system(("cd '" + folder + "' && " + command).c_str());
    return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
  }
  /// Runs the program in `folder`; leaves what it wrote.
  int Run(const std::string& arguments) {
    const int status =
        Shell("'" MERLANE_BUILD_DIR "/merlane-batch' " + arguments + " >stdout.txt 2>stderr.txt </dev/null");
    out = ReadFile(folder + "/stdout.txt");
    err = ReadFile(folder + "/stderr.txt");
    return status;
  }
  int RunText(const std::string& text, const std::string& options = "") {
    WriteFile(folder + "/a.batch", text);
    return Run(options + " a.batch");
  }
  /// The lines that read a golden data file.
  static std::string Read(const std::string& data) {
    return "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " + InQuotes(golden + data) +
           "\npress frmInitialize.cmdDone\n";
  }

  std::string folder, out, err;
};

TEST_F(MerlaneBatch, AnEmptyFileShowsTheProgramAndEnds) {
  EXPECT_EQ(RunText("# nothing\n"), 0);
  EXPECT_EQ(out,
            "      window frmMain shown\n"
            "      window frmMenu shown\n"
            "end: end of file\n");
  EXPECT_EQ(err, "");
}

TEST_F(MerlaneBatch, ATranscriptThatCannotBeWrittenIsTold) {
  WriteFile(folder + "/a.batch", "# nothing\n");
  std::ostream broken(nullptr);
  std::ostringstream errors;
  EXPECT_EQ(RunBatch({folder + "/a.batch", folder, false}, broken, errors), status::CommandFailed);
  EXPECT_EQ(errors.str(), "merlane-batch: the transcript could not be written\n");
}

TEST_F(MerlaneBatch, TheTranscriptForPeopleHasOneLineForEachThing) {
  EXPECT_EQ(RunText("press frmMenu.cmdQuit   # leave\nreply yes at \"Exit Tolvane\"\nreply no\n"), 0);
  EXPECT_EQ(out,
            "      window frmMain shown\n"
            "      window frmMenu shown\n"
            "   1  press frmMenu.cmdQuit\n"
            "      message \"Exit Tolvane\": \"Do you want to quit Tolvane?\" -> Yes\n"
            "      message \"What about algorithm data?\": \"Save algorithm data?\" -> No\n"
            "      status stbMain1 2: \"Bayesian priors file: \"\n"
            "end: quit\n");
}

TEST_F(MerlaneBatch, TheTranscriptForProgramsHasOneObjectForEachThing) {
  EXPECT_EQ(RunText("press cmdQuit\r\nreply yes\r\nreply no\r\n", "--json"), 0);
  EXPECT_EQ(out,
            "{\"window\":\"frmMain\",\"event\":\"shown\"}\n"
            "{\"window\":\"frmMenu\",\"event\":\"shown\"}\n"
            "{\"action\":\"press cmdQuit\",\"line\":1}\n"
            "{\"message\":{\"title\":\"Exit Tolvane\",\"text\":\"Do you want to quit Tolvane?\",\"style\":292,"
            "\"answer\":6}}\n"
            "{\"message\":{\"title\":\"What about algorithm data?\",\"text\":\"Save algorithm data?\",\"style\":36,"
            "\"answer\":7}}\n"
            "{\"status\":{\"bar\":\"stbMain1\",\"panel\":2,\"text\":\"Bayesian priors file: \"}}\n"
            "{\"end\":\"quit\"}\n");
}

TEST_F(MerlaneBatch, ShowWritesAFormForProgramsAndForPeople) {
  EXPECT_EQ(RunText("show frmMenu\n", "--json"), 0);
  EXPECT_THAT(out, HasSubstr("{\"form\":{\"name\":\"frmMenu\",\"title\":"));
  EXPECT_THAT(out, HasSubstr("\"cmdQuit\":{\"caption\":\"&Quit\",\"enabled\":true,\"visible\":true}"));
  EXPECT_THAT(out, HasSubstr("\"cmdSimplex\":{\"caption\":\"Simple&x\",\"enabled\":false,\"visible\":true}"));
  EXPECT_EQ(RunText("show frmMenu\n"), 0);
  EXPECT_THAT(out, HasSubstr("\n        cmdSimplex \"Simple&x\" disabled\n"));
}

TEST_F(MerlaneBatch, AQuestionWithoutAnAnswerStopsTheRunWithThree) {
  EXPECT_EQ(RunText("\npress frmMenu.cmdQuit\n"), 3);
  EXPECT_EQ(err,
            "merlane-batch: a.batch: line 2: press frmMenu.cmdQuit: a question has no answer: \"Exit Tolvane\": \"Do "
            "you want to quit Tolvane?\"\n");
  EXPECT_THAT(out, EndsWith("   2  press frmMenu.cmdQuit\nend: stopped\n"));
}

TEST_F(MerlaneBatch, AnActionInThePlaceOfAnAnswerStopsTheRunWithThree) {
  EXPECT_EQ(RunText("press frmMenu.cmdQuit\nshow frmMenu\n", "--json"), 3);
  EXPECT_THAT(out, EndsWith("{\"end\":\"stopped\"}\n"));
}

TEST_F(MerlaneBatch, AnAnswerWithoutAQuestionStopsTheRunWithOne) {
  EXPECT_EQ(RunText("reply yes\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 1: reply yes: an answer without a question\n");
}

TEST_F(MerlaneBatch, AnAnswerToAnotherTitleStopsTheRunWithOne) {
  EXPECT_EQ(RunText("press frmMenu.cmdQuit\nreply yes at \"Quit\"\n"), 1);
  EXPECT_EQ(
      err,
      "merlane-batch: a.batch: line 2: reply yes at \"Quit\": does not answer the question \"Exit Tolvane\": \"Do "
      "you want to quit Tolvane?\"\n");
}

TEST_F(MerlaneBatch, AControlThatIsDisabledStopsTheRunWithOne) {
  EXPECT_EQ(RunText("press frmMenu.cmdSimplex\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 1: press frmMenu.cmdSimplex: cmdSimplex is not enabled\n");
}

TEST_F(MerlaneBatch, AControlThatIsNotThereStopsTheRunWithOne) {
  EXPECT_EQ(RunText("press frmMenu.cmdNone\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 1: press frmMenu.cmdNone: frmMenu has no control cmdNone\n");
}

TEST_F(MerlaneBatch, AControlThatIsHiddenStopsTheRunWithOne) {
  EXPECT_EQ(RunText("press frmMenu.cmdInitialize\nset frmInitialize.cboFormat A\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 2: set frmInitialize.cboFormat A: cboFormat is not visible\n");
}

TEST_F(MerlaneBatch, SavingTheTextOfWhatHasNoneStopsTheRunWithOne) {
  EXPECT_EQ(RunText("save-text frmMenu.cmdQuit x.txt\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 1: save-text frmMenu.cmdQuit x.txt: cmdQuit is no text pane\n");
}

TEST_F(MerlaneBatch, AFaultInTheFileIsFoundBeforeAnythingIsDone) {
  EXPECT_EQ(RunText("press frmMenu.cmdQuit\n\npush frmMenu.cmdQuit\n"), 1);
  EXPECT_EQ(err, "merlane-batch: a.batch: line 3: there is no action \"push\"\n");
  EXPECT_EQ(out, "end: stopped\n");
}

TEST_F(MerlaneBatch, AFatalDataErrorEndsTheRunWithTwo) {
  EXPECT_EQ(RunText(Read("count_rises.dat") + "press frmMenu.cmdLoadAlg\n"), 2);
  EXPECT_THAT(out, HasSubstr("message \"Problem reading data - analysis stops\""));
  EXPECT_THAT(out, EndsWith("end: fatal\n"));
  EXPECT_EQ(err, "");
}

TEST_F(MerlaneBatch, ACommandThatFailsEndsTheRunWithFourAtItsEnd) {
  EXPECT_EQ(RunText("export fit none/fit.json\nexport parameters p.csv\n"), 4);
  EXPECT_THAT(out, HasSubstr("      failure export fit none/fit.json: cannot write the file ./none/fit.json: No such "
                             "file or directory\n"));
  EXPECT_THAT(out, EndsWith("      wrote p.csv\nend: end of file\n"));
  EXPECT_EQ(ReadFile(folder + "/p.csv"), "number,value,step,fuse,free,name\n");
}

// ---- Failures that a run does not end by

TEST_F(MerlaneBatch, ATranscriptOntoAFullDiskEndsTheRunWithFour) {
  WriteFile(folder + "/a.batch", "export parameters p.csv\n");
  EXPECT_EQ(Shell("'" MERLANE_BUILD_DIR "/merlane-batch' a.batch >/dev/full 2>stderr.txt"), 4);
  EXPECT_EQ(ReadFile(folder + "/stderr.txt"), "merlane-batch: the transcript could not be written\n");
  EXPECT_TRUE(std::filesystem::exists(folder + "/p.csv")) << "to the end";
}

TEST_F(MerlaneBatch, ATranscriptThatNobodyReadsAnyMoreEndsTheRunWithFour) {
  WriteFile(folder + "/a.batch", "export parameters p.csv\n");
  Shell("{ sleep 0.3; '" MERLANE_BUILD_DIR "/merlane-batch' a.batch 2>stderr.txt; echo $? >status.txt; } | true");
  EXPECT_EQ(ReadFile(folder + "/status.txt"), "4\n");
  EXPECT_EQ(ReadFile(folder + "/stderr.txt"), "merlane-batch: the transcript could not be written\n");
  EXPECT_TRUE(std::filesystem::exists(folder + "/p.csv")) << "to the end";
}

TEST_F(MerlaneBatch, DataThatAreNotThereEndTheRunWithFourAndWhatNeedsThemIsRefused) {
  const std::string alg = ReadFile(golden + "spanning_random.alg");
  const std::string missing =
      "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile missing.dat\n"
      "press frmInitialize.cmdDone\n";
  EXPECT_EQ(RunText(missing), 4);
  const std::string load = "press frmMenu.cmdLoadAlg\nreply yes\nfile own.alg\n";
  for (const char* command : {"press cmdOneFunction\n", "press cmdUserSummary\n", "press cmdSimplex\nreply yes\n",
                              "press cmdMarquardt\nreply yes\nreply no\nreply no\n"}) {
    WriteFile(folder + "/own.alg", alg);
    EXPECT_EQ(RunText(missing + load + "press cmdSaveAlg\nfile untouched.alg\n" + command +
                      "press frmMenu.cmdSaveAlg\nfile own.alg\n"),
              4)
        << command << err;
    EXPECT_THAT(out, HasSubstr("there are no data")) << command;
    EXPECT_EQ(ReadFile(folder + "/own.alg"), ReadFile(folder + "/untouched.alg")) << command;
  }
}

TEST_F(MerlaneBatch, DataThatAreAFolderOrAPipeEndTheRunWithFour) {
  ASSERT_EQ(::mkfifo((folder + "/pipe.dat").c_str(), 0666), 0);
  for (const auto& [data, why] : {std::pair{".", "Is a directory"}, {"pipe.dat", "it is a pipe"}}) {
    EXPECT_EQ(RunText("press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " + std::string(data) +
                      "\npress frmInitialize.cmdDone\n"),
              4);
    EXPECT_THAT(out, HasSubstr(why));
  }
}

TEST_F(MerlaneBatch, AWorkbookThatCannotBeReadEndsTheRunWithFour) {
  WriteFile(folder + "/lake.xls", "no workbook");
  EXPECT_EQ(RunText("press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile lake.xls\n"
                    "press frmInitialize.cmdDone\n"),
            4);
  EXPECT_THAT(out, HasSubstr("\"No data: "));
}

TEST_F(MerlaneBatch, AnAlgorithmFileThatIsAPipeEndsTheRunWithFour) {
  ASSERT_EQ(::mkfifo((folder + "/pipe.alg").c_str(), 0666), 0);
  EXPECT_EQ(RunText(Read("eggs_only.dat") + "press frmMenu.cmdLoadAlg\nreply yes\nfile pipe.alg\n"), 4);
  EXPECT_THAT(out, HasSubstr("it is a pipe"));
}

TEST_F(MerlaneBatch, ALogThatCannotBeWrittenEndsTheRunWithFour) {
  std::filesystem::create_symlink("/dev/full", folder + "/log.tvl");
  EXPECT_EQ(RunText(Read("juveniles_only.dat") + "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
                    InQuotes(golden + "juveniles_only.alg") +
                    "\npress frmMenu.cmdEditAlg\npress cmdOpenLog\nfile log\nset txtFileFreq 25\npress cmdFinish\n"
                    "press frmMenu.cmdSimplex\nreply yes\n"),
            4)
      << err;
  EXPECT_THAT(out, HasSubstr("The log file ./log.tvl can no longer be written: No space left on device"));
}

TEST_F(MerlaneBatch, ABootstrapThatBrokeOffEndsTheRunWithFour) {
  const std::string bootstrap = "seed 1\n" + Read("juveniles_only.dat") + "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
                                InQuotes(golden + "juveniles_only.alg") +
                                "\npress frmMenu.cmdUserSummary\nenter 1\nreply yes\n"
                                "press frmSummary.cmdBootstrap\nenter 2\nenter 40\nreply yes\n"
                                "reply yes\nfile a.bpv\nreply no\nreply yes\n";
  EXPECT_EQ(RunText(bootstrap, "--out whole"), 0) << err;
  for (const auto& entry : std::filesystem::directory_iterator(folder + "/whole"))
    if (const std::string name = entry.path().filename(); name.starts_with("BootstrappedData00002"))
      std::filesystem::create_directories(folder + "/broken/" + name);  // where no file can be written
  EXPECT_EQ(RunText(bootstrap, "--out broken"), 4) << err;
  EXPECT_THAT(ReadFile(folder + "/broken/a.bpv"), testing::StartsWith("\"1 of 2 replicates: cannot write the file "));
}

TEST_F(MerlaneBatch, ANameWithALineBreakForgesNoLine) {
  EXPECT_EQ(RunText("export parameters \"a\\nend: quit\"\nexport fit \"none/b\\nend: quit\"\n"), 4);
  EXPECT_THAT(out, HasSubstr("      wrote a\\nend: quit\n"));
  EXPECT_THAT(out, testing::Not(HasSubstr("\nend: quit")));
}

TEST_F(MerlaneBatch, RelativePathsAreReadBesideTheFileAndWrittenToTheOutputFolder) {
  std::filesystem::create_directories(folder + "/analysis");
  std::filesystem::copy_file(golden + "eggs_only.dat", folder + "/analysis/lake.dat");
  WriteFile(folder + "/analysis/b.batch",
            "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile lake.dat\n"
            "press frmInitialize.cmdDone\nexport visits v.csv\n");
  EXPECT_EQ(Run("--out results/deep analysis/b.batch"), 0);
  EXPECT_THAT(out, HasSubstr(" -> \"analysis/lake.dat\"\n"));
  EXPECT_THAT(out, HasSubstr("      wrote results/deep/v.csv\n"));
  EXPECT_THAT(ReadFile(folder + "/results/deep/v.csv"), HasSubstr("\n1995,"));
}

TEST_F(MerlaneBatch, ABatchFileThatCannotBeReadIsTold) {
  EXPECT_EQ(Run("none.batch"), 1);
  EXPECT_EQ(err, "merlane-batch: cannot open the file none.batch: No such file or directory\n");
  EXPECT_EQ(Run("."), 1);
  EXPECT_EQ(err, "merlane-batch: cannot read the file .: Is a directory\n");
}

TEST_F(MerlaneBatch, AnOutputFolderThatCannotBeMadeIsTold) {
  WriteFile(folder + "/taken", "");
  EXPECT_EQ(RunText("", "--out taken"), 1);
  EXPECT_THAT(err, HasSubstr("merlane-batch: cannot make the folder taken"));
  EXPECT_EQ(RunText("", "--out " + std::string(300, 'x')), 1);
  EXPECT_THAT(err, EndsWith("xxx: File name too long\n"));
  EXPECT_EQ(out, "end: stopped\n");
}

TEST_F(MerlaneBatch, ArgumentsThatAreNoneOfOursAreTold) {
  EXPECT_EQ(Run(""), 1);
  EXPECT_THAT(err, HasSubstr("FILE is required"));
  EXPECT_EQ(Run("--fast a.batch"), 1);
  EXPECT_EQ(Run("a.batch b.batch"), 1);
  EXPECT_THAT(err, HasSubstr("--join is for pieces"));
  for (const char* share : {"0/3", "4/3", "3", "1/0", "''", "x/y"}) {
    EXPECT_EQ(Run(std::string("--piece ") + share + " a.batch"), 1) << share;
    EXPECT_THAT(err, HasSubstr("is no share: write 1/100 for the first of a hundred")) << share;
  }
  EXPECT_EQ(Run("--piece 1/3 --join a.piece"), 1);
  EXPECT_EQ(Run("--batch b.batch a.batch"), 1);
  EXPECT_THAT(err, HasSubstr("goes with --join alone"));
  EXPECT_EQ(Run("--out"), 1);
  EXPECT_EQ(Run("--help"), 0);
  EXPECT_THAT(out, HasSubstr("--json"));
}

TEST_F(MerlaneBatch, PiecesAreMadeAndJoined) {
  const std::string text =
      "clock 2024-06-01 10:30:00\n" + Read("juveniles_only.dat") + "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
      InQuotes(golden + "juveniles_only.alg") +
      "\npress frmMenu.cmdOneFunction\nclose frmOneFunction\npress frmMenu.cmdUserSummary\nenter 9\n"
      "reply yes\nsave-text frmSummary.rtbOut summary.txt\n";
  ASSERT_EQ(RunText(text, "--out whole"), 0);
  const std::string whole = out;
  for (const char* piece : {"1/2", "2/2"})
    ASSERT_EQ(Run(std::string("--out pieces --piece ") + piece + " a.batch"), 0) << err;
  EXPECT_THAT(out, EndsWith("      wrote pieces/a.2-of-2.piece\nend: piece\n"));
  ASSERT_EQ(Run("--out joined --join pieces/a.1-of-2.piece pieces/a.2-of-2.piece"), 0) << err;
  EXPECT_EQ(Replaced(out, "joined/", "whole/"), whole);
  EXPECT_EQ(ReadFile(folder + "/joined/summary.txt"), ReadFile(folder + "/whole/summary.txt"));
  EXPECT_EQ(Run("--out joined --join pieces/a.2-of-2.piece"), 1);
  EXPECT_EQ(err, "merlane-batch: of 2 pieces 1 is missing\n");
}

}  // namespace
}  // namespace merlane
