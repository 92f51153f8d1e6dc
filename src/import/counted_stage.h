#pragma once

#include <string>
#include <vector>

#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/visit_record.h"

namespace merlane {

/// Knows whether eggs or young make the number of a visit, by the headings of its columns or by a column that tells the
/// stage, and whether that is what a brood of its age has.
class CountedStage {
 public:
  CountedStage(const ImportChoices& choices, const ColumnsByRole& columns, const std::vector<std::string>& names,
               Remarks& remarks);

  /// Sets what was counted: by the headings of the columns that count any, or of all columns of numbers where none
  /// does.
  void Set(const RowFields& fields, VisitRecord& visit) const;

  /// Compares what was counted with the age, when ages have been settled.
  void Compare(const VisitRecord& visit);
  /// Says what can be said when all visits have been compared.
  void Remark() const;

 private:
  /// By a column that tells the stage, where the headings do not.
  void SetByWord(const RowFields& fields, VisitRecord& visit) const;
  void CompareKinds(const VisitRecord& visit, bool hasHatched);
  void CompareOnlyKind(const VisitRecord& visit, bool hasHatched);

  const ImportChoices& choices_;
  const ColumnsByRole& columns_;
  const std::vector<std::string>& names_;
  Remarks& remarks_;
  std::vector<std::size_t> eggs_, young_;       // columns of numbers
  int agesOfEggs_ = 0, agesOfYoung_ = 0;        // known ones before hatch, and behind it
  int ofOtherKind_ = 0, firstOfOtherKind_ = 0;  // numbers of the stage that no column counts: rows, and a line
};

}  // namespace merlane
