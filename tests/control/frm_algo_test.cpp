#include "control/frm_algo.h"

#include <filesystem>

#include "control/editor_fixture.h"
#include "platform/files.h"

namespace merlane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using AlgorithmEditor = EditorTest;

// ---- Opening

TEST_F(AlgorithmEditor, OpensWithOneRowPerParameterUnderTheHeadings) {
  a.Value(5) = -0.000123456;
  a.Fuse(2) = a.Fuse(3) = "AB";
  Open();
  EXPECT_EQ(editor.title, "Algorithm data file name is:  lake.alg");
  ASSERT_EQ(editor.grdVS.Rows(), N + 1);
  ASSERT_EQ(editor.grdVS.Columns(), 5);
  EXPECT_EQ(Text(0, Number), "Parameter");
  EXPECT_EQ(Text(0, Value), "Value");
  EXPECT_EQ(Text(0, Step), "Step");
  EXPECT_EQ(Text(0, Fuse), "Fuse");
  EXPECT_EQ(Text(0, Description), "Parameter description [null value; valid values]");
  EXPECT_EQ(Text(1, Number), "1");
  EXPECT_EQ(Text(1, Value), "1.0000E+00");
  EXPECT_EQ(Text(1, Step), "5.0000E-01");
  EXPECT_EQ(Text(1, Fuse), "~~");
  EXPECT_EQ(Text(12, Description), "parameter 12");
  EXPECT_EQ(Text(5, Value), "-1.2346E-04");
  EXPECT_EQ(Text(6, Value), "0");
  EXPECT_EQ(Text(2, Fuse), "AB");
  EXPECT_EQ(editor.focus, &editor.grdVS);
}

TEST_F(AlgorithmEditor, FusedCellsAreBlueAndOthersBlack) {
  a.Fuse(2) = a.Fuse(3) = "A";
  Open();
  EXPECT_EQ(Fore(1, Fuse), Colour::Black);
  EXPECT_EQ(Fore(2, Fuse), Colour::Blue);
  EXPECT_EQ(Fore(3, Fuse), Colour::Blue);
  EXPECT_EQ(Fore(2, Value), Colour::Black);
}

TEST_F(AlgorithmEditor, OpeningShowsTheFusesAsTheyWillAct) {
  a.Fuse(1) = a.Fuse(3) = "A";
  a.Fuse(4) = "B";
  Open();
  EXPECT_EQ(Text(3, Value), "1.0000E+00");
  EXPECT_EQ(Text(3, Step), "0");
  EXPECT_EQ(Text(4, Fuse), "~~");
  EXPECT_EQ(state.free.NFREE, 3);
}

TEST_F(AlgorithmEditor, NotesStandBelowTheTable) {
  EXPECT_EQ(editor.lblNote1.text, "Note 1: A step size of zero freezes the value of the corresponding parameter");
  EXPECT_EQ(editor.lblNote2.text,
            "Note 2: Alphabetically fused parameters are co-estimated.  Only the parameter of lowest ordinal rank will "
            "have a non-zero step size.");
  EXPECT_EQ(editor.lblNote3.text,
            "Double-click to edit a Value, Step or Fuse, or double-click the column heading to change them all");
}

TEST_F(AlgorithmEditor, OptionsAreShownAsTheyStand) {
  a.MaxCalls = 12345;
  a.TerminalFreq = 7;
  a.StepReduction = 0.25;
  Open();
  EXPECT_EQ(editor.lblAbsRel.text, "Absolute tolerance for convergence (TC):");
  EXPECT_EQ(editor.txtAbsRel.text, "1.000E-04");
  EXPECT_EQ(editor.txtMaxFunctions.text, "12345");
  EXPECT_EQ(editor.txtTerminalFreq.text, "7");
  EXPECT_EQ(editor.txtReduction.text, "0.2500");
  EXPECT_FALSE(editor.txtFileFreq.visible);
  EXPECT_TRUE(editor.cmdOpenLog.enabled);
  EXPECT_FALSE(editor.cmdCloseLog.enabled);
  EXPECT_EQ(editor.lblSimplex.text, "Simplex (maximum # function calls):");
  EXPECT_EQ(editor.lblMarquardt.text, "Marquardt (maximum # iterations):");
  EXPECT_EQ(editor.lblTerminalFreq.text, "Terminal display frequency:");
  EXPECT_EQ(editor.lblFileFreq.text, "Output frequency:");
  EXPECT_EQ(editor.lblReduction.text, "Step size reduction fraction:");
  EXPECT_EQ(editor.lblFileName.text, "Log file name (maximum of 10.3 characters):");
}

TEST_F(AlgorithmEditor, ANegativeToleranceIsARelativeOne) {
  a.Tolerance = -0.002;
  Open();
  EXPECT_EQ(editor.lblAbsRel.text, "Relative tolerance for convergence (TC):");
  EXPECT_EQ(editor.txtAbsRel.text, "2.000E-03");
}

