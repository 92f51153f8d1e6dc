// Every window on a small screen: what does not fit must be reached all the same.
#include <gmock/gmock.h>

#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;
using test::ShowEvery;

/// A main window that fills a screen of that size below its title bar.
void FillScreen(Desktop& desktop, QSize screen) {
  desktop.windows.Main()->resize(screen - QSize(0, 30));
  QTest::qWait(30);  // layouts follow one after the other
}

/// Shows whatever a form may show at one time or another.
void ShowAllOf(Form& form) {
  for (Control* control : form.Controls())
    if (dynamic_cast<MenuEntry*>(control) == nullptr) control->visible = control->enabled = true;
}

/// Scrolls to a button where that is needed, and no part of it is cut off.
void ExpectReachable(QWidget& button, const std::string& name) {
  for (QWidget* around = button.parentWidget(); around != nullptr; around = around->parentWidget())
    if (auto* const scroll = qobject_cast<QScrollArea*>(around)) scroll->ensureWidgetVisible(&button, 0, 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(button.visibleRegion().boundingRect(), button.rect()) << name;
}

void ExpectAllReachable(Desktop& desktop, QSize screen) {
  FillScreen(desktop, screen);
  const QMdiArea& area = desktop.windows.Main()->Area();
  ShowEvery(desktop, [&](Form& form, QWidget& window) {
    ShowAllOf(form);
    desktop.windows.Sync();
    if (window.isWindow() && &window != desktop.windows.Main()) window.resize(window.size().boundedTo(screen * 0.9));
    QCoreApplication::processEvents();
    if (const auto* const frame = qobject_cast<QMdiSubWindow*>(window.parentWidget())) {
      EXPECT_TRUE(area.viewport()->rect().contains(frame->geometry())) << form.name;
    }
    const std::string shape = std::to_string(screen.width()) + "_" + std::to_string(screen.height());
    desktop.hand.Grab(*window.window(), "small_" + shape + "_" + form.name);
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>())
      if (!button->objectName().isEmpty() && !button->objectName().startsWith("qt_") && button->isVisible())
        ExpectReachable(*button, form.name + "." + button->objectName().toStdString());
  });
}

TEST(SmallScreenTest, EveryButtonIsReachedAt1024By768) {
  Desktop desktop;
  ExpectAllReachable(desktop, {1024, 768});
}

TEST(SmallScreenTest, EveryButtonIsReachedAt960By540) {
  Desktop desktop;
  ExpectAllReachable(desktop, {960, 540});
}

/// A line of what stands in a window is wider than the window: the rest is told by a bar, never lost.
TEST(SmallScreenTest, TheReviewOfPriorsWrapsItsParagraphs) {
  Desktop desktop;
  FillScreen(desktop, {960, 540});
  desktop.program.frmReviewPriors.rtbReview.text = QString("a paragraph of many words ").repeated(20).toStdString();
  desktop.Show("frmReviewPriors");
  desktop.windows.Sync();
  QCoreApplication::processEvents();
  EXPECT_EQ(desktop.hand.Find<QPlainTextEdit>("frmReviewPriors", "rtbReview")->horizontalScrollBar()->maximum(), 0);
}

/// What a panel of a status bar tells: as it is painted, or by its tool tip.
std::string Told(QWidget& panel) {
  auto& label = dynamic_cast<QLabel&>(panel);
  if (label.visibleRegion().boundingRect().width() >= label.sizeHint().width()) return label.text().toStdString();
  EXPECT_GE(label.visibleRegion().boundingRect().width(), 12) << "nothing to point at";
  QToolTip::hideText();
  QHelpEvent wantsToKnow(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
  QApplication::sendEvent(&label, &wantsToKnow);
  return QToolTip::text().toStdString();
}

TEST(SmallScreenTest, StatusPanelsShowTheirTextsWholeOrByToolTip) {
  Desktop desktop;
  FillScreen(desktop, {960, 540});
  FrmMain& main = desktop.program.frmMain;
  const std::string words = "Estimated time remaining for the minimizations that are still to be made (m:s): 12:34";
  for (StatusBar* bar : {&main.stbMain0, &main.stbMain1, &main.stbMain2, &main.stbMain5})
    for (int panel = 1; panel <= bar->Panels(); ++panel) bar->Set(panel, std::to_string(panel) + ": " + words);
  desktop.windows.Main()->TellWritten(QString("/home/a_folder/%1.tvo").arg(QString("name").repeated(30)));
  desktop.windows.Sync();
  QTest::qWait(50);
  for (const StatusBar* bar : {&main.stbMain0, &main.stbMain1, &main.stbMain2, &main.stbMain5})
    for (int panel = 1; panel <= bar->Panels(); ++panel) {
      const std::string name = bar->name + "." + std::to_string(panel);
      QWidget* const label = desktop.windows.Main()->findChild<QWidget*>(QString::fromStdString(name));
      EXPECT_EQ(Told(*label), bar->Get(panel)) << name;
    }
  EXPECT_LE(desktop.windows.Main()->width(), 960);
}

TEST(SmallScreenTest, PlotsShowTheirDrawingAndTheirCommandsWithoutScrolling) {
  Desktop desktop;
  FillScreen(desktop, {960, 540});
  for (const char* plot : {"frmXYPlot", "frmDistPlot"}) {
    desktop.program.desk.Show(*desktop.program.desk.Find(plot));
    desktop.windows.Sync();
    QTest::qWait(30);
    for (const char* name : {"picGraph", "cmdPlot", "cmdClear", "savePicture"}) {
      const QWidget* const widget = desktop.hand.Find(plot, name);
      EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << plot << "." << name;
    }
    desktop.program.desk.Hide(*desktop.program.desk.Find(plot));
  }
}

TEST(SmallScreenTest, WhatHasTheKeyboardIsInSight) {
  Desktop desktop;
  FillScreen(desktop, {960, 540});
  desktop.program.frmMenu.focus = &desktop.program.frmMenu.cmdQuit;
  desktop.windows.Sync();
  const QWidget* const quit = desktop.hand.Find("frmMenu", "cmdQuit");
  EXPECT_TRUE(quit->hasFocus());
  EXPECT_EQ(quit->visibleRegion().boundingRect(), quit->rect());
}

TEST(SmallScreenTest, ChildWindowsGrowWithTheMainWindow) {
  Desktop desktop;
  FillScreen(desktop, {960, 540});
  desktop.Show("frmRank");
  desktop.windows.Sync();
  const QWidget& ranking = *desktop.windows.Find("frmRank")->parentWidget();
  const QSize before = ranking.size();
  FillScreen(desktop, {1280, 720});
  EXPECT_TRUE(QTest::qWaitFor([&] { return ranking.width() >= before.width() + 300; })) << ranking.width();
  EXPECT_GE(ranking.height(), before.height() + 150);
  desktop.windows.Find("frmRank")->parentWidget()->resize(700, 400);
  FillScreen(desktop, {1100, 700});
  EXPECT_EQ(ranking.size(), QSize(700, 400)) << "somebody has made it that large";
}

}  // namespace
}  // namespace merlane
