#pragma once

#include <QtWidgets>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "forms/desk.h"
#include "ui/qt_text.h"

namespace merlane {

class Windows;

/// Keeps one widget in step with one control. What the control says is written to the widget only where it differs from
/// what the widget shows; what a person does to the widget is brought to the desk, which may refuse it, and the next
/// Sync puts the widget right again.
class Binder : public QObject {
 public:
  Binder(Control& boundControl, Windows& allWindows) : control(boundControl), windows(allWindows) {}

  Control& control;

  /// The widget of the control; null for an entry of a menu.
  QWidget* Widget() const { return widget_; }
  /// Writes to the widget what has changed.
  virtual void Sync();
  /// Hands over what was typed into the widget and has not been left yet.
  virtual void Commit() {}
  /// Gives up these accelerators, which another window has for its own.
  virtual void LeaveKeys(const std::set<QKeySequence>&) {}

 protected:
  /// Takes the widget: its name, and its tool tip and state from now on.
  void Adopt(QWidget* widget);
  /// True while the widget can be worked with: not in a form that takes no input.
  virtual bool Enabled() const { return control.enabled && control.TakesInput(); }
  /// Runs what a person did, after committing what they typed elsewhere.
  void Act(const std::function<void()>& action);
  Desk& TheDesk() const { return control.form.desk; }

  Windows& windows;

 private:
  QWidget* widget_ = nullptr;
  std::string shownToolTip_;
  bool shownEnabled_ = true;
  bool shownVisible_ = true;
};

/// The menus of a form, by the entry that opens each.
using Menus = std::map<const MenuEntry*, QMenu*>;

// Makes the widget of a control, with its binder.
std::unique_ptr<Binder> BindLabel(Label& label, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindStatusBar(StatusBar& bar, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindCanvas(Canvas& canvas, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindButton(Button& button, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindOption(OptionButton& option, Windows& windows, QButtonGroup* group, QWidget* parent);
std::unique_ptr<Binder> BindCheck(CheckBox& box, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindList(ListBox& list, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindTextBox(TextBox& box, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindCombo(ComboBox& box, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindPane(Pane& pane, Windows& windows, QWidget* parent);
std::unique_ptr<Binder> BindGrid(Grid& grid, Windows& windows, QWidget* parent);
/// Adds the entry to the menu of its parent, or to the bar.
std::unique_ptr<Binder> BindMenuEntry(MenuEntry& entry, Windows& windows, QMenuBar* bar, Menus& menus, bool opensMenu);

/// Left free around a drawing, for points on its edge.
inline constexpr int CanvasMargin = 6;

/// The widgets of a form's controls, made in the order of the controls.
class FormBinding {
 public:
  FormBinding(Form& boundForm, Windows& windows, QWidget* parent, QMenuBar* menuBar);

  Form& form;

  /// The widget of that control; null when the form has no such control or it is an entry of a menu.
  QWidget* Find(const std::string& controlName) const;
  const std::vector<std::unique_ptr<Binder>>& Binders() const { return binders_; }
  bool HasMenus() const { return hasMenus_; }
  void Sync();
  /// Hands over what was typed, except into the widget of `source`.
  void Commit(const Binder* source);
  void LeaveKeys(const std::set<QKeySequence>& keys);
  /// Gives the keyboard focus to the control that the form asks for.
  void GiveFocus();

 private:
  std::vector<std::unique_ptr<Binder>> binders_;
  bool hasMenus_ = false;
};

}  // namespace merlane
