#include "ui/windows.h"

#include "ui/form_window.h"
#include "ui/main_window.h"

namespace merlane {

Windows::Windows(Desk& programDesk) : desk(programDesk) {}

Windows::~Windows() {
  if (main_) static_cast<FrmMain&>(main_->binding.form).onArrange = nullptr;
  windows_.clear();  // children go before the main window
}

void Windows::Act(const Binder* source, const std::function<void()>& action) {
  if (syncing_) return;
  ++acting_;
  for (const auto& [form, window] : windows_)
    if (form->Visible()) window->binding.Commit(source);
  action();
  --acting_;
  if (acting_ == 0) Sync();
}

void Windows::CloseAsked(Form& form) {
  Act(nullptr, [&] { desk.Close(form); });
}

void Windows::Note(Form& form, FormEvent event) {
  std::erase(fronts_, &form);
  if (event == FormEvent::Shown || event == FormEvent::Front) fronts_.push_back(&form);
}

bool Windows::MainVisible() const { return main_ && main_->isVisible(); }

FrmMain* Windows::MainForm() const {
  for (Form* form : desk.Forms())
    if (auto* const main = dynamic_cast<FrmMain*>(form)) return main;
  return nullptr;
}

void Windows::SyncMain() {
  FrmMain* const form = MainForm();
  if (form == nullptr || (!main_ && !form->Visible())) return;
  if (!main_) {
    main_ = std::make_unique<MainWindow>(*form, *this);
    form->onArrange = [this](Arrangement arrangement) { Arrange(arrangement); };
  }
  main_->Sync();
}

void Windows::Sync() {
  if (syncing_) return;
  syncing_ = true;
  SyncMain();
  for (const auto& [form, window] : windows_)
    if (!form->Visible()) window->Leave();
  for (Form* form : desk.Forms()) {
    if (!form->Visible() || form == MainForm()) continue;
    std::unique_ptr<FormWindow>& window = windows_[form];
    if (!window) {
      window = std::make_unique<FormWindow>(*form, *this);
      if (atTheLeft_ == nullptr && window->StandsAt() == Layout::Place::Left) atTheLeft_ = window.get();
    }
    window->Sync();
    window->Place(MainVisible() ? main_.get() : nullptr);
  }
  for (Form* form : std::exchange(fronts_, {})) BringToFront(*form);
  for (const auto& [form, window] : windows_)
    if (form->Visible()) window->binding.GiveFocus();
  if (main_) main_->LeaveKeysToFront();
  syncing_ = false;
}

void Windows::BringToFront(Form& form) {
  const auto found = windows_.find(&form);
  if (found != windows_.end() && form.Visible()) found->second->BringToFront();
}

void Windows::Arrange(Arrangement arrangement) {
  if (main_) main_->Arrange(arrangement);
}

QWidget* Windows::OnScreen() const {
  if (QWidget* const modal = QApplication::activeModalWidget()) return modal;
  return MainVisible() ? main_.get() : QApplication::activeWindow();
}

bool Windows::TableInFront() const {
  const QMdiSubWindow* const front = main_ == nullptr ? nullptr : main_->Area().currentSubWindow();
  if (front == nullptr || !front->isVisible()) return false;
  const auto tables = front->findChildren<QTableView*>();
  return std::ranges::any_of(tables, &QWidget::isVisible);
}

void Windows::Refit() {
  for (const auto& [form, window] : windows_)
    if (form->Visible()) window->Refit();
}

QWidget* Windows::Find(const std::string& formName) const {
  if (const Form* const main = MainForm(); main != nullptr && main->name == formName) return main_.get();
  return FindForm(formName);
}

FormWindow* Windows::FindForm(const std::string& formName) const {
  for (const auto& [form, window] : windows_)
    if (form->name == formName) return window.get();
  return nullptr;
}

}  // namespace merlane
