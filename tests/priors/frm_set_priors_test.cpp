#include "priors/frm_set_priors.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "priors/frm_load_priors.h"
#include "priors/priors_file.h"
#include "support/scripted_host.h"

namespace merlane::test {
namespace {

using Json = nlohmann::json;

Json Kept(const std::string& name) {
  std::ifstream file(std::string(MERLANE_GOLDEN_DIR) + "/plots/" + name + ".json");
  return Json::parse(file);
}

/// Kept texts are UTF-8 with one line end; the program's hold one byte per character and CR LF.
std::string Told(std::string text) {
  for (std::size_t at; (at = text.find("\xC3\x9F")) != std::string::npos;) text.replace(at, 2, "\xDF");
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.replace(at, 1, "\r\n");
  return text;
}

std::string TermText(const PriorTerm& term) {
  return std::holds_alternative<double>(term) ? Json(std::get<double>(term)).dump() : std::get<std::string>(term);
}

std::string TermText(const Json& kept) { return kept.is_number() ? kept.dump() : kept.get<std::string>(); }

/// A form that calls for the priors.
class Caller : public Form {
 public:
  explicit Caller(Desk& d) : Form(d, "frmMenu", "Menu") {}
};

class PriorsEditor : public testing::Test {
 protected:
  ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  Priors priors;
  Objective objective{state, [this](ModelCall& call) {
                        ++calls;
                        call.F = 20;
                      }};
  int calls = 0;
  FrmMain frmMain{desk};
  Caller caller{desk};
  PriorsCommands commands{desk, state, frmMain, priors};
  FrmSetPriors editor{desk, state, objective, frmMain, priors, commands};
  FrmLoadPriors chooser{desk, state, frmMain, priors, commands, editor};
  ScriptedWindows& windows = host.windows;
  const std::string folder = testing::TempDir();

