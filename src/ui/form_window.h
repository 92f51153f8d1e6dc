#pragma once

#include <QtWidgets>
#include <set>

#include "layouts/layout.h"
#include "ui/binder.h"
#include "ui/scroll_view.h"

namespace merlane {

class MainWindow;

/// The window of one form, drawn by its layout: a child of the main window or, where that is hidden or the form must
/// stand above the others, a window of its own. What does not fit is scrolled to, so that every control can be reached
/// on a small screen.
class FormWindow : public QWidget {
 public:
  FormWindow(Form& form, Windows& windows);
  ~FormWindow() override;

  FormBinding binding;

  Layout::Place StandsAt() const { return layout_.place; }

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
  void Draw();
  QAbstractButton* ButtonOf(const std::string& name) const;
  QSize PreferredSize() const;
  Qt::WindowFlags FrameFlags() const;
  void FirstFocus();
  void Float(MainWindow* main);
  void Undock();
  void Dock(QMdiArea& area);
  void FindPlace(QMdiArea& area);
  QRect RoomIn(QMdiArea& area) const;
  QSize SizeWithin(const QSize& room) const;

  Windows& windows_;
  const Layout layout_;
  ScrollView* scroll_;  // holds what is not pinned
  std::vector<QWidget*> tabStops_;
  std::vector<std::pair<QWidget*, std::vector<QWidget*>>> frames_;  // each seen while one of the others is
  bool takesInput_ = true;
  QPointer<QMdiSubWindow> frame_;  // around the window while it is a child
  QRect opened_;                   // where the frame was put when it opened
  QPointer<QWidget> rested_;       // had the focus when the window ceased to take input or went off the screen
  bool onScreen_ = false;
  bool focusGiven_ = false;
};

}  // namespace merlane
