#include "batch/batch_run.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/runtime_failure.h"
#include "forms/form.h"

namespace merlane {
namespace {

using nlohmann::json;

/// A form with one control of each kind, whose handlers write down what reached them.
class FrmTest : public Form {
 public:
  FrmTest(Desk& d, std::vector<std::string>& toldTo) : Form(d, "frmTest", "A test"), told(toldTo) {
    cmdGo.onClick = [this] { told.push_back("go"); };
    cmdLoop.onClick = [this] { Loop(); };
    cmdStop.offeredWhileBusy = true;
    cmdStop.onClick = [this] {
      told.push_back("stop");
      stopped = true;
    };
    cmdFail.onClick = [] { throw RuntimeFailure("overflow"); };
    cmdFatal.onClick = [] { throw EndProgram{2}; };
    cmdQuit.onClick = [this] {
      if (desk.Ask("Exit", "Do you want to quit?", style::YesNoQuestionDefaultNo) == Answer::Yes) throw EndProgram{0};
    };
    optOne.onClick = [this] { told.push_back("one"); };
    chkBox.onClick = [this] { told.push_back(chkBox.value ? "ticked" : "cleared"); };
    txtText.onLeave = [this] { told.push_back("text " + txtText.text); };
    txtAsk.onClick = [this] { told.push_back("asked " + desk.Input("Number", "How many?", "7")); };
    cboCombo.onChange = [this] { told.push_back("combo " + cboCombo.text); };
    lstList.items = {"a", "b"};
    lstList.onSelect = [this] { told.push_back("list " + std::to_string(lstList.selected)); };
    lstList.onDoubleClick = [this] { told.push_back("chosen " + std::to_string(lstList.selected)); };
    grdGrid.Resize(4, 2);
    grdGrid.headingRows = 2;
    grdGrid.selectsRows = true;
    grdGrid.onClick = [this](int row, int column) { Tell("click", row, column); };
    grdGrid.onDoubleClick = [this](int row, int column) { Tell("double", row, column); };
    grdGrid.onEntry = [this](int row, int column, const std::string& entry) { Tell("entry " + entry, row, column); };
    mnuEntry.onClick = [this] { told.push_back("menu"); };
    drawing.drawing.right = 15;
    drawing.drawing.bottom = 15;
  }

  std::vector<std::string>& told;
  Button cmdGo{*this, "cmdGo", "&Go"};
  Button cmdLoop{*this, "cmdLoop", "Loop"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  Button cmdFail{*this, "cmdFail", "Fail"};
  Button cmdFatal{*this, "cmdFatal", "Fatal"};
  Button cmdQuit{*this, "cmdQuit", "Quit"};
  Button cmdAsk{*this, "cmdAsk", "Ask"};
  OptionButton optOne{*this, "optOne", "One"};
  CheckBox chkBox{*this, "chkBox", "Box"};
  TextBox txtText{*this, "txtText", ""};
  TextBox txtAsk{*this, "txtAsk", ""};
  ComboBox cboCombo{*this, "cboCombo", ""};
  ListBox lstList{*this, "lstList"};
  Grid grdGrid{*this, "grdGrid"};
  Pane rtbPane{*this, "rtbPane"};
  MenuEntry mnuMenu{*this, "mnuMenu", "&Menu"};
  MenuEntry mnuEntry{*this, "mnuEntry", "&Entry", &mnuMenu};
  StatusBar stbBar{*this, "stbBar", 2};
  Canvas drawing{*this, "drawing"};
  bool stopped = false;

 private:
  void Tell(const std::string& what, int row, int column) {
    told.push_back(what + " " + std::to_string(row) + "," + std::to_string(column));
  }
  void Loop() {
    stopped = false;
    for (int i = 1; i <= 10 && !stopped; ++i) {
      stbBar.Set(1, "pass " + std::to_string(i));
      desk.Turn();
    }
  }
};

/// A second form, which a command of the first may wait for.
class FrmOther : public Form {
 public:
  explicit FrmOther(Desk& d) : Form(d, "frmOther", "Another") {
    cmdOk.onClick = [this] { desk.Unload(*this); };
  }
  Button cmdOk{*this, "cmdOk", "&OK"};
  Button cmdGo{*this, "cmdGo", "&Go"};
};

class BatchRunTest : public testing::Test {
 protected:
  /// Plays `text` and returns its exit status.
  int Run(const std::string& text) {
    told.clear();
    std::ostringstream out, people;
    JsonTranscript transcript(out);
    BatchRun run(ParseBatch(text), {"data", folder}, transcript);
    Desk desk(run.MachineHost());
    FrmTest form(desk, told);
    FrmOther other(desk);
    form.cmdAsk.onClick = [&] { command(form, other); };
    const int status = run.Play(
        desk, [&] { desk.Show(form); },
        [](const std::string& what) {
          return Exported{"exported " + what, "a note on " + what};
        });
    problem = run.Problem();
    lines.clear();
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line));
    return status;
  }

