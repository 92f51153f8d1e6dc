// Every kind of control against its widget, on a form made for it.
#include <gmock/gmock.h>

#include <chrono>

#include "control/frm_menu.h"
#include "ui/form_window.h"
#include "ui/hand.h"
#include "ui/main_window.h"
#include "ui/paint_drawing.h"
#include "ui/qt_desk.h"
#include "ui/questions.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

class FrmDemo : public Form {
 public:
  explicit FrmDemo(Desk& d) : Form(d, "frmDemo", "Demonstration") {
    readOnlyBox.readOnly = true;
    readOnlyBox.onClick = [this] { log.push_back("click"); };
    button.onClick = [this] { log.push_back("press"); };
    button.toolTip = "Does nothing";
    box.onLeave = [this] { log.push_back("leave " + box.text); };
    combo.items = {"1995", "1996", "2010"};
    combo.onChange = [this] { log.push_back("combo " + combo.text); };
    list.items = {"first", "second", "third"};
    list.onSelect = [this] { log.push_back("select " + std::to_string(list.selected)); };
    list.onDoubleClick = [this] { log.push_back("double"); };
    tick.onClick = [this] { log.push_back(tick.value ? "ticked" : "cleared"); };
    two.onClick = [this] { log.push_back("two"); };
    one.value = true;
    grid.Resize(6, 3);
    for (int column = 0; column < 3; ++column) grid.At(0, column).text = "Heading " + std::to_string(column);
    for (int row = 1; row < 6; ++row)
      for (int column = 0; column < 3; ++column) grid.At(row, column).text = std::to_string(10 * row + column);
    grid.typedColumns = {false, true, false};
    grid.onDoubleClick = [this](int row, int column) {
      log.push_back("double " + std::to_string(row) + " " + std::to_string(column));
    };
    grid.onEntry = [this](int row, int column, const std::string& entry) {
      log.push_back("entry " + std::to_string(row) + " " + std::to_string(column) + " " + entry);
      if (!entry.empty()) grid.At(row, column) = {entry, Colour::Red, Colour::Default};
    };
    edited.readOnly = false;
    edited.text = "one\r\ntwo";
  }

  Label label{*this, "lblBox", "A box:"};
  TextBox box{*this, "txtBox", "start"};
  TextBox readOnlyBox{*this, "txtReadOnly", "click me"};
  ComboBox combo{*this, "cboYear", "1995"};
  OptionButton one{*this, "optOne", "&One"};
  OptionButton two{*this, "optTwo", "&Two"};
  CheckBox tick{*this, "chkTick", "T&ick"};
  ListBox list{*this, "lstItems"};
  Grid grid{*this, "grdCells"};
  Pane edited{*this, "rtbEdited"};
  Canvas canvas{*this, "picture"};
  Button button{*this, "cmdGo", "&Go  on"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  std::vector<std::string> log;
};

struct BinderTest : ::testing::Test, test::QtDesk {
  FrmDemo demo{desk};
  Windows windows{desk};
  test::Hand hand{windows};

