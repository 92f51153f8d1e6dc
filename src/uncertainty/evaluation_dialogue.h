#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "control/frm_algo.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "minimise/simplex.h"
#include "plots/bivariate.h"
#include "plots/frm_dist_plot.h"
#include "uncertainty/confidence_series.h"
#include "uncertainty/covariance.h"
#include "uncertainty/frm_distribution_table.h"
#include "uncertainty/frm_par_evals.h"
#include "uncertainty/pinned_parameter.h"

namespace merlane {

enum class EvaluationKind { None, Profile, Posterior };

/// What the last profile or posterior left. It can be looked at again while ProfileState is 1, that is, until free
/// parameters are packed for another command, and while the run is as it left it.
struct Evaluation {
  Basis of;    // the run that was evaluated
  Basis left;  // the run behind it: a profile leaves the others at its last point
  EvaluationKind LastProfileKind = EvaluationKind::None;
  std::int16_t ProfileParameter = 0;
  std::optional<ConfidenceSeries> series;     // none when fewer than three points were kept
  std::optional<BivariateDensity> bivariate;  // of a posterior with one other free parameter
  double ReferenceF = 0;                      // of a posterior; kept from run to run over the same data
  std::int64_t ReferenceReading = 0;          // those data
};

/// What both evaluations work with.
struct EvaluationParts {
  Desk& desk;
  RunState& state;
  Objective& objective;
  SimplexState& simplex;
  Covariances& covariances;
  Evaluation& last;
  FrmMain& main;
  FrmAlgo& algo;
  FrmDistPlot& distPlot;
  FrmParEvals& choice;
};

/// What an evaluation of a parameter has been told to do.
struct EvaluationSetup {
  std::int16_t ProfileParameter = 0;
  std::int16_t ProfilePoints = 0;
  std::int16_t GridPoints = 0;  // of a posterior
};

/// The step with which the points span eight standard errors.
double StepAcross(double standardError, const EvaluationSetup& setup);

/// The course that a likelihood profile and a posterior have in common: what is told and asked before, the plots, the
/// table, and the way back to the menu.
class EvaluationDialogue {
 protected:
  /// What the two differ in.
  struct Texts {
    const char* title;
    const char* curve;  // what it makes
    const char* shown;  // the same where it is shown
    const char* notice;
    const char* introduction;
    const char* again;  // asked when earlier results can be seen
    const char* parameterPrompt;
    const char* pointsPrompt;
    const char* zeroStepTitle;
    int leastPoints;  // that the answer may be
  };

  EvaluationDialogue(EvaluationParts& parts, EvaluationKind kind, const Texts& texts, FrmDistributionTable& table)
      : p_(parts), kind_(kind), texts_(texts), table_(table) {}
  ~EvaluationDialogue() = default;

  /// The whole command; `on` is the flag that tells which of the two is at work.
  void Evaluate(bool& on);

  /// Asks how the points are to be evaluated.
  enum class Reply { GoOn, AskAgain, Quit };
  virtual Reply AskMethod(EvaluationSetup& setup) = 0;
  /// What the step of a parameter becomes from its standard error.
  virtual double StepFrom(double standardError, std::int16_t parameter, const EvaluationSetup& setup) const = 0;
  /// Evaluates; the parameter is to be pinned here. Shows what comes of it, unless it shall be evaluated once more,
  /// with the step that is returned.
  virtual std::optional<double> Run(const EvaluationSetup& setup) = 0;
  /// The table of an evaluation, and what else is shown of it behind the plots.
  virtual std::string Table(const ConfidenceSeries& series) const = 0;
  virtual void ShowMore(const Evaluation& /*evaluation*/) {}

  /// The questions are answered: from here on the results of the last evaluation are gone, and what was entered stays.
  void Begin();
  /// Says when the model has taken the parameter without its sign and the points cross 0, and offers the step with
  /// which they would not; none when all is well, there is no such step, or it is declined.
  std::optional<double> OfferOneSide(const PinnedParameter& pinned, const EvaluatedPoints& points) const;
  /// Says that an evaluation was interrupted too early for a curve, and shows the points done.
  void ShowPoints(const EvaluatedPoints& points);
  /// Keeps what was evaluated as the last evaluation.
  void Keep(const EvaluationSetup& setup, const EvaluatedPoints& points, std::optional<BivariateDensity> bivariate);
  /// Shows the last evaluation, if there is something to be seen: the plots until they are closed, then the table.
  void ShowLast();
  /// What tells, beside the results of the last evaluation, which fit they are of.
  std::function<std::string()> WhoseTheyAre() const;
  /// Asks whether an interrupt means to quit.
  bool AskQuit(const char* boxTitle) const;
  void SetPanel(int panel, const std::string& text) { p_.main.stbMain5.Set(panel, text); }

  EvaluationParts& p_;

 private:
  void Converse();
  /// Asks for the evaluation and does it. Unless it begins, the constant and the last results are what they were.
  void AskAndEvaluate();
  /// Run; unless it shows what came of it, the values are what they were. A profile leaves those of its last point.
  std::optional<double> RunOrPutBack(const EvaluationSetup& setup);
  /// True for a posterior while no parameter is free; a profile may be given its step on the way.
  bool NothingToEvaluate() const;
  bool HasEarlierResults() const;
  std::optional<EvaluationSetup> AskSetup();
  /// Offers steps from the standard errors of the last covariances, when those are the present estimates'. False when
  /// the user quits.
  bool AskSteps(const EvaluationSetup& setup);
  void TakeSteps(const CovarianceGrid& grid, const EvaluationSetup& setup);
  void EditSteps();

  const EvaluationKind kind_;
  const Texts& texts_;
  FrmDistributionTable& table_;
  bool edited_ = false;  // the editor was opened by this command
  bool begun_ = false;   // this command evaluates, or has evaluated
  Basis asked_;          // the run that it evaluates
};

}  // namespace merlane
