#include "uncertainty/evaluation_dialogue.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <exception>
#include <utility>
#include <vector>

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/fuses.h"
#include "control/nothing_to_do.h"
#include "control/objective_constant.h"
#include "uncertainty/evaluation_questions.h"
#include "uncertainty/evaluation_table.h"

namespace merlane {
namespace {

constexpr const char* CovarianceSteps =
    "Base step sizes on SD's from covariance grid 1, 2, 3, No or Quit?\r\nPlease enter 1, 2, 3, N, or Q";
constexpr const char* NoStandardErrors =
    "Covariance grid {} has no standard errors: it was abandoned, or its Hessian matrix was not positive-definite";
constexpr const char* ZeroStep = "The parameter chosen has a step size of zero; please try again";

/// The end of the sentence that names an evaluation, and what it has left in the run.
std::string Moved(const Basis& of, const Basis& left) {
  std::vector<int> moved;
  for (int i = 1; i <= of.Value.Size(); ++i)
    if (of.Value(i) != left.Value(i)) moved.push_back(i);
  if (moved.empty()) return ".";
  return fmt::format(". It has left {} {} at its last point, which is no fit.",
                     moved.size() == 1 ? "parameter" : "parameters", fmt::join(moved, ", "));
}

}  // namespace

double StepAcross(double standardError, const EvaluationSetup& setup) {
  return standardError * 24 / ((setup.ProfilePoints - 1) * 3);
}

void EvaluationDialogue::Evaluate(bool& on) {
  edited_ = false;
  std::exception_ptr failure;  // whose end is that of any other course, but for the end of the program
  try {
    const auto flag = Meanwhile(on, true);
    Converse();
  } catch (const std::exception&) {
    failure = std::current_exception();
  }
  p_.desk.Unload(p_.choice);  // which brings the menu back
  for (int panel = 1; panel <= p_.main.stbMain5.Panels(); ++panel) SetPanel(panel, "");
  if (edited_)
    p_.desk.Tell("A friendly reminder", "Your algorithm file may have been automatically edited", style::Exclamation);
  if (failure) std::rethrow_exception(failure);
}

void EvaluationDialogue::Converse() {
  if (NothingToEvaluate() && !HasEarlierResults()) return TellNothingToDo(p_.desk);
  p_.desk.Tell(texts_.title, texts_.notice, style::Information);
  if (p_.desk.Ask(texts_.title, texts_.introduction, style::YesNoQuestion) != Answer::Yes) return;
  if (HasEarlierResults() && p_.desk.Ask(texts_.title, texts_.again, style::YesNoQuestion) != Answer::Yes) {
    const PinnedParameter pinned(p_.state, p_.last.ProfileParameter);
    ShowLast();
    return;
  }
  if (NothingToEvaluate()) return TellNothingToDo(p_.desk);
  AskAndEvaluate();
}

void EvaluationDialogue::AskAndEvaluate() {
  RunState& run = p_.state;
  begun_ = false;
  // Whoever leaves the questions has chosen nothing: priors weigh as before, and the last results can be seen again.
  const AtEnd asBefore([&, constant = run.flags.ObjectiveConstant, ProfileState = run.profile.ProfileState] {
    if (begun_) return;
    run.flags.ObjectiveConstant = constant;
    run.profile.ProfileState = ProfileState;
  });
  if (run.flags.NOBS == 0) EnterObjectiveConstant(p_.desk, p_.main, p_.state);
  BuildFuseGroups(p_.state);
  PackFree(p_.state);
  const auto setup = AskSetup();
  if (!setup) return;
  asked_ = p_.objective.PresentToShow();
  while (const std::optional<double> step = RunOrPutBack(*setup))
    p_.state.algorithm.Step(setup->ProfileParameter) = *step;
}

void EvaluationDialogue::Begin() {
  begun_ = true;
  p_.last.of = asked_;
  p_.last.series.reset();
}

std::optional<double> EvaluationDialogue::RunOrPutBack(const EvaluationSetup& setup) {
  RunState& run = p_.state;
  bool stands = false;
  const AtEnd ownValues([&, Value = run.algorithm.Value, reading = run.reading] {
    if (!stands && run.reading == reading) run.algorithm.Value = Value;  // with other data they are another model's
  });
  const std::optional<double> step = Run(setup);
  stands = !step;
  return step;
}

bool EvaluationDialogue::NothingToEvaluate() const {
  return kind_ == EvaluationKind::Posterior && NothingIsFree(p_.state.algorithm);
}

bool EvaluationDialogue::HasEarlierResults() const {
  const Evaluation& last = p_.last;
  const Basis now = p_.objective.Present();
  return p_.state.profile.ProfileState == 1 && last.left.SameEstimates(now) && last.left.constant == now.constant &&
         last.LastProfileKind == kind_ && last.series &&
         *last.series->ProfileX.begin() != *(last.series->ProfileX.end() - 1);
}

std::optional<EvaluationSetup> EvaluationDialogue::AskSetup() {
  const AlgorithmData& a = p_.state.algorithm;
  for (;;) {
    const auto parameter = AskParameterNumber(
        p_.desk, texts_.title, fmt::format("{}\r\n0 < parameter # <= {}", texts_.parameterPrompt, a.NPAR), a.NPAR);
    if (!parameter) return std::nullopt;
    const auto points = AskPointCount(p_.desk, texts_.title, texts_.pointsPrompt, texts_.leastPoints, 25);
    if (!points) return std::nullopt;
    EvaluationSetup setup{*parameter, *points, 0};
    const Reply reply = AskMethod(setup);
    if (reply == Reply::AskAgain) continue;
    if (reply == Reply::Quit || !AskSteps(setup)) return std::nullopt;
    EditSteps();
    if (a.Step(*parameter) != 0) return setup;
    p_.desk.Tell(texts_.zeroStepTitle, ZeroStep, style::Exclamation);
  }
}

bool EvaluationDialogue::AskSteps(const EvaluationSetup& setup) {
  if (!p_.covariances.AreOf(p_.objective.Present())) return true;
  for (;;) {
    const std::string answer = UpperCase(Trim(p_.desk.Input(texts_.title, CovarianceSteps, "N")));
    if (answer.empty() || answer == "Q") return false;
    if (answer == "N") return true;
    if (answer != "1" && answer != "2" && answer != "3") continue;
    const CovarianceGrid& grid = p_.covariances.grid(answer[0] - '0');
    if (grid.ending == GridEnding::Calculated) {
      TakeSteps(grid, setup);
      return true;
    }
    p_.desk.Tell(texts_.title, fmt::format(NoStandardErrors, answer), style::Exclamation);
  }
}

void EvaluationDialogue::TakeSteps(const CovarianceGrid& grid, const EvaluationSetup& setup) {
  Covariances& c = p_.covariances;
  Array1<double>& Step = p_.state.algorithm.Step;
  for (int a = 1; a <= c.CovCount; ++a) {
    const std::int16_t parameter = c.CovIndex(a);
    if (grid.HasStandardError(a)) Step(parameter) = StepFrom(grid.standardErrors(a), parameter, setup);
  }
  c.stepsTaken = Step;
}

void EvaluationDialogue::EditSteps() {
  edited_ = true;
  p_.algo.OpenLocked(EditValuesAndSteps);
  p_.desk.WaitFor(p_.algo);
}

std::optional<double> EvaluationDialogue::OfferOneSide(const PinnedParameter& pinned,
                                                       const EvaluatedPoints& points) const {
  const bool crossesZero = points.Count() > 0 && points.ProfileX(1) * points.ProfileX(points.Count()) < 0;
  if (!points.mirrored || !crossesZero) return std::nullopt;
  const std::string mirrored =
      fmt::format("Parameter #{} is taken without its sign: beyond 0 the curves are mirror images of those before it.",
                  pinned.ProfileParameter);
  if (pinned.X0 == 0) {
    p_.desk.Tell(texts_.title, mirrored, style::Information);
    return std::nullopt;
  }
  const double step = pinned.StepOnOneSide(points.Count());
  const Answer answer =
      p_.desk.Ask(texts_.title,
                  fmt::format("{}\r\nWith a step of {} all points would lie on the side of 0 on which its value "
                              "lies.\r\n\r\nEvaluate them with that step instead?",
                              mirrored, Format(step, "0.0000E+00")),
                  style::YesNoQuestion);
  return answer == Answer::Yes ? std::optional(step) : std::nullopt;
}

void EvaluationDialogue::ShowPoints(const EvaluatedPoints& points) {
  const std::string done =
      points.all.empty() ? "No point is done."
                         : fmt::format("The points done, {} in number, are shown and can be saved.", points.all.size());
  p_.desk.Tell(texts_.title, fmt::format("The {} was interrupted too early for a curve.\r\n{}", texts_.curve, done),
               style::Information);
  if (!points.all.empty()) table_.Open(PointsTable(texts_.curve, points), WhoseTheyAre());
}

void EvaluationDialogue::Keep(const EvaluationSetup& setup, const EvaluatedPoints& points,
                              std::optional<BivariateDensity> bivariate) {
  Evaluation& last = p_.last;
  last.LastProfileKind = kind_;
  last.ProfileParameter = setup.ProfileParameter;
  last.series.reset();
  if (points.Count() >= 3 && points.HasMinimum()) last.series = MakeConfidenceSeries(points);
  last.bivariate = std::move(bivariate);
  last.left = p_.objective.UsersPresent();  // a profile still holds its parameter while the plots are open
}

std::function<std::string()> EvaluationDialogue::WhoseTheyAre() const {
  const Evaluation& last = p_.last;
  const std::string what = fmt::format("{} of parameter {}", texts_.shown, last.ProfileParameter);
  const std::string words = NamedFor(what, last.of);
  const auto now = [this] { return p_.objective.UsersPresent(); };
  return [since = WordsSince(words, last.of, now), moved = words + Moved(last.of, last.left), left = last.left, now] {
    const Basis present = now();
    return left.SameEstimates(present) && left.constant == present.constant ? moved : since();
  };
}

void EvaluationDialogue::ShowLast() {
  p_.simplex.Forget();
  p_.state.profile.ProfileState = 1;
  if (!p_.last.series) return;
  const Evaluation shown = p_.last;  // a copy: another command may replace it while the plots are open
  const auto source = kind_ == EvaluationKind::Profile ? DistributionSeries::Source::LikelihoodProfile
                                                       : DistributionSeries::Source::Posterior;
  const std::function<std::string()> whose = WhoseTheyAre();
  p_.distPlot.ShowDistPlot(ForPlots(source, shown.ProfileParameter, *shown.series), whose);
  p_.desk.WaitFor(p_.distPlot);
  ShowMore(shown);
  table_.Open(Table(*shown.series), whose);
}

bool EvaluationDialogue::AskQuit(const char* boxTitle) const {
  return p_.desk.Ask(boxTitle, "Interrupt received.  Quit calculations?", style::YesNoQuestion) == Answer::Yes;
}

}  // namespace merlane
