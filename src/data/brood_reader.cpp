#include "data/brood_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/record_survey.h"

namespace merlane {
namespace {

/// Fills the tables of `data` with the records that a survey has found.
class TableFiller {
 public:
  TableFiller(const DataText& file, const Survey& survey, BroodData& data, const MessageSink& tell, FieldReader& fields)
      : file_(file), survey_(survey), data_(data), tell_(tell), fields_(fields) {}

  void Fill() {
    ReadCovariateNames();
    data_.EggTotal = data_.JuvTotal = 0;
    data_.MinDate = 366;
    data_.MaxDate = data_.MaxCount = data_.MinAge = 0;
    lineOf_.assign(data_.VisitAge.size(), 0);
    if (ComparesCovariates()) firstVisit_.resize(static_cast<std::size_t>(data_.Broods()));
    for (const SurveyedRecord& record : survey_.records)
      Store({file_.bytes.substr(record.begin, record.length), record.line, file_.utf8}, record);
    data_.TotalRecords = static_cast<std::int32_t>(survey_.records.size());
    data_.CodesAreUtf8 = std::ranges::all_of(data_.BroodCode, IsUtf8);
    if (!file_.bootstrap) TestOrder();
    CountStages();
  }

 private:
  void ReadCovariateNames() {
    DataLines lines(file_.bytes, file_.utf8);
    lines.Next();
    for (int m = 1; m <= data_.NCov; ++m) data_.CovariateName(m) = Trim(lines.Line().Text(record::Covariate(m)));
  }

  void Store(const DataLine& line, const SurveyedRecord& record) {
    if (record.brood == 0) line.Refuse(record::Code, "is no code: the line ends before it");
    const auto b = static_cast<std::size_t>(data_.FirstBrood[record.year] + record.brood - 1);
    const auto v = static_cast<std::size_t>(data_.FirstVisit[b] + record.visit - 1);
    if (lineOf_[v] != 0)
      fields_.Note(Oddity::Lost, [&] { return fmt::format("line {}, by line {}", lineOf_[v], line.Number()); });
    lineOf_[v] = line.Number();
    if (record.visit == 1) data_.BroodCode[b] = line.Text(record::Code);
    data_.VisitYear[v] = static_cast<std::int16_t>(data_.YearAt(record.year));
    StoreDate(line, v);
    data_.HatchDate[b] = fields_.Whole(line, record::HatchDay);
    if (data_.HatchDate[b] == Missing) fields_.Note(Oddity::Mark, line, record::HatchDay, "a hatch day");
    StoreAge(line, b, v);
    StoreCount(line, v);
    StoreCovariates(line, b, record.visit == 1);
  }

  /// A brood's covariates are those of its first visit; where another visit has others, that is noted.
  void StoreCovariates(const DataLine& line, std::size_t b, bool first) {
    if (first && ComparesCovariates()) firstVisit_[b] = line;
    for (int m = 1; m <= data_.NCov; ++m) {
      double& value = data_.CovariatesOf(static_cast<int>(b))[m - 1];
      const RecordField field = record::Covariate(m);
      if (first)
        value = fields_.Covariate(line, m);
      else if (ComparesCovariates() && firstVisit_[b] && line.Text(field) != firstVisit_[b]->Text(field))
        CompareCovariate(line, field, value);
    }
  }

  /// The data of a bootstrap are the program's own.
  bool ComparesCovariates() const { return data_.NCov > 0 && !file_.bootstrap; }

  void CompareCovariate(const DataLine& line, RecordField field, double value) {
    const DataLine::Reading reading = line.Read(field);
    if (!reading.plain || reading.value != value)
      fields_.Note(Oddity::Covariate,
                   [&] { return fmt::format("{}, and {} at the first", line.At(field), Shortest(value)); });
  }

  /// What is derived from a field, which fails with the field's place when it is beyond its range.
  template <class Derive>
  static auto Derived(const DataLine& line, RecordField field, Derive derive) {
    try {
      return derive();
    } catch (const RuntimeFailure& failure) {
      line.Refuse(field, std::string("goes beyond what can be held: ") + failure.what());
    }
  }

  void StoreDate(const DataLine& line, std::size_t v) {
    const std::int16_t date = data_.VisitDate[v] = fields_.Whole(line, record::Date);
    if (date == Missing) fields_.Note(Oddity::Mark, line, record::Date, "a day");
    if (date < data_.MinDate) data_.MinDate = CheckedInt16(5 * (date / 5));
    if (date > data_.MaxDate)
      data_.MaxDate =
          date % 5 == 0 ? date : Derived(line, record::Date, [&] { return CheckedInt16(5 * (date / 5 + 1)); });
  }

  void StoreAge(const DataLine& line, std::size_t b, std::size_t v) {
    const std::string_view text = line.Text(record::Age);
    // The last column of a field that a line ends in is no last column.
    if (!text.empty() && text.back() == '?' && !line.Text({record::Age.last, record::Age.last}).empty()) {
      StoreUnknownAge(line, b, v, text[text.size() - 2]);
      return;
    }
    const double age = data_.VisitAge[v] = fields_.Age(line);
    data_.VisitStage[v] = age < 0 ? -1 : 1;
    if (age != Missing && age < data_.MinAge)
      data_.MinAge = Derived(line, record::Age,
                             [&] { return ToInt16(std::fmod(age, 2) == 0 ? age : (std::trunc(age / 2) - 1) * 2); });
  }

