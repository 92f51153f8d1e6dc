#include "import/visit_examiner.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {

void VisitExaminer::Look(const std::vector<VisitRecord>& visits) {
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

std::string VisitExaminer::Plain(const std::string& code) {
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

void VisitExaminer::LookAtCode(const VisitRecord& visit) {
  const auto [known, isNew] = spelling_.try_emplace(Plain(visit.code), visit.code);
  if (!isNew && known->second != visit.code)
    remarks_.Note(visit.line,
                  fmt::format("the codes \"{}\" and \"{}\" differ in case or blanks only", known->second, visit.code));
}

void VisitExaminer::LookOverNewYear(const std::vector<VisitRecord>& visits, std::size_t i) {
  constexpr int LateInYear = 305, EarlyInYear = 60;
  if (yearsAreTold_) return;
  const VisitRecord& visit = visits[i];
  if (visit.day <= EarlyInYear && late_.contains({visit.year - 1, visit.code}))
    remarks_.Count(visit.line,
                   "the code was there at the end of the year before: with a column for the year of the "
                   "season, a brood goes on over a New Year");
  std::size_t last = i;
  while (last + 1 < visits.size() && visits[last + 1].code == visit.code && visits[last + 1].year == visit.year) ++last;
  if (visits[last].day >= LateInYear) late_.emplace(visit.year, visit.code);
}

void VisitExaminer::LookAtPair(const VisitRecord& before, const VisitRecord& visit) {
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

}  // namespace merlane