TEST_F(AlgorithmEditor, OpenedForAnotherCommandOffersOnlyWhatIsNotLocked) {
  editor.OpenLocked(EditValuesAndSteps);
  EXPECT_EQ(Text(1, Value), "1.0000E+00");
  EXPECT_EQ(Text(1, Step), "5.0000E-01");
  EXPECT_EQ(Text(1, Fuse), "") << "a locked column is not filled";
  EXPECT_FALSE(editor.txtAbsRel.visible);
  EXPECT_FALSE(editor.txtMaxFunctions.visible);
  EXPECT_FALSE(editor.txtTerminalFreq.visible);
  EXPECT_FALSE(editor.txtReduction.visible);
  EXPECT_FALSE(editor.mnuUnFuse.enabled);
  ASSERT_TRUE(desk.DoubleClick(editor.grdVS, 1, Fuse));
  ASSERT_TRUE(desk.Enter(editor.grdVS, 1, Fuse, "A"));
  EXPECT_EQ(a.Fuse(1), "~~");
  ASSERT_TRUE(desk.DoubleClick(editor.grdVS, 0, Fuse));
  EXPECT_TRUE(host.windows.inputs.empty());
}

TEST_F(AlgorithmEditor, OpenedForAnotherCommandHidesTheLogFrameAndDisablesItsButtons) {
  editor.OpenLocked(EditMarks{});
  EXPECT_FALSE(editor.cmdOpenLog.visible);
  EXPECT_FALSE(editor.cmdOpenLog.enabled);
  EXPECT_FALSE(editor.cmdCloseLog.enabled);
  EXPECT_FALSE(editor.txtFileName.visible);
  EXPECT_TRUE(editor.txtAbsRel.visible);
}

TEST_F(AlgorithmEditor, AStepFractionOfZeroBecomesATenthOnOpening) {
  editor.StepFraction = 0;
  Open();
  EXPECT_EQ(editor.StepFraction, 0.1);
}

// ---- Values, one by one

TEST_F(AlgorithmEditor, ADoubleClickVoidsNoResultButWhatIsEnteredDoes) {
  Open();
  RememberResults();
  desk.DoubleClick(editor.grdVS, 3, Description);
  ExpectResultsStand();
  Type(3, Step, "0.7");
  ExpectResultsVoid();
}

TEST_F(AlgorithmEditor, TheCellBeingEditedIsGreenOnWhite) {
  Open();
  desk.DoubleClick(editor.grdVS, 2, Value);
  EXPECT_EQ(Fore(2, Value), Colour::Green);
  EXPECT_EQ(editor.grdVS.At(2, Value).back, Colour::White);
  EXPECT_EQ(editor.grdVS.selectedRow, 2);
}

TEST_F(AlgorithmEditor, AValueIsStoredShownAndRedAndItsStepFollows) {
  Open();
  Type(2, Value, " -3.5 ");
  EXPECT_EQ(a.Value(2), -3.5);
  EXPECT_EQ(Text(2, Value), "-3.5000E+00");
  EXPECT_EQ(Fore(2, Value), Colour::Red);
  EXPECT_EQ(editor.grdVS.At(2, Value).back, Colour::Default);
  EXPECT_EQ(a.Step(2), 0.1 * 3.5);
  EXPECT_EQ(Text(2, Step), "3.5000E-01");
  EXPECT_EQ(Fore(2, Step), Colour::Red);
}

TEST_F(AlgorithmEditor, AnEqualValueWithinTheThresholdDoesNotTurnRedButTheStepIsRewritten) {
  Open();
  Type(2, Value, "2.00000000001");
  EXPECT_EQ(Fore(2, Value), Colour::Black);
  EXPECT_EQ(a.Value(2), 2.00000000001);
  EXPECT_NEAR(a.Step(2), 0.2, 1e-9);
  EXPECT_EQ(Fore(2, Step), Colour::Red);
}

TEST_F(AlgorithmEditor, AValueOfFrozenParameterGivesItAStep) {
  Open();
  ASSERT_EQ(a.Step(7), 0);
  Type(7, Value, "4");
  EXPECT_EQ(a.Step(7), 0.4);
}

TEST_F(AlgorithmEditor, AValueOfZeroShowsAsZeroAndTakesTheFractionAsStep) {
  editor.StepFraction = -0.3;
  Open();
  Type(2, Value, "0");
  EXPECT_EQ(Text(2, Value), "0");
  EXPECT_EQ(a.Step(2), 0.3);
}

TEST_F(AlgorithmEditor, AStepThatDoesNotChangeKeepsItsColour) {
  a.Step(2) = 0.2;
  Open();
  Type(2, Value, "2");
  EXPECT_EQ(Fore(2, Step), Colour::Black);
  EXPECT_EQ(Fore(2, Value), Colour::Black);
}

TEST_F(AlgorithmEditor, ARedCellStaysRedWhenTheSameValueIsTypedAgain) {
  Open();
  Type(2, Value, "3");
  Type(2, Value, "3");
  EXPECT_EQ(Fore(2, Value), Colour::Red);
}

TEST_F(AlgorithmEditor, AnEmptyOrBadValueRestoresTheCell) {
  Open();
  for (const char* bad : {"", "  ", "abc", "1.5x", "1E400", "nan"}) {
    Type(2, Value, bad);
    EXPECT_EQ(a.Value(2), 2) << bad;
    EXPECT_EQ(a.Step(2), 0.5) << bad;
    EXPECT_EQ(Fore(2, Value), Colour::Black) << bad;
    EXPECT_EQ(Text(2, Value), "2.0000E+00") << bad;
  }
  Type(2, Value, "3");
  Type(2, Value, "abc");
  EXPECT_EQ(Fore(2, Value), Colour::Red) << "the colour before";
}

