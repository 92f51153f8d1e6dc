#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/charge.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "platform/host.h"

namespace merlane {

/// The place where forms meet their host. Forms show each other, ask and wait through it; hosts (desktop, batch runner,
/// tests) bring what a person does to a control through it. It holds the rules both share: which actions are allowed
/// when, and what becomes of a command that fails.
class Desk {
 public:
  explicit Desk(const Host& h) : host(h) {}
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  Host host;
  Charge charge;

  const std::vector<Form*>& Forms() const { return forms_; }
  /// The form of that name; null when there is none.
  Form* Find(const std::string& formName) const;

  // What forms do with forms; to show one that is in sight brings it to the front.
  void Load(Form& form);
  void Show(Form& form);
  void Hide(Form& form);
  /// Unloads a form. If it was in charge, whoever acts now is on the screen again.
  void Unload(Form& form);
  void ToFront(Form& form);
  /// Brings whoever acts now to the front: for a window of results that closes.
  void BringBack();
  /// Shows whose turn it is when this window, which is in charge, has closed.
  void ShowBehind(const Form& window);

  // Questions, answered as WindowSystem says; Tell is for messages whose answer is of no account.
  Answer Ask(const std::string& title, const std::string& text, int boxStyle, const std::string& details = "");
  void Tell(const std::string& title, const std::string& text, int boxStyle, const std::string& details = "");
  /// Tells, and offers to do something about it (`Message::offer`); true when that was taken.
  bool TellAndOffer(const Message& message);
  /// Tells, in the command's own words, that what was asked for could not be done, or not all of it.
  void TellFailure(const std::string& title, const std::string& text, int boxStyle, const std::string& details = "");
  /// Empty when cancelled; for questions that take an empty line for a Cancel.
  std::string Input(const std::string& title, const std::string& prompt, const std::string& defaultText);
  /// None when cancelled; for questions to which an empty line is an answer.
  std::optional<std::string> InputOrNone(const std::string& title, const std::string& prompt,
                                         const std::string& defaultText);
  /// The path of a file, its extension added; none when cancelled.
  std::optional<std::string> AskFile(const FileRequest& request);

  /// Writes a file whole and tells the host; `lasting` as WriteWholeFile.
  void Write(const std::string& path, std::string_view bytes, bool lasting = true);

  /// Gives the window system a turn. A turn inside a turn does nothing. Raises EndProgram when the user has closed the
  /// program meanwhile.
  void Turn();
  /// So many turns one after the other.
  void Turns(long count);
  /// Sleeps and lets commands run until `done`; raises EndProgram like Turn.
  void WaitUntil(const std::function<bool()>& done);
  /// The same until a window is closed.
  void WaitFor(const Form& window);

  // What people do with controls. Each returns false, and does nothing, when the control cannot be used now: its form
  // is not shown, it is disabled or hidden, or a calculation runs and does not offer it.
  bool Press(Button& button);
  bool Press(MenuEntry& entry);
  bool Choose(OptionButton& option);
  bool Tick(CheckBox& box, bool value);
  bool Click(TextBox& box);
  bool SetText(TextBox& box, const std::string& text);
  bool SetText(ComboBox& box, const std::string& text);
  bool SetText(Pane& pane, const std::string& text);
  bool Select(ListBox& list, int item);  // from 0
  bool DoubleClick(ListBox& list);
  bool SelectRow(Grid& grid, int row);  // as Grid counts
  bool Click(Grid& grid, int row, int column);
  bool DoubleClick(Grid& grid, int row, int column);
  bool Enter(Grid& grid, int row, int column, const std::string& entry);
  /// Closes a form as its frame does; an inactive form stays.
  bool Close(Form& form);

  /// True when a person could use the control at this moment.
  bool Usable(const Control& control) const;
  /// True while a calculation runs that has not asked for input.
  bool Busy() const { return depth_ > 0 && !waiting_; }
  /// The user has closed the program while a calculation runs; the next turn asks whether that is meant.
  bool CloseAsked() const { return closeAsked_; }
  /// Set once the program has ended.
  bool Ended() const { return ended_; }

  /// The handler of the main window's close, run where a turn is given; asks the quit dialogue and raises EndProgram on
  /// Yes.
  std::function<void()> onCloseWhileBusy;
  /// Called after a command of this form failed at run time, when nothing else runs: brings the program back to a state
  /// in which the user can go on.
  std::function<void(Form& form)> onFailed;

 private:
  friend class Form;
  /// Runs a handler as a command of a form: a run-time failure becomes a message to the user, the end of the program is
  /// passed on.
  void Run(Form& form, const std::string& command, const std::function<void()>& handler);
  bool Use(Control& control, const std::function<void()>& action);
  /// A command has changed what it changes, for all forms to see.
  void BringUpToDate();
  void EndIfRaised();

  std::vector<Form*> forms_;
  int depth_ = 0;  // commands running, one inside the wait of another
  bool inTurn_ = false;
  bool waiting_ = false;
  bool closeAsked_ = false;
  bool endRaised_ = false;  // a nested command has ended the program; the commands it is nested in unwind
  EndProgram end_;
  bool ended_ = false;
};

}  // namespace merlane
