#include "batch/transcript.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/json_text.h"
#include "base/text.h"

namespace merlane {
namespace {

const char* Word(FormEvent event) {
  switch (event) {
    case FormEvent::Shown:
      return "shown";
    case FormEvent::Hidden:
      return "hidden";
    case FormEvent::Unloaded:
      return "unloaded";
    case FormEvent::Front:
      return "front";
  }
  return "";
}

const char* Word(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return "OK";
    case Answer::Cancel:
      return "Cancel";
    case Answer::Yes:
      return "Yes";
    case Answer::No:
      return "No";
    case Answer::Offer:
      return "the offer";
  }
  return "";
}

const char* Word(FileRequest::Kind kind) { return kind == FileRequest::Kind::Open ? "open" : "save"; }

bool HasCaption(const Control& control) {
  return dynamic_cast<const Button*>(&control) != nullptr || dynamic_cast<const Label*>(&control) != nullptr ||
         dynamic_cast<const OptionButton*>(&control) != nullptr || dynamic_cast<const CheckBox*>(&control) != nullptr ||
         dynamic_cast<const MenuEntry*>(&control) != nullptr;
}

std::string CellsOf(const Grid& grid) {
  std::vector<std::string> rows;
  for (int row = 0; row < grid.Rows(); ++row) {
    std::vector<std::string> cells;
    for (int column = 0; column < grid.Columns(); ++column) cells.push_back(grid.At(row, column).text);
    rows.push_back(JsonOf(cells));
  }
  return JsonArray(rows);
}

std::string PanelsOf(const StatusBar& bar) {
  std::vector<std::string> panels;
  for (int panel = 1; panel <= bar.Panels(); ++panel) panels.push_back(bar.Get(panel));
  return JsonOf(panels);
}

/// What is chosen, ticked or filled in of a control.
JsonMembers ChoiceOf(const Control& control) {
  if (const auto* choice = dynamic_cast<const Switch*>(&control)) return {{"value", JsonOf(choice->value)}};
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return {{"items", JsonOf(combo->items)}};
  if (const auto* list = dynamic_cast<const ListBox*>(&control))
    return {{"items", JsonOf(list->items)}, {"selected", JsonOf(list->selected + 1)}};
  if (const auto* bar = dynamic_cast<const StatusBar*>(&control)) return {{"panels", PanelsOf(*bar)}};
  if (const auto* grid = dynamic_cast<const Grid*>(&control)) {
    const int selected = std::max(0, grid->selectedRow - grid->headingRows + 1);
    JsonMembers choice;
    if (grid->selectsRows) choice.emplace_back("selected", JsonOf(selected));
    choice.emplace_back("cells", CellsOf(*grid));
    return choice;
  }
  return {};
}

/// What a person sees of a control: its words, and what is chosen.
std::string StateOf(const Control& control) {
  JsonMembers state{{HasCaption(control) ? "caption" : "text", JsonOf(control.text)},
                    {"enabled", JsonOf(control.enabled)},
                    {"visible", JsonOf(control.visible)}};
  for (auto& member : ChoiceOf(control)) state.push_back(std::move(member));
  return JsonObject(state);
}

void WriteLine(std::ostream& out, const JsonMembers& members) { out << JsonObject(members) << '\n' << std::flush; }

/// The line without breaks: no name of a file or control can look like a line of the transcript.
std::string OnOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '\n' || c == '\r')
      line += c == '\n' ? "\\n" : "\\r";
    else
      line += c;
  }
  return line;
}

}  // namespace

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '\r') continue;
    if (c == '\n') {
      quoted += "\\n";
      continue;
    }
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

void PeopleTranscript::Write(const std::string& line) {
  out_ << "      " << OnOneLine(Utf8(line)) << '\n' << std::flush;
}

void PeopleTranscript::Action(const std::string& action, int line) {
  out_ << fmt::format("{:4}  {}\n", line, action) << std::flush;
}

void PeopleTranscript::Window(const std::string& form, FormEvent event) {
  Write(fmt::format("window {} {}", form, Word(event)));
}

void PeopleTranscript::Asked(const Message& message, Answer answer) {
  const std::string details = message.details.empty() ? "" : " (" + Quoted(message.details) + ")";
  const std::string offer = message.offer.empty() ? "" : " offering " + Quoted(message.offer);
  Write(fmt::format("message {}: {}{}{} -> {}", Quoted(message.title), Quoted(message.text), details, offer,
                    Word(answer)));
}

void PeopleTranscript::Entered(const InputRequest& request, const std::optional<std::string>& answer) {
  Write(fmt::format("input {}: {} (default {}) -> {}", Quoted(request.title), Quoted(request.prompt),
                    Quoted(request.defaultText), answer ? Quoted(*answer) : "cancelled"));
}

