// The windows of the program itself.
#include <gmock/gmock.h>

#include <set>

#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;
using test::ShowEvery;

TEST(WindowsTest, EveryControlHasItsWidgetByName) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    std::set<std::string> names;
    for (const Control* control : form.Controls()) {
      EXPECT_TRUE(names.insert(control->name).second) << form.name << "." << control->name << " is there twice";
      const bool found = dynamic_cast<const MenuEntry*>(control) != nullptr
                             ? desktop.hand.Entry(form.name, control->name) != nullptr
                             : window.findChild<QWidget*>(QString::fromStdString(control->name)) != nullptr;
      EXPECT_TRUE(found) << form.name << "." << control->name;
    }
  });
}

TEST(WindowsTest, EveryFormIsGrabbedToAPicture) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isVisible()) << form.name;
    desktop.hand.Grab(*window.window(), "form_" + form.name);
  });
}

/// Takes a control's handlers away, so that what comes back is what was typed, ticked or chosen.
void Silence(Control& control) {
  if (auto* box = dynamic_cast<TextBox*>(&control)) box->onClick = box->onLeave = nullptr;
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) combo->onChange = nullptr;
  if (auto* check = dynamic_cast<CheckBox*>(&control)) check->onClick = nullptr;
  if (auto* option = dynamic_cast<OptionButton*>(&control)) option->onClick = nullptr;
  if (auto* list = dynamic_cast<ListBox*>(&control)) list->onSelect = list->onDoubleClick = nullptr;
}

/// Writes to a control, looks at its widget, works the widget, looks at the control.
void RoundTrip(Desktop& desktop, Control& control) {
  const std::string& form = control.form.name;
  test::Hand& hand = desktop.hand;
  SCOPED_TRACE(form + "." + control.name);
  Silence(control);
  control.visible = control.enabled = true;
  if (auto* list = dynamic_cast<ListBox*>(&control)) {
    list->items = {"one", "two"};
    list->selected = 0;
  }
  if (auto* box = dynamic_cast<TextBox*>(&control)) box->readOnly = false;
  if (auto* pane = dynamic_cast<Pane*>(&control)) pane->readOnly = false;
  if (dynamic_cast<Grid*>(&control) == nullptr) control.text = "written";
  desktop.windows.Sync();
  QCoreApplication::processEvents();
  QWidget* const widget = hand.Find(form, control.name);
  ASSERT_NE(widget, nullptr);
  EXPECT_TRUE(widget->isVisible());

  if (dynamic_cast<TextBox*>(&control) != nullptr) {
    EXPECT_EQ(qobject_cast<QLineEdit*>(widget)->text(), "written");
    hand.Type(form, control.name, "typed");
    EXPECT_EQ(control.text, "typed");
  } else if (dynamic_cast<ComboBox*>(&control) != nullptr) {
    EXPECT_EQ(qobject_cast<QComboBox*>(widget)->currentText(), "written");
    hand.Type(form, control.name, "17");
    EXPECT_EQ(control.text, "17");
  } else if (dynamic_cast<Pane*>(&control) != nullptr) {
    EXPECT_EQ(qobject_cast<QPlainTextEdit*>(widget)->toPlainText(), "written");
    hand.Type(form, control.name, "typed");
    EXPECT_EQ(control.text, "typed");
  } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
    const bool before = check->value;
    hand.Press(form, control.name);
    EXPECT_NE(check->value, before);
  } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
    hand.Press(form, control.name);
    EXPECT_TRUE(option->value);
  } else if (auto* list = dynamic_cast<ListBox*>(&control)) {
    auto* const view = qobject_cast<QListWidget*>(widget);
    EXPECT_EQ(view->count(), 2);
    EXPECT_EQ(view->currentRow(), 0);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(view->item(1)).center());
    EXPECT_EQ(list->selected, 1);
  } else if (dynamic_cast<Label*>(&control) != nullptr) {
    EXPECT_EQ(qobject_cast<QLabel*>(widget)->text(), "written");
  } else if (dynamic_cast<Button*>(&control) != nullptr) {
    EXPECT_EQ(qobject_cast<QPushButton*>(widget)->text(), "written");
  }
  control.enabled = false;
  control.toolTip = "tip";
  desktop.windows.Sync();
  EXPECT_FALSE(widget->isEnabled());
  EXPECT_EQ(widget->toolTip(), "tip");
  control.enabled = true;
}

