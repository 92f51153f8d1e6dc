#include "model/parametric_bootstrap.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "model/bootstrap_reports.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr double LeastTolerance = 1e-6;
constexpr double SecondsOfDay = 86400;

/// The algorithm file cannot be used; the user has been told.
struct NoAlgorithmFile {};

/// Keeps the run as it stands, and puts it back when the scope ends, however it ends.
class RunKept {
 public:
  RunKept(RunState& state, MerlaneModel& model) : state_(state), model_(model), kept_(state), results_(model.Keep()) {}
  ~RunKept() {
    state_ = std::move(kept_);
    state_.flags.SimplexBuilt = false;  // the simplex that stands is the last replicate's
    model_.PutBack(std::move(results_));
  }
  RunKept(const RunKept&) = delete;
  RunKept& operator=(const RunKept&) = delete;

 private:
  RunState& state_;
  MerlaneModel& model_;
  RunState kept_;
  MerlaneModel::Kept results_;
};

}  // namespace

ParametricBootstrap::ParametricBootstrap(Desk& desk, RunState& state, Objective& objective, MerlaneModel& model,
                                         FrmMain& main)
    : desk_(desk), state_(state), objective_(objective), model_(model), main_(main) {}

BootstrapResults ParametricBootstrap::Run(const BootstrapOptions& options) {
  BootstrapResults results;
  results.minimiser = options.minimiser;
  results.TargetAge = options.TargetAge;
  std::string failure;
  {
    const RunKept kept(state_, model_);
    try {
      Replicate(options, results);
    } catch (const NoAlgorithmFile&) {
      desk_.Tell("No Algorithm File", "Please try again and choose an existing algorithm file name.",
                 style::Exclamation, state_.algorithm.AlgName);
    } catch (const std::exception& caught) {
      failure = caught.what();
    }
    closeMinimisers();  // while they know that they work for a bootstrap, and leave the menu alone
  }
  Tell("");
  TellTime("");
  if (!failure.empty())
    desk_.Tell("Parametric bootstrap",
               fmt::format("The bootstrap cannot go on and ends with {} of {} replicates:\r\n{}", results.BootCount(),
                           options.BootstrapCount, failure),
               style::Exclamation);
  return results;
}

void ParametricBootstrap::Replicate(const BootstrapOptions& options, BootstrapResults& results) {
  TellTime("Estimated time remaining (h:mm:ss) will be calculated after the 1st bootstrap estimate is complete");
  desk_.host.random.BeginNext();
  // What is bootstrapped is the fit in the algorithm file; its deviance is that of an analysis.
  ReadAlgorithmFile();
  results.Tolerance = state_.algorithm.Tolerance;
  const double deviance = Evaluate();
  results.Begin(deviance, state_.algorithm.Value, state_.free, model_.data.Visits());
  if (state_.free.NFREE == 0) throw RuntimeFailure("All step sizes are zero");

  state_.flags.BootstrapMode = true;
  const Clock& clock = desk_.host.clock;
  RemainingTime remaining(Timer(clock));
  for (int attempt = 1; results.BootCount() < options.BootstrapCount; ++attempt) {
    Attempt(options, results);
    TellTime("Estimated time remaining (h:mm:ss) is " +
             remaining.After(Timer(clock), attempt, options.BootstrapCount + results.Rejects()));
    desk_.Turn();
    if (state_.flags.AbortRun) return;
  }
}

void ParametricBootstrap::Attempt(const BootstrapOptions& options, BootstrapResults& results) {
  const int b = results.BootCount() + 1;
  const std::string path = NameDataFile(b);
  Tell(fmt::format("Performing parametric bootstrap {} of {}", b, options.BootstrapCount));
  Tell("Reading original data");
  ReadData("");
  ReadAlgorithmFile();
  Evaluate();
  SimulateInto(path);
  Tell("Reading simulated data");
  ReadData(path);
  ReadAlgorithmFile();
  Tell("Estimating parameters for simulated data");
  Evaluate();
  const bool simplex = options.minimiser == BootstrapResults::Minimiser::Simplex;
  const bool inverted = simplex ? minimiseSimplex() : minimiseMarquardt();
  Judge(options, Evaluate(), !inverted, results);
}

