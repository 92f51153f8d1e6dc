#include "import/import_visits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

/// A visit as a record tells it.
struct Visit {
  int year = 0;
  std::string code;
  int day = 0, hatchDay = 0;
  std::string age;  // a number, "?" or "-?"
  int count = 0;
  std::vector<std::string> covariates;
  int line = 0;
};

/// Why a row gives no record.
struct LeftOut {
  std::string why;
};

/// A number in at most `width` characters, with as many of its digits as there is room for.
std::string InWidth(double number, int width) {
  std::string text = Shortest(number);
  for (int digits = 15; static_cast<int>(text.size()) > width && digits > 0; --digits)
    text = fmt::format("{:.{}g}", number, digits);
  return text;
}

std::string FlushRight(std::string_view whole, int width) {
  std::string text(FirstCharacters(whole, width));
  std::ranges::replace_if(
      text, [](char c) { return c >= 0 && c < ' '; }, ' ');  // a field may have had several lines
  return std::string(static_cast<std::size_t>(width) - CharacterCount(text), ' ') + text;
}

/// The fields of one row by what they are.
class RowFields {
 public:
  RowFields(const ImportChoices& choices, const TextRow& row) : choices_(choices), row_(row) {}

  /// What stands in the column of that role; empty when there is none, or no value in it.
  std::string Text(Role role) const {
    for (std::size_t c = 0; c < choices_.roles.size() && c < row_.fields.size(); ++c)
      if (choices_.roles[c] == role) return IsMissing(row_.fields[c]) ? "" : row_.fields[c];
    return "";
  }

  /// A whole number from `least` to `most`; none where there is no value.
  std::optional<int> Whole(Role role, int least, int most) const {
    const std::string text = Text(role);
    if (text.empty()) return std::nullopt;
    const std::optional<double> number = NumberIn(text, choices_.decimal);
    if (!number || *number != std::trunc(*number) || *number < least || *number > most)
      throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(role))};
    return static_cast<int>(*number);
  }
  int Needed(Role role, int least, int most) const {
    const std::optional<int> number = Whole(role, least, most);
    if (!number) throw LeftOut{fmt::format("it has no {}", NameOf(role))};
    return *number;
  }

  /// A day, as a date or as its number in the year.
  std::optional<DayOfYear> Day(Role role, int year) const {
    const std::string text = Text(role);
    if (text.empty()) return std::nullopt;
    const std::optional<DayOfYear> date = DateIn(text, choices_.dates);
    const std::optional<double> number = NumberIn(text, choices_.decimal);
    if (number && *number == std::trunc(*number) && *number >= -366 && *number <= 732)
      return DayOfYear{year, static_cast<int>(*number)};
    if (!date) throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(role))};
    return date;
  }

  std::vector<std::string> Covariates() const {
    std::vector<std::string> texts;
    for (std::size_t c = 0; c < choices_.roles.size(); ++c) {
      if (choices_.roles[c] != Role::Covariate) continue;
      const std::string text = c < row_.fields.size() ? row_.fields[c] : "";
      const std::optional<double> number = NumberIn(text, choices_.decimal);
      if (!number && !IsMissing(text)) throw LeftOut{fmt::format("\"{}\" is no number of a covariate", text)};
      texts.push_back(number ? InWidth(*number, record::CovariateWidth) : "");
    }
    return texts;
  }

  static const std::string& NameOf(Role role) { return RoleNames()[static_cast<std::size_t>(role)]; }

 private:
  const ImportChoices& choices_;
  const TextRow& row_;
};

class Importer {
 public:
  Importer(std::string_view text, const ImportChoices& choices, const ReadingProgress& progress)
      : text_(text), choices_(choices), progress_(progress) {}

  Imported Import() {
    RequireColumns();
    ReadRows();
    if (visits_.empty()) throw RuntimeFailure("no row of the file gives a record: look at what its columns are");
    GiveCodes();
    Sort();
    Remark();
    Write();
    return std::move(imported_);
  }

