#pragma once

#include <string>
#include <vector>

#include "import/import_choices.h"

namespace merlane {

/// Knows the rows between or below the records that are none: sums and means, headings once more, and all that stands
/// behind another heading.
class StrayRows {
 public:
  StrayRows(const ImportChoices& choices, const std::vector<std::string>& names);

  /// Why a row is no record; empty when nothing speaks against it. Rows are asked about in their order.
  std::string WhyStray(const TextRow& row);

 private:
  bool IsSum(const TextRow& row) const;

  const std::vector<std::string>& names_;
  const std::string place_;   // what a row's number is the number of
  const int code_;            // column; -1 without one
  int otherHeadingLine_ = 0;  // 0: none so far
};

}  // namespace merlane
