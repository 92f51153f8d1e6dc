#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"

namespace merlane {

class Desk;

/// A window of the program: a title and named controls. Every form is a singleton that comes into being on first use:
/// it is loaded (design state, then OnLoad) when it is first needed, shown, hidden, and unloaded again.
class Form {
 public:
  Form(Desk& d, std::string formName, std::string formTitle);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  Desk& desk;
  const std::string name;
  std::string title;
  /// The form begins commands, which do not mix with others: it rests while another is in charge or under way.
  bool beginsCommands = false;
  /// Who closes the form leaves the program.
  bool leavesProgram = false;

  /// True when a person can use the form, as far as the form goes: who is in charge decides.
  bool TakesInput() const;

  bool Loaded() const { return loaded_; }
  bool Visible() const { return visible_; }
  const std::vector<Control*>& Controls() const { return controls_; }
  Control* Find(const std::string& controlName) const;
  /// The control that shall have the keyboard focus; a host gives it and clears this.
  Control* focus = nullptr;
  /// The form may be closed by its frame while a long calculation runs.
  bool closableWhileBusy = false;

 protected:
  friend class Desk;
  /// Runs when the form is loaded, after its controls have returned to their design state.
  virtual void OnLoad() {}
  /// Asked before the user closes the window by its frame; false keeps it open.
  virtual bool OnCloseRequest() { return true; }
  /// Runs when the form is unloaded, by its frame or by the program.
  virtual void OnUnload() {}

 private:
  friend class Control;
  std::vector<Control*> controls_;
  std::string designTitle_;
  bool designKept_ = false;
  bool loaded_ = false;
  bool visible_ = false;
};

}  // namespace merlane
