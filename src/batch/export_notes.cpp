#include "batch/export_notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

#include "control/fit_label.h"
#include "control/fuses.h"

namespace merlane {
namespace {

/// The values as an evaluation leaves them: what the model takes without its sign is the same with it.
Array1<double> AsEvaluated(const Program& program, const Basis& basis) {
  AlgorithmData estimates = program.state.algorithm;
  estimates.Value = basis.Value;
  estimates.Step = basis.Step;
  return program.model.AsEvaluated(estimates);
}

bool FitIsOfTheseData(const Program& program) {
  return program.fit.basis && program.fit.basis->reading == program.state.reading;
}

}  // namespace

std::string NoteOnParameters(const AlgorithmData& algorithm) {
  std::vector<int> behind;
  for (int i = 1; i <= std::min(algorithm.Value.Size(), algorithm.Fuse.Size()); ++i)
    if (algorithm.Value(i) != algorithm.Value(LeaderOf(algorithm.Fuse, i))) behind.push_back(i);
  if (behind.empty()) return "";
  return fmt::format(
      "fused, but not yet with the value of the first of the same fuse, which is what the model takes: parameter {}. "
      "They follow with the next function call.",
      fmt::join(behind, ", "));
}

std::string ChangesSinceFit(const Program& program) {
  if (!program.fit.basis) return "";
  Basis then = *program.fit.basis, now = program.objective.UsersPresent();
  if (FitIsOfTheseData(program)) {
    then.Value = AsEvaluated(program, then);
    now.Value = AsEvaluated(program, now);
  }
  return then.SameEstimates(now) ? "" : ChangesBetween(then, now);
}

std::string NoteOnFit(const Program& program) {
  const std::string changes = ChangesSinceFit(program);
  if (changes.empty()) return "";
  return WithChanges(NamedFor("this is the last function call or minimization", *program.fit.basis), changes);
}

std::string NoteOnVisits(const Program& program, const BestTables& tables) {
  if (FitIsOfTheseData(program)) return NoteOnFit(program);
  const bool present = tables.Value == AsEvaluated(program, program.objective.UsersPresent());
  return tables.Value.Size() == 0 || present
             ? ""
             : "this is of parameter values that were evaluated before, not of the present ones.";
}

}  // namespace merlane
