#include "import/import_visits.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/most_visits.h"
#include "data/record_layout.h"
#include "import/brood_ages.h"
#include "import/heading.h"
#include "import/remarks.h"
#include "import/required_columns.h"
#include "import/row_reader.h"
#include "import/visit_examiner.h"

namespace merlane {
namespace {

/// Codes of more than eight characters keep their last eight while these tell them apart; else all get numbers.
void ShortenCodes(std::vector<VisitRecord>& visits, Remarks& remarks) {
  const auto isLong = [](const VisitRecord& visit) {
    return visit.code.size() > record::Width && CharacterCount(visit.code) > record::Width;
  };
  const auto firstLong = std::ranges::find_if(visits, isLong);
  if (firstLong == visits.end()) return;
  const std::string example = firstLong->code;
  std::map<std::string, std::string> given;
  for (const VisitRecord& visit : visits) given.try_emplace(visit.code);
  std::set<std::string> shorter;
  for (auto& [code, written] : given) shorter.insert(written = Trim(LastCharacters(code, record::Width)));
  const bool numbered = shorter.size() < given.size() || shorter.contains("");
  int number = 0;
  if (numbered)
    for (auto& [code, written] : given) written = fmt::format("N{:07}", ++number);
  for (VisitRecord& visit : visits) visit.code = given.at(visit.code);
  remarks.Say(fmt::format("codes as \"{}\" are longer than {} characters and were {}: that one is \"{}\"", example,
                          record::Width, numbered ? "replaced by numbers in their order" : "cut to their last 8",
                          given.at(example)));
}

/// Sorts by year, code and day; returns how many records have another place.
int Sort(std::vector<VisitRecord>& visits) {
  const auto key = [&](std::size_t i) { return std::tie(visits[i].year, visits[i].code, visits[i].day); };
  const auto before = [&](std::size_t a, std::size_t b) { return key(a) < key(b); };
  std::vector<std::size_t> order(visits.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (std::ranges::is_sorted(order, before)) return 0;
  std::ranges::stable_sort(order, before);
  int moved = 0;
  std::vector<VisitRecord> sorted;
  sorted.reserve(visits.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (order[i] != i) ++moved;
    sorted.push_back(std::move(visits[order[i]]));
  }
  visits = std::move(sorted);
  return moved;
}

/// The heading of the data file.
std::string HeadingLine(const ImportChoices& choices, const std::vector<std::string>& names, Remarks& remarks) {
  std::string line = record::Header;
  std::map<std::string, std::string> written;
  for (std::size_t c = 0; c < choices.roles.size(); ++c) {
    if (choices.roles[c] != Role::Covariate) continue;
    const std::string field = FlushRight(names[c], record::CovariateWidth);
    const auto [known, isNew] = written.try_emplace(field, names[c]);
    if (!isNew)
      remarks.Say(fmt::format("\"{}\" and \"{}\" are both called \"{}\" in the data file", known->second, names[c],
                              Trim(field)));
    line += "," + field;
  }
  return line + "\r\n";
}

/// RuntimeFailure when sorted visits are more of one brood, or broods of one year, than a data file has room for.
void RefuseMoreThanRoom(const std::vector<VisitRecord>& visits, const std::string& place) {
  int ofBrood = 0, broods = 0;
  const VisitRecord* before = nullptr;
  for (const VisitRecord& visit : visits) {
    const bool sameYear = before != nullptr && before->year == visit.year;
    const bool sameBrood = sameYear && before->code == visit.code;
    ofBrood = sameBrood ? ofBrood + 1 : 1;
    if (!sameBrood) broods = sameYear ? broods + 1 : 1;
    if (ofBrood > MostVisitsOfBrood)
      throw RuntimeFailure(fmt::format(
          "\"{}\" has more than {} visits in {}, for which a data file has no room (the next is in {} {}): is "
          "that column the code?",
          visit.code, MostVisitsOfBrood, visit.year, place, visit.line));
    if (broods > MostBroodsOfYear)
      throw RuntimeFailure(
          fmt::format("{} has more than {} broods, for which a data file has no room (the next is in {} {}): is that "
                      "column the code?",
                      visit.year, MostBroodsOfYear, place, visit.line));
    before = &visit;
  }
}

/// RuntimeFailure with the last of what was said when there is no visit.
void RequireVisits(const std::vector<VisitRecord>& visits, const Remarks& remarks) {
  if (!visits.empty()) return;
  const std::vector<std::string> why = remarks.First();
  throw RuntimeFailure("no row gives a record: look at what the columns are" + (why.empty() ? "" : "; " + why.back()));
}

}  // namespace

Imported ImportRows(std::string_view text, const ImportChoices& choices, const ReadingProgress& progress) {
  constexpr int RowsBetweenProgress = 1000;
  const std::vector<std::string> names = ColumnNames(text, choices);
  const Heading heading = HeadingOf(text, choices);
  RequireColumns(choices, heading);
  Imported imported;
  Remarks remarks(choices.sheet.empty() ? "line" : "row");
  if (heading.rows > 1)
    remarks.Say(fmt::format("{} above the heading {} passed over", Counted(static_cast<int>(heading.rows) - 1, "row"),
                            heading.rows == 2 ? "was" : "were"));
  if (heading.rowsHaveNames)
    remarks.Say("the rows have a field more than the heading: the first of them was taken for a name of the row");
  RowReader reader(choices, names, heading.fields + (heading.rowsHaveNames ? 1 : 0), remarks);
  DelimitedRows rows = RowsBehindHeading(text, choices);
  for (TextRow row; rows.Next(row);) {
    if (++imported.rows % RowsBetweenProgress == 0 && progress)
      progress(1 - static_cast<double>(rows.Rest().size()) / static_cast<double>(text.size()));
    if (row.overLines && choices.sheet.empty()) remarks.Count(row.line, "a field in quotes goes on in another line");
    try {
      reader.Take(row);
    } catch (const LeftOut& out) {
      ++imported.leftOut;
      remarks.NoteLeftOut(row.line, out.why);
    }
  }
  std::vector<VisitRecord>& visits = reader.visits;
  RequireVisits(visits, remarks);
  reader.RemarkWhole();
  VisitExaminer examiner(choices, names, remarks);
  examiner.LookAtCodes(visits);
  ShortenCodes(visits, remarks);
  imported.moved = Sort(visits);
  BroodAges ages(choices.unknownAge, remarks);
  ages.Settle(visits);
  RequireVisits(visits, remarks);
  RefuseMoreThanRoom(visits, remarks.Place());
  reader.LookAtStages(visits);
  examiner.Look(visits);
  imported.text = HeadingLine(choices, names, remarks);
  const VisitRecord* before = nullptr;
  for (const VisitRecord& visit : visits) {
    if (before == nullptr || before->code != visit.code || before->year != visit.year) ++imported.broods;
    before = &visit;
    AppendRecord(imported.text, visit);
  }
  imported.unknownOfEggs = ages.unknownOfEggs;
  imported.unknownOfYoung = ages.unknownOfYoung;
  imported.leftOut += ages.leftOut;
  imported.records = static_cast<int>(visits.size());
  imported.covariates = static_cast<int>(std::ranges::count(choices.roles, Role::Covariate));
  imported.firstYear = visits.front().year;
  imported.lastYear = visits.back().year;
  imported.remarks = remarks.First();
  imported.remarkCount = remarks.Number();
  imported.meanings = remarks.Meanings();
  return imported;
}

}  // namespace merlane
