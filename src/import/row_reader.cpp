#include "import/row_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/brood_data.h"
#include "data/most_visits.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

constexpr int MostOfInt16 = 32767;

/// Days from hatch; an older one is mostly of another column, or a day of another year.
constexpr int LongestAge = 120;

/// The columns that an import cannot do without, and those that can only be one.
void RequireColumns(const ImportChoices& choices, const ColumnsByRole& columns) {
  const auto require = [&](Role role, Role other) {
    if (!choices.Has(role) && !choices.Has(other))
      throw RuntimeFailure(fmt::format("no column is the {}", NameOf(role)));
  };
  if (choices.OfNests()) {
    for (const Role role : {Role::LastPresent, Role::LastChecked, Role::Fate}) require(role, role);
  } else {
    require(Role::Code, Role::Code);
    require(Role::Day, Role::Date);
    require(Role::Count, Role::Count);
  }
  for (const Role role : choices.roles)
    if (!MayBeMany(role) && columns.Of(role).size() > 1)
      throw RuntimeFailure(
          fmt::format("{} columns are the {}: only one can be", columns.Of(role).size(), NameOf(role)));
  if (columns.Of(Role::Covariate).size() > record::MostCovariates)
    throw RuntimeFailure(fmt::format("{} columns are covariates: a data file has room for {}",
                                     columns.Of(Role::Covariate).size(), record::MostCovariates));
}

}  // namespace

RowReader::RowReader(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingColumns,
                     Remarks& remarks)
    : choices_(choices), columns_(choices.roles), names_(names), headingColumns_(headingColumns), remarks_(remarks) {
  RequireColumns(choices, columns_);
  RemarkUnusedColumns();
}

void RowReader::Take(const TextRow& row) {
  TestWidth(row);
  const RowFields fields(choices_, columns_, row, dates_);
  if (choices_.OfNests())
    TakeNest(fields, row.line);
  else
    TakeVisit(fields, row.line);
}

void RowReader::RemarkWhole() {
  RemarkYear();
  if (dates_.unclear > 0 && !dates_.clear)
    remarks_.Say(fmt::format("{} dates such as \"{}\" were taken as {}: no date tells whether that is their order",
                             dates_.unclear, dates_.example,
                             DateOrderNames()[static_cast<std::size_t>(choices_.dates)]));
  const std::vector<std::size_t>& counts = columns_.Of(Role::Count);
  if (counts.size() > 1) {
    std::string sum = names_[counts.front()];
    for (std::size_t i = 1; i < counts.size(); ++i) sum += " + " + names_[counts[i]];
    remarks_.Say(fmt::format("the number of a visit is {}", sum));
  }
}

void RowReader::TestWidth(const TextRow& row) {
  std::size_t fields = row.fields.size();
  while (fields > headingColumns_ && row.fields[fields - 1].empty()) --fields;
  const bool ofSheet = !choices_.sheet.empty();
  if (fields > headingColumns_ && ofSheet) remarks_.Count(row.line, "what stands right of all columns was passed over");
  if (fields > headingColumns_ && !ofSheet)
    throw LeftOut{fmt::format("it has {} fields, and there are {} columns", fields, headingColumns_)};
  if (fields < headingColumns_ && !ofSheet)
    remarks_.Count(row.line, "fewer fields than columns; what is not there is missing");
}

void RowReader::RemarkYear() {
  if (choices_.Has(Role::Year) || visits.empty() || choices_.Has(Role::Date)) return;
  if (std::ranges::all_of(visits, [this](const VisitRecord& visit) { return visit.year == choices_.year; }))
    remarks_.Say(fmt::format("no column tells the year: {} was taken", choices_.year));
}

void RowReader::RemarkUnusedColumns() {
  std::string unused;
  for (const std::size_t c : columns_.Of(Role::Unused))
    if (!choices_.heading || names_[c] != fmt::format("Column {}", c + 1))  // which the heading leaves without a name
      unused += fmt::format("{}\"{}\"", unused.empty() ? "" : ", ", names_[c]);
  if (!unused.empty()) remarks_.Say("not used: " + unused);
  const auto isMonth = [](const std::string& name) { return LowerCase(Trim(name)) == "month"; };
  if (choices_.Has(Role::Day) && std::ranges::any_of(names_, isMonth))
    remarks_.Say("there is a column \"month\": days are taken as days of the year, not of a month");
  if (!choices_.OfNests()) return;
  for (const Role role : {Role::Day, Role::Date})
    for (const std::size_t c : columns_.Of(role))
      remarks_.Say(fmt::format("\"{}\" is the {}: nests of one row each have no use for it", names_[c], NameOf(role)));
}

