#include "ui/hand.h"

#include <QPointer>

namespace merlane::test {
namespace {

using namespace std::chrono_literals;

}  // namespace

void Hand::Settle() {
  const bool before = std::exchange(settling_, true);
  QCoreApplication::processEvents();
  settling_ = before;
}

Hand::Hand(Windows& windows) : windows_(windows) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { LookForDialog(); });
  timer_.start(2ms);
}

Hand::~Hand() {
  for (const Expected& expected : expected_) ADD_FAILURE() << "no dialog came: " << expected.title;
}

void Hand::LookForDialog() {
  QPointer<QWidget> dialog = QApplication::activeModalWidget();
  if (handling_ || dialog == nullptr || !dialog->isVisible()) return;
  handling_ = true;
  const std::string title = dialog->windowTitle().toStdString();
  titles.push_back(title);
  if (!album.empty())
    Grab(*dialog, "dialog_" + dialog->windowTitle().remove(QRegularExpression("[^A-Za-z]")).toStdString());
  if (expected_.empty() && answers) {
    handling_ = false;
    answers(*qobject_cast<QDialog*>(dialog));
  } else if (expected_.empty()) {
    ADD_FAILURE() << "a dialog that nobody expected: " << title << ": "
                  << (qobject_cast<QMessageBox*>(dialog) != nullptr
                          ? (qobject_cast<QMessageBox*>(dialog)->text() + " " +
                             qobject_cast<QMessageBox*>(dialog)->informativeText())
                                .toStdString()
                          : "");
    qobject_cast<QDialog*>(dialog)->reject();
  } else {
    const Expected expected = expected_.front();
    expected_.pop_front();
    EXPECT_TRUE(expected.title.empty() || title == expected.title) << title << " instead of " << expected.title;
    handling_ = false;  // the action may bring the next dialog
    expected.action(*dialog);
  }
  handling_ = false;
}

QWidget* Hand::Window(const std::string& form) const {
  QWidget* const window = windows_.Find(form);
  EXPECT_NE(window, nullptr) << form;
  // A desktop gives the focus back when a dialog has gone.
  if (window != nullptr) QApplication::setActiveWindow(window->window());
  return window;
}

QAction* Hand::Entry(const std::string& form, const std::string& entry) const {
  const auto menus = Window(form)->findChildren<QMenuBar*>();
  for (const QMenuBar* bar : menus)
    for (QAction* action : bar->findChildren<QAction*>(QString::fromStdString(entry))) return action;
  return Window(form)->findChild<QAction*>(QString::fromStdString(entry));
}

void Hand::Press(const std::string& form, const std::string& button) {
  auto* const widget = Find<QAbstractButton>(form, button);
  if (widget == nullptr) return;
  ASSERT_TRUE(widget->isVisible()) << form << "." << button;
  ASSERT_TRUE(widget->isEnabled()) << form << "." << button;
  // A click on the indicator of an option: the rest of its rectangle may be empty.
  const QPoint at =
      qobject_cast<QPushButton*>(widget) != nullptr ? widget->rect().center() : QPoint(8, widget->height() / 2);
  QTest::mouseClick(widget, Qt::LeftButton, {}, at);
  Settle();
}

void Hand::Choose(const std::string& form, const std::string& entry) {
  QAction* const action = Entry(form, entry);
  ASSERT_NE(action, nullptr) << form << "." << entry;
  ASSERT_TRUE(action->isEnabled()) << form << "." << entry;
  const QWidgetList all = QApplication::allWidgets();
  const QList<QPointer<QWidget>> homes(all.begin(), all.end());  // what is chosen may make some of them go
  for (const QPointer<QWidget>& home : homes) {
    if (home.isNull() || !home->actions().contains(action)) continue;
    if (auto* const menu = qobject_cast<QMenu*>(home.data())) {
      QAction* const opener = menu->menuAction();
      for (QWidget* bar : QApplication::allWidgets())
        if (auto* const menuBar = qobject_cast<QMenuBar*>(bar); menuBar != nullptr && bar->actions().contains(opener))
          QTest::mouseClick(menuBar, Qt::LeftButton, {}, menuBar->actionGeometry(opener).center());
      Settle();
      QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    } else if (auto* const bar = qobject_cast<QMenuBar*>(home.data())) {
      QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
    }
  }
  Settle();
}