TEST(WindowsTest, EveryValueMakesTheRoundTrip) {
  Desktop desktop;
  ShowEvery(desktop, [&](Form& form, QWidget&) {
    for (Control* control : form.Controls())
      if (dynamic_cast<MenuEntry*>(control) == nullptr && dynamic_cast<StatusBar*>(control) == nullptr)
        RoundTrip(desktop, *control);
  });
}

TEST(WindowsTest, StatusPanelsShowTheirTexts) {
  Desktop desktop;
  desktop.program.frmMain.ShowDataFile("lake.dat");
  desktop.program.frmMain.stbMain5.Set(3, "third");
  desktop.windows.Sync();
  const auto text = [&](const char* panel) { return desktop.windows.Main()->findChild<QLabel*>(panel)->text(); };
  EXPECT_EQ(text("stbMain0.1"), "Brood data file name: lake.dat");
  EXPECT_EQ(text("stbMain5.3"), "third");
  EXPECT_EQ(text("stbMain5.1"), "");
}

TEST(WindowsTest, MainMenuIsUsableWithinHalfASecond) {
  QElapsedTimer timer;
  timer.start();
  Desktop desktop;
  EXPECT_TRUE(desktop.hand.Find("frmMenu", "cmdInitialize")->isVisible());
  std::cout << "start-up took " << timer.elapsed() << " ms\n";
  EXPECT_LT(timer.elapsed(), 500);
}

TEST(WindowsTest, FirstFocusIsOnWhatCanBePressed) {
  Desktop desktop;
  EXPECT_TRUE(desktop.hand.Find("frmMenu", "cmdInitialize")->hasFocus());
}

TEST(WindowsTest, ResultsOpenBesideTheMenu) {
  Desktop desktop;
  const QWidget* const menu = desktop.windows.Find("frmMenu")->parentWidget();
  const QRect area = desktop.windows.Main()->Area().viewport()->rect();
  EXPECT_TRUE(area.contains(menu->geometry()));
  EXPECT_LT(menu->geometry().right(), area.width() / 3);
  for (const char* name : {"frmSimplex", "frmMarquardt", "frmMaxLike", "frmBayesian", "frmReviewPriors"}) {
    desktop.Show(name);
    desktop.windows.Sync();
    const QRect results = desktop.windows.Find(name)->parentWidget()->geometry();
    EXPECT_FALSE(results.intersects(menu->geometry())) << name;
    EXPECT_TRUE(area.contains(results)) << name;
    desktop.Hide(name);
  }
}

TEST(WindowsTest, ResultsThatKeepTheMenuAwayHaveTheWholeWidth) {
  Desktop desktop;
  for (const char* name : {"frmOneFunction", "frmSummary"}) {
    desktop.Show(name);
    desktop.windows.Sync();
    EXPECT_GE(desktop.windows.Find(name)->parentWidget()->width(), desktop.windows.Main()->Area().width()) << name;
    desktop.Hide(name);
  }
}

TEST(WindowsTest, WhatToDoWithCovariancesStandsBesideThem) {
  Desktop desktop;
  desktop.Show("frmCovData");
  desktop.Show("frmCovDisplay");
  desktop.windows.Sync();
  const QRect results = desktop.windows.Find("frmCovData")->parentWidget()->geometry();
  const QRect commands = desktop.windows.Find("frmCovDisplay")->parentWidget()->geometry();
  EXPECT_LT(commands.right(), results.left());
}

TEST(WindowsTest, DescriptionsOfParametersAreNotCutOff) {
  Desktop desktop;
  desktop.Show("frmAlgo");
  Grid& parameters = *dynamic_cast<Grid*>(desktop.program.desk.Find("frmAlgo")->Find("grdVS"));
  parameters.Resize(4, 5);
  parameters.At(1, 4).text = "Zeta_BC(01) (on Alpha_BC): E[brood size@hatch] (brood correlated mortality)   [0]";
  parameters.At(2, 4).text = "Error dist'n for juveniles (correlated mortality):    Fix and DNE> BI [1]; BB [2]";
  parameters.At(3, 4).text = "Age @ laying (I, a negative number of days prior to hatch day) Fix and DNE    [0]";
  desktop.windows.Sync();
  QCoreApplication::processEvents();
  EXPECT_EQ(desktop.hand.Find<QTableView>("frmAlgo", "grdVS")->horizontalScrollBar()->maximum(), 0);
}

