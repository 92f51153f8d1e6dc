#include "bootstrap/fits_ahead.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <exception>
#include <new>
#include <utility>

#include "control/fuses.h"
#include "data/brood_reader.h"
#include "data/record_places.h"
#include "data/standard_anomalies.h"
#include "model/likelihood.h"
#include "model/same_bits.h"
#include "model/simulator.h"

namespace merlane {
namespace {

/// How often a bootstrap that has caught up looks for what is new. Seldom enough to leave the cores to the fits.
constexpr std::chrono::milliseconds Glance(5);

/// How many numbers the vectors of a fit may hold before it waits: a bound on what a fit of very many calls keeps.
constexpr int MostNumbersAhead = 1'500'000;

/// How many visits all threads together may hold, a few hundred bytes each.
constexpr int MostVisitsAhead = 4'000'000;

/// Raised in a fit that nobody will follow.
struct Abandoned {};

bool SameBits(const Array1<double>& a, const Array1<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) { return merlane::SameBits(x, y); });
}

/// A call of the objective: what it was given, and what came of it once it is `done`. Each call that is begun gets
/// done: room for the outcome is there from the start.
struct KnownCall {
  std::int32_t NF;
  Array1<double> given, left;
  double F = 0;
  std::exception_ptr failure{};
  std::vector<Message> messages{};
  std::atomic<long> turns = 0;
  std::atomic<bool> done = false;

  KnownCall(std::int32_t code, const Array1<double>& vector) : NF(code), given(vector), left(vector) {}
};

}  // namespace

/// The calls of one replicate's minimiser, written by the thread that fits and read by the one that follows.
class FitsAhead::Fit {
 public:
  explicit Fit(int mostCalls) : mostCalls_(static_cast<std::size_t>(mostCalls)) {}

  // The fitting thread.
  void Begins(const std::string& dataText) {
    const std::lock_guard lock(mutex_);
    text_ = dataText;
    textKnown_ = true;
    changed_.notify_all();
  }
  KnownCall& Calls(std::int32_t NF, const Array1<double>& vector) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return calls_.size() < mostCalls_ || abandoned_; });
    StopIfAbandoned();
    return calls_.emplace_back(NF, vector);
  }
  void Ends() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
  }
  void StopIfAbandoned() const {
    if (abandoned_.load(std::memory_order_relaxed)) throw Abandoned{};
  }

  // The following thread.
  void Abandon() {
    const std::lock_guard lock(mutex_);
    abandoned_ = true;
    changed_.notify_all();
  }
  /// True when it is a fit to these data.
  bool IsTo(const std::string& dataText) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return textKnown_ || ended_; });
    return textKnown_ && text_ == dataText;
  }
  /// The first call that has not been dropped, waited for; null when the fit has ended without one.
  KnownCall* First() {
    std::unique_lock lock(mutex_);
    while (calls_.empty() && !ended_) changed_.wait_for(lock, Glance);
    return calls_.empty() ? nullptr : &calls_.front();
  }
  void DropFirst() {
    const std::lock_guard lock(mutex_);
    if (calls_.size() == mostCalls_) changed_.notify_all();
    calls_.pop_front();
  }
  /// Waits for a glance at most, less when the fit ends.
  void WaitALittle() {
    std::unique_lock lock(mutex_);
    if (!ended_) changed_.wait_for(lock, Glance);
  }

 private:
  const std::size_t mostCalls_;
  std::atomic<bool> abandoned_ = false;
  std::mutex mutex_;  // guards all below, but not the calls themselves
  std::condition_variable changed_;
  std::string text_;
  bool textKnown_ = false;
  bool ended_ = false;
  std::deque<KnownCall> calls_;  // in order; those that have been followed are dropped
};

int ThreadsAhead(int cores, int visits) { return std::min(cores, MostVisitsAhead / std::max(1, visits)); }

int CallsAhead(int parameters) { return MostNumbersAhead / (2 * parameters); }

FitsAhead::FitsAhead(Origin origin, Watch watch, int threads) : origin_(std::move(origin)), watch_(std::move(watch)) {
  try {
    for (int t = 1; t <= threads; ++t) threads_.emplace_back([this] { Work(); });
  } catch (const std::exception&) {
    // Without threads, or memory for them, the bootstrap fits by itself whatever is not fitted ahead.
  }
}

FitsAhead::~FitsAhead() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    for (const auto& [attempt, fit] : fits_) fit->Abandon();
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void FitsAhead::Begin(int attempt, int last) {
  const std::lock_guard lock(mutex_);
  while (!fits_.empty() && fits_.begin()->first < attempt) {
    fits_.begin()->second->Abandon();
    fits_.erase(fits_.begin());
  }
  limit_ = std::min(last, attempt + 2 * static_cast<int>(threads_.size()));
  changed_.notify_all();
}

