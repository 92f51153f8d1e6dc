#include "import/import_choices.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

/// The rows from which columns are judged.
constexpr std::size_t RowsLookedAt = 200;

std::vector<TextRow> FirstRows(std::string_view text, Delimiter delimiter) {
  std::vector<TextRow> rows;
  DelimitedRows all(text, delimiter);
  for (TextRow row; rows.size() < RowsLookedAt && all.Next(row);) rows.push_back(row);
  return rows;
}

/// Whether the fields of the rows that hold something are all of a kind, and there is at least one.
template <class IsOfKind>
bool All(const std::vector<TextRow>& rows, std::size_t column, IsOfKind isOfKind) {
  bool any = false;
  for (const TextRow& row : rows) {
    if (column >= row.fields.size() || IsMissing(row.fields[column])) continue;
    if (!isOfKind(row.fields[column])) return false;
    any = true;
  }
  return any;
}

bool IsDecimalComma(const std::string& field) {
  return field.find(',') != std::string::npos && NumberIn(field, ',').has_value();
}

/// A comma is the decimal mark when a field is a number with it, and none is one with a point.
char ProposedDecimal(const std::vector<TextRow>& rows) {
  bool comma = false;
  for (const TextRow& row : rows)
    for (const std::string& field : row.fields) {
      if (field.find('.') != std::string::npos && NumberIn(field, '.')) return '.';
      comma = comma || IsDecimalComma(field);
    }
  return comma ? ',' : '.';
}

bool IsAnyDate(std::string_view field) {
  return DateIn(field, DateOrder::YearMonthDay) || DateIn(field, DateOrder::DayMonthYear) ||
         DateIn(field, DateOrder::MonthDayYear);
}

/// A first row of words alone is a heading.
bool ProposedHeading(const std::vector<TextRow>& rows, char decimal) {
  if (rows.empty()) return false;
  return std::ranges::none_of(rows.front().fields, [decimal](const std::string& field) {
    return NumberIn(field, decimal) || IsAnyDate(field);
  });
}

/// The first order in which all dates of a column are days of the calendar.
DateOrder ProposedDates(const std::vector<TextRow>& rows, std::size_t columns) {
  for (std::size_t c = 0; c < columns; ++c) {
    if (!All(rows, c, IsAnyDate)) continue;
    // A day before its month is what points stand between; slashes are asked for by their sense.
    for (const DateOrder order : {DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear})
      if (All(rows, c, [order](const std::string& field) { return DateIn(field, order).has_value(); })) return order;
  }
  return DateOrder::YearMonthDay;
}

/// A heading without what people put between words.
std::string Letters(std::string_view heading) {
  std::string letters;
  for (const char c : LowerCase(heading))
    if ((c >= 'a' && c <= 'z') || c == '#') letters += c;
  return letters;
}

Role RoleOf(std::string_view heading) {
  static const std::map<std::string, Role, std::less<>> roles{{"year", Role::Year},
                                                              {"season", Role::Year},
                                                              {"code", Role::Code},
                                                              {"id", Role::Code},
                                                              {"brood", Role::Code},
                                                              {"nest", Role::Code},
                                                              {"nestid", Role::Code},
                                                              {"broodid", Role::Code},
                                                              {"tag", Role::Code},
                                                              {"dofy", Role::Day},
                                                              {"day", Role::Day},
                                                              {"doy", Role::Day},
                                                              {"dayofyear", Role::Day},
                                                              {"date", Role::Date},
                                                              {"visit", Role::Date},
                                                              {"visitdate", Role::Date},
                                                              {"hatchday", Role::HatchDay},
                                                              {"hatchdate", Role::HatchDate},
                                                              {"hatch", Role::HatchDay},
                                                              {"broodage", Role::Age},
                                                              {"age", Role::Age},
                                                              {"#eorj", Role::Count},
                                                              {"count", Role::Count},
                                                              {"number", Role::Count},
                                                              {"eggs", Role::Count},
                                                              {"young", Role::Count},
                                                              {"chicks", Role::Count},
                                                              {"firstfound", Role::FirstFound},
                                                              {"lastpresent", Role::LastPresent},
                                                              {"lastchecked", Role::LastChecked},
                                                              {"fate", Role::Fate},
                                                              {"freq", Role::Nests},
                                                              {"nests", Role::Nests}};
  const auto found = roles.find(Letters(heading));
  return found == roles.end() ? Role::Unused : found->second;
}