  /// All values of the lines that have that key.
  std::vector<json> All(const std::string& key) const {
    std::vector<json> found;
    for (const json& line : lines)
      if (line.contains(key)) found.push_back(line[key]);
    return found;
  }
  std::string End() const { return lines.back().value("end", ""); }
  std::string Contents(const std::string& name) const {
    std::ifstream in(folder + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::function<void(FrmTest&, FrmOther&)> command = [](FrmTest&, FrmOther&) {};
  std::vector<std::string> told;
  std::vector<json> lines;
  std::string problem;
  const std::string folder = testing::TempDir() + "merlane_batch_run";

  void SetUp() override {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }
};

using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(BatchRunTest, AnEmptyFileEndsAtOnce) {
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(lines, (std::vector<json>{{{"window", "frmTest"}, {"event", "shown"}}, {{"end", "end of file"}}}));
}

TEST_F(BatchRunTest, ActionsReachTheirHandlers) {
  EXPECT_EQ(Run("press frmTest.cmdGo\n"
                "press mnuEntry\n"
                "choose optOne\n"
                "tick frmTest.chkBox\n"
                "untick chkBox\n"
                "set txtText \"a b\"\n"
                "set frmTest.cboCombo 5\n"),
            0);
  EXPECT_THAT(told, ElementsAre("go", "menu", "one", "ticked", "cleared", "text a b", "combo 5"));
  EXPECT_EQ(lines[1], (json{{"action", "press frmTest.cmdGo"}, {"line", 1}}));
  EXPECT_EQ(lines.back(), (json{{"end", "end of file"}}));
}

TEST_F(BatchRunTest, RowsAreCountedAsAPersonCounts) {
  EXPECT_EQ(Run("select lstList 2\n"
                "doubleclick lstList\n"
                "select grdGrid 1\n"
                "click grdGrid 0 1\n"
                "doubleclick grdGrid 3 0\n"
                "type grdGrid 2 1 0.5\n"),
            0);
  EXPECT_THAT(told,
              ElementsAre("list 1", "chosen 1", "click 2,0", "click 0,1", "double 3,0", "double 2,1", "entry 0.5 2,1"));
}

TEST_F(BatchRunTest, ATextBoxThatAsksIsPressed) {
  EXPECT_EQ(Run("press txtAsk\nenter 12 at \"Number\"\npress txtAsk\nenter\n"), 0);
  EXPECT_THAT(told, ElementsAre("asked 12", "asked "));
  EXPECT_EQ(All("input")[0], (json{{"title", "Number"}, {"prompt", "How many?"}, {"default", "7"}, {"answer", "12"}}));
}

TEST_F(BatchRunTest, ActionsOnWhatCannotBeUsedStopTheRun) {
  const auto problemOf = [&](const std::string& text) {
    EXPECT_EQ(Run(text), 1) << text;
    EXPECT_EQ(End(), "stopped");
    return problem;
  };
  EXPECT_EQ(problemOf("\npress frmNone.cmdGo"), "line 2: press frmNone.cmdGo: there is no form frmNone");
  EXPECT_EQ(problemOf("press frmOther.cmdOk"), "line 1: press frmOther.cmdOk: frmOther is not open");
  EXPECT_EQ(problemOf("press frmTest.cmdNone"), "line 1: press frmTest.cmdNone: frmTest has no control cmdNone");
  EXPECT_EQ(problemOf("press cmdNone"), "line 1: press cmdNone: no open form has a control cmdNone");
  EXPECT_EQ(problemOf("press frmTest.txtText"), "line 1: press frmTest.txtText: txtText is no button or menu entry");
  EXPECT_EQ(problemOf("choose frmTest.cmdGo"), "line 1: choose frmTest.cmdGo: frmTest.cmdGo is no option button");
  EXPECT_EQ(problemOf("tick cmdGo"), "line 1: tick cmdGo: cmdGo is no check box");
  EXPECT_EQ(problemOf("set cmdGo x"), "line 1: set cmdGo x: cmdGo is no text box or combo box");
  EXPECT_EQ(problemOf("set rtbPane x"), "line 1: set rtbPane x: rtbPane is for reading only");
  EXPECT_EQ(problemOf("select txtText 1"), "line 1: select txtText 1: txtText is no list or selecting grid");
  EXPECT_EQ(problemOf("select lstList 3"), "line 1: select lstList 3: lstList has no such row");
  EXPECT_EQ(problemOf("select grdGrid 3"), "line 1: select grdGrid 3: grdGrid has no such cell");
  EXPECT_EQ(problemOf("select grdGrid 2147483647"), "line 1: select grdGrid 2147483647: grdGrid has no such cell");
  EXPECT_EQ(problemOf("click grdGrid 4 0"), "line 1: click grdGrid 4 0: grdGrid has no such cell");
  EXPECT_EQ(problemOf("click lstList 1 1"), "line 1: click lstList 1 1: lstList is no grid");
  EXPECT_EQ(problemOf("doubleclick lstList"), "line 1: doubleclick lstList: no row of lstList is selected");
  EXPECT_EQ(problemOf("close frmOther"), "line 1: close frmOther: frmOther is not open");
  EXPECT_EQ(problemOf("show frmOther"), "line 1: show frmOther: frmOther is not open");
  EXPECT_EQ(problemOf("save-text cmdGo x.txt"), "line 1: save-text cmdGo x.txt: cmdGo is no text pane");
}

TEST_F(BatchRunTest, TheMessageSaysWhyAControlCannotBeUsed) {
  const auto problemOf = [&](const std::function<void(FrmTest&)>& change, const std::string& action) {
    command = [&](FrmTest& form, FrmOther&) { change(form); };
    EXPECT_EQ(Run("press cmdAsk\n" + action), 1);
    return problem;
  };
  const auto rest = [](FrmTest& f) { f.desk.charge.Take(*f.desk.Find("frmOther"), Charge::Resting::Everything); };
  EXPECT_EQ(problemOf([](FrmTest& f) { f.cmdGo.enabled = false; }, "press cmdGo"),
            "line 2: press cmdGo: cmdGo is not enabled");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.cmdGo.visible = false; }, "press cmdGo"),
            "line 2: press cmdGo: cmdGo is not visible");
  EXPECT_EQ(problemOf(rest, "press cmdGo"), "line 2: press cmdGo: frmTest takes no input now");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.desk.Hide(f); }, "press cmdGo"), "line 2: press cmdGo: frmTest is not shown");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.desk.Hide(f); }, "close frmTest"),
            "line 2: close frmTest: frmTest is not shown");
  EXPECT_EQ(problemOf(rest, "close frmTest"), "line 2: close frmTest: frmTest takes no input now");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.mnuMenu.enabled = false; }, "press mnuEntry"),
            "line 2: press mnuEntry: the menu mnuMenu is not enabled or not visible");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.txtText.readOnly = true; }, "set txtText x"),
            "line 2: set txtText x: txtText is for reading only");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.rtbPane.visible = false; }, "save-text rtbPane x.txt"),
            "line 2: save-text rtbPane x.txt: rtbPane is not visible");
  EXPECT_EQ(problemOf([](FrmTest& f) { f.drawing.visible = false; }, "save-plot frmTest x.svg"),
            "line 2: save-plot frmTest x.svg: frmTest shows no drawing");
}

