#include "bootstrap/fits_ahead.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <exception>
#include <new>
#include <utility>

#include "survival/same_bits.h"

namespace merlane {
namespace {

/// How often a bootstrap that has caught up looks for what is new. Seldom enough to leave the cores to the fits.
constexpr std::chrono::milliseconds Glance(5);

/// How many numbers the vectors of a fit may hold before it waits: a bound on what a fit of very many calls keeps.
constexpr int MostNumbersAhead = 1'500'000;

/// Data of so many visits are kept for the bootstrap, with what is prepared of them; larger ones it reads itself.
constexpr int MostVisitsKept = 20'000;

/// How many visits all threads together may hold, a few hundred bytes each.
constexpr int MostVisitsAhead = 4'000'000;

/// Raised in a fit that nobody will follow.
struct Abandoned {};

bool SameBits(const Array1<double>& a, const Array1<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) { return merlane::SameBits(x, y); });
}

}  // namespace

/// The calls of one replicate's minimiser, written by the thread that fits and read by the one that follows.
class FitsAhead::Fit : public FitWatch {
 public:
  explicit Fit(int mostCalls) : mostCalls_(static_cast<std::size_t>(mostCalls)) {}

  // The fitting thread.
  void OnData(const std::string& dataText) override {
    const std::lock_guard lock(mutex_);
    text_ = dataText;
    textKnown_ = true;
    changed_.notify_all();
  }
  void OnRead(std::optional<MerlaneModel::ReadElsewhere> read) override {
    const std::lock_guard lock(mutex_);
    if (read && read->data->Visits() <= MostVisitsKept) read_ = std::move(read);
    readKnown_ = true;
    changed_.notify_all();
  }
  FitCall& OnCall(std::int32_t NF, const Array1<double>& vector) override {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return calls_.size() < mostCalls_ || abandoned_; });
    OnTurn();
    return calls_.emplace_back(NF, vector);
  }
  void OnTurn() override {
    if (abandoned_.load(std::memory_order_relaxed)) throw Abandoned{};
  }
  void Ends() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
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
  /// The data, waited for; none when they are not kept.
  std::optional<MerlaneModel::ReadElsewhere> Read() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return readKnown_ || ended_; });
    return std::exchange(read_, std::nullopt);
  }
  /// The first call that has not been dropped, waited for; null when the fit has ended without one.
  FitCall* First() {
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
  std::optional<MerlaneModel::ReadElsewhere> read_;
  bool readKnown_ = false;
  bool ended_ = false;
  std::deque<FitCall> calls_;  // in order; those that have been followed are dropped
};

int ThreadsAhead(int cores, int visits) { return std::min(cores, MostVisitsAhead / std::max(1, visits)); }

int CallsAhead(int parameters) { return MostNumbersAhead / (2 * parameters); }

FitsAhead::FitsAhead(FitOrigin origin, Watch watch, int threads, int first)
    : origin_(std::move(origin)), watch_(std::move(watch)), next_(first) {
  try {
    for (int t = 1; t <= threads; ++t) threads_.emplace_back([this] { WorkAsLongAsThereIsMemory(); });
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

std::shared_ptr<FitsAhead::Fit> FitsAhead::BegunTo(int attempt, const std::string& dataText) {
  std::shared_ptr<Fit> fit;
  {
    const std::lock_guard lock(mutex_);
    const auto begun = fits_.find(attempt);
    if (begun != fits_.end()) fit = begun->second;
    next_ = std::max(next_, attempt + 1);  // not begun ahead, it is fitted by the bootstrap itself
  }
  if (fit && !fit->IsTo(dataText)) {
    fit->Abandon();
    fit.reset();
  }
  return fit;
}

std::optional<MerlaneModel::ReadElsewhere> FitsAhead::Read(int attempt, const std::string& dataText) {
  const std::shared_ptr<Fit> fit = BegunTo(attempt, dataText);
  return fit ? fit->Read() : std::nullopt;
}

void FitsAhead::Follow(int attempt, const std::string& dataText) { followed_ = BegunTo(attempt, dataText); }

void FitsAhead::Leave() {
  if (followed_) followed_->Abandon();
  followed_.reset();
}

bool FitsAhead::Answer(ModelCall& call) {
  if (!followed_) return false;
  FitCall* const known = followed_->First();
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

/// Where memory ends others go on, or the bootstrap by itself.
void FitsAhead::WorkAsLongAsThereIsMemory() {
  try {
    Work();
  } catch (const std::bad_alloc&) {
  }
}

void FitsAhead::Work() {
  KeptPredictions predictions(origin_.data, origin_.fit.best.parameters);  // those of all replicates
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ended_ || next_ <= limit_; });
    if (ended_) return;
    const int attempt = next_++;
    const auto fit = std::make_shared<Fit>(CallsAhead(origin_.run.algorithm.NPAR));
    fits_.emplace(attempt, fit);
    lock.unlock();
    Run(attempt, *fit, predictions);
    lock.lock();
  }
}

/// Whatever a fit meets ends it; the bootstrap meets the same on its own way, and tells.
void FitsAhead::Run(int attempt, Fit& fit, KeptPredictions& predictions) const {
  try {
    ReplicateFit replicate(origin_, fit);
    replicate.Simulate(attempt, predictions);
    replicate.Minimise();
  } catch (...) {
  }
  fit.Ends();
}

}  // namespace merlane
