#include "control/parameter_notes.h"

namespace merlane {

void TakeBackNotes(AlgorithmData& algorithm, const AlgorithmData& before, const Array1<std::string>& plain) {
  if (before.Step.Size() != algorithm.NPAR) return;
  for (int i = 1; i <= algorithm.NPAR; ++i) {
    const bool free = algorithm.Step(i) != 0, wasFree = before.Step(i) != 0;
    if (free != wasFree || (!free && algorithm.Value(i) != before.Value(i))) algorithm.ParName(i) = plain(i);
  }
}

}  // namespace merlane
