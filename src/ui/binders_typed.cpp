// The controls that are typed into: boxes of one line, boxes with a list, and panes of text.
#include "ui/binder.h"
#include "ui/look.h"

namespace merlane {
namespace {

class TextBoxBinder : public Binder {
 public:
  TextBoxBinder(TextBox& box, Windows& allWindows, QWidget* parent) : Binder(box, allWindows), box_(box) {
    view_ = new QLineEdit(parent);
    view_->installEventFilter(this);
    if (box.onClick) view_->setCursor(Qt::PointingHandCursor);
    connect(view_, &QLineEdit::editingFinished, this, [this] { Commit(); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (view_->isReadOnly() != ReadOnly()) view_->setReadOnly(ReadOnly());
    if (shown_ == control.text) return;
    view_->setText(ToQt(shown_ = control.text));
    view_->setCursorPosition(0);
  }

  void Commit() override {
    if (ReadOnly()) return;
    const std::string typed = FromQt(view_->text());
    if (typed == shown_) return;
    shown_ = typed;
    Act([&] { TheDesk().SetText(box_, typed); });
  }

 protected:
  /// A click into the box, or Space or Enter in a box that only opens a question.
  bool eventFilter(QObject*, QEvent* event) override {
    const auto pressed = [&] {
      const int key = static_cast<QKeyEvent*>(event)->key();
      return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    };
    const bool clicked =
        event->type() == QEvent::MouseButtonRelease || (event->type() == QEvent::KeyPress && ReadOnly() && pressed());
    if (!clicked || !box_.onClick || !view_->isEnabled()) return false;
    Act([&] { TheDesk().Click(box_); });
    return event->type() == QEvent::KeyPress;
  }

 private:
  bool ReadOnly() const { return box_.readOnly; }

  TextBox& box_;
  QLineEdit* view_;
  std::string shown_;
};

class ComboBinder : public Binder {
 public:
  ComboBinder(ComboBox& box, Windows& allWindows, QWidget* parent) : Binder(box, allWindows), box_(box) {
    view_ = new QComboBox(parent);
    view_->setEditable(true);
    view_->setInsertPolicy(QComboBox::NoInsert);
    view_->setCompleter(nullptr);  // what is typed stands as typed
    view_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    view_->setMinimumContentsLength(5);
    connect(view_, &QComboBox::activated, this, [this] { Commit(); });
    connect(view_->lineEdit(), &QLineEdit::editingFinished, this, [this] { Commit(); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (shownItems_ != box_.items) {
      const QSignalBlocker quiet(view_);
      shownItems_ = box_.items;
      view_->clear();
      for (const std::string& item : shownItems_) view_->addItem(ToQt(item));
      view_->setEditText(ToQt(shown_ = control.text));
    }
    if (shown_ != control.text) view_->setEditText(ToQt(shown_ = control.text));
  }

  void Commit() override {
    const std::string typed = FromQt(view_->currentText());
    if (typed == shown_) return;
    shown_ = typed;
    Act([&] { TheDesk().SetText(box_, typed); });
  }

 private:
  ComboBox& box_;
  QComboBox* view_;
  std::string shown_;
  std::vector<std::string> shownItems_;
};

/// A text that is read: keys scroll it. One that may be edited is so from F2, or from Edit in its context menu, till
/// the keys go elsewhere; a stray key changes nothing.
class TextView : public QPlainTextEdit {
 public:
  explicit TextView(QWidget* parent) : QPlainTextEdit(parent) { Edit(false); }

  bool mayBeEdited = false;

  bool Editing() const { return !isReadOnly(); }
  void Edit(bool edits) {
    setReadOnly(!edits);
    setTextInteractionFlags(edits ? Qt::TextEditorInteraction
                                  : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (mayBeEdited && event->key() == Qt::Key_F2) return Edit(true);
    QPlainTextEdit::keyPressEvent(event);
  }
  void contextMenuEvent(QContextMenuEvent* event) override {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    if (mayBeEdited && !Editing())
      menu->addAction(QStringLiteral("&Edit this text"), QKeySequence(Qt::Key_F2), this, [this] { Edit(true); });
    menu->exec(event->globalPos());
  }
};

/// A document keeps its lines without their ends: those of the pane's text are put back when it has been edited.
class PaneBinder : public Binder {
 public:
  PaneBinder(Pane& pane, Windows& allWindows, QWidget* parent) : Binder(pane, allWindows), pane_(pane) {
    view_ = new TextView(parent);
    if (pane.fixedPitch) {
      view_->setFont(FixedPitchFont());
      view_->setTabStopDistance(8 * QFontMetricsF(view_->font()).horizontalAdvance(QLatin1Char(' ')));
    }
    view_->setTabChangesFocus(true);
    view_->setUndoRedoEnabled(!pane.readOnly);
    view_->installEventFilter(this);
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    view_->setLineWrapMode(pane_.wraps ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
    view_->mayBeEdited = !pane_.readOnly && pane_.form.TakesInput();
    if (view_->Editing() && !view_->mayBeEdited) view_->Edit(false);
    if (shown_ == control.text) return;
    if (!shown_.empty() && control.text.starts_with(shown_)) {
      Append(control.text.substr(shown_.size()));
    } else {
      view_->setPlainText(ToQt(control.text));
    }
    shown_ = control.text;
    view_->document()->setModified(false);
  }

  void Commit() override {
    if (!view_->Editing() || !view_->document()->isModified()) return;
    view_->document()->setModified(false);
    QString edited = view_->toPlainText();
    if (shown_.find("\r\n") != std::string::npos) edited.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    shown_ = FromQt(edited, shown_);
    Act([&] { TheDesk().SetText(pane_, shown_); });
  }

 protected:
  /// What is shown can be scrolled and copied at any time.
  bool Enabled() const override { return control.enabled; }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::FocusOut) return false;
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason) return false;
    Commit();
    view_->Edit(false);
    return false;
  }

 private:
  /// What a running command adds is added below, in view when the end was in view.
  void Append(const std::string& more) {
    QScrollBar* const bar = view_->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    QTextCursor cursor(view_->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(ToQt(more));
    if (atEnd) bar->setValue(bar->maximum());
  }

  Pane& pane_;
  TextView* view_;
  std::string shown_;
};

}  // namespace

std::unique_ptr<Binder> BindTextBox(TextBox& box, Windows& windows, QWidget* parent) {
  return std::make_unique<TextBoxBinder>(box, windows, parent);
}

std::unique_ptr<Binder> BindCombo(ComboBox& box, Windows& windows, QWidget* parent) {
  return std::make_unique<ComboBinder>(box, windows, parent);
}

std::unique_ptr<Binder> BindPane(Pane& pane, Windows& windows, QWidget* parent) {
  return std::make_unique<PaneBinder>(pane, windows, parent);
}

}  // namespace merlane
