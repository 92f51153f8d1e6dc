#include "import/column_proposal.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "base/runtime_failure.h"
#include "import/fate_words.h"
#include "import/heading.h"
#include "import/heading_words.h"
#include "import/stage_words.h"

namespace merlane {
namespace {

/// What stands in a column below its heading, as far as it was looked at.
class ColumnValues {
 public:
  ColumnValues(const std::vector<TextRow>& rows, std::size_t column, char decimal) : decimal_(decimal) {
    for (const TextRow& row : rows)
      if (column < row.fields.size() && !IsMissing(row.fields[column])) filled_.push_back(row.fields[column]);
    someAreMissing_ = filled_.size() < rows.size();
  }

  bool Empty() const { return filled_.empty(); }
  bool SomeAreMissing() const { return someAreMissing_; }

  /// Whether half of the fields that hold something, or more, are of a kind. What is not will be told when the file is
  /// imported.
  template <class IsOfKind>
  bool Mostly(IsOfKind isOfKind) const {
    const auto fitting = std::ranges::count_if(filled_, isOfKind);
    return fitting > 0 && 2 * static_cast<std::size_t>(fitting) >= filled_.size();
  }

  bool AreNumbers() const { return AreNumbers(-1e300, 1e300); }

  bool AreNumbers(double least, double most) const {
    return Mostly([&](const std::string& field) {
      const std::optional<double> number = NumberIn(field, decimal_);
      return number && *number >= least && *number <= most;
    });
  }

  bool AreDaysOfMonth() const { return AreNumbers(0, 31); }
  bool AreMonths() const {
    return Mostly([](const std::string& field) { return MonthIn(field) || !MonthOfSeveralNames(field).empty(); });
  }
  bool AreStages() const {
    return Mostly([](const std::string& field) { return StageIn(field) != Stage::Untold; });
  }
  /// Whether such words, eggs among them, stand there, and not only what became of a brood.
  bool AreStagesFromEggs() const {
    return AreStages() &&
           std::ranges::any_of(filled_, [](const std::string& field) { return StageIn(field) == Stage::Eggs; });
  }
  /// Whether the words of eggs and of young, both, are all that stands there, by which a column is known without its
  /// heading.
  bool AreBothStages() const {
    const auto isOf = [](Stage stage) { return [stage](const std::string& field) { return StageIn(field) == stage; }; };
    return std::ranges::any_of(filled_, isOf(Stage::Eggs)) && std::ranges::any_of(filled_, isOf(Stage::Young)) &&
           std::ranges::none_of(filled_, isOf(Stage::Untold));
  }

  /// The days that a spreadsheet counts, of years from 1950 to 2099.
  bool AreSerialDays() const {
    return AreNumbers(18265, 73050) &&
           Mostly([](const std::string& field) { return DateIn(field, DateOrder::SerialDays).has_value(); });
  }
  /// The days that R counts, of years from 1990 to 2039: those of a spreadsheet would be before 1970.
  bool AreDaysSince1970() const { return AreNumbers(7305, 25567); }
  bool AreDates() const { return Mostly(IsAnyDate) || AreSerialDays() || AreDaysSince1970(); }
  bool AreYears() const {
    return AreNumbers(1501, 2499) || Mostly([](const std::string& f) { return SeasonIn(f).has_value(); });
  }
  bool AreAges() const {
    return AreNumbers() || Mostly([](const std::string& field) { return field == "?" || field == "-?"; });
  }

  /// How well the values tell broods apart that are visited more than once: 0 when all are the same or none is.
  int RepeatsOfCodes() const {
    const std::set<std::string> different(filled_.begin(), filled_.end());
    return different.size() > 1 && different.size() < filled_.size() ? 1 : 0;
  }

  static bool IsAnyDate(const std::string& field) {
    return DateIn(field, DateOrder::YearMonthDay) || DateIn(field, DateOrder::DayMonthYear) ||
           DateIn(field, DateOrder::MonthDayYear) || DateIn(field, DateOrder::ShortYearMonthDay) ||
           IsOfUnclearMonth(field);
  }

 private:
  /// Whether a text would be a date if its month had one meaning: the import tells which it has.
  static bool IsOfUnclearMonth(const std::string& field) {
    const bool beginsAsDay = !field.empty() && field.front() >= '0' && field.front() <= '9';
    return beginsAsDay && !MonthOfSeveralNames(field).empty();
  }

