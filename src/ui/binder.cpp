#include "ui/binder.h"

#include "ui/scroll_view.h"
#include "ui/windows.h"

namespace merlane {

void Binder::Adopt(QWidget* widget) {
  widget_ = widget;
  widget_->setObjectName(ToQt(control.name));
}

void Binder::Act(const std::function<void()>& action) { windows.Act(this, action); }

void Binder::Sync() {
  if (widget_ == nullptr) return;
  if (shownToolTip_ != control.toolTip) widget_->setToolTip(ToQt(shownToolTip_ = control.toolTip));
  if (shownEnabled_ != Enabled()) widget_->setEnabled(shownEnabled_ = Enabled());
  if (shownVisible_ != control.visible) widget_->setVisible(shownVisible_ = control.visible);
}

FormBinding::FormBinding(Form& boundForm, Windows& windows, QWidget* parent, QMenuBar* menuBar) : form(boundForm) {
  std::map<int, QButtonGroup*> groups;
  Menus menus;
  const auto opensMenu = [&](const MenuEntry* entry) {
    return std::ranges::any_of(form.Controls(), [&](const Control* other) {
      const auto* below = dynamic_cast<const MenuEntry*>(other);
      return below != nullptr && below->parent == entry;
    });
  };
  for (Control* control : form.Controls()) {
    std::unique_ptr<Binder> binder;
    if (auto* label = dynamic_cast<Label*>(control)) {
      binder = BindLabel(*label, windows, parent);
    } else if (auto* button = dynamic_cast<Button*>(control)) {
      binder = BindButton(*button, windows, parent);
    } else if (auto* option = dynamic_cast<OptionButton*>(control)) {
      QButtonGroup*& group = groups[option->group];
      if (group == nullptr) group = new QButtonGroup(parent);
      binder = BindOption(*option, windows, group, parent);
    } else if (auto* check = dynamic_cast<CheckBox*>(control)) {
      binder = BindCheck(*check, windows, parent);
    } else if (auto* textBox = dynamic_cast<TextBox*>(control)) {
      binder = BindTextBox(*textBox, windows, parent);
    } else if (auto* combo = dynamic_cast<ComboBox*>(control)) {
      binder = BindCombo(*combo, windows, parent);
    } else if (auto* list = dynamic_cast<ListBox*>(control)) {
      binder = BindList(*list, windows, parent);
    } else if (auto* grid = dynamic_cast<Grid*>(control)) {
      binder = BindGrid(*grid, windows, parent);
    } else if (auto* pane = dynamic_cast<Pane*>(control)) {
      binder = BindPane(*pane, windows, parent);
    } else if (auto* bar = dynamic_cast<StatusBar*>(control)) {
      binder = BindStatusBar(*bar, windows, parent);
    } else if (auto* canvas = dynamic_cast<Canvas*>(control)) {
      binder = BindCanvas(*canvas, windows, parent);
    } else if (auto* entry = dynamic_cast<MenuEntry*>(control)) {
      binder = BindMenuEntry(*entry, windows, menuBar, menus, opensMenu(entry));
      hasMenus_ = true;
    } else {
      continue;
    }
    binders_.push_back(std::move(binder));
  }
}

QWidget* FormBinding::Find(const std::string& controlName) const {
  for (const auto& binder : binders_)
    if (binder->control.name == controlName) return binder->Widget();
  return nullptr;
}

void FormBinding::Sync() {
  for (const auto& binder : binders_) binder->Sync();
}

void FormBinding::Commit(const Binder* source) {
  for (const auto& binder : binders_)
    if (binder.get() != source) binder->Commit();
}

void FormBinding::LeaveKeys(const std::set<QKeySequence>& keys) {
  for (const auto& binder : binders_) binder->LeaveKeys(keys);
}

void FormBinding::GiveFocus() {
  if (form.focus == nullptr || !form.TakesInput()) return;
  const Control* const wanted = std::exchange(form.focus, nullptr);
  if (QWidget* const widget = Find(wanted->name)) FocusOn(*widget);
}

}  // namespace merlane
