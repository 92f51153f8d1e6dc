#include "import/import_visits.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <set>
#include <tuple>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/brood_data.h"
#include "data/most_visits.h"
#include "data/record_layout.h"
#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/visit_record.h"

namespace merlane {
namespace {

constexpr int MostOfInt16 = 32767;

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

/// Makes visits of rows.
class RowReader {
 public:
  RowReader(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingColumns,
            Remarks& remarks)
      : choices_(choices), columns_(choices.roles), names_(names), headingColumns_(headingColumns), remarks_(remarks) {
    RequireColumns(choices, columns_);
    if (choices.OfNests()) RemarkUnusedColumns();
  }

  std::vector<VisitRecord> visits;
  int unknownAges = 0;

  /// LeftOut when the row gives no visit.
  void Take(const TextRow& row) {
    TestWidth(row);
    const RowFields fields(choices_, columns_, row, dates_);
    if (choices_.OfNests())
      TakeNest(fields, row.line);
    else
      TakeVisit(fields, row.line);
  }

  /// What can be said when all rows have been read.
  void RemarkWhole() {
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

 private:
  /// A field too many shifts all behind it. Spreadsheets leave away empty fields at the end.
  void TestWidth(const TextRow& row) {
    std::size_t fields = row.fields.size();
    while (fields > headingColumns_ && row.fields[fields - 1].empty()) --fields;
    const bool ofSheet = !choices_.sheet.empty();
    if (fields > headingColumns_ && ofSheet)
      remarks_.Count(row.line, "what stands right of all columns was passed over");
    if (fields > headingColumns_ && !ofSheet)
      throw LeftOut{fmt::format("it has {} fields, and there are {} columns", fields, headingColumns_)};
    if (fields < headingColumns_ && !ofSheet)
      remarks_.Count(row.line, "fewer fields than columns; what is not there is missing");
  }

  void RemarkUnusedColumns() {
    for (const Role role : {Role::Day, Role::Date})
      for (const std::size_t c : columns_.Of(role))
        remarks_.Say(
            fmt::format("\"{}\" is the {}: nests of one row each have no use for it", names_[c], NameOf(role)));
  }

  void TakeVisit(const RowFields& fields, int line) {
    VisitRecord visit;
    visit.line = line;
    visit.code = OnOneLine(fields.Text(Role::Code));
    if (visit.code.empty()) throw LeftOut{"it has no code"};
    SetDays(fields, visit);
    visit.count = CountOf(fields);
    visit.covariates = Covariates(fields, line);
    visits.push_back(std::move(visit));
  }

  /// The year that a column tells, or the one for all rows where there is no such column; none where it is missing.
  std::optional<int> YearOf(const RowFields& fields) const {
    if (!choices_.Has(Role::Year)) return choices_.year;
    return fields.Whole(Role::Year, -MostOfInt16, MostOfInt16);
  }

  /// Year, day, hatch day and age of a visit.
  void SetDays(const RowFields& fields, VisitRecord& visit) {
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

  /// A day from the first of the visit's year on.
  int CountedOn(const VisitRecord& visit, DayOfYear date, const std::string& what) {
    if (date.year == visit.year) return date.day;
    if (std::abs(date.year - visit.year) > 1)
      throw LeftOut{fmt::format("its {} is of {}, its year {}", what, date.year, visit.year)};
    remarks_.Count(visit.line,
                   fmt::format("the {} is of another year than the column tells, and counted on from there", what));
    return DayCountedFrom(visit.year, date);
  }

  static std::optional<DayOfYear> HatchOf(const RowFields& fields, int year) {
    const std::optional<DayOfYear> date = fields.Date(Role::HatchDate);
    return date ? date : fields.DayNumber(Role::HatchDay, year);
  }

  std::string AgeText(double age, int line) {
    const FieldNumber written = InWidth(age, record::Width);
    if (written.rounded) remarks_.Count(line, "the age has more digits than there is room for");
    return written.text;
  }

  /// The age as it stands, or since the hatch day, or none.
  std::string AgeOf(const RowFields& fields, const VisitRecord& visit, bool hatchKnown) {
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
    if (hatchKnown) return std::to_string(sinceHatch);
    if (choices_.unknownAge == UnknownAge::LeftOut) throw LeftOut{"its age is not known"};
    ++unknownAges;
    return choices_.unknownAge == UnknownAge::OfEggs ? "-?" : "?";
  }

  /// The number of a visit: what stands in all columns with counts.
  int CountOf(const RowFields& fields) const {
    std::optional<int> sum;
    for (const std::size_t column : columns_.Of(Role::Count))
      if (const std::optional<int> count = fields.Whole(Role::Count, column, 0, MostOfInt16 - 1))
        sum = sum.value_or(0) + *count;
    if (!sum) throw LeftOut{fmt::format("it has no {}", NameOf(Role::Count))};
    if (*sum >= MostOfInt16) throw LeftOut{fmt::format("its {} is {}", NameOf(Role::Count), *sum)};
    return *sum;
  }

  std::string Covariates(const RowFields& fields, int line) {
    std::string written;
    for (const std::size_t column : columns_.Of(Role::Covariate)) {
      const std::optional<double> number = fields.Number(Role::Covariate, column);
      if (!number)
        remarks_.Count(
            line, fmt::format("\"{}\" has no value: an analysis with it passes over such a visit", names_[column]));
      const FieldNumber field = number ? InWidth(*number, record::CovariateWidth) : FieldNumber();
      if (field.rounded)
        remarks_.Count(line,
                       fmt::format("\"{}\" has more digits than there is room for, and was rounded", names_[column]));
      written += "," + FlushRight(field.text, record::CovariateWidth);
    }
    return written;
  }

  /// A nest from its first visit to its last.
  struct Nest {
    int first = 0, last = 0, end = 0;  // days: found, last known present, last visit
    int eggs = 1;
    std::optional<double> age;  // on the first day
  };

  /// One row for nests of the same fate: each becomes visits of one egg or, where the row tells a number, of the
  /// clutch.
  void TakeNest(const RowFields& fields, int line) {
    VisitRecord visit;
    visit.line = line;
    const Nest nest = NestOf(fields, visit);
    const int nests = choices_.Has(Role::Nests) ? fields.Whole(Role::Nests, 0, MostOfInt16 - 1).value_or(1) : 1;
    visit.covariates = Covariates(fields, line);
    const std::string code = OnOneLine(fields.Text(Role::Code));
    for (int n = 1; n <= nests; ++n) {
      visit.code = code.empty() ? fmt::format("L{}", line) : code;
      if (nests > 1) visit.code += fmt::format("-{}", n);
      MakeUnique(visit);
      AddNest(visit, nest);
    }
  }

  /// What a row tells of its nests, whose visits are given the year and the hatch day.
  Nest NestOf(const RowFields& fields, VisitRecord& visit) {
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
    if (*failed && checked <= nest.last)
      throw LeftOut{"it failed, and was not checked behind the day when last present"};
    if (!*failed && checked != nest.last)
      remarks_.Count(visit.line,
                     "the nest did not fail, and was checked on another day than when last present; that one counts");
    nest.end = *failed ? checked : nest.last;
    if (choices_.Has(Role::Count)) nest.eggs = CountOf(fields);
    if (nest.eggs < 1) throw LeftOut{"it has no eggs"};
    nest.age = AgeOfNest(fields, visit);
    return nest;
  }

  /// The age of a nest when it was found, as it stands or since the hatch day, which the visit is given.
  std::optional<double> AgeOfNest(const RowFields& fields, VisitRecord& visit) {
    const std::optional<DayOfYear> hatch = HatchOf(fields, visit.year);
    if (hatch) visit.hatchDay = CountedOn(visit, *hatch, NameOf(Role::HatchDate));
    const std::string& text = fields.Text(Role::Age);
    const bool isUnknown = text.empty() || text == "?" || text == "-?";
    const std::optional<double> age = isUnknown ? std::nullopt : fields.Number(Role::Age, columns_.Of(Role::Age)[0]);
    if (!age || *age == Missing) return hatch ? std::optional<double>(visit.day - visit.hatchDay) : std::nullopt;
    if (std::abs(*age) > MostOfInt16 / 2) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(Role::Age))};
    return age;
  }