  void Begin(int NPAR) {
    state.algorithm.NPAR = static_cast<std::int16_t>(NPAR);
    state.algorithm.ParName.Dimension(NPAR);
    for (int i = 1; i <= NPAR; ++i)
      state.algorithm.ParName(i) = "Description of parameter " + std::to_string(i) + " [0]";
    priors.Reset(NPAR);
    desk.Show(frmMain);
    desk.Show(caller);
  }
  /// Opens the editor as the chooser does when nothing is set yet.
  void OpenEditor() {
    chooser.Open("frmMenu");
    if (!priors.AnySet()) windows.Yes("Setting Bayesian Priors");
    EXPECT_TRUE(desk.Press(chooser.cmdSet));
  }
  void Select(int parameter) { EXPECT_TRUE(desk.Click(editor.grdPriors, parameter + 1, 1)); }
  void Choose(const std::string& command, const std::vector<std::string>& replies) {
    for (const std::string& reply : replies) windows.Enter(reply);
    EXPECT_TRUE(desk.Press(dynamic_cast<MenuEntry&>(*editor.Find(command))));
  }
  std::string File(const std::string& name, const std::string& text) {
    std::ofstream(folder + name, std::ios::binary) << text;
    return folder + name;
  }
  void ExpectRow(int row, const Json& cells, const Json& colours) {
    for (int column = 0; column < editor.grdPriors.Columns(); ++column) {
      const auto at = static_cast<std::size_t>(column);
      EXPECT_EQ(editor.grdPriors.At(row, column).text, cells[at].get<std::string>()) << row << ", " << column;
      EXPECT_EQ(static_cast<int>(editor.grdPriors.At(row, column).fore), colours[at]) << row << ", " << column;
    }
  }
};

TEST_F(PriorsEditor, PlaysTheKeptSequenceOfCommands) {
  const Json kept = Kept("priors_commands");
  Begin(kept["npar"]);
  OpenEditor();
  for (const Json& step : kept["steps"]) {
    SCOPED_TRACE(step.dump());
    const int row = step["row"], i = row - 1;
    Select(i);
    windows.inputs.clear();
    windows.messages.clear();
    Choose(step["command"], step["replies"]);
    ASSERT_EQ(windows.inputs.size(), step["prompts"].size());
    for (std::size_t k = 0; k < windows.inputs.size(); ++k) {
      EXPECT_EQ(windows.inputs[k].title, step["prompts"][k]["title"].get<std::string>());
      EXPECT_EQ(windows.inputs[k].prompt, Told(step["prompts"][k]["text"]));
      EXPECT_EQ(windows.inputs[k].defaultText, "");
    }
    ASSERT_EQ(windows.messages.size(), step["messages"].size());
    for (std::size_t k = 0; k < windows.messages.size(); ++k) {
      EXPECT_EQ(windows.messages[k].title, step["messages"][k]["title"].get<std::string>());
      EXPECT_EQ(windows.messages[k].text, Told(step["messages"][k]["text"]));
      EXPECT_EQ(windows.messages[k].style, step["messages"][k]["style"]);
    }
    EXPECT_EQ(priors.PriorCode(i), step["stored"]["code"].get<std::string>());
    EXPECT_EQ(priors.PriorFirstMean(i), step["stored"]["first_mean"]);
    EXPECT_EQ(priors.PriorFirstSD(i), step["stored"]["first_sd"]);
    EXPECT_EQ(TermText(priors.PriorSecondMean(i)), TermText(step["stored"]["second_mean"]));
    EXPECT_EQ(TermText(priors.PriorSecondSD(i)), TermText(step["stored"]["second_sd"]));
    ExpectRow(row, step["cells_of_row"], step["colours_of_row"]);
  }
  Select(1);
  EXPECT_EQ(PriorsFileText(priors), Kept("priors_file_edited")["file"].get<std::string>());
}

class KeptPriorsFile : public PriorsEditor, public testing::WithParamInterface<const char*> {};

TEST_P(KeptPriorsFile, IsReadShownAndWrittenAgain) {
  const Json kept = Kept(GetParam());
  const int NPAR = kept["npar"];
  Begin(NPAR);
  chooser.Open("frmMenu");
  windows.File(File("kept.pri", kept["file"]), "Load Bayesian Priors file");
  EXPECT_TRUE(desk.Press(chooser.cmdOpen));
  for (int i = 1; i <= NPAR; ++i) {
    const auto at = static_cast<std::size_t>(i) - 1;
    EXPECT_EQ(priors.PriorCode(i), kept["codes"][at].get<std::string>());
    EXPECT_EQ(priors.PriorFirstMean(i), kept["first_mean"][at]);
    EXPECT_EQ(priors.PriorFirstSD(i), kept["first_sd"][at]);
    EXPECT_EQ(TermText(priors.PriorSecondMean(i)), TermText(kept["second_mean"][at]));
    EXPECT_EQ(TermText(priors.PriorSecondSD(i)), TermText(kept["second_sd"][at]));
  }
  Select(kept["selected_row"].get<int>() - 1);
  for (int row = 0; row < NPAR + 2; ++row) {
    const auto at = static_cast<std::size_t>(row);
    if (row < 2)
      for (int column = 0; column < 7; ++column)
        EXPECT_EQ(editor.grdPriors.At(row, column).text,
                  kept["cells"][at][static_cast<std::size_t>(column)].get<std::string>());
    else
      ExpectRow(row, kept["cells"][at], kept["colours"][at - 2]);
  }
  EXPECT_EQ(PriorsFileText(priors), kept["written_again"].get<std::string>());
}

INSTANTIATE_TEST_SUITE_P(All, KeptPriorsFile,
                         testing::Values("priors_file_by_hand", "priors_file_edited", "priors_file_negative"),
                         [](const auto& kept) { return std::string(kept.param); });

TEST_F(PriorsEditor, BayesOnFollowsTheKeptEvents) {
  Begin(2);
  const std::string one = File("one.pri", "2\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n  2   U\r\n");
  const std::string two = File("two.pri", "3\r\n");
  const std::string none = File("none.pri", "2\r\n  1   U\r\n  2   U\r\n");
  const auto expect = [&](bool on) { EXPECT_EQ(state.flags.BayesOn, on); };

  chooser.Open("frmMenu");
  expect(true);
  windows.Yes("Setting Bayesian Priors");
  desk.Press(chooser.cmdSet);
  expect(true);
  desk.Press(editor.mnuFinished);
  expect(false);

  chooser.Open("frmMenu");
  expect(true);
  windows.File(one);
  desk.Press(chooser.cmdOpen);
  expect(false);  // the first file of a run: the chooser closed before anything was read
  windows.No("Save Bayesian priors");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  expect(false);

  chooser.Open("frmMenu");
  desk.Press(chooser.cmdCancel);
  expect(true);

  chooser.Open("frmMenu");
  windows.File(two);
  desk.Press(chooser.cmdOpen);
  expect(false);
  EXPECT_TRUE(chooser.FileRefused());
  EXPECT_EQ(windows.messages.back().title, "Bayes information");
  EXPECT_EQ(windows.messages.back().style, 80);
  EXPECT_EQ(windows.messages.back().text, "Bayesian priors file  " + two +
                                              "  has 3 parameters, but your model specifies 2.\r\nTherefore default "
                                              "(uniform-unbounded) priors have been loaded instead.");
  EXPECT_TRUE(caller.Visible());

  chooser.Open("frmMenu");
  desk.Press(chooser.cmdCancel);
  expect(true);

  chooser.Open("frmMenu");
  windows.File(none);
  desk.Press(chooser.cmdOpen);
  expect(true);  // the old priors decided, the new ones are all uniform
  desk.Press(editor.mnuFinished);
  expect(false);

  chooser.Open("frmMenu");
  windows.No("Setting Bayesian Priors");
  desk.Press(chooser.cmdSet);
  expect(false);
  EXPECT_EQ(windows.LastText(), "Prior probabilities have been set to default (uniform-unbounded) values");
}

TEST_F(PriorsEditor, WritingAPriorAndReadingItBackKeepsTheCodeAndFourSignificantDigitsOfEachTerm) {
  Begin(2);
  priors.PriorCode(1) = "N";
  priors.PriorFirstMean(1) = 0.123456;
  priors.PriorFirstSD(1) = 98765.4;
  const Priors back = ReadPriorsText(PriorsFileText(priors), 2).priors;
  EXPECT_EQ(back.PriorCode(1), "N");
  EXPECT_EQ(back.PriorFirstMean(1), 0.1235);
  EXPECT_EQ(back.PriorFirstSD(1), 98770);
  EXPECT_EQ(back.PriorFirstMean(2), PriorUnset);
  EXPECT_EQ(back.PriorFirstSD(2), PriorUnset);
}

TEST_F(PriorsEditor, APriorsFileWithLowerCaseCodesReadsAsUpperCase) {
  EXPECT_EQ(ReadPriorsText("1\n  1   g 2.000E+000 5.000E-001\n", 1).priors.PriorCode(1), "G");
}

TEST_F(PriorsEditor, ARightFootBelowTheLeftFootRestartsAllFourPrompts) {
  Begin(3);
  OpenEditor();
  windows.inputs.clear();
  Choose("mnuT", {"5", "1", "3", "1", "1", "1", "3", "2"});
  EXPECT_EQ(windows.inputs.size(), 8U);
  EXPECT_EQ(priors.PriorCode(1), "T");
  EXPECT_EQ(windows.inputs[2].prompt, "Choose right foot of parameter #1, it must exceed left foot.");
}

TEST_F(PriorsEditor, ABetaOfMeanOneHalfAndSdSixTenthsReportsANegativeAAndStoresNothing) {
  Begin(1);
  OpenEditor();
  Choose("mnuB", {"0.5", "0.6"});
  EXPECT_EQ(windows.LastText(), "An unacceptable (< 0) value for 'a' of \xDF (a,b) is: -0.1528");
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, AGammaWithSdEqualToTheMeanStoresNothingAndSaysNothing) {
  Begin(1);
  OpenEditor();
  const std::size_t told = windows.messages.size();
  Choose("mnuG", {"2", "2"});
  EXPECT_EQ(windows.messages.size(), told);
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, LeavingTheEditorWithAllCodesUSetsBayesOffAndOffersNoSaving) {
  Begin(1);
  OpenEditor();
  desk.Press(editor.mnuFinished);
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(windows.LastText(), "Bayesian priors data, if changed, have been updated");
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, OpeningAValidFileForAModelOfAnotherSizeLeavesBayesOffAndTheOldPriors) {
  Begin(2);
  priors.PriorCode(1) = "N";
  state.flags.PriorFileName = "kept.pri";
  commands.ShowName();
  chooser.Open("frmMenu");
  windows.File(File("other.pri", "1\r\n  1   G 2.000E+000 5.000E-001     Unused     Unused\r\n"));
  desk.Press(chooser.cmdOpen);
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(priors.PriorCode(1), "N");
  EXPECT_EQ(state.flags.PriorFileName, folder + "other.pri") << "the path is the refused file's";
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: kept") << "but the bare name is the old one";
}

TEST_F(PriorsEditor, ReadingAFileHidesTheMenuBehindTheEditorAndShowsTheBareName) {
  Begin(1);
  const std::string path = File("read.pri", "1\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n");
  chooser.Open("frmMenu");
  windows.File(path);
  desk.Press(chooser.cmdOpen);
  EXPECT_EQ(windows.files[0].title, "Load Bayesian Priors file");
  EXPECT_EQ(windows.files[0].filter, "All files (*.*)|*.*|Bayesian priors files (*.pri)|*.pri");
  EXPECT_EQ(windows.messages.back().title, "Bayes information");
  EXPECT_EQ(windows.messages.back().text, "Bayesian Priors file " + path + " has been loaded");
  EXPECT_EQ(windows.messages.back().style, 64);
  EXPECT_TRUE(editor.Visible());
  EXPECT_FALSE(caller.Visible());
  EXPECT_FALSE(chooser.Loaded());
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: read");
}

TEST_F(PriorsEditor, ACancelledFileLeavesTheChooser) {
  Begin(1);
  chooser.Open("frmMenu");
  windows.CancelFile("Load Bayesian Priors file");
  desk.Press(chooser.cmdOpen);
  EXPECT_TRUE(chooser.Visible());
  EXPECT_TRUE(state.flags.BayesOn);
}

TEST_F(PriorsEditor, WithPriorsSetTheEditorOpensAtOnceAndTheFileKeepsItsName) {
  Begin(1);
  priors.PriorCode(1) = "E";
  chooser.Open("frmMenu");
  EXPECT_TRUE(desk.Press(chooser.cmdSet));
  EXPECT_TRUE(editor.Visible());
  EXPECT_TRUE(windows.messages.empty());
  EXPECT_EQ(state.flags.PriorFileName, "");
}

TEST_F(PriorsEditor, SettingTheFirstPriorsAsksInTheseWordsAndNamesTheFileByTheClock) {
  Begin(1);
  OpenEditor();
  EXPECT_EQ(windows.messages[0].title, Kept("priors_state")["messages"][0]["title"].get<std::string>());
  EXPECT_EQ(windows.messages[0].text, Told(Kept("priors_state")["messages"][0]["text"]));
  EXPECT_EQ(windows.messages[0].style, 36);
  EXPECT_EQ(state.flags.PriorFileName, "06011030.pri");
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: 06011030");
}

TEST_F(PriorsEditor, SettingAllUniformEmptiesTheTermsTheStatusAndBayesOn) {
  Begin(2);
  priors.PriorCode(2) = "T";
  priors.PriorFirstMean(2) = priors.PriorFirstSD(2) = 1;
  priors.PriorSecondMean(2) = priors.PriorSecondSD(2) = "2";
  frmMain.ShowPriorsFile("kept");
  chooser.Open("frmMenu");
  EXPECT_TRUE(desk.Press(chooser.cmdUniform));
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: ");
  EXPECT_EQ(windows.messages.back().title, "Default prior probabilities");
  EXPECT_EQ(windows.messages.back().style, 64);
  EXPECT_TRUE(caller.Visible());
  EXPECT_FALSE(chooser.Visible());
  EXPECT_EQ(priors.PriorCode(2), "U");
  EXPECT_EQ(priors.PriorFirstMean(2), PriorUnset);
  EXPECT_EQ(priors.PriorFirstSD(2), PriorUnset);
  EXPECT_EQ(priors.PriorSecondMean(2), PriorTerm(PriorUnused));
  EXPECT_EQ(priors.PriorSecondSD(2), PriorTerm(PriorUnused));
}

TEST_F(PriorsEditor, AnEmptyFirstReplyOfTheNormalStillAsksForTheSecond) {
  Begin(1);
  OpenEditor();
  windows.inputs.clear();
  Choose("mnuN", {"", "1"});
  EXPECT_EQ(windows.inputs.size(), 2U);
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, AMeanWithoutAnSdFailsAtTheStoreOfTheNormal) {
  Begin(1);
  OpenEditor();
  windows.ExpectFailure("is not a number");
  Choose("mnuN", {"2", ""});
  EXPECT_EQ(priors.PriorCode(1), "N");
  EXPECT_EQ(priors.PriorFirstMean(1), 2);
  EXPECT_EQ(priors.PriorFirstSD(1), PriorUnset);
}

TEST_F(PriorsEditor, ASelectionOnAHeaderRowMovesToTheFirstParameter) {
  Begin(2);
  OpenEditor();
  Select(2);
  desk.Click(editor.grdPriors, 0, 1);
  EXPECT_EQ(editor.grdPriors.selectedRow, 2);
  EXPECT_EQ(editor.grdPriors.At(2, 1).fore, Colour::Green);
}

TEST_F(PriorsEditor, AFileThatIsShortOrHoldsNoCountLeavesThePriorsAndTheirName) {
  for (const char* text : {"", "two\r\n", "2\r\n  1   N 5.000E-001 1.000E-001\r\n", "\xFF\xFE\x00\x01", "1E9\r\n"}) {
    Begin(2);
    priors.PriorCode(1) = "G";
    state.flags.PriorFileName = "kept.pri";
    chooser.Open("frmMenu");
    windows.File(File("broken.pri", text));
    windows.ExpectFailure("frmLoadPriors.cmdOpen");
    desk.Press(chooser.cmdOpen);
    EXPECT_EQ(priors.PriorCode(1), "G");
    EXPECT_EQ(state.flags.PriorFileName, "kept.pri");
    EXPECT_TRUE(caller.Visible());
  }
}

TEST_F(PriorsEditor, AFileThatIsNoTextIsNotRecited) {
  Begin(1);
  chooser.Open("frmMenu");
  windows.File(File("picture.pri", std::string(100000, '\xFF')));
  windows.ExpectFailure("the file does not begin with the number of its parameters");
  desk.Press(chooser.cmdOpen);
}

TEST_F(PriorsEditor, LettersWhereNumbersBelongCountAsZero) {
  const Priors read = ReadPriorsText("1\n  1   n       mean         SD     Unused     Unused\n", 1).priors;
  EXPECT_EQ(read.PriorCode(1), "N");
  EXPECT_EQ(read.PriorFirstMean(1), 0);
  EXPECT_EQ(read.PriorFirstSD(1), 0);
}

TEST_F(PriorsEditor, SavingGivesAFileWithoutANameTheClocks) {
  Begin(1);
  windows.CancelFile("Save Bayesian priors file in...");
  commands.SavePriors();
  EXPECT_EQ(windows.files.back().startName, "06011030.pri");
  windows.File(folder + "saved.pri");
  commands.SavePriors();
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: saved");
  EXPECT_EQ(windows.writes.back(), folder + "saved.pri");
}

// Closing.

TEST_F(PriorsEditor, ClosingWithPriorsSetOffersToSaveThemAndAsksForTheConstant) {
  Begin(1);
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.Yes("Save Bayesian priors");
  windows.CancelFile("Save Bayesian priors file in...");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  const std::size_t last = windows.messages.size() - 1;
  EXPECT_EQ(windows.messages[last - 1].title, "Just so you know");
  EXPECT_EQ(windows.messages[last - 1].style, 64);
  EXPECT_EQ(windows.messages[last].text, "Save Bayesian priors now?");
  EXPECT_EQ(windows.messages[last].style, 36);
  EXPECT_EQ(windows.files.back().filter, "All files (*.*)|*.*|Bayesian prior files (*.pri)|*.pri");
  EXPECT_THAT(windows.writes, testing::IsEmpty());
  EXPECT_EQ(state.flags.PriorFileName, "06011030.pri") << "a cancelled question keeps the name";
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(caller.Visible());
  EXPECT_FALSE(editor.Loaded());
}

TEST_F(PriorsEditor, AFileThatCannotBeWrittenOnTheWayOutKeepsTheEditorOpen) {
  Begin(1);
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.Yes("Save Bayesian priors");
  windows.File(folder + "nowhere/set.pri");
  windows.ExpectFailure("nowhere/set.pri");
  desk.Press(editor.mnuFinished);
  EXPECT_TRUE(editor.Visible());
  EXPECT_FALSE(caller.Visible());
  EXPECT_EQ(priors.PriorCode(1), "E");
  EXPECT_EQ(frmMain.stbMain5.Get(1), "Note: Unset parameters in your Bayesian Priors file have the value '*'");
  windows.No("Save Bayesian priors");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, ClosingOverASumOfSquaresTakesTheConstantFromItsDegreesOfFreedom) {
  Begin(1);
  state.algorithm.Value.Dimension(1);
  state.flags.NOBS = 13;
  state.free.NFREE = 2;
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.No("Save Bayesian priors");
  windows.statuses.clear();
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(state.flags.ObjectiveConstant, 10.0 / (20 + 20));
  ASSERT_EQ(windows.statuses.size(), 3U);
  EXPECT_EQ(windows.statuses[1].text, "One moment please...");
  EXPECT_EQ(windows.statuses[2].text, "");
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, ClosingOverASumOfSquaresWithoutADegreeOfFreedomEndsThereWithoutACall) {
  Begin(1);
  state.flags.NOBS = 3;
  state.free.NFREE = 2;
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.No("Save Bayesian priors");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(windows.messages.back().title, "Insufficient degrees of freedom");
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(frmMain.stbMain5.Get(1), "");
  EXPECT_FALSE(caller.Visible()) << "the form that called does not come back";
}

TEST_F(PriorsEditor, TheMainMenuComesBackWithoutClosingTheEditor) {
  Begin(1);
  OpenEditor();
  EXPECT_FALSE(caller.Visible());
  desk.Press(editor.mnuMenu);
  EXPECT_TRUE(caller.Visible());
  EXPECT_TRUE(editor.Visible());
}

TEST_F(PriorsEditor, TheStatusTellsOfUnsetParametersWhileTheEditorIsOpen) {
  Begin(1);
  OpenEditor();
  EXPECT_EQ(frmMain.stbMain5.Get(1), "Note: Unset parameters in your Bayesian Priors file have the value '*'");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(frmMain.stbMain5.Get(1), "");
}

}  // namespace
}  // namespace merlane::test
