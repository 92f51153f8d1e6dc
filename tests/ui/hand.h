#pragma once

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <string>

#include "platform/window_system.h"
#include "ui/windows.h"

namespace merlane::test {

/// What a person does at the windows, with real mouse and key events. Dialogs are answered when they appear, in the
/// order in which the answers were given; one that nobody expects fails the test and is dismissed.
class Hand {
 public:
  explicit Hand(Windows& windows);
  ~Hand();
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;

  // At the windows.
  QWidget* Window(const std::string& form) const;
  template <class W = QWidget>
  W* Find(const std::string& form, const std::string& control) const;
  /// The action of an entry of the form's menus.
  QAction* Entry(const std::string& form, const std::string& entry) const;
  void Press(const std::string& form, const std::string& button);
  /// Chooses an entry by clicking through the menus.
  void Choose(const std::string& form, const std::string& entry);
  void Type(const std::string& form, const std::string& control, const std::string& text);
  /// Cells of a table count as those of its grid: row 0 is the heading.
  void ClickCell(const std::string& form, const std::string& grid, int row, int column);
  void DoubleClickCell(const std::string& form, const std::string& grid, int row, int column);
  void DoubleClickSelected(const std::string& form, const std::string& list);
  void Key(const std::string& form, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void CloseFrame(const std::string& form);

  // At a dialog that is open.
  void Click(QWidget& dialog, QMessageBox::StandardButton button);
  void TypeLine(QWidget& dialog, const std::string& text);
  void NameFile(QWidget& dialog, const std::string& path);
  void Dismiss(QWidget& dialog);

  // At the dialogs to come.
  void Answer(QMessageBox::StandardButton button, const std::string& title = "");
  void Enter(const std::string& text, const std::string& title = "");
  void CancelEntry(const std::string& title = "");
  void ChooseFile(const std::string& path, const std::string& title = "");
  void CancelFile(const std::string& title = "");
  void Expect(std::function<void(QWidget& dialog)> action, const std::string& title);
  /// Answers the dialogs that nothing was prepared for.
  std::function<void(QDialog& dialog)> answers;
  /// True when every expected dialog has appeared.
  bool Done() const { return expected_.empty(); }
  std::vector<std::string> titles;  // of the dialogs seen

  /// True while the windows are left to settle behind what was done; nothing should be done to them then.
  bool Settling() const { return settling_; }

  /// Where grabbed windows go; empty: none are grabbed.
  std::string album;
  void Grab(QWidget& window, const std::string& picture);

 private:
  struct Expected {
    std::function<void(QWidget&)> action;
    std::string title;
  };

  void LookForDialog();
  void Settle();

  Windows& windows_;
  std::deque<Expected> expected_;
  QTimer timer_;
  bool handling_ = false;
  bool settling_ = false;
};

template <class W>
W* Hand::Find(const std::string& form, const std::string& control) const {
  QWidget* const window = Window(form);
  W* const widget = window == nullptr ? nullptr : window->findChild<W*>(QString::fromStdString(control));
  EXPECT_NE(widget, nullptr) << form << "." << control;
  return widget;
}

}  // namespace merlane::test
