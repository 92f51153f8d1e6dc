// Turns, waits and questions.
#include "ui/qt_host.h"

#include <gmock/gmock.h>

#include <chrono>

#include "ui/hand.h"
#include "ui/main_window.h"
#include "ui/qt_desk.h"
#include "ui/questions.h"

namespace merlane {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;
using ::testing::ElementsAre;

/// A long calculation that gives a turn now and then until it is interrupted.
class FrmLong : public Form {
 public:
  explicit FrmLong(Desk& d) : Form(d, "frmLong", "A long calculation") {
    cmdRun.onClick = [this] { Calculate(); };
    cmdStop.onClick = [this] { stopped = true; };
    cmdStop.offeredWhileBusy = true;
    cmdOther.onClick = [this] { ++othersPressed; };
    cmdWait.onClick = [this] { desk.WaitUntil([this] { return othersPressed > 0; }); };
    cmdFail.onClick = [] { throw std::runtime_error("overflow in exp(710)"); };
  }

  void Calculate() {
    stopped = false;
    const auto begin = SteadyClock::now();
    for (turns = 0; !stopped && SteadyClock::now() - begin < 5s; ++turns) {
      rtbProgress.text += std::to_string(turns % 10);
      desk.Turn();
    }
  }

  Button cmdRun{*this, "cmdRun", "&Run"};
  Button cmdStop{*this, "cmdStop", "&Interrupt"};
  Button cmdOther{*this, "cmdOther", "&Other"};
  Button cmdWait{*this, "cmdWait", "&Wait"};
  Button cmdFail{*this, "cmdFail", "&Fail"};
  Pane rtbProgress{*this, "rtbProgress"};
  long turns = 0;
  bool stopped = false;
  int othersPressed = 0;
};

struct QtHostTest : ::testing::Test, test::QtDesk {
  FrmLong form{desk};
  Windows windows{desk};
  test::Hand hand{windows};

  QtHostTest() {
    host.Use(&windows);
    desk.Show(main);
    desk.Show(form);
    windows.Sync();
    QCoreApplication::processEvents();
  }
  ~QtHostTest() override { host.Use(nullptr); }

