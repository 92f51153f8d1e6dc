#include "import/row_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/brood_data.h"
#include "data/most_visits.h"
#include "data/record_layout.h"
#include "import/brood_ages.h"
#include "import/fate_words.h"
#include "import/heading_words.h"

namespace merlane {
namespace {

constexpr int MostOfInt16 = 32767, LongestYear = 366;

/// Whether a number is one that people write where they have none.
bool MayStandForNoValue(double number) { return number == 99 || number == 999 || number == 9999; }

/// Whether an age is an unknown one of young or of eggs, as in a data file.
bool IsMarkOfUnknown(const std::string& age) { return age == "?" || age == "-?"; }

}  // namespace

RowReader::RowReader(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingFields,
                     Remarks& remarks)
    : choices_(choices),
      columns_(choices.roles),
      names_(names),
      remarks_(remarks),
      widths_(choices, names, headingFields, remarks),
      stray_(choices, names),
      places_(choices, names),
      parted_(choices, names),
      dates_(choices),
      stages_(choices, columns_, names, remarks),
      covariates_(columns_.Of(Role::Covariate).size(),
                  CovariateLook(choices.delimiter != Delimiter::Comma || choices.decimal == ',')) {
  for (const Role role : {Role::Unused, Role::Fate, Role::Covariate, Role::Stage})
    fateColumns_.insert(fateColumns_.end(), columns_.Of(role).begin(), columns_.Of(role).end());
  for (const std::size_t column : fateColumns_) ends_.Watch(column, names[column]);
  std::ranges::copy_if(fateColumns_, std::back_inserter(youngColumns_), [&](std::size_t c) {
    return NamesYoung(names[c]) && !SpeaksOfFledging(HeadingLetters(names[c]));
  });
  RemarkUnusedColumns();
}

void RowReader::Take(const TextRow& row) {
  if (const std::string why = stray_.WhyStray(row); !why.empty()) throw LeftOut{why};
  widths_.Take(row);
  const RowFields fields(choices_, columns_, row, dates_);
  if (choices_.OfNests())
    TakeNest(fields, row.line);
  else
    TakeVisit(fields, row.line);
  stray_.LookAtComment(row);
}

void RowReader::LookAtStages(const std::vector<VisitRecord>& settled) {
  for (const VisitRecord& visit : settled) stages_.Compare(visit);
  stages_.Remark();
}

void RowReader::RemarkWhole() {
  RemarkYear();
  if (choices_.OfNests()) RemarkFates();
  RemarkCode();
  widths_.Remark();
  stray_.Remark(remarks_);
  parted_.Remark(remarks_);
  ends_.Tell(remarks_);
  RemarkMonths();
  dates_.Remark(remarks_);
  for (std::size_t i = 0; i < covariates_.size(); ++i)
    covariates_[i].Remark(names_[columns_.Of(Role::Covariate)[i]], remarks_);
  const std::vector<std::size_t>& counts = columns_.Of(Role::Count);
  if (counts.size() > 1) {
    std::string sum = names_[counts.front()];
    for (std::size_t i = 1; i < counts.size(); ++i) sum += " + " + names_[counts[i]];
    remarks_.Say(fmt::format("the number of a visit is {}", sum));
  }
}

void RowReader::RemarkCode() {
  if (!choices_.Has(Role::CodePart) || !choices_.Has(Role::Code)) return;
  std::string joined;
  for (std::size_t c = 0; c < names_.size() && c < choices_.roles.size(); ++c)
    if (choices_.roles[c] == Role::CodePart || choices_.roles[c] == Role::Code)
      joined += fmt::format("{}\"{}\"", joined.empty() ? "" : " and ", names_[c]);
  remarks_.Mean(fmt::format("the code of a brood is {}, as in \"{}\"", joined, visits.front().code));
}

void RowReader::RemarkYear() {
  if (yearsTaken_ == 0) return;
  remarks_.Say(yearsTold_ == 0
                   ? fmt::format("no column tells the year: {} was taken", choices_.year)
                   : fmt::format("where a row tells no year, as others do, {} was taken: {}, first in {} {}",
                                 choices_.year, Counted(yearsTaken_, "time"), remarks_.Place(), firstYearTaken_));
}

void RowReader::RemarkUnusedColumns() {
  std::string unused;
  for (const std::size_t c : columns_.Of(Role::Unused)) {
    if (!choices_.heading || names_[c] != fmt::format("Column {}", c + 1))
      unused += fmt::format("{}\"{}\"", unused.empty() ? "" : ", ", names_[c]);
  }
  if (!unused.empty()) remarks_.Say("not used: " + unused);
  for (const std::size_t c : columns_.Of(Role::Unused)) RemarkOtherColumn(c);
  RemarkOtherVisits();
  RemarkDayNumbers();
  if (!choices_.OfNests()) return;
  for (const Role role : {Role::Day, Role::Date})
    for (const std::size_t c : columns_.Of(role))
      remarks_.Say(fmt::format("\"{}\" is the {}: nests of one row each have no use for it", names_[c], NameOf(role)));
}

void RowReader::RemarkOtherVisits() {
  std::string others;
  for (const std::size_t c : columns_.Of(Role::Unused))
    if (IsOfNumberedVisit(names_[c])) others += fmt::format("{}\"{}\"", others.empty() ? "" : ", ", names_[c]);
  if (!others.empty())
    remarks_.Say("columns as of further visits were passed over, since a row gives one visit alone: " + others);
}

void RowReader::RemarkDayNumbers() {
  for (const std::size_t c : columns_.Of(Role::Day)) {
    const std::vector<Meaning> meanings = MeaningsOf(names_[c]);
    const auto isOf = [&](Role role) {
      return std::ranges::any_of(meanings, [role](const Meaning& meaning) { return meaning.role == role; });
    };
    if (isOf(Role::Date) && !isOf(Role::Day) && !choices_.Has(Role::Month))
      remarks_.Say(fmt::format("\"{}\" holds numbers, which were taken as days of the year", names_[c]));
  }
}

void RowReader::RemarkOtherColumn(std::size_t column) {
  for (const Meaning& meaning : MeaningsOf(names_[column])) {
    if (meaning.role != Role::Code && meaning.role != Role::Count && meaning.role != Role::Date) continue;
    if (columns_.Of(meaning.role).empty()) continue;
    return remarks_.Say(fmt::format("\"{}\" is the {}, which \"{}\" could be, too",
                                    names_[columns_.Of(meaning.role).front()], NameOf(meaning.role), names_[column]));
  }
}

void RowReader::TakeVisit(const RowFields& fields, int line) {
  VisitRecord visit;
  visit.line = line;
  visit.code = fields.Code();
  if (visit.code.empty()) throw LeftOut{"it has no code"};
  SetDays(fields, visit);
  visit.count = CountOf(fields, line);
  stages_.Set(fields, visit);
  CompareFate(fields, visit);
  ends_.Look(fields, visit);
  visit.covariates = Covariates(fields, line);
  places_.Look(fields, visit, remarks_);
  parted_.Look(fields, visit);
  visits.push_back(std::move(visit));
}

std::optional<int> RowReader::YearOf(const RowFields& fields, int line) {
  if (!choices_.Has(Role::Year)) return std::nullopt;
  const std::string& text = fields.Text(Role::Year);
  const std::optional<int> season = SeasonIn(text);
  if (season) remarks_.Count(line, fmt::format("the year \"{}\" was taken as {}", text, *season));
  return season ? season : fields.Whole(Role::Year, -MostOfInt16, MostOfInt16);
}

int RowReader::YearTaken(int line) {
  if (choices_.Has(Role::Year)) throw LeftOut{"it has no year"};
  if (yearsTaken_++ == 0) firstYearTaken_ = line;
  return choices_.year;
}

void RowReader::SetDays(const RowFields& fields, VisitRecord& visit) {
  const std::optional<int> told = YearOf(fields, visit.line);
  const std::optional<DayOfYear> date = fields.Date(Role::Date);
  if (!date && fields.Text(Role::Day).empty()) throw LeftOut{"it has no day"};
  // Behind a New Year the days of a season are counted on where a column tells its year.
  if (told || date) ++yearsTold_;
  visit.year = told ? *told : date ? date->year : YearTaken(visit.line);
  const std::optional<DayOfYear> number = fields.DayNumber(Role::Day, visit.year);
  if (date) CompareDay(*date, number, NameOf(Role::Day), visit.line);
  if (!date && (number->day < 1 || number->day > LongestYear))
    remarks_.Count(visit.line, "the day is none of its year: it is counted on into another");
  visit.day = CountedOn(visit, date ? *date : *number, NameOf(Role::Date));
  const std::optional<DayOfYear> hatch = HatchOf(fields, visit.year, visit.line);
  if (hatch) visit.hatchDay = CountedOn(visit, *hatch, NameOf(Role::HatchDate));
  visit.age = AgeOf(fields, visit, hatch.has_value());
}

void RowReader::CompareDay(DayOfYear date, std::optional<DayOfYear> number, const std::string& what, int line) {
  if (number && number->day != date.day && number->day != 0)
    remarks_.Count(line, fmt::format("the {} is not that of the date beside it; the date was taken", what));
}

int RowReader::CountedOn(const VisitRecord& visit, DayOfYear date, const std::string& what) {
  if (date.year == visit.year) return date.day;
  if (std::abs(date.year - visit.year) > 1)
    throw LeftOut{fmt::format("its {} is of {}, its year {}", what, date.year, visit.year)};
  remarks_.Count(visit.line, fmt::format("the {} is of another year than {}, and counted on from there", what,
                                         choices_.Has(Role::Year) ? "the column tells" : "the visit"));
  return DayCountedFrom(visit.year, date);
}

std::optional<DayOfYear> RowReader::HatchOf(const RowFields& fields, int year, int line) {
  const std::optional<DayOfYear> date = fields.Date(Role::HatchDate);
  const std::optional<DayOfYear> number = fields.DayNumber(Role::HatchDay, year);
  if (date) CompareDay(*date, number, NameOf(Role::HatchDay), line);
  if (date) return date;
  if (number && (number->day < 0 || number->day > LongestYear))
    remarks_.Count(line, "the hatch day is none of its year: it is counted on into another");
  return number && number->day == 0 ? std::nullopt : number;
}

std::string RowReader::AgeOf(const RowFields& fields, const VisitRecord& visit, bool hatchKnown) {
  const std::string& text = fields.Text(Role::Age);
  if (text == "?") remarks_.Count(visit.line, "the age \"?\" is an unknown one of young; of eggs it would be \"-?\"");
  const int sinceHatch = visit.day - visit.hatchDay;
  if (text == "-?" && hatchKnown && sinceHatch > 0)
    remarks_.Count(visit.line, "the age \"-?\" is an unknown one of eggs, and by the hatch day the brood has hatched");
  if (IsMarkOfUnknown(text)) return text;
  const std::optional<double> age = text.empty() ? std::nullopt : fields.Number(Role::Age, columns_.Of(Role::Age)[0]);
  if (!age || *age == Missing) return hatchKnown ? AgeText(sinceHatch, visit.line, remarks_) : "";
  if (std::abs(*age) >= MostOfInt16) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(Role::Age))};
  if (MayStandForNoValue(std::abs(*age)))
    remarks_.Count(visit.line, fmt::format("the age is {}, which may stand for no value", Shortest(*age)));
  if (hatchKnown && std::abs(*age - sinceHatch) >= 1)
    remarks_.Count(visit.line, "the age is not the one that follows from the hatch day; as it stands it was taken");
  return AgeText(*age, visit.line, remarks_);
}

