#include "control/algorithm_commands.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "forms/desk.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr const char* LoadTitle = "Load algorithm data";
constexpr const char* OpenTitle = "Open algorithm data file";
constexpr const char* SaveTitle = "Save algorithm data in...";
constexpr const char* FailureTitle = "Algorithm file - information input failed";

struct AlgorithmCommandsTest : ::testing::Test {
  AlgorithmCommandsTest() {
    AlgorithmData& a = state.algorithm;
    a.NPAR = 2;
    a.Value.Dimension(2);
    a.Step.Dimension(2);
    a.Fuse.Dimension(2, "~");
    a.ParName = {"first", "second"};
    std::filesystem::create_directories(folder);
    menu.cmdLoadAlg.onClick = [this] { commands.LoadAlg(); };
    menu.cmdSaveAlg.onClick = [this] { commands.Save_Alg(); };
    state.flags.ModelInitialised = true;
    desk.Show(menu);
  }
  ~AlgorithmCommandsTest() override { std::filesystem::remove_all(folder); }

  std::string WriteFile(const std::string& text, const std::string& name = "lake.alg") {
    const std::string path = folder + "/" + name;
    WriteWholeFile(path, text);
    return path;
  }
  static std::string GoodFile() {
    AlgorithmData a;
    a.NPAR = 2;
    a.Value = {1, 2};
    a.Step = {0.1, 0};
    a.Fuse = {"~~", "~~"};
    a.ParName = {"", ""};
    a.Tolerance = 0.001;
    return AlgorithmText(a, AlgorithmForm::Menu);
  }
  void Load(const std::string& path) {
    host.windows.Yes(LoadTitle);
    host.windows.File(path, OpenTitle);
    ASSERT_TRUE(desk.Press(menu.cmdLoadAlg));
  }

  const std::string folder = ::testing::TempDir() + "merlane_algorithm_commands";
  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  AlgorithmCommands commands{desk, state, main, menu, [] { return std::string("lakes"); }};
};

TEST_F(AlgorithmCommandsTest, LoadNoTakesDefaultsUnderTheNameOfTheMinute) {
  host.windows.No(LoadTitle);
  desk.Press(menu.cmdLoadAlg);
  EXPECT_EQ(state.algorithm.AlgName, "06011030.alg");
  EXPECT_EQ(state.algorithm.AlgShortName, "06011030.alg");
  EXPECT_EQ(state.algorithm.Step, (Array1<double>{0, 0}));
  EXPECT_EQ(host.windows.messages.back().text,
            "                     Algorithm data set to default values.\r\n\r\n"
            "Algorithm file given the date-time based name: 06011030.alg");
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: 06011030.alg");
  EXPECT_EQ(menu.focus, &menu.cmdEditAlg);
  EXPECT_TRUE(menu.cmdSimplex.enabled);
}

TEST_F(AlgorithmCommandsTest, LoadOfAFile) {
  Load(WriteFile(GoodFile()));
  EXPECT_EQ(host.windows.files.back().filter, "All files (*.*)|*.*|Algorithm files (*.alg)|*.alg");
  EXPECT_EQ(state.algorithm.AlgShortName, "lake");
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: lake");
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{1, 2}));
  EXPECT_TRUE(menu.cmdInitialize.enabled);
  EXPECT_TRUE(menu.cmdLoadAlg.enabled);
  EXPECT_EQ(menu.focus, &menu.cmdEditAlg);
}

TEST_F(AlgorithmCommandsTest, LoadInASimulationPutsTheFocusOnSimulating) {
  state.flags.SimulationMode = true;
  Load(WriteFile(GoodFile()));
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
  EXPECT_FALSE(menu.cmdSimplex.enabled);
}

TEST_F(AlgorithmCommandsTest, CancelledQuestionOrDialogueChangesNothing) {
  host.windows.Reply(Answer::Cancel, LoadTitle);
  desk.Press(menu.cmdLoadAlg);
  host.windows.Yes(LoadTitle);
  host.windows.CancelFile(OpenTitle);
  desk.Press(menu.cmdLoadAlg);
  EXPECT_EQ(state.algorithm.AlgName, "");
  EXPECT_EQ(state.algorithm.Fuse(1), "~");
  EXPECT_FALSE(menu.cmdSimplex.enabled);
}

TEST_F(AlgorithmCommandsTest, VanishedFileIsARunTimeFailureAndNothingIsLost) {
  state.algorithm.AlgName = "/before/old.alg";
  host.windows.ExpectFailure("no_such.alg");
  Load(folder + "/no_such.alg");
  EXPECT_EQ(state.algorithm.AlgName, "/before/old.alg");
  EXPECT_EQ(state.algorithm.Fuse(1), "~");
  EXPECT_TRUE(desk.Usable(menu.cmdLoadAlg));
}

