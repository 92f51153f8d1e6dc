#include "import/import_choices.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "import/heading_words.h"

namespace merlane {
namespace {

/// The rows from which columns are judged.
constexpr std::size_t RowsLookedAt = 200;

/// How many fields of a column hold something, and how many of those are of a kind.
struct OfKind {
  int filled = 0, fitting = 0;
};

template <class IsOfKind>
OfKind CountOfKind(const std::vector<TextRow>& rows, std::size_t column, IsOfKind isOfKind) {
  OfKind count;
  for (const TextRow& row : rows) {
    if (column >= row.fields.size() || IsMissing(row.fields[column])) continue;
    ++count.filled;
    if (isOfKind(row.fields[column])) ++count.fitting;
  }
  return count;
}

/// Whether half of the fields of a column that hold something, or more, are of a kind. What is not will be told when
/// the file is imported.
template <class IsOfKind>
bool Mostly(const std::vector<TextRow>& rows, std::size_t column, IsOfKind isOfKind) {
  const OfKind count = CountOfKind(rows, column, isOfKind);
  return count.fitting > 0 && 2 * count.fitting >= count.filled;
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
         DateIn(field, DateOrder::MonthDayYear) || HasShortYear(field);  // of which the import tells why it is none
}

std::size_t Filled(const TextRow& row) {
  return row.fields.size() - static_cast<std::size_t>(std::ranges::count(row.fields, std::string()));
}

/// How many rows at the start are titles: of less than half of what other rows hold.
std::size_t TitleRows(const std::vector<TextRow>& rows) {
  std::vector<std::size_t> filled;
  for (const TextRow& row : rows) filled.push_back(Filled(row));
  std::ranges::sort(filled);
  std::size_t titles = 0;
  while (titles < rows.size() && 2 * Filled(rows[titles]) < filled[filled.size() / 2]) ++titles;
  return titles;
}

/// A first row of words alone is a heading.
bool ProposedHeading(const std::vector<TextRow>& rows, char decimal) {
  const std::size_t first = TitleRows(rows);
  if (first == rows.size()) return false;
  return std::ranges::none_of(
      rows[first].fields, [decimal](const std::string& field) { return NumberIn(field, decimal) || IsAnyDate(field); });
}

/// The first order in which most dates are days of the calendar.
DateOrder ProposedDates(const std::vector<TextRow>& rows, std::size_t columns) {
  constexpr std::array orders{DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear};
  std::array<int, orders.size()> fitting{};
  for (std::size_t c = 0; c < columns; ++c) {
    if (!Mostly(rows, c, IsAnyDate)) continue;
    for (std::size_t i = 0; i < orders.size(); ++i)
      fitting[i] +=
          CountOfKind(rows, c, [&](const std::string& field) { return DateIn(field, orders[i]).has_value(); }).fitting;
  }
  return orders[static_cast<std::size_t>(std::ranges::max_element(fitting) - fitting.begin())];
}

/// Whether a column may hold the days that a spreadsheet counts, of years from 1950 to 2099.
bool AreSerialDays(const std::vector<TextRow>& rows, std::size_t column, char decimal) {
  return Mostly(rows, column, [decimal](const std::string& field) {
    const std::optional<double> number = NumberIn(field, decimal);
    return number && *number > 18264 && *number < 73051;
  });
}

bool AreYears(const std::vector<TextRow>& rows, std::size_t column, char decimal) {
  return Mostly(rows, column, [decimal](const std::string& field) {
    const std::optional<double> number = NumberIn(field, decimal);
    return number && *number > 1500 && *number < 2500;
  });
}

/// A heading without what people put between words.
std::string Letters(std::string_view heading) {
  std::string letters;
  for (const char c : LowerCase(heading))
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '#') letters += c;
  return letters;
}

Role RoleOf(std::string_view heading) {
  static const std::map<std::string, Role, std::less<>> roles{{"year", Role::Year},
                                                              {"season", Role::Year},
                                                              {"jahr", Role::Year},
                                                              {"code", Role::Code},
                                                              {"id", Role::Code},
                                                              {"brood", Role::Code},
                                                              {"nest", Role::Code},
                                                              {"nestid", Role::Code},
                                                              {"broodid", Role::Code},
                                                              {"nestcode", Role::Code},
                                                              {"broodcode", Role::Code},
                                                              {"nestno", Role::Code},
                                                              {"nestnr", Role::Code},
                                                              {"clutch", Role::Code},
                                                              {"clutchid", Role::Code},
                                                              {"tag", Role::Code},
                                                              {"ring", Role::Code},
                                                              {"gelege", Role::Code},
                                                              {"brut", Role::Code},
                                                              {"dofy", Role::Day},
                                                              {"day", Role::Day},
                                                              {"doy", Role::Day},
                                                              {"dayofyear", Role::Day},
                                                              {"yday", Role::Day},
                                                              {"jday", Role::Day},
                                                              {"julian", Role::Day},
                                                              {"julianday", Role::Day},
                                                              {"date", Role::Date},
                                                              {"visit", Role::Date},
                                                              {"visitdate", Role::Date},
                                                              {"datum", Role::Date},
                                                              {"hatchday", Role::HatchDay},
                                                              {"hatch", Role::HatchDay},
                                                              {"hatchdate", Role::HatchDate},
                                                              {"hatchingdate", Role::HatchDate},
                                                              {"schlupfdatum", Role::HatchDate},
                                                              {"schlupf", Role::HatchDate},
                                                              {"broodage", Role::Age},
                                                              {"age", Role::Age},
                                                              {"alter", Role::Age},
                                                              {"#eorj", Role::Count},
                                                              {"eorj", Role::Count},
                                                              {"count", Role::Count},
                                                              {"number", Role::Count},
                                                              {"eggs", Role::Count},
                                                              {"young", Role::Count},
                                                              {"chicks", Role::Count},
                                                              {"juveniles", Role::Count},
                                                              {"nestlings", Role::Count},
                                                              {"anzahl", Role::Count},
                                                              {"firstfound", Role::FirstFound},
                                                              {"lastpresent", Role::LastPresent},
                                                              {"lastchecked", Role::LastChecked},
                                                              {"fate", Role::Fate},
                                                              {"freq", Role::Nests},
                                                              {"nests", Role::Nests}};
  const auto found = roles.find(Letters(heading));
  return found == roles.end() ? RoleByWords(heading) : found->second;
}

/// The role that a heading proposes, as far as what stands below it can be that.
Role ProposedRole(std::string_view heading, const std::vector<TextRow>& rows, std::size_t column, char decimal) {
  const bool dates = Mostly(rows, column, IsAnyDate) || AreSerialDays(rows, column, decimal);
  const bool numbers =
      Mostly(rows, column, [decimal](const std::string& field) { return NumberIn(field, decimal).has_value(); });
  const Role role = RoleOf(heading);
  if (heading.empty()) return Role::Unused;  // numbers of rows, for instance
  if (CountOfKind(rows, column, [](const std::string&) { return true; }).filled == 0) return role;
  if (role == Role::Day || role == Role::Date) return dates ? Role::Date : numbers ? Role::Day : Role::Unused;
  if (role == Role::HatchDay || role == Role::HatchDate)
    return dates ? Role::HatchDate : numbers ? Role::HatchDay : Role::Unused;
  if (role == Role::Year && !AreYears(rows, column, decimal)) return numbers ? Role::Covariate : Role::Unused;
  if (role == Role::Unused && numbers) return Role::Covariate;
  return role;
}

/// Whether a column counts one stage, and so does each that is a count already: visits have the sum.
bool AreCountsOfStages(const std::vector<std::string>& names, const std::vector<Role>& roles, std::size_t column) {
  const auto isStage = [&](std::size_t c) {
    const std::string letters = Letters(names[c]);
    return RoleOf(names[c]) == Role::Count && letters != "count" && letters != "number" && letters != "anzahl" &&
           letters.find('#') == std::string::npos && letters != "eorj";
  };
  for (std::size_t c = 0; c < column; ++c)
    if (roles[c] == Role::Count && !isStage(c)) return false;
  return isStage(column);
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

bool IsDate(Role role) { return role == Role::Date || role == Role::HatchDate; }

/// The heading of a text that begins with these rows.
Heading HeadingOf(const std::vector<TextRow>& rows, const ImportChoices& choices) {
  Heading heading;
  if (choices.heading && !rows.empty()) {
    const std::size_t titles = std::min(TitleRows(rows), rows.size() - 1);
    heading.rows = titles + 1;
    for (const std::string& field : rows[titles].fields) heading.names.push_back(OnOneLine(field));
  }
  const std::vector<TextRow> below(rows.begin() + static_cast<std::ptrdiff_t>(heading.rows), rows.end());
  const std::size_t named = heading.names.size(), usual = UsualFields(below);
  // R writes the names of rows in front, without a heading of their own.
  heading.rowsHaveNames = named > 0 && usual == named + 1 && choices.sheet.empty() &&
                          std::ranges::all_of(below, [&](const TextRow& row) { return row.fields.size() == usual; });
  if (heading.rowsHaveNames) heading.names.insert(heading.names.begin(), "");
  std::size_t columns = usual;
  if (!choices.sheet.empty())  // whose rows end with the last cell that holds something
    for (const TextRow& row : below) columns = std::max(columns, row.fields.size());
  heading.names.resize(std::max(heading.names.size(), columns));
  return heading;
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

ImportChoices ProposedChoices(std::string_view bytes) {
  ImportChoices choices;
  choices.encoding = ProposedEncoding(bytes);
  const std::string text = Decoded(bytes, choices.encoding);
  choices.delimiter = ProposedDelimiter(text);
  ProposeColumns(text, choices);
  return choices;
}

Heading HeadingOf(std::string_view text, const ImportChoices& choices) {
  const std::vector<TextRow> rows = RowsAtStart(text, choices.delimiter, RowsLookedAt);
  return HeadingOf(rows, choices);
}

DelimitedRows RowsBehindHeading(std::string_view text, const ImportChoices& choices) {
  DelimitedRows rows(text, choices.delimiter);
  TextRow row;
  for (std::size_t i = HeadingOf(text, choices).rows; i > 0; --i) rows.Next(row);
  return rows;
}

void ProposeColumns(std::string_view text, ImportChoices& choices) {
  std::vector<TextRow> rows = RowsAtStart(text, choices.delimiter, RowsLookedAt);
  choices.decimal = ProposedDecimal(rows);
  choices.heading = ProposedHeading(rows, choices.decimal);
  const Heading heading = HeadingOf(rows, choices);
  rows.erase(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(heading.rows));
  choices.roles.assign(heading.names.size(), Role::Unused);
  choices.dates = ProposedDates(rows, heading.names.size());
  if (!choices.heading) return;
  bool serialDays = false;
  for (std::size_t c = 0; c < heading.names.size(); ++c) {
    const Role role = ProposedRole(heading.names[c], rows, c, choices.decimal);
    if (!choices.Has(role) || role == Role::Covariate || AreCountsOfStages(heading.names, choices.roles, c))
      choices.roles[c] = role;
    serialDays = serialDays || (IsDate(role) && AreSerialDays(rows, c, choices.decimal));
  }
  if (serialDays) choices.dates = DateOrder::SerialDays;
}

ImportChoices ForText(ImportChoices kept, std::string_view text) {
  ImportChoices present = kept;
  ProposeColumns(text, present);
  std::vector<Role> roles(present.roles.size(), Role::Unused);
  present.heading = kept.heading;
  const std::vector<std::string> names = ColumnNames(text, present);
  std::vector<std::string> unmatched = kept.names;  // columns of the same name are matched in their order
  for (std::size_t c = 0; c < roles.size(); ++c) {
    const int place = kept.heading ? PlaceOf(unmatched, names[c]) : static_cast<int>(c);
    if (kept.heading && place >= 0) unmatched[static_cast<std::size_t>(place)].assign(1, '\n');  // which no name holds
    if (place >= 0 && place < static_cast<int>(kept.roles.size()))
      roles[c] = kept.roles[static_cast<std::size_t>(place)];
  }
  kept.roles = std::move(roles);
  return kept;
}

std::vector<std::string> ColumnNames(std::string_view text, const ImportChoices& choices) {
  std::vector<std::string> names = HeadingOf(text, choices).names;
  names.resize(std::max(names.size(), choices.roles.size()));
  for (std::size_t c = 0; c < names.size(); ++c)
    if (names[c].empty()) names[c] = fmt::format("Column {}", c + 1);
  return names;
}

std::vector<std::string> ColumnsLacking(const ImportChoices& kept, std::string_view text) {
  std::vector<std::string> lacking;
  if (!kept.heading) return lacking;
  const std::vector<std::string> names = ColumnNames(text, kept);
  for (std::size_t c = 0; c < kept.names.size(); ++c)
    if (kept.roles[c] != Role::Unused && PlaceOf(names, kept.names[c]) < 0) lacking.push_back(kept.names[c]);
  return lacking;
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