void RowReader::TakeVisit(const RowFields& fields, int line) {
  VisitRecord visit;
  visit.line = line;
  visit.code = OnOneLine(fields.Text(Role::Code));
  if (visit.code.empty()) throw LeftOut{"it has no code"};
  SetDays(fields, visit);
  visit.count = CountOf(fields, line);
  visit.covariates = Covariates(fields, line);
  visits.push_back(std::move(visit));
}

std::optional<int> RowReader::YearOf(const RowFields& fields) const {
  if (!choices_.Has(Role::Year)) return choices_.year;
  return fields.Whole(Role::Year, -MostOfInt16, MostOfInt16);
}

void RowReader::SetDays(const RowFields& fields, VisitRecord& visit) {
  const std::optional<int> told = YearOf(fields);
  const std::optional<DayOfYear> date = fields.Date(Role::Date);
  if (!told && !date) throw LeftOut{"it has no year"};
  // Behind a New Year the days of a season are counted on where a column tells its year.
  visit.year = date && (!told || !choices_.Has(Role::Year)) ? date->year : *told;
  const std::optional<DayOfYear> day = date ? date : fields.DayNumber(Role::Day, visit.year);
  if (!day) throw LeftOut{"it has no day"};
  visit.day = CountedOn(visit, *day, NameOf(Role::Date));
  const std::optional<DayOfYear> hatch = HatchOf(fields, visit.year);
  if (hatch) visit.hatchDay = CountedOn(visit, *hatch, NameOf(Role::HatchDate));
  visit.age = AgeOf(fields, visit, hatch.has_value());
}

int RowReader::CountedOn(const VisitRecord& visit, DayOfYear date, const std::string& what) {
  if (date.year == visit.year) return date.day;
  if (std::abs(date.year - visit.year) > 1)
    throw LeftOut{fmt::format("its {} is of {}, its year {}", what, date.year, visit.year)};
  remarks_.Count(visit.line,
                 fmt::format("the {} is of another year than the column tells, and counted on from there", what));
  return DayCountedFrom(visit.year, date);
}

std::optional<DayOfYear> RowReader::HatchOf(const RowFields& fields, int year) {
  const std::optional<DayOfYear> date = fields.Date(Role::HatchDate);
  const std::optional<DayOfYear> day = date ? date : fields.DayNumber(Role::HatchDay, year);
  return day && day->day == 0 ? std::nullopt : day;
}

std::string RowReader::AgeText(double age, int line) {
  if (std::abs(age) > LongestAge)
    remarks_.Count(line, fmt::format("the age is more than {} days from hatch", LongestAge));
  const FieldNumber written = InWidth(age, record::Width);
  if (written.rounded) remarks_.Count(line, "the age has more digits than there is room for");
  return written.text;
}

std::string RowReader::AgeOf(const RowFields& fields, const VisitRecord& visit, bool hatchKnown) {
  const std::string& text = fields.Text(Role::Age);
  if (text == "?" || text == "-?") return text;
  const std::optional<double> age = text.empty() ? std::nullopt : fields.Number(Role::Age, columns_.Of(Role::Age)[0]);
  const int sinceHatch = visit.day - visit.hatchDay;
  if (age && *age != Missing) {
    if (std::abs(*age) >= MostOfInt16) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(Role::Age))};
    if (hatchKnown && std::abs(*age - sinceHatch) >= 1)
      remarks_.Count(visit.line, "the age is not the one that follows from the hatch day; as it stands it was taken");
    return AgeText(*age, visit.line);
  }
  if (hatchKnown) return AgeText(sinceHatch, visit.line);
  if (choices_.unknownAge == UnknownAge::LeftOut) throw LeftOut{"its age is not known"};
  ++unknownAges;
  return choices_.unknownAge == UnknownAge::OfEggs ? "-?" : "?";
}

int RowReader::CountOf(const RowFields& fields, int line) const {
  std::optional<int> sum;
  bool isMissing = false;
  for (const std::size_t column : columns_.Of(Role::Count)) {
    const std::optional<int> count = fields.Whole(Role::Count, column, 0, MostOfInt16 - 1);
    if (count) sum = sum.value_or(0) + *count;
    isMissing = isMissing || (!count && !fields.At(column).empty());
  }
  if (isMissing && sum == 0)
    remarks_.Count(line, "0 in one of the numbers, and another is missing: 0 was taken for both");
  if (!sum) throw LeftOut{fmt::format("it has no {}", NameOf(Role::Count))};
  if (*sum >= MostOfInt16) throw LeftOut{fmt::format("its {} is {}", NameOf(Role::Count), *sum)};
  return *sum;
}