TEST_F(AlgorithmEditor, ABadValueInACellOfZeroLeavesItBlack) {
  Open();
  Type(2, Value, "0");
  ASSERT_EQ(Fore(2, Value), Colour::Red);
  Type(2, Value, "abc");
  EXPECT_EQ(Fore(2, Value), Colour::Black);
}

TEST_F(AlgorithmEditor, AnOverflowingStepIsAFailureThatChangesNothing) {
  editor.StepFraction = 100;
  Open();
  host.windows.ExpectFailure("overflow");
  Type(2, Value, "1E308");
  EXPECT_EQ(a.Value(2), 2);
  EXPECT_EQ(Fore(2, Value), Colour::Black);
}

TEST_F(AlgorithmEditor, AnEntryLeftAsItStandsChangesNeitherHiddenDigitsNorTheStep) {
  a.Value(2) = 0.123456789;
  a.Step(2) = 0.0987654321;
  Open();
  for (const int column : {Value, Step, Fuse}) {
    Type(2, column, Text(2, column));
    EXPECT_EQ(a.Value(2), 0.123456789);
    EXPECT_EQ(a.Step(2), 0.0987654321);
    EXPECT_EQ(Fore(2, column), Colour::Black);
  }
  Type(7, Value, "0");
  EXPECT_EQ(a.Step(7), 0) << "a frozen parameter stays frozen";
}

TEST_F(AlgorithmEditor, AnOptionLeftAsItStandsKeepsItsHiddenDigits) {
  a.StepReduction = 0.123456;
  Open();
  desk.SetText(editor.txtReduction, editor.txtReduction.text);
  EXPECT_EQ(a.StepReduction, 0.123456);
}

TEST_F(AlgorithmEditor, ATolerancesProposalLeftAsItStandsKeepsItsHiddenDigits) {
  a.Tolerance = 0.000125;
  Open();
  for (const Answer change : {Answer::No, Answer::Yes}) {
    host.windows.Reply(change);
    host.windows.Enter("1.3E-04");
    desk.Click(editor.txtAbsRel);
    EXPECT_EQ(a.Tolerance, change == Answer::Yes ? -0.000125 : 0.000125);
  }
}

TEST_F(AlgorithmEditor, AToleranceThatIsNoNumberIsAskedForAgain) {
  Open();
  host.windows.No();
  for (const char* bad : {"abc", "1E-3x", "1E400"}) host.windows.Enter(bad);
  host.windows.Enter("0.01");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(a.Tolerance, 0.01);
}

TEST_F(AlgorithmEditor, ClosedOverAnEntryTheEditorLeavesItAsItStands) {
  editor.StepFraction = 1E308;
  Open();
  ASSERT_TRUE(desk.DoubleClick(editor.grdVS, 2, Value));
  ASSERT_TRUE(desk.Press(editor.cmdFinish));
  EXPECT_FALSE(editor.Loaded());
  EXPECT_TRUE(desk.Usable(menu.cmdQuit));
  EXPECT_EQ(a.Value(2), 2);
  EXPECT_EQ(a.Step(2), 0.5);
  EXPECT_EQ(host.windows.messages.back().title, "Just so you know");
}

TEST_F(AlgorithmEditor, AColumnCanBeTypedDownwardsRowByRow) {
  Open();
  EXPECT_THAT(editor.grdVS.typedColumns, ElementsAre(false, true, true, true, false));
  for (int row = 1; row <= N; ++row) {
    Type(row, Value, std::to_string(row * 10));
    EXPECT_EQ(editor.grdVS.selectedRow, row);
    EXPECT_EQ(editor.focus, &editor.grdVS);
  }
  for (int i = 1; i <= N; ++i) EXPECT_EQ(a.Value(i), i * 10);
  EXPECT_TRUE(host.windows.messages.empty());
}

TEST_F(AlgorithmEditor, AnotherDoubleClickLeavesTheEntryBoxAsItStands) {
  Open();
  desk.DoubleClick(editor.grdVS, 2, Step);
  desk.DoubleClick(editor.grdVS, 3, Step);
  EXPECT_EQ(Fore(2, Step), Colour::Black);
  EXPECT_EQ(Fore(3, Step), Colour::Green);
}

TEST_F(AlgorithmEditor, UpdateEditsLeavesTheEntryBox) {
  Open();
  desk.DoubleClick(editor.grdVS, 2, Value);
  desk.Press(editor.cmdUpdate);
  EXPECT_EQ(a.Value(2), 2);
  EXPECT_EQ(a.Step(2), 0.5);
  EXPECT_EQ(Fore(2, Value), Colour::Black);
  EXPECT_TRUE(editor.Loaded());
}

// ---- Steps and fuses, one by one

TEST_F(AlgorithmEditor, AStepKeepsTheSignAsEntered) {
  Open();
  Type(2, Step, "-0.25");
  EXPECT_EQ(a.Step(2), -0.25);
  EXPECT_EQ(Text(2, Step), "-2.5000E-01");
  EXPECT_EQ(Fore(2, Step), Colour::Red);
  EXPECT_EQ(a.Value(2), 2);
}

