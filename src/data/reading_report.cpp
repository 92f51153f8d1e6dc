#include "data/reading_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string_view>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr const char* LineEnd = "\r\n";

std::string Counted(int n, const char* one, const char* many) { return fmt::format("{} {}", n, n == 1 ? one : many); }

/// A part of an enumeration in a few words; nothing for none.
void Append(std::string& list, const std::string& part) { list += (list.empty() ? "" : ", ") + part; }

std::string WhatOf(Oddity kind, int count) {
  switch (kind) {
    case Oddity::Separator:
      return Counted(count, "line does not fit the fixed columns", "lines do not fit the fixed columns");
    case Oddity::NotNumber:
      return Counted(count, "field is no number", "fields are no numbers");
    case Oddity::Rounded:
      return Counted(count, "whole number has decimals", "whole numbers have decimals");
    case Oddity::Empty:
      return Counted(count, "number is empty and was read as 0", "numbers are empty and were read as 0");
    case Oddity::Mark:
      return Counted(count, "value is -999, which stands for no value", "values are -999, which stands for no value");
    case Oddity::Heading:
      return "the first line holds a visit where a heading belongs, and was not read";
    case Oddity::Negative:
      return Counted(count, "count is negative", "counts are negative");
    case Oddity::Days:
      return Counted(count, "visit is on no later day than the one before",
                     "visits are on no later day than those before");
    case Oddity::Apart:
      return Counted(count, "code stands again behind other codes, as another brood",
                     "codes stand again behind other codes, as other broods");
    case Oddity::Gap:
      return Counted(count, "visit stands apart from its brood's visit before, and nothing is fitted between them",
                     "visits stand apart from their brood's visit before, and nothing is fitted between them") +
             " (sort the file by year, code and day)";
    case Oddity::Lost:
      return Counted(count, "record was lost to another of its brood that stands apart",
                     "records were lost to others of their brood that stand apart") +
             " (sort the file by year, code and day)";
    case Oddity::Alike:
      return Counted(count,
                     "code differs from another in case, blanks, accents, zeros or marks alone, and is another brood",
                     "codes differ from others in case, blanks, accents, zeros or marks alone, and are other broods");
    case Oddity::Covariate:
      return Counted(count, "covariate is not as at the brood's first visit, which counts",
                     "covariates are not as at the brood's first visit, which counts");
    case Oddity::Hatch:
      return Counted(count, "hatch day is not that of the brood's visit before",
                     "hatch days are not those of their brood's visit before") +
             " (the last one of a brood counts)";
    case Oddity::AgeOfDay:
      return Counted(count, "age is not the days since the hatch day beside it",
                     "ages are not the days since the hatch day beside them") +
             " (the age counts)";
    case Oddity::Aging:
      return Counted(count, "visit has a brood older by another number than that by which its day is later",
                     "visits have broods older by other numbers than those by which their days are later") +
             " (the ages count)";
    case Oddity::NoCode:
      return Counted(count, "record has no code", "records have no code, and those behind each other are one brood");
    case Oddity::Beyond:
      return Counted(count, "line goes on behind its last field, and that was not read",
                     "lines go on behind their last field, and that was not read");
    case Oddity::OtherYear:
      return Counted(count, "day is none of its year", "days are none of their years") +
             " (of 1 to 366; behind a New Year they count on)";
  }
  return "";
}

/// Records that passed, broods, years and codes.
std::string Records(const BroodData& data) {
  const std::set<std::string_view> codes(data.BroodCode.begin(), data.BroodCode.end());
  int clutches = 0, broods = 0;
  for (const int n : data.ClutchesInYear) clutches += n;
  for (const int n : data.JuvBroodsInYear) broods += n;
  return fmt::format("{} of {} with {}: {} with eggs, {} with juveniles",
                     Counted(data.TotalRecords, "record", "records"), Counted(data.Broods(), "brood", "broods"),
                     Counted(static_cast<int>(codes.size()), "code", "codes"), clutches, broods);
}

/// The years that have records, and how many broods each has.
std::string Years(const BroodData& data) {
  constexpr int MostNamed = 12;
  std::string years;
  int named = 0, left = 0;
  for (int y = 0; y < data.Years(); ++y) {
    const int broods = data.BroodsInYear[static_cast<std::size_t>(y)];
    if (broods == 0) continue;
    if (++named > MostNamed)
      ++left;
    else
      Append(years, fmt::format("{} ({})", data.YearAt(y), broods));
  }
  return "Years (broods): " + years + (left > 0 ? fmt::format(" and {} more", left) : "");
}

