#include "ui/qt_host.h"

#include "ui/main_window.h"
#include "ui/questions.h"
#include "ui/windows.h"

namespace merlane {

using namespace std::chrono_literals;

QtHost::QtHost() : clock_({.fastTurns = 16, .fastTurnsTake = 10us, .eventsEvery = 10ms, .newsEvery = 50ms}) {}

QWidget* QtHost::Parent() {
  if (windows_ == nullptr) return nullptr;
  windows_->Sync();
  return windows_->OnScreen();
}

Answer QtHost::MsgBox(const Message& message) { return AskInBox(message, Parent()); }

std::optional<std::string> QtHost::InputBox(const InputRequest& request) {
  QWidget* const parent = Parent();
  return AskForLine(request, parent, windows_ != nullptr && windows_->TableInFront());
}

std::optional<std::string> QtHost::AskFile(const FileRequest& request) {
  auto chosen = AskForFile(request, folder_, Parent());
  if (chosen) folder_ = QFileInfo(ToQt(*chosen)).absolutePath();
  return chosen;
}

void QtHost::OnForm(Form& form, FormEvent event) {
  if (windows_ != nullptr) windows_->Note(form, event);
}

void QtHost::OnWrote(const std::string& path) {
  if (windows_ != nullptr && windows_->Main() != nullptr) windows_->Main()->TellWritten(ToQt(path));
}

void QtHost::Beep() { QApplication::beep(); }

void QtHost::OnFailure(const std::string& text) {
  TellFailure(windows_ == nullptr ? text : InCaptions(text), Parent());
}

/// A failure begins with the name that batch files have for its command; people know the command by its caption.
std::string QtHost::InCaptions(const std::string& failure) const {
  const std::size_t dot = failure.find('.'), colon = failure.find(": ");
  if (colon == std::string::npos || dot > colon) return failure;
  const Form* const form = windows_->desk.Find(failure.substr(0, dot));
  const Control* const control = form == nullptr ? nullptr : form->Find(failure.substr(dot + 1, colon - dot - 1));
  if (dynamic_cast<const Button*>(control) == nullptr && dynamic_cast<const MenuEntry*>(control) == nullptr)
    return failure;
  return FromQt(Caption(control->text).remove(QLatin1Char('&')).simplified()) + failure.substr(colon);
}

void QtHost::OnEnd(int exitStatus) {
  if (onEnd) onEnd(exitStatus);
}

void QtHost::RunEvents() {
  if (windows_ != nullptr && clock_.NewsAreDue()) {
    windows_->Sync();
    clock_.NewsAreTold();
  }
  QCoreApplication::processEvents();
  clock_.EventsHaveRun();
}

void QtHost::Wait() {
  if (windows_ != nullptr) windows_->Sync();
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace merlane