TEST_F(AlgorithmEditor, AnEqualStepKeepsTheColourAndABadOneRestoresIt) {
  Open();
  Type(2, Step, "0.50000000001");
  EXPECT_EQ(Fore(2, Step), Colour::Black);
  Type(2, Step, "x");
  EXPECT_EQ(a.Step(2), 0.50000000001);
  EXPECT_EQ(Text(2, Step), "5.0000E-01");
}

TEST_F(AlgorithmEditor, AFuseInSmallLettersBecomesCapitals) {
  Open();
  Type(2, Fuse, " aa ");
  EXPECT_EQ(a.Fuse(2), "AA");
  EXPECT_EQ(Text(2, Fuse), "AA");
  EXPECT_EQ(Fore(2, Fuse), Colour::Red);
}

TEST_F(AlgorithmEditor, AFuseOfThreeLettersIsRefusedInTheCell) {
  Open();
  for (const char* bad : {"ABC", "1A", "A1", "1", "", " ", "~~~", "A~"}) {
    Type(2, Fuse, bad);
    EXPECT_EQ(a.Fuse(2), "~~") << bad;
    EXPECT_EQ(Fore(2, Fuse), Colour::Black) << bad;
  }
}

TEST_F(AlgorithmEditor, OneTildeMeansUnfused) {
  a.Fuse(2) = a.Fuse(3) = "A";
  Open();
  Type(2, Fuse, "~");
  EXPECT_EQ(a.Fuse(2), "~~");
  EXPECT_EQ(Fore(2, Fuse), Colour::Red);
}

TEST_F(AlgorithmEditor, AnUnchangedFuseRestoresTheOldColour) {
  a.Fuse(2) = a.Fuse(3) = "A";
  Open();
  Type(2, Fuse, "a");
  EXPECT_EQ(Fore(2, Fuse), Colour::Blue);
}

// ---- The walks

TEST_F(AlgorithmEditor, AllStepsAreAskedInOrderFromTheHeading) {
  Open();
  RememberResults();
  host.windows.Enter("0.1", "Edit all step sizes");
  host.windows.Enter("abc");
  host.windows.Enter("0.5");
  host.windows.Enter("-3");
  host.windows.CancelInput();
  desk.DoubleClick(editor.grdVS, 0, Step);
  ExpectResultsVoid();
  EXPECT_EQ(a.Step(1), 0.1);
  EXPECT_EQ(a.Step(2), 0.5);
  EXPECT_EQ(a.Step(3), -3);
  EXPECT_EQ(a.Step(4), 0.5);
  ASSERT_EQ(host.windows.inputs.size(), 5U);
  EXPECT_EQ(host.windows.inputs[0].prompt, "Enter new step size for parameter #1");
  EXPECT_EQ(host.windows.inputs[1].prompt, "Enter new step size for parameter #2");
  EXPECT_EQ(host.windows.inputs[2].prompt, "Enter new step size for parameter #2");
  EXPECT_EQ(host.windows.inputs[4].prompt, "Enter new step size for parameter #4");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "0.5");
  EXPECT_EQ(Fore(1, Step), Colour::Red);
  EXPECT_EQ(Fore(2, Step), Colour::Black);
  EXPECT_EQ(Fore(3, Step), Colour::Red);
  EXPECT_EQ(Fore(4, Step), Colour::Black) << "cancelled";
}

TEST_F(AlgorithmEditor, TheMenuEntryWalksTheStepsToo) {
  Open();
  RememberResults();
  host.windows.CancelInput("Edit all step sizes");
  desk.Press(editor.mnuStep);
  ExpectResultsStand();
}

/// Windows that look at a grid each time they are asked for a line.
class WatchingWindows : public test::ScriptedWindows {
 public:
  std::function<void()> onInput;
  std::optional<std::string> InputBox(const InputRequest& request) override {
    onInput();
    return ScriptedWindows::InputBox(request);
  }
};

