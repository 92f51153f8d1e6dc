#include "minimise/marquardt_report.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "minimise/parameter_rows.h"

namespace merlane {
namespace {

std::string Counts(const MarquardtProgress& progress) {
  return fmt::format("{} iterations and {} function calls\n", progress.Iterations, progress.NF);
}

std::string NoteLine(const MarquardtProgress& progress) { return "Note: " + Counts(progress); }

std::string StatusLine(const RunState& state, const MarquardtProgress& progress) {
  return fmt::format("Current Min> {} Last Min> {} {}\n", Format(progress.FTrial, "####0.000000    "),
                     Format(progress.FBest, "####0.000000    "),
                     ConvergenceMeasure(state.algorithm.Tolerance, progress.FTrial, progress.FBest));
}

std::string CurrentMinimumLine(const RunState& state) {
  return fmt::format("Current minimum found at these {} adjusted parameter values: \n", state.free.NFREE);
}

std::string MinimumLine(const RunState& state, const MarquardtProgress& progress) {
  return fmt::format("Minimum of {} found at these {} adjusted parameter values:\n",
                     Format(progress.FBest, "####0.000000"), state.free.NFREE);
}

std::string DerivativeField(double derivative) { return NumberField(derivative, "0.00000E+00", 13) + "\n"; }

}  // namespace

std::string MarquardtTerminalPane(const RunState& state, const MarquardtProgress& progress) {
  return "\n" + NoteLine(progress) + "\n" + StatusLine(state, progress) + "\n" + CurrentMinimumLine(state) + "\n" +
         PaneRows(state, state.free.FreeValue) + "\n";
}

std::string MarquardtFileLog(const RunState& state, const MarquardtProgress& progress) {
  return NoteLine(progress) + "\n" + CurrentMinimumLine(state) + "\n" + LogRows(state, state.free.FreeValue) + "\n\n" +
         StatusLine(state, progress) + "\n";
}

std::string MarquardtFinalPane(const RunState& state, const MarquardtProgress& progress) {
  return MinimumLine(state, progress) + "\n" + PaneRows(state, state.free.FreeValue) + "\nThis result required " +
         Counts(progress) + UnevaluatedLine(progress.unevaluated);
}

std::string MarquardtFinalLog(const RunState& state, const MarquardtProgress& progress) {
  return "\n\n" + MinimumLine(state, progress) + "\n" + LogRows(state, state.free.FreeValue) + "\n\nafter " +
         Counts(progress) + UnevaluatedLine(progress.unevaluated) + "\n";
}

std::string DerivativeList(const RunState& state, const MarquardtProgress& progress, DerivativeMode mode) {
  const char* const kind = mode == DerivativeMode::Analytical ? "Analytical" : "Numerical";
  const FreeParameters& free = state.free;
  std::string text =
      "\n1st & 2nd partial derivatives of the objective function wrt to the previous parameter estimates:\n\n";
  for (int i = 1; i <= free.NFREE; ++i) {
    text += fmt::format("{} 1st derivative wrt Parameter      {}{}", kind, Format(free.FreeIndex(i), "000)"),
                        DerivativeField(progress.GradientShown(i)));
    for (int j = i; j <= free.NFREE; ++j)
      text += fmt::format("{} 2nd derivative wrt Parameters {},{}{}", kind, Format(free.FreeIndex(i), "000"),
                          Format(free.FreeIndex(j), "000)"), DerivativeField(progress.HessianShown(i, j)));
  }
  return text;
}

}  // namespace merlane
