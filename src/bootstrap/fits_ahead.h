#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "bootstrap/replicate_fit.h"
#include "control/objective.h"
#include "model/kept_predictions.h"
#include "platform/window_system.h"

namespace merlane {

/// How many threads are worth having on so many cores, for data of so many visits: each holds the data once more, so
/// few of them fit large data.
int ThreadsAhead(int cores, int visits);

/// How many calls a fit may be ahead of the bootstrap with so many parameters: of each call two vectors are kept.
int CallsAhead(int parameters);

/// Fits the coming replicates of a bootstrap on the other cores, each from its own random stream, and keeps what the
/// objective was at each call of the minimiser. The bootstrap itself goes on as if nobody were ahead of it: its own
/// minimiser calls the objective, and is given a kept outcome for a calculation when data and vector are those that
/// were met ahead, bit for bit. So every estimate, status, question and turn is the same for any number of cores.
class FitsAhead {
 public:
  /// What the calls of the objective give and tell on their way.
  struct Watch {
    std::function<void(long)> turns;  // so many
    std::function<void(const Message&)> tell;
  };

  /// As many threads as are wanted or, where the system gives no more, fewer, even none. They begin with the attempt
  /// `first`.
  FitsAhead(FitOrigin origin, Watch watch, int threads, int first = 1);
  /// Abandons what is under way.
  ~FitsAhead();
  FitsAhead(const FitsAhead&) = delete;
  FitsAhead& operator=(const FitsAhead&) = delete;

  /// The bootstrap has come to this attempt, counted from 1, and will make `last` at least: so far it is worth going.
  void Begin(int attempt, int last);
  /// An attempt's data, where this text has been read ahead or is being read; none where they are not kept.
  std::optional<MerlaneModel::ReadElsewhere> Read(int attempt, const std::string& dataText);
  /// It begins to minimise with these data, and has left the minimum.
  void Follow(int attempt, const std::string& dataText);
  void Leave();
  /// Gives the outcome of the next call of the fit that is followed, when it is known or is being calculated; otherwise
  /// false, and nobody is followed any more. Raises what the call raised.
  bool Answer(ModelCall& call);

 private:
  class Fit;

  /// The fit to these data, if it has been begun.
  std::shared_ptr<Fit> BegunTo(int attempt, const std::string& dataText);
  void WorkAsLongAsThereIsMemory();
  void Work();
  void Run(int attempt, Fit& fit, KeptPredictions& predictions) const;

  const FitOrigin origin_;
  const Watch watch_;
  std::shared_ptr<Fit> followed_;

  std::mutex mutex_;  // guards all below
  std::condition_variable changed_;
  std::map<int, std::shared_ptr<Fit>> fits_;  // by attempt: begun and not yet left behind
  int next_;                                  // the attempt to be begun next
  int limit_ = 0;                             // the last that may be
  bool ended_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace merlane
