#pragma once

#include <optional>
#include <string_view>

namespace merlane {

/// What became of a nest, as far as a word tells.
enum class Fate { Untold, Survived, Failed, Unknown };

/// What a word such as "hatched", "predated", "S", "F" or "unknown" tells of a nest, in the languages of the headings;
/// Fate::Untold for any other.
Fate FateIn(std::string_view word);

/// Whether a word such as "yes" or "nein" is an affirmative one, in the same languages; none for any other.
std::optional<bool> AnswerIn(std::string_view word);

/// Whether a word such as "fledged" or "flügge" tells of young that have left their nest alive.
bool SpeaksOfFledging(std::string_view word);

}  // namespace merlane
