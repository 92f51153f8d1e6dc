#pragma once

#include "base/array1.h"
#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// Where derivatives come from: finite differences, or the model; or the user gave up choosing.
enum class DerivativeMode { Cancelled, Numerical, Analytical };

/// Where a run stands.
struct MarquardtProgress {
  std::int32_t NF = 0;           // function calls, those of axial verifications left out
  std::int32_t unevaluated = 0;  // points at which the objective could not be evaluated
  std::int32_t Iterations = 0;
  std::int16_t TrialCount = 0;  // trials since the derivatives were last computed
  std::int16_t VerifyCount = 0;
  double FBest = 0;              // objective at the accepted point before the last
  double FTrial = 0;             // objective at the last trial
  double Lambda = 0;             // damping
  Array1<double> GradientShown;  // 1..NFREE, the derivatives as they were before damping
  Matrix1<double> HessianShown;
  int failedRow = 0;  // row of zeros that made the decomposition fail
};

/// How a run ended.
enum class MarquardtEnding {
  Minimum,
  ZeroValue,                  // a relative tolerance met an accepted objective of 0, or the one before was 0
  Stopped,                    // iteration limit reached, or an interrupt, at an accepted step
  Interrupted,                // an interrupt at a rejected verification, or a profile point left
  InterruptedInTrials,        // an interrupt at a verification after 25 rejected trials
  FrustratedByTrials,         // 25 trials were rejected
  FrustratedByLambda,         // the damping passed 1E+20
  FrustratedByVerifications,  // the limit of verifications was reached
  MatrixFailed,               // a row of the matrix was zero
  DerivativesMissing          // the model gave no analytical derivatives
};
/// The ending as the export of a fit names it.
const char* EndingText(MarquardtEnding ending);

/// The objective at the point in Value when a run has ended so.
double ReachedObjective(MarquardtEnding ending, const MarquardtProgress& progress);

/// What a run came to.
struct MarquardtResult {
  MarquardtEnding ending = MarquardtEnding::Minimum;
  double F = 0;  // ReachedObjective
  double FBest = 0;
  double FTrial = 0;
  std::int32_t NF = 0;
  std::int32_t calls = 0;  // all evaluations of the run
  std::int32_t axialCalls = 0;
  std::int32_t Iterations = 0;
  std::int16_t verifications = 0;
};

/// What the user wants of a run: nothing, its end at the next accepted step or verification, or its end at once.
enum class MarquardtInterrupt { None, QuitAfterStep, LeaveRun };

/// Who watches a run. By default nobody does, and a run is never interrupted.
class MarquardtWatch {
 public:
  virtual ~MarquardtWatch() = default;

  /// The first function call is about to be made; it has been made.
  virtual void OnStart() {}
  virtual void OnStarted() {}
  /// A pass begins; asks the user if an interrupt is waiting.
  virtual void OnPass(const MarquardtProgress&) {}
  virtual MarquardtInterrupt Interrupt() { return MarquardtInterrupt::None; }
  /// Derivatives are about to be computed; before each function call that numerical ones take.
  virtual void OnDerivatives() {}
  virtual void OnHessianCall(int /*call*/, int /*of*/) {}
  /// A trial was accepted and stands in Value and FreeValue: the reports are due.
  virtual void OnAccepted(const MarquardtProgress&) {}
  /// The axial verification begins; the parameter that an axial call improved; after each axial call; its end; the
  /// point was improved and the run goes on.
  virtual void OnVerifying() {}
  virtual void OnAxialImprovement(int /*parameter*/) {}
  virtual void OnAxialCall(int /*call*/, int /*of*/) {}
  virtual void OnVerified() {}
  virtual void OnRejectedConvergence() {}
  /// The run is over.
  virtual void OnEnd(MarquardtEnding, const MarquardtProgress&) {}
  /// Lets pending events run.
  virtual void Turn() {}
};

/// Minimises the objective over the free parameters (PackFree has been called and NFREE is at least 1) from its true
/// gradient and Hessian, whose diagonal is damped after D. W. Marquardt, An algorithm for least-squares estimation of
/// nonlinear parameters, SIAM Journal on Applied Mathematics 11 (1963) 431-441. Numerical derivatives are central
/// differences with steps of a thousandth of the values and cost NFREE (NFREE + 1) function calls. A tolerance that is
/// met is not believed until an axial search in all directions has found nothing better.
///
/// The matrix is factorised in place and not restored after a rejected trial: the next trial damps and factorises the
/// packed factors. Steps therefore shrink fast.
///
/// Leaves in Value and FreeValue the last accepted point as the model left it in the trial vector, signs and clamps
/// included. A trial point that cannot be had from the derivatives, or at which the objective cannot be evaluated,
/// counts as UnevaluatedF, and so does a grid point of numerical derivatives. ArithmeticFailure when the starting point
/// cannot be evaluated, and where derivatives overflow.
MarquardtResult MinimiseMarquardt(RunState& state, Objective& objective, DerivativeMode mode, MarquardtWatch& watch);

}  // namespace merlane
