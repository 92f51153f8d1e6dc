#include "bootstrap/parametric_bootstrap.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "base/at_end.h"
#include "base/failure_text.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "bootstrap/fit_share.h"
#include "bootstrap/remaining_time.h"
#include "bootstrap/saved_model.h"
#include "control/fuses.h"
#include "data/data_digest.h"
#include "platform/clock.h"
#include "platform/digest.h"
#include "platform/files.h"
#include "platform/workers.h"
#include "priors/prior_review.h"
#include "results/desk_watch.h"

namespace merlane {
namespace {

/// The algorithm file cannot be used.
struct NoAlgorithmFile {};

/// What costs the bootstrap, and not just the attempt.
class CannotGoOn : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace

ParametricBootstrap::ParametricBootstrap(const Parts& parts)
    : cores(Workers::Cores()),
      desk_(parts.desk),
      state_(parts.state),
      objective_(parts.objective),
      model_(parts.model),
      priors_(parts.priors),
      main_(parts.main),
      review_(parts.review),
      minimisers_(parts.desk, parts.state, parts.simplex, parts.marquardt) {}

BootstrapResults ParametricBootstrap::Run(const BootstrapOptions& options,
                                          const std::function<void(const BootstrapResults&)>& keep) {
  BootstrapResults results;
  results.minimiser = options.minimiser;
  results.TargetAge = options.TargetAge;
  results.wanted = options.BootstrapCount;
  ownFiles_.clear();
  replacedTold_ = changeTold_ = false;
  const std::string review = review_.rtbReview.text;
  std::string failure;
  {
    usersRun_ = state_;
    const AtEnd putBack([this, tables = model_.Keep()]() mutable {
      state_ = *std::exchange(usersRun_, std::nullopt);
      model_.PutBack(std::move(tables));
    });
    const AtEnd forget([this] {
      objective_.known = nullptr;
      recorded_.reset();
      ahead_.reset();
      predictions_.reset();
      original_.reset();
    });
    try {
      Replicate(options, keep, results);
    } catch (const NoAlgorithmFile&) {
      results.endedEarly = "the algorithm file " + state_.algorithm.AlgName + " cannot be used any more";
      desk_.TellFailure("No Algorithm File", "Please try again and choose an existing algorithm file name.",
                        style::Exclamation, state_.algorithm.AlgName);
    } catch (const std::exception& caught) {
      results.endedEarly = failure = FailureText(caught);
    }
    const auto bootstrapMode = Meanwhile(state_.flags.BootstrapMode, true);
    minimisers_.Close();  // while they know that they work for a bootstrap, and leave the menu alone
  }
  Tell("");
  TellTime("");
  BringBackReview(review);
  if (!failure.empty())
    desk_.TellFailure("Parametric bootstrap",
                      fmt::format("The bootstrap cannot go on and ends with {} of {} replicates:\r\n{}",
                                  results.BootCount(), options.BootstrapCount, failure),
                      style::Exclamation);
  return results;
}

void ParametricBootstrap::BringBackReview(const std::string& before) {
  if (!review_.Visible() || review_.rtbReview.text == before) return;
  try {
    reviewPriors();
  } catch (const RuntimeFailure&) {  // which shall not cost the replicates
    desk_.Unload(review_);
  }
}

void ParametricBootstrap::Replicate(const BootstrapOptions& options,
                                    const std::function<void(const BootstrapResults&)>& keep,
                                    BootstrapResults& results) {
  TellTime("Estimated time remaining (h:mm:ss) will be calculated after the 1st bootstrap estimate is complete");
  desk_.host.random.BeginNext();
  // What is bootstrapped is the fit in the algorithm file; its deviance is that of an analysis.
  algorithmText_.clear();
  ReadAlgorithmFile();
  results.Tolerance = state_.algorithm.Tolerance;
  const double deviance = Evaluate();
  results.Begin(deviance, state_.algorithm.Value, state_.free, model_.data.Visits());
  if (state_.free.NFREE == 0) throw RuntimeFailure("All step sizes are zero");

  const auto bootstrapMode = Meanwhile(state_.flags.BootstrapMode, true);
  if (desk_.host.shared != nullptr) {
    BeginShared(options, deviance);
    if (desk_.host.shared->Mine()) {
      DoShare(options, results);
      keep(results);
      return;
    }
  }
  const Clock& clock = desk_.host.clock;
  RemainingTime remaining(Timer(clock));
  int rejectedInARow = 0;
  for (int attempt = 1; results.BootCount() < options.BootstrapCount; ++attempt) {
    if (Attempt(options, attempt, results)) {
      rejectedInARow = 0;
      ownFiles_.clear();
      keep(results);
    } else {
      ++rejectedInARow;
    }
    TellTime("Estimated time remaining (h:mm:ss) is " +
             remaining.After(Timer(clock), attempt, options.BootstrapCount + results.Rejects()));
    desk_.Turn();
    if (state_.flags.AbortRun) return;
    if (rejectedInARow == MostRejectedInARow) {
      if (!AskToGoOn(options, results)) {
        results.endedEarly = fmt::format("the last {} attempts were all rejected", MostRejectedInARow);
        return;
      }
      rejectedInARow = 0;
    }
  }
}

bool ParametricBootstrap::Attempt(const BootstrapOptions& options, int attempt, BootstrapResults& results) {
  const int b = results.BootCount() + 1;
  const std::string path = NameDataFile(b);
  Tell(fmt::format("Performing parametric bootstrap {} of {}", b, options.BootstrapCount));
  Tell("Reading original data");
  TakeOriginal();
  GoAhead(options.minimiser, attempt, attempt + options.BootstrapCount - b);
  try {
    return Fit(options, attempt, path, results);
  } catch (const RuntimeFailure& failure) {
    return Reject(results.BootFailureRejects, fmt::format("a calculation that failed: {}", failure.what()));
  }
}

bool ParametricBootstrap::Fit(const BootstrapOptions& options, int attempt, const std::string& path,
                              BootstrapResults& results) {
  const std::string dataText = Simulate();
  Tell("Writing simulated data");
  WriteData(path, dataText);
  Tell("Reading simulated data");
  ReadSimulated(attempt, dataText);
  ReadAlgorithmFile();
  Tell("Estimating parameters for simulated data");
  Evaluate();
  const bool inverted = Minimise(options.minimiser, attempt, dataText);
  return Judge(options, Evaluate(), !inverted, results);
}

bool ParametricBootstrap::Reject(std::int32_t& counter, const std::string& reason) {
  ++counter;
  lastRejection_ = reason;
  Tell("Last bootstrap attempt rejected due to " + reason);
  return false;
}

bool ParametricBootstrap::AskToGoOn(const BootstrapOptions& options, const BootstrapResults& results) {
  return desk_.Ask("Parametric bootstrap",
                   fmt::format("The last {} attempts were all rejected, the last one due to {}.\r\n\r\n"
                               "So far {} of {} replicates are kept; {} attempts were rejected for a penalty, {} for a "
                               "matrix that could not be inverted, and {} for a calculation that failed.\r\n\r\n"
                               "Go on?",
                               MostRejectedInARow, lastRejection_, results.BootCount(), options.BootstrapCount,
                               results.BootPenaltyRejects, results.BootMatrixRejects, results.BootFailureRejects),
                   style::YesNoQuestion) == Answer::Yes;
}

std::string ParametricBootstrap::Folder() const {
  if (!desk_.host.bootstrapFolder.empty()) return desk_.host.bootstrapFolder;
  const std::string& path = model_.data.DataFileName;
  const std::string folder = path.substr(0, path.size() - FileName(path).size());
  return folder.empty() ? "." : folder.substr(0, std::max<std::size_t>(1, folder.size() - 1));
}

std::string ParametricBootstrap::NameDataFile(int replicate) {
  const double number = std::floor(desk_.host.random.Uniform() * 1000000 + 0.5);
  return Folder() + "/BootstrappedData" + Format(replicate, "00000") + "_" + Format(number, "000000") + ".dat";
}

/// The real data and the tables of the fit: read and evaluated once, put back from then on. The algorithm file is read
/// again, so that its loss is told before a replicate is made from it.
void ParametricBootstrap::TakeOriginal() {
  if (original_) {
    model_.PutBack(original_->tables);
    ReadAlgorithmFile();
    return;
  }
  ReadOriginal();
  ReadAlgorithmFile();
  RunState run = state_;
  Evaluate();
  original_.emplace(Original{model_.Keep(), ReplicateDataText(model_.data), std::move(run), desk_.host.random});
  predictions_.emplace(original_->tables.data, original_->tables.likelihood.best.parameters);
}

FitOrigin ParametricBootstrap::OriginOfFits(BootstrapResults::Minimiser minimiser) const {
  const auto minimise = [minimiser](RunState& run, Objective& objective) {
    return MinimiseAhead(minimiser, run, objective);
  };
  const auto priorTerm = [constant = state_.flags.ObjectiveConstant, priors = priors_](
                             const Array1<double>& vector) mutable { return EvaluatePrior(vector, constant, priors); };
  return {original_->tables.data,
          original_->tables.likelihood,
          original_->text,
          original_->random,
          original_->run,
          priorTerm,
          minimise};
}

void ParametricBootstrap::GoAhead(BootstrapResults::Minimiser minimiser, int attempt, int last) {
  if (cores < 2 || (desk_.host.shared != nullptr && desk_.host.shared->Find(attempt) != nullptr)) return;
  if (!ahead_)
    ahead_ = std::make_unique<FitsAhead>(
        OriginOfFits(minimiser),
        FitsAhead::Watch{[this](long turns) { desk_.Turns(turns); },
                         [this](const Message& m) { desk_.Tell(m.title, m.text, m.style, m.details); }},
        ThreadsAhead(cores, model_.data.Visits()), attempt);
  ahead_->Begin(attempt, last);
}

void ParametricBootstrap::BeginShared(const BootstrapOptions& options, double deviance) {
  const AlgorithmData& a = state_.algorithm;
  const RandomStreams& random = desk_.host.random;
  Digest basis;
  basis.Add("bootstrap").Add(DigestOf(model_.data)).Add(random.Seed()).Add(random.StreamNumber());
  basis.Add(static_cast<std::uint64_t>(options.minimiser))
      .Add(a.Tolerance)
      .Add(deviance)
      .AddAll(a.Value)
      .AddAll(a.Step);
  for (const std::string& fuse : a.Fuse) basis.Add(fuse);
  if (state_.flags.BayesOn) basis.Add(objective_.priorsInForce()).Add(state_.flags.ObjectiveConstant);
  desk_.host.shared->Begin(fmt::format("the bootstrap of {} replicates", options.BootstrapCount), basis.Value(),
                           random.Repeats());
}

void ParametricBootstrap::DoShare(const BootstrapOptions& options, BootstrapResults& results) {
  TakeOriginal();
  SharedWork& shared = *desk_.host.shared;
  const FittedShare done = FitShare(OriginOfFits(options.minimiser), *shared.Mine(), options.BootstrapCount,
                                    ThreadsAhead(cores, model_.data.Visits()), shared);
  Tell(fmt::format("{} attempts were made for this piece, of which {} were rejected", done.attempts, done.rejected));
  minimisers_.BeginAfresh(options.minimiser);      // a fit that follows sets out as behind any bootstrap
  desk_.host.random.Skip(options.BootstrapCount);  // what follows draws as behind a bootstrap without rejections
  results.Keep(results.originalDeviance, state_.algorithm.Value, model_.Estimates());
}

void ParametricBootstrap::Follow(int attempt, const std::string& dataText) {
  recorded_.reset();
  const Words* const words = desk_.host.shared != nullptr ? desk_.host.shared->Find(attempt) : nullptr;
  if (words != nullptr) {
    recorded_.emplace(*words, [this](long turns) { desk_.Turns(turns); });
    if (recorded_->IsTo(dataText))
      objective_.known = [this](ModelCall& call) { return recorded_->Answer(call); };
    else
      recorded_.reset();
  } else if (ahead_) {
    ahead_->Follow(attempt, dataText);
    objective_.known = [this](ModelCall& call) { return ahead_->Answer(call); };
  }
}

void ParametricBootstrap::Leave() {
  objective_.known = nullptr;
  if (ahead_) ahead_->Leave();
  if (desk_.host.shared != nullptr) desk_.host.shared->Count(recorded_ && recorded_->Fitted());
}

std::string ParametricBootstrap::Simulate() {
  Tell("Simulating new data");
  SimulateData(model_.data, {.BootstrapMode = true}, model_.Evaluated().best, desk_.host.random,
               DeskWatch(desk_, main_, state_.flags), model_.simulation, &*predictions_);
  return original_->text.Of(model_.simulation.SimCount);
}

/// The file once more. Replicates of other data would be those of another fit.
void ParametricBootstrap::ReadOriginal() {
  const BroodData fitted = model_.data;
  ReadData();
  if (!model_.data.HasSameRecords(fitted))
    throw CannotGoOn("the data file has changed since it was read: initialize the model with it and fit it anew");
}

void ParametricBootstrap::ReadSimulated(int attempt, const std::string& text) {
  const auto simulated = Meanwhile(state_.flags.ReadSimulatedFile, true);
  model_.data.SimulatedText = text;
  if (ahead_) model_.readElsewhere = ahead_->Read(attempt, text);
  ReadData();
}

void ParametricBootstrap::ReadData() {
  objective_.Call(state_.algorithm.Value, 0);
  if (!model_.data.ReadOK) throw RuntimeFailure("the data could not be read");
}

void ParametricBootstrap::WriteData(const std::string& path, const std::string& text) {
  TellReplaced(path);
  try {
    desk_.Write(path, text, false);
  } catch (const RuntimeFailure& failure) {
    throw CannotGoOn(failure.what());
  }
}

/// Tells once that files of another bootstrap are replaced: with the same seed theirs have the same names.
void ParametricBootstrap::TellReplaced(const std::string& path) {
  std::error_code unknown;
  const bool own = !ownFiles_.insert(path).second;
  if (replacedTold_ || own || !std::filesystem::exists(path, unknown)) return;
  replacedTold_ = true;
  desk_.Tell("Parametric bootstrap",
             fmt::format("Data files of another bootstrap stand where this one writes its own. Those of the same names "
                         "are replaced, {} to begin with.",
                         FileName(path)),
             style::Exclamation, path);
}

void ParametricBootstrap::ReadAlgorithmFile() {
  const std::string text = [this] {
    try {
      return ReadWholeFile(state_.algorithm.AlgName);
    } catch (const RuntimeFailure&) {
      throw NoAlgorithmFile{};
    }
  }();
  if (algorithmText_.empty() || text != algorithmText_) {
    RunState inFile = state_;
    if (!TakeSavedAlgorithm(text, inFile)) throw NoAlgorithmFile{};
    if (algorithmText_.empty())
      algorithmText_ = text;
    else
      TellChanged();
  }
  TakeSavedAlgorithm(algorithmText_, state_);
}

/// Tells once that another model has been saved over the one that is bootstrapped, as by somebody who wanted to leave
/// the program, saved, and then stayed.
void ParametricBootstrap::TellChanged() {
  if (std::exchange(changeTold_, true)) return;
  desk_.Tell("Parametric bootstrap",
             fmt::format("The algorithm file {} has been changed since the bootstrap began. All replicates are of the "
                         "model that was in it then.",
                         FileName(state_.algorithm.AlgName)),
             style::Exclamation, state_.algorithm.AlgName);
}

/// The deviance at Value as the first call of a run, without a prior term.
double ParametricBootstrap::Evaluate() {
  ApplyFuses(state_.algorithm.Value, state_);
  return objective_.Call(state_.algorithm.Value, 1);
}

/// Minimises over the free parameters of these data; false when a matrix could not be inverted.
bool ParametricBootstrap::Minimise(BootstrapResults::Minimiser minimiser, int attempt, const std::string& dataText) {
  Follow(attempt, dataText);
  const AtEnd leave([this] { Leave(); });
  return minimisers_.Minimise(minimiser);
}

bool ParametricBootstrap::Judge(const BootstrapOptions& options, double F, bool matrixFailed,
                                BootstrapResults& results) {
  const double Penalty = model_.Evaluated().Penalty;
  results.BootPenaltySum += Penalty;
  if (Penalty > 0) return Reject(results.BootPenaltyRejects, "a penalty added to the Deviance");
  if (matrixFailed) return Reject(results.BootMatrixRejects, "a matrix inversion failure");
  const CalculationWatch watch = DeskWatch(desk_, main_, state_.flags);
  EstimateOneDaySurvival(model_.data, model_.Evaluated(), true, watch, model_.Estimates());
  EstimateFledgingSurvival(model_.data, model_.Evaluated(), true, options.TargetAge, watch, model_.Estimates());
  results.Keep(F, state_.algorithm.Value, model_.Estimates());
  return true;
}

void ParametricBootstrap::SwapUsersRun() {
  std::swap(state_, *usersRun_);
  usersInPlace_ = !usersInPlace_;
}

}  // namespace merlane
