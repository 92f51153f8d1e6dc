// Random visits, written as people write them in some way or other, imported, and read by the program from the data
// file that was made: exactly the same visits.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <set>

#include "base/text.h"
#include "data/alike_codes.h"
#include "data/brood_reader.h"
#include "import/column_proposal.h"
#include "import/import_visits.h"

namespace merlane {
namespace {

struct Visit {
  int day = 0, count = 0;
  double age = 0;
};

struct Brood {
  int year = 0, hatchDay = 0;
  std::string code;
  std::vector<Visit> visits;
  std::vector<double> covariates;
};

/// How a table is written.
struct Writing {
  Delimiter delimiter = Delimiter::Comma;
  char decimal = '.';
  DateOrder dates = DateOrder::YearMonthDay;
  bool asDates = false;   // days as dates, and years only in them
  bool withAges = false;  // ages, or the hatch day from which they follow
};

class RandomTable {
 public:
  explicit RandomTable(std::mt19937_64& random) : random_(random) {
    writing.delimiter = static_cast<Delimiter>(Below(4));
    writing.decimal = writing.delimiter == Delimiter::Comma || Below(2) == 0 ? '.' : ',';
    writing.dates = static_cast<DateOrder>(Below(4));
    writing.asDates = Below(2) == 0;
    writing.withAges = Below(2) == 0;
    std::set<std::pair<int, std::string>> taken;  // but for ways of writing, which are told
    for (int b = 1 + Below(30); b > 0; --b) {
      Brood brood = RandomBrood();
      if (taken.emplace(brood.year, AlikeCode(brood.code)).second) broods.push_back(std::move(brood));
    }
    std::ranges::sort(
        broods, [](const Brood& a, const Brood& b) { return std::tie(a.year, a.code) < std::tie(b.year, b.code); });
  }

  Writing writing;
  std::vector<Brood> broods;  // in the order in which they will be read

  std::string Text() {
    std::vector<std::string> rows;
    for (const Brood& brood : broods)
      for (const Visit& visit : brood.visits) rows.push_back(Row(brood, visit));
    std::ranges::shuffle(rows, random_);
    std::string text = Joined(
        writing.asDates ? std::vector<std::string>{"code", "date"} : std::vector<std::string>{"year", "code", "day"},
        writing.withAges  ? "age"
        : writing.asDates ? "hatchdate"
                          : "hatchday");
    for (const std::string& row : rows) text += row;
    return text;
  }

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  Brood RandomBrood() {
    static const std::vector<std::string> letters{"A", "b", "7", "0", "\u00D6", "\u00DF", "-", "/", "#", "\u0141"};
    Brood brood;
    brood.year = 1950 + Below(100);
    brood.code = letters[static_cast<std::size_t>(Below(3))];
    for (int i = Below(8); i > 0; --i) brood.code += letters[static_cast<std::size_t>(Below(10))];
    brood.hatchDay = 60 + Below(200);
    int day = brood.hatchDay - 30, count = 20 + Below(1000);
    for (int v = 1 + Below(8); v > 0; --v) {
      day += 1 + Below(9);
      count -= Below(3);
      const double part = writing.withAges ? Below(8) / 8.0 : 0;
      brood.visits.push_back({day, count, day - brood.hatchDay + part});
    }
    for (int m = 0; m < 3; ++m) {
      const double scale = std::vector<double>{1, 1e-3, 1e6, 1e-30, 1e40}[static_cast<std::size_t>(Below(5))];
      brood.covariates.push_back(std::stod(fmt::format("{:.6g}", (Below(2'000'001) - 1'000'000) * scale / 1e6)));
    }
    return brood;
  }

  std::string Number(double number) const {
    std::string text = fmt::format("{}", number);
    std::ranges::replace(text, '.', writing.decimal);
    return text;
  }

  std::string Date(int year, int day) const {
    namespace calendar = std::chrono;
    const calendar::sys_days newYear = calendar::year(year) / calendar::January / 1;
    const calendar::year_month_day date(newYear + calendar::days(day - 1));
    const int y = static_cast<int>(date.year());
    const unsigned m = static_cast<unsigned>(date.month()), d = static_cast<unsigned>(date.day());
    switch (writing.dates) {
      case DateOrder::DayMonthYear:
        return fmt::format("{:02}.{:02}.{}", d, m, y);
      case DateOrder::MonthDayYear:
        return fmt::format("{}/{}/{}", m, d, y);
      case DateOrder::SerialDays:
        return std::to_string((newYear - calendar::sys_days(calendar::year(1899) / calendar::December / 30)).count() +
                              day - 1);
      case DateOrder::DaysSince1970:
        return std::to_string(newYear.time_since_epoch().count() + day - 1);
      case DateOrder::ShortYearMonthDay:
        return fmt::format("{:02}-{:02}-{:02}", y % 100, m, d);
      case DateOrder::YearMonthDay:
        break;
    }
    return fmt::format("{}-{:02}-{:02}", y, m, d);
  }

