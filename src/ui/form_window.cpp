#include "ui/form_window.h"

#include "layouts/layouts.h"
#include "ui/layout_drawer.h"
#include "ui/look.h"
#include "ui/main_window.h"
#include "ui/save_picture.h"
#include "ui/windows.h"

namespace merlane {
namespace {

constexpr int MenuMargin = 8;  // around the menu

}  // namespace

FormWindow::FormWindow(Form& form, Windows& windows)
    : binding(form, windows, this, new QMenuBar(this)),
      windows_(windows),
      layout_(LayoutOf(form)),
      scroll_(new ScrollView) {
  setObjectName(ToQt(form.name));
  auto* const whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->setSpacing(0);
  whole->addWidget(scroll_, 1);
  auto* const bar = findChild<QMenuBar*>(QString(), Qt::FindDirectChildrenOnly);
  if (binding.HasMenus())
    whole->setMenuBar(bar);
  else
    delete bar;
  binding.Sync();  // the height of a label depends on what it says
  Draw();
}

FormWindow::~FormWindow() { Undock(); }

void FormWindow::Draw() {
  auto* const column = new QVBoxLayout(&scroll_->Content());
  column->setContentsMargins(16, 14, 16, 14);
  column->setSpacing(12);
  LayoutDrawer drawer(layout_, binding, *this);
  drawer.Draw(*column);
  if (QBoxLayout* const pinned = drawer.Pinned()) {
    pinned->setContentsMargins(16, 0, 16, 14);
    if (drawer.Picture() != nullptr) pinned->insertWidget(0, SavePictureButton(*drawer.Picture()));
    static_cast<QVBoxLayout*>(layout())->addLayout(pinned);
  }
  frames_ = drawer.Frames();
  tabStops_ = drawer.TabStops();
  for (std::size_t i = 1; i < tabStops_.size(); ++i) QWidget::setTabOrder(tabStops_[i - 1], tabStops_[i]);
  if (auto* const enter = qobject_cast<QPushButton*>(ButtonOf(layout_.enter))) enter->setDefault(true);
}

/// The button of that name; null when there is none.
QAbstractButton* FormWindow::ButtonOf(const std::string& name) const {
  return qobject_cast<QAbstractButton*>(binding.Find(name));
}

/// So large that as much text is shown as the layout wishes.
QSize FormWindow::PreferredSize() const {
  const QFontMetrics metrics(FixedPitchFont());
  return {layout_.columns * metrics.horizontalAdvance(QLatin1Char('0')) + 60,
          layout_.lines * metrics.lineSpacing() + 60};
}

void FormWindow::Sync() {
  const QString title = ToQt(binding.form.title);
  if (windowTitle() != title) setWindowTitle(title);
  const bool takes = binding.form.TakesInput();
  if (!takes && takesInput_) rested_ = focusWidget();
  binding.Sync();
  for (const auto& [frame, members] : frames_)
    frame->setVisible(std::ranges::any_of(members, [](const QWidget* member) { return !member->isHidden(); }));
  // Behind a time in which its controls rested the keys go where they went before.
  const bool inFront = !frame_ || frame_->mdiArea()->currentSubWindow() == frame_;
  if (takes && !takesInput_ && rested_ && inFront) FocusOn(*rested_);
  takesInput_ = takes;
}

void FormWindow::Place(MainWindow* main) {
  const bool floats = main == nullptr || layout_.place == Layout::Place::Above;
  // A child of a hidden main window stays where it is and comes back with it.
  if (onScreen_ && (floats == !frame_ || main == nullptr)) return;
  onScreen_ = true;
  focusGiven_ = false;
  if (floats)
    Float(main);
  else
    Dock(main->Area());
}

/// A window above the others belongs to the main window, which puts it above that window's children and, like every
/// question, below the question that was asked last.
void FormWindow::Float(MainWindow* main) {
  Undock();
  const bool above = layout_.place == Layout::Place::Above && main != nullptr;
  setParent(above ? main : nullptr, above ? Qt::Dialog : Qt::Window);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  resize(SizeWithin(screen.size() * 0.9));
  move(above ? main->Area().mapToGlobal(QPoint(MenuMargin, MenuMargin)) : screen.center() - rect().center());
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
    frame_ = area.addSubWindow(this, FrameFlags());
    frame_->setAttribute(Qt::WA_DeleteOnClose, false);
    FindPlace(area);
  }
  show();
  frame_->show();
}

