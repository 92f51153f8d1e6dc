#pragma once

#include <QtWidgets>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "control/frm_main.h"
#include "forms/desk.h"
#include "ui/binder.h"

namespace merlane {

class FormWindow;
class MainWindow;

/// All windows of a program. Windows follow the forms: what was shown, hidden, written or drawn since the last Sync
/// appears with the next one, in a single pass. They refer to the forms and must go before them.
class Windows {
 public:
  explicit Windows(Desk& programDesk);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  Desk& desk;

  /// Runs what a person did to the widget of `source`: first what they typed elsewhere is handed over, then the action
  /// runs; behind the outermost action the windows follow.
  void Act(const Binder* source, const std::function<void()>& action);
  /// A window's frame was closed.
  void CloseAsked(Form& form);

  /// A form was shown, hidden, unloaded or brought to the front.
  void Note(Form& form, FormEvent event);
  /// Brings every window in step with its form.
  void Sync();

  /// The window that a dialog belongs to and is seen above of; null when none is on the screen.
  QWidget* OnScreen() const;
  /// The window of a form; null when it has not been shown yet.
  QWidget* Find(const std::string& formName) const;
  FormWindow* FindForm(const std::string& formName) const;  // the same, but for the main window
  MainWindow* Main() const { return main_.get(); }
  /// True while the child window in front shows a table, as the walks through one do.
  bool TableInFront() const;
  /// The first window that was made to stand at the left; null when there is none.
  const FormWindow* FirstAtTheLeft() const { return atTheLeft_; }
  /// The area of the child windows has another size.
  void Refit();

 private:
  bool MainVisible() const;
  /// The form of the main window, which holds all others; null before there is one.
  FrmMain* MainForm() const;
  void SyncMain();
  void Arrange(Arrangement arrangement);
  void BringToFront(Form& form);

  std::unique_ptr<MainWindow> main_;
  std::map<const Form*, std::unique_ptr<FormWindow>> windows_;
  const FormWindow* atTheLeft_ = nullptr;
  std::vector<Form*> fronts_;  // in the order in which they came to the front since the last Sync
  int acting_ = 0;
  bool syncing_ = false;
};

}  // namespace merlane