  const char decimal_;
  std::vector<std::string> filled_;
  bool someAreMissing_ = false;
};

bool IsDecimalComma(const std::string& field) {
  return field.find(',') != std::string::npos && NumberIn(field, ',').has_value();
}

/// The mark that more numbers have; where as many have each, a comma, which codes and times have never, unless commas
/// stand between the fields. There a lone number such as 1,250 is more likely one of thousands.
char ProposedDecimal(const std::vector<TextRow>& rows, Delimiter delimiter) {
  int commas = 0, points = 0, thousands = 0;
  for (const TextRow& row : rows)
    for (const std::string& field : row.fields) {
      if (field.find('.') != std::string::npos && NumberIn(field, '.')) ++points;
      if (!IsDecimalComma(field)) continue;
      ++commas;
      if (IsLikeThousands(field)) ++thousands;
    }
  if (delimiter == Delimiter::Comma && commas == 1 && thousands == 1) return '.';
  return commas > points || (commas == points && commas > 0 && delimiter != Delimiter::Comma) ? ',' : '.';
}

/// A first row of words alone is a heading.
bool ProposedHeading(const std::vector<TextRow>& rows, char decimal) {
  const std::size_t first = TitleRows(rows);
  if (first == rows.size()) return false;
  return std::ranges::none_of(rows[first].fields, [decimal](const std::string& field) {
    return NumberIn(field, decimal) || ColumnValues::IsAnyDate(field);
  });
}

/// What a column can be when its heading has that meaning; none when what stands below is something else.
std::optional<Role> Fitting(const Meaning& meaning, const ColumnValues& values) {
  constexpr int LastOfAMonth = 31, FirstDay = -366, LastDay = 732;
  const auto when = [&](bool fits) { return fits ? std::optional(meaning.role) : std::nullopt; };
  if (values.Empty()) return meaning.role;
  if (meaning.speaks == Speaks::OfPlace && values.AreNumbers()) return Role::Covariate;  // its size, for instance
  switch (meaning.role) {
    case Role::Year:
      return when(values.AreYears());
    case Role::Code:
      // 2019145 is a code as well: nest 145 of that year.
      return when(!values.Mostly(
          [](const std::string& field) { return ColumnValues::IsAnyDate(field) && !OrdinalDateIn(field); }));
    case Role::Day:
    case Role::Date:
      if (values.AreDates()) return Role::Date;
      if (meaning.role == Role::Date && meaning.speaks == Speaks::Broadly) return std::nullopt;  // numbers of visits
      return values.AreNumbers(FirstDay, LastDay) ? std::optional(Role::Day) : std::nullopt;
    case Role::HatchDate:
      if (values.AreDates()) return Role::HatchDate;
      // "Hatched" may be whether, or how many.
      return values.AreNumbers(meaning.speaks == Speaks::Surely ? FirstDay : LastOfAMonth + 1, LastDay)
                 ? std::optional(Role::HatchDay)
                 : std::nullopt;
    case Role::FirstFound:
    case Role::LastPresent:
    case Role::LastChecked:
      return when(values.AreDates() || values.AreNumbers());
    case Role::Age:
      return when(values.AreAges());
    case Role::Count:
    case Role::Nests:
      return when(values.AreNumbers());
    case Role::Month:
    case Role::HatchMonth:
      return when(values.AreMonths());
    case Role::Fate:
      return when(meaning.speaks == Speaks::Surely ||
                  values.Mostly([](const std::string& field) { return FateIn(field) != Fate::Untold; }));
    case Role::Survived:
      return when(values.AreNumbers(0, 1) ||
                  values.Mostly([](const std::string& field) { return AnswerIn(field).has_value(); }));
    case Role::CodePart:
      return when(!values.SomeAreMissing());
    case Role::Covariate:
      return when(values.AreNumbers());
    case Role::Stage:
      return values.AreNumbers() ? std::optional(Role::Covariate) : when(values.AreStages());
    default:
      return meaning.role;
  }
}

/// What a column could be, the likeliest first, and how surely.
struct Candidate {
  Role role = Role::Unused;
  Speaks speaks = Speaks::Broadly;
};

std::vector<Candidate> CandidatesOf(const std::string& heading, const ColumnValues& values) {
  std::vector<Candidate> candidates;
  const std::vector<Meaning> meanings = MeaningsOf(heading);
  for (const Meaning& meaning : meanings)
    if (const std::optional<Role> role = Fitting(meaning, values)) candidates.push_back({*role, meaning.speaks});
  const auto tellsFate = [](const Meaning& meaning) { return meaning.role == Role::Fate; };
  if (std::ranges::any_of(meanings, tellsFate) && values.AreStagesFromEggs()) candidates.push_back({Role::Stage});
  // A column without a heading holds numbers of rows, for instance.
  if (meanings.empty() && !heading.empty() && !IsOfNumberedVisit(heading) && values.AreNumbers())
    candidates.push_back({Role::Covariate});
  if (candidates.empty() && !heading.empty() && values.AreBothStages()) candidates.push_back({Role::Stage});
  candidates.push_back({Role::Unused});
  return candidates;
}

/// The roles of columns, of which each that one column alone can have goes to the surest.
class RoleAssignment {
 public:
  RoleAssignment(const std::vector<std::string>& names, const std::vector<ColumnValues>& values)
      : names_(names), values_(values) {
    for (std::size_t c = 0; c < names.size(); ++c) candidates_.push_back(CandidatesOf(names[c], values[c]));
    LeaveOutNests();
  }

