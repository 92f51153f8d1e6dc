#include "batch/transcript.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace merlane {
namespace {

using Json = nlohmann::ordered_json;

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

Json CellsOf(const Grid& grid) {
  Json rows = Json::array();
  for (int row = 0; row < grid.Rows(); ++row) {
    Json cells = Json::array();
    for (int column = 0; column < grid.Columns(); ++column) cells.push_back(grid.At(row, column).text);
    rows.push_back(std::move(cells));
  }
  return rows;
}

/// What a person sees of a control: its words, and what is chosen, ticked or filled in.
Json StateOf(const Control& control) {
  Json state;
  state[HasCaption(control) ? "caption" : "text"] = control.text;
  state["enabled"] = control.enabled;
  state["visible"] = control.visible;
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) state["value"] = option->value;
  if (const auto* box = dynamic_cast<const CheckBox*>(&control)) state["value"] = box->value;
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) state["items"] = combo->items;
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) {
    state["items"] = list->items;
    state["selected"] = list->selected + 1;
  }
  if (const auto* grid = dynamic_cast<const Grid*>(&control)) {
    state["cells"] = CellsOf(*grid);
    if (grid->selectsRows) state["selected"] = std::max(0, grid->selectedRow - grid->headingRows + 1);
  }
  if (const auto* bar = dynamic_cast<const StatusBar*>(&control)) {
    state["panels"] = Json::array();
    for (int panel = 1; panel <= bar->Panels(); ++panel) state["panels"].push_back(bar->Get(panel));
  }
  return state;
}

/// Texts of data files are bytes of unknown make; what is no UTF-8 is taken as Latin-1, as the windows do.
Json AsUtf8(Json value) {
  if (value.is_string()) return Utf8(value.get_ref<const std::string&>());
  if (value.is_structured())
    for (Json& part : value) part = AsUtf8(std::move(part));
  return value;
}

void WriteLine(std::ostream& out, Json object) { out << AsUtf8(std::move(object)).dump() << '\n' << std::flush; }

void WriteLine(std::ostream& out, const char* key, Json value) {
  Json object;
  object[key] = std::move(value);
  WriteLine(out, std::move(object));
}

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
    const Json state = StateOf(*control);
    std::string line = fmt::format("  {} {}", control->name, Quoted(control->text));
    if (!control->enabled) line += " disabled";
    if (!control->visible) line += " hidden";
    for (const char* key : {"value", "items", "selected", "cells", "panels"})
      if (state.contains(key)) line += fmt::format(" {} {}", key, AsUtf8(state[key]).dump());
    Write(line);
  }
}

void PeopleTranscript::Wrote(const std::string& path) { Write("wrote " + path); }

void PeopleTranscript::Failure(const std::string& text) { Write("failure " + text); }

void PeopleTranscript::End(const std::string& how) { out_ << "end: " << how << '\n' << std::flush; }

void JsonTranscript::Action(const std::string& action, int line) {
  WriteLine(out_, {{"action", action}, {"line", line}});
}

void JsonTranscript::Window(const std::string& form, FormEvent event) {
  WriteLine(out_, {{"window", form}, {"event", Word(event)}});
}

void JsonTranscript::Asked(const Message& message, Answer answer) {
  Json box{
      {"title", message.title}, {"text", message.text}, {"style", message.style}, {"answer", static_cast<int>(answer)}};
  if (!message.details.empty()) box["details"] = message.details;
  if (!message.offer.empty()) box["offer"] = message.offer;
  WriteLine(out_, "message", std::move(box));
}

void JsonTranscript::Entered(const InputRequest& request, const std::optional<std::string>& answer) {
  WriteLine(out_, "input",
            {{"title", request.title},
             {"prompt", request.prompt},
             {"default", request.defaultText},
             {"answer", answer.value_or("")}});
}

void JsonTranscript::Chosen(const FileRequest& request, const std::string& answer) {
  WriteLine(out_, "file",
            {{"kind", Word(request.kind)},
             {"title", request.title},
             {"filter", request.filter},
             {"default", request.startName},
             {"answer", answer}});
}

void JsonTranscript::Status(const std::string& bar, int panel, const std::string& text) {
  WriteLine(out_, "status", {{"bar", bar}, {"panel", panel}, {"text", text}});
}

void JsonTranscript::State(const Form& form) {
  Json controls = Json::object();
  for (const Control* control : form.Controls()) controls[control->name] = StateOf(*control);
  WriteLine(out_, "form", {{"name", form.name}, {"title", form.title}, {"controls", std::move(controls)}});
}

void JsonTranscript::Wrote(const std::string& path) { WriteLine(out_, "wrote", path); }

void JsonTranscript::Failure(const std::string& text) { WriteLine(out_, "failure", text); }

void JsonTranscript::End(const std::string& how) { WriteLine(out_, "end", how); }

}  // namespace merlane
