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
#include "data/visit_comparison.h"

namespace merlane {
namespace {

/// Fills the tables of `data` with the records that a survey has found.
class TableFiller {
 public:
  TableFiller(const DataText& file, const Survey& survey, BroodData& data, const MessageSink& tell, FieldReader& fields)
      : file_(file), survey_(survey), data_(data), tell_(tell), fields_(fields) {
    if (!file.bootstrap) comparison_.emplace(data, fields);  // whose data are the program's own
  }

  void Fill() {
    ReadCovariateNames();
    data_.EggTotal = data_.JuvTotal = 0;
    data_.MinDate = 366;
    data_.MaxDate = data_.MaxCount = data_.MinAge = 0;
    for (const SurveyedRecord& record : survey_.records)
      Store({file_.bytes.substr(record.begin, record.length), record.line, file_.wide}, record);
    data_.TotalRecords = static_cast<std::int32_t>(survey_.records.size());
    data_.CodesAreUtf8 = std::ranges::all_of(data_.BroodCode, IsUtf8);
    if (comparison_) comparison_->TestOrder();
    CountStages();
  }

 private:
  void ReadCovariateNames() {
    DataLines lines(file_.bytes, file_.wide);
    lines.Next();
    for (int m = 1; m <= data_.NCov; ++m) data_.CovariateName(m) = Trim(lines.Line().Text(record::Covariate(m)));
  }

  void Store(const DataLine& line, const SurveyedRecord& record) {
    if (record.brood == 0) line.Refuse(record::Code, "is no code: the line ends before it");
    const auto b = static_cast<std::size_t>(data_.FirstBrood[record.year] + record.brood - 1);
    const auto v = static_cast<std::size_t>(data_.FirstVisit[b] + record.visit - 1);
    if (record.visit == 1) data_.BroodCode[b] = line.Text(record::Code);
    data_.VisitYear[v] = static_cast<std::int16_t>(data_.YearAt(record.year));
    StoreDate(line, v);
    data_.HatchDate[b] = fields_.Day(line, record::HatchDay, "a hatch day");
    StoreAge(line, b, v);
    StoreCount(line, v);
    if (record.visit == 1)
      for (int m = 1; m <= data_.NCov; ++m) data_.CovariatesOf(static_cast<int>(b))[m - 1] = fields_.Covariate(line, m);
    if (comparison_) comparison_->Take(line, b, v);
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
    const std::int16_t date = data_.VisitDate[v] = fields_.Day(line, record::Date, "a day");
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
  std::optional<VisitComparison> comparison_;
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
  const DataText file{WithoutByteOrderMark(bytes), HasWideCharacters(bytes), bootstrap};
  const Survey survey = SurveyRecords(file, data, tell, fields);
  if (survey.records.empty()) TellNothingRead(data, report, tell);
  data.DistinctCodes = survey.DistinctCodes;
  AllocateTables(data, survey.visitsOf);
  TableFiller(file, survey, data, tell, fields).Fill();
  // That nothing was read is told once more, when the tables have been filled with nothing.
  if (survey.records.empty()) TellNothingRead(data, report, tell);
}

}  // namespace merlane