  std::string Row(const Brood& brood, const Visit& visit) const {
    std::vector<std::string> fields =
        writing.asDates ? std::vector<std::string>{brood.code, Date(brood.year, visit.day)}
                        : std::vector<std::string>{std::to_string(brood.year), brood.code, std::to_string(visit.day)};
    fields.push_back(writing.withAges  ? Number(visit.age)
                     : writing.asDates ? Date(brood.year, brood.hatchDay)
                                       : std::to_string(brood.hatchDay));
    fields.push_back(std::to_string(visit.count));
    for (const double covariate : brood.covariates) fields.push_back(Number(covariate));
    return Line(fields);
  }

  std::string Joined(std::vector<std::string> fields, const std::string& ageOrHatch) const {
    fields.insert(fields.end(), {ageOrHatch, "count", "cov1", "cov2", "cov3"});
    return Line(fields);
  }

  std::string Line(const std::vector<std::string>& fields) const {
    static constexpr std::string_view delimiters = ",;\t ";
    std::string line;
    for (const std::string& field : fields) {
      if (!line.empty()) line += delimiters[static_cast<std::size_t>(writing.delimiter)];
      line += field;
    }
    return line + "\n";
  }

  std::mt19937_64& random_;
};

/// The choices that the writing asks for.
ImportChoices Choices(const Writing& writing) {
  ImportChoices choices;
  choices.delimiter = writing.delimiter;
  choices.decimal = writing.decimal;
  choices.dates = writing.dates;
  choices.roles = writing.asDates ? std::vector<Role>{Role::Code, Role::Date}
                                  : std::vector<Role>{Role::Year, Role::Code, Role::Day};
  choices.roles.push_back(writing.withAges ? Role::Age : writing.asDates ? Role::HatchDate : Role::HatchDay);
  choices.roles.insert(choices.roles.end(), {Role::Count, Role::Covariate, Role::Covariate, Role::Covariate});
  return choices;
}

TEST(RoundTrip, WhatIsImportedIsReadExactlyAsItWas) {
  std::mt19937_64 random(19);
  for (int i = 0; i < 400; ++i) {
    RandomTable table(random);
    SCOPED_TRACE(i);
    const Imported imported = ImportRows(table.Text(), Choices(table.writing));
    EXPECT_EQ(imported.leftOut, 0);
    BroodData data;
    data.FirstYear = static_cast<std::int16_t>(imported.firstYear);
    data.LastYear = static_cast<std::int16_t>(imported.lastYear);
    data.NCov = 3;
    ReadingReport report;
    ReadTextData(
        imported.text, false, data, [](const Message& m) { ADD_FAILURE() << m.title; }, report);
    EXPECT_FALSE(report.oddities.Any()) << report.oddities.Details(report.Lines);
    ASSERT_EQ(data.Broods(), static_cast<int>(table.broods.size()));
    std::size_t v = 0;
    for (std::size_t b = 0; b < table.broods.size(); ++b) {
      const Brood& brood = table.broods[b];
      EXPECT_EQ(Trim(data.BroodCode[b]), brood.code);
      EXPECT_EQ(data.BroodYear[b], brood.year);
      EXPECT_EQ(data.HatchDate[b], table.writing.withAges ? 0 : brood.hatchDay);
      for (int m = 0; m < 3; ++m)
        EXPECT_EQ(data.CovariatesOf(static_cast<int>(b))[m], brood.covariates[static_cast<std::size_t>(m)]);
      ASSERT_EQ(data.VisitsOf[b], static_cast<int>(brood.visits.size()));
      for (const Visit& visit : brood.visits) {
        EXPECT_EQ(data.VisitYear[v], brood.year);
        EXPECT_EQ(data.VisitDate[v], visit.day);
        EXPECT_EQ(data.VisitAge[v], visit.age);
        EXPECT_EQ(data.VisitCount[v], visit.count);
        ++v;
      }
    }
    if (HasFailure()) break;
  }
}

TEST(RoundTrip, AFileAsItIsProposedIsReadTheSame) {
  std::mt19937_64 random(23);
  int compared = 0;
  for (int i = 0; i < 200; ++i) {
    RandomTable table(random);
    if (table.broods.size() < 3) continue;  // enough rows to see what they are
    const std::string text = table.Text();
    SCOPED_TRACE(i);
    const ImportChoices choices = ProposedChoices(text);
    EXPECT_EQ(choices.delimiter, table.writing.delimiter) << text;
    if (choices.dates != table.writing.dates && table.writing.asDates) continue;  // days that fit two orders
    EXPECT_EQ(ImportRows(text, choices).text, ImportRows(text, Choices(table.writing)).text) << text;
    ++compared;
    if (HasFailure()) break;
  }
  EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace merlane