  BinderTest() {
    host.Use(&windows);
    desk.Show(main);
    desk.Show(demo);
    windows.Sync();
    QCoreApplication::processEvents();
  }
  ~BinderTest() override { host.Use(nullptr); }
};

TEST_F(BinderTest, ButtonIsPressedAndShowsItsState) {
  hand.Press("frmDemo", "cmdGo");
  EXPECT_THAT(demo.log, ElementsAre("press"));
  auto* const button = hand.Find<QPushButton>("frmDemo", "cmdGo");
  EXPECT_EQ(button->text(), "&Go on");
  EXPECT_EQ(button->toolTip(), "Does nothing");
  demo.button.text = "&Stop";
  demo.button.enabled = false;
  windows.Sync();
  EXPECT_EQ(button->text(), "&Stop");
  EXPECT_FALSE(button->isEnabled());
  demo.button.visible = false;
  windows.Sync();
  EXPECT_TRUE(button->isHidden());
}

TEST_F(BinderTest, LabelTakesItsColour) {
  auto* const label = hand.Find<QLabel>("frmDemo", "lblBox");
  const QColor usual = label->palette().color(QPalette::WindowText);
  demo.label.fore = Colour::Blue;
  windows.Sync();
  EXPECT_NE(label->palette().color(QPalette::WindowText), usual);
  demo.label.fore = Colour::Default;
  windows.Sync();
  EXPECT_EQ(label->palette().color(QPalette::WindowText), usual);
}

TEST_F(BinderTest, TextIsHandedOverWhenTheBoxIsLeft) {
  hand.Type("frmDemo", "txtBox", "typed");
  EXPECT_EQ(demo.box.text, "typed");
  EXPECT_THAT(demo.log, ElementsAre("leave typed"));
}

TEST_F(BinderTest, WhatAFormWritesShowsAndIsNoEntry) {
  demo.box.text = "written";
  demo.combo.text = "1996";
  demo.list.selected = 2;
  demo.two.value = true;
  demo.one.value = false;
  demo.tick.value = true;
  windows.Sync();
  EXPECT_EQ(hand.Find<QLineEdit>("frmDemo", "txtBox")->text(), "written");
  EXPECT_EQ(hand.Find<QComboBox>("frmDemo", "cboYear")->currentText(), "1996");
  EXPECT_EQ(hand.Find<QListWidget>("frmDemo", "lstItems")->currentRow(), 2);
  EXPECT_TRUE(hand.Find<QRadioButton>("frmDemo", "optTwo")->isChecked());
  EXPECT_FALSE(hand.Find<QRadioButton>("frmDemo", "optOne")->isChecked());
  EXPECT_TRUE(hand.Find<QCheckBox>("frmDemo", "chkTick")->isChecked());
  EXPECT_TRUE(demo.log.empty());
}

TEST_F(BinderTest, TextInTheBoxIsHandedOverBeforeAnAcceleratorPresses) {
  auto* const box = hand.Find<QLineEdit>("frmDemo", "txtBox");
  box->setFocus();
  box->selectAll();
  QTest::keyClicks(box, "new");
  hand.Key("frmDemo", Qt::Key_G, Qt::AltModifier);
  QTest::qWait(200);  // a button that is pressed by its accelerator stays down for a moment
  EXPECT_THAT(demo.log, ElementsAre("leave new", "press"));
}

TEST_F(BinderTest, ReadOnlyBoxIsClickedByMouseAndKeyboard) {
  auto* const box = hand.Find<QLineEdit>("frmDemo", "txtReadOnly");
  QTest::mouseClick(box, Qt::LeftButton);
  QTest::keyClick(box, Qt::Key_Space);
  EXPECT_THAT(demo.log, ElementsAre("click", "click"));
  QTest::keyClicks(box, "xyz");
  EXPECT_EQ(demo.readOnlyBox.text, "click me");
  EXPECT_EQ(box->text(), "click me");
}

TEST_F(BinderTest, ComboTakesWhatIsTypedAndWhatIsPicked) {
  hand.Type("frmDemo", "cboYear", "199");  // not completed to 1995
  EXPECT_EQ(demo.combo.text, "199");
  auto* const combo = hand.Find<QComboBox>("frmDemo", "cboYear");
  combo->setFocus();
  QTest::keyClick(combo, Qt::Key_Down);
  EXPECT_THAT(demo.log.back(), ::testing::StartsWith("combo "));
  EXPECT_EQ(demo.combo.text, combo->currentText().toStdString());
}

TEST_F(BinderTest, OptionsExcludeEachOther) {
  hand.Press("frmDemo", "optTwo");
  EXPECT_TRUE(demo.two.value);
  EXPECT_FALSE(demo.one.value);
  EXPECT_FALSE(hand.Find<QRadioButton>("frmDemo", "optOne")->isChecked());
  EXPECT_THAT(demo.log, ElementsAre("two"));
}

TEST_F(BinderTest, CheckTicksAndClears) {
  hand.Press("frmDemo", "chkTick");
  hand.Press("frmDemo", "chkTick");
  EXPECT_THAT(demo.log, ElementsAre("ticked", "cleared"));
}

TEST_F(BinderTest, ListSelectsAndIsDoubleClicked) {
  auto* const list = hand.Find<QListWidget>("frmDemo", "lstItems");
  const QPoint second = list->visualItemRect(list->item(1)).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second);
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(demo.list.selected, 1);
  EXPECT_THAT(demo.log, ElementsAre("select 1", "double"));
}

TEST_F(BinderTest, RefusedActionPutsTheWidgetRightAgain) {
  demo.tick.onClick = [this] { demo.tick.value = false; };
  hand.Press("frmDemo", "chkTick");
  EXPECT_FALSE(hand.Find<QCheckBox>("frmDemo", "chkTick")->isChecked());
}

QLineEdit* EntryBox(const QTableView& table) { return table.viewport()->findChild<QLineEdit*>("txtValue"); }

