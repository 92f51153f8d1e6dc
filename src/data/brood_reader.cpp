#include "data/brood_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

/// Most visits of a brood and most broods of a year that the program takes.
constexpr int MostOfEach = 32000;

/// What stood in the file, fit to be shown: anything but printable ASCII as its code.
std::string Shown(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    if (c >= ' ' && c <= '~')
      shown += c;
    else
      shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
  }
  return shown;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

/// Reads the common field, blanks and a whole number, without a detour; false for anything else.
bool PlainWhole(std::string_view field, double& number) {
  std::size_t i = 0;
  while (i < field.size() && field[i] == ' ') ++i;
  const bool negative = i < field.size() && field[i] == '-';
  if (negative) ++i;
  const std::size_t digits = i;
  double magnitude = 0;
  for (; i < field.size() && field[i] >= '0' && field[i] <= '9'; ++i) magnitude = magnitude * 10 + (field[i] - '0');
  if (i == digits || i - digits > 8) return false;
  while (i < field.size() && field[i] == ' ') ++i;
  number = negative ? -magnitude : magnitude;
  return i == field.size();
}

/// The lines of a text, one after the other, in place.
class LineCursor {
 public:
  explicit LineCursor(std::string_view bytes) : rest_(bytes) {}

  bool Next() {
    if (rest_.empty()) return false;
    std::size_t end = 0;
    while (end < rest_.size() && rest_[end] != '\n' && rest_[end] != '\r') ++end;
    line_ = rest_.substr(0, end);
    if (end + 1 < rest_.size() && rest_[end] == '\r' && rest_[end + 1] == '\n') ++end;
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++number_;
    return true;
  }
  std::string_view Line() const { return line_; }
  int LineNumber() const { return number_; }

  std::string_view Text(RecordField field) const { return Columns(line_, field.first, field.last); }
  double Number(RecordField field) const {
    double number = 0;
    if (PlainWhole(Text(field), number)) return number;
    try {
      return LenientNumber(Text(field));
    } catch (const RuntimeFailure&) {
      throw RuntimeFailure(At(field) + " is too large a number");
    }
  }
  std::int16_t Int16(RecordField field) const {
    const double number = Number(field);
    try {
      return ToInt16(number);
    } catch (const RuntimeFailure&) {
      throw RuntimeFailure(At(field) + " is beyond the range of -32768 to 32767");
    }
  }
  /// Where a field stands, and what stands there.
  std::string At(RecordField field) const {
    return fmt::format("line {}, columns {} to {}: \"{}\"", number_, field.first, field.last, Shown(Text(field)));
  }

 private:
  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
};

/// Counts the codes that no earlier year had. The codes of a year behind one that is empty are not found.
class DistinctCodeCounter {
 public:
  explicit DistinctCodeCounter(std::size_t years) : closed_(years, 0) {}

  void Add(std::string_view code, std::size_t year) {
    const auto found = firstYear_.find(code);
    if (found == firstYear_.end() || found->second >= year) ++count_;
    if (code.empty()) closed_[year] = 1;
    if (closed_[year]) return;
    if (found == firstYear_.end())
      firstYear_.emplace(code, year);
    else
      found->second = std::min(found->second, year);
  }
  std::int32_t Count() const { return count_; }

 private:
  std::unordered_map<std::string_view, std::size_t> firstYear_;
  std::vector<char> closed_;
  std::int32_t count_ = 0;
};

class Reader {
 public:
  Reader(std::string_view bytes, bool bootstrap, BroodData& data, const MessageSink& tell)
      : bytes_(bytes), bootstrap_(bootstrap), data_(data), tell_(tell) {}

  void Read() {
    const auto years = static_cast<std::size_t>(std::max(0, data_.LastYear - data_.FirstYear + 1));
    visitsOf_.resize(years);
    DistinctCodeCounter codes(years);
    codes_ = &codes;
    Pass(1);
    data_.DistinctCodes = codes.Count();
    AllocateTables(data_, visitsOf_);
    lineOf_.assign(data_.VisitAge.size(), 0);
    Pass(2);
    if (!bootstrap_) TestOrder();
    CountStages();
  }