std::string ParametricBootstrap::NameDataFile(int replicate) {
  std::string folder = desk_.host.bootstrapFolder;
  if (folder.empty()) {
    const std::string& path = model_.data.DataFileName;
    folder = path.substr(0, path.size() - FileName(path).size());
    folder = folder.empty() ? "." : folder.substr(0, std::max<std::size_t>(1, folder.size() - 1));
  }
  const double number = std::floor(desk_.host.random.Uniform() * 1000000 + 0.5);
  return folder + "/BootstrappedData" + Format(replicate, "00000") + "_" + Format(number, "000000") + ".dat";
}

void ParametricBootstrap::SimulateInto(const std::string& path) {
  Tell("Simulating new data");
  const CalculationWatch watch{.tell = [this](const Message& m) { desk_.Tell(m.title, m.text, m.style, m.details); },
                               .turn = [this] { desk_.Turn(); }};
  if (!SimulateData(model_.data, {.BootstrapMode = true}, model_.likelihood.best, desk_.host.random, watch,
                    model_.simulation))
    throw RuntimeFailure("no data could be simulated");
  Tell("Writing simulated data");
  desk_.Write(path, BootstrapDataText(model_.data, model_.simulation.SimCount), false);
}

/// Reads the real data or, given its file, a simulated data set.
void ParametricBootstrap::ReadData(const std::string& simulatedFile) {
  state_.flags.ReadOriginalFile = simulatedFile.empty();
  state_.flags.ReadSimulatedFile = !simulatedFile.empty();
  model_.data.SimulatedFileName = simulatedFile;
  objective_.Call(state_.algorithm.Value, 0);
  if (!model_.data.ReadOK) throw RuntimeFailure("the data could not be read");
}

void ParametricBootstrap::ReadAlgorithmFile() {
  AlgorithmData& a = state_.algorithm;
  try {
    if (ReadAlgorithm(ReadWholeFile(a.AlgName), a).failure != AlgorithmReading::Failure::None) throw NoAlgorithmFile{};
  } catch (const RuntimeFailure&) {
    throw NoAlgorithmFile{};
  }
  // Absolute from here on, whatever the sign was.
  if (std::fabs(a.Tolerance) < LeastTolerance) a.Tolerance = LeastTolerance;
  BuildFuseGroups(state_);
  PackFree(state_);
}

/// The deviance at Value as the first call of a run, without a prior term.
double ParametricBootstrap::Evaluate() {
  ApplyFuses(state_.algorithm.Value, state_);
  return objective_.Call(state_.algorithm.Value, 1);
}

void ParametricBootstrap::Judge(const BootstrapOptions& options, double F, bool matrixFailed,
                                BootstrapResults& results) {
  const double Penalty = model_.likelihood.Penalty;
  results.BootPenaltySum += Penalty;
  if (Penalty > 0) {
    results.RejectForPenalty();
    Tell("Last bootstrap attempt rejected due to a penalty added to the Deviance");
    return;
  }
  if (matrixFailed) {
    results.RejectForMatrix();
    Tell("Last bootstrap attempt rejected due to a matrix inversion failure");
    return;
  }
  const CalculationWatch watch{.turn = [this] { desk_.Turn(); }};
  EstimateOneDaySurvival(model_.data, model_.likelihood, true, watch, model_.estimates);
  EstimateFledgingSurvival(model_.data, model_.likelihood, true, options.TargetAge, watch, model_.estimates);
  results.Keep(F, state_.algorithm.Value, model_.estimates);
}

std::string RemainingTime::After(double now, int done, int planned) {
  if (now < previous_) start_ -= SecondsOfDay;
  previous_ = now;
  const double seconds = RoundHalfEven((now - start_) / done * (planned - done));
  const double h = std::floor(seconds / 3600), mm = std::floor((seconds - h * 3600) / 60);
  return Format(h, "0") + ":" + Format(mm, "00") + ":" + Format(seconds - h * 3600 - mm * 60, "00");
}

}  // namespace merlane
