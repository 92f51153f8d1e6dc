#include "forms/desk.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

/// A form with one control of each kind that people act on.
struct Sample : Form {
  explicit Sample(Desk& d, const std::string& formName = "frmSample") : Form(d, formName, "Sample") {
    grid.Resize(3, 2);
    list.items = {"one", "two"};
    cmdStop.offeredWhileBusy = true;
  }
  Button cmdGo{*this, "cmdGo", "&Go"};
  Button cmdStop{*this, "cmdStop", "&Stop"};
  OptionButton optA{*this, "optA", "A"}, optB{*this, "optB", "B"}, optOther{*this, "optOther", "C", 1};
  CheckBox chk{*this, "chk", "tick"};
  TextBox txt{*this, "txt", "before"};
  ComboBox cbo{*this, "cbo", ""};
  ListBox list{*this, "list"};
  Grid grid{*this, "grid"};
  Pane pane{*this, "pane"};
  StatusBar bar{*this, "bar", 2};
  int loads = 0, unloads = 0;
  bool closes = true;

  void OnLoad() override { ++loads; }
  void OnUnload() override { ++unloads; }
  bool OnCloseRequest() override { return closes; }
};

struct DeskTest : ::testing::Test {
  test::ScriptedHost host;
  Desk desk{host.Get()};
  Sample form{desk};
};

// What can be used when.

TEST_F(DeskTest, ControlOfAFormThatIsNotShownCannotBeUsed) {
  form.cmdGo.onClick = [] { FAIL(); };
  EXPECT_FALSE(desk.Press(form.cmdGo));
  desk.Load(form);
  EXPECT_FALSE(desk.Press(form.cmdGo));
  desk.Show(form);
  desk.Hide(form);
  EXPECT_FALSE(desk.Press(form.cmdGo));
}

TEST_F(DeskTest, DisabledHiddenOrInactiveCannotBeUsed) {
  desk.Show(form);
  EXPECT_TRUE(desk.Usable(form.cmdGo));
  form.cmdGo.enabled = false;
  EXPECT_FALSE(desk.Usable(form.cmdGo));
  form.cmdGo.enabled = true;
  form.cmdGo.visible = false;
  EXPECT_FALSE(desk.Usable(form.cmdGo));
  form.cmdGo.visible = true;
  Sample modal{desk, "frmModal"};
  desk.charge.Take(modal, Charge::Resting::Everything);
  EXPECT_FALSE(desk.Usable(form.cmdGo));
}

TEST_F(DeskTest, WhileACalculationRunsOnlyWhatItOffersCanBeUsed) {
  desk.Show(form);
  bool stopped = false;
  form.cmdStop.onClick = [&] { stopped = true; };
  form.cmdGo.onClick = [&] {
    EXPECT_TRUE(desk.Busy());
    EXPECT_FALSE(desk.Press(form.cmdGo));
    EXPECT_FALSE(desk.SetText(form.txt, "typed"));
    EXPECT_TRUE(desk.Press(form.cmdStop));
  };
  EXPECT_TRUE(desk.Press(form.cmdGo));
  EXPECT_TRUE(stopped);
  EXPECT_EQ(form.txt.text, "before");
  EXPECT_FALSE(desk.Busy());
}

TEST_F(DeskTest, FormThatBeginsCommandsTakesNoInputWhileOneWaits) {
  Sample menu{desk, "frmResting"};
  menu.beginsCommands = true;
  menu.cmdGo.onClick = [] { FAIL() << "a second command began inside the first"; };
  desk.Show(form);
  desk.Show(menu);
  bool done = false;
  form.cmdGo.onClick = [&] { desk.WaitUntil([&] { return done; }); };
  host.windows.AtWait([&] {
    EXPECT_FALSE(desk.Press(menu.cmdGo));
    EXPECT_FALSE(desk.Close(menu));
    done = true;
  });
  desk.Press(form.cmdGo);
  EXPECT_TRUE(desk.Usable(menu.cmdGo));
}