void FitsAhead::Follow(int attempt, const std::string& dataText) {
  {
    const std::lock_guard lock(mutex_);
    const auto begun = fits_.find(attempt);
    followed_ = begun != fits_.end() ? begun->second : nullptr;
    next_ = std::max(next_, attempt + 1);  // not begun ahead, it is fitted by the bootstrap itself
  }
  if (followed_ && !followed_->IsTo(dataText)) Leave();
}

void FitsAhead::Leave() {
  if (followed_) followed_->Abandon();
  followed_.reset();
}

bool FitsAhead::Answer(ModelCall& call) {
  if (!followed_) return false;
  KnownCall* const known = followed_->First();
  if (known == nullptr || known->NF != call.NF || !SameBits(known->given, call.X)) {
    Leave();
    return false;
  }
  long turnsGiven = 0;
  for (bool done = false; !done;) {
    done = known->done.load(std::memory_order_acquire);
    const long turns = known->turns.load(std::memory_order_relaxed);
    watch_.turns(turns - turnsGiven);
    turnsGiven = turns;
    if (!done) followed_->WaitALittle();
  }
  for (const Message& message : known->messages) watch_.tell(message);
  call.X = known->left;
  call.F = known->F;
  const std::exception_ptr failure = known->failure;
  followed_->DropFirst();
  if (failure) std::rethrow_exception(failure);
  return true;
}

void FitsAhead::Work() {
  KeptPredictions predictions(origin_.data, origin_.fit.best.parameters);  // those of all replicates
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ended_ || next_ <= limit_; });
    if (ended_) return;
    const int attempt = next_++;
    std::shared_ptr<Fit> fit;
    try {
      fit = std::make_shared<Fit>(CallsAhead(origin_.run.algorithm.NPAR));
      fits_.emplace(attempt, fit);
    } catch (const std::bad_alloc&) {
      return;  // others go on, or the bootstrap by itself
    }
    lock.unlock();
    Run(attempt, *fit, predictions);
    lock.lock();
  }
}

/// Whatever a fit meets ends it; the bootstrap meets the same on its own way, and tells.
void FitsAhead::Run(int attempt, Fit& fit, KeptPredictions& predictions) const {
  try {
    BroodData data = origin_.data;
    LikelihoodState likelihood = origin_.fit;
    ReadReplicate(attempt, fit, predictions, data, likelihood);
    Minimise(fit, data, likelihood);
  } catch (...) {
  }
  fit.Ends();
}

void FitsAhead::ReadReplicate(int attempt, Fit& fit, KeptPredictions& predictions, BroodData& data,
                              LikelihoodState& likelihood) const {
  RandomStreams random = origin_.random;
  random.Skip(attempt - 1);
  Simulation simulation;
  const CalculationWatch watch{.turn = [&fit] { fit.StopIfAbandoned(); }};
  SimulateData(data, {.BootstrapMode = true}, likelihood.best, random, watch, simulation, &predictions);
  const std::string text = origin_.text.Of(simulation.SimCount);
  fit.Begins(text);
  ReadingReport unread;
  ReadTextData(
      text, true, data, [](const Message&) {}, unread);
  RecordPlaces(origin_.data).GiveTo(data);
  likelihood.Dimension(data);
  if (data.CovariateFormat == "A") StandardiseCovariates(data);
}

void FitsAhead::Minimise(Fit& fit, const BroodData& data, LikelihoodState& likelihood) const {
  Likelihood evaluator(data);
  KnownCall first(1, {});  // the bootstrap makes it itself
  KnownCall* now = &first;
  EvaluationSetting setting;
  setting.BootstrapMode = true;
  setting.tell = [&now](const Message& message) { now->messages.push_back(message); };
  setting.turn = [&now, &fit](long turns) {
    now->turns.fetch_add(turns, std::memory_order_relaxed);
    fit.StopIfAbandoned();
  };
  const auto evaluate = [&](ModelCall& call) {
    evaluator.EvaluateObjective(setting, likelihood, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                                call.NF, call.K);
  };

  RunState run = origin_.run;
  ApplyFuses(run.algorithm.Value, run);
  Objective(run, evaluate).Call(run.algorithm.Value, 1);
  Objective objective(run, [&](ModelCall& call) {
    now = &fit.Calls(call.NF, call.X);
    std::exception_ptr failure;
    try {
      evaluate(call);
    } catch (...) {
      failure = std::current_exception();
    }
    now->failure = failure;
    now->left = call.X;
    now->F = call.F;
    now->done.store(true, std::memory_order_release);  // from here on it is the follower's, who may have dropped it
    if (failure) std::rethrow_exception(failure);
  });
  objective.priorTerm = origin_.priorTerm;
  origin_.minimise(run, objective);
}

}  // namespace merlane
