#include "import/counted_stage.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "base/number_text.h"
#include "import/fate_words.h"
#include "import/heading_words.h"
#include "import/stage_words.h"

namespace merlane {

CountedStage::CountedStage(const ImportChoices& choices, const ColumnsByRole& columns,
                           const std::vector<std::string>& names, Remarks& remarks)
    : choices_(choices), columns_(columns), names_(names), remarks_(remarks) {
  for (const std::size_t column : columns.Of(Role::Count)) {
    bool ofEggs = false, ofYoung = false;
    for (const Meaning& meaning : MeaningsOf(names[column])) {
      ofEggs = ofEggs || meaning.speaks == Speaks::OfEggs;
      ofYoung = ofYoung || meaning.speaks == Speaks::OfYoung;
    }
    if (ofEggs && !ofYoung) eggs_.push_back(column);  // a heading such as "Eggs or young" names both
    if (ofYoung && !ofEggs) young_.push_back(column);
  }
}

void CountedStage::Set(const RowFields& fields, VisitRecord& visit) const {
  const auto counts = [&](std::size_t column) { return NumberIn(fields.At(column), choices_.decimal) > 0.0; };
  visit.countsEggs = std::ranges::any_of(eggs_, counts);
  visit.countsYoung = std::ranges::any_of(young_, counts);
  std::vector<std::size_t> telling;
  std::ranges::copy_if(columns_.Of(Role::Count), std::back_inserter(telling), counts);
  if (telling.empty()) telling = columns_.Of(Role::Count);
  const auto allOf = [&](const std::vector<std::size_t>& kind) {
    return std::ranges::all_of(telling, [&](std::size_t column) { return std::ranges::count(kind, column) > 0; });
  };
  const bool ofEggs = allOf(eggs_), ofYoung = allOf(young_);
  if (ofEggs != ofYoung) {
    visit.counted = ofEggs ? Stage::Eggs : Stage::Young;
    visit.countedUnder = names_[telling.front()];
  }
  SetByWord(fields, visit);
}

void CountedStage::SetByWord(const RowFields& fields, VisitRecord& visit) const {
  const std::string& text = fields.Text(Role::Stage);
  if (text.empty()) return;
  const Stage told = StageIn(text);
  const bool tellsFate = FateIn(text) != Fate::Untold;  // as "failed" does beside such words
  if (told == Stage::Untold && !tellsFate)
    remarks_.Count(visit.line, fmt::format("\"{}\" tells neither eggs nor young", text));
  if (told != Stage::Untold && visit.counted == Stage::Untold) {
    visit.counted = told;
    visit.countedUnder = text;
  }
  if (told != Stage::Untold && visit.counted != told)
    remarks_.Count(visit.line,
                   fmt::format("the number is that of \"{}\", and beside it stands \"{}\"", visit.countedUnder, text));
}

void CountedStage::Compare(const VisitRecord& visit) {
  if (choices_.OfNests() || !visit.AgeIsKnown()) return;
  const double age = StrictNumber(visit.age);
  if (age == 0) return;
  ++(age < 0 ? agesOfEggs_ : agesOfYoung_);
  if (eggs_.empty() == young_.empty() || choices_.Has(Role::Stage))
    CompareKinds(visit, age > 0);
  else
    CompareOnlyKind(visit, age > 0);
}

void CountedStage::CompareKinds(const VisitRecord& visit, bool hasHatched) {
  const bool bothHaveColumns = !eggs_.empty() && !young_.empty();
  const auto counts = [&](bool byColumn, Stage stage) {
    return (bothHaveColumns && byColumn) || (choices_.Has(Role::Stage) && visit.counted == stage);
  };
  if (!hasHatched && counts(visit.countsYoung, Stage::Young))
    remarks_.Count(visit.line, "young are counted, and by its age none has hatched");
  if (hasHatched && counts(visit.countsEggs, Stage::Eggs))
    remarks_.Count(visit.line, "eggs are counted, and by its age the brood has hatched: each counts as a young one");
}

void CountedStage::CompareOnlyKind(const VisitRecord& visit, bool hasHatched) {
  const bool countsEggs = young_.empty();
  if (countsEggs != hasHatched) return;
  if (visit.count > 0 && ofOtherKind_++ == 0) firstOfOtherKind_ = visit.line;
  if (visit.count > 0) return;
  remarks_.Count(visit.line, hasHatched
                                 ? "no eggs are counted, and by its age the brood has hatched: it counts as dead"
                                 : "no young are counted, and by its age none has hatched: the clutch counts as dead");
}

void CountedStage::Remark() const {
  if (eggs_.empty() == young_.empty()) return;
  const bool ofEggs = young_.empty();
  if (ofEggs && agesOfEggs_ == 0 && agesOfYoung_ > 1)
    return remarks_.Say(
        "eggs are counted, and every age is behind hatch: ages are days from hatch, negative ones of eggs");
  if (!ofEggs && agesOfYoung_ == 0 && agesOfEggs_ > 1)
    return remarks_.Say(
        "young are counted, and every age is before hatch: ages are days from hatch, negative ones of eggs");
  if (ofOtherKind_ > 0)
    remarks_.Mean(fmt::format("\"{}\" is the number of {}, too, {} hatch: {} so, the first in {} {}",
                              names_[(ofEggs ? eggs_ : young_).front()], ofEggs ? "young" : "eggs",
                              ofEggs ? "behind" : "before", Counted(ofOtherKind_, "visit"), remarks_.Place(),
                              firstOfOtherKind_));
}

}  // namespace merlane