TEST_F(BatchRunTest, AControlIsNamedAloneOnlyWhenOneLoadedFormHasIt) {
  command = [](FrmTest& form, FrmOther& other) { form.desk.Show(other); };
  EXPECT_EQ(Run("press cmdGo\npress cmdAsk\npress cmdGo\n"), 1);
  EXPECT_THAT(told, ElementsAre("go"));
  EXPECT_EQ(problem, "line 3: press cmdGo: frmTest and frmOther both have a control cmdGo");
}

TEST_F(BatchRunTest, AQuestionTakesTheNextLineAsItsAnswer) {
  Answer answer{};
  command = [&](FrmTest& form, FrmOther&) {
    answer = form.desk.Ask("Sure", "Go on?", style::YesNoCancelQuestion, "d");
  };
  EXPECT_EQ(Run("press cmdAsk\nreply no at \"Sure\"\n"), 0);
  EXPECT_EQ(answer, Answer::No);
  EXPECT_EQ(All("message")[0],
            (json{{"title", "Sure"}, {"text", "Go on?"}, {"style", 35}, {"answer", 7}, {"details", "d"}}));
  EXPECT_EQ(Run("press cmdAsk\nreply cancel\n"), 0);
  EXPECT_EQ(answer, Answer::Cancel);
}

