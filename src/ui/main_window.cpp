#include "ui/main_window.h"

#include "layouts/layouts.h"
#include "ui/form_window.h"
#include "ui/layout_drawer.h"
#include "ui/windows.h"

namespace merlane {

MainWindow::MainWindow(FrmMain& form, Windows& windows) : binding(form, windows, this, menuBar()), windows_(windows) {
  setObjectName(ToQt(form.name));
  area_ = new QMdiArea;
  area_->setObjectName(QStringLiteral("area"));
  area_->setFrameShape(QFrame::NoFrame);
  area_->setBackground(palette().brush(QPalette::Mid));
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->viewport()->installEventFilter(this);
  connect(area_, &QMdiArea::subWindowActivated, this, [this] { LeaveKeysToFront(); });

  auto* const central = new QWidget;
  auto* const column = new QVBoxLayout(central);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(area_, 1);
  column->addWidget(Footer());
  setCentralWidget(central);
}

/// What the status bars tell, and at the right what has been saved.
QWidget* MainWindow::Footer() {
  auto* const footer = new QFrame;
  footer->setObjectName(QStringLiteral("footer"));
  auto* const row = new QHBoxLayout(footer);
  row->setContentsMargins(12, 6, 12, 6);
  row->setSpacing(24);
  auto* const lines = new QVBoxLayout;
  lines->setSpacing(3);
  LayoutDrawer(LayoutOf(binding.form), binding, *this).Draw(*lines);
  row->addLayout(lines, 1);
  written_ = new ElidedLabel(nullptr);
  written_->MayShrink();
  written_->setObjectName(QStringLiteral("written"));
  row->addWidget(written_, 0, Qt::AlignBottom);
  return footer;
}

void MainWindow::Sync() {
  setWindowTitle(ToQt(binding.form.title));
  binding.Sync();
  if (isVisible() == binding.form.Visible()) return;
  if (!placed_) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QSize titleBar(0, 30);
    resize(QSize(1480, 940).boundedTo(screen.size() - titleBar));
    move(screen.center() - QRect(QPoint(), size() + titleBar).center());
    placed_ = true;
  }
  setVisible(binding.form.Visible());
}

void MainWindow::TellWritten(const QString& path) {
  written_->setText(QStringLiteral("Saved: %1").arg(QFileInfo(path).fileName()));
  written_->setToolTip(path);
}

void MainWindow::LeaveKeysToFront() {
  const QMdiSubWindow* const frame = area_->activeSubWindow();
  const auto* const front = frame == nullptr ? nullptr : dynamic_cast<const FormWindow*>(frame->widget());
  binding.LeaveKeys(front == nullptr ? std::set<QKeySequence>() : front->Keys());
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  // The area lays out its scroll bars itself, when this event has gone by.
  if (event->type() == QEvent::Resize)
    QMetaObject::invokeMethod(
        this, [this] { windows_.Refit(); }, Qt::QueuedConnection);
  return QMainWindow::eventFilter(watched, event);
}

void MainWindow::Arrange(Arrangement arrangement) {
  switch (arrangement) {
    case Arrangement::Cascade:
      Restored();
      return area_->cascadeSubWindows();
    case Arrangement::TileHorizontal:
      return Tile(Qt::Vertical);
    case Arrangement::TileVertical:
      return Tile(Qt::Horizontal);
    case Arrangement::Icons:
      break;
  }
  // The area keeps minimised windows in a row along its lower edge.
  int left = 0;
  for (QMdiSubWindow* window : area_->subWindowList())
    if (window->isVisible() && window->isMinimized()) {
      window->move(left, area_->viewport()->height() - window->height());
      left += window->width();
    }
}

/// The windows on the screen; those that were icons or filled the area are windows again.
std::vector<QMdiSubWindow*> MainWindow::Restored() {
  std::vector<QMdiSubWindow*> open;
  for (QMdiSubWindow* window : area_->subWindowList())
    if (window->isVisible()) {
      window->showNormal();
      open.push_back(window);
    }
  return open;
}

/// Lays the windows one below the other, or side by side.
void MainWindow::Tile(Qt::Orientation orientation) {
  const std::vector<QMdiSubWindow*> open = Restored();
  const QSize room = area_->viewport()->size();
  const int count = static_cast<int>(open.size());
  for (int i = 0; i < count; ++i) {
    QMdiSubWindow& window = *open[static_cast<std::size_t>(i)];
    if (orientation == Qt::Vertical)
      window.setGeometry(0, room.height() * i / count, room.width(), room.height() / count);
    else
      window.setGeometry(room.width() * i / count, 0, room.width() / count, room.height());
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  windows_.CloseAsked(binding.form);
}

}  // namespace merlane