  std::vector<Role> Roles() {
    while (SettleOne()) continue;
    std::vector<Role> roles;
    for (const std::vector<Candidate>& each : candidates_) roles.push_back(each.front().role);
    if (std::ranges::count(roles, Role::Code) == 0 && std::ranges::count(roles, Role::CodePart) == 1)
      std::ranges::replace(roles, Role::CodePart, Role::Code);  // which tells attempts apart by itself
    return roles;
  }

 private:
  /// Headings such as "Found" and "Outcome" are those of nests of one row each only where all are there that these
  /// need, and no day of a visit.
  void LeaveOutNests() {
    const auto isOfNests = [](const Candidate& candidate) {
      return (candidate.role >= Role::FirstFound && candidate.role <= Role::Nests) || candidate.role == Role::Survived;
    };
    const auto any = [&](auto is) {
      return std::ranges::any_of(candidates_, [&](const auto& each) { return std::ranges::any_of(each, is); });
    };
    const auto has = [&](Role role) { return any([role](const Candidate& c) { return c.role == role; }); };
    const bool surely =
        any([](const Candidate& c) { return c.role == Role::FirstFound && c.speaks == Speaks::Surely; });
    const bool ofVisits = std::ranges::any_of(candidates_, [](const auto& each) {
      return each.front().role == Role::Date || each.front().role == Role::Day;
    });
    const bool complete = has(Role::FirstFound) && has(Role::LastPresent) && has(Role::LastChecked) &&
                          (has(Role::Fate) || has(Role::Survived));
    if (has(Role::Fate)) LeaveOut([](const Candidate& c) { return c.role == Role::Survived; });
    if (!surely && (!complete || ofVisits)) LeaveOut(isOfNests);
  }

  template <class Is>
  void LeaveOut(Is is) {
    for (std::vector<Candidate>& each : candidates_)
      each.erase(std::remove_if(each.begin(), each.end(), is), each.end());
  }

  /// Takes a role from a column that shares it with another; false when there is none.
  bool SettleOne() {
    for (std::size_t a = 0; a < candidates_.size(); ++a)
      for (std::size_t b = a + 1; b < candidates_.size(); ++b) {
        if (candidates_[a].front().role != candidates_[b].front().role || MayBoth(a, b)) continue;
        std::vector<Candidate>& loser = candidates_[IsSurer(b, a) ? a : b];
        loser.erase(loser.begin());
        return true;
      }
    return false;
  }

  bool MayBoth(std::size_t a, std::size_t b) const {
    const Candidate& first = candidates_[a].front();
    if (first.role != Role::Count) return MayBeMany(first.role);
    // Eggs and young are added; eggs of two visits, or of two nests side by side, are not.
    return OfStage(first) && OfStage(candidates_[b].front()) && HeadingLetters(names_[a]) != HeadingLetters(names_[b]);
  }

  static bool OfStage(const Candidate& candidate) {
    return candidate.speaks == Speaks::OfEggs || candidate.speaks == Speaks::OfYoung;
  }

  bool IsSurer(std::size_t b, std::size_t a) const {
    const Candidate &first = candidates_[a].front(), &second = candidates_[b].front();
    if (first.role == Role::Code && !OfNests() && values_[a].RepeatsOfCodes() != values_[b].RepeatsOfCodes())
      return values_[b].RepeatsOfCodes() > values_[a].RepeatsOfCodes();
    return second.speaks < first.speaks;
  }

  bool OfNests() const {
    return std::ranges::any_of(candidates_, [](const auto& each) { return each.front().role == Role::FirstFound; });
  }

  const std::vector<std::string>& names_;
  const std::vector<ColumnValues>& values_;
  std::vector<std::vector<Candidate>> candidates_;
};

bool HoldsDates(Role role) {
  return role == Role::Date || role == Role::HatchDate || role == Role::FirstFound || role == Role::LastPresent ||
         role == Role::LastChecked;
}

/// Takes the role of a month from columns where the days beside them are none of a month.
void LeaveOutMonths(const std::vector<ColumnValues>& values, std::vector<Role>& roles) {
  const auto column = [&](Role role) {
    return static_cast<std::size_t>(std::ranges::find(roles, role) - roles.begin());
  };
  for (const auto& [month, day] : {std::pair(Role::Month, Role::Day), std::pair(Role::HatchMonth, Role::HatchDay)}) {
    const std::size_t days = column(day);
    if (days == roles.size() || !values[days].AreDaysOfMonth()) std::ranges::replace(roles, month, Role::Unused);
  }
}

constexpr std::array Orders{DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear,
                            DateOrder::ShortYearMonthDay};

/// How many dates are days of the calendar in each order.
struct FittingDates {
  std::array<int, Orders.size()> of{};

