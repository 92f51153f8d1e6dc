#include "uncertainty/prior_profile_dialogue.h"

#include <fmt/format.h>

#include <string>

#include "base/at_end.h"
#include "uncertainty/evaluation_questions.h"
#include "uncertainty/evaluation_table.h"

namespace merlane {
namespace {

constexpr const char* Title = "Evaluation of prior distributions";

constexpr const char* Notice =
    "This routine will create a series of plots to evaluate prior distributions.\r\n"
    "If the prior distribution is uniform-unbounded (U) no plots will be generated.\r\n"
    "First choose the parameter to be profiled, then the number of data points.\r\n"
    "This routine uses the moments (mean and SD) to set the domain of the parameter.\r\n"
    "Choose plot 1 to get a likelihood profile plot. \r\n"
    "Choose plot 2 to get a Bayesian prior distribution. \r\n"
    "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
    "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
    "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
    "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
    "Choose plot 7 to get a mode-centered Gaussian distribution plot. ";

}  // namespace

void PriorProfileDialogue::ProfilePrior(std::int16_t selected) {
  desk_.Tell(Title, Notice, style::Information);
  const auto parameter = AskParameterNumber(
      desk_, Title,
      fmt::format("Choose the parameter number to be profiled.\r\n(0 < parameter # <= {})", state_.algorithm.NPAR),
      state_.algorithm.NPAR, std::to_string(selected));
  if (!parameter) return;
  if (priors_.PriorCode(*parameter) == "U") {
    desk_.Tell(Title, "There is nothing to plot when the prior distribution is uniform-unbounded", style::Exclamation);
    return;
  }
  const auto asked =
      AskPointCount(desk_, Title, "Choose the number of x-y data points per plot.\r\n(0 <= # points <= 1001)", 0, 101);
  if (!asked) return;
  parameter_ = *parameter;
  points_ = *asked;
  const EvaluatedPoints points = Evaluate();
  if (!points.HasMinimum()) return;
  const ConfidenceSeries series = MakeConfidenceSeries(points);
  const Basis present = Present();
  const auto whose = WordsSince(NamedFor(fmt::format("Prior of parameter {}", parameter_), present), present,
                                [this] { return Present(); });
  distPlot_.ShowDistPlot(ForPlots(DistributionSeries::Source::Prior, parameter_, series), whose);
  table_.Open(PriorProfileTable(series), whose);
  desk_.ToFront(distPlot_);
}

Basis PriorProfileDialogue::Present() const {
  Basis present;
  present.priors = priors_.InWords();
  present.constant = state_.flags.ObjectiveConstant;
  present.AlgName = state_.flags.PriorsKnownAs;
  return present;
}

EvaluatedPoints PriorProfileDialogue::Evaluate() {
  // The status line of the editor comes back behind the points.
  const AtEnd editing([this, text = main_.stbMain5.Get(1)] { main_.ShowProgress(text); });
  return merlane::ProfilePrior(state_.algorithm.Value, parameter_, points_, state_.flags.ObjectiveConstant, priors_,
                               *this);
}

void PriorProfileDialogue::OnPoint(int point, double value) {
  main_.ShowProgress(SinglePointText(point, points_, parameter_, value));
}

}  // namespace merlane
