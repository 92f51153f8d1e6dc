#include "minimise/simplex.h"

#include <cmath>
#include <utility>
#include <vector>

#include "base/arithmetic.h"
#include "minimise/evaluate_trial.h"

namespace merlane {
namespace {

constexpr const char* Reflection = "Reflection            ";
constexpr const char* Extension = "Extension             ";
constexpr const char* ReflectionContraction = "Reflection-Contraction";
constexpr const char* Contraction = "Contraction           ";
constexpr const char* ReflectionReduction = "Reflection-Reduction  ";
constexpr const char* Reduction = "Reduction             ";

/// Comes due at iterations 1, f + 1, 2f + 1 and so on; never with a frequency of 0.
class ReportCounter {
 public:
  explicit ReportCounter(std::int32_t frequency) : frequency_(frequency), counter_(frequency) {}

  bool Due() {
    if (counter_ == frequency_ && frequency_ != 0) {
      counter_ = 1;
      return true;
    }
    if (counter_ > 0) ++counter_;
    return false;
  }
  /// Iterations have gone by since the last report.
  bool Behind() const { return counter_ > 1 && frequency_ != 0; }

 private:
  std::int32_t frequency_;
  std::int32_t counter_;
};

class SimplexRun {
 public:
  SimplexRun(RunState& state, Objective& objective, SimplexState& simplex, SimplexWatch& watch)
      : algorithm_(state.algorithm),
        free_(state.free),
        NFREE_(state.free.NFREE),
        objective_(objective),
        s_(simplex),
        watch_(watch),
        evaluator_(state, objective),
        terminal_(algorithm_.TerminalFreq),
        file_(algorithm_.FileFreq) {}

  SimplexResult Run() {
    Start();
    do {
      Step();
      OrderVertices();
      ++now_.Iterations;
      ReportProgress();
      halt_ = false;
      CheckCallLimit();
      if (!halt_) TestConvergence();
      if (ending_ == SimplexEnding::ZeroValue) break;
      HearUser();
      CatchUpReport();
    } while (!halt_);
    if (ending_ != SimplexEnding::ZeroValue) KeepBest();
    KeepBasis();
    watch_.OnEnd(ending_, now_);
    return Result();
  }

 private:
  void Start() {
    s_.ICentroid = NFREE_ + 2;
    const bool resumed = s_.ResumesAt(objective_.Present());
    s_.Forget();  // a run that fails on its way leaves a polytope of which some vertex may lack its objective
    objective_.BeginSearch();
    begun_ = objective_.Present();
    if (resumed)
      evaluator_.GoOnFrom(s_.SimplexF(s_.ILow));
    else
      Build();
    watch_.OnStart(s_);
  }

  /// One vertex at the starting values, and one more for each free parameter at its full step.
  void Build() {
    const int NPAR = algorithm_.NPAR;
    s_.Simplex.Dimension(NPAR + 2, Array1<double>(NPAR));
    s_.SimplexF.Dimension(NPAR + 2);
    s_.Simplex(1) = free_.FreeValue;
    watch_.OnBuilding();
    s_.SimplexF(1) = evaluator_.EvaluateStart(s_.Simplex(1));
    now_.NF = evaluator_.NF;
    for (int j = 2; j <= NFREE_ + 1; ++j) s_.Simplex(j) = s_.Simplex(1);
    MoveDiagonal(1);
    OrderVertices();
  }

  /// Moves the vertices 2..NFREE+1 each along a parameter of its own, by a fraction of the step, and evaluates them.
  void MoveDiagonal(double fraction) {
    Announce(1, [&](int j, Array1<double>& vertex) { vertex(j - 1) += fraction * free_.FreeStep(j - 1); });
    for (int j = 2; j <= NFREE_ + 1; ++j) {
      s_.Simplex(j)(j - 1) = Checked(s_.Simplex(j)(j - 1) + fraction * free_.FreeStep(j - 1));
      s_.SimplexF(j) = Evaluate(s_.Simplex(j));
    }
  }

  /// Finds the best and the worst vertex, a tie staying with the lower column, and the centroid of all but the worst.
  void OrderVertices() {
    s_.ILow = s_.IHigh = 1;
    for (int j = 2; j <= NFREE_ + 1; ++j) {
      if (s_.SimplexF(j) < s_.SimplexF(s_.ILow))
        s_.ILow = j;
      else if (s_.SimplexF(j) > s_.SimplexF(s_.IHigh))
        s_.IHigh = j;
    }
    for (int i = 1; i <= NFREE_; ++i) {
      double sum = 0;
      for (int j = 1; j <= NFREE_ + 1; ++j) sum += s_.Simplex(j)(i);
      s_.Simplex(s_.ICentroid)(i) = (sum - s_.Simplex(s_.IHigh)(i)) / NFREE_;
    }
  }

