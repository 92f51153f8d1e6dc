#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/visit_record.h"

namespace merlane {

/// Tells when rows of one code and year are of two places, as nest 1 of one colony and of another: two broods that
/// would become one.
class BroodPlaces {
 public:
  /// Looks at columns whose headings speak of places, or that could be the code and are not.
  BroodPlaces(const ImportChoices& choices, const std::vector<std::string>& names);

  void Look(const RowFields& fields, const VisitRecord& visit, Remarks& remarks);

 private:
  const std::vector<std::string>& names_;
  std::vector<std::size_t> columns_;
  std::unordered_map<std::string, std::string> places_;  // by column, year and code; empty once it was told
};

}  // namespace merlane
