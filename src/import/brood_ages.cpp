#include "import/brood_ages.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "data/record_layout.h"

namespace merlane {
namespace {

/// Days from hatch; an older one is mostly of another column, or a day of another year.
constexpr int LongestAge = 120;

}  // namespace

std::string AgeText(double age, int line, Remarks& remarks) {
  if (std::abs(age) > LongestAge)
    remarks.Count(line, fmt::format("the age is more than {} days from hatch", LongestAge));
  const FieldNumber written = InWidth(age, record::Width);
  if (written.rounded) remarks.Count(line, "the age has more digits than there is room for");
  return written.text;
}

void BroodAges::Settle(std::vector<VisitRecord>& visits) {
  for (auto begin = visits.begin(); begin != visits.end();) {
    const auto end = std::find_if_not(begin, visits.end(), [&](const VisitRecord& visit) {
      return visit.code == begin->code && visit.year == begin->year;
    });
    ShareHatchDay(begin, end);
    ShareCounted(begin, end);
    begin = end;
  }
  std::erase_if(visits, [this](VisitRecord& visit) { return !SettleAge(visit); });
}

void BroodAges::ShareHatchDay(Visits begin, Visits end) {
  const auto tells = [](const VisitRecord& visit) { return visit.hatchDay != 0; };
  const auto first = std::find_if(begin, end, tells);
  if (first == end) return;
  const int hatchDay = first->hatchDay;
  const bool differs =
      std::any_of(first, end, [&](const VisitRecord& visit) { return tells(visit) && visit.hatchDay != hatchDay; });
  if (differs) return;  // which the examiner lists
  for (auto visit = begin; visit != end; ++visit) {
    if (tells(*visit)) continue;
    remarks_.Count(visit->line, "the hatch day is missing, and is that of another row of the brood");
    visit->hatchDay = hatchDay;
    if (visit->age.empty()) visit->age = AgeText(visit->day - hatchDay, visit->line, remarks_);
  }
}

void BroodAges::ShareCounted(Visits begin, Visits end) {
  for (auto before = begin, visit = begin + 1; visit != end; before = visit++) {
    const bool isBehindYoung = before->counted == Stage::Young;  // where no eggs are
    if ((visit->count > 0 && !isBehindYoung) || visit->counted != Stage::Untold) continue;
    visit->counted = before->counted;
    visit->countedUnder = before->countedUnder;
  }
}

bool BroodAges::SettleAge(VisitRecord& visit) {
  if (!visit.age.empty()) return true;
  if (unknownAge_ == UnknownAge::LeftOut) {
    ++leftOut;
    remarks_.NoteLeftOut(visit.line, "its age is not known");
    return false;
  }
  WriteUnknown(visit);
  return true;
}

void BroodAges::WriteUnknown(VisitRecord& visit) {
  const bool chosenEggs = unknownAge_ == UnknownAge::OfEggs;
  const bool ofEggs = visit.counted == Stage::Untold ? chosenEggs : visit.counted == Stage::Eggs;
  ++(ofEggs ? unknownOfEggs : unknownOfYoung);
  visit.age = ofEggs ? "-?" : "?";
  if (ofEggs == chosenEggs) return;
  remarks_.Count(visit.line, fmt::format("the age is not known, and the number is that of \"{}\": written as {} of "
                                         "unknown age",
                                         visit.countedUnder, ofEggs ? "eggs" : "young"));
}

}  // namespace merlane