 private:
  /// Where the reading of a year stands. The record of a brood is told from the next by its code alone.
  struct YearState {
    int brood = 0;
    std::string_view code;  // of that brood; brood 0 has an empty one
  };
  /// Why lines were passed over.
  struct Skipped {
    int blank = 0, covariate = 0, censored = 0, year = 0;
  };

  void Pass(int pass) {
    pass_ = pass;
    maxVisits_ = pass == 1 ? MostOfEach : largestVisit_;
    maxBroods_ = pass == 1 ? MostOfEach : data_.MaxBroods;
    years_.assign(visitsOf_.size(), {});
    skipped_ = {};
    records_ = 0;
    visit_ = 1;
    data_.EggTotal = data_.JuvTotal = 0;
    data_.MinDate = 366;
    data_.MaxDate = data_.MaxCount = data_.MinAge = 0;

    LineCursor cursor(bytes_);
    if (!cursor.Next()) throw RuntimeFailure("the file is empty: there is no header line");
    if (pass == 2)
      for (int m = 1; m <= data_.NCov; ++m) data_.CovariateName(m) = Trim(cursor.Text(record::Covariate(m)));
    while (visit_ <= maxVisits_ + 1 && cursor.Next()) TakeLine(cursor);
    if (records_ == 0) TellNothingRead(cursor.LineNumber() - 1);
    data_.TotalRecords = records_;
  }

  void TakeLine(const LineCursor& line) {
    if (IsBlank(line.Line())) {
      ++skipped_.blank;
    } else if (LacksCovariate(line)) {
      ++skipped_.covariate;
    } else if (IsCensored(line)) {
      ++skipped_.censored;
    } else {
      const std::int16_t year = line.Int16(record::Year);
      if (year < data_.FirstYear || year > data_.LastYear)
        ++skipped_.year;
      else
        TakeRecord(line, year);
    }
  }

  bool LacksCovariate(const LineCursor& line) {
    for (int m = 1; m <= data_.NCov; ++m) {
      if (!IsBlank(line.Text(record::Covariate(m))) || IsBlank(line.Text(record::Code))) continue;
      if (pass_ == 1 && !bootstrap_ && skipped_.covariate == 0)
        tell_({"Some records skipped",
               "Missing brood covariate data has caused data for at least one brood to be skipped", style::Information,
               line.At(record::Covariate(m)) + " has no value of a brood covariate"});
      return true;
    }
    return false;
  }

  bool IsCensored(const LineCursor& line) const {
    return (data_.CensorEggs && line.Number(record::Age) < 0) || (data_.CensorJuvs && line.Number(record::Age) > 0);
  }

  void TakeRecord(const LineCursor& line, std::int16_t year) {
    const auto y = static_cast<std::size_t>(data_.YearIndex(year));
    YearState& state = years_[y];
    const std::string_view code = line.Text(record::Code);
    if (code != state.code) {
      visit_ = 1;
      ++state.brood;
      state.code = code;
      if (pass_ == 1) codes_->Add(code, y);
    }
    if (!bootstrap_) RefuseTooMany(line, year, state.brood);
    if (pass_ == 1)
      Measure(line, y, state.brood);
    else
      Store(line, y, state.brood, code);
    ++records_;
    ++visit_;
  }

  void RefuseTooMany(const LineCursor& line, int year, int brood) const {
    if (visit_ == maxVisits_ + 1)
      Fatal(fmt::format("The number of observations (visits) for a single brood exceeds the maximum of {}", maxVisits_),
            line.At(record::Code));
    if (brood > maxBroods_)
      Fatal(fmt::format("The number of broods observed (visited) in {} exceeds the maximum of {}", year, maxBroods_),
            line.At(record::Code));
  }