  /// Clicks in a while, when a command is already running.
  void ClickSoon(const char* button, std::chrono::milliseconds delay = 30ms) {
    QTimer::singleShot(delay, &timers, [this, button] {
      QTest::mouseClick(windows.Find("frmLong")->findChild<QPushButton*>(button), Qt::LeftButton);
    });
  }
  QObject timers;
};

TEST_F(QtHostTest, InterruptIsPressedInsideATurn) {
  ClickSoon("cmdStop");
  hand.Press("frmLong", "cmdRun");
  EXPECT_TRUE(form.stopped);
  EXPECT_GT(form.turns, 0);
}

TEST_F(QtHostTest, WhatIsNotOfferedIsRefusedWhileACalculationRuns) {
  ClickSoon("cmdOther", 20ms);
  ClickSoon("cmdStop", 60ms);
  hand.Press("frmLong", "cmdRun");
  EXPECT_EQ(form.othersPressed, 0);
  hand.Press("frmLong", "cmdOther");
  EXPECT_EQ(form.othersPressed, 1);
}

TEST_F(QtHostTest, ProgressIsSeenWhileACalculationRuns) {
  QString seen;
  QTimer::singleShot(150ms, &timers, [&] {
    seen = windows.Find("frmLong")->findChild<QPlainTextEdit*>("rtbProgress")->toPlainText();
    QTest::mouseClick(windows.Find("frmLong")->findChild<QPushButton*>("cmdStop"), Qt::LeftButton);
  });
  hand.Press("frmLong", "cmdRun");
  EXPECT_FALSE(seen.isEmpty());
}

TEST_F(QtHostTest, WaitingCommandLetsOthersRun) {
  ClickSoon("cmdOther");
  hand.Press("frmLong", "cmdWait");
  EXPECT_EQ(form.othersPressed, 1);
}

TEST_F(QtHostTest, ClosingTheMainWindowInsideATurnEndsTheProgramThroughItsDialogue) {
  int status = -1;
  host.onEnd = [&](int exitStatus) { status = exitStatus; };
  desk.onCloseWhileBusy = [&] {
    if (desk.Ask("Exit Tolvane", "Do you want to quit Tolvane?", style::YesNoQuestionDefaultNo) == Answer::Yes)
      throw EndProgram{};
  };
  hand.Answer(QMessageBox::Yes, "Exit Tolvane");
  QTimer::singleShot(30ms, &timers, [&] { windows.Main()->close(); });
  hand.Press("frmLong", "cmdRun");
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(desk.Ended());
  EXPECT_FALSE(form.stopped);
}

TEST_F(QtHostTest, ClosingTheMainWindowInsideATurnAndNoGoesOn) {
  desk.onCloseWhileBusy = [&] {
    desk.Ask("Exit Tolvane", "Do you want to quit Tolvane?", style::YesNoQuestionDefaultNo);
    form.stopped = true;
  };
  hand.Answer(QMessageBox::No, "Exit Tolvane");
  QTimer::singleShot(30ms, &timers, [&] { windows.Main()->close(); });
  hand.Press("frmLong", "cmdRun");
  EXPECT_FALSE(desk.Ended());
  EXPECT_TRUE(windows.Main()->isVisible());
}

TEST_F(QtHostTest, FailureIsToldWithItsCommandAndTheWindowStaysUsable) {
  QString told;
  hand.Expect(
      [&](QWidget& dialog) {
        told = qobject_cast<QMessageBox*>(&dialog)->informativeText();
        QTest::keyClick(&dialog, Qt::Key_Return);
      },
      "The command could not be completed");
  hand.Press("frmLong", "cmdFail");
  EXPECT_EQ(told, "Fail: overflow in exp(710)");
  hand.Press("frmLong", "cmdOther");
  EXPECT_EQ(form.othersPressed, 1);
}

/// The longest time for which no event ran while turns were given, each turn costing that much.
std::chrono::nanoseconds LongestSilence(QtHost& host, std::chrono::nanoseconds turnCost,
                                        std::chrono::nanoseconds duration) {
  auto last = SteadyClock::now();
  const auto end = last + duration;
  std::chrono::nanoseconds longest{0};
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    const auto now = SteadyClock::now();
    longest = std::max<std::chrono::nanoseconds>(longest, now - last);
    last = now;
  });
  timer.start(0);
  while (SteadyClock::now() < end) {
    const auto until = SteadyClock::now() + turnCost;
    while (SteadyClock::now() < until) continue;
    host.Turn();
  }
  return longest;
}

TEST_F(QtHostTest, EventsRunOftenEnoughWhateverATurnCosts) {
  // Twice the aim leaves room for a busy machine.
  EXPECT_LT(LongestSilence(host, 0ns, 200ms), 60ms);
  EXPECT_LT(LongestSilence(host, 5us, 200ms), 60ms);
  EXPECT_LT(LongestSilence(host, 1ms, 200ms), 60ms);
  EXPECT_LT(LongestSilence(host, 25ms, 200ms), 85ms);
  // From fast turns to slow ones without notice.
  LongestSilence(host, 0ns, 50ms);
  EXPECT_LT(LongestSilence(host, 1ms, 100ms), 60ms);
}

TEST_F(QtHostTest, EventsDoNotRunAtEveryTurn) {
  int events = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++events; });
  timer.start(0);
  const auto end = SteadyClock::now() + 200ms;
  while (SteadyClock::now() < end) host.Turn();
  EXPECT_LE(events, 21);
}

TEST_F(QtHostTest, TurnCostsNextToNothing) {
  constexpr int Turns = 5'000'000;
  const auto begin = SteadyClock::now();
  for (int i = 0; i < Turns; ++i) desk.Turn();
  const double each = std::chrono::duration<double, std::nano>(SteadyClock::now() - begin).count() / Turns;
  RecordProperty("nanoseconds_per_turn", std::to_string(each));
  std::cout << "a turn costs " << each << " ns\n";
  EXPECT_LT(each, 100);
}