int RowReader::CountOf(const RowFields& fields, int line) const {
  std::optional<int> sum;
  bool isMissing = false;
  for (const std::size_t column : columns_.Of(Role::Count)) {
    const std::optional<int> count = fields.Whole(Role::Count, column, 0, MostOfInt16 - 1);
    if (count) sum = sum.value_or(0) + *count;
    if (const std::string_view text = fields.At(column); count && text.find_first_of("eE") != std::string_view::npos)
      remarks_.Count(line, fmt::format("the number \"{}\" was read with a power of ten, as {}", text, *count));
    RemarkThousands(fields.At(column), Role::Count, line);
    isMissing = isMissing || (!count && !fields.At(column).empty());
  }
  if (isMissing && sum == 0)
    remarks_.Count(line, "0 in one of the numbers, and another is missing: 0 was taken for both");
  if (isMissing && sum > 0)
    remarks_.Count(line, "of the columns that make the number, some are missing and were taken as none");
  if (!sum) throw LeftOut{fmt::format("it has no {}", NameOf(Role::Count))};
  if (MayStandForNoValue(*sum))
    remarks_.Count(line, fmt::format("the {} is {}, which may stand for no value", NameOf(Role::Count), *sum));
  if (*sum >= MostOfInt16) throw LeftOut{fmt::format("its {} is {}", NameOf(Role::Count), *sum)};
  return *sum;
}