void Hand::Type(const std::string& form, const std::string& control, const std::string& text) {
  auto* const widget = Find(form, control);
  if (widget == nullptr) return;
  auto* const combo = qobject_cast<QComboBox*>(widget);
  QWidget* const entry = combo != nullptr ? combo->lineEdit() : widget;
  entry->setFocus();
  if (qobject_cast<QPlainTextEdit*>(entry) != nullptr) QTest::keyClick(entry, Qt::Key_F2);
  QTest::keyClick(entry, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(entry, Qt::Key_Delete);
  const QStringList lines = QString::fromStdString(text).split('\n');
  for (int i = 0; i < lines.size(); ++i) {
    if (i > 0) QTest::keyClick(entry, Qt::Key_Return);
    QTest::keyClicks(entry, lines[i]);
  }
  QTest::keyClick(entry, Qt::Key_Tab);
  if (entry->hasFocus()) entry->clearFocus();  // there is nowhere else to go
  Settle();
}

namespace {

/// Where a cell or a heading is, and the widget that takes the mouse there.
std::pair<QWidget*, QPoint> PlaceOf(QTableView& table, int row, int column) {
  QHeaderView& header = *table.horizontalHeader();
  if (row == 0) return {header.viewport(), {header.sectionViewportPosition(column) + 20, header.height() / 2}};
  const QModelIndex cell = table.model()->index(row - 1, column);
  table.scrollTo(cell);
  return {table.viewport(), table.visualRect(cell).center()};
}

}  // namespace

void Hand::ClickCell(const std::string& form, const std::string& grid, int row, int column) {
  const auto [widget, at] = PlaceOf(*Find<QTableView>(form, grid), row, column);
  QTest::mouseClick(widget, Qt::LeftButton, {}, at);
  Settle();
}

void Hand::DoubleClickCell(const std::string& form, const std::string& grid, int row, int column) {
  const auto [widget, at] = PlaceOf(*Find<QTableView>(form, grid), row, column);
  QTest::mouseClick(widget, Qt::LeftButton, {}, at);
  QTest::mouseDClick(widget, Qt::LeftButton, {}, at);
  Settle();
}

void Hand::DoubleClickSelected(const std::string& form, const std::string& list) {
  auto* const view = Find<QAbstractItemView>(form, list);
  const QPoint at = view->visualRect(view->currentIndex()).center();
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
  Settle();
}

void Hand::Key(const std::string& form, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWidget* const window = Window(form);
  QWidget* const focused = window->window()->focusWidget();
  QTest::keyClick(focused != nullptr ? focused : window, key, modifiers);
  Settle();
}

void Hand::CloseFrame(const std::string& form) {
  QWidget* const window = Window(form);
  auto* const frame = qobject_cast<QMdiSubWindow*>(window->parentWidget());
  (frame != nullptr ? frame : window)->close();
  Settle();
}

void Hand::Expect(std::function<void(QWidget&)> action, const std::string& title) {
  expected_.push_back({std::move(action), title});
}

void Hand::Click(QWidget& dialog, QMessageBox::StandardButton button) {
  auto* const box = qobject_cast<QMessageBox*>(&dialog);
  ASSERT_NE(box, nullptr) << dialog.windowTitle().toStdString();
  ASSERT_NE(box->button(button), nullptr) << box->text().toStdString();
  QTest::mouseClick(box->button(button), Qt::LeftButton);
}

void Hand::TypeLine(QWidget& dialog, const std::string& text) {
  auto* const entry = dialog.findChild<QLineEdit*>("entry");
  ASSERT_NE(entry, nullptr) << dialog.windowTitle().toStdString();
  QTest::keyClick(entry, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(entry, Qt::Key_Delete);
  QTest::keyClicks(entry, QString::fromStdString(text));
  QTest::keyClick(entry, Qt::Key_Return);
}

void Hand::NameFile(QWidget& dialog, const std::string& path) {
  auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
  ASSERT_NE(name, nullptr) << dialog.windowTitle().toStdString();
  name->setText(QString::fromStdString(path));  // keys would be completed
  auto* const buttons = dialog.findChild<QDialogButtonBox*>("buttonBox");
  for (const auto which : {QDialogButtonBox::Open, QDialogButtonBox::Save})
    if (QPushButton* const button = buttons->button(which)) {
      EXPECT_TRUE(button->isEnabled()) << dialog.windowTitle().toStdString() << " refuses " << path;
      // Soon: whether to replace a file is asked within the click, and the timer that looks for dialogs does not run
      // inside itself. Named once more, since a dialog that has just read its folder goes back to the name that it
      // began with.
      QTimer::singleShot(0ms, button, [button, name, path] {
        name->setText(QString::fromStdString(path));
        QTest::mouseClick(button, Qt::LeftButton);
      });
    }
}

void Hand::Dismiss(QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }

void Hand::Answer(QMessageBox::StandardButton button, const std::string& title) {
  Expect([this, button](QWidget& dialog) { Click(dialog, button); }, title);
}

void Hand::Enter(const std::string& text, const std::string& title) {
  Expect([this, text](QWidget& dialog) { TypeLine(dialog, text); }, title);
}

void Hand::CancelEntry(const std::string& title) {
  Expect([this](QWidget& dialog) { Dismiss(dialog); }, title);
}

void Hand::ChooseFile(const std::string& path, const std::string& title) {
  Expect([this, path](QWidget& dialog) { NameFile(dialog, path); }, title);
}

void Hand::CancelFile(const std::string& title) {
  Expect([this](QWidget& dialog) { Dismiss(dialog); }, title);
}

void Hand::Grab(QWidget& window, const std::string& picture) {
  QDir().mkpath(QString::fromStdString(album));
  Settle();
  window.grab().save(QString::fromStdString(album + "/" + picture + ".png"));
}

}  // namespace merlane::test