TEST_F(BatchRunTest, AQuestionWithoutAnAnswerStopsTheRun) {
  command = [](FrmTest& form, FrmOther&) { form.desk.Ask("Sure", "Go\r\non?", style::YesNoQuestion); };
  EXPECT_EQ(Run("press cmdAsk\n"), 3);
  EXPECT_EQ(problem, "line 1: press cmdAsk: a question has no answer: \"Sure\": \"Go\\non?\"");
  EXPECT_EQ(End(), "stopped");
  EXPECT_EQ(Run("press cmdAsk\npress cmdGo\nreply yes\n"), 3);
  EXPECT_TRUE(told.empty());
}

TEST_F(BatchRunTest, AnAnswerWithoutAQuestionStopsTheRun) {
  EXPECT_EQ(Run("press cmdGo\nreply yes\n"), 1);
  EXPECT_EQ(problem, "line 2: reply yes: an answer without a question");
  EXPECT_EQ(Run("enter 3\n"), 1);
  EXPECT_EQ(Run("file x\n"), 1);
}

TEST_F(BatchRunTest, AnAnswerThatDoesNotFitItsQuestionStopsTheRun) {
  command = [](FrmTest& form, FrmOther&) { form.desk.Ask("Sure", "Go on?", style::YesNoQuestion); };
  EXPECT_EQ(Run("press cmdAsk\nreply yes at \"Quite sure\"\n"), 1);
  EXPECT_EQ(problem, "line 2: reply yes at \"Quite sure\": does not answer the question \"Sure\": \"Go on?\"");
  EXPECT_EQ(Run("press cmdAsk\nenter yes\n"), 1);
  EXPECT_EQ(Run("press cmdAsk\nreply cancel\n"), 1);
  EXPECT_EQ(problem, "line 2: reply cancel: the question offers no such button: \"Sure\": \"Go on?\"");
  EXPECT_EQ(Run("press cmdAsk\nreply ok\n"), 1);
}

TEST_F(BatchRunTest, ABoxThatOffersOkAloneNeedsNoAnswerAndMayHaveOne) {
  command = [](FrmTest& form, FrmOther&) {
    form.desk.Tell("Note", "Done.", style::Information);
    form.desk.Tell("Critical", "Bad.", style::Critical);
    form.desk.Tell("Minimum", "Found.", style::InformationCritical);
  };
  EXPECT_EQ(Run("press cmdAsk\npress cmdGo\n"), 0);
  EXPECT_EQ(All("message").size(), 3U);
  EXPECT_EQ(All("message")[2]["answer"], 1);
  EXPECT_EQ(Run("press cmdAsk\nreply ok at \"Note\"\nreply ok\npress cmdGo\n"), 0);
  EXPECT_EQ(Run("press cmdAsk\nreply ok\nreply ok\nreply ok\n"), 0);
  EXPECT_EQ(Run("press cmdAsk\nreply ok\nreply ok\nreply ok\nreply ok\n"), 1);
  EXPECT_EQ(Run("press cmdAsk\nreply ok at \"Notice\"\n"), 1);
  EXPECT_EQ(Run("press cmdAsk\npress cmdGo\nreply ok\n"), 1);
  EXPECT_EQ(Run("press cmdAsk\nreply yes\n"), 1);
}

