#pragma once

#include <string>
#include <vector>

#include "control/window_menu.h"
#include "forms/desk.h"
#include "platform/turn_clock.h"
#include "platform/window_system.h"
#include "web/form_text.h"

namespace merlane {

/// A page of a browser as the program's window system: what is new of the forms is told to it, questions are asked by
/// it, and what a person does there is brought to the desk where the program waits or gives a turn.
class PageHost : public WindowSystem {
 public:
  PageHost();
  /// The desk to work with from now on.
  void Use(Desk& desk) { desk_ = &desk; }
  /// Lays out the windows of the page.
  void Arrange(Arrangement arrangement);

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
    if (clock_.Turn()) DoWhatWasDone();
  }
  long QuietTurns(long atMost) override { return clock_.QuietTurns(atMost); }
  void Wait() override;

 private:
  /// Brings to the desk what a person has done meanwhile.
  void DoWhatWasDone();
  /// Tells the page what is new of the forms.
  void TellNews();
  /// Asks the page, and returns the words behind "answer". What is done beside an open question is passed over: the
  /// page lets nothing be done.
  std::vector<std::string> Ask(const std::string& question);
  void Do(const std::vector<std::string>& words);

  Desk* desk_ = nullptr;
  FormText text_;
  TurnClock clock_;
};

}  // namespace merlane