  void Step() {
    const Array1<double>& centroid = s_.Simplex(s_.ICentroid);
    const Array1<double>& worst = s_.Simplex(s_.IHigh);
    ReflectedPoint_ = worst;
    for (int i = 1; i <= NFREE_; ++i) ReflectedPoint_(i) = 2 * centroid(i) - worst(i);
    const double reflectedF = Evaluate(ReflectedPoint_);
    now_.ImprovedCount = CountWorseThan(reflectedF);
    now_.ActionAccepted = now_.ImprovedCount > 0 ? Reflection : "";

    if (now_.ImprovedCount == NFREE_ + 1)
      Extend(reflectedF);
    else if (now_.ImprovedCount > 0)
      ReplaceWorst(ReflectedPoint_, reflectedF);
    if (now_.ImprovedCount <= 1) Contract();
  }

  std::int16_t CountWorseThan(double F) const {
    std::int16_t count = 0;
    for (int j = 1; j <= NFREE_ + 1; ++j)
      if (F < s_.SimplexF(j)) ++count;
    return count;
  }

  void ReplaceWorst(const Array1<double>& point, double F) {
    s_.Simplex(s_.IHigh) = point;
    s_.SimplexF(s_.IHigh) = F;
  }

  /// The reflected point is better than every vertex: goes as far again.
  void Extend(double reflectedF) {
    const Array1<double>& centroid = s_.Simplex(s_.ICentroid);
    ExtendedPoint_ = ReflectedPoint_;
    for (int i = 1; i <= NFREE_; ++i) ExtendedPoint_(i) = 2 * ReflectedPoint_(i) - centroid(i);
    const double extendedF = Evaluate(ExtendedPoint_);
    if (extendedF < reflectedF) {
      now_.ActionAccepted = Extension;
      ReplaceWorst(ExtendedPoint_, extendedF);
    } else {
      ReplaceWorst(ReflectedPoint_, reflectedF);
    }
  }

  /// Draws the worst vertex, which may be the reflected point by now, half-way to the centroid of before.
  void Contract() {
    const bool afterReflection = now_.ImprovedCount > 0;
    const Array1<double>& centroid = s_.Simplex(s_.ICentroid);
    const Array1<double>& worst = s_.Simplex(s_.IHigh);
    ContractedPoint_ = worst;
    for (int i = 1; i <= NFREE_; ++i) ContractedPoint_(i) = 0.5 * worst(i) + 0.5 * centroid(i);
    const double contractedF = Evaluate(ContractedPoint_);
    if (contractedF < s_.SimplexF(s_.IHigh)) {
      now_.ActionAccepted = afterReflection ? ReflectionContraction : Contraction;
      ReplaceWorst(ContractedPoint_, contractedF);
    } else {
      now_.ActionAccepted = afterReflection ? ReflectionReduction : Reduction;
      Reduce();
    }
  }

  /// Shrinks the whole simplex towards its best vertex.
  void Reduce() {
    const Array1<double>& best = s_.Simplex(s_.ILow);
    const auto shrink = [&](int, Array1<double>& vertex) {
      for (int i = 1; i <= NFREE_; ++i) vertex(i) = (vertex(i) - best(i)) * 0.5 + best(i);
    };
    Announce(s_.ILow, shrink);
    for (int j = 1; j <= NFREE_ + 1; ++j) {
      if (j == s_.ILow) continue;
      shrink(j, s_.Simplex(j));
      s_.SimplexF(j) = Evaluate(s_.Simplex(j));
    }
  }

  /// All vertices but one are going to be moved and evaluated.
  template <class Move>
  void Announce(int unmoved, const Move& move) const {
    std::vector<Array1<double>> vertices;
    for (int j = 1; j <= NFREE_ + 1; ++j)
      if (j != unmoved) move(j, vertices.emplace_back(s_.Simplex(j)));
    evaluator_.Announce(vertices);
  }

  void ReportProgress() {
    if (terminal_.Due()) watch_.OnTerminalReport(s_, now_);
    if (file_.Due()) watch_.OnFileReport(s_, now_);
  }

  void CheckCallLimit() {
    if (evaluator_.NF <= algorithm_.MaxCalls) return;
    if (watch_.ContinueBeyondCallLimit())
      evaluator_.NF = now_.NF = 0;
    else
      Halt(SimplexEnding::CallLimit, true);
  }

  void TestConvergence() {
    const double low = s_.SimplexF(s_.ILow);
    const double difference = Checked(std::fabs(s_.SimplexF(s_.IHigh) - low));
    const double tolerance = algorithm_.Tolerance;
    if (tolerance < 0 && low == 0) {
      ending_ = SimplexEnding::ZeroValue;
      watch_.OnZeroValue();
      return;
    }
    const bool converged = tolerance < 0 ? std::fabs(tolerance) > difference / std::fabs(low) : difference < tolerance;
    if (converged) Verify();
  }