TEST_F(AlgorithmCommandsTest, FileOfAnotherModelIsRefusedWithBothCounts) {
  state.algorithm.NPAR = 3;
  const std::string path = WriteFile(GoodFile());
  Load(path);
  EXPECT_EQ(host.windows.messages.back().title, FailureTitle);
  EXPECT_EQ(host.windows.messages.back().text,
            "Algorithm file  " + path + "  has 2 parameters, but your model specifies 3");
  EXPECT_EQ(host.windows.messages.back().style, style::Information);
}

TEST_F(AlgorithmCommandsTest, FileOfAnotherModelDoesNotNameTheRunThatGoesOn) {
  Load(WriteFile(GoodFile()));
  const std::string name = state.algorithm.AlgName;
  Load(WriteFile("             3\r\n", "three.alg"));
  EXPECT_THAT(host.windows.LastText(), HasSubstr("has 3 parameters, but your model specifies 2"));
  EXPECT_EQ(state.algorithm.AlgName, name);
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: lake");
}

TEST_F(AlgorithmCommandsTest, FileOfWhichAPartWasReadNamesTheRun) {
  Load(WriteFile(GoodFile()));
  const std::string path = WriteFile(GoodFile().substr(0, GoodFile().find("  Tolerance")), "half.alg");
  Load(path);
  EXPECT_EQ(state.algorithm.AlgName, path);
}

TEST_F(AlgorithmCommandsTest, FailureWithAFreshToleranceEndsTheCommand) {
  Load(WriteFile("             2\r\n 1.0000000E+00  rubbish\r\n more\r\n"));
  EXPECT_THAT(host.windows.LastText(), HasSubstr("inappropriate, badly formatted, or missing, information"));
  EXPECT_THAT(host.windows.messages.back().details, HasSubstr("line 2"));
  EXPECT_FALSE(menu.cmdSimplex.enabled);
  EXPECT_TRUE(desk.Usable(menu.cmdInitialize) && desk.Usable(menu.cmdLoadAlg));
  EXPECT_EQ(state.algorithm.AlgName, "") << "nothing has come into the run";
  desk.Unload(menu);
  desk.Show(menu);
  EXPECT_FALSE(menu.cmdSimplex.enabled);
}

TEST_F(AlgorithmCommandsTest, FailureWithAGoodOldToleranceGoesOn) {
  state.algorithm.Tolerance = 0.001;
  Load(WriteFile("             2\r\n 1.0000000E+00  rubbish\r\n more\r\n"));
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: lake");
  EXPECT_TRUE(menu.cmdSimplex.enabled);
  EXPECT_EQ(state.algorithm.Fuse(2), "~~");
}

TEST_F(AlgorithmCommandsTest, AFileThatBreaksOffIsToldWithWhatWasTakenOfIt) {
  const auto told = [this](const std::string& text) {
    Load(WriteFile(text));
    return host.windows.messages.back().details;
  };
  const std::string good = GoodFile();
  const auto upTo = [&good](const std::string& part) { return good.substr(0, good.find(part)); };
  const std::string left =
      "; what is left of the 2 parameters is 0, frozen and unfused, all options are the earlier ones";
  EXPECT_THAT(told("rubbish\r\n"), EndsWith("; taken from the file: nothing"));
  EXPECT_THAT(told("             3\r\n"), EndsWith("; taken from the file: nothing"));
  EXPECT_THAT(told(upTo(" 1.0000000E+00")), EndsWith("; taken from the file: nothing" + left));
  EXPECT_THAT(told("             2\r\n 1.0000000E+00  rubbish\r\n more\r\n"),
              EndsWith("; taken from the file: the value of parameter 1" + left));
  EXPECT_THAT(told(upTo(" 2.0000000E+00")), EndsWith("; taken from the file: parameter 1" + left));
  EXPECT_THAT(told(upTo(" 2.0000000E+00") + " 2.0000000E+00   0.0000000E+00\r\nmore\r\n"),
              EndsWith("; taken from the file: parameter 1 and the value and step of parameter 2" + left));
  EXPECT_THAT(
      told(upTo("          9999")),
      EndsWith("; taken from the file: all parameters; of the options these are still the earlier ones: maximum "
               "of calls, display frequency, output frequency, name of the log, step reduction"));
  EXPECT_THAT(told(good + "more\r\n"), EndsWith("; taken from the file: all parameters and options"));
}

TEST_F(AlgorithmCommandsTest, MenuIsInactiveWhileAFailureIsTold) {
  struct Watching : test::ScriptedWindows {
    FrmMenu* menu = nullptr;
    bool wasActive = true;
    Answer MsgBox(const Message& message) override {
      if (message.title == FailureTitle) wasActive = menu->desk.Usable(menu->cmdLoadAlg);
      return ScriptedWindows::MsgBox(message);
    }
  } windows;
  Desk watched({windows, host.clock, host.random, host.workbooks});
  FrmMain watchedMain(watched);
  FrmMenu watchedMenu(watched, state);
  windows.menu = &watchedMenu;
  AlgorithmCommands load(watched, state, watchedMain, watchedMenu, [] { return std::string(); });
  watchedMenu.cmdLoadAlg.onClick = [&] { EXPECT_FALSE(load.LoadFile()); };
  watched.Show(watchedMenu);
  windows.File(WriteFile("nothing"));
  ASSERT_TRUE(watched.Press(watchedMenu.cmdLoadAlg));
  EXPECT_FALSE(windows.wasActive);
  EXPECT_TRUE(watched.Usable(watchedMenu.cmdLoadAlg));
}

