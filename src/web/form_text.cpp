#include "web/form_text.h"

#include <fmt/format.h>

#include <utility>

#include "base/json_text.h"
#include "base/text.h"
#include "forms/palette.h"
#include "layouts/layouts.h"
#include "plots/svg.h"
#include "web/layout_text.h"

namespace merlane {
namespace {

std::string Rgb(Colour colour) {
  if (colour == Colour::Default) return JsonOf("");
  return JsonOf(fmt::format("#{:06x}", PaletteRgb(static_cast<int>(colour))));
}

std::string JsonOfAll(const std::vector<int>& numbers) {
  std::vector<std::string> parts;
  for (const int number : numbers) parts.push_back(JsonOf(number));
  return JsonArray(parts);
}

void Describe(const Label& label, JsonMembers& members) { members.emplace_back("fore", Rgb(label.fore)); }

void Describe(const OptionButton& option, JsonMembers& members) {
  members.emplace_back("value", JsonOf(option.value));
  members.emplace_back("group", JsonOf(option.group));
}

void Describe(const TextBox& box, JsonMembers& members) {
  members.emplace_back("readOnly", JsonOf(box.readOnly));
  members.emplace_back("opens", JsonOf(static_cast<bool>(box.onClick)));
}

void Describe(const ListBox& list, JsonMembers& members) {
  members.emplace_back("items", JsonOf(list.items));
  members.emplace_back("selected", JsonOf(list.selected));
}

/// A cell is its text, or, where it has colours, its text and these.
std::string JsonOfCell(const Grid::Cell& cell) {
  if (cell.fore == Colour::Default && cell.back == Colour::Default) return JsonOf(cell.text);
  return JsonArray({JsonOf(cell.text), Rgb(cell.fore), Rgb(cell.back)});
}

void Describe(const Grid& grid, JsonMembers& members) {
  std::vector<std::string> rows;
  for (int row = 0; row < grid.Rows(); ++row) {
    std::vector<std::string> cells;
    for (int column = 0; column < grid.Columns(); ++column) cells.push_back(JsonOfCell(grid.At(row, column)));
    rows.push_back(JsonArray(cells));
  }
  members.emplace_back("rows", JsonArray(rows));
  members.emplace_back("headingRows", JsonOf(grid.headingRows));
  members.emplace_back("selectedRow", JsonOf(grid.selectedRow));
  members.emplace_back("topRow", JsonOf(grid.topRow));
  members.emplace_back("selectsRows", JsonOf(grid.selectsRows));
  members.emplace_back("widths", JsonOfAll(grid.widths));
  members.emplace_back("typed", JsonOfAll({grid.typedColumns.begin(), grid.typedColumns.end()}));
}

void Describe(const Pane& pane, JsonMembers& members) {
  members.emplace_back("readOnly", JsonOf(pane.readOnly));
  members.emplace_back("fixedPitch", JsonOf(pane.fixedPitch));
  members.emplace_back("wraps", JsonOf(pane.wraps));
}

void Describe(const StatusBar& bar, JsonMembers& members) {
  std::vector<std::string> panels;
  for (int panel = 1; panel <= bar.Panels(); ++panel) panels.push_back(bar.Get(panel));
  members.emplace_back("panels", JsonOf(panels));
}

std::string SvgOf(const Drawing& drawing) {
  return drawing.right > drawing.left && drawing.bottom > drawing.top ? Svg(drawing) : "";
}

/// What kind of control it is, and what goes with its kind.
void DescribeKind(const Control& control, JsonMembers& members) {
  const auto kind = [&](const char* name) { members.emplace_back("kind", JsonOf(name)); };
  if (const auto* const label = dynamic_cast<const Label*>(&control)) {
    kind("label");
    Describe(*label, members);
  } else if (dynamic_cast<const Button*>(&control) != nullptr) {
    kind("button");
  } else if (const auto* const option = dynamic_cast<const OptionButton*>(&control)) {
    kind("option");
    Describe(*option, members);
  } else if (const auto* const box = dynamic_cast<const CheckBox*>(&control)) {
    kind("check");
    members.emplace_back("value", JsonOf(box->value));
  } else if (const auto* const line = dynamic_cast<const TextBox*>(&control)) {
    kind("text");
    Describe(*line, members);
  } else if (const auto* const combo = dynamic_cast<const ComboBox*>(&control)) {
    kind("combo");
    members.emplace_back("items", JsonOf(combo->items));
  } else if (const auto* const list = dynamic_cast<const ListBox*>(&control)) {
    kind("list");
    Describe(*list, members);
  } else if (const auto* const grid = dynamic_cast<const Grid*>(&control)) {
    kind("grid");
    Describe(*grid, members);
  } else if (const auto* const pane = dynamic_cast<const Pane*>(&control)) {
    kind("pane");
    Describe(*pane, members);
  } else if (const auto* const entry = dynamic_cast<const MenuEntry*>(&control)) {
    kind("entry");
    members.emplace_back("parent", JsonOf(entry->parent == nullptr ? "" : entry->parent->name));
  } else if (const auto* const bar = dynamic_cast<const StatusBar*>(&control)) {
    kind("status");
    Describe(*bar, members);
  } else if (dynamic_cast<const Canvas*>(&control) != nullptr) {
    kind("canvas");
  }
}

/// What can be scrolled and copied from at any time; the desk refuses what must not be done with it now.
bool IsReadWhileResting(const Control& control) {
  return dynamic_cast<const Grid*>(&control) != nullptr || dynamic_cast<const Pane*>(&control) != nullptr ||
         dynamic_cast<const Label*>(&control) != nullptr;
}

/// What has become of the text of a pane, of which `shown` is told, if anything was: all of it, or what was added.
void AddTextOfPane(const std::string& text, std::optional<std::string>& shown, JsonMembers& members) {
  if (shown == text) return;
  const bool grew = shown && !shown->empty() && text.starts_with(*shown);
  members.emplace_back(grew ? "more" : "text", JsonOf(grew ? text.substr(shown->size()) : text));
  shown = text;
}

/// Keeps a value under its key; true when it is another one than before.
template <class Map, class Key, class Value>
bool IsNew(Map& kept, const Key& key, const Value& value) {
  const auto [place, isNew] = kept.try_emplace(key, value);
  return isNew || std::exchange(place->second, value) != value;
}

}  // namespace

void FormText::Forget(const Control& control) {
  const auto told = told_.find(&control.form);
  if (told == told_.end()) return;
  told->second.controls.erase(&control);
  told->second.panes.erase(&control);
}

std::string FormText::NewsOf(const Control& control, Told& told) {
  const bool isPane = dynamic_cast<const Pane*>(&control) != nullptr;
  JsonMembers members{{"name", JsonOf(control.name)}};
  if (!isPane) members.emplace_back("text", JsonOf(control.text));
  members.emplace_back("tip", JsonOf(control.toolTip));
  members.emplace_back("enabled", JsonOf(control.enabled && (IsReadWhileResting(control) || control.TakesInput())));
  members.emplace_back("visible", JsonOf(control.visible));
  DescribeKind(control, members);
  const std::string json = JsonObject(members);
  const std::size_t described = members.size();
  if (const auto* const canvas = dynamic_cast<const Canvas*>(&control);
      canvas != nullptr && IsNew(told.drawings, canvas, canvas->version))
    members.emplace_back("svg", JsonOf(SvgOf(canvas->drawing)));
  if (isPane) AddTextOfPane(control.text, told.panes.try_emplace(&control).first->second, members);
  return IsNew(told.controls, &control, json) || members.size() > described ? JsonObject(members) : std::string();
}

std::string FormText::NewsOf(Form& form) {
  const bool isNew = !told_.contains(&form);
  if (isNew && !form.Visible()) return {};
  Told& told = told_[&form];
  JsonMembers members{{"form", JsonOf(form.name)}};
  if (isNew) members.emplace_back("layout", LayoutText(LayoutOf(form)));
  if (std::exchange(told.visible, form.Visible()) != form.Visible())
    members.emplace_back("visible", JsonOf(form.Visible()));
  if (std::exchange(told.title, form.title) != form.title) members.emplace_back("title", JsonOf(form.title));
  if (std::exchange(told.takesInput, form.TakesInput()) != form.TakesInput())
    members.emplace_back("takesInput", JsonOf(form.TakesInput()));
  if (form.Visible()) {
    std::vector<std::string> controls;
    for (const Control* control : form.Controls())
      if (std::string news = NewsOf(*control, told); !news.empty()) controls.push_back(std::move(news));
    if (!controls.empty()) members.emplace_back("controls", JsonArray(controls));
  }
  if (form.focus != nullptr && form.Visible()) {
    members.emplace_back("focus", JsonOf(form.focus->name));
    form.focus = nullptr;
  }
  return members.size() == 1 ? std::string() : JsonObject(members);
}

std::string FormText::News(const Desk& desk) {
  std::vector<std::string> forms;
  for (Form* form : desk.Forms())
    if (std::string news = NewsOf(*form); !news.empty()) forms.push_back(std::move(news));
  return forms.empty() ? std::string() : JsonArray(forms);
}

}  // namespace merlane
