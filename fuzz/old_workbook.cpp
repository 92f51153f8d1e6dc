// Workbooks of the old kind (.xls), as far as they are read here.
#include "base/runtime_failure.h"
#include "platform/freexl_omissions.h"
#include "targets.h"

namespace merlane::fuzz {

void OldWorkbook(std::string_view bytes) {
  try {
    for (const auto& [sheet, omitted] : FreexlOmissionsOf(bytes))
      for (const auto& [place, cell] : omitted.cells)
        Require(place.first < 1U << 16 && place.second < 1U << 16, "cells are where the format has room for them");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
}

}  // namespace merlane::fuzz