  void Count(const TextRow& row, const std::vector<bool>& columns) {
    for (std::size_t c = 0; c < std::min(row.fields.size(), columns.size()); ++c)
      for (std::size_t i = 0; columns[c] && i < Orders.size(); ++i)
        if (Fits(row.fields[c], Orders[i])) ++of[i];
    for (std::size_t c = 0; c < std::min(row.fields.size(), columns.size()); ++c)
      if (const auto ends = columns[c] ? EndsOfShortDate(row.fields[c]) : std::nullopt) {
        hasSlashes_ = hasSlashes_ || row.fields[c].find('/') != std::string::npos;
        firstNumbers_.insert(ends->first);
        lastNumbers_.insert(ends->second);
      }
  }
  /// The first order in which most are. Of a short date, the year is what varies less than the day, and stands in front
  /// where most dates can be read so; between slashes, where they cannot be read in another order.
  DateOrder Best() const {
    const int otherwise = std::max(of[1], of[2]);
    const bool mayBeShort = hasSlashes_ ? of[3] > otherwise : of[3] > 0 && of[3] >= otherwise;
    if (of[0] == 0 && mayBeShort && firstNumbers_.size() < lastNumbers_.size()) return DateOrder::ShortYearMonthDay;
    return Orders[static_cast<std::size_t>(std::max_element(of.begin(), of.begin() + 3) - of.begin())];
  }
  bool IsUnclear() const { return of[1] > 0 && of[1] == of[2]; }

 private:
  std::set<int> firstNumbers_, lastNumbers_;  // of dates whose year has two digits
  bool hasSlashes_ = false;                   // those dates

  /// A month stands before points only where nothing else is possible.
  static bool Fits(const std::string& field, DateOrder order) {
    const bool hasPoints = field.find('.') != std::string::npos;
    return DateIn(field, order) &&
           !(order == DateOrder::MonthDayYear && hasPoints && DateIn(field, DateOrder::DayMonthYear));
  }
};

/// The order of dates by the first rows or, where days and months can be exchanged in all of them, by all rows.
DateOrder ProposedDates(std::string_view text, const std::vector<TextRow>& firstRows, const ImportChoices& choices) {
  std::vector<bool> columns;
  const bool known = std::ranges::any_of(choices.roles, HoldsDates);
  for (const Role role : choices.roles) columns.push_back(!known || HoldsDates(role));
  FittingDates fitting;
  for (const TextRow& row : firstRows) fitting.Count(row, columns);
  if (!fitting.IsUnclear()) return fitting.Best();
  FittingDates ofAll;
  try {
    DelimitedRows rows = RowsBehindHeading(text, choices);
    for (TextRow row; rows.Next(row);) ofAll.Count(row, columns);
  } catch (const RuntimeFailure&) {  // of a quote that is never closed, which the import tells
  }
  return ofAll.Best();
}

}  // namespace

ImportChoices ProposedChoices(std::string_view bytes) {
  ImportChoices choices;
  choices.encoding = ProposedEncoding(bytes);
  const std::string text = Decoded(bytes, choices.encoding);
  choices.delimiter = ProposedDelimiter(text);
  ProposeColumns(text, choices);
  return choices;
}

void ProposeColumns(std::string_view text, ImportChoices& choices) {
  std::vector<TextRow> rows = RowsAtStart(text, choices.delimiter, RowsLookedAt);
  choices.decimal = ProposedDecimal(rows, choices.delimiter);
  choices.heading = ProposedHeading(rows, choices.decimal);
  const Heading heading = HeadingOf(rows, choices);
  rows.erase(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(heading.rows));
  std::vector<ColumnValues> values;
  for (std::size_t c = 0; c < heading.names.size(); ++c) values.emplace_back(rows, c, choices.decimal);
  choices.roles.assign(heading.names.size(), Role::Unused);
  if (choices.heading) choices.roles = RoleAssignment(heading.names, values).Roles();
  LeaveOutMonths(values, choices.roles);
  choices.dates = ProposedDates(text, rows, choices);
  for (std::size_t c = 0; c < values.size(); ++c)
    if (HoldsDates(choices.roles[c]) && values[c].AreDaysSince1970())
      choices.dates = DateOrder::DaysSince1970;
    else if (HoldsDates(choices.roles[c]) && values[c].AreSerialDays())
      choices.dates = DateOrder::SerialDays;
}

}  // namespace merlane
