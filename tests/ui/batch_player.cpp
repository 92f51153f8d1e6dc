#include "ui/batch_player.h"

#include "batch/exports.h"
#include "platform/files.h"

namespace merlane::test {
namespace {

using namespace std::chrono_literals;

bool OffersOkAlone(const QDialog& dialog) {
  const auto* const box = qobject_cast<const QMessageBox*>(&dialog);
  return box != nullptr && box->standardButtons() == QMessageBox::Ok;
}

/// That a file stands there already is asked on the desktop alone; a batch file means what it names.
bool AsksToReplaceAFile(const QDialog& dialog) {
  const auto* const box = qobject_cast<const QMessageBox*>(&dialog);
  return box != nullptr && box->text().endsWith(QStringLiteral("Do you want to replace it?"));
}

QMessageBox::StandardButton ButtonOf(merlane::Answer answer) {
  switch (answer) {
    case merlane::Answer::Yes:
      return QMessageBox::Yes;
    case merlane::Answer::No:
      return QMessageBox::No;
    case merlane::Answer::Cancel:
      return QMessageBox::Cancel;
    case merlane::Answer::Ok:
    case merlane::Answer::Offer:  // which is no standard button
      break;
  }
  return QMessageBox::Ok;
}

}  // namespace

BatchPlayer::BatchPlayer(Desktop& desktop, std::string readingFolder, std::string writingFolder)
    : desktop_(desktop), reading_(std::move(readingFolder)), writing_(std::move(writingFolder)) {
  desktop_.hand.answers = [this](QDialog& dialog) { Answer(dialog); };
}

void BatchPlayer::Play(const std::string& batch) {
  lines_ = ParseBatch(batch);
  next_ = 0;
  // The timer looks again and again, in whatever loop of events the program is at the time; each step has a timer of
  // its own, so that a step may wait for the next.
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
    if (stepping_ || !MayAct()) return;
    stepping_ = true;
    QTimer::singleShot(0ms, [this] { Step(); });
  });
  timer.start(1ms);
  QDeadlineTimer patience(20s);
  // A dialog that nobody answers, or a command that waits for a window, would keep its line, and this loop with it, for
  // ever.
  QTimer watch;
  int seconds = 0;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&, seen = QPointer<QWidget>(), line = next_]() mutable {
    QPointer<QWidget> dialog = QApplication::activeModalWidget();
    const bool waits = dialog != nullptr || (acting_ > 0 && !desktop_.program.desk.Busy());
    const bool same = waits && dialog == seen && line == next_;
    seconds = same ? seconds + 1 : 0;
    seen = dialog;
    line = next_;
    if (seconds < 20) return;
    if (dialog == nullptr) return GiveUpWaiting();
    ADD_FAILURE() << "still open: " << dialog->windowTitle().toStdString();
    qobject_cast<QDialog*>(dialog)->reject();
  });
  watch.start(1s);
  for (std::size_t before = next_; (next_ < lines_.size() || acting_ > 0) && !patience.hasExpired();) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (std::exchange(before, next_) != next_) patience.setRemainingTime(20s);
  }
  EXPECT_EQ(next_, lines_.size()) << "stopped before: " << (next_ < lines_.size() ? lines_[next_].source : "");
}

void BatchPlayer::GiveUpWaiting() {
  ADD_FAILURE() << "a command still waits for a window, " << (next_ < lines_.size() ? "before: " : "behind: ")
                << lines_[std::min(next_, lines_.size() - 1)].source;
  next_ = lines_.size();
  Desk& desk = desktop_.program.desk;
  for (Form* form : desk.Forms())
    if (form->Visible() && form->name != "frmMain") desk.Close(*form);
  desktop_.windows.Sync();
}

/// A line that is an answer waits for its dialog.
bool BatchPlayer::MayAct() const {
  return next_ < lines_.size() && !IsAnswer(lines_[next_]) && !desktop_.program.desk.Busy() &&
         !desktop_.hand.Settling() && QApplication::activeModalWidget() == nullptr;
}

void BatchPlayer::Step() {
  stepping_ = false;
  if (!MayAct()) return;
  const BatchLine& line = lines_[next_++];
  SCOPED_TRACE(line.source);
  ++acting_;
  Act(line);
  --acting_;
  if (!pictures.empty()) desktop_.hand.Grab(*desktop_.windows.Main(), pictures + "_" + std::to_string(line.number));
}

void BatchPlayer::Answer(QDialog& dialog) {
  if (AsksToReplaceAFile(dialog)) return desktop_.hand.Click(dialog, QMessageBox::Yes);
  const bool okAlone = OffersOkAlone(dialog);
  if (TakesOffer(dialog)) return;
  const bool answered = next_ < lines_.size() && IsAnswer(lines_[next_]) &&
                        (!okAlone || (lines_[next_].verb == Verb::Reply && lines_[next_].answer == Answer::Ok));
  if (!answered) {
    EXPECT_TRUE(okAlone) << "no answer to " << dialog.windowTitle().toStdString();
    okAlone ? dialog.accept() : dialog.reject();
    return;
  }
  const BatchLine& line = lines_[next_++];
  EXPECT_EQ(dialog.windowTitle().toStdString(), line.title.value_or(dialog.windowTitle().toStdString()));
  Hand& hand = desktop_.hand;
  switch (line.verb) {
    case Verb::Reply:
      return hand.Click(dialog, ButtonOf(line.answer));
    case Verb::Enter:
      return line.text ? hand.TypeLine(dialog, *line.text) : hand.Dismiss(dialog);
    default:
      break;
  }
  if (!line.text) return hand.Dismiss(dialog);
  auto* const files = qobject_cast<QFileDialog*>(&dialog);
  ASSERT_NE(files, nullptr) << dialog.windowTitle().toStdString();
  const std::string path = InFolder(files->acceptMode() == QFileDialog::AcceptOpen ? reading_ : writing_, *line.text);
  // The dialog offers no file that is missing; here it has gone since.
  if (!std::filesystem::exists(path)) files->setFileMode(QFileDialog::AnyFile);
  hand.NameFile(dialog, path);
}

