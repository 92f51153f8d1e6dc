#include "uncertainty/posterior.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "base/arithmetic_failure.h"
#include "base/at_end.h"
#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "platform/digest.h"

namespace merlane {
namespace {

/// -ln of densities beyond which digits are lost: e^-708 is the smallest number that has them all, and curves have
/// tails.
constexpr double MostWithAllDigits = 700;

class PosteriorRun {
 public:
  PosteriorRun(const PinnedParameter& pinned, const PosteriorOptions& options, RunState& state, Objective& objective,
               double& ReferenceF, PosteriorWatch& watch, SharedWork* shared)
      : pinned_(pinned),
        options_(options),
        state_(state),
        Value_(state.algorithm.Value),
        NFREE_(state.free.NFREE),
        objective_(objective),
        ReferenceF_(ReferenceF),
        watch_(watch),
        shared_(shared),
        calls_(Pow(options.GridPoints, NFREE_) * options.ProfilePoints),
        GridMid_((options.GridPoints - 1) / 2 + 1) {}

  Posterior Run() {
    if (NFREE_ == 1) PrepareBivariate();
    if (shared_ != nullptr) BeginShared();
    result_.points = EvaluatedPoints(options_.ProfilePoints, pinned_.H);
    watch_.OnStart(calls_);
    for (int point = 1; point <= options_.ProfilePoints; ++point)
      if (!EvaluatePoint(point)) {
        result_.points.Keep(std::max(0, point - 2));
        break;
      }
    if (unevaluated_ > 0 && unevaluated_ == result_.NodeCounter && !DoesShare()) throw *firstUnevaluated_;
    if (unevaluated_ > 0) watch_.OnUnevaluated(unevaluated_, firstUnevaluated_->what());
    if (result_.Vanishes()) result_.points.IMin = 0;
    result_.losesDigits = NFREE_ > 0 && result_.points.Count() > 0 && !result_.Vanishes() &&
                          std::ranges::min(result_.points.ProfileF) > MostWithAllDigits;
    if (result_.bivariate) result_.bivariate->X = result_.points.ProfileX;  // of the points kept
    result_.points.Ascend();
    return std::move(result_);
  }

 private:
  void PrepareBivariate() {
    ReferenceF_ = NegLnL(Value_, state_, objective_, watch_);
    try {
      BivariateDensity& b = result_.bivariate.emplace();
      b.Y.Dimension(options_.GridPoints);
      b.f.Dimension(options_.GridPoints, options_.ProfilePoints);
      b.firstParameter = pinned_.ProfileParameter;
      b.secondParameter = state_.free.FreeIndex(1);
    } catch (const std::bad_alloc&) {
      result_.bivariate.reset();
      watch_.OnBivariateTooLarge();
    }
  }

  /// False when the user quits.
  bool EvaluatePoint(int point) {
    const double x = pinned_.ValueAt(point, options_.ProfilePoints);
    Value_(pinned_.ProfileParameter) = x;
    point_ = point;
    watch_.OnPoint(point);
    double f = 0;
    if (NFREE_ == 0) {
      f = VanishedF;
      const bool goesOn = DoRow([&] {
        f = Evaluate(Value_).value_or(VanishedF);
        if (watch_.Quits()) return false;
        TellCall();
        return true;
      });
      if (!goesOn) return false;
    } else {
      PointSum_ = 0;
      GridVector_ = Value_;
      if (!SumOver(1)) return false;
      f = PointSum_ != 0 ? -Log(PointSum_) : VanishedF;
    }
    result_.points.Add(point, x, f);
    result_.points.NoteLeft(x, (NFREE_ == 0 ? Value_ : GridVector_)(pinned_.ProfileParameter));
    return true;
  }

  /// Sums over the grid of the free parameters from position `depth` on. False when the user quits.
  bool SumOver(int depth) {
    const std::int16_t k = state_.free.FreeIndex(depth);
    if (depth < NFREE_) return SumAlong(k, depth);
    return DoRow([&] {
      if (!rowIsKnown_) AnnounceNodes(k);
      return SumAlong(k, depth);
    });
  }

  bool SumAlong(std::int16_t k, int depth) {
    for (int j = 1; j <= options_.GridPoints; ++j) {
      watch_.OnGridPoint(k, j);
      if (watch_.Quits()) return false;
      GridVector_(k) = GridValue(k, j);
      if (depth < NFREE_) {
        if (!SumOver(depth + 1)) return false;
      } else {
        AddNode(j);
      }
    }
    return true;
  }

