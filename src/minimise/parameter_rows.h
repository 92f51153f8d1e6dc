#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/array1.h"
#include "control/run_state.h"

namespace merlane {

/// The free parameters in a text pane: a row each, with number, value (`values`, 1..NFREE) and fuse.
std::string PaneRows(const RunState& state, const Array1<double>& values);

/// The free parameters in the log: four to a row, with number and value.
std::string LogRows(const RunState& state, const Array1<double>& values);

/// The measure of convergence between two objectives: their difference, for a negative tolerance over the second, which
/// is undefined when that is 0.
std::string ConvergenceMeasure(double tolerance, double F, double reference);

/// A line that tells at how many points the objective could not be evaluated; empty when there are none.
std::string UnevaluatedLine(std::int32_t points);

/// A line that tells that a minimum, of which `penalty` is one, is no fit, so that its values are not to be believed;
/// empty for a fit.
std::string PenaltyLine(double penalty, double minimum);

/// What the objective of a search is called in question by.
struct CarriedOver {
  double calledOnce = 0;  // the objective of one function call at the same values; UnevaluatedF where there is none
  std::string why;        // the model's words on where the difference comes from, and what to do; lines
};
/// Lines that tell that the objective of a search is not that of one function call at its values; empty where none of
/// the digits that are shown differs.
std::string CarriedOverLines(const std::optional<CarriedOver>& carried, double reached);

}  // namespace merlane
