#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "control/algorithm_commands.h"
#include "control/frm_algo.h"
#include "control/objective.h"
#include "inference/rank_table.h"
#include "inference/ranking.h"
#include "priors/frm_load_priors.h"
#include "uncertainty/covariance_report.h"

namespace merlane {

/// Collects competing models of the same data, ranks them by an information criterion and averages their estimates.
class FrmRank : public Form {
 public:
  FrmRank(Desk& d, RunState& state, Objective& objective, FrmMain& main, AlgorithmCommands& algorithm, FrmAlgo& editor,
          FrmLoadPriors& priors);

  Label lblAdd{*this, "lblAdd", "Add competitors by sequentially loading or editing their associated algorithm files:"};
  Button cmdLoadAlg{*this, "cmdLoadAlg", "&Load Algorithm Data"};
  Button cmdEditAlg{*this, "cmdEditAlg", "&Edit Algorithm Data"};
  Button cmdSaveAlg{*this, "cmdSaveAlg", "&Save Algorithm Data"};
  Button cmdBayesian{*this, "cmdBayesian", "Set &Bayesian priors"};
  Button cmdAICc{*this, "cmdAICc", "Calculate model AICc"};
  Button cmdQAICc{*this, "cmdQAICc", "Calculate QAICc"};
  Label txtCHat{*this, "txtCHat", "C-hat: 1.000"};
  Button cmdRank{*this, "cmdRank", "&Rank competing models"};
  Button cmdAverage{*this, "cmdAverage", "&Average across models"};
  Button cmdSaveRank{*this, "cmdSaveRank", "&Save ranking and averaging results"};
  Button cmdFinish{*this, "cmdFinish", "&Finish"};
  Grid grdRank{*this, "grdRank"};
  Label lblDelete{*this, "lblDelete", "Double-click a selected model's 'Ramdom/Ranked' cell to delete that model"};
  Label lblCovariance{*this, "lblCovariance",
                      "Double-click a selected model's 'Covariance file name' cell to change the covariance file"};
  Label lblNotes{*this, "lblNotes", "Double-click a selected model's 'Notes' cell to annotate that model"};
  Label lblAverage{*this, "lblAverage", "Averaging results >"};
  Pane txtAverage{*this, "txtAverage"};

  /// The data and priors in the run.
  std::function<Provenance()> provenance = [] { return Provenance{}; };

  /// What is said behind the name of the present algorithm file, when the run is not what the file holds.
  std::function<std::string()> sinceSaved = [] { return std::string(); };

  /// The file of the data to which the present estimates were fitted, when it is known that it was to other data than
  /// the present ones; empty otherwise.
  std::function<std::string()> fittedToOtherData = [] { return std::string(); };

  /// In words, how the priors under which the present estimates were fitted differ from the present ones, when it is
  /// known that they do; empty otherwise.
  std::function<std::string()> fittedUnderOtherPriors = [] { return std::string(); };

  /// In words, how the data or the priors with which these covariances were calculated differ from those of a model,
  /// when it is known that they do; empty otherwise.
  std::function<std::string(const CovarianceFile&, const Provenance& model)> calculatedOtherwise =
      [](const CovarianceFile&, const Provenance&) { return std::string(); };

  bool AveragedFlag = false;  // the pane holds averaging results

  const Ranking& Models() const { return ranking_; }

  /// The table as it would be saved, when it is ranked and was not saved so.
  std::optional<std::string> UnsavedTable() const;

  /// Asks, when the table is ranked, whether to save it. False when no file was chosen for it.
  bool OfferSaving();

 protected:
  void OnLoad() override;
  bool OnCloseRequest() override;

 private:
  void AddModel();
  void AskConstant();
  /// Says so when a model cannot be compared with others, since its estimates were fitted to other data or under other
  /// priors, or since it is judged by another number of individuals than one of them.
  void TellWhatCannotBeCompared(const Competitor& model);
  /// A model that has been added and is judged by another number of individuals than this one; null when there is none.
  const Competitor* JudgedByOthers(const Competitor& model) const;
  /// When another constant has been entered since they were added, brings all models to its scale, and says so.
  void ScaleEarlierModels();
  void SetCHat();
  void RankModels();
  void Average();
  /// The covariance files of the ranked models; none when the user declines files that are not of these models, or when
  /// they cannot be averaged, which is told.
  std::optional<std::vector<CovarianceFile>> ReadCovarianceFiles();
  /// False when the user cancelled.
  bool Save();
  /// What is saved: the table, and averaging results if there are any.
  std::string TableText() const;
  void OpenPriors();
  void LoadAlgorithm();

  void DoubleClick(int row, int column);
  void DeleteModel(int position);
  void ChangeCovarianceFile(int position);
  void Annotate(int position);

  /// The table is no longer ranked: differences and weights are undefined.
  void Unrank(Colour heading);
  /// What was averaged is no longer what stands in the table.
  void ForgetAveraging();

  RunState& state_;
  Objective& objective_;
  FrmMain& main_;
  AlgorithmCommands& algorithm_;
  FrmAlgo& editor_;
  FrmLoadPriors& priors_;
  Ranking ranking_;
  RankTable table_{grdRank, ranking_};
  std::string savedText_;  // of the table, as last saved
};

}  // namespace merlane
