#include "uncertainty/posterior_dialogue.h"

#include <fmt/format.h>

#include <limits>
#include <utility>

#include "base/at_end.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/objective_constant.h"
#include "uncertainty/evaluation_questions.h"
#include "uncertainty/evaluation_table.h"
#include "uncertainty/time_left.h"

namespace merlane {

const EvaluationDialogue::Texts PosteriorDialogue::Words{
    .title = "Bayesian parameter estimate evaluation",
    .curve = "posterior distribution",
    .shown = "Posterior distribution",
    .notice =
        "This routine will create a series of plots, and if desired, save the x-y data. \r\n"
        "Choose plot 1 to get a likelihood profile plot. \r\n"
        "Choose plot 2 to get a Bayesian posterior distribution. \r\n"
        "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
        "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
        "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
        "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
        "Choose plot 7 to get a mode-centered Gaussian distribution plot.\r\n\r\n"
        "If only two variables are evaluated a bivarate pdf plot is also generated",
    .introduction =
        "First choose the parameter to be evaluated, then the number of grid points. "
        "You may then wisely edit the mid-range parameter value and the step size "
        "for that parameter and those (maximum = 6) over which probabilities will be integrated. "
        "For a one dimensional example, if you choose 101 grid points then grid point 1 will be "
        "the parameter value - 50 * the step size, grid point 51 will be the point parameter value, "
        "and grid point 101 will be the parameter value + 50 * the step size. "
        "Parameters with a step size of zero will not be integrated into the BP distribution. "
        "We suggest you first build a covariance matrix for parameters with non-zero step sizes "
        "and thus let the statistical machinery determine approximate values for the step sizes. "
        "Be warned, however, that this choice will automatically change the values for step sizes "
        "in your algorithm data file.\r\n\r\nDo you want to continue?",
    .again = "Do you want to perform integrations now?\r\nChoosing 'NO' will give you the previous BP plots",
    .parameterPrompt = "Choose the parameter number to be evaluated or Quit: ",
    .pointsPrompt = "Choose the number of data points for profile parameter:\r\n0 <= # points <= 1001",
    .zeroStepTitle = "Problem with setup",
    .leastPoints = 1};

/// Shows how far the integration has come, and asks when it is interrupted.
class PosteriorDialogue::Progress : public PosteriorWatch {
 public:
  Progress(PosteriorDialogue& dialogue, const EvaluationSetup& setup)
      : dialogue_(dialogue), p_(dialogue.p_), setup_(setup) {}

  void OnBadConstant() override { ReportBadConstant(p_.desk); }

  void OnBivariateTooLarge() override {
    p_.desk.Tell("Error message", "Bivariate array is probably too large; reduce grid size", style::Information);
  }

  void OnStart(double calls) override {
    timeLeft_.Start();
    if (p_.state.free.NFREE == 0) return;
    dialogue_.SetPanel(2, fmt::format("{:.0f} function calls required", calls));
    dialogue_.SetPanel(3, "Started at " + TimeOfDay(p_.desk.host.clock));
    dialogue_.SetPanel(4, fmt::format("Integrating probabilities for profile parameter #{}", setup_.ProfileParameter));
  }

  void OnPoint(int point) override {
    const double x = p_.state.algorithm.Value(setup_.ProfileParameter);
    dialogue_.SetPanel(1, p_.state.free.NFREE == 0
                              ? SinglePointText(point, setup_.ProfilePoints, setup_.ProfileParameter, x)
                              : fmt::format("Value of parameter being profiled: {} (point {} of {})",
                                            Format(x, "0.0000E+00"), point, setup_.ProfilePoints));
  }

  void OnGridPoint(int parameter, int j) override {
    dialogue_.SetPanel(1, fmt::format("Parameter #{} (point {} of {})", parameter, j, setup_.GridPoints));
    p_.desk.Turn();
  }

  void OnCall(double call, double calls) override {
    dialogue_.SetPanel(1, fmt::format("Function calls remaining: {:.0f}", calls - call));
    dialogue_.SetPanel(2, "Estimated time remaining (m:s): " + timeLeft_.Text(call, calls - call));
    p_.desk.Turn();
  }

  void OnUnevaluated(double nodes, const std::string& why) override {
    p_.desk.Tell(Words.title,
                 fmt::format("{:.0f} of the function calls could not be evaluated and count as impossible, with a "
                             "likelihood of 0. The first of them:\r\n{}",
                             nodes, why),
                 style::Exclamation);
  }

  bool Quits() override {
    return std::exchange(p_.state.flags.InterruptBayes, false) && dialogue_.AskQuit("Bayesian calculations");
  }

