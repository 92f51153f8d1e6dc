#include "import/import_choices.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "import/heading.h"

namespace merlane {
namespace {

constexpr const char* FirstLine = "Choices of an import, version 1";

/// The lines NAME: VALUE of choices that were kept. What is none of them, or is none of their values, is a
/// RuntimeFailure that names its line.
class KeptLines {
 public:
  explicit KeptLines(std::string_view text) {
    const std::vector<std::string> lines = Lines(text);
    for (std::size_t i = 1; i < lines.size(); ++i) {
      const std::size_t colon = lines[i].find(": ");
      const Value value{colon == std::string::npos ? "" : lines[i].substr(colon + 2), static_cast<int>(i) + 1};
      if (colon == std::string::npos) Refuse(value, fmt::format("\"{}\" is no choice of an import", lines[i]));
      const std::string name = lines[i].substr(0, colon);
      if (!values_.try_emplace(name, value).second) Refuse(value, fmt::format("\"{}\" stands there twice", name));
    }
  }

  bool Has(const std::string& name) const { return values_.contains(name); }
  const std::string& Text(const std::string& name) { return Take(name).text; }

  int Place(const std::string& name, const std::vector<std::string>& names) {
    const Value& value = Take(name);
    const int at = PlaceOf(names, value.text);
    if (at < 0) Refuse(value, fmt::format("\"{}\" is no choice of \"{}\"", value.text, name));
    return at;
  }
  std::int16_t Whole(const std::string& name) {
    const Value& value = Take(name);
    try {
      return StrictInt16(value.text);
    } catch (const RuntimeFailure&) {
      Refuse(value, fmt::format("\"{}\" is no choice of \"{}\"", value.text, name));
    }
  }

  /// Refuses the first line that nobody has taken.
  void RefuseRest() const {
    const auto rest = std::ranges::min_element(
        values_, {}, [](const auto& each) { return std::pair(each.second.taken, each.second.line); });
    if (rest != values_.end() && !rest->second.taken)
      Refuse(rest->second, fmt::format("\"{}\" is no choice of an import", rest->first));
  }

 private:
  struct Value {
    std::string text;
    int line = 0;
    bool taken = false;
  };

  const Value& Take(const std::string& name) {
    const auto found = values_.find(name);
    if (found == values_.end()) throw RuntimeFailure("the choices of an import lack \"" + name + "\"");
    found->second.taken = true;
    return found->second;
  }

  [[noreturn]] static void Refuse(const Value& value, const std::string& why) {
    throw RuntimeFailure(fmt::format("line {} of the choices: {}", value.line, why));
  }

  std::map<std::string, Value> values_;
};

}  // namespace

const std::vector<std::string>& RoleNames() {
  static const std::vector<std::string> names{"not used",
                                              "year",
                                              "code",
                                              "day of the year",
                                              "date",
                                              "hatch day",
                                              "hatch date",
                                              "brood age",
                                              "number",
                                              "covariate",
                                              "first found",
                                              "last present",
                                              "last checked",
                                              "fate (1: failed)",
                                              "number of such nests",
                                              "month",
                                              "hatch month",
                                              "part of the code",
                                              "eggs or young",
                                              "survived (1: not failed)"};
  return names;
}

const std::vector<std::string>& UnknownAgeNames() {
  static const std::vector<std::string> names{"leave the visit out", "unknown age of eggs", "unknown age of young"};
  return names;
}

bool MayBeMany(Role role) {
  return role == Role::Unused || role == Role::Covariate || role == Role::Count || role == Role::CodePart;
}

int PlaceOf(const std::vector<std::string>& names, std::string_view name) {
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

bool ImportChoices::Has(Role role) const { return std::ranges::find(roles, role) != roles.end(); }

std::string ChoicesText(const ImportChoices& choices) {
  std::string text = fmt::format(
      "{}\r\n{}Encoding: {}\r\nDelimiter: {}\r\nDecimal mark: {}\r\nHeading: {}\r\nDates: {}\r\nUnknown age: {}\r\n"
      "Year: {}\r\n",
      FirstLine, choices.sheet.empty() ? "" : fmt::format("Sheet: {}\r\n", WithoutControls(choices.sheet)),
      EncodingNames()[static_cast<std::size_t>(choices.encoding)],
      DelimiterNames()[static_cast<std::size_t>(choices.delimiter)], choices.decimal, choices.heading ? "yes" : "no",
      DateOrderNames()[static_cast<std::size_t>(choices.dates)],
      UnknownAgeNames()[static_cast<std::size_t>(choices.unknownAge)], choices.year);
  for (std::size_t c = 0; c < choices.roles.size(); ++c)
    text += fmt::format("Column {0}: {1}\r\nName {0}: {2}\r\n", c + 1,
                        RoleNames()[static_cast<std::size_t>(choices.roles[c])], OnOneLine(choices.names[c]));
  return text;
}

ImportChoices ChoicesIn(std::string_view text) {
  if (const std::vector<std::string> lines = Lines(text); lines.empty() || lines.front() != FirstLine)
    throw RuntimeFailure("this file holds no choices of an import");
  static const std::vector<std::string> marks{".", ","}, answers{"no", "yes"};
  KeptLines kept(text);
  ImportChoices choices;
  if (kept.Has("Sheet")) choices.sheet = kept.Text("Sheet");
  choices.encoding = static_cast<Encoding>(kept.Place("Encoding", EncodingNames()));
  choices.delimiter = static_cast<Delimiter>(kept.Place("Delimiter", DelimiterNames()));
  choices.decimal = marks[static_cast<std::size_t>(kept.Place("Decimal mark", marks))].front();
  choices.heading = kept.Place("Heading", answers) == 1;
  choices.dates = static_cast<DateOrder>(kept.Place("Dates", DateOrderNames()));
  choices.unknownAge = static_cast<UnknownAge>(kept.Place("Unknown age", UnknownAgeNames()));
  choices.year = kept.Whole("Year");
  for (int c = 1; kept.Has(fmt::format("Column {}", c)); ++c) {
    choices.roles.push_back(static_cast<Role>(kept.Place(fmt::format("Column {}", c), RoleNames())));
    choices.names.push_back(kept.Text(fmt::format("Name {}", c)));
  }
  kept.RefuseRest();
  return choices;
}

}  // namespace merlane
