#include "bootstrap/saved_model.h"

#include <cmath>

#include "base/runtime_failure.h"
#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr double LeastTolerance = 1e-6;

/// The run with its figures as they would come back from a file. The fuses stay: a file may keep one letter of two, and
/// make one group of several.
RunState Rounded(RunState run) {
  const Array1<std::string> fuses = run.algorithm.Fuse;
  ReadAlgorithm(AlgorithmText(run.algorithm, AlgorithmForm::Menu), run.algorithm);
  run.algorithm.Fuse = fuses;
  BuildFuseGroups(run);
  return run;
}

bool SameFigures(const AlgorithmData& a, const AlgorithmData& b, int i, Steps steps) {
  const bool sameStep = steps == Steps::BySize ? a.Step(i) == b.Step(i) : (a.Step(i) == 0) == (b.Step(i) == 0);
  return a.Value(i) == b.Value(i) && sameStep;
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

std::vector<int> UnsavedParameters(const RunState& run, const RunState& saved, Steps steps) {
  RunState present = run;
  BuildFuseGroups(present);
  const AlgorithmData& file = saved.algorithm;
  const AlgorithmData exact = present.algorithm, rounded = Rounded(run).algorithm;
  std::vector<int> unsaved;
  for (int i = 1; i <= run.algorithm.NPAR; ++i) {
    // What a group is called means nothing.
    const bool samePlace = LeaderOf(exact.Fuse, i) == LeaderOf(file.Fuse, i);
    if (!samePlace || !(SameFigures(exact, file, i, steps) || SameFigures(rounded, file, i, steps)))
      unsaved.push_back(i);
  }
  return unsaved;
}

}  // namespace merlane
