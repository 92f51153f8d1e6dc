#include "minimise/marquardt.h"

#include <cmath>
#include <vector>

#include "base/arithmetic.h"
#include "base/arithmetic_failure.h"
#include "control/fuses.h"
#include "minimise/evaluate_trial.h"
#include "minimise/lu.h"
#include "minimise/second_differences.h"

namespace merlane {
namespace {

constexpr double StartLambda = 0.001;
constexpr double LargestLambda = 1E+20;
constexpr std::int16_t LastTrial = 25;
constexpr std::int16_t VerifyLimitAlone = 5;
constexpr std::int16_t VerifyLimitInBootstrap = 32000;
constexpr double RelativeDifference = 0.001;

class MarquardtRun {
 public:
  MarquardtRun(RunState& state, Objective& objective, DerivativeMode mode, MarquardtWatch& watch)
      : state_(state),
        algorithm_(state.algorithm),
        free_(state.free),
        NFREE_(state.free.NFREE),
        objective_(objective),
        mode_(mode),
        watch_(watch),
        turn_([&watch] { watch.Turn(); }),
        evaluator_(state, objective),
        VerifyLimit_(state.flags.BootstrapMode ? VerifyLimitInBootstrap : VerifyLimitAlone),
        Gradient_(NFREE_),
        Hessian_(NFREE_, NFREE_) {}

  MarquardtResult Run() {
    Start();
    for (now_.TrialCount = 0; now_.TrialCount <= LastTrial; ++now_.TrialCount)
      if (const auto ending = Pass()) return Finish(*ending);
    return Finish(MarquardtEnding::FrustratedByTrials);
  }

 private:
  using Ending = std::optional<MarquardtEnding>;

  void Start() {
    if (mode_ == DerivativeMode::Numerical) {
      differences_ = SecondDifferences(NFREE_);
    } else {
      state_.Gradient.Dimension(algorithm_.NPAR);
      state_.Hessian.Dimension(algorithm_.NPAR, algorithm_.NPAR);
    }
    objective_.BeginSearch();
    watch_.OnStart();
    TrialParameters_ = algorithm_.Value;
    now_.NF = ++evaluator_.NF;
    now_.FBest = now_.FTrial = evaluator_.EvaluateStart(TrialParameters_, evaluator_.NF);
    watch_.OnStarted();
  }

  Ending Pass() {
    watch_.OnPass(now_);
    if (const Ending ending = HearUser()) return ending;
    if (now_.TrialCount == 0) {
      if (const Ending ending = FreshDerivatives(StartLambda)) return ending;
    } else {
      if (const Ending ending = JudgeTrial()) return ending;
    }
    if (const Ending ending = NextTrial()) return ending;
    if (now_.TrialCount < LastTrial) return {};
    if (const Ending ending = VerifyRejections()) return ending;
    return NextTrial();
  }

  Ending HearUser() {
    const MarquardtInterrupt answer = watch_.Interrupt();
    if (answer == MarquardtInterrupt::QuitAfterStep) QuitAfterStep_ = true;
    if (answer == MarquardtInterrupt::LeaveRun) return MarquardtEnding::Interrupted;
    return {};
  }

  /// Derivatives at the accepted point, and the damping of the first trial from there.
  Ending FreshDerivatives(double Lambda) {
    watch_.OnDerivatives();
    now_.Lambda = Lambda;
    if (mode_ == DerivativeMode::Numerical)
      NumericalDerivatives();
    else if (!AnalyticalDerivatives())
      return MarquardtEnding::DerivativesMissing;
    return {};
  }

  /// Evaluates the trial point, and either rejects it or goes on from there.
  Ending JudgeTrial() {
    now_.FTrial = HasTrial_ ? CountedCall(TrialParameters_) : evaluator_.Unevaluated();
    now_.unevaluated = evaluator_.unevaluated;
    if (now_.FTrial > now_.FBest) {
      now_.Lambda *= 10;
      return {};
    }
    Accept();
    if (algorithm_.Tolerance < 0 && now_.FBest == 0) return MarquardtEnding::ZeroValue;
    if (Converged()) return VerifyAccepted();
    if (QuitAfterStep_ || now_.Iterations == algorithm_.MaxCalls) return MarquardtEnding::Stopped;
    now_.FBest = now_.FTrial;
    return FreshDerivatives(now_.Lambda * 0.1);
  }

  void Accept() {
    ++now_.Iterations;
    now_.TrialCount = 0;
    KeepTrialParameters();
    watch_.OnAccepted(now_);
  }

  /// Compares with the point before the accepted one. The relative test admits equality, the absolute one does not.
  bool Converged() const {
    const double tolerance = algorithm_.Tolerance;
    const double difference = std::fabs(now_.FBest - now_.FTrial);
    if (tolerance < 0) return std::fabs(tolerance) >= difference / std::fabs(now_.FBest);
    return difference < tolerance;
  }