TEST_F(DeskTest, ActionsReachTheControls) {
  desk.Show(form);
  std::vector<std::string> seen;
  form.optB.onClick = [&] { seen.push_back(form.optB.value ? "B chosen" : "?"); };
  form.chk.onClick = [&] { seen.push_back(form.chk.value ? "ticked" : "cleared"); };
  form.txt.onLeave = [&] { seen.push_back("left with " + form.txt.text); };
  form.cbo.onChange = [&] { seen.push_back("combo " + form.cbo.text); };
  form.list.onSelect = [&] { seen.push_back("selected " + form.list.items[1]); };
  form.grid.onClick = [&](int row, int column) { seen.push_back(fmt::format("cell {} {}", row, column)); };
  form.grid.onEntry = [&](int, int, const std::string& entry) { seen.push_back("entry " + entry); };
  form.optA.value = form.optOther.value = true;
  EXPECT_TRUE(desk.Choose(form.optB));
  EXPECT_TRUE(desk.Tick(form.chk, true));
  EXPECT_TRUE(desk.SetText(form.txt, "after"));
  EXPECT_TRUE(desk.SetText(form.cbo, "7"));
  EXPECT_TRUE(desk.Select(form.list, 1));
  EXPECT_TRUE(desk.Click(form.grid, 0, 1));
  EXPECT_TRUE(desk.Enter(form.grid, 2, 1, "0.5"));
  EXPECT_THAT(seen,
              ElementsAre("B chosen", "ticked", "left with after", "combo 7", "selected two", "cell 0 1", "entry 0.5"));
  EXPECT_FALSE(form.optA.value);
  EXPECT_TRUE(form.optOther.value) << "another group keeps its choice";
}

TEST_F(DeskTest, PlacesThatAreNotThereAreRefused) {
  desk.Show(form);
  EXPECT_FALSE(desk.Select(form.list, 2));
  EXPECT_FALSE(desk.Click(form.grid, 3, 0));
  EXPECT_FALSE(desk.DoubleClick(form.grid, 0, 2));
  EXPECT_FALSE(desk.Enter(form.grid, -1, 0, "x"));
  EXPECT_FALSE(desk.SelectRow(form.grid, 1)) << "this grid selects no rows";
  EXPECT_FALSE(desk.SetText(form.pane, "x")) << "this pane is for reading";
}

// Forms.

TEST_F(DeskTest, DesignStateComesBackOnReload) {
  desk.Show(form);
  form.cmdGo.text = "&Gone";
  form.cmdGo.toolTip = "tip";
  form.cmdGo.enabled = false;
  form.optA.value = form.chk.value = true;
  form.title = "Other";
  desk.Unload(form);
  EXPECT_EQ(form.unloads, 1);
  desk.Show(form);
  EXPECT_EQ(form.loads, 2);
  EXPECT_EQ(form.cmdGo.text, "&Go");
  EXPECT_EQ(form.cmdGo.toolTip, "");
  EXPECT_TRUE(form.cmdGo.enabled);
  EXPECT_FALSE(form.optA.value || form.chk.value);
  EXPECT_EQ(form.title, "Sample");
}

TEST_F(DeskTest, HostHearsOfForms) {
  desk.Show(form);
  desk.Show(form);
  desk.Hide(form);
  desk.Hide(form);
  desk.Unload(form);
  desk.Unload(form);
  EXPECT_THAT(host.windows.events,
              ElementsAre("shown frmSample", "front frmSample", "hidden frmSample", "unloaded frmSample"));
}

TEST_F(DeskTest, StatusIsToldWhenItChanges) {
  form.bar.Set(2, "working");
  form.bar.Set(2, "working");
  form.bar.Set(2, "");
  EXPECT_THAT(host.windows.events, ElementsAre("status bar 2 working", "status bar 2 "));
}

TEST_F(DeskTest, FrameClosesAFormUnlessItRefuses) {
  desk.Show(form);
  form.closes = false;
  EXPECT_TRUE(desk.Close(form));
  EXPECT_TRUE(form.Loaded());
  form.closes = true;
  EXPECT_TRUE(desk.Close(form));
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(desk.Close(form));
}

