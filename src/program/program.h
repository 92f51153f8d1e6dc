#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bootstrap/bootstrap_command.h"
#include "bootstrap/parametric_bootstrap.h"
#include "control/algorithm_commands.h"
#include "control/frm_abort.h"
#include "control/frm_algo.h"
#include "control/frm_credits.h"
#include "control/frm_defaults.h"
#include "control/frm_edit_vs.h"
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
#include "data/reading_dialogue.h"
#include "forms/desk.h"
#include "import/frm_import.h"
#include "inference/covariances_made.h"
#include "inference/fits_made.h"
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
#include "results/reported_fit.h"
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
  /// The tables of visits at the fit. The evaluations keep those of the lowest deviance they have met, which are others
  /// where priors count, or where a search went on beyond its limit of calls.
  BestTables TablesAtFit();

  /// Saves what can be saved without asking anybody, since the session ends: the algorithm data and the priors that are
  /// not in their files, each in a new file beside its own with the time in its name, and closes the log. Replaces
  /// nothing. Returns why something could not be saved.
  std::vector<std::string> SaveUnasked();

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
  FrmImport frmImport;
  FrmXlsWorksheets frmXLSworksheets;
  ReadingDialogue readingDialogue;
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
  ReportedFit reportedFit;
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
  FrmParEvals frmParEvals;
  EvaluationParts evaluationParts;
  FrmDistributionTable frmMaxLike;
  FrmDistributionTable frmBayesian;
  FrmDistributionTable frmPriorDists;
  ProfileDialogue profileDialogue;
  PosteriorDialogue posteriorDialogue;
  PriorProfileDialogue priorProfileDialogue;

  FrmRank frmRank;
  FitsMade fitsMade;
  CovariancesMade covariancesMade;

 private:
  void WireMenu();
  void WireMenuBar();
  void WireForms();

  /// The model as all commands reach it. Where there are no data because they could not be read nothing is concluded
  /// from that, and no hypothesis repaired: RuntimeFailure.
  void CallModel(ModelCall& call);

  /// A command of the main menu that begins, before any question, with the refusal where there are no data to fit.
  std::function<void()> OnData(void (Program::*command)());

  // The buttons of the main menu.
  void Initialize();
  void LoadAlg();
  void EditAlg();
  /// False when the user cancelled.
  bool SaveAlg();
  void OneFunction();
  void Simplex();
  void Marquardt();
  void Covariance();
  void Bayesian();
  void ParEstimate();
  void UserSummary();
  void Rank();
  /// Runs what follows upon a results summary, without the menu; not behind a change of the fit that it reports.
  void FollowSummary(const std::function<void()>& command);
  /// Asks whether to quit and what to save. Ends the program, unless the answer is No or a file to be saved is not
  /// chosen. The editor of the priors asks for these in its own words.
  void Quit(const std::string& priorsTitle = "What about Bayesian priors?",
            const std::string& priorsText = "Save Bayesian priors?");
  /// Saves the algorithm data as they are the user's own, in the way given, and returns what it returns.
  bool SaveUsersAlgorithmData(const std::function<bool()>& save);

  /// What the end of an initialisation leaves: a run of the new model, with neither algorithm data nor priors.
  void BeginRun();
  void ReadData();
  /// Takes the fit and the priors of the run before out of it, and their names out of the windows.
  void ForgetRun();
  /// Gives everything that is kept for each parameter the size of the model; values and steps are 0, priors unset.
  void DimensionRun();

  /// Unloads the windows of the commands that run the model: one function call and the two minimisers.
  void CloseTheThree();
  /// The menu goes, and a long command runs as long as what is returned lives.
  [[nodiscard]] auto LongCommand() {
    desk.Unload(frmMenu);
    return desk.charge.LongCommand();
  }
  /// Asks for the go-ahead that both minimisers want.
  bool OneFunctionWasCalled();
  void TellNothingToDo();
  /// Keeps the objective that has just been reached, and what is told of it.
  void KeepFit(double reached, std::optional<Minimisation> minimisation);
  /// The same behind a search: whether one call at its estimates gives another objective, and of which data they are.
  void KeepSearch(double reached, Minimisation minimisation);
  /// What one evaluation at these values comes to, as a search makes it; none where it fails. Leaves everything as it
  /// was.
  struct Outcome {
    double F = 0, penalty = 0;
  };
  std::optional<Outcome> EvaluateOnce(Array1<double> values);
  /// What one function call at these values gives where a search may have another objective: it moves the ages between
  /// which visits are judged, and a visit beyond them counts with what an earlier call has left; or it has kept a value
  /// at its limit that was penalised for lying beyond. None otherwise.
  std::optional<CarriedOver> CarriedOverBy(const Array1<double>& values);
  /// The estimates as an evaluation leaves them, and the data and priors in the run.
  AlgorithmData EvaluatedEstimates() const;
  Provenance PresentProvenance() const;
  /// What is said behind the name of the algorithm file while the estimates, the free parameters or the fuses are not
  /// those in it; empty while they are.
  std::string SinceSaved() const;
  /// The same, and to what else the estimates were fitted, when that is known: Objective::besideAlgName.
  std::string BesideAlgName() const;
  /// What the catalogue tells of each parameter of the model.
  Array1<std::string> DescriptionsOfCatalogue() const;
  /// Brings the menu back after a command of this form failed, unless the form is still there to go on with.
  void Recover(const Form& failed);

  double SummaryValue_ = 0;  // the objective behind the last results summary
};

}  // namespace merlane