  Ending VerifyAccepted() {
    if (!VerifyImproves()) return MarquardtEnding::Minimum;
    if (now_.VerifyCount == VerifyLimit_) return MarquardtEnding::FrustratedByVerifications;
    if (QuitAfterStep_) return MarquardtEnding::Interrupted;
    return GoOnFromImproved();
  }

  /// After 25 rejections: no success even when the search finds nothing.
  Ending VerifyRejections() {
    TrialParameters_ = algorithm_.Value;
    if (!VerifyImproves()) return MarquardtEnding::FrustratedByTrials;
    if (now_.VerifyCount == VerifyLimit_) return MarquardtEnding::FrustratedByVerifications;
    if (QuitAfterStep_) return MarquardtEnding::InterruptedInTrials;
    return GoOnFromImproved();
  }

  Ending GoOnFromImproved() {
    watch_.OnRejectedConvergence();
    now_.TrialCount = 0;
    KeepTrialParameters();
    return FreshDerivatives(StartLambda);
  }

  bool VerifyImproves() {
    watch_.OnVerifying();
    const bool improved = AxialVerification();
    ++now_.VerifyCount;
    return improved;
  }

  /// Damps the matrix (fresh derivatives, or the factors of the last trial), factorises it and steps.
  Ending NextTrial() {
    if (now_.TrialCount == 0) {
      now_.GradientShown = Gradient_;
      now_.HessianShown = Hessian_;
    }
    if (now_.Lambda > LargestLambda) return MarquardtEnding::FrustratedByLambda;
    try {
      return DampAndStep();
    } catch (const ArithmeticFailure&) {  // the next trial damps what stands
      HasTrial_ = false;
      return {};
    }
  }

  Ending DampAndStep() {
    for (int i = 1; i <= NFREE_; ++i) Hessian_(i, i) = Checked(std::fabs(Hessian_(i, i)) * (now_.Lambda + 1));
    Array1<double> step = Gradient_;
    const LUPermutation permutation = LUDecompose(NFREE_, Hessian_, turn_);
    if (permutation.Failed()) {
      now_.failedRow = permutation.failedRow;
      return MarquardtEnding::MatrixFailed;
    }
    LUBackSubstitute(NFREE_, Hessian_, permutation, step, turn_);
    for (int i = 1; i <= NFREE_; ++i) TrialParameters_(free_.FreeIndex(i)) = Checked(free_.FreeValue(i) - step(i));
    HasTrial_ = true;
    return {};
  }

  /// The absolute step that side 1 takes along free parameter k; side 2 takes its negative.
  double Difference(int k) const {
    return free_.FreeValue(k) == 0 ? RelativeDifference : free_.FreeValue(k) * RelativeDifference;
  }

  void NumericalDerivatives() {
    EvaluateGrid();
    BuildGradient();
    const auto h = [this](int i) { return Difference(i); };
    Hessian_ = FullHessian(
        differences_, [&](int i) { return h(i) * h(i); }, [&](int i, int j) { return 2 * h(i) * h(j); });
  }

  /// Calls with each pair of free parameters, or one alone, moved to either side.
  void EvaluateGrid() {
    int call = 0;
    for (int i = 1; i <= NFREE_; ++i) {
      std::vector<Array1<double>> points = GridRow(i);
      objective_.Announce(points, evaluator_.NF + 1);
      auto point = points.begin();
      for (int j = i; j <= NFREE_; ++j)
        for (Matrix1<double>* const side : {&differences_.plus, &differences_.minus}) {
          watch_.OnHessianCall(++call, NFREE_ * (NFREE_ + 1));
          (*side)(i, j) = CountedCall(*point++) - now_.FBest;
        }
    }
  }

  /// The points of row i, in the order of the calls.
  std::vector<Array1<double>> GridRow(int i) {
    std::vector<Array1<double>> points;
    for (int j = i; j <= NFREE_; ++j)
      for (const double sign : {1, -1}) {
        Array1<double>& point = points.emplace_back(algorithm_.Value);
        SetFree(point, free_.FreeValue, free_);
        point(free_.FreeIndex(i)) += sign * Difference(i);
        if (j != i) point(free_.FreeIndex(j)) += sign * Difference(j);
      }
    return points;
  }

  void BuildGradient() {
    for (int i = 1; i <= NFREE_; ++i)
      Gradient_(i) = Divide(-(differences_.plus(i, i) - differences_.minus(i, i)), 2 * -Difference(i));
  }

  /// Asks the model; false when it gave no second derivatives.
  bool AnalyticalDerivatives() {
    ApplyFuses(algorithm_.Value, state_);
    objective_.Call(algorithm_.Value, -2);
    bool given = false;
    for (int i = 1; i <= NFREE_; ++i) {
      Gradient_(i) = state_.Gradient(free_.FreeIndex(i));
      for (int j = 1; j <= NFREE_; ++j) {
        Hessian_(i, j) = state_.Hessian(free_.FreeIndex(i), free_.FreeIndex(j));
        given = given || (i <= j && Hessian_(i, j) != 0);
      }
    }
    return given;
  }

