#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "data/brood_data.h"

namespace merlane {

// The text of the records that the program writes in the columns of record_layout.h.

/// How many columns a text takes in a file that has the codes of these data.
int ColumnCount(const BroodData& data, std::string_view text);

/// The code of a brood as it was read, flush right in its columns.
std::string CodeField(const BroodData& data, std::size_t brood);

/// The fields of a visit's record up to its count, each followed by a comma. An unknown age is "-?" for a clutch and
/// "?" for a brood.
std::string FieldsBeforeCount(const BroodData& data, std::size_t brood, std::size_t visit);

/// The field of a count of eggs or juveniles.
std::string CountField(int count);

/// The fields of a brood's covariates, a comma before each.
std::string CovariateFields(const BroodData& data, std::size_t brood);

/// Calls `action`(brood, visit) for each visit that has a record, in the order of the records of a file.
template <class Action>
void ForEachRecord(const BroodData& data, Action action) {
  for (std::size_t b = 0; b < data.FirstVisit.size(); ++b) {
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v)
      if (data.HasRecord(v)) action(b, v);
  }
}

}  // namespace merlane
