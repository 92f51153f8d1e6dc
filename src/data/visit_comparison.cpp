#include "data/visit_comparison.h"

#include <fmt/format.h>

#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "data/record_survey.h"

namespace merlane {

VisitComparison::VisitComparison(const BroodData& data, FieldReader& fields)
    : data_(data), fields_(fields), lineOf_(data.VisitAge.size(), 0), hatchDayOf_(data.VisitAge.size(), 0) {
  if (data.NCov > 0) firstVisit_.resize(static_cast<std::size_t>(data.Broods()));
}

void VisitComparison::Take(const DataLine& line, std::size_t b, std::size_t v) {
  if (lineOf_[v] != 0)
    fields_.Note(Oddity::Lost, [&] { return fmt::format("line {}, by line {}", lineOf_[v], line.Number()); });
  lineOf_[v] = line.Number();
  hatchDayOf_[v] = data_.HatchDate[b];
  CompareAge(line, b, v);
  if (data_.NCov == 0) return;
  if (v == static_cast<std::size_t>(data_.FirstVisit[b]))
    firstVisit_[b] = line;
  else if (firstVisit_[b])
    CompareCovariates(line, b);
}

/// An age is the days since the hatch day. What it has beyond a whole day may be the time of day. An empty one is told
/// as such.
void VisitComparison::CompareAge(const DataLine& line, std::size_t b, std::size_t v) {
  const double age = data_.VisitAge[v];
  const int day = data_.VisitDate[v], hatchDay = hatchDayOf_[v];
  if (!TellsHatchDay(v) || day == Missing || line.IsBlank(record::Age)) return;
  if (age == Missing) return CompareUnknownAge(line, b, v);
  if (std::abs(age - (day - hatchDay)) < 1) return;
  fields_.Note(Oddity::AgeOfDay, [&] {
    return fmt::format("line {}, code \"{}\": age {}, and {} on day {} with the hatch day {}", line.Number(),
                       Shown(data_.BroodCode[b]), Shortest(age), day - hatchDay, day, hatchDay);
  });
}

/// An unknown age of eggs behind the hatch day. One of young is often that of whatever was there.
void VisitComparison::CompareUnknownAge(const DataLine& line, std::size_t b, std::size_t v) {
  const int day = data_.VisitDate[v], hatchDay = hatchDayOf_[v];
  if (data_.VisitStage[v] != -1 || day <= hatchDay || !Trim(line.Text(record::Age)).ends_with('?')) return;
  fields_.Note(Oddity::AgeOfDay, [&] {
    return fmt::format("line {}, code \"{}\": eggs of unknown age, and {} on day {} with the hatch day {}",
                       line.Number(), Shown(data_.BroodCode[b]), day - hatchDay, day, hatchDay);
  });
}

/// Whether the record of a visit has a hatch day; 0 stands for none.
bool VisitComparison::TellsHatchDay(std::size_t v) const { return hatchDayOf_[v] != 0 && hatchDayOf_[v] != Missing; }

/// A brood's covariates are those of its first visit. Those of others are told all the same where they are no numbers.
void VisitComparison::CompareCovariates(const DataLine& line, std::size_t b) {
  for (int m = 1; m <= data_.NCov; ++m) {
    const RecordField field = record::Covariate(m);
    const bool allAreNumbers = fields_.report.covariates[static_cast<std::size_t>(m) - 1].notNumbers == 0;
    if (allAreNumbers && line.Text(field) == firstVisit_[b]->Text(field)) continue;
    const double first = data_.CovariatesOf(static_cast<int>(b))[m - 1];
    if (fields_.Covariate(line, m) != first)
      fields_.Note(Oddity::Covariate,
                   [&] { return fmt::format("{}, and {} at the first", line.At(field), Shortest(first)); });
  }
}

void VisitComparison::TestOrder() const {
  for (int b = 0; b < data_.Broods(); ++b) {
    const auto first = static_cast<std::size_t>(data_.FirstVisit[static_cast<std::size_t>(b)]);
    const int visits = data_.VisitsOf[static_cast<std::size_t>(b)];
    for (int j = 2; j <= visits; ++j) TestOrder(b, j, first + static_cast<std::size_t>(j) - 1);
  }
}

void VisitComparison::TestOrder(int b, int j, std::size_t v) const {
  CompareDays(b, v);
  if (data_.HasRecord(v) && data_.HasRecord(v - 1)) {
    CompareHatchDays(b, v);
    CompareAging(b, v);
  }
  const int before = data_.VisitCount[v - 1], count = data_.VisitCount[v];
  if (before == Missing || count == Missing) return;
  const auto refuse = [&](const char* what, const std::string& values) {
    const std::string& code = data_.BroodCode[static_cast<std::size_t>(b)];
    RefuseData(fmt::format("{} was encountered at visit #{} of brood #{} in year {}", what, j, data_.BroodNumber(b),
                           data_.BroodYear[static_cast<std::size_t>(b)]),
               fmt::format("line {}, code \"{}\": {}", lineOf_[v], Shown(code), values));
  };
  if (count > before)
    refuse("An increase in clutch or brood size",
           fmt::format("{} behind {} of line {}", count, before, lineOf_[v - 1]));
  const double ageBefore = data_.VisitAge[v - 1], age = data_.VisitAge[v];
  if (ageBefore != Missing && age != Missing && age <= ageBefore)
    refuse("An non-increase in brood age",
           fmt::format("age {} behind {} of line {}", Shortest(age), Shortest(ageBefore), lineOf_[v - 1]));
}

/// A visit stands behind the one before it, and is on a later day. Where ages are unknown, time is measured by these
/// days alone.
void VisitComparison::CompareDays(int b, std::size_t v) const {
  if (!data_.HasRecord(v)) return;
  const std::string& code = data_.BroodCode[static_cast<std::size_t>(b)];
  if (!data_.HasRecord(v - 1)) {
    fields_.Note(Oddity::Gap, [&] { return fmt::format("line {}, code \"{}\"", lineOf_[v], Shown(code)); });
    return;
  }
  if (data_.VisitDate[v] > data_.VisitDate[v - 1]) return;
  fields_.Note(Oddity::Days, [&] {
    return fmt::format("line {}, code \"{}\": day {} behind {} of line {}", lineOf_[v], Shown(code), data_.VisitDate[v],
                       data_.VisitDate[v - 1], lineOf_[v - 1]);
  });
}

/// A brood has one hatch day, which its first visits need not tell. The last one of the file counts, as none, too.
void VisitComparison::CompareHatchDays(int b, std::size_t v) const {
  if (!TellsHatchDay(v - 1) || hatchDayOf_[v] == hatchDayOf_[v - 1]) return;
  fields_.Note(Oddity::Hatch, [&] {
    return fmt::format("line {}, code \"{}\": hatch day {} behind {} of line {}", lineOf_[v],
                       Shown(data_.BroodCode[static_cast<std::size_t>(b)]), hatchDayOf_[v], hatchDayOf_[v - 1],
                       lineOf_[v - 1]);
  });
}

/// Ages go on with the days. Where both visits have a hatch day, each age has been compared with that.
void VisitComparison::CompareAging(int b, std::size_t v) const {
  if (TellsHatchDay(v) && TellsHatchDay(v - 1)) return;
  if (data_.VisitAge[v] == Missing || data_.VisitAge[v - 1] == Missing) return;
  const double aged = data_.VisitAge[v] - data_.VisitAge[v - 1];
  const int days = data_.VisitDate[v] - data_.VisitDate[v - 1];
  if (days <= 0 || std::abs(aged - days) < 1) return;  // a day that is no later is told as such
  fields_.Note(Oddity::Aging, [&] {
    return fmt::format("line {}, code \"{}\": older by {} than in line {}, and its day is later by {}", lineOf_[v],
                       Shown(data_.BroodCode[static_cast<std::size_t>(b)]), Shortest(aged), lineOf_[v - 1], days);
  });
}

}  // namespace merlane