TEST_F(QtHostTest, QuestionsOfferWhatTheirStyleSays) {
  const auto offered = [&](int boxStyle) {
    std::vector<std::string> buttons;
    hand.Expect(
        [&](QWidget& dialog) {
          auto& box = *qobject_cast<QMessageBox*>(&dialog);
          for (QAbstractButton* button : box.buttons())
            buttons.push_back(button->text().remove('&').toStdString() + (button == box.defaultButton() ? "*" : ""));
          QTest::mouseClick(box.buttons().front(), Qt::LeftButton);
        },
        "Title");
    host.MsgBox({"Title", "Text", boxStyle, ""});
    std::ranges::sort(buttons);
    return buttons;
  };
  EXPECT_THAT(offered(style::Ok), ElementsAre("OK"));
  EXPECT_THAT(offered(style::InformationCritical), ElementsAre("OK"));
  EXPECT_THAT(offered(style::OkCancelInformation), ElementsAre("Cancel", "OK"));
  EXPECT_THAT(offered(style::YesNoCancelQuestion), ElementsAre("Cancel", "No", "Yes"));
  EXPECT_THAT(offered(style::YesNoQuestion), ElementsAre("No", "Yes"));
  EXPECT_THAT(offered(style::YesNoQuestionDefaultNo), ElementsAre("No*", "Yes"));
}

TEST_F(QtHostTest, DialogsAreAsWideAsTheirTitles) {
  const std::string title = "More simulations improve this goodness-of-fit (GOF) estimate";
  const auto isWide = [&](QWidget& dialog) {
    EXPECT_GE(dialog.width(), dialog.fontMetrics().horizontalAdvance(dialog.windowTitle()) + 100);
    hand.Dismiss(dialog);
  };
  hand.Expect(isWide, title);
  host.MsgBox({title, "1", style::Information, ""});
  hand.Expect(isWide, title);
  host.InputBox({title, "1", ""});
  EXPECT_TRUE(hand.Done());
}

TEST_F(QtHostTest, FilesAreListedWithTheirWholeDates) {
  hand.Expect(
      [&](QWidget& dialog) {
        const auto* const files = dialog.findChild<QTreeView*>("treeView");
        const auto date = [&] { return files->model()->index(0, 3, files->rootIndex()); };
        ASSERT_TRUE(QTest::qWaitFor([&] { return date().isValid() && !date().data().toString().isEmpty(); }));
        QTest::qWait(20);
        EXPECT_GE(files->columnWidth(3), files->fontMetrics().horizontalAdvance(date().data().toString()));
        hand.Dismiss(dialog);
      },
      "Open");
  FileRequest request;
  request.title = "Open";
  request.startName = MERLANE_SOURCE_DIR "/examples/first_fit.dat";
  EXPECT_FALSE(host.AskFile(request));
}

TEST_F(QtHostTest, LongMessageIsShownWhole) {
  std::string words;
  for (int i = 0; i < 60; ++i) words += "uniform-unbounded ";
  hand.Expect(
      [](QWidget& dialog) {
        const auto* const text = dialog.findChild<QLabel*>("qt_msgbox_label");
        EXPECT_TRUE(dialog.rect().contains(text->geometry()));
        EXPECT_GE(text->height(), text->heightForWidth(text->width()));
        QTest::keyClick(&dialog, Qt::Key_Return);
      },
      "Long");
  desk.Ask("Long", words, style::YesNoQuestion);
}

TEST_F(QtHostTest, AnswersAreThoseOfTheButtons) {
  hand.Answer(QMessageBox::Yes);
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoCancelQuestion, ""}), Answer::Yes);
  hand.Answer(QMessageBox::No);
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoCancelQuestion, ""}), Answer::No);
  hand.Answer(QMessageBox::Cancel);
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoCancelQuestion, ""}), Answer::Cancel);
  hand.Answer(QMessageBox::Ok);
  EXPECT_EQ(host.MsgBox({"T", "t", style::Information, ""}), Answer::Ok);
}