  /// First pass: notes how many visits each brood has. A record without a code that opens its year belongs to no brood.
  void Measure(const LineCursor& line, std::size_t y, int brood) {
    if (brood > MostOfEach) throw RuntimeFailure(line.At(record::Code) + " is one brood too many");
    largestVisit_ = std::max(largestVisit_, visit_);
    std::vector<int>& visitsOf = visitsOf_[y];
    if (brood > static_cast<int>(visitsOf.size())) visitsOf.push_back(0);
    if (brood > 0) visitsOf.back() = std::max(visitsOf.back(), visit_);
  }

  /// Second pass: stores the record as visit `visit_` of the brood.
  void Store(const LineCursor& line, std::size_t y, int brood, std::string_view code) {
    if (brood == 0) throw RuntimeFailure(line.At(record::Code) + " is no code: the line ends before it");
    if (brood > data_.BroodsInYear[y]) throw RuntimeFailure(line.At(record::Code) + " is one brood too many");
    const auto b = static_cast<std::size_t>(data_.FirstBrood[y] + brood - 1);
    if (visit_ > data_.VisitsOf[b]) throw RuntimeFailure(line.At(record::Code) + " has one visit too many");
    const auto v = static_cast<std::size_t>(data_.FirstVisit[b] + visit_ - 1);
    lineOf_[v] = line.LineNumber();
    data_.BroodCode[b] = code;
    data_.VisitYear[v] = static_cast<std::int16_t>(data_.YearAt(static_cast<int>(y)));
    StoreDate(line, v);
    data_.HatchDate[b] = line.Int16(record::HatchDay);
    StoreAge(line, b, v);
    StoreCount(line, v);
    if (visit_ == 1)
      for (int m = 1; m <= data_.NCov; ++m)
        data_.CovariatesOf(static_cast<int>(b))[m - 1] = line.Number(record::Covariate(m));
  }

  void StoreDate(const LineCursor& line, std::size_t v) {
    const std::int16_t date = data_.VisitDate[v] = line.Int16(record::Date);
    if (date < data_.MinDate) data_.MinDate = CheckedInt16(5 * (date / 5));
    if (date > data_.MaxDate) data_.MaxDate = date % 5 == 0 ? date : CheckedInt16(5 * (date / 5 + 1));
  }

  void StoreAge(const LineCursor& line, std::size_t b, std::size_t v) {
    const std::string_view text = line.Text(record::Age);
    if (text.size() == static_cast<std::size_t>(record::Width) && text.back() == '?') {
      StoreUnknownAge(line, b, v, text[text.size() - 2]);
      return;
    }
    const double age = data_.VisitAge[v] = line.Number(record::Age);
    data_.VisitStage[v] = age < 0 ? -1 : 1;
    if (age != Missing && age < data_.MinAge)
      data_.MinAge = ToInt16(std::fmod(age, 2) == 0 ? age : (std::trunc(age / 2) - 1) * 2);
  }

  /// An age written "?": the character before it tells a clutch from a brood.
  void StoreUnknownAge(const LineCursor& line, std::size_t b, std::size_t v, char before) {
    data_.VisitStage[v] = before == '-' ? -1 : 1;
    if (before == '-') {
      if (std::exchange(data_.AllClutchAgesKnown, false) && !bootstrap_)
        tell_({"At least one clutch lacks clutch age data!",
               "Mortality rates for clutches cannot be modelled as a function of clutch age.", style::Information,
               line.At(record::Age)});
      data_.ClutchAgeKnown[b] = 0;
    } else if (before == ' ') {
      if (std::exchange(data_.AllBroodAgesKnown, false) && !bootstrap_)
        tell_({"At least one brood lacks brood age data!",
               "Mortality rates for broods cannot be modelled as a function of brood age.\r\n"
               "Analyses using age as a covariate are unavailable.",
               style::Information, line.At(record::Age)});
      data_.BroodAgeKnown[b] = 0;
    }
  }

