#pragma once

#include <QtWidgets>

#include "ui/binder.h"

namespace merlane {

class MainWindow;

/// The window of one form: a child of the main window or, where that is hidden or the form must stand before all, a
/// window of its own.
class FormWindow : public QWidget {
 public:
  FormWindow(Form& form, Windows& windows);
  ~FormWindow() override;

  FormBinding binding;

  // What the layout decides.
  void PreferSize(QSize size) { preferredSize_ = size; }
  void SetDefault(QWidget* button);                                                      // pressed by Enter
  void SetCancel(QWidget* button) { cancel_ = qobject_cast<QAbstractButton*>(button); }  // pressed by Escape
  /// Escape closes the window as its frame does.
  void CloseByEscape() { closesByEscape_ = true; }
  /// Where the window opens: at the left, where the menu stands; in the room beside the menu; or over all of it.
  enum class Room { Left, BesideMenu, Whole };
  void Stand(Room room) { room_ = room; }
  /// The next widget that the Tab key goes to, if it is one that takes keys.
  void AddTabStop(QWidget* widget);
  /// A frame that is seen only while one of these is.
  void ShowWithAnyOf(QWidget* frame, std::vector<QWidget*> members);

  void Sync();
  /// Puts the window on the screen if it is not there: into the main window or, where that is hidden (null), on its
  /// own.
  void Place(MainWindow* main);
  /// Takes the window off the screen.
  void Leave();
  void BringToFront();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void TakeInput(bool takes);
  void SetTabOrder();
  void FirstFocus();
  void Float();
  void Undock();
  void Dock(QMdiArea& area);
  void FindPlace(QMdiArea& area);
  QRect RoomIn(QMdiArea& area) const;
  QSize SizeWithin(const QSize& room) const;

  Windows& windows_;
  QSize preferredSize_;
  Room room_ = Room::BesideMenu;
  std::vector<QWidget*> tabStops_;
  QAbstractButton* default_ = nullptr;
  QAbstractButton* cancel_ = nullptr;
  bool closesByEscape_ = false;
  std::vector<std::pair<QWidget*, std::vector<QWidget*>>> frames_;
  QPointer<QMdiSubWindow> frame_;  // around the window while it is a child
  QPointer<QWidget> rested_;       // had the focus when the window ceased to take input or went off the screen
  bool onScreen_ = false;
  bool focusGiven_ = false;
};

}  // namespace merlane