TEST_F(QtHostTest, EscapeCancelsWhereThereIsACancelAndIsNoAnswerElsewhere) {
  const auto escape = [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
  hand.Expect(escape, "");
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoCancelQuestion, ""}), Answer::Cancel);
  hand.Expect(escape, "");
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoQuestionDefaultNo, ""}), Answer::No);
  hand.Expect(
      [&](QWidget& dialog) {
        escape(dialog);
        EXPECT_TRUE(dialog.isVisible());
        QTest::mouseClick(qobject_cast<QMessageBox*>(&dialog)->button(QMessageBox::Yes), Qt::LeftButton);
      },
      "");
  EXPECT_EQ(host.MsgBox({"T", "t", style::YesNoQuestion, ""}), Answer::Yes);
}

TEST_F(QtHostTest, WhatABoxOffersStandsBesideOkWhichEscapeMeans) {
  const Message message{"T", "t", style::Information, std::string(50, '\n') + "details", "Mend..."};
  hand.Expect(
      [](QWidget& dialog) {
        auto* const offer = dialog.findChild<QPushButton*>("offer");
        ASSERT_NE(offer, nullptr);
        EXPECT_EQ(offer->text(), "Mend...");
        auto& box = *qobject_cast<QMessageBox*>(&dialog);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Ok));
        QTest::mouseClick(offer, Qt::LeftButton);
      },
      "T");
  EXPECT_EQ(host.MsgBox(message), Answer::Offer);
  hand.Expect([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }, "T");
  EXPECT_EQ(host.MsgBox(message), Answer::Ok);
  hand.Answer(QMessageBox::Ok);
  EXPECT_EQ(host.MsgBox(message), Answer::Ok);
}

TEST_F(QtHostTest, InputBoxTakesAndCancels) {
  hand.Enter("0.25", "Edit");
  EXPECT_EQ(host.InputBox({"Edit", "Enter the new value of parameter #3", "1"}), "0.25");
  hand.CancelEntry("Edit");
  EXPECT_EQ(host.InputBox({"Edit", "Enter the new value of parameter #3", "1"}), std::nullopt);
  hand.Enter("", "Edit");
  EXPECT_EQ(host.InputBox({"Edit", "Enter the new value of parameter #3", "1"}), "") << "an empty line is an answer";
}

TEST_F(QtHostTest, FileDialogTakesAFileAndCancels) {
  const FileRequest open{FileRequest::Kind::Open, "Load", "All (*.*)|*.*|Data (*.dat;*.xls)|*.dat;*.xls|", 2, ""};
  const std::string path = MERLANE_GOLDEN_DIR "/repair.dat";
  hand.ChooseFile(path, "Load");
  EXPECT_EQ(host.AskFile(open), path);
  hand.CancelFile("Load");
  EXPECT_EQ(host.AskFile(open), std::nullopt);
}

TEST_F(QtHostTest, AFileOfTheFolderThatIsShownIsChosenByItsWholePathTyped) {
  const QTemporaryDir folder;
  const QString lake = folder.filePath("lake.dat"), mere = folder.filePath("mere.dat");
  QFile(lake).open(QIODevice::WriteOnly);
  for (const auto& [kind, path] :
       {std::pair(FileRequest::Kind::Open, lake), std::pair(FileRequest::Kind::Save, mere)}) {
    hand.Expect(
        [&folder, &path = path](QWidget& dialog) {
          auto& name = *dialog.findChild<QLineEdit*>("fileNameEdit");
          name.clear();
          QTest::qWait(300);  // the folder has been read
          dialog.activateWindow();
          name.setFocus();
          for (const QString& typed : {folder.path(), path}) {
            name.setText(typed);
            QTest::qWait(50);
          }
          EXPECT_TRUE(name.hasFocus());
          QTest::keyClick(&name, Qt::Key_Return);
          if (dialog.isVisible()) QTest::keyClick(&dialog, Qt::Key_Escape);
        },
        "Lake");
    EXPECT_EQ(host.AskFile({kind, "Lake", "Data (*.dat)|*.dat|", 1, folder.filePath("pond.dat").toStdString()}),
              path.toStdString());
  }
}