  /// Two nests are never one.
  void MakeUnique(VisitRecord& visit) {
    const std::string code = visit.code;
    while (!nests_.emplace(visit.year, visit.code).second)
      visit.code = fmt::format("{}-{}", code, ++again_.try_emplace({visit.year, code}, 1).first->second);
    if (visit.code != code)
      remarks_.Note(visit.line, fmt::format("there is a nest \"{}\" in {} already; this one is written as \"{}\"", code,
                                            visit.year, visit.code));
  }

  void AddNest(VisitRecord visit, const Nest& nest) {
    if (visits.size() > static_cast<std::size_t>(MostVisits))
      throw RuntimeFailure("the file stands for more visits than there is room for");
    for (const int day : std::set<int>{nest.first, nest.last, nest.end}) {
      visit.day = day;
      visit.age = nest.age ? AgeText(*nest.age + (day - nest.first), visit.line) : "-?";
      visit.count = day > nest.last ? 0 : nest.eggs;
      visits.push_back(visit);
    }
  }

  bool IsDate(const std::string& text) const { return DateIn(text, choices_.dates).has_value(); }

  const ImportChoices& choices_;
  const ColumnsByRole columns_;
  const std::vector<std::string>& names_;
  const std::size_t headingColumns_;
  Remarks& remarks_;
  DatesSeen dates_;
  std::set<std::pair<int, std::string>> nests_;       // by year and code
  std::map<std::pair<int, std::string>, int> again_;  // how often a code came once more
};

/// Codes of more than eight characters keep their last eight while these tell them apart; else all get numbers.
void ShortenCodes(std::vector<VisitRecord>& visits, Remarks& remarks) {
  const auto isLong = [](const VisitRecord& visit) {
    return visit.code.size() > record::Width && CharacterCount(visit.code) > record::Width;
  };
  const auto firstLong = std::ranges::find_if(visits, isLong);
  if (firstLong == visits.end()) return;
  const std::string example = firstLong->code;
  std::map<std::string, std::string> given;
  for (const VisitRecord& visit : visits) given.try_emplace(visit.code);
  std::set<std::string> shorter;
  for (auto& [code, written] : given) shorter.insert(written = Trim(LastCharacters(code, record::Width)));
  const bool numbered = shorter.size() < given.size() || shorter.contains("");
  int number = 0;
  if (numbered)
    for (auto& [code, written] : given) written = fmt::format("N{:07}", ++number);
  for (VisitRecord& visit : visits) visit.code = given.at(visit.code);
  remarks.Say(fmt::format("codes as \"{}\" are longer than {} characters and were {}", example, record::Width,
                          numbered ? "replaced by numbers in their order" : "cut to their last 8"));
}

/// Sorts by year, code and day; returns how many records have another place.
int Sort(std::vector<VisitRecord>& visits) {
  const auto key = [&](std::size_t i) { return std::tie(visits[i].year, visits[i].code, visits[i].day); };
  const auto before = [&](std::size_t a, std::size_t b) { return key(a) < key(b); };
  std::vector<std::size_t> order(visits.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (std::ranges::is_sorted(order, before)) return 0;
  std::ranges::stable_sort(order, before);
  int moved = 0;
  std::vector<VisitRecord> sorted;
  sorted.reserve(visits.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (order[i] != i) ++moved;
    sorted.push_back(std::move(visits[order[i]]));
  }
  visits = std::move(sorted);
  return moved;
}

/// Looks through sorted records for what the reading of the file will refuse, or what looks like a slip of the pen.
class Examiner {
 public:
  Examiner(bool yearsAreTold, Remarks& remarks) : yearsAreTold_(yearsAreTold), remarks_(remarks) {}

  void Look(const std::vector<VisitRecord>& visits) {
    for (std::size_t i = 0; i < visits.size(); ++i) {
      const bool sameBrood = i > 0 && visits[i - 1].code == visits[i].code && visits[i - 1].year == visits[i].year;
      if (sameBrood) {
        LookAtPair(visits[i - 1], visits[i]);
      } else {
        LookAtCode(visits[i]);
        LookOverNewYear(visits, i);
      }
    }
  }

 private:
  /// Letters as if written with small ones and without blanks. Accented ones of western Europe have two bytes.
  static std::string Plain(const std::string& code) {
    std::string plain;
    for (const char c : LowerCase(code)) {
      const bool isCapital = plain.ends_with('\xC3') && c <= '\x9E' && c != '\x97';
      if (c == '\xA0' && plain.ends_with('\xC2'))
        plain.pop_back();  // a blank that does not break lines
      else if (c != ' ')
        plain += isCapital ? static_cast<char>(c + 0x20) : c;
    }
    return plain;
  }

  void LookAtCode(const VisitRecord& visit) {
    const auto [known, isNew] = spelling_.try_emplace(Plain(visit.code), visit.code);
    if (!isNew && known->second != visit.code)
      remarks_.Note(visit.line, fmt::format("the codes \"{}\" and \"{}\" differ in case or blanks only", known->second,
                                            visit.code));
  }

  /// Without a column for it, the year is the date's, and a season over a New Year falls in two.
  void LookOverNewYear(const std::vector<VisitRecord>& visits, std::size_t i) {
    constexpr int LateInYear = 305, EarlyInYear = 60;
    if (yearsAreTold_) return;
    const VisitRecord& visit = visits[i];
    if (visit.day <= EarlyInYear && late_.contains({visit.year - 1, visit.code}))
      remarks_.Count(visit.line,
                     "the code was there at the end of the year before: with a column for the year of the "
                     "season, a brood goes on over a New Year");
    std::size_t last = i;
    while (last + 1 < visits.size() && visits[last + 1].code == visit.code && visits[last + 1].year == visit.year)
      ++last;
    if (visits[last].day >= LateInYear) late_.emplace(visit.year, visit.code);
  }

  void LookAtPair(const VisitRecord& before, const VisitRecord& visit) {
    const auto note = [&](const std::string& what) {
      remarks_.Note(visit.line, fmt::format("\"{}\" {} of line {}", visit.code, what, before.line));
    };
    if (before.day == visit.day) note("has the day");
    if (visit.count > before.count) note(fmt::format("has {} behind {}", visit.count, before.count));
    if (before.AgeIsKnown() && visit.AgeIsKnown() && StrictNumber(visit.age) <= StrictNumber(before.age))
      note(fmt::format("has the age {} behind {}", visit.age, before.age));
    if (before.hatchDay != visit.hatchDay)
      remarks_.Count(visit.line, "the hatch day is another than at the visit before; the last one counts");
    if (before.covariates != visit.covariates)
      remarks_.Count(visit.line, "a covariate is another than at the visit before; the first one counts");
  }

  const bool yearsAreTold_;
  Remarks& remarks_;
  std::map<std::string, std::string> spelling_;
  std::set<std::pair<int, std::string>> late_;
};

/// The heading of the data file.
std::string HeadingLine(const ImportChoices& choices, const std::vector<std::string>& names, Remarks& remarks) {
  std::string line = record::Header;
  std::map<std::string, std::string> written;
  for (std::size_t c = 0; c < choices.roles.size(); ++c) {
    if (choices.roles[c] != Role::Covariate) continue;
    const std::string field = FlushRight(names[c], record::CovariateWidth);
    const auto [known, isNew] = written.try_emplace(field, names[c]);
    if (!isNew)
      remarks.Say(fmt::format("\"{}\" and \"{}\" are both called \"{}\" in the data file", known->second, names[c],
                              Trim(field)));
    line += "," + field;
  }
  return line + "\r\n";
}

}  // namespace

Imported ImportRows(std::string_view text, const ImportChoices& choices, const ReadingProgress& progress) {
  constexpr int RowsBetweenProgress = 1000;
  const std::vector<std::string> names = ColumnNames(text, choices);
  const Heading heading = HeadingOf(text, choices);
  Imported imported;
  Remarks remarks(choices.sheet.empty() ? "line" : "row");
  if (heading.rows > 1)
    remarks.Say(heading.rows == 2 ? "1 row above the heading was passed over"
                                  : fmt::format("{} rows above the heading were passed over", heading.rows - 1));
  RowReader reader(choices, names, names.size(), remarks);
  DelimitedRows rows = RowsBehindHeading(text, choices);
  for (TextRow row; rows.Next(row);) {
    if (++imported.rows % RowsBetweenProgress == 0 && progress)
      progress(1 - static_cast<double>(rows.Rest().size()) / static_cast<double>(text.size()));
    try {
      reader.Take(row);
    } catch (const LeftOut& out) {
      ++imported.leftOut;
      remarks.Note(row.line, "left out, " + out.why);
    }
  }
  std::vector<VisitRecord>& visits = reader.visits;
  if (visits.empty()) {
    const std::vector<std::string> why = remarks.First();
    throw RuntimeFailure("no row gives a record: look at what the columns are" +
                         (why.empty() ? "" : "; " + why.back()));
  }
  reader.RemarkWhole();
  ShortenCodes(visits, remarks);
  imported.moved = Sort(visits);
  Examiner(choices.Has(Role::Year), remarks).Look(visits);
  imported.text = HeadingLine(choices, names, remarks);
  const VisitRecord* before = nullptr;
  for (const VisitRecord& visit : visits) {
    if (before == nullptr || before->code != visit.code || before->year != visit.year) ++imported.broods;
    before = &visit;
    AppendRecord(imported.text, visit);
  }
  imported.unknownAges = reader.unknownAges;
  imported.records = static_cast<int>(visits.size());
  imported.covariates = static_cast<int>(std::ranges::count(choices.roles, Role::Covariate));
  imported.firstYear = visits.front().year;
  imported.lastYear = visits.back().year;
  imported.remarks = remarks.First();
  imported.remarkCount = remarks.Number();
  return imported;
}

}  // namespace merlane