TEST(WindowsTest, MainWindowIsWholeOnASmallScreen) {
  Desktop desktop;
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const QRect inside(desktop.windows.Main()->pos(), QSize(1280, 690));
  EXPECT_LE(inside.bottom() + 30, screen.bottom());  // below its title bar
}

/// How many rows or lines of that widget are seen.
int Seen(const QWidget& widget, int each) {
  return qobject_cast<const QAbstractScrollArea*>(&widget)->viewport()->height() / each;
}

TEST(WindowsTest, TablesAndPanesShowEnoughAtOnce) {
  Desktop desktop;
  const auto find = [&](const char* form, const char* control) {
    desktop.Show(form);
    desktop.windows.Sync();
    QCoreApplication::processEvents();
    return desktop.hand.Find(form, control);
  };
  const auto* const parameters = qobject_cast<QTableView*>(find("frmAlgo", "grdVS"));
  EXPECT_GE(Seen(*parameters, parameters->verticalHeader()->defaultSectionSize()), 20);
  desktop.Hide("frmAlgo");
  desktop.program.desk.Find("frmRank")->Find("txtAverage")->visible = true;
  const QWidget* const averages = find("frmRank", "txtAverage");
  EXPECT_GE(Seen(*averages, averages->fontMetrics().lineSpacing()), 8);
  const auto* const models = qobject_cast<QTableView*>(find("frmRank", "grdRank"));
  EXPECT_GE(Seen(*models, models->verticalHeader()->defaultSectionSize()), 7);
}

TEST(WindowsTest, TheAreaStaysAsItIsWhenAStatusIsTold) {
  Desktop desktop;
  const QSize before = desktop.windows.Main()->Area().size();
  desktop.program.frmMain.ShowDataFile("lake.dat");
  desktop.program.frmMain.stbMain5.Set(3, "third");
  desktop.windows.Sync();
  QCoreApplication::processEvents();
  EXPECT_EQ(desktop.windows.Main()->Area().size(), before);
}

TEST(WindowsTest, InterruptMenusStandOnlyWhileTheyInterrupt) {
  Desktop desktop;
  QAction* const profile = desktop.hand.Entry("frmMain", "mnuMLInt");
  QAction* const posterior = desktop.hand.Entry("frmMain", "mnuBayesianInt");
  EXPECT_FALSE(profile->isVisible() || posterior->isVisible());
  desktop.program.frmMain.mnuMLInt.visible = true;
  desktop.windows.Sync();
  EXPECT_TRUE(profile->isVisible());
  EXPECT_FALSE(posterior->isVisible());
}

TEST(WindowsTest, AcceleratorPresses) {
  Desktop desktop;
  desktop.hand.Answer(QMessageBox::No, "Exit Tolvane");
  desktop.hand.Key("frmMenu", Qt::Key_Q, Qt::AltModifier);
  QTest::qWait(200);  // a button that is pressed by its accelerator stays down for a moment
  EXPECT_TRUE(desktop.hand.Done());
}

TEST(WindowsTest, EscapeCancels) {
  Desktop desktop;
  desktop.hand.Press("frmMenu", "cmdInitialize");
  ASSERT_TRUE(desktop.program.frmInitialize.Visible());
  EXPECT_FALSE(desktop.program.frmMenu.Visible());
  desktop.hand.Key("frmInitialize", Qt::Key_Escape);
  EXPECT_FALSE(desktop.program.frmInitialize.Visible());
  EXPECT_TRUE(desktop.windows.Find("frmMenu")->isVisible());
}

TEST(WindowsTest, EnterPressesTheDefaultOrTheButtonThatHasTheFocus) {
  Desktop desktop;
  desktop.hand.Press("frmMenu", "cmdInitialize");
  desktop.hand.Answer(QMessageBox::Ok, "Missing input");
  desktop.hand.Find("frmInitialize", "cboStartYear")->setFocus();
  desktop.hand.Key("frmInitialize", Qt::Key_Return);  // Continue, without a data file
  EXPECT_TRUE(desktop.hand.Done());
  desktop.hand.Find("frmInitialize", "cmdCancel")->setFocus();
  desktop.hand.Key("frmInitialize", Qt::Key_Return);
  EXPECT_FALSE(desktop.program.frmInitialize.Visible());
}

