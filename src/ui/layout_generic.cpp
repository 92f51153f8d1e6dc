// What a layout has not placed, and forms without a layout: one below the other, in the order of the controls; boxes
// beside the label before them, buttons in rows at the end.
#include "ui/layouts.h"

namespace merlane {
namespace {

bool IsField(const Control& control) {
  return dynamic_cast<const TextBox*>(&control) != nullptr || dynamic_cast<const ComboBox*>(&control) != nullptr;
}

bool TakesRoom(const Control& control) {
  return dynamic_cast<const Pane*>(&control) != nullptr || dynamic_cast<const Grid*>(&control) != nullptr ||
         dynamic_cast<const ListBox*>(&control) != nullptr || dynamic_cast<const Canvas*>(&control) != nullptr;
}

/// Buttons in rows, the last thing in the window.
void AddButtons(Layouter& layouter, QVBoxLayout& column, const std::vector<std::string>& names) {
  constexpr int ButtonsInARow = 4;
  if (names.empty()) return;
  auto* const buttons = new QGridLayout;
  for (const std::string& name : names) {
    QWidget* const button = layouter.Take(name);
    buttons->addWidget(button, buttons->count() / ButtonsInARow, buttons->count() % ButtonsInARow);
    if (name == "cmdCancel") layouter.window.SetCancel(button);
    if (name == "cmdOK") layouter.window.SetDefault(button);
  }
  column.addLayout(buttons);
}

}  // namespace

void LayOutGeneric(Layouter& layouter, QVBoxLayout& column) {
  std::vector<std::string> buttons;
  QGridLayout* fields = nullptr;
  const std::vector<Control*>& controls = layouter.window.binding.form.Controls();
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const Control& control = *controls[i];
    if (layouter.Taken(control.name)) continue;
    if (dynamic_cast<const Button*>(&control) != nullptr) {
      buttons.push_back(control.name);
      continue;
    }
    const bool labels = dynamic_cast<const Label*>(&control) != nullptr && i + 1 < controls.size() &&
                        IsField(*controls[i + 1]) && !layouter.Taken(controls[i + 1]->name);
    if (labels || IsField(control)) {
      if (fields == nullptr) column.addLayout(fields = new QGridLayout);
      const char* const label = labels ? control.name.c_str() : "";
      if (labels) ++i;
      layouter.Field(*fields, label, {controls[i]->name.c_str()});
      continue;
    }
    QWidget* const widget = layouter.Take(control.name);
    if (widget == nullptr) continue;  // an entry of a menu
    fields = nullptr;
    if (auto* const label = qobject_cast<QLabel*>(widget)) label->setWordWrap(true);
    column.addWidget(widget, TakesRoom(control) ? 1 : 0);
  }
  AddButtons(layouter, column, buttons);
}

}  // namespace merlane