void RowReader::RemarkThousands(const std::string& text, Role role, int line) const {
  if (IsLikeThousands(text))
    remarks_.Count(line, fmt::format("the {} \"{}\" was taken as {}, not as one of thousands", NameOf(role), text,
                                     text.substr(0, text.find_first_of(".,"))));
}

void RowReader::CompareFate(const RowFields& fields, const VisitRecord& visit) {
  if (visit.count > 0) return;
  for (const std::size_t column : youngColumns_) {
    const std::string& text = fields.At(column);  // "4 of 5" as well
    if (text.empty() || text.front() < '1' || text.front() > '9') continue;
    remarks_.Count(visit.line, fmt::format("the {} is 0, and \"{}\" is \"{}\": the brood counts as dead",
                                           NameOf(Role::Count), names_[column], text));
  }
  for (const std::size_t column : fateColumns_) {
    const std::string& text = fields.At(column);
    const bool hasFledged = SpeaksOfFledging(HeadingLetters(names_[column])) && NumberIn(text, choices_.decimal) > 0.0;
    constexpr std::size_t LongestMark = 2;  // which in other columns tells other things
    const bool survived = text.size() > LongestMark && FateIn(text) == Fate::Survived;
    if (hasFledged || survived)
      remarks_.Count(visit.line, fmt::format("the {} is 0, and \"{}\" is \"{}\": the brood counts as dead",
                                             NameOf(Role::Count), names_[column], text));
  }
}