 private:
  static constexpr std::size_t MostRemarks = 200;
  static constexpr std::size_t MostVisits = 20'000'000;
  static constexpr int RowsBetweenProgress = 1000;
  static constexpr int MostOfInt16 = 32767;

  void Note(int line, const std::string& what) {
    if (++imported_.remarkCount <= static_cast<int>(MostRemarks))
      imported_.remarks.push_back(fmt::format("line {}: {}", line, what));
  }

  void RequireColumns() const {
    const auto require = [this](Role role, Role other) {
      if (!choices_.Has(role) && !choices_.Has(other))
        throw RuntimeFailure(fmt::format("no column is the {}", RowFields::NameOf(role)));
    };
    if (choices_.OfNests()) {
      require(Role::LastPresent, Role::LastPresent);
      require(Role::LastChecked, Role::LastChecked);
      require(Role::Fate, Role::Fate);
    } else {
      require(Role::Code, Role::Code);
      require(Role::Day, Role::Date);
      require(Role::Count, Role::Count);
    }
  }

  void ReadRows() {
    DelimitedRows rows(text_, choices_.delimiter);
    TextRow row;
    if (choices_.heading) rows.Next(row);
    while (rows.Next(row)) {
      if (++imported_.rows % RowsBetweenProgress == 0 && progress_)
        progress_(1 - static_cast<double>(rows.Rest().size()) / static_cast<double>(text_.size()));
      try {
        if (choices_.OfNests())
          TakeNest(row);
        else
          TakeVisit(row);
      } catch (const LeftOut& out) {
        ++imported_.leftOut;
        Note(row.line, "left out, " + out.why);
      }
    }
  }

  void TakeVisit(const TextRow& row) {
    const RowFields fields(choices_, row);
    Visit visit;
    visit.line = row.line;
    visit.code = fields.Text(Role::Code);
    if (visit.code.empty()) throw LeftOut{"it has no code"};
    const int year = YearOf(fields);
    const std::optional<DayOfYear> day = fields.Day(choices_.Has(Role::Date) ? Role::Date : Role::Day, year);
    if (!day) throw LeftOut{"it has no day"};
    // Behind a New Year the days of a season are counted on where a column tells its year.
    visit.year = choices_.Has(Role::Year) ? year : day->year;
    visit.day = DayCountedFrom(visit.year, *day);
    const std::optional<DayOfYear> hatch =
        fields.Day(choices_.Has(Role::HatchDate) ? Role::HatchDate : Role::HatchDay, visit.year);
    if (hatch) visit.hatchDay = DayCountedFrom(visit.year, *hatch);
    visit.age = AgeOf(fields, visit, hatch.has_value());
    visit.count = fields.Needed(Role::Count, 0, MostOfInt16 - 1);
    visit.covariates = fields.Covariates();
    visits_.push_back(std::move(visit));
  }

  int YearOf(const RowFields& fields) const {
    return choices_.Has(Role::Year) ? fields.Needed(Role::Year, -MostOfInt16, MostOfInt16) : choices_.year;
  }

  /// The age as it stands, or since the hatch day, or none.
  std::string AgeOf(const RowFields& fields, const Visit& visit, bool hatchKnown) {
    const std::string text = fields.Text(Role::Age);
    if (text == "?" || text == "-?") return text;
    if (!text.empty()) {
      const std::optional<double> age = NumberIn(text, choices_.decimal);
      if (!age || std::fabs(*age) > MostOfInt16 - 1) throw LeftOut{fmt::format("\"{}\" is no brood age", text)};
      return InWidth(*age, record::Width);
    }
    if (hatchKnown) return std::to_string(visit.day - visit.hatchDay);
    if (choices_.unknownAge == UnknownAge::LeftOut) throw LeftOut{"its age is not known"};
    ++imported_.unknownAges;
    return choices_.unknownAge == UnknownAge::OfEggs ? "-?" : "?";
  }

