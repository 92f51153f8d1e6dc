#include "minimise/simplex_report.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "minimise/parameter_rows.h"

namespace merlane {
namespace {

double Low(const SimplexState& simplex) { return simplex.SimplexF(simplex.ILow); }
double High(const SimplexState& simplex) { return simplex.SimplexF(simplex.IHigh); }
const Array1<double>& Best(const SimplexState& simplex) { return simplex.Simplex(simplex.ILow); }

std::string InitialLine(const SimplexState& simplex) {
  const auto number = [](double x) { return Format(x, "0.0000000E+00"); };
  return fmt::format("Initial Simplex: Starting function value> {} Max> {} Min> {}\n", number(simplex.SimplexF(1)),
                     number(High(simplex)), number(Low(simplex)));
}

std::string Counts(const SimplexProgress& progress) {
  return fmt::format("{} iterations, {} function calls, and {} restarts\n", progress.Iterations, progress.NF,
                     progress.Restarts);
}

std::string NoteLine(const SimplexProgress& progress) { return "Note: " + Counts(progress); }

std::string StatusLine(const RunState& state, const SimplexState& simplex) {
  return fmt::format("Current: Min> {} Max> {} {}\n", Format(Low(simplex), "####0.000000    "),
                     Format(High(simplex), "####0.000000    "),
                     ConvergenceMeasure(state.algorithm.Tolerance, High(simplex), Low(simplex)));
}

std::string ActionLine(const SimplexProgress& progress) {
  return fmt::format("Number of function values (parameter vectors) improved: {}; Action accepted: {}\n",
                     Format(progress.ImprovedCount, "#0"), progress.ActionAccepted);
}

std::string CurrentMinimum(const RunState& state) {
  return fmt::format("Current minimum found at these {} adjusted parameter values:", state.free.NFREE);
}

std::string MinimumLine(const RunState& state, const SimplexState& simplex) {
  return fmt::format("Minimum of {} found at these {} adjusted parameter values:\n",
                     Format(Low(simplex), "####0.000000"), state.free.NFREE);
}

std::string RequiredLine(const SimplexProgress& progress) {
  return "This result required " + Counts(progress) + UnevaluatedLine(progress.unevaluated);
}

}  // namespace

std::string SimplexInitialPane(const RunState& state, const SimplexState& simplex) {
  return InitialLine(simplex) + "\nInitial parameter values:\n\n" + PaneRows(state, simplex.Simplex(1));
}

std::string SimplexInitialLog(const RunState& state, const SimplexState& simplex) {
  return "\n\nInitial parameter values:\n\n" + LogRows(state, simplex.Simplex(1)) + "\n\n" + InitialLine(simplex);
}

std::string SimplexTerminalPane(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress) {
  std::string text = "\n" + NoteLine(progress) + "\n" + StatusLine(state, simplex) + "\n";
  if (state.algorithm.TerminalFreq == 1) text += ActionLine(progress) + "\n";
  return text + CurrentMinimum(state) + "\n\n" + PaneRows(state, Best(simplex)) + "\n";
}

std::string SimplexFileLog(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress) {
  std::string text = "\n" + NoteLine(progress);
  if (state.algorithm.FileFreq == 1) text += ActionLine(progress);
  return text + "\n" + CurrentMinimum(state) + " \n\n" + LogRows(state, Best(simplex)) + "\n\n" +
         StatusLine(state, simplex) + "\n";
}

std::string SimplexFinalPane(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress) {
  return MinimumLine(state, simplex) + "\n" + PaneRows(state, Best(simplex)) + "\n" + RequiredLine(progress);
}

std::string SimplexFinalLog(const RunState& state, const SimplexState& simplex, const SimplexProgress& progress) {
  return "\n\n" + MinimumLine(state, simplex) + "\n" + LogRows(state, Best(simplex)) + "\n\n" + RequiredLine(progress) +
         "\n";
}

}  // namespace merlane
