#include "batch/actions.h"

#include <fmt/format.h>

#include <utility>

#include "base/failure_text.h"
#include "batch/stopped.h"
#include "platform/files.h"
#include "plots/svg.h"

namespace merlane {
namespace {

[[noreturn]] void Fault(const BatchLine& line, const std::string& what) {
  HeadlessHost::Stop(status::FileAtFault, line, what);
}

/// Acts that a person does to the program, to which an interrupt and the questions behind it belong.
bool IsCommand(Verb verb) {
  switch (verb) {
    case Verb::Press:
    case Verb::Choose:
    case Verb::Tick:
    case Verb::Untick:
    case Verb::Set:
    case Verb::Select:
    case Verb::Click:
    case Verb::DoubleClick:
    case Verb::Type:
    case Verb::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

Actions::Actions(Desk& desk, HeadlessHost& host, BatchClock& clock, Exporter exporter)
    : desk_(desk), host_(host), clock_(clock), exporter_(std::move(exporter)) {
  host_.play = [this](const BatchLine& line) { Play(line); };
}

void Actions::Play(const BatchLine& line) {
  host_.GetTranscript().Action(line.source, line.number);
  if (!IsCommand(line.verb)) {
    Perform(line);
    return;
  }
  host_.BeginCommand(line);
  Perform(line);
  host_.EndCommand();
}

void Actions::Perform(const BatchLine& line) {
  switch (line.verb) {
    case Verb::Press:
      return Press(line);
    case Verb::Choose: {
      auto& option = ControlAs<OptionButton>(line, "option button");
      return Check(desk_.Choose(option), line, option);
    }
    case Verb::Tick:
    case Verb::Untick: {
      auto& box = ControlAs<CheckBox>(line, "check box");
      return Check(desk_.Tick(box, line.verb == Verb::Tick), line, box);
    }
    case Verb::Set:
      return Set(line);
    case Verb::Select:
      return Select(line);
    case Verb::Click: {
      auto& grid = ControlAs<Grid>(line, "grid");
      return Check(desk_.Click(grid, *line.row, line.column), line, grid);
    }
    case Verb::DoubleClick:
      return DoubleClick(line);
    case Verb::Type:
      return Type(line);
    case Verb::Close:
      return Close(line);
    case Verb::Interrupt:
      return Arm(line);
    case Verb::Seed:
      return desk_.host.random.SetSeed(line.seed);
    case Verb::Clock:
      return clock_.StandAt(line.time);
    case Verb::Show:
      return host_.GetTranscript().State(FormNamed(line.target, line));
    case Verb::SaveText:
      return SaveText(line);
    case Verb::SavePlot:
      return SavePlot(line);
    case Verb::Export:
      return Export(line);
    case Verb::Reply:
    case Verb::Enter:
    case Verb::File:
      break;  // answers are no actions; the host takes them
  }
}

void Actions::Press(const BatchLine& line) {
  Control& control = ControlOf(line);
  if (auto* button = dynamic_cast<Button*>(&control)) return Check(desk_.Press(*button), line, control);
  if (auto* entry = dynamic_cast<MenuEntry*>(&control)) return Check(desk_.Press(*entry), line, control);
  // A few text boxes ask for their text when they are clicked.
  if (auto* box = dynamic_cast<TextBox*>(&control); box != nullptr && box->onClick)
    return Check(desk_.Click(*box), line, control);
  Fault(line, control.name + " is no button or menu entry");
}

void Actions::Set(const BatchLine& line) {
  Control& control = ControlOf(line);
  if (auto* box = dynamic_cast<TextBox*>(&control)) return Check(desk_.SetText(*box, *line.text), line, control);
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) return Check(desk_.SetText(*combo, *line.text), line, control);
  if (auto* pane = dynamic_cast<Pane*>(&control)) return Check(desk_.SetText(*pane, *line.text), line, control);
  Fault(line, control.name + " is no text box or combo box");
}

void Actions::Select(const BatchLine& line) {
  Control& control = ControlOf(line);
  if (auto* list = dynamic_cast<ListBox*>(&control)) return Check(desk_.Select(*list, *line.row - 1), line, control);
  auto* grid = dynamic_cast<Grid*>(&control);
  if (grid == nullptr || !grid->selectsRows) Fault(line, control.name + " is no list or selecting grid");
  Check(*line.row <= grid->Rows() && desk_.SelectRow(*grid, grid->headingRows + *line.row - 1), line, control);
}

void Actions::DoubleClick(const BatchLine& line) {
  if (line.row) {
    auto& grid = ControlAs<Grid>(line, "grid");
    Check(desk_.DoubleClick(grid, *line.row, line.column), line, grid);
  } else {
    auto& list = ControlAs<ListBox>(line, "list");
    if (desk_.Usable(list) && list.selected < 0) Fault(line, "no row of " + list.name + " is selected");
    Check(desk_.DoubleClick(list), line, list);
  }
}

void Actions::Type(const BatchLine& line) {
  auto& grid = ControlAs<Grid>(line, "grid");
  Check(desk_.DoubleClick(grid, *line.row, line.column), line, grid);
  if (!desk_.Ended()) Check(desk_.Enter(grid, *line.row, line.column, *line.text), line, grid);
}

void Actions::Close(const BatchLine& line) {
  Form& form = FormNamed(line.target, line);
  if (desk_.Close(form) || desk_.CloseAsked()) return;
  if (!form.Visible()) Fault(line, form.name + " is not shown");
  Fault(line, form.name + (form.TakesInput() ? " cannot be closed while a calculation runs" : " takes no input now"));
}

void Actions::Arm(const BatchLine& line) {
  // The control may belong to a form that the next command will show; it is looked for at its turn.
  host_.Arm(line);
}

void Actions::SaveText(const BatchLine& line) {
  const Control& control = ControlOf(line);
  if (dynamic_cast<const Pane*>(&control) == nullptr && dynamic_cast<const TextBox*>(&control) == nullptr)
    Fault(line, control.name + " is no text pane");
  Check(control.form.Visible() && control.visible && control.enabled, line, control);
  Write(line, [&] { return control.text; });
}

void Actions::SavePlot(const BatchLine& line) {
  const Form& form = FormNamed(line.target, line);
  if (!form.Visible()) Fault(line, form.name + " is not shown");
  for (const Control* control : form.Controls())
    if (const auto* canvas = dynamic_cast<const Canvas*>(control); canvas != nullptr && canvas->visible)
      return Write(line, [&] { return Svg(canvas->drawing); });
  Fault(line, line.target + " shows no drawing");
}

void Actions::Export(const BatchLine& line) {
  Write(line, [&] {
    Exported exported = exporter_(line.target);
    if (!exported.note.empty()) host_.GetTranscript().Note(exported.note);
    return std::move(exported.bytes);
  });
}

void Actions::Write(const BatchLine& line, const std::function<std::string()>& bytes) {
  try {
    const std::string path = host_.GetFolders().ToWrite(*line.text);
    WriteWholeFile(path, bytes());
    host_.OnWrote(path);
  } catch (const std::exception& failure) {
    host_.OnFailure(line.source + ": " + FailureText(failure));
  }
}

Form& Actions::FormNamed(const std::string& name, const BatchLine& line) const {
  Form* const form = desk_.Find(name);
  if (form == nullptr) Fault(line, "there is no form " + name);
  if (!form->Loaded()) Fault(line, name + " is not open");
  return *form;
}

Control& Actions::ControlOf(const BatchLine& line) const {
  const std::size_t dot = line.target.find('.');
  const std::string name = dot == std::string::npos ? line.target : line.target.substr(dot + 1);
  if (dot != std::string::npos) {
    Form& form = FormNamed(line.target.substr(0, dot), line);
    Control* const control = form.Find(name);
    if (control == nullptr) Fault(line, form.name + " has no control " + name);
    return *control;
  }
  Control* found = nullptr;
  for (Form* form : desk_.Forms()) {
    Control* const control = form->Loaded() ? form->Find(name) : nullptr;
    if (control != nullptr && found != nullptr)
      Fault(line, fmt::format("{} and {} both have a control {}", found->form.name, form->name, name));
    if (control != nullptr) found = control;
  }
  if (found == nullptr) Fault(line, "no open form has a control " + name);
  return *found;
}

template <class Kind>
Kind& Actions::ControlAs(const BatchLine& line, const char* kind) const {
  auto* const control = dynamic_cast<Kind*>(&ControlOf(line));
  if (control == nullptr) Fault(line, fmt::format("{} is no {}", line.target, kind));
  return *control;
}

void Actions::Check(bool done, const BatchLine& line, const Control& control) const {
  if (!done) Fault(line, WhyUnusable(control));
}

std::string Actions::WhyUnusable(const Control& control) const {
  if (!control.form.Visible()) return control.form.name + " is not shown";
  if (!control.TakesInput()) return control.form.name + " takes no input now";
  if (!control.visible) return control.name + " is not visible";
  if (!control.enabled) return control.name + " is not enabled";
  if (desk_.Busy() && !control.offeredWhileBusy) return control.name + " is not offered while a calculation runs";
  if (const auto* entry = dynamic_cast<const MenuEntry*>(&control)) {
    for (const MenuEntry* above = entry->parent; above != nullptr; above = above->parent)
      if (!above->enabled || !above->visible) return "the menu " + above->name + " is not enabled or not visible";
  }
  if (dynamic_cast<const Grid*>(&control) != nullptr) return control.name + " has no such cell";
  if (dynamic_cast<const ListBox*>(&control) != nullptr) return control.name + " has no such row";
  return control.name + " is for reading only";
}

}  // namespace merlane