  void Verify() {
    watch_.OnVerifying();
    const int failedAt = AxialSearch();
    watch_.OnVerified();
    if (failedAt > 0) {
      Restart(failedAt);
      return;
    }
    watch_.OnMinimum(s_, now_);
    Halt(SimplexEnding::Minimum, reportNow_);
  }

  /// Tries a reduced step to both sides of the best vertex along each free parameter, on the vertex itself. Returns the
  /// number of the first parameter that improved the objective by more than the tolerance, with the vertex left at the
  /// improved point; 0 when none did. Stepping there and back may change the last bit of a coordinate.
  int AxialSearch() {
    Array1<double>& best = s_.Simplex(s_.ILow);
    const double bestF = s_.SimplexF(s_.ILow);
    const double tolerance = algorithm_.Tolerance;
    // For a negative value a relative margin is negative, too.
    const double margin = tolerance < 0 ? -tolerance * bestF : tolerance;
    const double s = algorithm_.StepReduction;
    int call = 0;
    const auto improves = [&] {
      const double F = Evaluate(best);
      ++call;
      if (bestF - margin > F) return true;
      watch_.OnAxialCall(call, 2 * NFREE_);
      return false;
    };
    for (int i = 1; i <= NFREE_; ++i) {
      best(i) += s * free_.FreeStep(i);
      if (improves()) return free_.FreeIndex(i);
      best(i) -= 2 * s * free_.FreeStep(i);
      if (improves()) return free_.FreeIndex(i);
      best(i) += s * free_.FreeStep(i);
    }
    return 0;
  }

  /// Begins anew from the improved point. The other vertices keep their places but for one reduced step each.
  void Restart(int parameter) {
    now_.Restarts = CheckedInt16(now_.Restarts + 1);
    watch_.OnRestart(now_.Restarts, parameter);
    ReflectedPoint_ = s_.Simplex(s_.ILow);
    s_.Simplex(1) = ReflectedPoint_;
    s_.SimplexF(1) = Evaluate(s_.Simplex(1));
    MoveDiagonal(algorithm_.StepReduction);
    OrderVertices();
  }

  void HearUser() {
    const SimplexInterrupt answer = watch_.Turn();
    reportNow_ = answer.reportNow.value_or(reportNow_);
    if (answer.halt) Halt(SimplexEnding::Interrupted, reportNow_);
  }

  void CatchUpReport() {
    if (reportNow_ && terminal_.Behind()) watch_.OnTerminalReport(s_, now_);
    reportNow_ = false;
  }

  /// The polytope is of the parameters that the run began with, also when the model has meanwhile repaired its
  /// hypothesis; then it is not resumed.
  void KeepBasis() {
    begun_.Value = objective_.Present().Value;
    s_.left = std::move(begun_);
  }

  void KeepBest() { SetFree(algorithm_.Value, s_.Simplex(s_.ILow), free_); }

  void Halt(SimplexEnding ending, bool reportNow) {
    if (!halt_) ending_ = ending;
    halt_ = true;
    reportNow_ = reportNow;
  }

  double Evaluate(const Array1<double>& trial) {
    const double F = evaluator_.EvaluateTrial(trial);
    now_.NF = evaluator_.NF;
    now_.unevaluated = evaluator_.unevaluated;
    return F;
  }

  SimplexResult Result() const {
    return {ending_, s_.SimplexF(s_.ILow), evaluator_.NF, evaluator_.calls, now_.Iterations, now_.Restarts};
  }

  AlgorithmData& algorithm_;
  const FreeParameters& free_;
  const int NFREE_;
  Objective& objective_;
  SimplexState& s_;
  Basis begun_;
  SimplexWatch& watch_;
  TrialEvaluator evaluator_;
  ReportCounter terminal_;
  ReportCounter file_;
  SimplexProgress now_;
  Array1<double> ReflectedPoint_;
  Array1<double> ExtendedPoint_;
  Array1<double> ContractedPoint_;
  bool halt_ = false;
  bool reportNow_ = false;
  SimplexEnding ending_ = SimplexEnding::Minimum;
};

}  // namespace

const char* EndingText(SimplexEnding ending) {
  switch (ending) {
    case SimplexEnding::Minimum:
      return "minimum";
    case SimplexEnding::CallLimit:
      return "call limit";
    case SimplexEnding::Interrupted:
      return "interrupted";
    case SimplexEnding::ZeroValue:
      return "zero value";
  }
  return "";
}

SimplexResult MinimiseSimplex(RunState& state, Objective& objective, SimplexState& simplex, SimplexWatch& watch) {
  return SimplexRun(state, objective, simplex, watch).Run();
}

}  // namespace merlane