/// A window that fills the area cannot be made an icon: what it keeps out of work would look dead without it.
Qt::WindowFlags FormWindow::FrameFlags() const {
  Qt::WindowFlags flags = Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
  if (!layout_.stays) flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint | Qt::WindowMaximizeButtonHint;
  if (layout_.place == Layout::Place::BesideMenu) flags |= Qt::WindowMinimizeButtonHint;
  return flags;
}

/// The part of the area in which the window opens.
QRect FormWindow::RoomIn(QMdiArea& area) const {
  const QRect whole = area.viewport()->rect();
  if (layout_.place == Layout::Place::Whole) return whole;
  if (layout_.place == Layout::Place::Left) return whole.adjusted(MenuMargin, MenuMargin, -MenuMargin, -MenuMargin);
  // The menu comes back behind each command, so its place is kept free while it is away too.
  const FormWindow* const menu = windows_.FirstAtTheLeft();
  if (menu == nullptr || !menu->frame_ || menu->frame_->geometry().right() > whole.width() / 2) return whole;
  return whole.adjusted(menu->frame_->geometry().right() + MenuMargin, 0, 0, 0);
}

/// In the middle of its room, each window a little lower than the one before it; one that needs more room than there is
/// takes it from the left.
void FormWindow::FindPlace(QMdiArea& area) {
  const QRect room = RoomIn(area);
  const QSize decoration = frame_->sizeHint() - sizeHint();
  const QSize size = SizeWithin(room.size() - decoration) + decoration;
  const auto others = std::ranges::count_if(
      area.subWindowList(), [this](const QWidget* window) { return window != frame_ && window->isVisible(); });
  const QSize free = (room.size() - size).expandedTo(QSize(0, 0));
  const int step = 26 * static_cast<int>(others % 6);
  const int left = std::min(room.left(), std::max(0, room.right() + 1 - size.width()));
  const QPoint place = layout_.place == Layout::Place::Left
                           ? room.topLeft()
                           : QPoint(left + std::min(free.width(), free.width() / 2 + step),
                                    std::min(free.height(), free.height() / 3 + step));
  frame_->setGeometry(QRect(place, size));
  opened_ = frame_->geometry();
}

void FormWindow::Refit() {
  if (frame_ && frame_->geometry() == opened_) FindPlace(*frame_->mdiArea());
}

/// As large as it is wanted, as far as the room allows. Where the content has to be scrolled down, the bar that does it
/// stands beside the content and not over its right edge, as far as there is room for it.
QSize FormWindow::SizeWithin(const QSize& room) const {
  const QSize title(fontMetrics().horizontalAdvance(windowTitle()) + 160, 0);
  QSize size = sizeHint().expandedTo(PreferredSize()).expandedTo(title);
  const int around = sizeHint().height() - scroll_->sizeHint().height();  // menus and what is pinned
  if (scroll_->Content().minimumSizeHint().height() + around > room.height())
    size.rwidth() += scroll_->verticalScrollBar()->sizeHint().width();
  return size.boundedTo(room);
}

std::set<QKeySequence> FormWindow::Keys() const {
  std::set<QKeySequence> keys;
  for (const QAbstractButton* button : findChildren<QAbstractButton*>())
    if (button->isVisible() && button->isEnabled()) keys.insert(button->shortcut());
  if (const auto* const bar = qobject_cast<QMenuBar*>(layout()->menuBar()))
    for (const QAction* menu : bar->actions())
      if (menu->isVisible() && menu->isEnabled()) keys.insert(QKeySequence::mnemonic(menu->text()));
  return keys;
}

void FormWindow::Leave() {
  if (!std::exchange(onScreen_, false)) return;
  if (takesInput_) rested_ = focusWidget();
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
  if (layout_.place == Layout::Place::Left && rested_ && rested_->isEnabled()) return FocusOn(*rested_);
  const auto first =
      std::ranges::find_if(tabStops_, [](const QWidget* stop) { return stop->isEnabled() && !stop->isHidden(); });
  if (first != tabStops_.end()) FocusOn(**first);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  windows_.CloseAsked(binding.form);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  QAbstractButton* button = nullptr;
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    auto* const focused = qobject_cast<QPushButton*>(window()->focusWidget());
    button = focused != nullptr ? focused : ButtonOf(layout_.enter);
  } else if (event->key() == Qt::Key_Escape) {
    if (layout_.escape == Layout::Closes) return windows_.CloseAsked(binding.form);
    button = ButtonOf(layout_.escape);
  }
  if (button != nullptr && button->isEnabled() && button->isVisible())
    button->click();
  else
    QWidget::keyPressEvent(event);
}

}  // namespace merlane