TEST(AlgorithmEditorWalk, TheRowIsColouredAndScrolledIntoViewWhileTheBoxIsShown) {
  test::ScriptedHost parts;
  WatchingWindows windows;
  Desk desk{{windows, parts.clock, parts.random, parts.workbooks}};
  RunState state;
  AlgorithmData& a = state.algorithm;
  a.NPAR = 12;
  a.Value.Dimension(12);
  a.Step.Dimension(12);
  a.Fuse.Dimension(12, "~~");
  a.ParName.Dimension(12);
  LogFile log;
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  FrmAlgo editor{desk, state, log, main};
  editor.OpenFromMenu();
  std::vector<int> rows, tops;
  windows.onInput = [&] {
    for (int row = 1; row <= 12; ++row)
      if (editor.grdVS.At(row, Step).fore == Colour::Green && editor.grdVS.At(row, Step).back == Colour::White)
        rows.push_back(row);
    tops.push_back(editor.grdVS.topRow);
  };
  for (int i = 1; i <= 12; ++i) windows.Enter("0");
  desk.DoubleClick(editor.grdVS, 0, Step);
  EXPECT_THAT(rows, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
  EXPECT_THAT(tops, ElementsAre(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 3));
  EXPECT_EQ(editor.grdVS.At(12, Step).fore, Colour::Black);
  EXPECT_EQ(editor.grdVS.At(12, Number).back, Colour::Default);
}

TEST_F(AlgorithmEditor, AllFusesAreAskedInOrderAndBadOnesAgain) {
  Open();
  RememberResults();
  for (const char* answer : {"a", "ABC", "a1", "~", "~~", "1a", "bb", "1a"}) host.windows.Enter(answer);
  host.windows.CancelInput("Edit all parameter fuse characters");
  desk.DoubleClick(editor.grdVS, 0, Fuse);
  ExpectResultsVoid();
  EXPECT_EQ(a.Fuse(1), "A");
  EXPECT_EQ(a.Fuse(2), "~~");
  EXPECT_EQ(a.Fuse(3), "1A") << "only the last character is looked at";
  EXPECT_EQ(a.Fuse(4), "BB");
  EXPECT_EQ(a.Fuse(5), "1A");
  EXPECT_EQ(a.Fuse(6), "~~");
  EXPECT_EQ(host.windows.inputs[0].prompt,
            "Enter new alphabetical fuse character(s) (e.g., A,B,AA,AB,...) or the null character [~~, unfused] for "
            "parameter #1");
  for (int repeat = 1; repeat <= 4; ++repeat)
    EXPECT_THAT(host.windows.inputs[static_cast<std::size_t>(repeat)].prompt, HasSubstr("parameter #2"));
  EXPECT_EQ(Fore(1, Fuse), Colour::Red);
  EXPECT_EQ(Fore(2, Fuse), Colour::Black);
  EXPECT_EQ(Fore(4, Fuse), Colour::Red);
  EXPECT_EQ(Fore(6, Fuse), Colour::Black) << "cancelled";
}

TEST_F(AlgorithmEditor, AnUnchangedFuseOfTheWalkTurnsBlueOrBlack) {
  a.Fuse(1) = a.Fuse(2) = "A";
  Open();
  Type(3, Fuse, "A");
  Type(4, Fuse, "A");
  Type(4, Fuse, "~~");
  ASSERT_EQ(Fore(3, Fuse), Colour::Red);
  for (const char* answer : {"A", "A", "A", "~~"}) host.windows.Enter(answer);
  host.windows.CancelInput();
  desk.DoubleClick(editor.grdVS, 0, Fuse);
  EXPECT_EQ(Fore(1, Fuse), Colour::Blue);
  EXPECT_EQ(Fore(3, Fuse), Colour::Blue);
  EXPECT_EQ(Fore(4, Fuse), Colour::Black);
}

TEST_F(AlgorithmEditor, CancelOfTheFuseWalkRestoresTheRowsColour) {
  Open();
  Type(1, Fuse, "A");
  host.windows.CancelInput();
  desk.DoubleClick(editor.grdVS, 0, Fuse);
  EXPECT_EQ(Fore(1, Fuse), Colour::Red);
  EXPECT_EQ(Fore(1, Value), Colour::Black);
}

TEST_F(AlgorithmEditor, UnfuseAllMakesEveryFuseNoneAndBlack) {
  a.Fuse(1) = a.Fuse(2) = "A";
  Open();
  RememberResults();
  desk.Press(editor.mnuUnFuse);
  EXPECT_EQ(a.Fuse(1), "~~");
  EXPECT_EQ(a.Fuse(2), "~~");
  EXPECT_EQ(Text(1, Fuse), "~~");
  EXPECT_EQ(Fore(1, Fuse), Colour::Black);
  EXPECT_EQ(a.Step(2), 0) << "the step of a follower does not come back";
  ExpectResultsVoid();
}

TEST_F(AlgorithmEditor, StepFractionIsAskedUntilANumberComes) {
  Open();
  host.windows.Enter("x", "Change proportionality constant");
  host.windows.Enter("0.25");
  desk.Press(editor.mnuFraction);
  EXPECT_EQ(editor.StepFraction, 0.25);
  EXPECT_EQ(host.windows.inputs[0].prompt,
            "Enter step size as a fraction of parameter values.\r\nA proportion of 0 will default to 0.1");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "0.1");
  host.windows.CancelInput();
  desk.Press(editor.mnuFraction);
  EXPECT_EQ(editor.StepFraction, 0.25);
  host.windows.Enter("0");
  desk.Press(editor.mnuFraction);
  EXPECT_EQ(editor.StepFraction, 0.1);
}

// ---- Tolerance

TEST_F(AlgorithmEditor, ToleranceOfTheOtherTypeIsChosenWithYes) {
  Open();
  host.windows.Yes("Change the tolerance for convergence");
  host.windows.Enter("0.01", "Change the tolerance for convergence");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(host.windows.messages[0].text,
            "Current tolerance type is ABSOLUTE.\r\n\r\nDo you want to change to RELATIVE?");
  EXPECT_EQ(host.windows.messages[0].style, style::YesNoQuestion);
  EXPECT_EQ(host.windows.inputs[0].prompt, "Current tolerance is 1.0E-04  (Minimum allowed is 1E-06)");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "1.0E-04");
  EXPECT_EQ(a.Tolerance, -0.01);
  EXPECT_EQ(editor.lblAbsRel.text, "Relative tolerance for convergence (TC):");
  EXPECT_EQ(editor.txtAbsRel.text, "1.000E-02");
}

