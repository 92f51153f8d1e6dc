#pragma once

#include <functional>
#include <optional>
#include <string>

#include "bootstrap/bootstrap_command.h"
#include "bootstrap/parametric_bootstrap.h"
#include "control/algorithm_commands.h"
#include "control/frm_abort.h"
#include "control/frm_algo.h"
#include "control/frm_credits.h"
#include "control/frm_defaults.h"
#include "control/frm_edit_vs.h"
#include "control/frm_help.h"
#include "control/frm_main.h"
#include "control/frm_menu.h"
#include "control/frm_one_function.h"
#include "control/frm_summary.h"
#include "control/frm_wisdom.h"
#include "control/log_file.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "data/frm_initialize.h"
#include "data/frm_xls_worksheets.h"
#include "forms/desk.h"
#include "inference/frm_rank.h"
#include "minimise/frm_marquardt.h"
#include "minimise/frm_simplex.h"
#include "model/merlane_model.h"
#include "plots/frm_bivar_plot.h"
#include "plots/frm_dist_plot.h"
#include "plots/frm_xy_plot.h"
#include "priors/distributions.h"
#include "priors/frm_load_priors.h"
#include "priors/frm_review_priors.h"
#include "priors/frm_set_priors.h"
#include "priors/prior_review.h"
#include "priors/priors_commands.h"
#include "program/fit.h"
#include "results/detail_plots.h"
#include "results/results_command.h"
#include "results/simulation_command.h"
#include "uncertainty/covariance_dialogue.h"
#include "uncertainty/frm_cov_data.h"
#include "uncertainty/frm_cov_display.h"
#include "uncertainty/frm_distribution_table.h"
#include "uncertainty/frm_par_evals.h"
#include "uncertainty/posterior_dialogue.h"
#include "uncertainty/prior_profile_dialogue.h"
#include "uncertainty/profile_dialogue.h"

namespace merlane {

/// One run of the program: the run state, the model and all forms, put together on a host. Two programs can live in one
/// process and share nothing.
class Program {
 public:
  explicit Program(const Host& host);

  /// Shows the main window and the menu.
  void Start();

  Desk desk;
  RunState state;
  LogFile log;
  Priors priors;
  Fit fit;

  MerlaneModel model;
  Objective objective;

  FrmMain frmMain;
  FrmMenu frmMenu;
  FrmInitialize frmInitialize;
  FrmXlsWorksheets frmXLSworksheets;
  AlgorithmCommands algorithmCommands;
  FrmAlgo frmAlgo;
  FrmEditVS frmEditVS;
  FrmOneFunction frmOneFunction;
  FrmSummary frmSummary;
  FrmAbort frmAbort;
  ResultsCommand resultsCommand;
  SimulationCommand simulationCommand;
  FrmXyPlot frmXYPlot;
  DetailPlots detailPlots;
  FrmHelp frmHelp;
  FrmDefaults frmDefaults;
  FrmWisdom frmWisdom;
  FrmCredits frmCredits;

  PriorsCommands priorsCommands;
  FrmSetPriors frmSetPriors;
  FrmLoadPriors frmLoadPriors;
  FrmReviewPriors frmReviewPriors;

  SimplexState simplex;
  ProfileRun profile;
  FrmSimplex frmSimplex;
  FrmMarquardt frmMarquardt;

  ParametricBootstrap parametricBootstrap;
  BootstrapCommand bootstrapCommand;

  Covariances covariances;
  FrmCovData frmCovData;
  FrmCovDisplay frmCovDisplay;
  CovarianceDialogue covarianceDialogue;

  FrmDistPlot frmDistPlot;
  FrmBivarPlot frmBivarPlot;
  Evaluation evaluation;
  EvaluationParts evaluationParts;
  FrmParEvals frmParEvals;
  FrmDistributionTable frmMaxLike;
  FrmDistributionTable frmBayesian;
  FrmDistributionTable frmPriorDists;
  ProfileDialogue profileDialogue;
  PosteriorDialogue posteriorDialogue;
  PriorProfileDialogue priorProfileDialogue;

  FrmRank frmRank;

 private:
  void WireMenu();
  void WireMenuBar();
  void WireForms();

  // The buttons of the main menu.
  void Initialize();
  void EditAlg();
  void SaveAlg();
  void OneFunction();
  void Simplex();
  void Marquardt();
  void Covariance();
  void Bayesian();
  void ParEstimate();
  void UserSummary();
  void Rank();
  /// Runs what follows upon a results summary, without the menu.
  void FollowSummary(const std::function<void()>& command);
  /// Asks whether to quit and what to save; on Yes it ends the program, otherwise it returns. The editor of the priors
  /// asks for these in its own words.
  void Quit(const std::string& priorsTitle = "What about Bayesian priors?",
            const std::string& priorsText = "Save Bayesian priors?");

  /// What the end of an initialisation leaves: a run of the new model, with neither algorithm data nor priors.
  void BeginRun();
  /// Closes the windows in which the parameters of the run before can be edited; what they ask is asked.
  void CloseEditors();
  void ReadData();
  /// Gives everything that is kept for each parameter the size of the model; values and steps are 0, priors unset.
  void DimensionRun();

  /// The menu goes and the application menu is disabled until the command has ended.
  void BeginLongCommand();
  void EndLongCommand();
  /// Asks for the go-ahead that both minimisers want; on Yes the command has begun and `running` is set.
  bool BeginMinimiser(bool& running);
  void TellNothingToDo();
  /// Keeps the objective that has just been reached, and what is told of it.
  void KeepFit(double reached, std::optional<Minimisation> minimisation);
  /// Brings the menu back after a command of this form failed, unless the form is still there to go on with.
  void Recover(const Form& failed);

  double SummaryValue_ = 0;  // the objective behind the last results summary
};

}  // namespace merlane