  /// An age written "?": the character before it tells a clutch from a brood.
  void StoreUnknownAge(const DataLine& line, std::size_t b, std::size_t v, char before) {
    data_.VisitStage[v] = before == '-' ? -1 : 1;
    if (before == '-') {
      if (std::exchange(data_.AllClutchAgesKnown, false) && !file_.bootstrap)
        tell_({"At least one clutch lacks clutch age data!",
               "Mortality rates for clutches cannot be modelled as a function of clutch age.", style::Information,
               line.At(record::Age)});
      data_.ClutchAgeKnown[b] = 0;
    } else if (before == ' ') {
      if (std::exchange(data_.AllBroodAgesKnown, false) && !file_.bootstrap)
        tell_({"At least one brood lacks brood age data!",
               "Mortality rates for broods cannot be modelled as a function of brood age.\r\n"
               "Analyses using age as a covariate are unavailable.",
               style::Information, line.At(record::Age)});
      data_.BroodAgeKnown[b] = 0;
    } else {
      fields_.Note(Oddity::NotNumber, line, record::Age, "an unknown age of a brood");
    }
  }

  void StoreCount(const DataLine& line, std::size_t v) {
    const std::int16_t count = data_.VisitCount[v] = fields_.Count(line);
    Derived(line, record::Count, [&] {
      if (count > data_.MaxCount) data_.MaxCount = count % 2 == 0 ? count : CheckedInt16((count / 2 + 1) * 2);
      std::int32_t& total = data_.VisitStage[v] == -1 ? data_.EggTotal : data_.JuvTotal;
      total = ToInt32(static_cast<double>(total) + count);
    });
  }

  /// Counts never rise and ages always do, from each visit of a brood to the next.
  void TestOrder() {
    for (int b = 0; b < data_.Broods(); ++b) {
      const auto first = static_cast<std::size_t>(data_.FirstVisit[static_cast<std::size_t>(b)]);
      const int visits = data_.VisitsOf[static_cast<std::size_t>(b)];
      for (int j = 2; j <= visits; ++j) TestOrder(b, j, first + static_cast<std::size_t>(j) - 1);
    }
  }

  void TestOrder(int b, int j, std::size_t v) {
    CompareDays(b, v);
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
  void CompareDays(int b, std::size_t v) {
    if (!data_.HasRecord(v)) return;
    if (!data_.HasRecord(v - 1)) {
      fields_.Note(Oddity::Gap, [&] {
        return fmt::format("line {}, code \"{}\"", lineOf_[v], Shown(data_.BroodCode[static_cast<std::size_t>(b)]));
      });
      return;
    }
    if (data_.VisitDate[v] > data_.VisitDate[v - 1]) return;
    fields_.Note(Oddity::Days, [&] {
      return fmt::format("line {}, code \"{}\": day {} behind {} of line {}", lineOf_[v],
                         Shown(data_.BroodCode[static_cast<std::size_t>(b)]), data_.VisitDate[v],
                         data_.VisitDate[v - 1], lineOf_[v - 1]);
    });
  }

  void CountStages() {
    for (std::size_t y = 0; y < data_.FirstBrood.size(); ++y)
      for (int b = data_.FirstBrood[y]; b < data_.FirstBrood[y] + data_.BroodsInYear[y]; ++b) {
        const auto first = data_.VisitStage.begin() + data_.FirstVisit[static_cast<std::size_t>(b)];
        const auto last = first + data_.VisitsOf[static_cast<std::size_t>(b)];
        if (std::find(first, last, -1) != last) ++data_.ClutchesInYear[y];
        if (std::find(first, last, 1) != last) ++data_.JuvBroodsInYear[y];
      }
  }

  const DataText& file_;
  const Survey& survey_;
  BroodData& data_;
  const MessageSink& tell_;
  FieldReader& fields_;
  std::vector<int> lineOf_;                          // where in the file each visit stood
  std::vector<std::optional<DataLine>> firstVisit_;  // of each brood, as far as it has been read
};

void TellNothingRead(const BroodData& data, const ReadingReport& report, const MessageSink& tell) {
  tell({"No records read", "Missing clutch, brood or covariate data has caused all records to be skipped",
        style::Critical,
        fmt::format("{} lines behind the header: {} blank, {} without a covariate, {} censored, {} of years other "
                    "than {} to {}",
                    report.Lines, report.skipped.blank, report.skipped.covariate, report.skipped.censored,
                    report.skipped.year, data.FirstYear, data.LastYear)});
}

/// The bytes without the mark that some editors put before the text, which would shift the header's columns.
std::string_view WithoutByteOrderMark(std::string_view bytes) {
  return bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
}

}  // namespace

void ReadTextData(std::string_view bytes, bool bootstrap, BroodData& data, const MessageSink& tell,
                  ReadingReport& report) {
  data.CovariateName.Dimension(data.NCov);
  report = {};
  report.covariates.resize(static_cast<std::size_t>(data.NCov));
  FieldReader fields(report, !bootstrap);
  const DataText file{WithoutByteOrderMark(bytes), IsUtf8(bytes), bootstrap};
  const Survey survey = SurveyRecords(file, data, tell, fields);
  if (survey.records.empty()) TellNothingRead(data, report, tell);
  data.DistinctCodes = survey.DistinctCodes;
  AllocateTables(data, survey.visitsOf);
  TableFiller(file, survey, data, tell, fields).Fill();
  // That nothing was read is told once more, when the tables have been filled with nothing.
  if (survey.records.empty()) TellNothingRead(data, report, tell);
}

}  // namespace merlane