TEST_F(BatchRunTest, WhatABoxOffersBesideOkIsTakenByALineForItAlone) {
  int taken = 0;
  command = [&](FrmTest& form, FrmOther&) {
    form.desk.Tell("Note", "Done.", style::Information);
    if (form.desk.TellAndOffer({"Data", "Odd.", style::Information, "", "Mend..."})) ++taken;
  };
  EXPECT_EQ(Run("press cmdAsk\npress cmdGo\n"), 0);
  EXPECT_EQ(taken, 0);
  EXPECT_EQ(All("message")[1],
            (json{{"title", "Data"}, {"text", "Odd."}, {"style", 64}, {"answer", 1}, {"offer", "Mend..."}}));
  EXPECT_EQ(Run("press cmdAsk\nreply ok\nreply ok\n"), 0);
  EXPECT_EQ(taken, 0);
  EXPECT_EQ(Run("press cmdAsk\nreply ok at \"Note\"\nreply offer at \"Data\"\npress cmdGo\n"), 0);
  EXPECT_EQ(taken, 1);
  EXPECT_EQ(All("message")[1]["answer"], 8);
  EXPECT_EQ(Run("press cmdAsk\nreply offer\n"), 0);
  EXPECT_EQ(taken, 2);
  EXPECT_EQ(Run("press cmdAsk\nreply offer at \"Other\"\n"), 1);
  EXPECT_EQ(Run("press cmdAsk\nreply offer\nreply offer\n"), 1) << "it is offered once";
}

TEST_F(BatchRunTest, AnOkForABoxBeforeAQuestionDoesNotAnswerTheQuestion) {
  Answer answer{};
  command = [&](FrmTest& form, FrmOther&) {
    form.desk.Tell("Note", "Done.", style::Information);
    answer = form.desk.Ask("Sure", "Go on?", style::YesNoQuestion);
  };
  EXPECT_EQ(Run("press cmdAsk\nreply ok\nreply yes\n"), 0);
  EXPECT_EQ(answer, Answer::Yes);
  command = [&](FrmTest& form, FrmOther&) {
    form.desk.Tell("Note", "Done.", style::Information);
    answer = form.desk.Ask("Sure", "Go on?", style::OkCancelInformation);
  };
  EXPECT_EQ(Run("press cmdAsk\nreply ok at \"Note\"\nreply cancel\n"), 0);
  EXPECT_EQ(answer, Answer::Cancel);
  EXPECT_EQ(Run("press cmdAsk\nreply ok\n"), 0);
  EXPECT_EQ(answer, Answer::Ok);
  EXPECT_EQ(Run("press cmdAsk\nreply ok\nreply ok\n"), 0);
}

TEST_F(BatchRunTest, FilesAreReadBesideTheBatchFileAndWrittenToTheOutputFolder) {
  std::vector<std::string> paths;
  command = [&](FrmTest& form, FrmOther&) {
    for (const auto kind : {FileRequest::Kind::Open, FileRequest::Kind::Save}) {
      const auto path = form.desk.AskFile({kind, "Which", "All|*.*", 1, "start"});
      paths.push_back(path.value_or("none"));
    }
  };
  EXPECT_EQ(Run("press cmdAsk\nfile a.dat at \"Which\"\nfile b.dat\n"
                "press cmdAsk\nfile /x/a.dat\nfile cancel\n"),
            0);
  EXPECT_THAT(paths, ElementsAre("data/a.dat", folder + "/b.dat", "/x/a.dat", "none"));
  EXPECT_EQ(All("file")[0], (json{{"kind", "open"},
                                  {"title", "Which"},
                                  {"filter", "All|*.*"},
                                  {"default", "start"},
                                  {"answer", "data/a.dat"}}));
  EXPECT_EQ(All("file")[3]["answer"], "");
  EXPECT_EQ(All("file")[3]["kind"], "save");
}

TEST(InFolderTest, APathFromADialogAlwaysHasASeparator) {
  EXPECT_EQ(InFolder(".", "a.dat"), "./a.dat");
  EXPECT_EQ(InFolder("/", "a.dat"), "/a.dat");
  EXPECT_EQ(InFolder("x", "y/a.dat"), "x/y/a.dat");
  EXPECT_EQ(InFolder("x", "/a.dat"), "/a.dat");
}

TEST_F(BatchRunTest, WhileACommandWaitsTheNextLinesActOnItsForm) {
  command = [&](FrmTest& form, FrmOther& other) {
    form.desk.Show(other);
    form.desk.WaitUntil([&] { return !other.Visible(); });
    told.push_back("waited");
  };
  EXPECT_EQ(Run("press cmdAsk\npress frmTest.cmdGo\npress frmOther.cmdOk\npress frmTest.cmdGo\n"), 0);
  EXPECT_THAT(told, ElementsAre("go", "waited", "go"));
  EXPECT_EQ(Run("press cmdAsk\nclose frmOther\n"), 0);
  EXPECT_THAT(told, ElementsAre("waited"));
}

