#include "import/visit_examiner.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/number_text.h"
#include "data/alike_codes.h"
#include "data/record_layout.h"

namespace merlane {

namespace {

bool AreOfOneBrood(const VisitRecord& a, const VisitRecord& b) { return a.code == b.code && a.year == b.year; }

/// Whether a code is one that spreadsheets make of a long number, such as 1.23457E+11: its last digits are lost.
bool HasLostDigits(const std::string& code) { return code.find("E+") != std::string::npos && IsNumber(code); }

bool StandsForNone(const std::string& alikeCode) {
  static const std::set<std::string> words{"?",      "??",       "unknown", "unk",       "none",        "null",
                                           "nocode", "onbekend", "inconnu", "unbekannt", "desconocido", "okand"};
  return words.contains(alikeCode);
}

}  // namespace

VisitExaminer::VisitExaminer(const ImportChoices& choices, const std::vector<std::string>& names, Remarks& remarks)
    : choices_(choices), remarks_(remarks) {
  for (std::size_t c = 0; c < choices.roles.size(); ++c)
    if (choices.roles[c] == Role::Covariate) covariates_.push_back(names[c]);
}

void VisitExaminer::LookAtCodes(const std::vector<VisitRecord>& visits) {
  for (std::size_t i = 0; i < visits.size(); ++i)
    if (i == 0 || visits[i - 1].code != visits[i].code) LookAtCode(visits[i]);
}

void VisitExaminer::LookAtCode(const VisitRecord& visit) {
  const auto [known, isNew] = spelling_.try_emplace(AlikeCode(visit.code), visit.code);
  if (StandsForNone(known->first))
    remarks_.Count(visit.line, fmt::format("the code \"{}\" seems to stand for none", visit.code));
  if (HasLostDigits(visit.code))
    remarks_.Count(visit.line, fmt::format("the code \"{}\" is a number whose last digits are lost", visit.code));
  const bool isDate = DateIn(visit.code, DateOrder::YearMonthDay) && !OrdinalDateIn(visit.code);
  const bool isDayOfMonth = DateIn(visit.code + " 2000", DateOrder::YearMonthDay).has_value();
  if (isDate || isDayOfMonth)
    remarks_.Count(visit.line, fmt::format("the code \"{}\" is a date, which a spreadsheet makes of a code such as 3-1",
                                           visit.code));
  if (isNew || known->second == visit.code) return;
  remarks_.Note(visit.line, fmt::format("the codes \"{}\" and \"{}\" {}", known->second, visit.code,
                                        DifferenceOfCodes(known->second, visit.code)));
}

void VisitExaminer::Look(const std::vector<VisitRecord>& visits) {
  LookAtColumns(visits);
  LookAtHatch(visits);
  LookAtYears(visits);
  for (std::size_t i = 0; i < visits.size(); ++i) {
    if (i > 0 && AreOfOneBrood(visits[i - 1], visits[i]))
      LookAtPair(visits[i - 1], visits[i]);
    else
      LookAtFirst(visits, i);
  }
  if (refused_ > 0)
    remarks_.Say(
        fmt::format("{} a number that rises or an age that does not: the reading of the data file will end the "
                    "program there",
                    refused_ == 1 ? "1 visit has" : fmt::format("{} visits have", refused_)));
}

void VisitExaminer::LookAtColumns(const std::vector<VisitRecord>& visits) {
  constexpr int FewRows = 3, LastOfAMonth = 31;
  std::size_t broods = 0;
  bool countsVisits = true, withinAMonth = true;
  int before = 0;
  for (std::size_t i = 0; i < visits.size(); ++i) {
    const VisitRecord& visit = visits[i];
    const bool isFirst = i == 0 || !AreOfOneBrood(visits[i - 1], visit);
    if (isFirst) ++broods;
    countsVisits = countsVisits && visit.day == (isFirst ? 1 : before + 1);
    withinAMonth = withinAMonth && visit.day >= 1 && visit.day <= LastOfAMonth;
    before = visit.day;
  }
  if (choices_.OfNests() || visits.size() < FewRows) return;
  if (broods == visits.size())
    remarks_.Say("each row has a code of its own, so that no brood has a second visit: is that column the code?");
  if (choices_.Has(Role::Date) || choices_.Has(Role::Month)) return;
  if (countsVisits)
    remarks_.Say("the days of each brood are 1, 2, 3 and so on: are they numbers of visits?");
  else if (withinAMonth)
    remarks_.Say("no day of the year is behind the 31st: are they days of a month, or numbers of visits?");
}

void VisitExaminer::LookAtHatch(const std::vector<VisitRecord>& visits) {
  constexpr double Near = 45;
  const VisitRecord* example = nullptr;
  for (const VisitRecord& visit : visits) {
    if (!visit.AgeIsKnown()) continue;
    if (std::abs(StrictNumber(visit.age)) < Near) return LookAtHatchDays(visits);
    if (example == nullptr) example = &visit;
  }
  if (example == nullptr) return;
  const std::string hatchDay = example->hatchDay == 0 ? "" : fmt::format(" with the hatch day {}", example->hatchDay);
  remarks_.Say(fmt::format("no visit is within {} days of hatch: \"{}\" has the age {} on day {}{}", Near,
                           example->code, example->age, example->day, hatchDay));
}

void VisitExaminer::LookAtHatchDays(const std::vector<VisitRecord>& visits) {
  constexpr int LastOfAMonth = 31, NoValue = 99, Near = 10;
  if (!choices_.Has(Role::HatchDay) || choices_.Has(Role::HatchMonth)) return;
  int last = 0, lastVisit = 0;
  bool nearNoValue = false;
  const VisitRecord* noValue = nullptr;
  for (const VisitRecord& visit : visits) {
    last = std::max(last, visit.hatchDay);
    lastVisit = std::max(lastVisit, visit.day);
    if (visit.hatchDay == NoValue && noValue == nullptr) noValue = &visit;
    nearNoValue = nearNoValue || (visit.hatchDay != NoValue && std::abs(visit.hatchDay - NoValue) <= Near);
  }
  if (noValue != nullptr && !nearNoValue)
    remarks_.Say(
        fmt::format("the hatch day is {}, the first time in {} {}, and no other is near: that may stand for "
                    "no value",
                    NoValue, remarks_.Place(), noValue->line));
  const bool knowsMonths = choices_.Has(Role::Month) || choices_.Has(Role::Date);
  if (knowsMonths && last > 0 && last <= LastOfAMonth && lastVisit > LastOfAMonth)
    remarks_.Say("no hatch day is behind the 31st: each is taken as one of the year, not of a month");
}

void VisitExaminer::LookAtYears(const std::vector<VisitRecord>& visits) {
  constexpr int FirstYear = 1950, LastYear = 2100, FarApart = 3, FewBroods = 5;
  struct OfYear {
    int broods = 0, firstLine = 0;
  };
  std::map<int, OfYear> years;
  int broods = 0;
  for (std::size_t i = 0; i < visits.size(); ++i) {
    const VisitRecord& visit = visits[i];
    if (visit.year < FirstYear || visit.year > LastYear)
      remarks_.Count(visit.line, fmt::format("the year is {}", visit.year));
    if (i > 0 && AreOfOneBrood(visits[i - 1], visit)) continue;
    OfYear& year = years.try_emplace(visit.year, OfYear{0, visit.line}).first->second;
    ++year.broods;
    ++broods;
  }
  for (auto year = years.begin(); year != years.end(); ++year) {
    const bool isFar = (year == years.begin() || year->first - std::prev(year)->first >= FarApart) &&
                       (std::next(year) == years.end() || std::next(year)->first - year->first >= FarApart);
    if (isFar && years.size() > 1 && year->second.broods == 1 && broods >= FewBroods)
      remarks_.Note(year->second.firstLine,
                    fmt::format("{} is the year of one brood alone, and no other is near", year->first));
  }
}

void VisitExaminer::LookAtFirst(const std::vector<VisitRecord>& visits, std::size_t i) {
  if (visits[i].count == 0)
    remarks_.Count(visits[i].line, "the number is 0 at the first visit of a brood: it counts as dead from there on");
  LookOverNewYear(visits, i);
}

void VisitExaminer::LookOverNewYear(const std::vector<VisitRecord>& visits, std::size_t i) {
  constexpr int LateInYear = 305, EarlyInYear = 60;
  if (choices_.Has(Role::Year)) return;
  const VisitRecord& visit = visits[i];
  if (visit.day <= EarlyInYear && late_.contains({visit.year - 1, visit.code}))
    remarks_.Count(visit.line,
                   "the code was there at the end of the year before: with a column for the year of the "
                   "season, a brood goes on over a New Year");
  std::size_t last = i;
  while (last + 1 < visits.size() && visits[last + 1].code == visit.code && visits[last + 1].year == visit.year) ++last;
  if (visits[last].day >= LateInYear) late_.emplace(visit.year, visit.code);
}

void VisitExaminer::LookAtPause(const VisitRecord& before, const VisitRecord& visit) {
  constexpr int Long = 60;
  if (choices_.OfNests() || visit.day - before.day <= Long) return;
  remarks_.Note(visit.line,
                fmt::format("\"{}\" was seen {} days before, in {} {}, and its age is not known: are these two "
                            "broods?",
                            visit.code, visit.day - before.day, remarks_.Place(), before.line));
}

void VisitExaminer::LookAtAging(const VisitRecord& before, const VisitRecord& visit) {
  constexpr double PartOfADay = 1;  // that ages may have, and days have not
  constexpr int MostNoted = 20;     // more are of all ages, and would crowd out what else is noted
  const double aged = StrictNumber(visit.age) - StrictNumber(before.age);
  const int days = visit.day - before.day;
  if (days <= 0 || std::abs(aged - days) < PartOfADay) return;
  if (agedOtherwise_++ < MostNoted)
    remarks_.Note(visit.line, fmt::format("\"{}\" is older by {} than in {} {}, and its day is later by {}", visit.code,
                                          Shortest(aged), remarks_.Place(), before.line, days));
  else
    remarks_.Count(visit.line, "a brood is older by another number than that by which its day is later");
}

void VisitExaminer::LookAtPair(const VisitRecord& before, const VisitRecord& visit) {
  const auto note = [&](const std::string& what) {
    remarks_.Note(visit.line, fmt::format("\"{}\" {} of {} {}", visit.code, what, remarks_.Place(), before.line));
  };
  const bool knowsAges = before.AgeIsKnown() && visit.AgeIsKnown();
  const bool isNoOlder = knowsAges && StrictNumber(visit.age) <= StrictNumber(before.age);
  if (visit.count > before.count || isNoOlder) ++refused_;
  if (before.day == visit.day) note("has the day");
  if (visit.count > before.count) note(fmt::format("has {} behind {}", visit.count, before.count));
  if (isNoOlder)
    note(fmt::format("has the age {} behind {}", visit.age, before.age));
  else if (knowsAges)
    LookAtAging(before, visit);
  else
    LookAtPause(before, visit);
  if (before.hatchDay != 0 && visit.hatchDay != 0 && before.hatchDay != visit.hatchDay)
    note(fmt::format("has the hatch day {} behind {}", visit.hatchDay, before.hatchDay));
  if ((before.hatchDay == 0) != (visit.hatchDay == 0))
    remarks_.Count(visit.line, "the hatch day is missing at one visit, and others do not agree on it");
  if (before.counted == Stage::Young && visit.counted == Stage::Eggs && visit.count > 0)
    note(fmt::format("has eggs, by \"{}\", behind young", visit.countedUnder));
  if (before.covariates != visit.covariates) LookAtCovariates(before, visit);
}

void VisitExaminer::LookAtCovariates(const VisitRecord& before, const VisitRecord& visit) {
  constexpr std::size_t Width = record::CovariateWidth + 1;
  for (std::size_t i = 0; i < covariates_.size(); ++i)
    if (before.covariates.compare(i * Width, Width, visit.covariates, i * Width, Width) != 0)
      remarks_.Count(visit.line,
                     fmt::format("\"{}\" is another than at the visit before; the first one counts", covariates_[i]));
}

}  // namespace merlane
