#pragma once

#include <string>

#include "control/objective.h"
#include "control/run_state.h"
#include "inference/ranking.h"

namespace merlane {

// How the model of the present algorithm data enters the ranking.

/// Evaluates it: objective, sample size and, while priors are on, the prior term. While no constant has been entered a
/// prior counts for nothing. RuntimeFailure when it cannot be evaluated.
void EvaluateCompetitor(Competitor& model, RunState& state, Objective& objective);

/// Names its algorithm, covariance and priors files; false when the algorithm file has no folder.
bool NameFiles(Competitor& model, const RunState& state);

/// Keeps its estimates and fuses, and which of its parameters are free: those count.
void CountParameters(Competitor& model, const AlgorithmData& algorithm);

/// The name itself if that file can be read, else the marker. A bare name lies beside the model's algorithm file.
std::string ReadableName(const Competitor& model, const std::string& file, const char* marker);

}  // namespace merlane
