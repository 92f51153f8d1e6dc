#include "minimise/parameter_rows.h"

#include <fmt/format.h>

#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "minimise/evaluate_trial.h"

namespace merlane {
namespace {

std::string Field(int parameter, double value) {
  return Format(parameter, "    000) ") + NumberField(value, "0.0000000E+00", 14);
}

}  // namespace

std::string PaneRows(const RunState& state, const Array1<double>& values) {
  std::string text;
  for (int i = 1; i <= state.free.NFREE; ++i) {
    const int parameter = state.free.FreeIndex(i);
    text += Field(parameter, values(i)) + " " + RightSet(state.algorithm.Fuse(parameter), 3) + "  \n";
  }
  return text;
}

std::string LogRows(const RunState& state, const Array1<double>& values) {
  constexpr int PerRow = 4;
  std::string text;
  for (int i = 1; i <= state.free.NFREE; ++i) {
    text += Field(state.free.FreeIndex(i), values(i));
    if (i % PerRow == 0 || i == state.free.NFREE) text += "\n";
  }
  return text;
}

std::string ConvergenceMeasure(double tolerance, double F, double reference) {
  const bool relative = tolerance < 0;
  const std::string label = relative ? "Rel TC> " : "Abs TC> ";
  const double measure = std::fabs(relative ? (F - reference) / reference : F - reference);
  return label + (std::isfinite(measure) ? Format(measure, "0.0000E+00") : "undefined");
}

std::string UnevaluatedLine(std::int32_t points) {
  if (points == 0) return "";
  return fmt::format("Note: The objective function could not be evaluated at {} point{}, which counted as 1E+30\n",
                     points, points == 1 ? "" : "s");
}

std::string PenaltyLine(double penalty, double minimum) {
  if (!(penalty > 0) || penalty < minimum / 2) return "";
  return fmt::format("Note: {} of this minimum is a penalty: these values lie outside what the model can do\n",
                     Format(penalty, "0.0000000E+00"));
}

std::string CarriedOverLines(const std::optional<CarriedOver>& carried, double reached) {
  const auto shown = [](double F) { return Format(F, "####0.000000"); };
  if (!carried || shown(carried->calledOnce) == shown(reached)) return "";
  const std::string once =
      carried->calledOnce >= UnevaluatedF ? "cannot be evaluated" : "gives " + shown(carried->calledOnce);
  return fmt::format("Note: {} is the objective of this search alone: one function call at these values {}\n{}",
                     shown(reached), once, carried->why);
}

}  // namespace merlane