TEST_F(BinderTest, CellIsEditedByDoubleClickAndEnterMovesDown) {
  hand.DoubleClickCell("frmDemo", "grdCells", 2, 1);
  auto* const table = hand.Find<QTableView>("frmDemo", "grdCells");
  QLineEdit* const entry = EntryBox(*table);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->text(), "21");
  QTest::keyClicks(entry, "0.5");
  QTest::keyClick(entry, Qt::Key_Return);
  EXPECT_THAT(demo.log, ElementsAre("double 2 1", "entry 2 1 0.5"));
  EXPECT_EQ(table->model()->index(1, 1).data().toString(), "0.5");
  EXPECT_EQ(table->currentIndex(), table->model()->index(2, 1));
}

TEST_F(BinderTest, TypingInATypedColumnStartsTheEntryWithThatCharacter) {
  auto* const table = hand.Find<QTableView>("frmDemo", "grdCells");
  table->setCurrentIndex(table->model()->index(0, 1));
  QTest::keyClicks(table, "7");
  ASSERT_NE(EntryBox(*table), nullptr);
  QTest::keyClicks(EntryBox(*table), "5");
  QTest::keyClick(EntryBox(*table), Qt::Key_Down);
  EXPECT_THAT(demo.log, ElementsAre("double 1 1", "entry 1 1 75"));
}

TEST_F(BinderTest, EscapeGivesAnEntryUp) {
  hand.DoubleClickCell("frmDemo", "grdCells", 1, 1);
  auto* const table = hand.Find<QTableView>("frmDemo", "grdCells");
  QTest::keyClicks(EntryBox(*table), "99");
  QTest::keyClick(EntryBox(*table), Qt::Key_Escape);
  EXPECT_THAT(demo.log, ElementsAre("double 1 1", "entry 1 1 "));
  EXPECT_EQ(demo.grid.At(1, 1).text, "11");
}

TEST_F(BinderTest, AnEntryHasTheColourOfItsCell) {
  demo.grid.At(2, 1).fore = Colour::Green;
  windows.Sync();
  hand.DoubleClickCell("frmDemo", "grdCells", 2, 1);
  const QLineEdit* const entry = EntryBox(*hand.Find<QTableView>("frmDemo", "grdCells"));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->palette().color(QPalette::Text), PaletteColour(static_cast<int>(Colour::Green)));
}

TEST_F(BinderTest, EntryIsCommittedWhenAnotherControlIsUsed) {
  hand.DoubleClickCell("frmDemo", "grdCells", 1, 1);
  QTest::keyClicks(EntryBox(*hand.Find<QTableView>("frmDemo", "grdCells")), "3");
  hand.Press("frmDemo", "cmdGo");
  EXPECT_THAT(demo.log, ElementsAre("double 1 1", "entry 1 1 3", "press"));
}

TEST_F(BinderTest, OtherColumnsAreDoubleClickedButNotTyped) {
  hand.DoubleClickCell("frmDemo", "grdCells", 1, 2);
  EXPECT_EQ(EntryBox(*hand.Find<QTableView>("frmDemo", "grdCells")), nullptr);
  EXPECT_THAT(demo.log, ElementsAre("double 1 2"));
}

TEST_F(BinderTest, AColumnGrowsWithWhatIsEnteredIntoIt) {
  auto* const table = hand.Find<QTableView>("frmDemo", "grdCells");
  demo.grid.At(2, 1).text = "-3.000000000000000E+000";
  windows.Sync();
  EXPECT_GE(table->columnWidth(1), table->sizeHintForIndex(table->model()->index(1, 1)).width());
}

TEST_F(BinderTest, HeadingIsDoubleClickedAsRowZero) {
  auto* const header = hand.Find<QTableView>("frmDemo", "grdCells")->horizontalHeader();
  const QPoint at(header->sectionViewportPosition(1) + 20, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, at);
  EXPECT_THAT(demo.log, ElementsAre("double 0 1"));
}