TEST_F(BatchRunTest, AWaitAtTheEndOfTheFileEndsTheRun) {
  command = [&](FrmTest& form, FrmOther& other) {
    form.desk.Show(other);
    form.desk.WaitUntil([&] { return !other.Visible(); });
    told.push_back("waited");
  };
  EXPECT_EQ(Run("press cmdAsk\n"), 0);
  EXPECT_EQ(End(), "end of file");
  EXPECT_TRUE(told.empty());
}

TEST_F(BatchRunTest, AnInterruptPressesAtTheTurnOfTheNextCommand) {
  EXPECT_EQ(Run("interrupt frmTest.cmdStop at 3\npress cmdLoop\n"), 0);
  EXPECT_THAT(told, ElementsAre("stop"));
  EXPECT_EQ(All("status").size(), 3U);
  EXPECT_EQ(All("status")[2], (json{{"bar", "stbBar"}, {"panel", 1}, {"text", "pass 3"}}));
  const auto actions = All("action");
  EXPECT_THAT(actions, ElementsAre("interrupt frmTest.cmdStop at 3", "press cmdLoop", "press frmTest.cmdStop"));
}

TEST_F(BatchRunTest, AnInterruptWhoseTurnDoesNotComeLapses) {
  EXPECT_EQ(Run("interrupt cmdStop at 11\npress cmdLoop\npress cmdLoop\n"), 0);
  EXPECT_TRUE(told.empty());
}

TEST_F(BatchRunTest, AnInterruptIsMeantForTheNextCommandAlone) {
  EXPECT_EQ(Run("interrupt cmdStop at 2\npress cmdGo\npress cmdLoop\n"), 0);
  EXPECT_THAT(told, ElementsAre("go"));
  EXPECT_EQ(Run("interrupt cmdStop at 2\nclock 2024-06-01 10:30:00\npress cmdLoop\n"), 0);
  EXPECT_THAT(told, ElementsAre("stop"));
}

TEST_F(BatchRunTest, AnInterruptArmedWhileACommandWaitsCountsItsLaterTurns) {
  command = [&](FrmTest& form, FrmOther& other) {
    form.desk.Show(other);
    form.desk.WaitUntil([&] { return !other.Visible(); });
    for (int i = 0; i < 3; ++i) form.desk.Turn();
  };
  EXPECT_EQ(Run("press cmdAsk\ninterrupt cmdStop at 3\npress cmdOk\n"), 0);
  EXPECT_THAT(told, ElementsAre("stop"));
}

TEST_F(BatchRunTest, AnInterruptOfWhatIsNotOfferedStopsTheRun) {
  EXPECT_EQ(Run("\ninterrupt cmdGo at 2\npress cmdLoop\n"), 1);
  EXPECT_EQ(problem, "line 2: press cmdGo: cmdGo is not offered while a calculation runs");
}

TEST_F(BatchRunTest, AnInterruptMayCloseTheMainWindowAndAnswerWhatThatAsks) {
  command = [](FrmTest& form, FrmOther&) {
    Form main(form.desk, "frmMain", "");
    main.leavesProgram = true;
    form.desk.Show(main);
    int asked = 0;
    form.desk.onCloseWhileBusy = [&] {
      ++asked;
      form.told.push_back(form.desk.Ask("Exit", "", style::YesNoQuestion) == Answer::No ? "stays" : "goes");
    };
    for (int i = 0; i < 5; ++i) form.desk.Turn();
    EXPECT_EQ(asked, 1);
    form.desk.onCloseWhileBusy = nullptr;
  };
  EXPECT_EQ(Run("interrupt close frmMain at 3\npress cmdAsk\nreply no at \"Exit\"\n"), 0);
  EXPECT_THAT(told, ElementsAre("stays"));
  EXPECT_EQ(Run("interrupt close frmTest at 3\npress cmdLoop\n"), 1);
  EXPECT_EQ(problem, "line 1: close frmTest: frmTest cannot be closed while a calculation runs");
}

TEST_F(BatchRunTest, AFailureIsToldAndTheRunGoesOn) {
  EXPECT_EQ(Run("press cmdFail\npress cmdGo\n"), 4);
  EXPECT_THAT(All("failure"), ElementsAre("frmTest.cmdFail: overflow"));
  EXPECT_THAT(told, ElementsAre("go"));
  EXPECT_EQ(End(), "end of file");
}

