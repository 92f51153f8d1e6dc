#pragma once

#include <QtWidgets>
#include <functional>

#include "platform/turn_clock.h"
#include "platform/window_system.h"

namespace merlane {

class Windows;

/// The desktop as the program's window system: questions are dialogs, forms are windows, and a turn lets the pending
/// events of Qt run.
class QtHost : public WindowSystem {
 public:
  QtHost();
  /// The windows to work with from now on; null when they go.
  void Use(Windows* windows) { windows_ = windows; }
  /// Called when the program has ended, with its exit status.
  std::function<void(int)> onEnd;

  Answer MsgBox(const Message& message) override;
  std::optional<std::string> InputBox(const InputRequest& request) override;
  std::optional<std::string> AskFile(const FileRequest& request) override;

  void OnForm(Form& form, FormEvent event) override;
  void OnStatus(const std::string&, int, const std::string&) override {}
  void OnWrote(const std::string& path) override;
  void Beep() override;
  void OnFailure(const std::string& text) override;
  void OnEnd(int exitStatus) override;

  void Turn() override {
    if (clock_.Turn()) RunEvents();
  }
  long QuietTurns(long atMost) override { return clock_.QuietTurns(atMost); }
  void Wait() override;

 private:
  void RunEvents();
  std::string InCaptions(const std::string& failure) const;
  /// Before a dialog the windows show what the program has said so far.
  QWidget* Parent();

  Windows* windows_ = nullptr;
  QString folder_ = QDir::currentPath();  // of the file chosen last
  TurnClock clock_;
};

}  // namespace merlane
