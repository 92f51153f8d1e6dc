#pragma once

#include <string>

#include "minimise/marquardt.h"

namespace merlane {

/// The texts of a run: for the pane of the form, and for the log. Each ends its lines with "\n".

/// At each accepted step.
std::string MarquardtTerminalPane(const RunState& state, const MarquardtProgress& progress);
std::string MarquardtFileLog(const RunState& state, const MarquardtProgress& progress);

/// At a minimum.
std::string MarquardtFinalPane(const RunState& state, const MarquardtProgress& progress);
std::string MarquardtFinalLog(const RunState& state, const MarquardtProgress& progress);

/// The derivatives from which the last step was taken.
std::string DerivativeList(const RunState& state, const MarquardtProgress& progress, DerivativeMode mode);

}  // namespace merlane
