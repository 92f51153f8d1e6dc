#include "minimise/minimiser_form.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "forms/desk.h"

namespace merlane {

void MinimiserForm::ClearPanels(int first, int last) {
  for (int panel = first; panel <= last; ++panel) SetPanel(panel, "");
}

void MinimiserForm::ReviewPriors() {
  if (state_.flags.BayesOn && reviewPriors) reviewPriors();
}

void MinimiserForm::TellUnlessBootstrap(const std::string& boxTitle, const std::string& text, int boxStyle,
                                        const std::string& details) {
  if (!state_.flags.BootstrapMode) desk.Tell(boxTitle, text, boxStyle, details);
}

std::string MinimiserForm::PenaltyNote(double minimum) const {
  return state_.flags.BootstrapMode ? "" : PenaltyLine(bestPenalty(), minimum);
}

std::string MinimiserForm::CarriedOverNote(double reached, const Array1<double>& values) const {
  return state_.flags.BootstrapMode ? "" : CarriedOverLines(carriedOver(values), reached);
}

void MinimiserForm::ShowProfilePoint() {
  if (!state_.profile.ProfileOn) return;
  const std::int16_t p = state_.profile.ProfileParameter;
  SetPanel(1, fmt::format("Calculating profile point {} of {}, Value of parameter # {} which is being profiled is: {}",
                          Format(profile_.ProfilePoint, "##0"), Format(profile_.ProfilePoints, "##0"), p,
                          Format(state_.algorithm.Value(p), "0.00000E+00")));
  desk.Turn();
}

MinimiserForm::ProfileAnswer MinimiserForm::AskProfile(const std::string& boxTitle) {
  if (desk.Ask(boxTitle, "Interrupt received. Do you want to quit the ML procedure?", style::YesNoQuestion) ==
      Answer::Yes) {
    profile_.QuitAsked = true;
    return ProfileAnswer::QuitProcedure;
  }
  const Answer next =
      desk.Ask(boxTitle, "Do you want to continue starting with the NEXT point?", style::YesNoQuestionDefaultNo);
  return next == Answer::Yes ? ProfileAnswer::NextPoint : ProfileAnswer::GoOn;
}

std::string MinimiserForm::StopCaption() const {
  return state_.flags.BootstrapMode
             ? "&Interrupt this bootstrap, accept its current deviance and parameter estimates, then start the next "
               "bootstrap"
             : "&Interrupt this minimization";
}

}  // namespace merlane