void RowReader::RemarkMonths() {
  constexpr int LastOfAMonth = 31;
  const auto remark = [&](Role month, Role day, int VisitRecord::*field) {
    const auto mayBeOfMonth = [field](const VisitRecord& visit) { return visit.*field <= LastOfAMonth; };
    if (!choices_.Has(day) || choices_.Has(month) || !std::ranges::all_of(visits, mayBeOfMonth)) return;
    const auto isMonth = [month](const std::string& name) {
      return std::ranges::any_of(MeaningsOf(name), [month](const Meaning& meaning) { return meaning.role == month; });
    };
    const auto found = std::ranges::find_if(names_, isMonth);
    if (found != names_.end())
      remarks_.Say(fmt::format("there is a column \"{}\": the {} is taken as one of the year, not of a month", *found,
                               NameOf(day)));
  };
  remark(Role::Month, Role::Day, &VisitRecord::day);
  remark(Role::HatchMonth, Role::HatchDay, &VisitRecord::hatchDay);
}

std::string RowReader::Covariates(const RowFields& fields, int line) {
  std::string written;
  for (std::size_t i = 0; i < covariates_.size(); ++i) {
    const std::size_t column = columns_.Of(Role::Covariate)[i];
    std::optional<double> number = fields.Number(Role::Covariate, column);
    if (number == Missing) number.reset();
    if (number) covariates_[i].Take(*number, fields.At(column), fields.Shown(column), line);
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
  RemarkThousands(fields.Text(Role::Nests), Role::Nests, line);
  stages_.Set(fields, visit);
  visit.covariates = Covariates(fields, line);
  fates_[nest.fate][fields.Text(fields.FateRole())] += *nests;
  const std::string code = fields.Code();
  for (int n = 1; n <= *nests; ++n) {
    visit.code = code.empty() ? fmt::format("L{}", line) : code;
    if (*nests > 1) visit.code += fmt::format("-{}", n);
    MakeUnique(visit);
    AddNest(visit, nest);
  }
}

RowReader::Nest RowReader::NestOf(const RowFields& fields, VisitRecord& visit) {
  const std::optional<int> told = YearOf(fields, visit.line);
  const bool tellsYear = told || IsDate(fields.Text(Role::FirstFound));
  if (tellsYear) ++yearsTold_;
  const int year = told ? *told : tellsYear ? choices_.year : YearTaken(visit.line);
  const auto day = [&](Role role) {
    const std::optional<DayOfYear> date = fields.DateOrNumber(role, year);
    if (!date) throw LeftOut{fmt::format("it has no day for {}", NameOf(role))};
    return *date;
  };
  const DayOfYear found = day(Role::FirstFound);
  visit.year = told ? *told : found.year;
  Nest nest;
  nest.first = visit.day = CountedOn(visit, found, NameOf(Role::FirstFound));
  nest.last = CountedOn(visit, day(Role::LastPresent), NameOf(Role::LastPresent));
  const int checked = CountedOn(visit, day(Role::LastChecked), NameOf(Role::LastChecked));
  const std::optional<Fate> fate = fields.FateOfNest();
  if (!fate) throw LeftOut{"it has no fate"};
  nest.fate = *fate;
  const bool failed = nest.fate == Fate::Failed;
  if (nest.last < nest.first) throw LeftOut{"it was last present before it was found"};
  if (failed && checked <= nest.last) throw LeftOut{"it failed, and was not checked behind the day when last present"};
  if (nest.fate == Fate::Unknown)
    remarks_.Count(visit.line, "the fate is not known: the nest counts until it was last present");
  if (nest.fate == Fate::Survived && checked != nest.last)
    remarks_.Count(visit.line,
                   "the nest did not fail, and was checked on another day than when last present; that one counts");
  nest.end = failed ? checked : nest.last;
  if (choices_.Has(Role::Count)) nest.eggs = CountOf(fields, visit.line);
  if (nest.eggs < 1) throw LeftOut{"it has no eggs"};
  nest.age = AgeOfNest(fields, visit);
  if (const std::string& age = fields.Text(Role::Age); !nest.age && IsMarkOfUnknown(age)) nest.unknownAge = age;
  return nest;
}

std::optional<double> RowReader::AgeOfNest(const RowFields& fields, VisitRecord& visit) {
  const std::optional<DayOfYear> hatch = HatchOf(fields, visit.year, visit.line);
  if (hatch) visit.hatchDay = CountedOn(visit, *hatch, NameOf(Role::HatchDate));
  const std::string& text = fields.Text(Role::Age);
  const bool isUnknown = text.empty() || IsMarkOfUnknown(text);
  const std::optional<double> age = isUnknown ? std::nullopt : fields.Number(Role::Age, columns_.Of(Role::Age)[0]);
  if (!age || *age == Missing) return hatch ? std::optional<double>(visit.day - visit.hatchDay) : std::nullopt;
  if (std::abs(*age) > MostOfInt16 / 2) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(Role::Age))};
  if (*age > 0)
    remarks_.Count(visit.line,
                   "the nest has hatched by its age, since ages are days from hatch, negative ones of eggs");
  return age;
}

void RowReader::RemarkFates() {
  std::string list;
  for (const auto& [fate, what] : {std::pair(Fate::Failed, "failed"), std::pair(Fate::Survived, "did not fail"),
                                   std::pair(Fate::Unknown, "of unknown fate")}) {
    int nests = 0;
    std::string words;
    for (const auto& [word, number] : fates_[fate]) {
      nests += number;
      words += fmt::format("{}\"{}\"", words.empty() ? "" : ", ", word);
    }
    if (nests > 0) list += fmt::format("{}{} {} ({})", list.empty() ? "" : ", ", nests, what, words);
  }
  remarks_.Say("of the nests, by their fate: " + list);
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
    visit.age = nest.age ? AgeText(*nest.age + (day - nest.first), visit.line, remarks_) : nest.unknownAge;
    visit.count = day > nest.last ? 0 : nest.eggs;
    visits.push_back(visit);
  }
}

}  // namespace merlane
