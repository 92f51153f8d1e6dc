#pragma once

#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/remarks.h"

namespace merlane {

/// Knows the rows between or below the records that are none: sums and means, headings once more, and all that stands
/// behind another heading; and those that somebody may have meant to be none.
class StrayRows {
 public:
  StrayRows(const ImportChoices& choices, const std::vector<std::string>& names);

  /// Why a row is no record; empty when nothing speaks against it. Rows are asked about in their order.
  std::string WhyStray(const TextRow& row);

  /// Looks whether a row that gives a record begins as a comment does.
  void LookAtComment(const TextRow& row);
  /// Says what was seen.
  void Remark(Remarks& remarks) const;

 private:
  bool IsSum(const TextRow& row) const;

  const std::vector<std::string>& names_;
  const std::vector<Role>& roles_;
  const std::string place_;                               // what a row's number is the number of
  const int code_;                                        // column; -1 without one
  int otherHeadingLine_ = 0;                              // 0: none so far
  int records_ = 0, commented_ = 0, firstCommented_ = 0;  // rows, and the line of the first that begins as a comment
  std::string markOfComment_;
};

}  // namespace merlane
