#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "base/at_end.h"
#include "bootstrap/bootstrap.h"
#include "bootstrap/bootstrap_minimisers.h"
#include "bootstrap/fit_record.h"
#include "bootstrap/fits_ahead.h"
#include "bootstrap/replicate_data_text.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "model/merlane_model.h"
#include "priors/distributions.h"
#include "priors/frm_review_priors.h"

namespace merlane {

struct BootstrapOptions {
  std::int32_t BootstrapCount = 0;  // replicates wanted
  std::int16_t TargetAge = 0;       // D, days
  BootstrapResults::Minimiser minimiser = BootstrapResults::Minimiser::Simplex;
};

/// Simulates data sets from the fit that is saved in the algorithm file, fits the model to each, and records what comes
/// of it: the parametric bootstrap (Efron and Tibshirani 1993). Each data set is read like the real data, from the text
/// that was made; a copy of it is written for the user, and never read back.
class ParametricBootstrap {
 public:
  /// Where a bootstrap works: the run that it takes over, and the windows in which it shows what it does.
  struct Parts {
    Desk& desk;
    RunState& state;
    Objective& objective;
    MerlaneModel& model;
    Priors& priors;
    FrmMain& main;
    FrmSimplex& simplex;
    FrmMarquardt& marquardt;
    FrmReviewPriors& review;
  };
  explicit ParametricBootstrap(const Parts& parts);

  int cores;  // those of the machine, unless a test wants others
  /// Computes and shows the review of the priors for the run as it stands.
  std::function<void()> reviewPriors;

  /// Replicates until as many are kept as are wanted, or the user aborts. An attempt that meets a penalty, a matrix
  /// that cannot be inverted or a calculation that fails is rejected; after each hundred rejections in a row the user
  /// is asked whether to go on. Files that cannot be read or written end the bootstrap with a message and what it has
  /// so far; so does a failure of `keep`, which is given the results at each replicate that was kept. The algorithm
  /// file must be there at each replicate, but all are of the model that was in it at the beginning: when another is
  /// saved meanwhile that is told once. In any case data, parameters and results are as they were before. Under a seed
  /// all is repeated to the last digit.
  ///
  /// Where the run shares its work with others (Host::shared), a run that is given their fits takes them instead of
  /// calculating; one that does a share fits its attempts, writes no data, and comes back with one replicate that is
  /// the fit of the real data, for the command to go on with.
  BootstrapResults Run(
      const BootstrapOptions& options,
      const std::function<void(const BootstrapResults&)>& keep = [](const BootstrapResults&) {});

  /// Where it writes.
  std::string Folder() const;
  /// Tells in the status bar where it is.
  void Tell(const std::string& status) { main_.ShowProgress(status); }

  /// While a bootstrap runs, the run state is a replicate's. Until the guard that is returned goes, it is the user's,
  /// to be saved by somebody who leaves the program on the way. Does nothing without a bootstrap, nor inside itself:
  /// the session may end while the questions of a quit are open.
  [[nodiscard]] auto UsersRun() {
    const bool swaps = usersRun_ && !usersInPlace_;
    if (swaps) SwapUsersRun();
    return AtEnd([this, swaps] {
      if (swaps) SwapUsersRun();
    });
  }

 private:
  /// The real data as a bootstrap reads them, and the fit that is bootstrapped: each replicate begins with them.
  struct Original {
    MerlaneModel::Kept tables;
    ReplicateDataText text;
    RunState run;          // with the algorithm data of the model that is bootstrapped
    RandomStreams random;  // the next stream is that of the first attempt
  };

  void Replicate(const BootstrapOptions& options, const std::function<void(const BootstrapResults&)>& keep,
                 BootstrapResults& results);
  /// False when the attempt was rejected.
  bool Attempt(const BootstrapOptions& options, int attempt, BootstrapResults& results);
  /// Simulates the data of an attempt, fits and judges them; false when they were rejected.
  bool Fit(const BootstrapOptions& options, int attempt, const std::string& path, BootstrapResults& results);
  bool Reject(std::int32_t& counter, const std::string& reason);
  void TellReplaced(const std::string& path);
  bool AskToGoOn(const BootstrapOptions& options, const BootstrapResults& results);
  std::string NameDataFile(int replicate);
  void TakeOriginal();
  FitOrigin OriginOfFits(BootstrapResults::Minimiser minimiser) const;
  /// Has the attempts from this one to the `last` fitted ahead, unless this one is known from another run.
  void GoAhead(BootstrapResults::Minimiser minimiser, int attempt, int last);
  /// The work begins that other runs have a share of.
  void BeginShared(const BootstrapOptions& options, double deviance);
  void DoShare(const BootstrapOptions& options, BootstrapResults& results);
  /// From here on calls that are known are not calculated: those of another run's fit or of one that is ahead.
  void Follow(int attempt, const std::string& dataText);
  void Leave();
  std::string Simulate();
  void WriteData(const std::string& path, const std::string& text);
  void ReadOriginal();
  void ReadSimulated(int attempt, const std::string& text);
  void ReadData();
  void ReadAlgorithmFile();
  void TellChanged();
  /// Shows, in place of the last replicate's, the review of the priors at the user's estimates.
  void BringBackReview(const std::string& before);
  double Evaluate();
  bool Minimise(BootstrapResults::Minimiser minimiser, int attempt, const std::string& dataText);
  bool Judge(const BootstrapOptions& options, double F, bool matrixFailed, BootstrapResults& results);
  void SwapUsersRun();

  /// A status that stays while the minimiser writes its own.
  void TellTime(const std::string& status) { main_.stbMain2.Set(1, status); }

  Desk& desk_;
  RunState& state_;
  Objective& objective_;
  MerlaneModel& model_;
  Priors& priors_;
  FrmMain& main_;
  FrmReviewPriors& review_;
  BootstrapMinimisers minimisers_;

  // While a bootstrap runs.
  std::optional<RunState> usersRun_;
  bool usersInPlace_ = false;       // of the replicate's, which stands in usersRun_ meanwhile
  std::string lastRejection_;       // why
  std::set<std::string> ownFiles_;  // of the present replicate: those of its rejected attempts
  bool replacedTold_ = false;
  std::optional<Original> original_;
  std::optional<KeptPredictions> predictions_;  // of the counts of all replicates
  std::string algorithmText_;                   // of the algorithm file at the beginning
  bool changeTold_ = false;                     // of that file since
  std::unique_ptr<FitsAhead> ahead_;
  std::optional<RecordedFit> recorded_;  // the present one, where another run has made it
};

}  // namespace merlane
