#include "import/brood_ends.h"

#include <fmt/format.h>

#include <algorithm>

#include "import/fate_words.h"
#include "import/heading_words.h"

namespace merlane {
namespace {

bool Means(const std::string& heading, Role role) {
  return std::ranges::any_of(MeaningsOf(heading), [role](const Meaning& meaning) { return meaning.role == role; });
}

}  // namespace

void BroodEnds::Watch(std::size_t column, const std::string& name) {
  const Heading heading = FateIn(name) == Fate::Failed  ? Heading::OfFailure
                          : Means(name, Role::Survived) ? Heading::OfSurvival
                          : Means(name, Role::Fate)     ? Heading::OfFates
                                                        : Heading::OfOtherThings;
  columns_.push_back({column, name, heading});
}

bool BroodEnds::Column::SaysFailed(const std::string& text) const {
  constexpr std::size_t LongestMark = 2;  // which under other headings tells other things
  const bool isMark = text.size() <= LongestMark;
  if (text.empty() || (heading == Heading::OfOtherThings && (isMark || (text.front() >= '0' && text.front() <= '9'))))
    return false;
  const Fate fate = FateIn(text);
  if (!isMark && fate != Fate::Untold) return fate == Fate::Failed;
  const std::optional<bool> answer = text == "1" ? true : text == "0" ? false : AnswerIn(text);
  if (heading == Heading::OfFailure) return answer == true;
  if (heading == Heading::OfSurvival) return answer == false;
  return heading == Heading::OfFates && fate == Fate::Failed;
}

void BroodEnds::Look(const RowFields& fields, const VisitRecord& visit) {
  if (columns_.empty()) return;
  if (latest_ == ends_.end() || latest_->first.first != visit.year || latest_->first.second != visit.code)
    latest_ = ends_.try_emplace({visit.year, visit.code}).first;
  End& end = latest_->second;
  if (end.line != 0 && visit.day < end.day) return;
  end = {visit.day, visit.line, ""};
  if (visit.count == 0) return;
  const auto says =
      std::ranges::find_if(columns_, [&](const Column& column) { return column.SaysFailed(fields.At(column.place)); });
  if (says != columns_.end())
    end.contradiction = fmt::format("the number is above 0 at the last visit of its brood, and \"{}\" is \"{}\"",
                                    says->name, fields.At(says->place));
}

void BroodEnds::Tell(Remarks& remarks) const {
  std::vector<const End*> told;
  for (const auto& [brood, end] : ends_)
    if (!end.contradiction.empty()) told.push_back(&end);
  std::ranges::sort(told, {}, [](const End* end) { return end->line; });
  for (const End* end : told) remarks.Count(end->line, end->contradiction);
}

}  // namespace merlane
