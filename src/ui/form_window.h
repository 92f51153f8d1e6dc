#pragma once

#include <QtWidgets>
#include <set>

#include "ui/binder.h"
#include "ui/scroll_view.h"

namespace merlane {

class MainWindow;

/// The window of one form: a child of the main window or, where that is hidden or the form must stand above the others,
/// a window of its own. What does not fit is scrolled to, so that every control can be reached on a small screen.
class FormWindow : public QWidget {
 public:
  FormWindow(Form& form, Windows& windows);
  ~FormWindow() override;

  FormBinding binding;

  // What the layout decides.
  /// Holds what the layout places.
  QWidget& Content() { return scroll_->Content(); }
  /// Stands below the content and is not scrolled with it.
  void Pin(QLayout* below);
  /// The menus of the form, above the content.
  void SetMenuBar(QMenuBar* bar) { layout()->setMenuBar(bar); }
  void PreferSize(QSize size) { preferredSize_ = size; }
  void SetDefault(QWidget* button);                                                      // pressed by Enter
  void SetCancel(QWidget* button) { cancel_ = qobject_cast<QAbstractButton*>(button); }  // pressed by Escape
  /// Escape closes the window as its frame does.
  void CloseByEscape() { closesByEscape_ = true; }
  /// Where the window opens: at the left, where the menu stands; in the room beside the menu; over all of it; or, as a
  /// window of its own, above the others at their upper left corner, but never above a question.
  enum class Room { Left, BesideMenu, Whole, Above };
  void Stand(Room room) { room_ = room; }
  Room StandsIn() const { return room_; }
  /// The window stays: its frame offers no way to close it.
  void Stay() { stays_ = true; }
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
  /// The area has another size: a window that still stands where it was opened takes the room that there is now.
  void Refit();
  /// What Alt with an underlined letter presses here at present.
  std::set<QKeySequence> Keys() const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Qt::WindowFlags FrameFlags() const;
  void SetTabOrder();
  void FirstFocus();
  void Float(MainWindow* main);
  void Undock();
  void Dock(QMdiArea& area);
  void FindPlace(QMdiArea& area);
  QRect RoomIn(QMdiArea& area) const;
  QSize SizeWithin(const QSize& room) const;

  Windows& windows_;
  ScrollView* scroll_;
  QSize preferredSize_;
  Room room_ = Room::BesideMenu;
  std::vector<QWidget*> tabStops_;
  QAbstractButton* default_ = nullptr;
  QAbstractButton* cancel_ = nullptr;
  bool closesByEscape_ = false;
  bool stays_ = false;
  bool takesInput_ = true;
  std::vector<std::pair<QWidget*, std::vector<QWidget*>>> frames_;
  QPointer<QMdiSubWindow> frame_;  // around the window while it is a child
  QRect opened_;                   // where the frame was put when it opened
  QPointer<QWidget> rested_;       // had the focus when the window ceased to take input or went off the screen
  bool onScreen_ = false;
  bool focusGiven_ = false;
};

}  // namespace merlane