TEST_F(AlgorithmCommandsTest, SaveProposesTheNameWithItsExtension) {
  for (const auto& [name, proposed] : {std::pair("/a/lake", "/a/lake.alg"),
                                       {"/a/lake.alg", "/a/lake.alg"},
                                       {"/a/lake.ALG", "/a/lake.ALG.alg"},
                                       {"", "06011030.alg"}}) {
    state.algorithm.AlgName = name;
    host.windows.CancelFile(SaveTitle);
    commands.Save_Alg();
    EXPECT_EQ(host.windows.files.back().startName, proposed);
  }
  EXPECT_EQ(host.windows.files.back().filter,
            "All files (*.*)|*.*|Algorithm files (*.alg)|*.alg|Named for data file (lakes.*)|lakes.*|");
  EXPECT_EQ(host.windows.files.back().filterIndex, 2);
  EXPECT_EQ(state.algorithm.AlgName, "") << "what is not in the run is not named";
}

TEST_F(AlgorithmCommandsTest, SaveWritesTheFileAndTakesItsName) {
  SetDefaultAlgorithm(state.algorithm);
  state.algorithm.LogName = "/home/anna/long/first.tvl";
  host.windows.File(folder + "/pond.alg", SaveTitle);
  EXPECT_TRUE(commands.Save_Alg());
  EXPECT_EQ(state.algorithm.AlgShortName, "pond");
  EXPECT_EQ(state.algorithm.LogName, "first.tvl");
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: pond");
  EXPECT_EQ(ReadWholeFile(folder + "/pond.alg"), AlgorithmText(state.algorithm, AlgorithmForm::Menu));
  EXPECT_THAT(host.windows.writes, ElementsAre(folder + "/pond.alg"));
}

TEST_F(AlgorithmCommandsTest, ANameTooShortToLoseAnExtensionIsShownWhole) {
  SetDefaultAlgorithm(state.algorithm);
  host.windows.File(folder + "/lake", SaveTitle);
  commands.Save_Alg();
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: lake");
}

TEST_F(AlgorithmCommandsTest, UnwritableFolderIsToldAndTheOldNameStays) {
  Load(WriteFile(GoodFile()));
  state.algorithm.LogName = "/home/anna/long/first.tvl";
  host.windows.File(folder + "/missing/pond.alg", SaveTitle);
  host.windows.ExpectFailure("missing/pond.alg");
  desk.Press(menu.cmdSaveAlg);
  EXPECT_EQ(state.algorithm.AlgName, folder + "/lake.alg");
  EXPECT_EQ(state.algorithm.LogName, "/home/anna/long/first.tvl");
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{1, 2}));
  EXPECT_TRUE(desk.Usable(menu.cmdSaveAlg));
}

TEST_F(AlgorithmCommandsTest, LoadThatSilencesTheLogIsToldInTheStatus) {
  const std::string path = WriteFile(GoodFile());
  Load(path);
  EXPECT_EQ(main.stbMain5.Get(1), "");
  state.algorithm.FileFreq = 10;  // as with an open log
  Load(path);
  EXPECT_EQ(state.algorithm.FileFreq, 0);
  EXPECT_EQ(main.stbMain5.Get(1),
            "Note: Nothing more is written into the log until you give it an output frequency in the editor");
}

TEST_F(AlgorithmCommandsTest, FileThatMakesOneGroupOfTwoIsToldWhenItIsSaved) {
  AlgorithmData& a = state.algorithm;
  a.NPAR = 4;
  a.Value.Dimension(4);
  a.Step.Dimension(4);
  a.ParName.Dimension(4);
  a.LogName = "log.tvl";
  const auto save = [&](const Array1<std::string>& fuses, AlgorithmForm form) {
    a.Fuse = fuses;
    host.windows.messages.clear();
    host.windows.File(folder + "/two.alg", SaveTitle);
    commands.Save(form);
    return host.windows.Titles();
  };
  EXPECT_THAT(save({"AB", "AB", "CB", "CB"}, AlgorithmForm::Menu), ElementsAre("Fuses of two letters"));
  EXPECT_THAT(save({"AB", "AB", "CB", "CB"}, AlgorithmForm::Ranking), ElementsAre());
  EXPECT_THAT(save({"AB", "AB", "CD", "CD"}, AlgorithmForm::Menu), ElementsAre());
}

}  // namespace
}  // namespace merlane
