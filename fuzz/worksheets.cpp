// Worksheets as one process hands them to another.
#include "base/runtime_failure.h"
#include "platform/packed_worksheets.h"
#include "targets.h"

namespace merlane::fuzz {

void Worksheets(std::string_view bytes) {
  try {
    const std::vector<Worksheet> sheets = UnpackWorksheets(std::string(bytes));
    const std::string packed = PackWorksheets(sheets);
    Require(PackWorksheets(UnpackWorksheets(packed)) == packed, "packed worksheets come back");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
}

}  // namespace merlane::fuzz
