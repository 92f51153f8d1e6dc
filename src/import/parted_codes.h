#pragma once

#include <set>
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
  /// The rows of one code and year.
  struct OfCode {
    std::string first, other, last;  // values: that of the first row, the next one, and that of the last row so far
    int firstLine = 0, otherLine = 0, lastDay = 0;
    std::size_t rows = 0;
    bool returns = false;                        // a value comes again behind another
    bool fallsWithin = false;                    // a day falls where the value does not change
    bool sameDay = false, fallsBetween = false;  // the day is the same or falls where it does
    void Take(const std::string& value, const VisitRecord& visit);
    bool IsParted() const { return !other.empty(); }
    /// Whether the days begin anew with the value.
    bool BeginsAnew() const { return sameDay || (fallsBetween && !fallsWithin && !returns); }
  };
  struct Column {
    std::size_t number = 0;
    bool leftOfCode = false;
    std::size_t rows = 0, filled = 0;  // all, and those with a value
    std::string value;                 // the last one that was written
    std::set<std::string> values;
    std::unordered_map<std::string, OfCode> codes;  // by year and code
    OfCode* last = nullptr;
    std::string lastKey;
  };

  static bool IsLikePlaces(const Column& column);

  const std::vector<std::string>& names_;
  std::vector<Column> columns_;
};

}  // namespace merlane
