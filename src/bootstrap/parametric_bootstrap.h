#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "bootstrap/bootstrap.h"
#include "bootstrap/fits_ahead.h"
#include "bootstrap/replicate_data_text.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "model/merlane_model.h"

namespace merlane {

struct BootstrapOptions {
  std::int16_t BootstrapCount = 0;  // replicates wanted
  std::int16_t TargetAge = 0;       // D, days
  BootstrapResults::Minimiser minimiser = BootstrapResults::Minimiser::Simplex;
};

/// Simulates data sets from the fit that is saved in the algorithm file, fits the model to each, and records what comes
/// of it: the parametric bootstrap (Efron and Tibshirani 1993). Each data set is written beside the real data and read
/// back like these.
class ParametricBootstrap {
 public:
  ParametricBootstrap(Desk& desk, RunState& state, Objective& objective, MerlaneModel& model, FrmMain& main);

  /// What minimises the objective over the free parameters, from the present values, and leaves its result there; false
  /// when it failed to invert a matrix.
  std::function<bool()> minimiseSimplex, minimiseMarquardt;
  /// Closes the windows of both.
  std::function<void()> closeMinimisers = [] {};

  /// What works ahead of them on the other cores (see FitsAhead): the same minimisation of any run and objective
  /// without a window, and the prior term as it is now. Without them every replicate waits for the one before.
  std::function<void(BootstrapResults::Minimiser, RunState&, Objective&)> minimiseAhead;
  std::function<std::function<double(const Array1<double>&)>()> priorTermAhead = [] { return nullptr; };
  int cores;  // those of the machine, unless a test wants others

  /// Replicates until as many are kept as are wanted, or the user aborts; an attempt that meets a penalty or a matrix
  /// that cannot be inverted is rejected. A failure ends the bootstrap with a message and what it has so far. In any
  /// case data, parameters and results are as they were before. Under a seed all is repeated to the last digit.
  BootstrapResults Run(const BootstrapOptions& options);

 private:
  /// The real data as a bootstrap reads them, and the fit that is bootstrapped: each replicate begins with them.
  struct Original {
    MerlaneModel::Kept tables;
    ReplicateDataText text;
    RunState run;               // with the algorithm data as they are in the file
    std::string algorithmText;  // of that file
  };

  void Replicate(const BootstrapOptions& options, BootstrapResults& results);
  void Attempt(const BootstrapOptions& options, int attempt, BootstrapResults& results);
  std::string NameDataFile(int replicate);
  void TakeOriginal();
  void BeginAhead(BootstrapResults::Minimiser minimiser);
  std::string Simulate();
  void ReadData(const std::string& simulatedFile);
  void ReadAlgorithmFile();
  double Evaluate();
  bool Minimise(BootstrapResults::Minimiser minimiser, int attempt, const std::string& dataText);
  void Judge(const BootstrapOptions& options, double F, bool matrixFailed, BootstrapResults& results);

  void Tell(const std::string& status) { main_.ShowProgress(status); }
  /// A status that stays while the minimiser writes its own.
  void TellTime(const std::string& status) { main_.stbMain2.Set(1, status); }

  Desk& desk_;
  RunState& state_;
  Objective& objective_;
  MerlaneModel& model_;
  FrmMain& main_;

  // While a bootstrap runs.
  std::optional<Original> original_;
  std::string algorithmText_;  // of the algorithm file as it was read last
  std::unique_ptr<FitsAhead> ahead_;
};

}  // namespace merlane