  void StoreCount(const LineCursor& line, std::size_t v) {
    const std::int16_t count = data_.VisitCount[v] = line.Int16(record::Count);
    if (count > data_.MaxCount) data_.MaxCount = count % 2 == 0 ? count : CheckedInt16((count / 2 + 1) * 2);
    std::int32_t& total = data_.VisitStage[v] == -1 ? data_.EggTotal : data_.JuvTotal;
    total = ToInt32(static_cast<double>(total) + count);
  }

  /// Counts never rise and ages always do, from each visit of a brood to the next.
  void TestOrder() const {
    for (int b = 0; b < data_.Broods(); ++b) {
      const auto first = static_cast<std::size_t>(data_.FirstVisit[static_cast<std::size_t>(b)]);
      const int visits = data_.VisitsOf[static_cast<std::size_t>(b)];
      for (int j = 2; j <= visits; ++j) TestOrder(b, j, first + static_cast<std::size_t>(j) - 1);
    }
  }

  void TestOrder(int b, int j, std::size_t v) const {
    const int before = data_.VisitCount[v - 1], count = data_.VisitCount[v];
    if (before == Missing || count == Missing) return;
    const auto refuse = [&](const char* what, const std::string& values) {
      const std::string& code = data_.BroodCode[static_cast<std::size_t>(b)];
      Fatal(fmt::format("{} was encountered at visit #{} of brood #{} in year {}", what, j, data_.BroodNumber(b),
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

  void CountStages() {
    for (std::size_t y = 0; y < visitsOf_.size(); ++y)
      for (int b = data_.FirstBrood[y]; b < data_.FirstBrood[y] + data_.BroodsInYear[y]; ++b) {
        const auto first = data_.VisitStage.begin() + data_.FirstVisit[static_cast<std::size_t>(b)];
        const auto last = first + data_.VisitsOf[static_cast<std::size_t>(b)];
        if (std::find(first, last, -1) != last) ++data_.ClutchesInYear[y];
        if (std::find(first, last, 1) != last) ++data_.JuvBroodsInYear[y];
      }
  }

  void TellNothingRead(int lines) const {
    tell_({"No records read", "Missing clutch, brood or covariate data has caused all records to be skipped",
           style::Critical,
           fmt::format("{} lines behind the header: {} blank, {} without a covariate, {} censored, {} of years other "
                       "than {} to {}",
                       lines, skipped_.blank, skipped_.covariate, skipped_.censored, skipped_.year, data_.FirstYear,
                       data_.LastYear)});
  }

  [[noreturn]] static void Fatal(const std::string& text, const std::string& details) {
    throw FatalDataError{{"Problem reading data - analysis stops", text, style::Critical, details}};
  }

  const std::string_view bytes_;
  const bool bootstrap_;
  BroodData& data_;
  const MessageSink& tell_;

  std::vector<std::vector<int>> visitsOf_;  // by year and brood, measured in the first pass
  int largestVisit_ = 0;                    // over all records, those without a brood too
  DistinctCodeCounter* codes_ = nullptr;
  std::vector<int> lineOf_;  // where in the file each visit stood

  int pass_ = 0;
  int maxVisits_ = 0, maxBroods_ = 0;
  std::vector<YearState> years_;
  Skipped skipped_;
  std::int32_t records_ = 0;
  int visit_ = 1;  // number of the next visit; goes on across years when a file is not sorted
};

/// The bytes without the mark that some editors put before the text, which would shift the header's columns.
std::string_view WithoutByteOrderMark(std::string_view bytes) {
  return bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
}

}  // namespace

void ReadTextData(std::string_view bytes, bool bootstrap, BroodData& data, const MessageSink& tell) {
  data.CovariateName.Dimension(data.NCov);
  Reader(WithoutByteOrderMark(bytes), bootstrap, data, tell).Read();
}

}  // namespace merlane
