#include "model/kept_predictions.h"

#include <algorithm>
#include <bit>
#include <new>

#include "likelihood/interval_kinds.h"

namespace merlane {
namespace {

/// Distributions of so many counts in all are kept by who asks for one after the other: some megabytes.
constexpr std::size_t MostCounts = 200'000;

/// So few are not worth sharing.
constexpr int FewToBuild = 64;

/// What one worker builds at a time.
constexpr std::size_t Piece = 32;

}  // namespace

/// Within a stage a count knows nothing of what is expected over hatch.
KeptPredictions::Keys::Key KeptPredictions::KeyOf(int visit, int n, const CountExpectation& expected) const {
  const Prediction kind = PredictionOf(data_, visit);
  Keys::Key key{static_cast<std::uint64_t>(kind), static_cast<std::uint64_t>(n)};
  std::size_t words = 2;
  const auto add = [&](double x) { key[words++] = std::bit_cast<std::uint64_t>(x); };
  add(data_.VisitAge[static_cast<std::size_t>(visit) - 1]);
  add(expected.q);
  if (kind == Prediction::Clutch || kind == Prediction::Brood) {
    add(expected.ER);
    add(expected.EC);
  } else {
    add(expected.r);
    add(expected.overHatch.EHatchR);
    add(expected.overHatch.EHatchC);
    for (const double juveniles : expected.overHatch.juveniles) add(juveniles);
  }
  return key;
}

std::size_t KeptPredictions::Number(int visit, int n, const CountExpectation& expected) {
  const auto [number, isNew] = numbers_(KeyOf(visit, n, expected));
  if (isNew) Keep({visit, n, expected});
  return static_cast<std::size_t>(number);
}

void KeptPredictions::Keep(const Asked& asked) {
  try {
    kept_.emplace_back();
    unbuilt_.push_back(asked);
  } catch (const std::bad_alloc&) {
    Forget();  // the number has nothing behind it
    throw;
  }
  counts_ += static_cast<std::size_t>(asked.n) + 1;
}

void KeptPredictions::Build(Workers* workers, const std::function<void(long)>& turn) {
  const std::size_t first = kept_.size() - unbuilt_.size();
  const bool shared =
      workers != nullptr && unbuilt_.size() >= FewToBuild &&
      std::ranges::none_of(unbuilt_, [](const Asked& asked) { return CountDistributions::TakesLong(asked.n); });
  while (predictors_.size() < static_cast<std::size_t>(shared ? workers->Count() : 1))
    predictors_.emplace_back(data_, best_);
  const auto build = [&](std::size_t begin, std::size_t end, CountPredictor& predictor) {
    for (std::size_t i = begin; i < end; ++i) BuildOne(unbuilt_[i], kept_[first + i], predictor, turn);
  };
  if (shared)
    workers->Share(static_cast<int>((unbuilt_.size() + Piece - 1) / Piece), [&](int item, int worker) {
      const std::size_t begin = static_cast<std::size_t>(item) * Piece;
      build(begin, std::min(begin + Piece, unbuilt_.size()), predictors_[static_cast<std::size_t>(worker)]);
    });
  else
    build(0, unbuilt_.size(), predictors_.front());
  unbuilt_.clear();
}

void KeptPredictions::BuildOne(const Asked& asked, Kept& kept, CountPredictor& predictor,
                               const std::function<void(long)>& turn) {
  try {
    predictor.Predict(asked.visit, asked.n, asked.expected, kept.prediction, turn);
  } catch (...) {
    kept.prediction = {};
    kept.failure = std::current_exception();  // for whoever picks from it
  }
}

const CountPrediction& KeptPredictions::operator[](std::size_t number) const {
  const Kept& kept = kept_[number];
  if (kept.failure) std::rethrow_exception(kept.failure);
  return kept.prediction;
}

void KeptPredictions::Forget() {
  numbers_.Clear();
  kept_.clear();
  unbuilt_.clear();
  counts_ = 0;
}

const CountPrediction& KeptPredictions::Of(int visit, int n, const CountExpectation& expected,
                                           const std::function<void(long)>& turn) {
  if (counts_ >= MostCounts) Forget();
  const std::size_t number = Number(visit, n, expected);
  if (!unbuilt_.empty()) Build(nullptr, turn);
  if (const std::exception_ptr failure = kept_[number].failure) {
    Forget();  // it may have come from a turn, and not be one of the distribution
    std::rethrow_exception(failure);
  }
  return kept_[number].prediction;
}

}  // namespace merlane