bool BatchPlayer::TakesOffer(QDialog& dialog) {
  auto* const offer = dialog.findChild<QPushButton*>(QStringLiteral("offer"));
  if (offer == nullptr || next_ == lines_.size()) return false;
  const BatchLine& line = lines_[next_];
  if (line.verb != Verb::Reply || line.answer != merlane::Answer::Offer) return false;
  ++next_;
  QTest::mouseClick(offer, Qt::LeftButton);
  return true;
}

std::string BatchPlayer::InFolder(const std::string& folder, const std::string& path) const {
  return (std::filesystem::path(folder) / path).string();
}

std::pair<std::string, std::string> BatchPlayer::Target(const BatchLine& line) const {
  const std::size_t dot = line.target.find('.');
  if (dot != std::string::npos) return {line.target.substr(0, dot), line.target.substr(dot + 1)};
  for (const Form* form : desktop_.program.desk.Forms())
    if (form->Loaded() && form->Find(line.target) != nullptr) return {form->name, line.target};
  return {line.target, ""};
}

void BatchPlayer::Act(const BatchLine& line) {
  const auto [form, control] = Target(line);
  Hand& hand = desktop_.hand;
  switch (line.verb) {
    case Verb::Press:
    case Verb::Choose:
      return Press(form, control);
    case Verb::Tick:
    case Verb::Untick:
      if (hand.Find<QCheckBox>(form, control)->isChecked() != (line.verb == Verb::Tick)) hand.Press(form, control);
      return;
    case Verb::Set:
      return hand.Type(form, control, *line.text);
    case Verb::Select:
      return SelectRow(line, form, control);
    case Verb::DoubleClick:
      if (!line.row) return hand.DoubleClickSelected(form, control);
      return hand.DoubleClickCell(form, control, *line.row, line.column);
    case Verb::Click:
      return hand.ClickCell(form, control, *line.row, line.column);
    case Verb::Type:
      return Type(line, form, control);
    case Verb::Close:
      return hand.CloseFrame(line.target);
    case Verb::Interrupt:
      return desktop_.host.ActAt(line.turn, [this, closes = line.closes, target = std::pair(form, control)] {
        desktop_.windows.Sync();
        if (closes) return desktop_.hand.CloseFrame(target.first);
        Press(target.first, target.second);
      });
    case Verb::Seed:
      return desktop_.random.SetSeed(line.seed);
    case Verb::Clock:
      return desktop_.clock.StandAt(line.time);
    case Verb::SaveText:
      return SaveText(line, form, control);
    case Verb::Export:
      if (line.target == "parameters")
        Write(*line.text, ParametersCsv(desktop_.program.state.algorithm));
      else if (line.target == "visits")
        Write(*line.text, VisitsCsv(desktop_.program.model.data, desktop_.program.TablesAtFit()));
      return;
    case Verb::Show:
    case Verb::SavePlot:
      return;  // of the forms, not of the windows
    default:
      FAIL() << "an answer without a question: " << line.source;
  }
}

void BatchPlayer::Press(const std::string& form, const std::string& control) {
  const Form* const owner = desktop_.program.desk.Find(form);
  ASSERT_NE(owner, nullptr) << form;
  if (dynamic_cast<const MenuEntry*>(owner->Find(control)) != nullptr) return desktop_.hand.Choose(form, control);
  if (auto* const box = qobject_cast<QLineEdit*>(desktop_.hand.Find(form, control))) {
    QTest::mouseClick(box, Qt::LeftButton);
    return;
  }
  desktop_.hand.Press(form, control);
}

void BatchPlayer::Type(const BatchLine& line, const std::string& form, const std::string& control) {
  desktop_.hand.DoubleClickCell(form, control, *line.row, line.column);
  auto* const entry = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  ASSERT_NE(entry, nullptr);
  ASSERT_EQ(entry->objectName(), "txtValue");
  QTest::keyClick(entry, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(entry, Qt::Key_Delete);
  QTest::keyClicks(entry, QString::fromStdString(*line.text));
  QTest::keyClick(entry, Qt::Key_Return);
}

void BatchPlayer::SelectRow(const BatchLine& line, const std::string& form, const std::string& control) {
  auto* const view = desktop_.hand.Find<QAbstractItemView>(form, control);
  const QModelIndex item = view->model()->index(*line.row - 1, 0);
  ASSERT_TRUE(item.isValid());
  view->scrollTo(item);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(item).center());
}

/// What the widget shows, with the line ends of the form's text.
void BatchPlayer::SaveText(const BatchLine& line, const std::string& form, const std::string& control) {
  desktop_.windows.Sync();
  const auto* const pane = desktop_.hand.Find<QPlainTextEdit>(form, control);
  ASSERT_TRUE(pane->isVisible());
  const std::string& text = desktop_.program.desk.Find(form)->Find(control)->text;
  const char* const lineEnd = text.find("\r\n") != std::string::npos ? "\r\n" : "\n";
  Write(*line.text, pane->toPlainText().replace('\n', lineEnd).toStdString());
}

void BatchPlayer::Write(const std::string& path, const std::string& bytes) const {
  WriteWholeFile(InFolder(writing_, path), bytes);
}

}  // namespace merlane::test