/// The role that a heading proposes, as far as what stands below it can be that.
Role ProposedRole(std::string_view heading, const std::vector<TextRow>& rows, std::size_t column, char decimal) {
  const bool dates = All(rows, column, IsAnyDate);
  const bool numbers =
      All(rows, column, [decimal](const std::string& field) { return NumberIn(field, decimal).has_value(); });
  const Role role = RoleOf(heading);
  if (role == Role::Day || role == Role::Date) return dates ? Role::Date : numbers ? Role::Day : Role::Unused;
  if (role == Role::HatchDay || role == Role::HatchDate)
    return dates ? Role::HatchDate : numbers ? Role::HatchDay : Role::Unused;
  if (role == Role::Unused && numbers) return Role::Covariate;
  return role;
}

/// The lines NAME: VALUE of a text.
std::map<std::string, std::string> NamedLines(std::string_view text) {
  std::map<std::string, std::string> named;
  for (const std::string& line : Lines(text)) {
    const std::size_t colon = line.find(": ");
    if (colon != std::string::npos) named[line.substr(0, colon)] = line.substr(colon + 2);
  }
  return named;
}

std::string OnOneLine(std::string name) {
  std::ranges::replace_if(
      name, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return name;
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

int PlaceOf(const std::vector<std::string>& names, std::string_view name) {
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

bool ImportChoices::Has(Role role) const { return std::ranges::find(roles, role) != roles.end(); }

ImportChoices ProposedChoices(std::string_view bytes) {
  ImportChoices choices;
  choices.encoding = ProposedEncoding(bytes);
  const std::string text = Decoded(bytes, choices.encoding);
  choices.delimiter = ProposedDelimiter(text);
  ProposeColumns(text, choices);
  return choices;
}

void ProposeColumns(std::string_view text, ImportChoices& choices) {
  std::vector<TextRow> rows = FirstRows(text, choices.delimiter);
  std::size_t columns = 0;
  for (const TextRow& row : rows) columns = std::max(columns, row.fields.size());
  choices.decimal = ProposedDecimal(rows);
  choices.heading = ProposedHeading(rows, choices.decimal);
  choices.roles.assign(columns, Role::Unused);
  std::vector<std::string> headings;
  if (choices.heading) {
    headings = rows.front().fields;
    rows.erase(rows.begin());
  }
  choices.dates = ProposedDates(rows, columns);
  for (std::size_t c = 0; c < headings.size(); ++c) {
    const Role role = ProposedRole(headings[c], rows, c, choices.decimal);
    // Only covariates are many.
    if (role == Role::Covariate || !choices.Has(role)) choices.roles[c] = role;
  }
}

ImportChoices ForText(ImportChoices kept, std::string_view text) {
  ImportChoices present = kept;
  ProposeColumns(text, present);
  std::vector<Role> roles(present.roles.size(), Role::Unused);
  present.heading = kept.heading;
  const std::vector<std::string> names = ColumnNames(text, present);
  for (std::size_t c = 0; c < roles.size(); ++c) {
    const int place = kept.heading ? PlaceOf(kept.names, OnOneLine(names[c])) : static_cast<int>(c);
    if (place >= 0 && place < static_cast<int>(kept.roles.size()))
      roles[c] = kept.roles[static_cast<std::size_t>(place)];
  }
  kept.roles = std::move(roles);
  return kept;
}

std::vector<std::string> ColumnNames(std::string_view text, const ImportChoices& choices) {
  TextRow first;
  if (choices.heading) DelimitedRows(text, choices.delimiter).Next(first);
  std::vector<std::string> names = first.fields;
  names.resize(choices.roles.size());
  for (std::size_t c = 0; c < names.size(); ++c)
    if (names[c].empty()) names[c] = fmt::format("Column {}", c + 1);
  return names;
}

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
