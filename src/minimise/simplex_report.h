#pragma once

#include <string>

#include "minimise/simplex.h"

namespace merlane {

/// The texts of a run: for the panes of the form, and for the log. Each ends its lines with "\n".

/// Of a simplex that has just been built or resumed.
std::string SimplexInitialPane(const RunState& state, const SimplexState& simplex);
std::string SimplexInitialLog(const RunState& state, const SimplexState& simplex);

/// Every TerminalFreq and FileFreq iterations.
std::string SimplexTerminalPane(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress);
std::string SimplexFileLog(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress);

/// At a minimum.
std::string SimplexFinalPane(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress);
std::string SimplexFinalLog(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress);

}  // namespace merlane