TEST_F(AlgorithmEditor, ARelativeToleranceStaysRelativeWithNo) {
  a.Tolerance = -0.001;
  Open();
  host.windows.No();
  host.windows.Enter("-0.5");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(host.windows.messages[0].text,
            "Current tolerance type is RELATIVE.\r\n\r\nDo you want to change to ABSOLUTE?");
  EXPECT_EQ(a.Tolerance, -0.5);
}

TEST_F(AlgorithmEditor, AToleranceBelowTheMinimumBecomesTheMinimumOfTheChosenType) {
  Open();
  host.windows.No();
  host.windows.Enter("1E-08");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(a.Tolerance, 1E-06);
  host.windows.Yes();
  host.windows.Enter("1E-08");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(a.Tolerance, -1E-06);
}

TEST_F(AlgorithmEditor, AToleranceOfZeroStaysZero) {
  Open();
  host.windows.Yes();
  host.windows.Enter("0");
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(a.Tolerance, 0);
  EXPECT_FALSE(std::signbit(a.Tolerance));
  EXPECT_EQ(editor.lblAbsRel.text, "Absolute tolerance for convergence (TC):");
}

TEST_F(AlgorithmEditor, AnEmptyAnswerLeavesTheToleranceAlone) {
  Open();
  host.windows.Yes();
  host.windows.CancelInput();
  desk.Click(editor.txtAbsRel);
  EXPECT_EQ(a.Tolerance, 0.0001);
}

// ---- Option boxes

TEST_F(AlgorithmEditor, OptionsAreStoredWithTheConversionOfTheirType) {
  Open();
  desk.SetText(editor.txtMaxFunctions, "250.5");
  EXPECT_EQ(a.MaxCalls, 250) << "half to even";
  EXPECT_EQ(editor.txtMaxFunctions.text, "250");
  desk.SetText(editor.txtReduction, "0.2");
  EXPECT_EQ(a.StepReduction, 0.2);
  desk.SetText(editor.txtTerminalFreq, " 5 ");
  EXPECT_EQ(a.TerminalFreq, 5);
}

TEST_F(AlgorithmEditor, TextThatIsNoNumberPutsTheOldValueBackSilently) {
  Open();
  for (TextBox* box : {&editor.txtMaxFunctions, &editor.txtReduction, &editor.txtTerminalFreq}) {
    const std::string before = box->text;
    for (const char* bad : {"", "abc", "1E400"}) {
      desk.SetText(*box, bad);
      EXPECT_EQ(box->text, before) << box->name << " " << bad;
    }
  }
  EXPECT_TRUE(host.windows.messages.empty());
}

TEST_F(AlgorithmEditor, ANegativeFrequencyIsRefusedAndZeroIsNot) {
  Open();
  log.Open("/dev/null");
  desk.Unload(editor);
  editor.OpenFromMenu();
  host.windows.messages.clear();
  struct Case {
    TextBox& box;
    const char* title;
    const char* text;
  };
  for (const Case& c :
       {Case{editor.txtMaxFunctions, "Change the maximum # of function calls",
             "Maximum number of functions must be positive"},
        Case{editor.txtReduction, "Change the step size reduction fraction", "Fraction must be positive"},
        Case{editor.txtTerminalFreq, "Change the terminal display frequency", "Frequency must be positive"},
        Case{editor.txtFileFreq, "Change the file write frequency", "Frequency must be positive"}}) {
    const std::string before = c.box.text;
    editor.focus = nullptr;
    desk.SetText(c.box, "-1");
    ASSERT_FALSE(host.windows.messages.empty()) << c.title;
    EXPECT_EQ(host.windows.messages.back().title, c.title);
    EXPECT_EQ(host.windows.messages.back().text, c.text);
    EXPECT_EQ(host.windows.messages.back().style, style::Information);
    EXPECT_EQ(editor.focus, &c.box);
    EXPECT_EQ(c.box.text, before);
    desk.SetText(c.box, "0");
  }
  EXPECT_EQ(host.windows.messages.size(), 4U);
  EXPECT_EQ(a.MaxCalls, 0);
  EXPECT_EQ(a.StepReduction, 0);
  EXPECT_EQ(a.TerminalFreq, 0);
  EXPECT_EQ(a.FileFreq, 0);
}

TEST_F(AlgorithmEditor, AnOptionTooLargeForItsTypeIsAFailureAndTheOldValueStands) {
  Open();
  host.windows.ExpectFailure("overflow");
  desk.SetText(editor.txtTerminalFreq, "40000");
  EXPECT_EQ(a.TerminalFreq, 10);
  EXPECT_EQ(editor.txtTerminalFreq.text, "10");
}

// ---- The log

class EditorLog : public EditorTest {
 protected:
  EditorLog() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~EditorLog() override { std::filesystem::remove_all(folder_); }
  std::filesystem::path folder_ = std::filesystem::path(testing::TempDir()) / "editor_log";
  std::string chosen_ = (folder_ / "run.tvl").string();
};

