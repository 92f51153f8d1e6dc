#include "data/record_survey.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

#include "base/numbering.h"
#include "base/runtime_failure.h"
#include "data/alike_codes.h"
#include "data/most_visits.h"
#include "platform/large_pages.h"

namespace merlane {
namespace {

/// Numbers codes, each of so many bytes at most as eight characters take, apart for each `kind`.
class CodeNumbers {
 public:
  std::pair<std::size_t, bool> operator()(std::string_view code, std::size_t kind) {
    Numbers::Key key{};
    if (!code.empty()) std::memcpy(key.data(), code.data(), std::min(code.size(), MostBytes));
    key.back() = kind << 6 | code.size();
    const auto [number, isNew] = numbers_(key);
    return {static_cast<std::size_t>(number), isNew};
  }

 private:
  static constexpr std::size_t MostBytes = std::size_t{4} * record::Width;
  using Numbers = Numbering<MostBytes / sizeof(std::uint64_t) + 1>;
  Numbers numbers_;
};

/// Counts the codes that no earlier year had. The codes of a year behind one that is empty are not found.
class DistinctCodeCounter {
 public:
  explicit DistinctCodeCounter(std::size_t years) : closed_(years, 0) {}

  void Add(std::string_view code, std::size_t year) {
    const auto [number, isNew] = numbers_(code, 0);
    if (isNew) firstYear_.push_back(NotMet);
    std::size_t& firstYear = firstYear_[number];
    if (firstYear >= year) ++count_;
    if (code.empty()) closed_[year] = 1;
    if (!closed_[year]) firstYear = std::min(firstYear, year);
  }
  std::int32_t Count() const { return count_; }

 private:
  static constexpr std::size_t NotMet = std::numeric_limits<std::size_t>::max();
  CodeNumbers numbers_;
  std::vector<std::size_t> firstYear_;  // by number
  std::vector<char> closed_;
  std::int32_t count_ = 0;
};

class Surveyor {
 public:
  Surveyor(const DataText& file, const BroodData& data, const MessageSink& tell, FieldReader& fields)
      : file_(file),
        data_(data),
        tell_(tell),
        fields_(fields),
        years_(static_cast<std::size_t>(std::max(0, data.LastYear - data.FirstYear + 1))),
        codes_(years_.size()) {
    survey_.visitsOf.resize(years_.size());
    survey_.records.reserve(file.bytes.size() / record::Field(record::FieldsBeforeCovariates + data.NCov).last);
    PreferLargePages(survey_.records.data(), survey_.records.capacity() * sizeof(SurveyedRecord));
  }

  Survey Make() {
    DataLines lines(file_.bytes, file_.wide);
    if (!lines.Next()) throw RuntimeFailure("the file is empty: there is no header line");
    CountCovariates(lines.Line());
    CompareHeading(lines.Line());
    while (lines.Next()) Take(lines.Line());
    survey_.DistinctCodes = codes_.Count();
    return std::move(survey_);
  }

 private:
  /// Where a year stands. The record of a brood is told from the next by its code alone.
  struct YearState {
    int brood = 0;
    std::string_view code;  // of that brood; brood 0 has an empty one
  };

  /// How many covariates the header has names for.
  void CountCovariates(const DataLine& header) {
    int& covariates = fields_.report.CovariatesInHeader;
    while (covariates < record::MostCovariates && !header.IsBlank(record::Covariate(covariates + 1))) ++covariates;
  }

  /// A first line whose day, hatch day and count are numbers is a visit.
  void CompareHeading(const DataLine& header) {
    for (const RecordField field : {record::Date, record::HatchDay, record::Count})
      if (header.IsBlank(field) || !header.Read(field).plain) return;
    fields_.Note(Oddity::Heading, [&] { return header.At(record::Count); });
  }

  void Take(const DataLine& line) {
    ReadingReport& report = fields_.report;
    ++report.Lines;
    if (line.IsBlank()) {
      ++report.skipped.blank;
      return;
    }
    fields_.NoteDivision(line, data_.NCov);
    fields_.NoteBeyond(line, data_.NCov);
    if (LacksCovariate(line)) {
      ++report.skipped.covariate;
    } else if (IsCensored(line)) {
      ++report.skipped.censored;
      fields_.Age(line);  // which tells one that is no number: by it the record has been left out
    } else {
      const std::int16_t year = fields_.Whole(line, record::Year);
      if (year < data_.FirstYear || year > data_.LastYear)
        PassOverYear(line, year);
      else
        TakeRecord(line, year);
    }
  }