  /// Tries a reduced step to both sides along every parameter with a step, and takes the best that improves by more
  /// than the tolerance into TrialParameters, Value and FBest.
  bool AxialVerification() {
    const double F0 = now_.FBest;
    double bestF = F0;
    int bestParameter = 0;
    double bestMove = 0;
    bool improved = false;
    int call = 0;
    for (int p = 1; p <= algorithm_.NPAR; ++p) {
      if (algorithm_.Step(p) == 0) continue;
      for (const int sign : {1, -1}) {
        const double move = sign * algorithm_.StepReduction * algorithm_.Step(p);
        work_ = algorithm_.Value;
        work_(p) = TrialParameters_(p) + move;
        ++axialCalls_;
        const double F = evaluator_.Evaluate(work_, 1);
        watch_.OnAxialCall(++call, 2 * NFREE_);
        if (Improves(F, F0)) {
          improved = true;
          if (F < bestF) {
            bestF = F;
            bestParameter = p;
            bestMove = move;
          }
          watch_.OnAxialImprovement(bestParameter);
        }
        watch_.Turn();
      }
    }
    watch_.OnVerified();
    if (improved) {
      TrialParameters_(bestParameter) += bestMove;
      algorithm_.Value(bestParameter) = TrialParameters_(bestParameter);
      now_.FBest = bestF;
    }
    ApplyFuses(TrialParameters_, state_);
    return improved;
  }

  bool Improves(double F, double F0) const {
    const double tolerance = algorithm_.Tolerance;
    if (!(F < F0)) return false;
    if (tolerance > 0) return std::fabs(F0 - F) > tolerance;
    return tolerance < 0 && std::fabs(tolerance) < std::fabs((F0 - F) / F0);  // from 0 any way down is infinitely far
  }

  /// What the model left in the trial vector becomes the point of the run.
  void KeepTrialParameters() {
    for (int i = 1; i <= NFREE_; ++i) {
      const std::int16_t p = free_.FreeIndex(i);
      algorithm_.Value(p) = free_.FreeValue(i) = TrialParameters_(p);
    }
  }

  double CountedCall(Array1<double>& vector) {
    now_.NF = ++evaluator_.NF;
    return evaluator_.Evaluate(vector, evaluator_.NF);
  }

  MarquardtResult Finish(MarquardtEnding ending) {
    if (ending == MarquardtEnding::Minimum) now_.FBest = evaluator_.Evaluate(TrialParameters_, 1);
    now_.unevaluated = evaluator_.unevaluated;
    watch_.OnEnd(ending, now_);
    return {ending,          ReachedObjective(ending, now_),
            now_.FBest,      now_.FTrial,
            evaluator_.NF,   evaluator_.calls,
            axialCalls_,     now_.Iterations,
            now_.VerifyCount};
  }

  RunState& state_;
  AlgorithmData& algorithm_;
  FreeParameters& free_;
  const int NFREE_;
  Objective& objective_;
  const DerivativeMode mode_;
  MarquardtWatch& watch_;
  const std::function<void()> turn_;
  TrialEvaluator evaluator_;
  const std::int16_t VerifyLimit_;
  MarquardtProgress now_;
  Array1<double> Gradient_;
  Matrix1<double> Hessian_;  // second derivatives, or the factors that the last trial left in their place
  SecondDifferences differences_;
  Array1<double> TrialParameters_;
  Array1<double> work_;
  std::int32_t axialCalls_ = 0;
  bool HasTrial_ = true;  // the derivatives gave a trial point
  bool QuitAfterStep_ = false;
};

}  // namespace

const char* EndingText(MarquardtEnding ending) {
  switch (ending) {
    case MarquardtEnding::Minimum:
      return "minimum";
    case MarquardtEnding::ZeroValue:
      return "zero value";
    case MarquardtEnding::Stopped:
      return "stopped";
    case MarquardtEnding::Interrupted:
    case MarquardtEnding::InterruptedInTrials:
      return "interrupted";
    case MarquardtEnding::FrustratedByTrials:
      return "frustration: trials";
    case MarquardtEnding::FrustratedByLambda:
      return "frustration: lambda";
    case MarquardtEnding::FrustratedByVerifications:
      return "frustration: verifications";
    case MarquardtEnding::MatrixFailed:
      return "matrix decomposition failed";
    case MarquardtEnding::DerivativesMissing:
      return "analytical derivatives missing";
  }
  return "";
}

double ReachedObjective(MarquardtEnding ending, const MarquardtProgress& progress) {
  const bool lastAccepted = ending == MarquardtEnding::Stopped || ending == MarquardtEnding::ZeroValue;
  return lastAccepted ? progress.FTrial : progress.FBest;
}

MarquardtResult MinimiseMarquardt(RunState& state, Objective& objective, DerivativeMode mode, MarquardtWatch& watch) {
  return MarquardtRun(state, objective, mode, watch).Run();
}

}  // namespace merlane
