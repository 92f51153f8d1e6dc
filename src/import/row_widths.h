#pragma once

#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/remarks.h"

namespace merlane {

/// Knows how many fields the rows have. A delimiter within a field, such as a decimal comma between commas, makes one
/// too many of it and shifts all behind it, which an empty last field hides.
class RowWidths {
 public:
  /// `headingFields` are those of the heading's row, empty ones included.
  RowWidths(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingFields,
            Remarks& remarks);

  /// LeftOut when nobody can tell what the fields of a row are. Spreadsheets leave away empty ones at the end.
  void Take(const TextRow& row);
  /// Says what can be said when all rows have been taken.
  void Remark() const;

 private:
  /// Looks at a row that has more fields than the heading, all those empty.
  void LookAtWider(const TextRow& row);
  /// Numbers in a column of remarks, into which they were shifted.
  void RemarkNumbersAsWords() const;
  /// Whether a column that nobody knows may hold the digits behind a decimal comma, all rows being wider.
  bool MayBeShifted() const;
  std::string TooNarrowOrWide(std::size_t fields) const;

  const ImportChoices& choices_;
  const std::vector<std::string>& names_;
  const std::size_t headingFields_;
  Remarks& remarks_;
  std::vector<std::size_t> nameless_;  // columns that are not used and have no heading, but for the first
  int rows_ = 0, wider_ = 0, firstWider_ = 0;
  std::size_t widest_ = 0;       // of the wider rows
  bool widerAreAlike_ = true;    // they have as many fields each
  std::vector<bool> areDigits_;  // whether they hold whole numbers alone, by column of the heading
};

}  // namespace merlane
