#pragma once

#include <string_view>
#include <vector>

#include "import/import_choices.h"

namespace merlane {

/// What a heading speaks of.
enum class Speaks {
  Surely,    // of that alone
  OfEggs,    // of a part of what is counted
  OfYoung,   // of the other part
  Broadly,   // of that or of something else, such as "ID" or "Visit": what stands below it must fit
  OfPlace,   // of where a brood is, or whose, which tells it from others of its code
  OfNothing  // of what an analysis has no use for, such as the time of a visit
};

struct Meaning {
  Role role;
  Speaks speaks;
  bool operator==(const Meaning&) const = default;
};

/// What a column may be by the words of its heading, such as "Nest no.", "HatchDate" or "Schlupfdatum", in Danish,
/// Dutch, English, Finnish, French, German, Italian, Norwegian, Polish, Spanish and Swedish: all words must belong to
/// what it is, so that "Nest height" is nothing. The likelier one stands first; none where the heading says nothing
/// that is known.
std::vector<Meaning> MeaningsOf(std::string_view heading);

/// Whether a word of a heading is one for young, as of "Ducklings seen", and none for dead ones.
bool NamesYoung(std::string_view heading);

/// Whether a heading is that of remarks, where words stand.
bool NamesRemarks(std::string_view heading);

/// Whether a heading with a number, such as "Eggs 2" or "Date.1", would be that of a visit without it: a row holds
/// several visits then.
bool IsOfNumberedVisit(std::string_view heading);

/// The letters of a heading, small and without accents, by which it is known.
std::string HeadingLetters(std::string_view heading);

}  // namespace merlane