  void BeginShared() {
    Digest basis;
    basis.Add("posterior")
        .Add(objective_.dataDigest())
        .Add(std::uint64_t(options_.ProfilePoints))
        .Add(std::uint64_t(options_.GridPoints));
    basis.Add(std::uint64_t(pinned_.ProfileParameter)).Add(pinned_.H).AddAll(Value_).AddAll(state_.algorithm.Step);
    for (const std::string& fuse : state_.algorithm.Fuse) basis.Add(fuse);
    shared_->Begin(fmt::format("the {:.0f} nodes of the posterior of parameter {}", calls_, pinned_.ProfileParameter),
                   basis.Value());
  }
  bool DoesShare() const { return shared_ != nullptr && shared_->Mine(); }

  /// Makes the calls of the next row, which tell whether to go on; but not in a run to whose share it does not belong.
  template <class Calls>
  bool DoRow(const Calls& calls) {
    ++row_;
    if (shared_ == nullptr) return calls();
    Words notes;
    const AtEnd forget([this] {
      objective_.note(nullptr);
      const bool taken = objective_.lookUp(nullptr);
      if (!DoesShare()) shared_->Count(taken);
    });
    if (const auto& mine = shared_->Mine()) {
      if (row_ % mine->of != mine->number - 1) return true;
      objective_.note(&notes);
    } else {
      const Words* const known = shared_->Find(row_);
      rowIsKnown_ = known != nullptr;
      objective_.lookUp(known);
    }
    const bool goesOn = calls();
    if (DoesShare()) shared_->Keep(row_, std::move(notes));
    return goesOn;
  }

  double GridValue(std::int16_t k, int j) const { return Value_(k) - (GridMid_ - j) * state_.algorithm.Step(k); }

  /// The nodes along parameter k, if the model leaves the others alone.
  void AnnounceNodes(std::int16_t k) const {
    std::vector<Array1<double>> nodes(static_cast<std::size_t>(options_.GridPoints), GridVector_);
    for (int j = 1; j <= options_.GridPoints; ++j) nodes[static_cast<std::size_t>(j) - 1](k) = GridValue(k, j);
    objective_.Announce(std::move(nodes), 1);
  }

  void AddNode(int j) {
    const std::optional<double> f = Evaluate(GridVector_);
    const double D = f ? Exp(-(*f - ReferenceF_)) : 0;
    TellCall();
    PointSum_ += D;
    if (!std::isfinite(PointSum_))
      throw RuntimeFailure("overflow: the likelihood around the parameter values is too large beside the one there");
    if (result_.bivariate) KeepDensity(*result_.bivariate, j, D);
  }

  void KeepDensity(BivariateDensity& b, int j, double D) {
    b.f(j, point_) = D;
    b.Y(j) = GridVector_(b.secondParameter);
    if (D > b.fmax) {
      b.fmax = D;
      b.peakX = Value_(pinned_.ProfileParameter);
      b.peakY = b.Y(j);
    }
  }

  /// None where there is no likelihood.
  std::optional<double> Evaluate(Array1<double>& vector) {
    ++result_.NodeCounter;
    try {
      return NegLnL(vector, state_, objective_, watch_);
    } catch (const ArithmeticFailure& failure) {
      if (++unevaluated_ == 1) firstUnevaluated_ = failure;
      return std::nullopt;
    }
  }

  void TellCall() { watch_.OnCall(result_.NodeCounter, calls_); }

  const PinnedParameter& pinned_;
  const PosteriorOptions& options_;
  RunState& state_;
  Array1<double>& Value_;
  const int NFREE_;
  Objective& objective_;
  double& ReferenceF_;
  PosteriorWatch& watch_;
  SharedWork* const shared_;
  std::int64_t row_ = -1;
  bool rowIsKnown_ = false;
  const double calls_;
  const int GridMid_;
  int point_ = 0;
  double PointSum_ = 0;
  double unevaluated_ = 0;  // nodes
  std::optional<ArithmeticFailure> firstUnevaluated_;
  Array1<double> GridVector_;
  Posterior result_;
};

}  // namespace

bool Posterior::Vanishes() const {
  return std::ranges::all_of(points.ProfileF, [](double f) { return f == VanishedF; });
}

Posterior EvaluatePosterior(const PinnedParameter& pinned, const PosteriorOptions& options, RunState& state,
                            Objective& objective, double& ReferenceF, PosteriorWatch& watch, SharedWork* shared) {
  return PosteriorRun(pinned, options, state, objective, ReferenceF, watch, shared).Run();
}

}  // namespace merlane