std::string RowReader::Covariates(const RowFields& fields, int line) {
  std::string written;
  for (const std::size_t column : columns_.Of(Role::Covariate)) {
    const std::optional<double> number = fields.Number(Role::Covariate, column);
    if (!number)
      remarks_.Count(line,
                     fmt::format("\"{}\" has no value: an analysis with it passes over such a visit", names_[column]));
    const FieldNumber field = number ? InWidth(*number, record::CovariateWidth) : FieldNumber();
    if (field.rounded)
      remarks_.Count(line,
                     fmt::format("\"{}\" has more digits than there is room for, and was rounded", names_[column]));
    written += "," + FlushRight(field.text, record::CovariateWidth);
  }
  return written;
}

void RowReader::TakeNest(const RowFields& fields, int line) {
  VisitRecord visit;
  visit.line = line;
  const Nest nest = NestOf(fields, visit);
  const std::optional<int> nests =
      choices_.Has(Role::Nests) ? fields.Whole(Role::Nests, 0, MostOfInt16 - 1) : std::optional<int>(1);
  if (!nests) throw LeftOut{fmt::format("it has no {}", NameOf(Role::Nests))};
  if (*nests == 0) throw LeftOut{"it stands for no nest"};
  visit.covariates = Covariates(fields, line);
  const std::string code = OnOneLine(fields.Text(Role::Code));
  for (int n = 1; n <= *nests; ++n) {
    visit.code = code.empty() ? fmt::format("L{}", line) : code;
    if (*nests > 1) visit.code += fmt::format("-{}", n);
    MakeUnique(visit);
    AddNest(visit, nest);
  }
}

RowReader::Nest RowReader::NestOf(const RowFields& fields, VisitRecord& visit) {
  const std::optional<int> told = YearOf(fields);
  const auto day = [&](Role role) {
    const std::optional<DayOfYear> date = fields.DateOrNumber(role, told.value_or(choices_.year));
    if (!date) throw LeftOut{fmt::format("it has no day for {}", NameOf(role))};
    return *date;
  };
  const DayOfYear found = day(Role::FirstFound);
  if (!told && !IsDate(fields.Text(Role::FirstFound))) throw LeftOut{"it has no year"};
  visit.year = choices_.Has(Role::Year) && told ? *told : found.year;
  Nest nest;
  nest.first = visit.day = CountedOn(visit, found, NameOf(Role::FirstFound));
  nest.last = CountedOn(visit, day(Role::LastPresent), NameOf(Role::LastPresent));
  const int checked = CountedOn(visit, day(Role::LastChecked), NameOf(Role::LastChecked));
  const std::optional<bool> failed = fields.Failed();
  if (!failed) throw LeftOut{"it has no fate"};
  if (nest.last < nest.first) throw LeftOut{"it was last present before it was found"};
  if (*failed && checked <= nest.last) throw LeftOut{"it failed, and was not checked behind the day when last present"};
  if (!*failed && checked != nest.last)
    remarks_.Count(visit.line,
                   "the nest did not fail, and was checked on another day than when last present; that one counts");
  nest.end = *failed ? checked : nest.last;
  if (choices_.Has(Role::Count)) nest.eggs = CountOf(fields, visit.line);
  if (nest.eggs < 1) throw LeftOut{"it has no eggs"};
  nest.age = AgeOfNest(fields, visit);
  return nest;
}

std::optional<double> RowReader::AgeOfNest(const RowFields& fields, VisitRecord& visit) {
  const std::optional<DayOfYear> hatch = HatchOf(fields, visit.year);
  if (hatch) visit.hatchDay = CountedOn(visit, *hatch, NameOf(Role::HatchDate));
  const std::string& text = fields.Text(Role::Age);
  const bool isUnknown = text.empty() || text == "?" || text == "-?";
  const std::optional<double> age = isUnknown ? std::nullopt : fields.Number(Role::Age, columns_.Of(Role::Age)[0]);
  if (!age || *age == Missing) return hatch ? std::optional<double>(visit.day - visit.hatchDay) : std::nullopt;
  if (std::abs(*age) > MostOfInt16 / 2) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(Role::Age))};
  return age;
}

void RowReader::MakeUnique(VisitRecord& visit) {
  const std::string code = visit.code;
  while (!nests_.emplace(visit.year, visit.code).second)
    visit.code = fmt::format("{}-{}", code, ++again_.try_emplace({visit.year, code}, 1).first->second);
  if (visit.code != code)
    remarks_.Note(visit.line, fmt::format("there is a nest \"{}\" in {} already; this one is written as \"{}\"", code,
                                          visit.year, visit.code));
}

void RowReader::AddNest(VisitRecord visit, const Nest& nest) {
  if (visits.size() > static_cast<std::size_t>(MostVisits))
    throw RuntimeFailure("the file stands for more visits than there is room for");
  for (const int day : std::set<int>{nest.first, nest.last, nest.end}) {
    visit.day = day;
    visit.age = nest.age ? AgeText(*nest.age + (day - nest.first), visit.line) : "-?";
    visit.count = day > nest.last ? 0 : nest.eggs;
    visits.push_back(visit);
  }
}

}  // namespace merlane