TEST_F(DeskTest, FrameDoesNotCloseAnInactiveForm) {
  Sample modal{desk, "frmModal"};
  desk.Show(form);
  desk.charge.Take(modal, Charge::Resting::Everything);
  EXPECT_FALSE(desk.Close(form));
  EXPECT_TRUE(form.Visible());
}

TEST_F(DeskTest, FrameDoesNotCloseAFormDuringACalculation) {
  desk.Show(form);
  host.windows.AtTurn(1, [&] { EXPECT_FALSE(desk.Close(form)); });
  form.cmdGo.onClick = [&] { desk.Turn(); };
  desk.Press(form.cmdGo);
  EXPECT_TRUE(form.Loaded());
  EXPECT_EQ(host.windows.turns, 1);
}

TEST_F(DeskTest, FormMayAllowItsCloseDuringACalculation) {
  desk.Show(form);
  form.closableWhileBusy = true;
  host.windows.AtTurn(1, [&] { EXPECT_TRUE(desk.Close(form)); });
  form.cmdGo.onClick = [&] { desk.Turn(); };
  desk.Press(form.cmdGo);
  EXPECT_FALSE(form.Loaded());
}

TEST_F(DeskTest, FormsAreFoundByTheirNames) {
  EXPECT_EQ(desk.Find("frmSample"), &form);
  EXPECT_EQ(desk.Find("frmOther"), nullptr);
  EXPECT_EQ(form.Find("txt"), &form.txt);
  EXPECT_EQ(form.Find("txtOther"), nullptr);
}

// Turns and waits.

TEST_F(DeskTest, TurnsNeverNest) {
  desk.Show(form);
  host.windows.AtTurn(1, [&] {
    desk.Turn();
    desk.Press(form.cmdStop);
  });
  form.cmdStop.onClick = [&] { desk.Turn(); };
  form.cmdGo.onClick = [&] {
    desk.Turn();
    desk.Turn();
  };
  desk.Press(form.cmdGo);
  EXPECT_EQ(host.windows.turns, 2);
}

TEST_F(DeskTest, WhileACommandWaitsOthersCanRun) {
  desk.Show(form);
  bool done = false;
  host.windows.AtWait([&] {
    EXPECT_FALSE(desk.Busy());
    EXPECT_TRUE(desk.SetText(form.txt, "typed"));
  });
  host.windows.AtWait([&] { done = true; });
  form.cmdGo.onClick = [&] {
    desk.WaitUntil([&] { return done; });
    EXPECT_TRUE(desk.Busy());
  };
  desk.Press(form.cmdGo);
  EXPECT_EQ(host.windows.waits, 2);
  EXPECT_EQ(form.txt.text, "typed");
}

// Ends and failures.

TEST_F(DeskTest, EndProgramUnwindsThroughAWait) {
  desk.Show(form);
  bool unwound = true;
  form.txt.onLeave = [] { throw EndProgram{}; };
  host.windows.AtWait([&] { desk.SetText(form.txt, "quit"); });
  form.cmdGo.onClick = [&] {
    desk.WaitUntil([] { return false; });
    unwound = false;
  };
  desk.Press(form.cmdGo);
  EXPECT_TRUE(unwound);
  EXPECT_TRUE(desk.Ended());
  EXPECT_EQ(host.windows.exitStatus, 0);
  EXPECT_FALSE(desk.Press(form.cmdGo)) << "nothing can be used behind the end";
}

TEST_F(DeskTest, FatalErrorEndsWithItsStatus) {
  desk.Show(form);
  form.cmdGo.onClick = [] { throw EndProgram{2}; };
  desk.Press(form.cmdGo);
  EXPECT_EQ(host.windows.exitStatus, 2);
}

/// Says what it was computed from, which may be half done when the program ends.
struct LabelOfTheRun : Pane {
  using Pane::Pane;
  void BringUpToDate() override { ++looks; }
  int looks = 0;
};