  /// One row for nests of the same fate: each becomes visits of one egg or, where the row tells a number, of the
  /// clutch.
  void TakeNest(const TextRow& row) {
    const RowFields fields(choices_, row);
    const int year = YearOf(fields);
    const auto day = [&](Role role) {
      const std::optional<DayOfYear> found = fields.Day(role, year);
      if (!found) throw LeftOut{fmt::format("it has no day for {}", RowFields::NameOf(role))};
      return *found;
    };
    const DayOfYear found = day(Role::FirstFound);
    Nest nest;
    nest.first = found.day;
    nest.last = DayCountedFrom(found.year, day(Role::LastPresent));
    const int checked = DayCountedFrom(found.year, day(Role::LastChecked));
    const bool failed = fields.Needed(Role::Fate, 0, 1) == 1;
    const int nests = choices_.Has(Role::Nests) ? fields.Needed(Role::Nests, 0, MostOfInt16 - 1) : 1;
    if (nest.last < nest.first) throw LeftOut{"it was last present before it was found"};
    if (failed && checked <= nest.last)
      throw LeftOut{"it failed, and was not checked behind the day when last present"};
    nest.end = failed ? checked : nest.last;
    nest.eggs = choices_.Has(Role::Count) ? fields.Needed(Role::Count, 1, MostOfInt16 - 1) : 1;
    Visit visit;
    visit.line = row.line;
    visit.year = found.year;
    visit.day = nest.first;
    nest.age = AgeOfNest(fields, visit);
    visit.covariates = fields.Covariates();
    const std::string code = fields.Text(Role::Code);
    for (int n = 1; n <= nests; ++n) {
      visit.code = code.empty() ? fmt::format("L{}", row.line) : code;
      if (nests > 1) visit.code += fmt::format("-{}", n);
      AddNest(visit, nest);
    }
  }

  /// A nest from its first visit to its last.
  struct Nest {
    int first = 0, last = 0, end = 0;  // days: found, last known present, last visit
    int eggs = 1;
    std::optional<double> age;  // on the first day
  };

  /// The age of a nest when it was found, as it stands or since the hatch day, which the visit is given.
  std::optional<double> AgeOfNest(const RowFields& fields, Visit& visit) const {
    const std::optional<DayOfYear> hatch =
        fields.Day(choices_.Has(Role::HatchDate) ? Role::HatchDate : Role::HatchDay, visit.year);
    if (hatch) visit.hatchDay = DayCountedFrom(visit.year, *hatch);
    const std::string text = fields.Text(Role::Age);
    if (text.empty() || text == "?" || text == "-?")
      return hatch ? std::optional<double>(visit.day - visit.hatchDay) : std::nullopt;
    const std::optional<double> age = NumberIn(text, choices_.decimal);
    if (!age || std::fabs(*age) > MostOfInt16 / 2) throw LeftOut{fmt::format("\"{}\" is no brood age", text)};
    return age;
  }

  void AddNest(Visit visit, const Nest& nest) {
    const std::set<int> days{nest.first, nest.last, nest.end};
    if (visits_.size() > MostVisits) throw RuntimeFailure("the file stands for more visits than there is room for");
    for (const int day : days) {
      visit.day = day;
      visit.age = nest.age ? InWidth(*nest.age + (day - nest.first), record::Width) : "-?";
      visit.count = day > nest.last ? 0 : nest.eggs;
      visits_.push_back(visit);
    }
  }

  /// Codes of more than eight characters keep their last eight while these tell them apart; else all get numbers.
  void GiveCodes() {
    std::map<std::string, std::string> given;
    for (const Visit& visit : visits_) given.emplace(visit.code, visit.code);
    const auto tooLong = [](const auto& code) { return CharacterCount(code.first) > record::Width; };
    const auto first = std::ranges::find_if(given, tooLong);
    if (first == given.end()) return;
    std::set<std::string> shorter;
    for (auto& [code, written] : given) shorter.insert(written = LastCharacters(code, record::Width));
    const bool numbered = shorter.size() < given.size();
    int number = 0;
    if (numbered)
      for (auto& [code, written] : given) written = fmt::format("N{:07}", ++number);
    for (Visit& visit : visits_) visit.code = given.at(visit.code);
    Note(visits_.front().line, fmt::format("codes as \"{}\" are longer than 8 characters and were {}", first->first,
                                           numbered ? "replaced by numbers" : "cut to their last 8"));
  }

