#include "import/brood_places.h"

#include <fmt/format.h>

#include <algorithm>

#include "import/heading_words.h"

namespace merlane {

BroodPlaces::BroodPlaces(const ImportChoices& choices, const std::vector<std::string>& names) : names_(names) {
  const auto isOfPlace = [](const Meaning& meaning) {
    return meaning.speaks == Speaks::OfPlace || meaning.role == Role::CodePart ||
           (meaning.role == Role::Code && meaning.speaks == Speaks::Surely);
  };
  for (std::size_t c = 0; c < choices.roles.size(); ++c)
    if ((choices.roles[c] == Role::Unused || choices.roles[c] == Role::Covariate) &&
        std::ranges::any_of(MeaningsOf(names[c]), isOfPlace))
      columns_.push_back(c);
}

void BroodPlaces::Look(const RowFields& fields, const VisitRecord& visit, Remarks& remarks) {
  for (const std::size_t column : columns_) {
    const std::string& place = fields.At(column);
    if (IsMissing(place)) continue;
    const auto [known, isNew] = places_.try_emplace(fmt::format("{} {} {}", column, visit.year, visit.code), place);
    if (isNew || known->second.empty() || known->second == place) continue;
    remarks.Note(visit.line, fmt::format("\"{}\" of {} has the \"{}\" {} here, and {} before: are these two broods? "
                                         "Then \"{}\" is a part of the code",
                                         visit.code, visit.year, names_[column], place, known->second, names_[column]));
    known->second.clear();
  }
}

}  // namespace merlane