  bool LacksCovariate(const DataLine& line) {
    for (int m = 1; m <= data_.NCov; ++m) {
      if (!line.IsBlank(record::Covariate(m)) || line.IsBlank(record::Code)) continue;
      ++fields_.report.covariates[static_cast<std::size_t>(m) - 1].empty;
      if (!file_.bootstrap && fields_.report.skipped.covariate == 0)
        tell_({"Some records skipped",
               "Missing brood covariate data has caused data for at least one brood to be skipped", style::Information,
               line.At(record::Covariate(m)) + " has no value of a brood covariate"});
      return true;
    }
    return false;
  }

  bool IsCensored(const DataLine& line) const {
    return (data_.CensorEggs && line.Read(record::Age).value < 0) ||
           (data_.CensorJuvs && line.Read(record::Age).value > 0);
  }

  void PassOverYear(const DataLine& line, std::int16_t year) {
    ReadingReport& report = fields_.report;
    if (report.skipped.year++ == 0) {
      report.FirstOtherYear = report.LastOtherYear = year;
      report.OtherYearLine = line.Number();
    }
    report.FirstOtherYear = std::min<int>(report.FirstOtherYear, year);
    report.LastOtherYear = std::max<int>(report.LastOtherYear, year);
  }

  void TakeRecord(const DataLine& line, std::int16_t year) {
    const auto y = static_cast<std::size_t>(data_.YearIndex(year));
    YearState& state = years_[y];
    const std::string_view code = line.Text(record::Code);
    if (!code.empty() && line.IsBlank(record::Code))
      fields_.Note(Oddity::NoCode, [&] { return line.At(record::Code); });
    if (code != state.code) {
      visit_ = 1;
      if (++state.brood > MostBroodsOfYear)
        RefuseTooMany("broods observed (visited) in " + std::to_string(year), MostBroodsOfYear, line);
      state.code = code;
      codes_.Add(code, y);
      if (!file_.bootstrap) CompareCode(line, code, y);
    }
    if (visit_ > MostVisitsOfBrood) RefuseTooMany("observations (visits) for a single brood", MostVisitsOfBrood, line);
    CountVisit(y, state.brood, line);
    const std::string_view whole = line.Whole();
    survey_.records.push_back({static_cast<std::size_t>(whole.data() - file_.bytes.data()),
                               static_cast<std::uint32_t>(whole.size()), line.Number(), static_cast<std::uint16_t>(y),
                               static_cast<std::int16_t>(state.brood), static_cast<std::int16_t>(visit_)});
    ++visit_;
  }

  /// Whether the code that begins a brood stood in its year before, as it is or in another way of writing.
  void CompareCode(const DataLine& line, std::string_view code, std::size_t y) {
    const auto [number, isNew] = alike_(AlikeCode(code), y);
    if (isNew) {
      written_.push_back({code, line.Number()});
      return;
    }
    const auto& [before, where] = written_[number];
    fields_.Note(before == code ? Oddity::Apart : Oddity::Alike, [&, &before = before, &where = where] {
      return fmt::format("{}, behind \"{}\" of line {}", line.At(record::Code), Shown(before), where);
    });
  }

  /// A record without a code that opens its year belongs to no brood.
  void CountVisit(std::size_t y, int brood, const DataLine& line) {
    if (brood == 0) return;
    std::vector<int>& visitsOf = survey_.visitsOf[y];
    if (brood > static_cast<int>(visitsOf.size())) visitsOf.push_back(0);
    const int before = visitsOf.back();
    visitsOf.back() = std::max(before, visit_);
    places_ += visitsOf.back() - before;
    if (places_ > MostVisits)
      throw RuntimeFailure(
          fmt::format("there is room for {} visits, gaps between records that stand apart included: {}", MostVisits,
                      line.At(record::Code)));
  }

  /// The program's own data are never too large; those of a bootstrap that are have been changed by somebody.
  void RefuseTooMany(const std::string& what, int most, const DataLine& line) const {
    const std::string text = fmt::format("The number of {} exceeds the maximum of {}", what, most);
    if (file_.bootstrap) throw RuntimeFailure(text + ": " + line.At(record::Code));
    RefuseData(text, line.At(record::Code));
  }

  const DataText& file_;
  const BroodData& data_;
  const MessageSink& tell_;
  FieldReader& fields_;

  Survey survey_;
  std::vector<YearState> years_;
  DistinctCodeCounter codes_;
  CodeNumbers alike_;                                      // by year, of what codes have in common with others
  std::vector<std::pair<std::string_view, int>> written_;  // how and in which line each of these was written first
  std::int64_t places_ = 0;                                // for visits, as far as they are known
  int visit_ = 1;  // number of the next visit; goes on across years when a file is not sorted
};

}  // namespace

Survey SurveyRecords(const DataText& file, const BroodData& data, const MessageSink& tell, FieldReader& fields) {
  return Surveyor(file, data, tell, fields).Make();
}

void RefuseData(const std::string& text, const std::string& details) {
  throw FatalDataError{{"Problem reading data - analysis stops", text, style::Critical, details}};
}

}  // namespace merlane