TEST_F(EditorLog, OpeningAddsTheExtensionAlwaysAndSetsTheFrequency) {
  Open();
  host.windows.File(chosen_, "Save minimization progress in...");
  desk.Press(editor.cmdOpenLog);
  EXPECT_EQ(host.windows.files[0].filter, "All files (*.*)|*.*|Tolvane log files (*.tvl)|*.tvl");
  EXPECT_EQ(host.windows.files[0].filterIndex, 2);
  EXPECT_EQ(host.windows.files[0].startName, "minimize.tvl");
  EXPECT_EQ(host.windows.files[0].PathOf("x"), "x.tvl") << "what is asked whether to overwrite";
  EXPECT_EQ(a.LogName, chosen_ + ".tvl");
  EXPECT_TRUE(log.IsOpen());
  EXPECT_EQ(ReadWholeFile(chosen_ + ".tvl"), "");
  EXPECT_EQ(a.FileFreq, 10);
  EXPECT_TRUE(editor.txtFileFreq.visible);
  EXPECT_TRUE(editor.lblFileFreq.visible);
  EXPECT_EQ(editor.txtFileFreq.text, "10");
  EXPECT_EQ(editor.txtFileName.text, chosen_ + ".tvl");
  EXPECT_TRUE(editor.cmdCloseLog.enabled);
  EXPECT_FALSE(editor.cmdOpenLog.enabled);
  EXPECT_EQ(host.windows.messages[0].title, "Log file management");
  EXPECT_EQ(host.windows.messages[0].text, "The log file " + chosen_ + ".tvl is now open for output");
  EXPECT_EQ(host.windows.messages[0].style, style::Information);
  desk.SetText(editor.txtFileFreq, "3");
  EXPECT_EQ(a.FileFreq, 3);
}

TEST_F(EditorLog, ACancelledDialogueLeavesAllAsItWas) {
  Open();
  host.windows.CancelFile();
  desk.Press(editor.cmdOpenLog);
  EXPECT_FALSE(log.IsOpen());
  EXPECT_EQ(a.LogName, "minimize.tvl");
  EXPECT_EQ(a.FileFreq, 0);
  EXPECT_TRUE(editor.cmdOpenLog.enabled);
  EXPECT_TRUE(host.windows.messages.empty());
}

TEST_F(EditorLog, AFileThatCannotBeOpenedIsAFailureThatChangesNothing) {
  Open();
  host.windows.File((folder_ / "nowhere" / "x").string());
  host.windows.ExpectFailure("No such file or directory");
  desk.Press(editor.cmdOpenLog);
  EXPECT_EQ(a.LogName, "minimize.tvl");
  EXPECT_EQ(a.FileFreq, 0);
  EXPECT_TRUE(editor.cmdOpenLog.enabled);
  EXPECT_FALSE(editor.cmdCloseLog.enabled);
}

TEST_F(EditorLog, TheFileThatIsClosedIsNamedWhateverOtherDataCallTheirs) {
  Open();
  host.windows.File(chosen_);
  desk.Press(editor.cmdOpenLog);
  a.LogName = "minimize.tvl";  // of algorithm data that were loaded behind it
  desk.Press(editor.cmdCloseLog);
  EXPECT_EQ(host.windows.LastText(), "The old log file " + chosen_ + ".tvl is now closed for input");
}

TEST_F(EditorLog, ClosingWhenNothingWasWrittenLeavesAnEmptyFile) {
  Open();
  host.windows.File(chosen_);
  desk.Press(editor.cmdOpenLog);
  desk.Press(editor.cmdCloseLog);
  EXPECT_FALSE(log.IsOpen());
  EXPECT_EQ(ReadWholeFile(chosen_ + ".tvl"), "");
  EXPECT_EQ(host.windows.messages[1].title, "Log file management");
  EXPECT_EQ(host.windows.messages[1].text, "The old log file " + chosen_ + ".tvl is now closed for input");
  EXPECT_EQ(a.FileFreq, 0);
  EXPECT_EQ(editor.txtFileName.text, "");
  EXPECT_FALSE(editor.txtFileFreq.visible);
  EXPECT_EQ(editor.txtFileFreq.text, "");
  EXPECT_TRUE(editor.cmdOpenLog.enabled);
  EXPECT_FALSE(editor.cmdCloseLog.enabled);
}

TEST_F(EditorLog, StaysOpenAcrossTheClosingOfTheEditor) {
  Open();
  host.windows.File(chosen_);
  desk.Press(editor.cmdOpenLog);
  desk.Press(editor.cmdFinish);
  EXPECT_TRUE(log.IsOpen());
  Open();
  EXPECT_TRUE(editor.txtFileFreq.visible);
  EXPECT_EQ(editor.txtFileFreq.text, "10");
  EXPECT_TRUE(editor.cmdCloseLog.enabled);
  EXPECT_FALSE(editor.cmdOpenLog.enabled);
}

// ---- Closing

TEST_F(AlgorithmEditor, FinishingTellsAndActivatesTheMenu) {
  Open();
  desk.Press(editor.cmdFinish);
  EXPECT_EQ(host.windows.messages[0].title, "Just so you know");
  EXPECT_EQ(host.windows.messages[0].text, "Algorithm data, if changed, have been updated");
  EXPECT_EQ(host.windows.messages[0].style, style::Information);
  EXPECT_FALSE(editor.Loaded());
  EXPECT_TRUE(desk.Usable(menu.cmdQuit));
  EXPECT_THAT(host.windows.events, ElementsAre("unloaded frmAlgo", "message Just so you know", "front frmMenu"));
}

