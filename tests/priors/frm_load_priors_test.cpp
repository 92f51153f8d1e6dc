#include "priors/frm_load_priors.h"

#include "priors/forms_fixture.h"

namespace merlane::test {
namespace {

using PriorsChooser = PriorsForms;

class KeptPriorsFile : public PriorsForms, public testing::WithParamInterface<const char*> {};

TEST_P(KeptPriorsFile, IsReadShownAndWrittenAgain) {
  const Json kept = Kept(GetParam());
  const int NPAR = kept["npar"];
  Begin(NPAR);
  chooser.Open();
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

TEST_F(PriorsChooser, BayesOnFollowsTheKeptEvents) {
  Begin(2);
  const std::string one = File("one.pri", "2\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n  2   U\r\n");
  const std::string two = File("two.pri", "3\r\n");
  const std::string none = File("none.pri", "2\r\n  1   U\r\n  2   U\r\n");
  const auto expect = [&](bool on) { EXPECT_EQ(state.flags.BayesOn, on); };

  chooser.Open();
  expect(true);
  windows.Yes("Setting Bayesian Priors");
  desk.Press(chooser.cmdSet);
  expect(true);
  desk.Press(editor.mnuFinished);
  expect(false);

  chooser.Open();
  expect(true);
  windows.File(one);
  desk.Press(chooser.cmdOpen);
  expect(false);  // the first file of a run: the chooser closed before anything was read
  const std::string idle = "Priors are not in force: open them once more and choose Cancel";
  EXPECT_EQ(frmMain.stbMain1.Get(3), idle);
  windows.No("Save Bayesian priors");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  expect(false);
  EXPECT_EQ(frmMain.stbMain1.Get(3), idle);

  chooser.Open();
  desk.Press(chooser.cmdCancel);
  expect(true);
  EXPECT_EQ(frmMain.stbMain1.Get(3), "");

  chooser.Open();
  windows.File(two);
  desk.Press(chooser.cmdOpen);
  expect(false);
  EXPECT_EQ(windows.messages.back().title, "Bayes information");
  EXPECT_EQ(windows.messages.back().style, 80);
  EXPECT_EQ(windows.messages.back().text, "Bayesian priors file  " + two +
                                              "  has 3 parameters, but your model specifies 2.\r\nTherefore default "
                                              "(uniform-unbounded) priors have been loaded instead.");
  EXPECT_NE(state.flags.PriorFileName, two) << "the priors that stay are not of that file";
  EXPECT_TRUE(caller.Visible());

  chooser.Open();
  desk.Press(chooser.cmdCancel);
  expect(true);

  chooser.Open();
  windows.File(none);
  desk.Press(chooser.cmdOpen);
  expect(true);  // the old priors decided, the new ones are all uniform
  desk.Press(editor.mnuFinished);
  expect(false);

  chooser.Open();
  windows.No("Setting Bayesian Priors");
  desk.Press(chooser.cmdSet);
  expect(false);
  EXPECT_EQ(windows.LastText(), "Prior probabilities have been set to default (uniform-unbounded) values");
}

TEST_F(PriorsChooser, OpeningAValidFileForAModelOfAnotherSizeLeavesBayesOffAndTheOldPriors) {
  Begin(2);
  priors.PriorCode(1) = "N";
  state.flags.PriorFileName = state.flags.PriorsKnownAs = "kept.pri";
  commands.ShowName();
  chooser.Open();
  windows.File(File("other.pri", "1\r\n  1   G 2.000E+000 5.000E-001     Unused     Unused\r\n"));
  desk.Press(chooser.cmdOpen);
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(priors.PriorCode(1), "N");
  EXPECT_EQ(state.flags.PriorFileName, "kept.pri") << "as the priors";
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: kept");
}

TEST_F(PriorsChooser, ReadingAFileHidesTheMenuBehindTheEditorAndShowsTheBareName) {
  Begin(1);
  const std::string path = File("read.pri", "1\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n");
  chooser.Open();
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

TEST_F(PriorsChooser, ACancelledFileLeavesTheChooser) {
  Begin(1);
  chooser.Open();
  windows.CancelFile("Load Bayesian Priors file");
  desk.Press(chooser.cmdOpen);
  EXPECT_TRUE(chooser.Visible());
  EXPECT_TRUE(state.flags.BayesOn);
}

TEST_F(PriorsChooser, WithPriorsSetTheEditorOpensAtOnceAndTheFileKeepsItsName) {
  Begin(1);
  priors.PriorCode(1) = "E";
  chooser.Open();
  EXPECT_TRUE(desk.Press(chooser.cmdSet));
  EXPECT_TRUE(editor.Visible());
  EXPECT_TRUE(windows.messages.empty());
  EXPECT_EQ(state.flags.PriorFileName, "");
}

TEST_F(PriorsChooser, SettingTheFirstPriorsAsksInTheseWordsAndNamesTheFileByTheClock) {
  Begin(1);
  OpenEditor();
  EXPECT_EQ(windows.messages[0].title, Kept("priors_state")["messages"][0]["title"].get<std::string>());
  EXPECT_EQ(windows.messages[0].text, Told(Kept("priors_state")["messages"][0]["text"]));
  EXPECT_EQ(windows.messages[0].style, 36);
  EXPECT_EQ(state.flags.PriorFileName, "06011030.pri");
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: 06011030 (not saved)");
}

TEST_F(PriorsChooser, PriorsSetAnewBehindUniformAreNotKnownByTheFileBeforeWhichIsProposedAllTheSame) {
  Begin(1);
  const std::string path = File("early.pri", "1\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n");
  chooser.Open();
  windows.File(path);
  desk.Press(chooser.cmdOpen);
  windows.No("Save Bayesian priors");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(state.flags.PriorsKnownAs, path);
  chooser.Open();
  desk.Press(chooser.cmdUniform);
  OpenEditor();
  Choose("mnuE", {"2"});
  EXPECT_EQ(state.flags.PriorsKnownAs, "");
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: ") << "which is not in force";
  EXPECT_EQ(state.flags.PriorFileName, path);
  windows.File(File("late.pri", ""));
  desk.Press(editor.mnuSave);
  EXPECT_THAT(state.flags.PriorsKnownAs, testing::EndsWith("late.pri"));
  EXPECT_EQ(state.flags.PriorsKnownAs, state.flags.PriorFileName);
}

TEST_F(PriorsChooser, PriorsThatAreEditedAreKnownAsChangedUntilTheyAreThoseOfTheFileAgainOrSaved) {
  Begin(1);
  const std::string path = File("early.pri", "1\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n");
  chooser.Open();
  windows.File(path);
  desk.Press(chooser.cmdOpen);
  Choose("mnuN", {"0.5", "0.2"});
  EXPECT_EQ(state.flags.PriorsKnownAs, path + " (changed since)");
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: early (changed since)");
  EXPECT_EQ(state.flags.PriorFileName, path);
  Choose("mnuN", {"0.5", "0.10001"});
  EXPECT_EQ(state.flags.PriorsKnownAs, path) << "beyond the digits of the file";
  Choose("mnuE", {"2"});
  windows.File(File("late.pri", ""));
  desk.Press(editor.mnuSave);
  EXPECT_THAT(state.flags.PriorsKnownAs, testing::EndsWith("late.pri"));
}

TEST_F(PriorsChooser, PriorsThatWereNeverSavedAreKnownAsThat) {
  Begin(1);
  OpenEditor();
  Choose("mnuE", {"2"});
  EXPECT_EQ(state.flags.PriorFileName, "06011030.pri");
  EXPECT_EQ(state.flags.PriorsKnownAs, "06011030.pri (not saved)");
}

TEST_F(PriorsChooser, PriorsOfAFileThatAreAllTakenOutInTheEditorAreNotKnownByItAnyMore) {
  Begin(1);
  chooser.Open();
  windows.File(File("early.pri", "1\r\n  1   N 5.000E-001 1.000E-001     Unused     Unused\r\n"));
  desk.Press(chooser.cmdOpen);
  Choose("mnuU", {});
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(state.flags.PriorsKnownAs, "");
}

TEST_F(PriorsChooser, SettingAllUniformEmptiesTheTermsTheStatusAndBayesOn) {
  Begin(2);
  priors.PriorCode(2) = "T";
  priors.PriorFirstMean(2) = priors.PriorFirstSD(2) = 1;
  priors.PriorSecondMean(2) = priors.PriorSecondSD(2) = "2";
  frmMain.ShowPriorsFile("kept");
  chooser.Open();
  EXPECT_TRUE(desk.Press(chooser.cmdUniform));
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(frmMain.stbMain1.Get(2), "Bayesian priors file: ");
  EXPECT_EQ(windows.messages.back().title, "Default prior probabilities");
  EXPECT_EQ(windows.messages.back().style, 64);
  EXPECT_TRUE(caller.Visible());
  EXPECT_FALSE(chooser.Loaded()) << "left hidden it would bring its caller back much later";
  EXPECT_EQ(priors.PriorCode(2), "U");
  EXPECT_EQ(priors.PriorFirstMean(2), PriorUnset);
  EXPECT_EQ(priors.PriorFirstSD(2), PriorUnset);
  EXPECT_EQ(priors.PriorSecondMean(2), PriorTerm(PriorUnused));
  EXPECT_EQ(priors.PriorSecondSD(2), PriorTerm(PriorUnused));
}

TEST_F(PriorsChooser, AFileThatIsShortOrHoldsNoCountLeavesThePriorsAndTheirName) {
  for (const char* text : {"", "two\r\n", "2\r\n  1   N 5.000E-001 1.000E-001\r\n", "\xFF\xFE\x00\x01", "1E9\r\n"}) {
    Begin(2);
    priors.PriorCode(1) = "G";
    state.flags.PriorFileName = "kept.pri";
    chooser.Open();
    windows.File(File("broken.pri", text));
    windows.ExpectFailure("frmLoadPriors.cmdOpen");
    desk.Press(chooser.cmdOpen);
    EXPECT_EQ(priors.PriorCode(1), "G");
    EXPECT_EQ(state.flags.PriorFileName, "kept.pri");
    EXPECT_TRUE(caller.Visible());
  }
}

TEST_F(PriorsChooser, AFileThatIsNoTextIsNotRecited) {
  Begin(1);
  chooser.Open();
  windows.File(File("picture.pri", std::string(100000, '\xFF')));
  windows.ExpectFailure("the file does not begin with the number of its parameters");
  desk.Press(chooser.cmdOpen);
}

TEST_F(PriorsChooser, ClosingWithPriorsSetOffersToSaveThemAndAsksForTheConstant) {
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

}  // namespace
}  // namespace merlane::test
