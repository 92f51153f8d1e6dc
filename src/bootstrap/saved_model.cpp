#include "bootstrap/saved_model.h"

#include <cmath>

#include "base/runtime_failure.h"
#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr double LeastTolerance = 1e-6;

/// The run as it would come back from a file of this form.
RunState Written(RunState run, AlgorithmForm form) {
  ReadAlgorithm(AlgorithmText(run.algorithm, form), run.algorithm);
  BuildFuseGroups(run);
  return run;
}

bool SameParameter(const AlgorithmData& a, const AlgorithmData& b, int i) {
  return a.Value(i) == b.Value(i) && a.Step(i) == b.Step(i) && a.Fuse(i) == b.Fuse(i);
}

}  // namespace

bool TakeSavedAlgorithm(const std::string& text, RunState& run) {
  AlgorithmData& a = run.algorithm;
  if (ReadAlgorithm(text, a).failure != AlgorithmReading::Failure::None) return false;
  if (std::fabs(a.Tolerance) < LeastTolerance) a.Tolerance = LeastTolerance;
  BuildFuseGroups(run);
  PackFree(run);
  return true;
}

std::optional<std::string> ReadSavedAlgorithm(RunState& run) {
  try {
    std::string text = ReadWholeFile(run.algorithm.AlgName);
    if (TakeSavedAlgorithm(text, run)) return text;
  } catch (const RuntimeFailure&) {
  }
  return std::nullopt;
}

std::vector<int> UnsavedParameters(const RunState& run, const RunState& saved) {
  RunState present = run;
  BuildFuseGroups(present);
  const RunState forms[] = {Written(run, AlgorithmForm::Menu), Written(run, AlgorithmForm::Ranking),
                            std::move(present)};
  std::vector<int> unsaved;
  for (int i = 1; i <= run.algorithm.NPAR; ++i) {
    bool same = false;
    for (const RunState& form : forms) same = same || SameParameter(form.algorithm, saved.algorithm, i);
    if (!same) unsaved.push_back(i);
  }
  return unsaved;
}

}  // namespace merlane