TEST_F(BinderTest, PastedColumnEntersConsecutiveRows) {
  auto* const table = hand.Find<QTableView>("frmDemo", "grdCells");
  table->setCurrentIndex(table->model()->index(1, 1));
  QApplication::clipboard()->setText("0.1\r\n0.2\r\n0.3\r\n");
  QTest::keyClick(table, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(demo.grid.At(2, 1).text, "0.1");
  EXPECT_EQ(demo.grid.At(3, 1).text, "0.2");
  EXPECT_EQ(demo.grid.At(4, 1).text, "0.3");
  EXPECT_EQ(demo.grid.At(5, 1).text, "51");
}

TEST_F(BinderTest, PaneGivesBackItsLineEnds) {
  auto* const pane = hand.Find<QPlainTextEdit>("frmDemo", "rtbEdited");
  pane->setFocus();
  QTest::keyClick(pane, Qt::Key_F2);
  pane->moveCursor(QTextCursor::End);
  QTest::keyClicks(pane, "!");
  hand.Press("frmDemo", "cmdGo");
  EXPECT_EQ(demo.edited.text, "one\r\ntwo!");
}

TEST_F(BinderTest, AStrayKeyChangesNoTextThatMayBeEdited) {
  auto* const pane = hand.Find<QPlainTextEdit>("frmDemo", "rtbEdited");
  pane->setFocus();
  QTest::mouseClick(pane->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
  QTest::keyClicks(pane, "x");
  QTest::keyClick(pane, Qt::Key_Backspace);
  EXPECT_EQ(pane->toPlainText(), "one\ntwo");
  QTest::keyClick(pane, Qt::Key_F2);
  hand.Find("frmDemo", "txtBox")->setFocus();
  pane->setFocus();
  QTest::keyClicks(pane, "x");
  EXPECT_EQ(pane->toPlainText(), "one\ntwo") << "it was left meanwhile";
}

/// Turns the wheel over a widget by one notch downward.
void TurnWheel(QAbstractScrollArea& over) {
  const QPointF at = over.viewport()->rect().center();
  QWheelEvent turn(at, over.viewport()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                   false);
  QApplication::sendEvent(over.viewport(), &turn);
}

TEST_F(BinderTest, ResultsAreScrolledWhileTheirFormTakesNoInput) {
  for (int i = 0; i < 200; ++i) demo.edited.text += "\r\nline";
  demo.grid.Resize(300, 3);
  desk.charge.Take(main, Charge::Resting::Everything);
  windows.Sync();
  QCoreApplication::processEvents();
  for (const char* name : {"rtbEdited", "grdCells"}) {
    auto* const view = hand.Find<QAbstractScrollArea>("frmDemo", name);
    view->verticalScrollBar()->setValue(0);
    TurnWheel(*view);
    EXPECT_GT(view->verticalScrollBar()->value(), 0) << name;
  }
  auto* const pane = hand.Find<QPlainTextEdit>("frmDemo", "rtbEdited");
  QTest::keyClick(pane, Qt::Key_F2);
  QTest::keyClicks(pane, "x");
  EXPECT_TRUE(pane->toPlainText().startsWith("one"));
  EXPECT_FALSE(hand.Find("frmDemo", "cmdGo")->isEnabled());
}

TEST_F(BinderTest, PaneShowsWhatARunAdds) {
  demo.edited.text += "\r\nthree";
  windows.Sync();
  EXPECT_EQ(hand.Find<QPlainTextEdit>("frmDemo", "rtbEdited")->toPlainText(), "one\ntwo\nthree");
}

TEST_F(BinderTest, EscapeCancels) {
  demo.cmdCancel.onClick = [this] { desk.Unload(demo); };
  hand.Key("frmDemo", Qt::Key_Escape);
  EXPECT_FALSE(demo.Visible());
  EXPECT_FALSE(hand.Window("frmDemo")->isVisible());
}

TEST_F(BinderTest, FrameClosesTheForm) {
  hand.CloseFrame("frmDemo");
  EXPECT_FALSE(demo.Loaded());
  EXPECT_FALSE(hand.Window("frmDemo")->isVisible());
  desk.Show(demo);
  windows.Sync();
  EXPECT_TRUE(hand.Window("frmDemo")->isVisible());
}

TEST_F(BinderTest, TabGoesThroughTheControlsInTheirOrder) {
  std::vector<std::string> order;
  QWidget* const first = hand.Find("frmDemo", "txtBox");
  first->setFocus();
  for (int i = 0; i < 30; ++i) {
    QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr);
    if (focused->objectName().isEmpty()) focused = focused->parentWidget();
    const std::string name = focused->objectName().toStdString();
    if (!order.empty() && name == order.front()) break;
    if (order.empty() || order.back() != name) order.push_back(name);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_THAT(order, ElementsAre("txtBox", "txtReadOnly", "cboYear", "optOne", "chkTick", "lstItems", "grdCells",
                                 "rtbEdited", "cmdGo", "cmdCancel"));
}

TEST_F(BinderTest, FocusGoesWhereTheFormWantsIt) {
  demo.focus = &demo.tick;
  windows.Sync();
  EXPECT_TRUE(hand.Find("frmDemo", "chkTick")->hasFocus());
  EXPECT_EQ(demo.focus, nullptr);
}

}  // namespace
}  // namespace merlane