/// The widgets of controls that Tab goes to in a window, from the uppermost at the left.
std::vector<QWidget*> TabStops(const Form& form, QWidget& window) {
  std::vector<QWidget*> stops;
  for (QWidget* widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain())
    if (window.isAncestorOf(widget) && form.Find(widget->objectName().toStdString()) != nullptr &&
        (widget->focusPolicy() & Qt::TabFocus))
      stops.push_back(widget);
  std::ranges::rotate(stops, std::ranges::min_element(stops, {}, [&](const QWidget* stop) {
                        const QPoint place = stop->mapTo(&window, QPoint());
                        return std::tuple(!stop->isVisible(), 2 * place.x() > window.width(), place.y());
                      }));
  return stops;
}

TEST(WindowsTest, TabGoesDownTheWindow) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    QCoreApplication::processEvents();
    std::vector<QWidget*> above;
    for (QWidget* stop : TabStops(form, window)) {
      if (!stop->isVisible()) continue;
      const QRect place(stop->mapTo(&window, QPoint()), stop->size());
      for (const QWidget* before : above) {
        const QRect placeBefore(before->mapTo(&window, QPoint()), before->size());
        const bool inOneColumn = placeBefore.left() < place.right() && place.left() < placeBefore.right();
        EXPECT_TRUE(!inOneColumn || placeBefore.top() < place.top())
            << form.name << ": " << before->objectName().toStdString() << " before "
            << stop->objectName().toStdString();
      }
      above.push_back(stop);
    }
  });
}

TEST(WindowsTest, TabGoesToEveryControlThatTakesKeys) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    const std::vector<QWidget*> stops = TabStops(form, window);
    for (const Control* control : form.Controls()) {
      auto* const own = window.findChild<QWidget*>(QString::fromStdString(control->name));
      if (own == nullptr || !(own->focusPolicy() & Qt::TabFocus)) continue;
      EXPECT_THAT(stops, testing::Contains(own)) << form.name << "." << control->name;
    }
  });
}

TEST(WindowsTest, InformationHidesTheMainWindowWhileItIsOpen) {
  Desktop desktop;
  desktop.hand.Choose("frmMain", "mnuWisdom");
  EXPECT_FALSE(desktop.windows.Main()->isVisible());
  EXPECT_TRUE(desktop.windows.Find("frmWisdom")->isVisible());
  EXPECT_TRUE(desktop.windows.Find("frmWisdom")->isWindow());
  desktop.hand.Press("frmWisdom", "cmdOK");
  EXPECT_TRUE(desktop.windows.Main()->isVisible());
  EXPECT_FALSE(desktop.windows.Find("frmWisdom")->isVisible());
  EXPECT_TRUE(desktop.windows.Find("frmMenu")->isVisible());
}

TEST(WindowsTest, ClosingTheMainWindowAsksAndNoKeepsIt) {
  Desktop desktop;
  desktop.hand.Answer(QMessageBox::No, "Exit Tolvane");
  desktop.hand.CloseFrame("frmMain");
  EXPECT_TRUE(desktop.windows.Main()->isVisible());
  EXPECT_EQ(desktop.ended, -1);
}

TEST(WindowsTest, QuittingEndsWithStatusZero) {
  Desktop desktop;
  desktop.hand.Answer(QMessageBox::Yes, "Exit Tolvane");
  desktop.hand.Answer(QMessageBox::No, "What about algorithm data?");
  desktop.hand.CloseFrame("frmMain");
  EXPECT_EQ(desktop.ended, 0);
  EXPECT_TRUE(desktop.hand.Done());
}

TEST(WindowsTest, ChildWindowsAreArranged) {
  Desktop desktop;
  desktop.Show("frmReviewPriors");
  desktop.windows.Sync();
  const QWidget* const menu = desktop.windows.Find("frmMenu")->parentWidget();
  const QWidget* const help = desktop.windows.Find("frmReviewPriors")->parentWidget();
  const QSize room = desktop.windows.Main()->Area().viewport()->size();
  desktop.hand.Choose("frmMain", "mnuTileVertical");
  EXPECT_FALSE(menu->geometry().intersects(help->geometry()));
  EXPECT_EQ(help->height(), room.height());
  desktop.hand.Choose("frmMain", "mnuTileHorizontal");
  EXPECT_EQ(help->width(), room.width());
  EXPECT_NE(help->y(), menu->y());
  desktop.hand.Choose("frmMain", "mnuCascade");
  EXPECT_TRUE(menu->geometry().intersects(help->geometry()));
}