TEST_F(AlgorithmEditor, TheMenuEntryFinishesToo) {
  Open();
  desk.Press(editor.mnuFinish);
  EXPECT_FALSE(editor.Loaded());
}

TEST_F(AlgorithmEditor, WhileTheCompanionIsOpenTheEditorCannotBeClosed) {
  Open();
  desk.Press(editor.mnuValue);
  EXPECT_FALSE(desk.Press(editor.mnuFinish));
  EXPECT_FALSE(desk.Close(editor));
  desk.Close(editVS);
  EXPECT_TRUE(desk.Press(editor.mnuFinish));
}

TEST_F(AlgorithmEditor, ClosingWithAFuseUsedOnceClearsThatFuse) {
  Open();
  Type(2, Fuse, "Q");
  ASSERT_EQ(a.Fuse(2), "Q");
  desk.Press(editor.cmdFinish);
  EXPECT_EQ(a.Fuse(2), "~~");
}

TEST_F(AlgorithmEditor, ClosingPacksTheFreeParametersAsEdited) {
  Open();
  Type(4, Step, "0");
  desk.Press(editor.cmdFinish);
  EXPECT_EQ(state.free.NFREE, 3);
}

TEST_F(AlgorithmEditor, OpenedForAnotherWindowGivesControlBackToIt) {
  Form ranking{desk, "frmRank", ""};
  desk.Show(ranking);
  desk.charge.Take(ranking, Charge::Resting::ApplicationMenu);
  editor.OpenLocked(EditAllButLog);
  EXPECT_FALSE(ranking.TakesInput());
  desk.Press(editor.cmdFinish);
  EXPECT_TRUE(ranking.TakesInput());
  EXPECT_EQ(host.windows.events.back(), "front frmRank");
}

TEST_F(AlgorithmEditor, EachCommandLeavesTheEntryBoxFirst) {
  struct {
    MenuEntry& entry;
    std::function<void()> replies;
  } const commands[] = {{editor.mnuStep, [&] { host.windows.CancelInput(); }},
                        {editor.mnuValue, [] {}},
                        {editor.mnuFraction, [&] { host.windows.CancelInput(); }},
                        {editor.mnuUnFuse, [] {}},
                        {editor.mnuExit, [] {}}};
  for (const auto& command : commands) {
    Open();
    ASSERT_TRUE(desk.DoubleClick(editor.grdVS, 2, Value));
    ASSERT_EQ(Fore(2, Value), Colour::Green);
    command.replies();
    ASSERT_TRUE(desk.Press(command.entry));
    EXPECT_NE(Fore(2, Value), Colour::Green) << command.entry.name;
    desk.Unload(editVS);
    desk.Enter(editor.grdVS, 2, Value, "7");
    EXPECT_EQ(a.Value(2), 2) << command.entry.name << ": the entry was left before";
    desk.Unload(editor);
  }
}

TEST_F(AlgorithmEditor, TheTitleFollowsASaveUnderAnotherName) {
  editVS.saveAlg = [this] { a.AlgName = "pond.alg"; };
  Open();
  desk.Press(editor.mnuValue);
  host.windows.CancelInput();
  desk.Press(editVS.cmdFree);
  EXPECT_EQ(editor.title, "Algorithm data file name is:  pond.alg");
}

TEST_F(AlgorithmEditor, ACommandCanWaitForTheClosing) {
  Button start{menu, "cmdStart", ""};
  std::vector<std::string> order;
  start.onClick = [&] {
    editor.OpenLocked(EditValuesAndSteps);
    desk.WaitFor(editor);
    order.push_back("goes on");
  };
  host.windows.AtWait([&] {
    Type(1, Value, "9");
    order.push_back("typed");
  });
  host.windows.AtWait([&] { desk.Press(editor.cmdFinish); });
  desk.Press(start);
  EXPECT_THAT(order, ElementsAre("typed", "goes on"));
  EXPECT_EQ(a.Value(1), 9);
}

TEST_F(AlgorithmEditor, ExitIsTheQuitDialogue) {
  Open();
  desk.Press(editor.mnuExit);
  EXPECT_THAT(host.windows.events, ElementsAre("quit dialogue"));
}

TEST_F(AlgorithmEditor, TheWindowMenuArrangesTheChildWindows) {
  std::vector<Arrangement> asked;
  main.onArrange = [&](Arrangement arrangement) { asked.push_back(arrangement); };
  Open();
  desk.Press(editor.windowMenu.mnuCascade);
  desk.Press(editor.windowMenu.mnuTileHorizontal);
  desk.Press(editor.windowMenu.mnuTileVertical);
  desk.Press(editor.windowMenu.mnuArrangeIcons);
  EXPECT_THAT(asked, ElementsAre(Arrangement::Cascade, Arrangement::TileHorizontal, Arrangement::TileVertical,
                                 Arrangement::Icons));
}

}  // namespace
}  // namespace merlane