  void Sort() {
    std::vector<std::size_t> order(visits_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    const auto key = [this](std::size_t i) { return std::tie(visits_[i].year, visits_[i].code, visits_[i].day); };
    std::ranges::stable_sort(order, [key](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::vector<Visit> sorted;
    sorted.reserve(visits_.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (order[i] != i) ++imported_.moved;
      sorted.push_back(std::move(visits_[order[i]]));
    }
    visits_ = std::move(sorted);
  }

  /// What the reading of the file will refuse, or what looks like a slip of the pen.
  void Remark() {
    std::map<std::string, std::string> spelling;
    for (std::size_t i = 0; i < visits_.size(); ++i) {
      const Visit& visit = visits_[i];
      if (i == 0 || visits_[i - 1].code != visit.code) RemarkSpelling(visit, spelling);
      if (i > 0 && visits_[i - 1].code == visit.code && visits_[i - 1].year == visit.year)
        RemarkPair(visits_[i - 1], visit);
    }
  }

  void RemarkSpelling(const Visit& visit, std::map<std::string, std::string>& spelling) {
    std::string plain = UpperCase(visit.code);
    std::erase(plain, ' ');
    const auto [known, isNew] = spelling.emplace(plain, visit.code);
    if (!isNew && known->second != visit.code)
      Note(visit.line,
           fmt::format("the codes \"{}\" and \"{}\" differ in case or blanks only", known->second, visit.code));
  }

  void RemarkPair(const Visit& before, const Visit& visit) {
    const auto note = [&](const std::string& what) {
      Note(visit.line, fmt::format("\"{}\" {} of line {}", visit.code, what, before.line));
    };
    if (before.day == visit.day) note("has the day");
    if (visit.count > before.count) note(fmt::format("has {} behind {}", visit.count, before.count));
    const bool known = before.age.back() != '?' && visit.age.back() != '?';
    if (known && StrictNumber(visit.age) <= StrictNumber(before.age))
      note(fmt::format("has the age {} behind {}", visit.age, before.age));
  }

  void Write() {
    std::string& text = imported_.text;
    text = record::Header;
    const std::vector<std::string> names = ColumnNames(text_, choices_);
    for (std::size_t c = 0; c < choices_.roles.size(); ++c)
      if (choices_.roles[c] == Role::Covariate) {
        text += "," + FlushRight(names[c], record::CovariateWidth);
        ++imported_.covariates;
      }
    text += "\r\n";
    imported_.firstYear = visits_.front().year;
    imported_.lastYear = visits_.back().year;
    const Visit* before = nullptr;
    for (const Visit& visit : visits_) {
      if (before == nullptr || before->code != visit.code || before->year != visit.year) ++imported_.broods;
      before = &visit;
      text += fmt::format("{:>8},{},{:>8},{:>8},{:>8},{:>8}", visit.year, FlushRight(visit.code, record::Width),
                          visit.day, visit.hatchDay, visit.age, visit.count);
      for (const std::string& covariate : visit.covariates)
        text += fmt::format(",{:>{}}", covariate, record::CovariateWidth);
      text += "\r\n";
    }
    imported_.records = static_cast<int>(visits_.size());
  }

  const std::string_view text_;
  const ImportChoices& choices_;
  const ReadingProgress& progress_;
  std::vector<Visit> visits_;
  Imported imported_;
};

}  // namespace

Imported ImportRows(std::string_view text, const ImportChoices& choices, const ReadingProgress& progress) {
  return Importer(text, choices, progress).Import();
}

}  // namespace merlane
