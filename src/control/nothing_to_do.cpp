#include "control/nothing_to_do.h"

#include <algorithm>

namespace merlane {

bool NothingIsFree(const AlgorithmData& a) {
  return std::ranges::all_of(a.Step, [](double step) { return step == 0; });
}

void TellNothingToDo(Desk& desk) { desk.Tell("There is nothing to do", "All step sizes are zero", style::Exclamation); }

}  // namespace merlane
