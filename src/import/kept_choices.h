#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/import_choices.h"

namespace merlane {

/// Choices that were kept with one file, for the text of another: its columns are what those of the same names were,
/// those that come more than once in their order. Where there is no heading, they are those in the same places.
ImportChoices ForText(ImportChoices kept, std::string_view text);

/// The columns that were something when the choices were kept, and that the text does not have.
std::vector<std::string> ColumnsLacking(const ImportChoices& kept, std::string_view text);

/// What somebody should know where choices that were kept with one file are used for another, in sentences: that it has
/// not that worksheet or is written in another way; columns that are not there any more, while nothing else has become
/// what they were; and new ones that are not used, with what they may be. `choices` are those that are now in force.
std::vector<std::string> WhereKeptDiffer(const ImportChoices& kept, const ImportChoices& choices,
                                         std::string_view text);

}  // namespace merlane