void PeopleTranscript::Chosen(const FileRequest& request, const std::string& answer) {
  Write(fmt::format("file to {} {} (default {}) -> {}", Word(request.kind), Quoted(request.title),
                    Quoted(request.startName), answer.empty() ? "cancelled" : Quoted(answer)));
}

void PeopleTranscript::Status(const std::string& bar, int panel, const std::string& text) {
  Write(fmt::format("status {} {}: {}", bar, panel, Quoted(text)));
}

void PeopleTranscript::State(const Form& form) {
  Write(fmt::format("form {} {}", form.name, Quoted(form.title)));
  for (const Control* control : form.Controls()) {
    std::string line = fmt::format("  {} {}", control->name, Quoted(control->text));
    if (!control->enabled) line += " disabled";
    if (!control->visible) line += " hidden";
    for (const auto& [name, value] : ChoiceOf(*control)) line += fmt::format(" {} {}", name, value);
    Write(line);
  }
}

void PeopleTranscript::Note(const std::string& text) { Write("note: " + text); }

void PeopleTranscript::Wrote(const std::string& path) { Write("wrote " + path); }

void PeopleTranscript::Shares(const std::string& work, const Share& share) {
  Write(fmt::format("piece {} of {} of {}", share.number, share.of, work));
}

void PeopleTranscript::Failure(const std::string& text) { Write("failure " + text); }

void PeopleTranscript::End(const std::string& how) { out_ << "end: " << how << '\n' << std::flush; }

void JsonTranscript::Action(const std::string& action, int line) {
  WriteLine(out_, {{"action", JsonOf(action)}, {"line", JsonOf(line)}});
}

void JsonTranscript::Window(const std::string& form, FormEvent event) {
  WriteLine(out_, {{"window", JsonOf(form)}, {"event", JsonOf(Word(event))}});
}

void JsonTranscript::Asked(const Message& message, Answer answer) {
  JsonMembers box{{"title", JsonOf(message.title)},
                  {"text", JsonOf(message.text)},
                  {"style", JsonOf(message.style)},
                  {"answer", JsonOf(static_cast<int>(answer))}};
  if (!message.details.empty()) box.emplace_back("details", JsonOf(message.details));
  if (!message.offer.empty()) box.emplace_back("offer", JsonOf(message.offer));
  WriteLine(out_, {{"message", JsonObject(box)}});
}

void JsonTranscript::Entered(const InputRequest& request, const std::optional<std::string>& answer) {
  WriteLine(out_, {{"input", JsonObject({{"title", JsonOf(request.title)},
                                         {"prompt", JsonOf(request.prompt)},
                                         {"default", JsonOf(request.defaultText)},
                                         {"answer", JsonOf(answer.value_or(""))}})}});
}

void JsonTranscript::Chosen(const FileRequest& request, const std::string& answer) {
  WriteLine(out_, {{"file", JsonObject({{"kind", JsonOf(Word(request.kind))},
                                        {"title", JsonOf(request.title)},
                                        {"filter", JsonOf(request.filter)},
                                        {"default", JsonOf(request.startName)},
                                        {"answer", JsonOf(answer)}})}});
}

void JsonTranscript::Status(const std::string& bar, int panel, const std::string& text) {
  WriteLine(out_, {{"status", JsonObject({{"bar", JsonOf(bar)}, {"panel", JsonOf(panel)}, {"text", JsonOf(text)}})}});
}

void JsonTranscript::State(const Form& form) {
  JsonMembers controls;
  for (const Control* control : form.Controls()) controls.emplace_back(control->name, StateOf(*control));
  WriteLine(
      out_,
      {{"form",
        JsonObject({{"name", JsonOf(form.name)}, {"title", JsonOf(form.title)}, {"controls", JsonObject(controls)}})}});
}

void JsonTranscript::Note(const std::string& text) { WriteLine(out_, {{"note", JsonOf(text)}}); }

void JsonTranscript::Wrote(const std::string& path) { WriteLine(out_, {{"wrote", JsonOf(path)}}); }

void JsonTranscript::Shares(const std::string& work, const Share& share) {
  WriteLine(out_, {{"piece",
                    JsonObject({{"number", JsonOf(share.number)}, {"of", JsonOf(share.of)}, {"work", JsonOf(work)}})}});
}

void JsonTranscript::Failure(const std::string& text) { WriteLine(out_, {{"failure", JsonOf(text)}}); }

void JsonTranscript::End(const std::string& how) { WriteLine(out_, {{"end", JsonOf(how)}}); }

}  // namespace merlane
