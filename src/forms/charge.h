#pragma once

#include <functional>
#include <vector>

#include "base/at_end.h"

namespace merlane {

class Form;

/// Who may act: the one place that knows which command is in charge and what rests meanwhile.
///
/// Commands do not mix. A window in which a command is carried out (an editor, the ranking, the choice of a worksheet)
/// is in charge from its opening to its closing; what it opens of its kind stands before it and is in charge in its
/// turn. Of these windows only the foremost takes input, and not while its own command runs or waits. Forms that begin
/// commands (`Form::beginsCommands`) rest until nobody is in charge and nothing runs, but for what saves and no more
/// (`Control::beginsNothing`). All other windows only show what was found, and can be used at any time.
class Charge {
 public:
  /// What rests while a window is in charge.
  enum class Resting {
    Commands,         // whatever begins another command
    ApplicationMenu,  // and the application menu, which would call the main menu
    Everything        // all but the window itself, which is modal
  };

  /// The form in which all commands begin: it acts when no window is in charge. Null until there is one.
  Form* home = nullptr;
  /// Called whenever something has changed.
  std::function<void()> onChange = [] {};

  /// Puts a window in charge, before all others, until it gives the charge back.
  void Take(Form& window, Resting resting);
  /// Takes the charge from a window that closes; false when it had none.
  bool GiveBack(const Form& window);

  /// A command of this form runs, or waits, as long as what is returned lives.
  [[nodiscard]] auto Run(const Form& form) {
    running_.push_back(&form);
    return AtEnd([this] { running_.pop_back(); });
  }
  /// The command that runs is a long one as long as what is returned lives: the application menu rests, and no window
  /// that closes brings the main menu back.
  [[nodiscard]] auto LongCommand() {
    BeginLong();
    return AtEnd([this] { EndLong(); });
  }
  /// The long command that runs will not end as others do: the application menu rests until the next one has ended.
  void KeepApplicationMenuShut() { keepShut_ = true; }

  /// True when the window in charge keeps the form from all input, whether it begins commands or not.
  bool StandsBehind(const Form& form) const;
  /// True when the form takes no input, because of what is in charge.
  bool Rests(const Form& form) const;
  bool ApplicationMenuRests() const;
  /// The window that is in charge, or home.
  Form* InCharge() const { return holders_.empty() ? home : holders_.back().window; }
  /// The same; null while its own command runs, which goes on by itself.
  Form* WhoActs() const;
  /// Whose turn it is when this window, which is in charge, has closed: the window behind it, or home.
  Form* Behind(const Form& window) const;

 private:
  struct Holder {
    Form* window;
    Resting resting;
  };

  bool Runs(const Form& form) const;
  void BeginLong();
  void EndLong();

  std::vector<Holder> holders_;       // the last one is in charge
  std::vector<const Form*> running_;  // whose commands run, one inside the wait of another
  int long_ = 0;                      // long commands that run
  bool keepShut_ = false, shut_ = false;
};

}  // namespace merlane
