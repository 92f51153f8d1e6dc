#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/visit_record.h"

namespace merlane {

/// Tells when a column that nobody knows by its heading, such as "Farm", parts the rows of codes as places do: nest 1
/// of one farm and of another, two broods that would become one. What tells rows of a visit, such as who was there,
/// changes from visit to visit in another way.
class PartedCodes {
 public:
  /// Looks at columns of words that are not used.
  PartedCodes(const ImportChoices& choices, const std::vector<std::string>& names);

  /// Looks at the row of a visit, in the order of the file.
  void Look(const RowFields& fields, const VisitRecord& visit);
  /// Says of each such column what was seen.
  void Remark(Remarks& remarks) const;

 private:
  /// The rows of one code and year. Values are told by their numbers in the column.
  struct OfCode {
    int first = 0, other = 0, last = 0;  // of the first row, the next one, and that of the last row so far; 0: none
    int firstLine = 0, otherLine = 0, lastDay = 0, rows = 0;
    bool returns = false;                        // a value comes again behind another
    bool fallsWithin = false;                    // a day falls where the value does not change
    bool sameDay = false, fallsBetween = false;  // the day is the same or falls where it does
    void Take(int value, const VisitRecord& visit);
    bool IsParted() const { return other != 0; }
    /// Whether the days begin anew with the value.
    bool BeginsAnew() const { return sameDay || (fallsBetween && !fallsWithin && !returns); }
  };
  struct Column {
    std::size_t number = 0;
    bool leftOfCode = false;
    int rows = 0, filled = 0;                     // all, and those with a value
    int value = 0;                                // the last one that was written
    std::unordered_map<std::string, int> values;  // and their numbers, from 1
    std::vector<OfCode> codes;                    // by their numbers
    const std::string& Name(int valueNumber) const;
  };

  /// Takes the row of a visit whose code has that number; false when the column has too many values for places.
  static bool Take(Column& column, const std::string& written, std::size_t code, const VisitRecord& visit);
  static bool IsLikePlaces(const Column& column);
  std::string CodeOf(std::size_t number) const;

  const std::vector<std::string>& names_;
  std::vector<Column> columns_;
  std::unordered_map<std::string, std::size_t> codes_;  // and their numbers, by year and code
};

}  // namespace merlane
