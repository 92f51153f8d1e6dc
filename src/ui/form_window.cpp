#include "ui/form_window.h"

#include "ui/layouts.h"
#include "ui/main_window.h"
#include "ui/windows.h"

namespace merlane {
namespace {

/// Must be seen whatever else is on the screen: it ends what runs.
bool StandsBeforeAll(const Form& form) { return form.name == "frmAbort"; }

constexpr int MenuMargin = 8;  // around the menu

}  // namespace

FormWindow::FormWindow(Form& form, Windows& windows)
    : binding(form, windows, this, new QMenuBar(this)), windows_(windows) {
  setObjectName(ToQt(form.name));
  binding.Sync();  // a layout may look at what its pieces say
  LayOut(*this);
  SetTabOrder();
}

FormWindow::~FormWindow() { Undock(); }

void FormWindow::SetDefault(QWidget* button) {
  default_ = qobject_cast<QAbstractButton*>(button);
  if (auto* const push = qobject_cast<QPushButton*>(button)) push->setDefault(true);
}

void FormWindow::ShowWithAnyOf(QWidget* frame, std::vector<QWidget*> members) {
  frames_.emplace_back(frame, std::move(members));
}

void FormWindow::AddTabStop(QWidget* widget) {
  if (widget->focusPolicy() & Qt::TabFocus) tabStops_.push_back(widget);
}

void FormWindow::SetTabOrder() {
  for (std::size_t i = 1; i < tabStops_.size(); ++i) QWidget::setTabOrder(tabStops_[i - 1], tabStops_[i]);
}

void FormWindow::Sync() {
  const QString title = ToQt(binding.form.title);
  if (windowTitle() != title) setWindowTitle(title);
  binding.Sync();
  for (const auto& [frame, members] : frames_)
    frame->setVisible(std::ranges::any_of(members, [](const QWidget* member) { return !member->isHidden(); }));
  if (isEnabled() != binding.form.TakesInput()) TakeInput(binding.form.TakesInput());
}

/// While the window takes no input the keys have nowhere to go; afterwards they go where they went before.
void FormWindow::TakeInput(bool takes) {
  if (!takes) rested_ = focusWidget();
  setEnabled(takes);
  const bool inFront = !frame_ || frame_->mdiArea()->currentSubWindow() == frame_;
  if (takes && rested_ && inFront) rested_->setFocus(Qt::OtherFocusReason);
}

void FormWindow::Place(MainWindow* main) {
  const bool floats = main == nullptr || StandsBeforeAll(binding.form);
  // A child of a hidden main window stays where it is and comes back with it.
  if (onScreen_ && (floats == !frame_ || main == nullptr)) return;
  onScreen_ = true;
  focusGiven_ = false;
  if (floats)
    Float();
  else
    Dock(main->Area());
}

void FormWindow::Float() {
  Undock();
  setParent(nullptr, StandsBeforeAll(binding.form) ? Qt::Window | Qt::WindowStaysOnTopHint : Qt::Window);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  resize(SizeWithin(screen.size() * 0.9));
  move(screen.center() - rect().center());
  show();
}

void FormWindow::Undock() {
  if (!frame_) return;
  frame_->setWidget(nullptr);
  setParent(nullptr);
  delete frame_.data();
}

void FormWindow::Dock(QMdiArea& area) {
  if (!frame_) {
    hide();
    frame_ = area.addSubWindow(this, Qt::SubWindow);
    frame_->setAttribute(Qt::WA_DeleteOnClose, false);
    FindPlace(area);
  }
  show();
  frame_->show();
}

/// The part of the area in which the window opens.
QRect FormWindow::RoomIn(QMdiArea& area) const {
  const QRect whole = area.viewport()->rect();
  if (room_ == Room::Whole) return whole;
  if (room_ == Room::Left) return whole.adjusted(MenuMargin, MenuMargin, -MenuMargin, -MenuMargin);
  // The menu comes back behind each command, so its place is kept free while it is away too.
  const FormWindow* const menu = windows_.FindForm("frmMenu");
  if (menu == nullptr || !menu->frame_ || menu->frame_->geometry().right() > whole.width() / 2) return whole;
  return whole.adjusted(menu->frame_->geometry().right() + MenuMargin, 0, 0, 0);
}

/// In the middle of its room, each window a little lower than the one before it; one that needs more room than there is
/// takes it from the left.
void FormWindow::FindPlace(QMdiArea& area) {
  const QRect room = RoomIn(area);
  const QSize decoration = frame_->sizeHint() - sizeHint();
  const QSize size = SizeWithin(room.size() - decoration) + decoration;
  frame_->resize(size);
  if (room_ == Room::Left) return frame_->move(room.topLeft());
  const auto others = std::ranges::count_if(area.subWindowList(), &QWidget::isVisible);
  const QSize free = (room.size() - size).expandedTo(QSize(0, 0));
  const int step = 26 * static_cast<int>(others % 6);
  const int left = std::min(room.left(), std::max(0, room.right() + 1 - size.width()));
  frame_->move(left + std::min(free.width(), free.width() / 2 + step),
               std::min(free.height(), free.height() / 3 + step));
}

QSize FormWindow::SizeWithin(const QSize& room) const {
  const QSize title(fontMetrics().horizontalAdvance(windowTitle()) + 160, 0);
  return sizeHint().expandedTo(preferredSize_).expandedTo(title).boundedTo(room).expandedTo(minimumSizeHint());
}

void FormWindow::Leave() {
  if (!std::exchange(onScreen_, false)) return;
  if (isEnabled()) rested_ = focusWidget();
  if (!frame_) return hide();
  frame_->hide();
  // The area would keep the hidden window active: the one that was active before it takes over.
  const QList<QMdiSubWindow*> stack = frame_->mdiArea()->subWindowList(QMdiArea::StackingOrder);
  const auto next = std::find_if(stack.rbegin(), stack.rend(), [](const QWidget* other) { return other->isVisible(); });
  frame_->mdiArea()->setActiveSubWindow(next == stack.rend() ? nullptr : *next);
}

void FormWindow::BringToFront() {
  if (frame_) {
    if (frame_->isMinimized()) frame_->showNormal();
    frame_->mdiArea()->setActiveSubWindow(frame_);
  } else {
    raise();
    activateWindow();
  }
  if (!std::exchange(focusGiven_, true)) FirstFocus();
}

/// The first control that can be typed into or pressed; in the menu, which is come back to all the time, the one that
/// had the focus last.
void FormWindow::FirstFocus() {
  if (room_ == Room::Left && rested_ && rested_->isEnabled()) return rested_->setFocus(Qt::OtherFocusReason);
  const auto first =
      std::ranges::find_if(tabStops_, [](const QWidget* stop) { return stop->isEnabled() && !stop->isHidden(); });
  if (first != tabStops_.end()) (*first)->setFocus(Qt::OtherFocusReason);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  windows_.CloseAsked(binding.form);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  QAbstractButton* button = nullptr;
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    auto* const focused = qobject_cast<QPushButton*>(window()->focusWidget());
    button = focused != nullptr ? focused : default_;
  } else if (event->key() == Qt::Key_Escape) {
    if (closesByEscape_) return windows_.CloseAsked(binding.form);
    button = cancel_;
  }
  if (button != nullptr && button->isEnabled() && button->isVisible())
    button->click();
  else
    QWidget::keyPressEvent(event);
}

}  // namespace merlane