TEST_F(QtHostTest, AFileThatTheFilterHidesIsOpenedByItsName) {
  QTemporaryDir folder;
  const QString table = folder.filePath("lake.csv");
  QFile(table).open(QIODevice::WriteOnly);
  const FileRequest request{FileRequest::Kind::Open, "Load data", "All Files (*.*)|*.*|Data (*.dat)|*.dat", 2,
                            folder.filePath("lake.dat").toStdString()};
  hand.Expect(
      [&](QWidget& dialog) {
        auto& model = *dialog.findChild<QFileSystemModel*>();
        auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
        QPushButton* const open = dialog.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Open);
        model.fetchMore(model.index(folder.path()));
        QTest::qWait(300);  // the folder has been read
        EXPECT_FALSE(model.index(table).isValid()) << "it is not hidden";
        name->setText("missing.csv");
        EXPECT_FALSE(open->isEnabled());
        name->setText("lake.csv");
        EXPECT_TRUE(open->isEnabled());
        QTest::mouseClick(open, Qt::LeftButton);
      },
      "Load data");
  EXPECT_EQ(host.AskFile(request), table.toStdString());
}

TEST_F(QtHostTest, FileDialogBeginsInTheWorkingFolderThenWhereTheLastFileWas) {
  const FileRequest open{FileRequest::Kind::Open, "Load", "All (*.*)|*.*|", 1, ""};
  QString folder;
  const auto lookAt = [&folder](QWidget& dialog) {
    folder = dynamic_cast<QFileDialog&>(dialog).directory().absolutePath();
    QTest::keyClick(&dialog, Qt::Key_Escape);
  };
  hand.Expect(lookAt, "Load");
  host.AskFile(open);
  EXPECT_EQ(folder, QDir::currentPath());
  hand.ChooseFile(MERLANE_GOLDEN_DIR "/repair.dat", "Load");
  host.AskFile(open);
  hand.Expect(lookAt, "Load");
  host.AskFile(open);
  EXPECT_EQ(folder, QDir(MERLANE_GOLDEN_DIR).absolutePath());
}

TEST_F(QtHostTest, WhetherToOverwriteIsAskedOfTheNameWithItsExtension) {
  const QTemporaryDir folder;
  const QString name = folder.filePath(QStringLiteral("lake"));
  const std::string path = name.toStdString();
  const FileRequest save{FileRequest::Kind::Save, "Save", "All (*.*)|*.*|", 1, "", ".sim", FileRequest::Adding::Always};
  const auto create = [](const QString& file) { EXPECT_TRUE(QFile(file).open(QIODevice::WriteOnly)); };
  create(name);
  hand.ChooseFile(path, "Save");
  EXPECT_EQ(host.AskFile(save), path) << "lake.sim is not there, and lake is left alone";
  create(name + QStringLiteral(".sim"));
  QString asked;
  const auto answer = [&asked](QMessageBox::StandardButton button) {
    return [&asked, button](QWidget& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      asked = box.text();
      QTest::mouseClick(box.button(button), Qt::LeftButton);
    };
  };
  hand.ChooseFile(path, "Save");
  hand.Expect(answer(QMessageBox::No), "Save");
  hand.ChooseFile(path, "Save");
  hand.Expect(answer(QMessageBox::Yes), "Save");
  EXPECT_EQ(host.AskFile(save), path);
  EXPECT_EQ(asked, QStringLiteral("lake.sim already exists.\nDo you want to replace it?"));
}

TEST(QuestionsTest, AFilterForANameWithABlankIsOnePattern) {
  EXPECT_EQ(NameFilters("Named for data file (my lake (2).*)|my lake (2).*|"),
            QStringList({"Named for data file (my?lake??2?.*)"}));
}

TEST(QuestionsTest, FiltersBecomeThoseOfAFileDialog) {
  const QStringList filters =
      NameFilters("All Files (*.*)|*.*|Original text and EXCEL data files (*.dat;*.xls)|*.dat;*.xls|");
  EXPECT_EQ(filters, QStringList({"All Files (*)", "Original text and EXCEL data files (*.dat *.xls)"}));
}

}  // namespace
}  // namespace merlane