 private:
  PosteriorDialogue& dialogue_;
  EvaluationParts& p_;
  const EvaluationSetup& setup_;
  TimeLeft timeLeft_{p_.desk.host.clock};
};

PosteriorDialogue::PosteriorDialogue(EvaluationParts& parts, FrmDistributionTable& frmBayesian, FrmBivarPlot& bivarPlot)
    : EvaluationDialogue(parts, EvaluationKind::Posterior, Words, frmBayesian), bivarPlot_(bivarPlot) {}

EvaluationDialogue::Reply PosteriorDialogue::AskMethod(EvaluationSetup& setup) {
  const int others = p_.state.free.NFREE - 1;
  if (others < 1) return Reply::GoOn;
  const auto points = AskGridPoints();
  if (!points) return Reply::Quit;
  setup.GridPoints = *points;
  // The number that the message quotes is not the one that is tested.
  if (Pow(setup.GridPoints, others) * setup.ProfilePoints <= std::numeric_limits<std::int32_t>::max())
    return Reply::GoOn;
  p_.desk.Tell("Too many function calls",
               "Required number of function calls exceeds the maximum allowed of 32767.\r\n"
               "Correct this by reducing the number of free parameters or the grid resolution",
               style::Exclamation);
  return Reply::AskAgain;
}

std::optional<std::int16_t> PosteriorDialogue::AskGridPoints() {
  return AskPointCount(p_.desk, Words.title,
                       "Choose the number of data points for grid parameter:\r\n0 <= # points <= 1001",
                       Words.leastPoints, 25);
}

double PosteriorDialogue::StepFrom(double standardError, std::int16_t parameter, const EvaluationSetup& setup) const {
  return parameter == setup.ProfileParameter ? StepAcross(standardError, setup)
                                             : standardError * 7 / (setup.GridPoints - 1);
}

std::optional<double> PosteriorDialogue::Run(const EvaluationSetup& asked) {
  PinnedParameter pinned(p_.state, asked.ProfileParameter);
  if (p_.state.free.NFREE > MostGridParameters) {
    p_.desk.Tell("Problem with setup", "Too many free parameters - maximum is 6", style::Exclamation);
    return std::nullopt;
  }
  EvaluationSetup setup = asked;
  if (p_.state.free.NFREE > 0 && setup.GridPoints == 0) {
    // Others were freed in the editor, behind the question.
    const auto points = AskGridPoints();
    if (!points) return std::nullopt;
    setup.GridPoints = *points;
  }
  p_.state.flags.InterruptBayes = false;
  Begin();
  if (std::exchange(p_.last.ReferenceReading, p_.state.reading) != p_.state.reading) p_.last.ReferenceF = 0;
  Progress progress(*this, setup);
  Posterior posterior = [&] {
    const auto interruptOffered = Meanwhile(p_.main.mnuBayesianInt.visible, true);
    double reference = p_.last.ReferenceF;
    Posterior evaluated = merlane::EvaluatePosterior(pinned, {setup.ProfilePoints, setup.GridPoints}, p_.state,
                                                     p_.objective, reference, progress, p_.desk.host.shared);
    p_.last.ReferenceF = reference;  // that of a failed one serves nobody
    return evaluated;
  }();
  pinned.Restore();  // unlike a profile, which holds the parameter while its plots are open
  if (p_.state.free.NFREE > 0) SetPanel(3, "Integrations completed at " + TimeOfDay(p_.desk.host.clock));
  p_.desk.host.windows.Beep();
  if (posterior.points.Count() > 0 && posterior.Vanishes())
    TellTooSmall(
        "The posterior vanishes at all points: every likelihood is too small for a number, so there is no curve to be "
        "drawn.");
  if (posterior.losesDigits)
    TellTooSmall("The likelihoods are so small that they have lost digits: do not trust this curve.");
  if (const std::optional<double> step = OfferOneSide(pinned, posterior.points)) return step;
  Keep(setup, posterior.points, std::move(posterior.bivariate));
  const bool interrupted = static_cast<int>(posterior.points.all.size()) < setup.ProfilePoints;
  if (!p_.last.series && interrupted) ShowPoints(posterior.points);
  ShowLast();
  return std::nullopt;
}

void PosteriorDialogue::TellTooSmall(const std::string& what) const {
  p_.desk.Tell(Words.title,
               what +
                   "\r\nEvaluate a posterior with exactly one other free parameter first: it sets the reference that "
                   "makes the likelihoods larger, and later ones keep it.",
               style::Exclamation);
}

std::string PosteriorDialogue::Table(const ConfidenceSeries& series) const { return PosteriorTable(series); }

void PosteriorDialogue::ShowMore(const Evaluation& evaluation) {
  if (!evaluation.bivariate) return;
  const BivariateDensity& density = *evaluation.bivariate;
  if (p_.desk.Ask("Bivariate plot",
                  fmt::format("Do you want to view a bivariate plot of parameters {} and {}?", density.firstParameter,
                              density.secondParameter),
                  style::YesNoQuestion) != Answer::Yes)
    return;
  bivarPlot_.ShowBivarPlot(density);
  p_.desk.WaitFor(bivarPlot_);
  SaveGrid(density);
}

void PosteriorDialogue::SaveGrid(const BivariateDensity& density) {
  const auto path =
      p_.desk.AskFile({FileRequest::Kind::Save, "Save grid values in...",
                       "All files (*.*)|*.*|Grid files (*.grd)|*.grd", 2, ClockName(p_.desk.host.clock) + ".grd"});
  if (path) p_.desk.Write(*path, WithCrLf(GridFileText(density)));
}

}  // namespace merlane
