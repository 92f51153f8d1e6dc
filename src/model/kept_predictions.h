#pragma once

#include <cstddef>
#include <deque>
#include <exception>
#include <vector>

#include "base/numbering.h"
#include "data/brood_data.h"
#include "model/count_prediction.h"
#include "platform/workers.h"

namespace merlane {

/// The distributions from which counts are picked, each built once for all visits that have the very same one, as most
/// visits of a data set have with some others. What is not yet built can be built by all workers at once.
class KeptPredictions {
 public:
  /// Keeps references to both.
  KeptPredictions(const BroodData& data, const Parameters& best) : data_(data), best_(best) {}

  /// The number of a visit's distribution when `n` >= 1 were counted at the visit before, counted from 0 in the order
  /// in which they are asked for. Without memory for one more all are forgotten.
  std::size_t Number(int visit, int n, const CountExpectation& expected);
  /// Builds those that have got a number since; `workers` share it where there are any, unless one takes long. `turn`
  /// as for CountDistributions.
  void Build(Workers* workers, const std::function<void(long)>& turn = {});
  std::size_t Size() const { return kept_.size(); }
  /// One that is built. Raises what building it has raised.
  const CountPrediction& operator[](std::size_t number) const;
  /// The same; empty where building it has failed.
  const CountPrediction& Built(std::size_t number) const { return kept_[number].prediction; }

  /// The distribution of a visit, built when it is new. Stays where it is until the next is asked for: beyond a number
  /// that serves most data all are forgotten. Raises what building it has raised.
  const CountPrediction& Of(int visit, int n, const CountExpectation& expected,
                            const std::function<void(long)>& turn = {});

 private:
  /// All that a distribution depends on, bit by bit.
  using Keys = Numbering<11>;
  /// A distribution, or what building it has raised.
  struct Kept {
    CountPrediction prediction;
    std::exception_ptr failure;
  };
  struct Asked {
    int visit, n;
    CountExpectation expected;
  };
  Keys::Key KeyOf(int visit, int n, const CountExpectation& expected) const;
  void Keep(const Asked& asked);
  void Forget();
  static void BuildOne(const Asked& asked, Kept& kept, CountPredictor& predictor,
                       const std::function<void(long)>& turn);

  const BroodData& data_;
  const Parameters& best_;
  Keys numbers_;
  std::deque<Kept> kept_;
  std::vector<Asked> unbuilt_;             // the last of them
  std::size_t counts_ = 0;                 // of all distributions
  std::deque<CountPredictor> predictors_;  // of each worker
};

}  // namespace merlane
