#pragma once

#include <QtWidgets>
#include <chrono>
#include <functional>

#include "platform/window_system.h"

namespace merlane {

class Windows;

/// The desktop as the program's window system: questions are dialogs, forms are windows, and a turn lets the pending
/// events of Qt run.
class QtHost : public WindowSystem {
 public:
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

  /// A turn may be given millions of times a second, or once in a second: events run when 10 ms have gone by since they
  /// ran last. While turns come fast the clock is read at every sixteenth only; when a turn takes longer, at each.
  void Turn() override {
    if (--turnsToCheck_ <= 0) CheckClock();
  }
  /// The last of many turns in a row looks at the clock.
  long QuietTurns(long atMost) override {
    if (atMost < 2) return 0;
    turnsToCheck_ = 0;
    return atMost - 1;
  }
  void Wait() override;

 private:
  using SteadyClock = std::chrono::steady_clock;

  void CheckClock();
  std::string InCaptions(const std::string& failure) const;
  /// Before a dialog the windows show what the program has said so far.
  QWidget* Parent();

  Windows* windows_ = nullptr;
  QString folder_ = QDir::currentPath();  // of the file chosen last
  int turnsToCheck_ = 0;
  SteadyClock::time_point lastCheck_, lastEvents_, lastSync_;
};

}  // namespace merlane
