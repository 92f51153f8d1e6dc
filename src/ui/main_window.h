#pragma once

#include <QtWidgets>

#include "control/frm_main.h"
#include "ui/binder.h"
#include "ui/elided_label.h"

namespace merlane {

/// The main window: menu bar, the area of the child windows, and below it what the status bars tell.
class MainWindow : public QMainWindow {
 public:
  MainWindow(FrmMain& form, Windows& windows);

  FormBinding binding;

  QMdiArea& Area() { return *area_; }
  void Sync();
  void Arrange(Arrangement arrangement);
  /// Gives up the underlined letters of the menu bar that the window in front has for its own controls.
  void LeaveKeysToFront();
  /// Tells at the right end of the status line that a file has been written.
  void TellWritten(const QString& path);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* Footer();
  std::vector<QMdiSubWindow*> Restored();
  void Tile(Qt::Orientation orientation);

  Windows& windows_;
  QMdiArea* area_;
  ElidedLabel* written_;
  bool placed_ = false;
};

}  // namespace merlane
