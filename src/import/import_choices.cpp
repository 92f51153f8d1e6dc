#include "import/import_choices.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "import/heading.h"

namespace merlane {
namespace {

/// The lines NAME: VALUE of a text.
std::map<std::string, std::string> NamedLines(std::string_view text) {
  std::map<std::string, std::string> named;
  for (const std::string& line : Lines(text)) {
    const std::size_t colon = line.find(": ");
    if (colon != std::string::npos) named[line.substr(0, colon)] = line.substr(colon + 2);
  }
  return named;
}

constexpr const char* FirstLine = "Choices of an import, version 1";

}  // namespace

const std::vector<std::string>& RoleNames() {
  static const std::vector<std::string> names{
      "not used",    "year",         "code",         "day of the year",  "date",
      "hatch day",   "hatch date",   "brood age",    "number",           "covariate",
      "first found", "last present", "last checked", "fate (1: failed)", "number of such nests"};
  return names;
}

const std::vector<std::string>& UnknownAgeNames() {
  static const std::vector<std::string> names{"leave the visit out", "unknown age of eggs", "unknown age of young"};
  return names;
}

bool MayBeMany(Role role) { return role == Role::Unused || role == Role::Covariate || role == Role::Count; }

int PlaceOf(const std::vector<std::string>& names, std::string_view name) {
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

bool ImportChoices::Has(Role role) const { return std::ranges::find(roles, role) != roles.end(); }

std::string ChoicesText(const ImportChoices& choices) {
  std::string text = fmt::format(
      "{}\r\n{}Encoding: {}\r\nDelimiter: {}\r\nDecimal mark: {}\r\nHeading: {}\r\nDates: {}\r\nUnknown age: {}\r\n"
      "Year: {}\r\n",
      FirstLine, choices.sheet.empty() ? "" : fmt::format("Sheet: {}\r\n", OnOneLine(choices.sheet)),
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
  if (!text.starts_with(FirstLine)) throw RuntimeFailure("this file holds no choices of an import");
  const std::map<std::string, std::string> named = NamedLines(text);
  const auto value = [&](const std::string& name) {
    const auto found = named.find(name);
    if (found == named.end()) throw RuntimeFailure("the choices of an import lack \"" + name + "\"");
    return found->second;
  };
  const auto place = [&](const std::string& name, const std::vector<std::string>& names) {
    const int at = PlaceOf(names, value(name));
    if (at < 0) throw RuntimeFailure(fmt::format("\"{}\" is no choice of \"{}\"", value(name), name));
    return at;
  };
  ImportChoices choices;
  if (named.contains("Sheet")) choices.sheet = value("Sheet");
  choices.encoding = static_cast<Encoding>(place("Encoding", EncodingNames()));
  choices.delimiter = static_cast<Delimiter>(place("Delimiter", DelimiterNames()));
  choices.decimal = value("Decimal mark") == "," ? ',' : '.';
  choices.heading = value("Heading") == "yes";
  choices.dates = static_cast<DateOrder>(place("Dates", DateOrderNames()));
  choices.unknownAge = static_cast<UnknownAge>(place("Unknown age", UnknownAgeNames()));
  choices.year = StrictInt16(value("Year"));
  for (int c = 1; named.contains(fmt::format("Column {}", c)); ++c) {
    choices.roles.push_back(static_cast<Role>(place(fmt::format("Column {}", c), RoleNames())));
    choices.names.push_back(value(fmt::format("Name {}", c)));
  }
  return choices;
}

}  // namespace merlane