QMdiSubWindow& FrameOf(Desktop& desktop, const char* form) {
  return *qobject_cast<QMdiSubWindow*>(desktop.windows.Find(form)->parentWidget());
}

TEST(WindowsTest, IconsAreWindowsAgainWhenTheyAreArranged) {
  Desktop desktop;
  desktop.Show("frmMaxLike");
  desktop.windows.Sync();
  QMdiSubWindow& frame = FrameOf(desktop, "frmMaxLike");
  for (const char* arrangement : {"mnuTileVertical", "mnuTileHorizontal", "mnuCascade"}) {
    frame.showMinimized();
    desktop.hand.Choose("frmMain", arrangement);
    EXPECT_FALSE(frame.isMinimized()) << arrangement;
  }
}

/// What puts the menu out of work would leave a program that looks dead.
TEST(WindowsTest, OnlyWindowsBesideTheMenuCanBeMadeIcons) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    auto* const frame = qobject_cast<QMdiSubWindow*>(window.parentWidget());
    if (frame == nullptr) return;
    const bool besideMenu =
        dynamic_cast<FormWindow&>(window).StandsAt() == Layout::Place::BesideMenu && form.name != "frmMenu";
    EXPECT_EQ(frame->windowFlags().testFlag(Qt::WindowMinimizeButtonHint), besideMenu) << form.name;
  });
  for (const char* plot : {"frmXYPlot", "frmDistPlot", "frmBivarPlot"})
    EXPECT_FALSE(FrameOf(desktop, plot).windowFlags().testFlag(Qt::WindowMinimizeButtonHint)) << plot;
}

TEST(WindowsTest, TheMenuIsNotClosedByAKey) {
  Desktop desktop;
  desktop.hand.Key("frmMenu", Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(desktop.program.frmMenu.Visible());
  EXPECT_TRUE(desktop.windows.Find("frmMenu")->isVisible());
}

TEST(WindowsTest, OnlyWhatIsAskedOverATableStandsAside) {
  Desktop desktop;
  const auto right = [&](QWidget& dialog) {
    const int middle = dialog.mapToGlobal(dialog.rect().center()).x();
    desktop.hand.Dismiss(dialog);
    const QWidget& main = *desktop.windows.Main();
    return middle - main.mapToGlobal(main.rect().center()).x();
  };
  desktop.hand.Expect([&](QWidget& dialog) { EXPECT_LT(std::abs(right(dialog)), 40); }, "Over the menu");
  desktop.host.InputBox({"Over the menu", "n?", "1"});
  desktop.program.desk.Show(desktop.program.frmAlgo);
  desktop.windows.Sync();
  desktop.hand.Expect([&](QWidget& dialog) { EXPECT_GT(right(dialog), 200); }, "Over a table");
  desktop.host.InputBox({"Over a table", "n?", "1"});
}

/// A window of its own that only stands above, and a question that comes later.
TEST(WindowsTest, QuestionsStandAboveTheAbortWindow) {
  Desktop desktop;
  desktop.Show("frmAbort");
  desktop.windows.Sync();
  QWidget& abort = *desktop.windows.Find("frmAbort");
  EXPECT_TRUE(abort.isWindow());
  EXPECT_FALSE(abort.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  desktop.hand.Expect(
      [&](QWidget& question) {
        EXPECT_EQ(question.parentWidget(), desktop.windows.Main());
        const QWidget* const yes = qobject_cast<QMessageBox*>(&question)->button(QMessageBox::Yes);
        const QPoint at = yes->mapToGlobal(yes->rect().center());
        abort.move(at - abort.rect().center());
        QTest::qWait(300);  // for a window manager
        QWidget* const seen = QApplication::topLevelAt(at);
        EXPECT_EQ(seen, &question) << (seen == nullptr ? "nothing" : seen->objectName().toStdString());
        desktop.hand.Click(question, QMessageBox::Yes);
      },
      "Go on?");
  EXPECT_EQ(desktop.host.MsgBox({"Go on?", "100 rejections in a row.", style::YesNoQuestion, ""}), Answer::Yes);
}

}  // namespace
}  // namespace merlane