TEST_F(DeskTest, BehindTheEndNothingIsBroughtUpToDate) {
  Sample shown(desk);
  LabelOfTheRun label(shown, "label");
  desk.Show(shown);
  shown.cmdGo.onClick = [] {};
  desk.Press(shown.cmdGo);
  const int before = label.looks;
  EXPECT_GT(before, 0);
  shown.cmdGo.onClick = [] { throw EndProgram{2}; };
  desk.Press(shown.cmdGo);
  EXPECT_EQ(label.looks, before) << "what it would look at is of no run any more";
}

TEST_F(DeskTest, ClosingTheMainWindowDuringACalculationAsksBetweenTwoCalls) {
  Sample main(desk, "frmMain");
  main.leavesProgram = true;
  desk.Show(main);
  desk.Show(form);
  int asked = 0;
  bool unwound = true;
  desk.onCloseWhileBusy = [&] {
    if (++asked == 2) throw EndProgram{};
  };
  for (const int turn : {1, 2}) host.windows.AtTurn(turn, [&] { desk.Close(main); });
  form.cmdGo.onClick = [&] {
    desk.Turn();
    EXPECT_EQ(asked, 1) << "answered No: the calculation goes on";
    desk.Turn();
    unwound = false;
  };
  desk.Press(form.cmdGo);
  EXPECT_TRUE(unwound);
  EXPECT_TRUE(desk.Ended());
}

TEST_F(DeskTest, RunTimeFailureIsToldOnceAndTheFormIsUsableAgain) {
  desk.Show(form);
  std::vector<std::string> recovered;
  desk.onFailed = [&](Form& failed) { recovered.push_back(failed.name); };
  host.windows.ExpectFailure("frmSample.cmdGo: overflow");
  form.cmdGo.onClick = [&] { throw RuntimeFailure("overflow"); };
  EXPECT_TRUE(desk.Press(form.cmdGo));
  EXPECT_EQ(host.windows.failures.size(), 1U);
  EXPECT_THAT(recovered, ElementsAre("frmSample"));
  EXPECT_TRUE(desk.Usable(form.cmdGo));
  EXPECT_FALSE(desk.Ended());
}

TEST_F(DeskTest, FailureInsideAWaitLeavesTheWaitingCommandWaiting) {
  desk.Show(form);
  bool done = false;
  desk.onFailed = [](Form&) { FAIL() << "the waiting command still has the menu"; };
  form.txt.onLeave = [] { throw RuntimeFailure("no number"); };
  host.windows.ExpectFailure("no number");
  host.windows.AtWait([&] { desk.SetText(form.txt, "x"); });
  host.windows.AtWait([&] { done = true; });
  bool finished = false;
  form.cmdGo.onClick = [&] {
    desk.WaitUntil([&] { return done; });
    finished = true;
  };
  desk.Press(form.cmdGo);
  EXPECT_TRUE(finished);
}

TEST_F(DeskTest, FailureDuringATurnLeavesNoMarkBehind) {
  desk.Show(form);
  host.windows.ExpectFailure("lost");
  host.windows.AtTurn(1, [] { throw RuntimeFailure("lost"); });
  form.cmdGo.onClick = [&] { desk.Turn(); };
  desk.Press(form.cmdGo);
  EXPECT_FALSE(desk.Busy());
  desk.Press(form.cmdGo);
  EXPECT_EQ(host.windows.turns, 2) << "no turn inside a turn";
}

TEST_F(DeskTest, FailureDuringAWaitLeavesNoMarkBehind) {
  desk.Show(form);
  host.windows.ExpectFailure("lost");
  host.windows.AtWait([] { throw RuntimeFailure("lost"); });
  form.cmdGo.onClick = [&] {
    try {
      desk.WaitUntil([] { return false; });
    } catch (const RuntimeFailure&) {
      EXPECT_TRUE(desk.Busy()) << "waits no longer";
      throw;
    }
  };
  desk.Press(form.cmdGo);
  EXPECT_FALSE(desk.Busy());
}

}  // namespace
}  // namespace merlane
