#include "layouts/layouts.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "layouts/boxes.h"

namespace merlane {
namespace {

using namespace boxes;

template <class... Kinds>
bool IsOneOf(const Control& control) {
  return ((dynamic_cast<const Kinds*>(&control) != nullptr) || ...);
}

/// One control below the other, a field beside the label before it; then what takes the room, and the buttons.
std::vector<Box> AsTheyCome(const std::vector<const Control*>& controls) {
  std::vector<Box> boxes, large, buttons;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const char* const name = controls[i]->name.c_str();
    const Control* const next = i + 1 < controls.size() ? controls[i + 1] : nullptr;
    if (IsOneOf<Button>(*controls[i])) {
      buttons.emplace_back(name);
    } else if (IsOneOf<Pane, Grid, ListBox, Canvas>(*controls[i])) {
      large.push_back(Grows(Lines(4, name)));
    } else if (IsOneOf<Label>(*controls[i]) && next != nullptr && IsOneOf<TextBox, ComboBox>(*next)) {
      boxes.push_back(Row({name, Grows(next->name.c_str())}));
      ++i;
    } else {
      boxes.push_back(Note(name));
    }
  }
  std::move(large.begin(), large.end(), std::back_inserter(boxes));
  if (!buttons.empty()) boxes.push_back(Column(std::move(buttons)));
  return boxes;
}

}  // namespace

Layout LayoutOf(const Form& form) {
  const auto found = Layouts().find(form.name);
  Layout layout = found == Layouts().end() ? Layout{.columns = 80, .lines = 1, .enter = "cmdOK", .escape = "cmdCancel"}
                                           : found->second;
  std::set<std::string> named;
  ForEachControl(layout.parts, [&](const std::string& name) { named.insert(name); });
  std::vector<const Control*> others;
  for (const Control* control : form.Controls())
    if (!IsOneOf<MenuEntry>(*control) && !named.contains(control->name)) others.push_back(control);
  const std::vector<Box> rest = AsTheyCome(others);
  const auto pinned = std::ranges::find(layout.parts, Box::Kind::Pinned, &Box::kind);
  layout.parts.insert(pinned, rest.begin(), rest.end());
  return layout;
}

}  // namespace merlane
