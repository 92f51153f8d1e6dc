// The controls that are pressed or chosen: buttons, options, boxes to tick, lists and entries of menus.
#include "ui/binder.h"
#include "ui/windows.h"

namespace merlane {
namespace {

class ButtonBinder : public Binder {
 public:
  ButtonBinder(Button& button, Windows& allWindows, QWidget* parent) : Binder(button, allWindows) {
    view_ = new QPushButton(parent);
    connect(view_, &QPushButton::clicked, this, [this, &button] { Act([&] { TheDesk().Press(button); }); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (shown_ != control.text) view_->setText(Caption(shown_ = control.text));
  }

 private:
  QPushButton* view_;
  std::string shown_;
};

class OptionBinder : public Binder {
 public:
  OptionBinder(OptionButton& option, Windows& allWindows, QButtonGroup* group, QWidget* parent)
      : Binder(option, allWindows), option_(option), group_(group) {
    view_ = new QRadioButton(parent);
    group_->addButton(view_);
    connect(view_, &QRadioButton::clicked, this, [this] { Act([&] { TheDesk().Choose(option_); }); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (shown_ != control.text) view_->setText(Caption(shown_ = control.text));
    if (view_->isChecked() == option_.value) return;
    group_->setExclusive(false);  // so that the last one set can be cleared
    view_->setChecked(option_.value);
    group_->setExclusive(true);
  }

 private:
  OptionButton& option_;
  QButtonGroup* group_;
  QRadioButton* view_;
  std::string shown_;
};

class CheckBinder : public Binder {
 public:
  CheckBinder(CheckBox& box, Windows& allWindows, QWidget* parent) : Binder(box, allWindows), box_(box) {
    view_ = new QCheckBox(parent);
    connect(view_, &QCheckBox::clicked, this, [this](bool ticked) { Act([&] { TheDesk().Tick(box_, ticked); }); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (shown_ != control.text) view_->setText(Caption(shown_ = control.text));
    if (view_->isChecked() != box_.value) view_->setChecked(box_.value);
  }

 private:
  CheckBox& box_;
  QCheckBox* view_;
  std::string shown_;
};

class ListBinder : public Binder {
 public:
  ListBinder(ListBox& list, Windows& allWindows, QWidget* parent) : Binder(list, allWindows), list_(list) {
    view_ = new QListWidget(parent);
    connect(view_, &QListWidget::itemSelectionChanged, this, [this] {
      const int row = SelectedRow();
      if (row >= 0) Act([&] { TheDesk().Select(list_, row); });
    });
    connect(view_, &QListWidget::itemDoubleClicked, this, [this] { Act([&] { TheDesk().DoubleClick(list_); }); });
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    const QSignalBlocker quiet(view_);
    if (shown_ != list_.items) {
      shown_ = list_.items;
      view_->clear();
      for (const std::string& item : shown_) view_->addItem(ToQt(item));
    }
    if (SelectedRow() == list_.selected) return;
    view_->setCurrentRow(list_.selected);
    if (list_.selected < 0) view_->clearSelection();
  }

 private:
  int SelectedRow() const {
    const QModelIndexList rows = view_->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.front().row();
  }

  ListBox& list_;
  QListWidget* view_;
  std::vector<std::string> shown_;
};

/// An entry is a menu when others stand below it, else an action.
class MenuEntryBinder : public Binder {
 public:
  MenuEntryBinder(MenuEntry& entry, Windows& allWindows, QMenuBar* bar, Menus& menus, bool opensMenu)
      : Binder(entry, allWindows), standsInBar_(entry.parent == nullptr) {
    QMenu* const above = entry.parent == nullptr ? nullptr : menus.at(entry.parent);
    if (opensMenu) {
      QMenu* const menu = above != nullptr ? above->addMenu(QString()) : bar->addMenu(QString());
      menu->setObjectName(ToQt(entry.name));
      menu->setToolTipsVisible(true);
      menus[&entry] = menu;
      action_ = menu->menuAction();
    } else {
      action_ = above != nullptr ? above->addAction(QString()) : bar->addAction(QString());
      connect(action_, &QAction::triggered, this, [this, &entry] { Act([&] { TheDesk().Press(entry); }); });
    }
    action_->setObjectName(ToQt(entry.name));
  }

  void Sync() override {
    std::string text = control.visible ? control.text : "";
    // An entry that cannot be chosen would keep its key from others.
    if (!Enabled() || left_.contains(QKeySequence::mnemonic(Caption(text)))) std::erase(text, '&');
    if (shown_ != text) action_->setText(Caption(shown_ = text));
    if (shownToolTip_ != control.toolTip) action_->setToolTip(ToQt(shownToolTip_ = control.toolTip));
    action_->setEnabled(Enabled());
    action_->setVisible(control.visible);
  }

  void LeaveKeys(const std::set<QKeySequence>& keys) override {
    if (!standsInBar_ || left_ == keys) return;
    left_ = keys;
    Sync();
  }

 private:
  const bool standsInBar_;
  QAction* action_;
  std::string shown_, shownToolTip_;
  std::set<QKeySequence> left_;  // to the window in front
};

}  // namespace

std::unique_ptr<Binder> BindButton(Button& button, Windows& windows, QWidget* parent) {
  return std::make_unique<ButtonBinder>(button, windows, parent);
}

std::unique_ptr<Binder> BindOption(OptionButton& option, Windows& windows, QButtonGroup* group, QWidget* parent) {
  return std::make_unique<OptionBinder>(option, windows, group, parent);
}

std::unique_ptr<Binder> BindCheck(CheckBox& box, Windows& windows, QWidget* parent) {
  return std::make_unique<CheckBinder>(box, windows, parent);
}

std::unique_ptr<Binder> BindList(ListBox& list, Windows& windows, QWidget* parent) {
  return std::make_unique<ListBinder>(list, windows, parent);
}

std::unique_ptr<Binder> BindMenuEntry(MenuEntry& entry, Windows& windows, QMenuBar* bar, Menus& menus, bool opensMenu) {
  return std::make_unique<MenuEntryBinder>(entry, windows, bar, menus, opensMenu);
}

}  // namespace merlane