TEST_F(BatchRunTest, AProgramThatIsQuitEndsTheRun) {
  EXPECT_EQ(Run("press cmdQuit\nreply no\npress cmdQuit\nreply yes\npress cmdGo\n"), 0);
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(End(), "quit");
  EXPECT_EQ(Run("press cmdFail\npress cmdQuit\nreply yes\n"), 4);
}

TEST_F(BatchRunTest, AFatalErrorEndsTheRun) {
  EXPECT_EQ(Run("press cmdFatal\npress cmdGo\n"), 2);
  EXPECT_EQ(End(), "fatal");
  EXPECT_EQ(Run("press cmdFail\npress cmdFatal\n"), 2);
}

TEST_F(BatchRunTest, AFatalErrorInsideAWaitEndsTheRun) {
  command = [&](FrmTest& form, FrmOther& other) {
    form.desk.Show(other);
    form.desk.WaitUntil([&] { return !other.Visible(); });
    told.push_back("waited");
  };
  EXPECT_EQ(Run("press cmdAsk\npress cmdFatal\npress cmdGo\n"), 2);
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(End(), "fatal");
}

TEST_F(BatchRunTest, TheClockStandsAndTheSeedIsSet) {
  DateTime now;
  double first = 0;
  command = [&](FrmTest& form, FrmOther&) {
    now = form.desk.host.clock.Now();
    first = form.desk.host.random.Uniform();
  };
  EXPECT_EQ(Run("clock 2024-06-01 10:30:15\nseed 7\npress cmdAsk\n"), 0);
  EXPECT_EQ(now.year, 2024);
  EXPECT_EQ(now.minute, 30);
  EXPECT_EQ(now.second, 15);
  EXPECT_EQ(first, RandomStream(7, 0).Uniform());
}

TEST_F(BatchRunTest, TextsPlotsAndExportsAreWrittenToTheOutputFolder) {
  command = [](FrmTest& form, FrmOther&) { form.rtbPane.text = "one\r\ntwo\xE9"; };
  EXPECT_EQ(Run("press cmdAsk\nsave-text rtbPane a.txt\nsave-plot frmTest b.svg\nexport fit c.json\n"), 0);
  EXPECT_EQ(Contents("a.txt"), "one\r\ntwo\xE9");
  EXPECT_THAT(Contents("b.svg"), HasSubstr("<svg "));
  EXPECT_EQ(Contents("c.json"), "exported fit");
  EXPECT_THAT(All("note"), ElementsAre("a note on fit"));
  EXPECT_THAT(All("wrote"), ElementsAre(folder + "/a.txt", folder + "/b.svg", folder + "/c.json"));
}

TEST_F(BatchRunTest, AFileThatCannotBeWrittenIsAFailure) {
  EXPECT_EQ(Run("save-text rtbPane none/a.txt\npress cmdGo\n"), 4);
  EXPECT_THAT(All("failure")[0].get<std::string>(), HasSubstr("none/a.txt: No such file or directory"));
  EXPECT_THAT(told, ElementsAre("go"));
}

TEST_F(BatchRunTest, ShowWritesTheStateOfEachControl) {
  EXPECT_EQ(Run("tick chkBox\nselect lstList 1\nshow frmTest\n"), 0);
  const json form = All("form")[0];
  EXPECT_EQ(form["name"], "frmTest");
  EXPECT_EQ(form["title"], "A test");
  EXPECT_EQ(form["controls"]["cmdGo"], (json{{"caption", "&Go"}, {"enabled", true}, {"visible", true}}));
  EXPECT_EQ(form["controls"]["txtText"], (json{{"text", ""}, {"enabled", true}, {"visible", true}}));
  EXPECT_EQ(form["controls"]["chkBox"]["value"], true);
  EXPECT_EQ(form["controls"]["lstList"]["items"], (json{"a", "b"}));
  EXPECT_EQ(form["controls"]["lstList"]["selected"], 1);
  EXPECT_EQ(form["controls"]["grdGrid"]["cells"].size(), 4U);
  EXPECT_EQ(form["controls"]["stbBar"]["panels"], (json{"", ""}));
}

TEST_F(BatchRunTest, BytesThatAreNoUtf8StandInTheTranscriptAsLatin1) {
  command = [](FrmTest& form, FrmOther&) { form.desk.Tell("T", "caf\xE9", style::Ok); };
  EXPECT_EQ(Run("press cmdAsk\n"), 0);
  EXPECT_EQ(All("message")[0]["text"], "caf\xC3\xA9");
}

}  // namespace
}  // namespace merlane
