#pragma once

#include <string>
#include <vector>

#include "import/import_choices.h"
#include "platform/reading_progress.h"

namespace merlane {

/// A data file made from another, and what is to be said about it.
struct Imported {
  std::string text;  // fixed columns, lines end with CR LF
  int rows = 0;      // behind the heading
  int records = 0, broods = 0, covariates = 0;
  int firstYear = 0, lastYear = 0;
  int moved = 0;                              // records that stand elsewhere than their rows did
  int leftOut = 0;                            // rows without a record
  int unknownOfEggs = 0, unknownOfYoung = 0;  // visits whose age is missing and follows from nothing
  /// What somebody should look at. First what concerns many rows, told once with their number: values that are missing,
  /// digits for which there is no room, dates that could be others, rows that are too short. Then, with its line, each
  /// row that was left out, two for one visit, counts that rise, ages that fall, codes that differ in case alone.
  std::vector<std::string> remarks;  // the first of them
  int remarkCount = 0;
  /// How columns were understood where nothing speaks against it: what one that counts eggs means behind hatch.
  std::vector<std::string> meanings;
};

/// Makes a data file of the rows of a text. Records are sorted by year, code and day. Day and year follow from a date,
/// an age from the hatch day; a nest becomes visits of one egg, or of the number of eggs that its row tells, on the
/// days on which it was found, last known present and, if it failed, last checked, of the unknown age that was chosen
/// unless its row tells one. RuntimeFailure when the choices lack a column that is needed, have two where one is
/// possible, or no row gives a record.
Imported ImportRows(std::string_view text, const ImportChoices& choices, const ReadingProgress& progress = {});

}  // namespace merlane
