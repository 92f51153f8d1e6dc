// The windows worked by keys alone.
#include <gmock/gmock.h>

#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;

/// The widget that keys go to, by the name of its control.
std::string Focused(Desktop& desktop) {
  const QWidget* const focused = desktop.windows.Main()->focusWidget();
  return focused == nullptr ? "" : focused->objectName().toStdString();
}

TEST(KeyboardTest, AltWithItsUnderlinedLetterInitializes) {
  Desktop desktop;
  desktop.hand.Key("frmMenu", Qt::Key_I, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.program.desk.Find("frmInitialize")->Visible(); }));
}

void ReadExample(Desktop& desktop) {
  desktop.hand.Press("frmMenu", "cmdInitialize");
  desktop.hand.ChooseFile(MERLANE_SOURCE_DIR "/examples/first_fit.dat");
  desktop.hand.Press("frmInitialize", "cmdLoadData");
  desktop.hand.Answer(QMessageBox::Ok, "Analysis update");
  desktop.hand.Press("frmInitialize", "cmdDone");
}

TEST(KeyboardTest, TheFocusGoesWithTheStepsOfAnAnalysis) {
  Desktop desktop;
  EXPECT_EQ(Focused(desktop), "cmdInitialize");
  ReadExample(desktop);
  EXPECT_EQ(Focused(desktop), "cmdLoadAlg");
  desktop.hand.Answer(QMessageBox::No, "Load algorithm data");
  desktop.hand.Answer(QMessageBox::Ok, "Default Algorithm Values");
  desktop.hand.Key("frmMenu", Qt::Key_Return);
  EXPECT_EQ(Focused(desktop), "cmdEditAlg");
  desktop.hand.Key("frmMenu", Qt::Key_Return);
  EXPECT_EQ(Focused(desktop), "grdVS");
  desktop.hand.Answer(QMessageBox::Ok, "Just so you know");
  desktop.hand.Press("frmAlgo", "cmdFinish");
  EXPECT_EQ(Focused(desktop), "cmdOneFunction");
  desktop.hand.answers = [&](QDialog& warning) { desktop.hand.Dismiss(warning); };
  desktop.hand.Key("frmMenu", Qt::Key_Return);
  EXPECT_FALSE(desktop.windows.Find("frmMenu")->isVisible());
  desktop.hand.Key("frmOneFunction", Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(Focused(desktop), "cmdOneFunction");
}

TEST(KeyboardTest, ACommandOfTheMenuTakesOverFirstWhatIsTypedInTheEntryBox) {
  Desktop desktop;
  ReadExample(desktop);
  desktop.hand.Answer(QMessageBox::No, "Load algorithm data");
  desktop.hand.Answer(QMessageBox::Ok, "Default Algorithm Values");
  desktop.hand.Press("frmMenu", "cmdLoadAlg");
  desktop.hand.Press("frmMenu", "cmdEditAlg");
  const auto type = [&](int row, const char* text) {
    desktop.hand.DoubleClickCell("frmAlgo", "grdVS", row, 1);
    QTest::keyClicks(desktop.hand.Find("frmAlgo", "txtValue"), text);
  };
  const AlgorithmData& a = desktop.program.state.algorithm;
  type(15, "0.02");
  desktop.hand.Choose("frmAlgo", "mnuUnFuse");
  EXPECT_EQ(a.Value(15), 0.02);
  type(17, "0.04");
  desktop.hand.CancelEntry("Edit all step sizes");
  desktop.hand.Choose("frmAlgo", "mnuStep");
  EXPECT_EQ(a.Value(17), 0.04);
  type(18, "0.5");
  desktop.hand.Choose("frmAlgo", "mnuValue");
  EXPECT_EQ(a.Value(18), 0.5);
  EXPECT_TRUE(desktop.program.frmEditVS.Visible());
}

TEST(KeyboardTest, TheFocusStaysWhereAQuestionWasCancelled) {
  Desktop desktop;
  ReadExample(desktop);
  EXPECT_EQ(Focused(desktop), "cmdLoadAlg");
  desktop.hand.Answer(QMessageBox::Cancel, "Load algorithm data");
  desktop.hand.Key("frmMenu", Qt::Key_Return);
  EXPECT_EQ(Focused(desktop), "cmdLoadAlg");
}

TEST(KeyboardTest, AMenuThatCannotBeOpenedKeepsNoKeyFromAButton) {
  Desktop desktop;
  ReadExample(desktop);
  desktop.hand.Press("frmMenu", "cmdRank");
  ASSERT_FALSE(desktop.hand.Entry("frmMain", "mnuApplication")->isEnabled());
  auto* const average = desktop.hand.Find<QPushButton>("frmRank", "cmdAverage");
  average->setEnabled(true);
  QSignalSpy pressed(average, &QPushButton::pressed);
  desktop.hand.Key("frmRank", Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(pressed.count(), 1);
  QTest::qWait(200);  // a button that is pressed by its accelerator stays down for a moment
}

TEST(KeyboardTest, TheWindowInFrontGetsItsLettersFirst) {
  Desktop desktop;
  for (const char* plot : {"frmDistPlot", "frmBivarPlot"}) {  // "Done" shares its letter with "Defaults etc."
    desktop.program.desk.Show(*desktop.program.desk.Find(plot));
    desktop.windows.Sync();
    desktop.hand.Key(plot, Qt::Key_D, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop.program.desk.Find(plot)->Visible(); })) << plot;
    EXPECT_TRUE(desktop.windows.Main()->isVisible()) << plot;
  }
  desktop.hand.Key("frmMenu", Qt::Key_D, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.program.desk.Find("frmDefaults")->Visible(); }));
}

TEST(KeyboardTest, EscapeClosesWhatIsOnlyReadAndCommandsWithoutCancel) {
  Desktop desktop;
  for (const char* name : {"frmOneFunction", "frmEditVS"}) {
    desktop.Show(name);
    desktop.windows.Sync();
    desktop.hand.Key(name, Qt::Key_Escape);
    EXPECT_FALSE(desktop.program.desk.Find(name)->Visible()) << name;
  }
}

}  // namespace
}  // namespace merlane