std::string DaysAndCounts(const BroodData& data) {
  int first = 0, last = 0, eggs = 0, juveniles = 0, eggsUnknown = 0, juvenilesUnknown = 0;
  bool any = false;
  for (std::size_t v = 0; v < data.VisitAge.size(); ++v) {
    if (!data.HasRecord(v)) continue;
    const int day = data.VisitDate[v];
    first = any ? std::min(first, day) : day;
    last = any ? std::max(last, day) : day;
    any = true;
    const bool ofEggs = data.VisitStage[v] == -1;
    if (data.VisitAge[v] == Missing) ++(ofEggs ? eggsUnknown : juvenilesUnknown);
    if (data.VisitCount[v] != Missing) (ofEggs ? eggs : juveniles) += data.VisitCount[v];
  }
  return fmt::format("Days {} to {}; counted: {}, {}; unknown ages: {} of eggs, {} of juveniles", first, last,
                     Counted(eggs, "egg", "eggs"), Counted(juveniles, "juvenile", "juveniles"), eggsUnknown,
                     juvenilesUnknown);
}

/// Which lines were passed over, and why.
std::string PassedOver(const BroodData& data, const ReadingReport& report) {
  std::string list;
  if (report.skipped.blank > 0) Append(list, Counted(report.skipped.blank, "blank line", "blank lines"));
  if (report.skipped.covariate > 0)
    Append(list, Counted(report.skipped.covariate, "record without a covariate", "records without a covariate"));
  if (report.skipped.censored > 0)
    Append(list, Counted(report.skipped.censored, "censored record", "censored records"));
  if (report.skipped.year > 0)
    Append(list, fmt::format("{} other than {} to {} (from {} to {}, first in line {})",
                             Counted(report.skipped.year, "record of a year", "records of years"), data.FirstYear,
                             data.LastYear, report.FirstOtherYear, report.LastOtherYear, report.OtherYearLine));
  return list.empty() ? "" : "Passed over: " + list + LineEnd;
}

/// What the broods have of covariate m.
std::string Covariate(const BroodData& data, const ReadingReport& report, int m) {
  double n = 0, sum = 0, least = 0, most = 0;
  for (int b = 0; b < data.Broods(); ++b) {
    const double x = data.CovariatesOf(b)[m - 1];
    if (x == Missing) continue;
    least = n == 0 ? x : std::min(least, x);
    most = n == 0 ? x : std::max(most, x);
    n += 1;
    sum += x;
  }
  const ReadingReport::CovariateFields& fields = report.covariates[static_cast<std::size_t>(m) - 1];
  std::string text = fmt::format("Covariate {} \"{}\": ", m, Shown(data.CovariateName(m)));
  text += n == 0 ? "no values" : fmt::format("{} to {}, mean {:.6g}", Shortest(least), Shortest(most), sum / n);
  if (fields.empty > 0) text += fmt::format("; empty in {}", Counted(fields.empty, "record", "records"));
  if (fields.notNumbers > 0) text += fmt::format("; no number in {}", Counted(fields.notNumbers, "record", "records"));
  return text + LineEnd;
}

}  // namespace

bool Oddities::Any() const {
  return std::ranges::any_of(kinds_, [](const Kind& kind) { return kind.count > 0; });
}

std::string Oddities::Details(int lines) const {
  std::string text;
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    const Kind& kind = kinds_[i];
    if (kind.count == 0) continue;
    text += WhatOf(static_cast<Oddity>(i), kind.count);
    if (static_cast<Oddity>(i) == Oddity::Separator)
      text +=
          fmt::format(" (of {}): it may be another kind of file. They were read by their columns all the same", lines);
    text += std::string(":") + LineEnd;
    for (const std::string& where : kind.first) text += "  " + where + LineEnd;
    if (kind.count > MostShown) text += fmt::format("  and {} more{}", kind.count - MostShown, LineEnd);
  }
  return text;
}

std::string Oddities::InPassing() const {
  std::string list;
  for (std::size_t i = 0; i < kinds_.size(); ++i)
    if (kinds_[i].count > 0) Append(list, WhatOf(static_cast<Oddity>(i), kinds_[i].count));
  return list.empty() ? "" : "Look at the data: " + list;
}

std::string WhatWasRead(const BroodData& data, const ReadingReport& report) {
  std::string text = Records(data) + LineEnd;
  if (data.TotalRecords > 0) text += Years(data) + LineEnd + DaysAndCounts(data) + LineEnd;
  text += PassedOver(data, report);
  for (int m = 1; m <= data.NCov; ++m) text += Covariate(data, report, m);
  if (report.CovariatesInHeader > data.NCov)
    text += fmt::format("The file has {}; {} were read{}",
                        Counted(report.CovariatesInHeader, "covariate", "covariates"), data.NCov, LineEnd);
  text.resize(text.size() - 2);
  return text;
}

}  // namespace merlane
