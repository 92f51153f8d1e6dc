#include "uncertainty/profile_dialogue.h"

#include <fmt/format.h>

#include <utility>

#include "base/at_end.h"
#include "control/objective_constant.h"
#include "uncertainty/evaluation_questions.h"
#include "uncertainty/evaluation_table.h"
#include "uncertainty/time_left.h"

namespace merlane {

const EvaluationDialogue::Texts ProfileDialogue::Words{
    .title = "ML parameter estimate evaluation",
    .curve = "likelihood profile",
    .shown = "Likelihood profile",
    .notice =
        "This routine will create a series of plots, and if desired, save the x-y data. \r\n"
        "Choose plot 1 to get a likelihood profile plot. \r\n"
        "Choose plot 2 to get a confidence distribution at ML estimates. \r\n"
        "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
        "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
        "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
        "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
        "Choose plot 7 to get a mode-centered Gaussian distribution plot.",
    .introduction =
        "First choose the parameter to be profiled, then the number of data points. "
        "You may then wisely edit the mid-range of the parameter value and the step size. "
        "For example, if you choose 101 profile points then profile point 1 will be the parameter "
        "value - 50 * the step size, profile point 51 will be the parameter value, and profile "
        "point 101 will be the parameter value + 50 * the step size. "
        "This routine is works best when the value of the parameter corresponds to the minimum. "
        "We suggest you first build a covariance matrix for parameters with non-zero step sizes "
        "and thus let the statistical machinery determine approximate values for the step sizes. "
        "Be warned, however, that this choice will automatically change the values for step sizes "
        "in your algorithm data file.\r\n\r\nDo you want to continue?",
    .again = "Do you want to perform minimizations now?\r\nChoosing 'NO' will give you the previous ML plots",
    .parameterPrompt = "Choose the parameter number to be profiled:",
    .pointsPrompt = "Choose the number of x-y data points per plot:\r\n0 <= # points <= 1001",
    .zeroStepTitle = "ML parameter estimate evaluation",
    .leastPoints = 0};

/// Shows how far the profile has come, and asks when it is interrupted.
class ProfileDialogue::Progress : public ProfileWatch {
 public:
  Progress(ProfileDialogue& dialogue, const EvaluationSetup& setup)
      : dialogue_(dialogue), p_(dialogue.p_), setup_(setup) {}

  void OnBadConstant() override { ReportBadConstant(p_.desk); }

  void OnPoint(int point) override {
    dialogue_.run_.ProfilePoint = static_cast<std::int16_t>(point);
    if (p_.state.free.NFREE > 0) return;  // the minimiser tells the point
    const std::int16_t p = setup_.ProfileParameter;
    dialogue_.SetPanel(1, SinglePointText(point, setup_.ProfilePoints, p, p_.state.algorithm.Value(p)));
  }

  bool Quits() override {
    return std::exchange(p_.state.flags.InterruptML, false) && dialogue_.AskQuit("Maximum-likelihood calculations");
  }

  void OnPointDone(int point) override {
    const int left = setup_.ProfilePoints - point;
    dialogue_.SetPanel(1, fmt::format("Minimizations remaining: {}", left));
    dialogue_.SetPanel(2, "Estimated time remaining (m:s): " + timeLeft_.Text(point, left));
    p_.desk.Turn();
  }

  void OnUnevaluated(int points, const std::string& why) override {
    p_.desk.Tell(Words.title,
                 fmt::format("{} of {} points could not be evaluated and count as impossible, with a -ln[L] of 1E+20. "
                             "The first of them:\r\n{}",
                             points, setup_.ProfilePoints, why),
                 style::Exclamation);
  }

 private:
  ProfileDialogue& dialogue_;
  EvaluationParts& p_;
  const EvaluationSetup& setup_;
  TimeLeft timeLeft_{p_.desk.host.clock};
};

ProfileDialogue::ProfileDialogue(EvaluationParts& parts, FrmDistributionTable& frmMaxLike, FrmSimplex& simplex,
                                 FrmMarquardt& marquardt, ProfileRun& run)
    : EvaluationDialogue(parts, EvaluationKind::Profile, Words, frmMaxLike),
      simplex_(simplex),
      marquardt_(marquardt),
      run_(run) {}

EvaluationDialogue::Reply ProfileDialogue::AskMethod(EvaluationSetup&) {
  const Answer answer =
      p_.desk.Ask(Words.title, "Choose 'Yes' to minimize with SIMPLEX\r\nChoose 'No' to minimize with MARQUARDT",
                  style::YesNoQuestion);
  method_ = answer == Answer::Yes ? Method::Simplex : Method::Marquardt;
  return Reply::GoOn;
}

double ProfileDialogue::StepFrom(double standardError, std::int16_t, const EvaluationSetup& setup) const {
  return StepAcross(standardError, setup);
}

std::optional<double> ProfileDialogue::Run(const EvaluationSetup& setup) {
  PinnedParameter pinned(p_.state, setup.ProfileParameter);
  SetPanel(1, "");
  p_.state.flags.InterruptML = false;
  run_ = {.ProfilePoint = 0, .ProfilePoints = setup.ProfilePoints, .QuitAsked = false};
  declined_ = false;
  Begin();
  Progress progress(*this, setup);
  const EvaluatedPoints points = [&] {
    const auto interruptOffered = Meanwhile(p_.main.mnuMLInt.visible, true);
    return merlane::EvaluateProfile(
        pinned, setup.ProfilePoints, p_.state, p_.objective, [this] { return Minimise(); }, progress);
  }();
  pinned.DropSign();
  p_.desk.host.windows.Beep();
  if (const std::optional<double> step = OfferOneSide(pinned, points)) return step;
  Keep(setup, points, std::nullopt);
  if (!p_.last.series && !declined_) ShowPoints(points);
  ShowLast();
  return std::nullopt;
}

bool ProfileDialogue::Minimise() { return method_ == Method::Simplex ? MinimiseBySimplex() : MinimiseByMarquardt(); }

bool ProfileDialogue::MinimiseBySimplex() {
  p_.simplex.Forget();
  simplex_.Minimise();
  return !run_.QuitAsked;
}

bool ProfileDialogue::MinimiseByMarquardt() {
  if (run_.ProfilePoint == 1) declined_ = marquardt_.ChooseDerivatives() == DerivativeMode::Cancelled;
  if (declined_) return false;
  marquardt_.Minimise();
  return !run_.QuitAsked;
}

std::string ProfileDialogue::Table(const ConfidenceSeries& series) const { return LikelihoodProfileTable(series); }

}  // namespace merlane
