#include "forms/desk.h"

#include <algorithm>
#include <utility>

#include "base/at_end.h"
#include "base/failure_text.h"
#include "base/runtime_failure.h"
#include "platform/files.h"

namespace merlane {
Form* Desk::Find(const std::string& formName) const {
  const auto found = std::ranges::find(forms_, formName, &Form::name);
  return found == forms_.end() ? nullptr : *found;
}

void Desk::Load(Form& form) {
  if (form.loaded_) return;
  if (!form.designKept_) {
    form.designTitle_ = form.title;
    for (Control* control : form.controls_) control->KeepDesign();
    form.designKept_ = true;
  } else {
    form.title = form.designTitle_;
    for (Control* control : form.controls_) control->RestoreDesign();
  }
  form.loaded_ = true;
  form.OnLoad();
}

void Desk::Show(Form& form) {
  Load(form);
  const bool wasVisible = std::exchange(form.visible_, true);
  host.windows.OnForm(form, wasVisible ? FormEvent::Front : FormEvent::Shown);
}

void Desk::Hide(Form& form) {
  if (std::exchange(form.visible_, false)) host.windows.OnForm(form, FormEvent::Hidden);
}

void Desk::Unload(Form& form) {
  if (!form.loaded_) return;
  form.loaded_ = false;
  form.visible_ = false;
  const bool wasInCharge = charge.GiveBack(form);
  host.windows.OnForm(form, FormEvent::Unloaded);
  form.OnUnload();
  if (Form* const next = charge.WhoActs(); wasInCharge && next != nullptr && !next->Visible()) Show(*next);
}

void Desk::ToFront(Form& form) { Show(form); }

void Desk::BringBack() {
  if (Form* const acting = charge.WhoActs()) Show(*acting);
}

void Desk::ShowBehind(const Form& window) {
  if (Form* const behind = charge.Behind(window)) Show(*behind);
}

Answer Desk::Ask(const std::string& title, const std::string& text, int boxStyle, const std::string& details) {
  return host.windows.MsgBox({title, text, boxStyle, details});
}

void Desk::Tell(const std::string& title, const std::string& text, int boxStyle, const std::string& details) {
  host.windows.MsgBox({title, text, boxStyle, details});
}

bool Desk::TellAndOffer(const Message& message) { return host.windows.MsgBox(message) == Answer::Offer; }

void Desk::TellFailure(const std::string& title, const std::string& text, int boxStyle, const std::string& details) {
  Tell(title, text, boxStyle, details);
  host.windows.OnToldFailure();
}

std::string Desk::Input(const std::string& title, const std::string& prompt, const std::string& defaultText) {
  return InputOrNone(title, prompt, defaultText).value_or("");
}

std::optional<std::string> Desk::InputOrNone(const std::string& title, const std::string& prompt,
                                             const std::string& defaultText) {
  return host.windows.InputBox({title, prompt, defaultText});
}

std::optional<std::string> Desk::AskFile(const FileRequest& request) {
  const std::optional<std::string> chosen = host.windows.AskFile(request);
  if (!chosen) return std::nullopt;
  return request.PathOf(*chosen);
}

void Desk::Write(const std::string& path, std::string_view bytes, bool lasting) {
  WriteWholeFile(path, bytes, lasting);
  host.windows.OnWrote(path);
}

void Desk::Turn() {
  if (inTurn_) return;
  {
    const auto turn = Meanwhile(inTurn_, true);
    host.windows.Turn();
  }
  EndIfRaised();
  if (!std::exchange(closeAsked_, false) || !onCloseWhileBusy) return;
  try {
    onCloseWhileBusy();
  } catch (const RuntimeFailure& failure) {  // what could not be saved on the way out shall not end the calculation
    host.windows.OnFailure(failure.what());
  }
}

void Desk::Turns(long count) {
  if (inTurn_) return;
  while (count > 0) {
    count -= host.windows.QuietTurns(count);
    if (count-- > 0) Turn();
  }
}

void Desk::WaitUntil(const std::function<bool()>& done) {
  const auto waiting = Meanwhile(waiting_, true);
  while (!done()) {
    host.windows.Wait();
    EndIfRaised();
  }
}

void Desk::WaitFor(const Form& window) {
  WaitUntil([&] { return !window.Loaded(); });
}

void Desk::EndIfRaised() {
  if (endRaised_) throw end_;
}

bool Desk::Usable(const Control& control) const {
  const Form& form = control.form;
  if (ended_ || !form.loaded_ || !form.visible_ || !control.TakesInput() || !control.visible || !control.enabled)
    return false;
  return !Busy() || control.offeredWhileBusy;
}

void Desk::Run(Form& form, const std::string& command, const std::function<void()>& handler) {
  if (!handler) return;
  const bool besideACalculation = Busy();  // which is half done
  const auto deeper = Meanwhile(depth_, depth_ + 1);
  const auto running = charge.Run(form);
  const auto computing = Meanwhile(waiting_, false);
  try {
    handler();
  } catch (const EndProgram& end) {
    end_ = end;
    endRaised_ = true;
  } catch (const std::exception& failure) {
    host.windows.OnFailure(command + ": " + FailureText(failure));
    if (depth_ == 1 && onFailed) onFailed(form);
  }
  // Nobody looks behind the end, where data may be half taken.
  if (!besideACalculation && !endRaised_) BringUpToDate();
  if (endRaised_ && depth_ == 1) {
    ended_ = true;
    host.windows.OnEnd(end_.exitStatus);
  }
}

void Desk::BringUpToDate() {
  for (Form* form : forms_)
    if (form->loaded_)
      for (Control* control : form->controls_) control->BringUpToDate();
}

bool Desk::Use(Control& control, const std::function<void()>& action) {
  if (!Usable(control)) return false;
  Run(control.form, control.form.name + "." + control.name, action);
  return true;
}

bool Desk::Press(Button& button) { return Use(button, button.onClick); }

bool Desk::Press(MenuEntry& entry) {
  for (const MenuEntry* above = entry.parent; above != nullptr; above = above->parent)
    if (!above->enabled || !above->visible) return false;
  return Use(entry, entry.onClick);
}

bool Desk::Choose(OptionButton& option) {
  return Use(option, [&] {
    for (Control* control : option.form.Controls())
      if (auto* other = dynamic_cast<OptionButton*>(control); other != nullptr && other->group == option.group)
        other->value = other == &option;
    if (option.onClick) option.onClick();
  });
}

bool Desk::Tick(CheckBox& box, bool value) {
  return Use(box, [&] {
    box.value = value;
    if (box.onClick) box.onClick();
  });
}

bool Desk::Click(TextBox& box) { return Use(box, box.onClick); }

bool Desk::SetText(TextBox& box, const std::string& text) {
  if (box.readOnly) return false;
  return Use(box, [&] {
    box.text = text;
    if (box.onLeave) box.onLeave();
  });
}

bool Desk::SetText(ComboBox& box, const std::string& text) {
  return Use(box, [&] {
    box.text = text;
    if (box.onChange) box.onChange();
  });
}

bool Desk::SetText(Pane& pane, const std::string& text) {
  if (pane.readOnly) return false;
  return Use(pane, [&] { pane.text = text; });
}

bool Desk::Select(ListBox& list, int item) {
  if (item < 0 || item >= static_cast<int>(list.items.size())) return false;
  return Use(list, [&] {
    list.selected = item;
    if (list.onSelect) list.onSelect();
  });
}

bool Desk::DoubleClick(ListBox& list) { return Use(list, list.onDoubleClick); }

bool Desk::SelectRow(Grid& grid, int row) {
  if (!grid.selectsRows || row < grid.headingRows || row >= grid.Rows()) return false;
  return Use(grid, [&] {
    grid.selectedRow = row;
    if (grid.onClick) grid.onClick(row, 0);
  });
}

bool Desk::Click(Grid& grid, int row, int column) {
  if (!grid.Has(row, column)) return false;
  return Use(grid, [&] {
    if (grid.selectsRows && row >= grid.headingRows) grid.selectedRow = row;
    if (grid.onClick) grid.onClick(row, column);
  });
}

bool Desk::DoubleClick(Grid& grid, int row, int column) {
  if (!grid.Has(row, column)) return false;
  return Use(grid, [&] {
    if (grid.onDoubleClick) grid.onDoubleClick(row, column);
  });
}

bool Desk::Enter(Grid& grid, int row, int column, const std::string& entry) {
  if (!grid.Has(row, column)) return false;
  return Use(grid, [&] {
    if (grid.onEntry) grid.onEntry(row, column, entry);
  });
}

bool Desk::Close(Form& form) {
  if (ended_ || !form.loaded_ || !form.visible_ || !form.TakesInput()) return false;
  if (Busy() && !form.closableWhileBusy) {
    // The window goes when the calculation has unwound; only the main window's close can end the calculation itself.
    closeAsked_ = closeAsked_ || form.leavesProgram;
    return false;
  }
  Run(form, form.name, [&] {
    if (form.OnCloseRequest()) Unload(form);
  });
  return true;
}

}  // namespace merlane
