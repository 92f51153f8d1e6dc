#include "web/deeds.h"

#include <charconv>

namespace merlane {
namespace {

int Number(const std::string& word) {
  int number = -1;
  std::from_chars(word.data(), word.data() + word.size(), number);
  return number;
}

void Press(Desk& desk, Control& control) {
  if (auto* const button = dynamic_cast<Button*>(&control)) desk.Press(*button);
  if (auto* const entry = dynamic_cast<MenuEntry*>(&control)) desk.Press(*entry);
  if (auto* const option = dynamic_cast<OptionButton*>(&control)) desk.Choose(*option);
  if (auto* const box = dynamic_cast<CheckBox*>(&control)) desk.Tick(*box, !box->value);
  if (auto* const box = dynamic_cast<TextBox*>(&control)) desk.Click(*box);
}

void Type(Desk& desk, Control& control, const std::string& text) {
  if (auto* const box = dynamic_cast<TextBox*>(&control)) desk.SetText(*box, text);
  if (auto* const box = dynamic_cast<ComboBox*>(&control)) desk.SetText(*box, text);
  if (auto* const pane = dynamic_cast<Pane*>(&control)) desk.SetText(*pane, text);
}

void Select(Desk& desk, Control& control, int item) {
  if (auto* const list = dynamic_cast<ListBox*>(&control)) desk.Select(*list, item);
  if (auto* const grid = dynamic_cast<Grid*>(&control)) desk.SelectRow(*grid, item);
}

void InCell(Desk& desk, const std::string& deed, Grid& grid, const std::vector<std::string>& more) {
  const int row = Number(more[0]), column = Number(more[1]);
  if (deed == "click") desk.Click(grid, row, column);
  if (deed == "double") desk.DoubleClick(grid, row, column);
  if (deed == "enter" && more.size() > 2) desk.Enter(grid, row, column, more[2]);
}

}  // namespace

void Do(Desk& desk, const std::vector<std::string>& words) {
  Form* const form = words.size() < 2 ? nullptr : desk.Find(words[1]);
  if (form == nullptr) return;
  const std::string& deed = words[0];
  if (deed == "close") {
    desk.Close(*form);
    return;
  }
  Control* const control = words.size() < 3 ? nullptr : form->Find(words[2]);
  if (control == nullptr) return;
  const std::vector<std::string> more(words.begin() + 3, words.end());
  if (deed == "press") Press(desk, *control);
  if (deed == "type" && !more.empty()) Type(desk, *control, more[0]);
  if (deed == "select" && !more.empty()) Select(desk, *control, Number(more[0]));
  if (auto* const list = dynamic_cast<ListBox*>(control); list != nullptr && deed == "double") desk.DoubleClick(*list);
  if (auto* const grid = dynamic_cast<Grid*>(control); grid != nullptr && more.size() > 1)
    InCell(desk, deed, *grid, more);
}

}  // namespace merlane
