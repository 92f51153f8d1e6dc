#pragma once

#include <optional>

#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// The polytope. It outlives a run: the next run resumes from it where nothing has changed in between.
struct SimplexState {
  /// Simplex(j)(i) is free parameter i of column j: columns 1..NFREE+1 are the vertices, column ICentroid is the
  /// centroid.
  Array1<Array1<double>> Simplex;
  Array1<double> SimplexF;  // objective at each vertex
  int ILow = 0;             // best vertex
  int IHigh = 0;            // worst vertex
  int ICentroid = 0;        // NFREE + 2
  /// The run as the polytope's own run left it; none while there is no polytope to resume from.
  std::optional<Basis> left;

  /// The next run builds afresh, whatever it finds.
  void Forget() { left.reset(); }
  /// A run that begins at `now` resumes from here: the vertices are of its parameters, and their objectives are its
  /// own.
  bool ResumesAt(const Basis& now) const { return left && left->SameEstimates(now) && left->SameSearch(now); }
};

/// Where a run stands.
struct SimplexProgress {
  std::int32_t NF = 0;           // function calls since the start, or since the call limit was last overridden
  std::int32_t unevaluated = 0;  // points at which the objective could not be evaluated
  std::int32_t Iterations = 0;
  std::int16_t Restarts = 0;
  std::int16_t ImprovedCount = 0;   // vertices strictly worse than the last reflected point
  const char* ActionAccepted = "";  // label of the last step's action, 22 characters wide
};

/// How a run ended.
enum class SimplexEnding {
  Minimum,      // the tolerance is met and an axial search found nothing better
  CallLimit,    // the user did not want to go beyond the limit of function calls
  Interrupted,  // the user did not want to go on
  ZeroValue     // a relative tolerance met a best value of 0; Value was left alone
};
/// The ending as the export of a fit names it.
const char* EndingText(SimplexEnding ending);

/// What a run came to.
struct SimplexResult {
  SimplexEnding ending = SimplexEnding::Minimum;
  double F = 0;  // the objective of the best vertex
  std::int32_t NF = 0;
  std::int32_t calls = 0;  // all evaluations of the run
  std::int32_t Iterations = 0;
  std::int16_t Restarts = 0;
};

/// What becomes of a run after it gave a turn.
struct SimplexInterrupt {
  bool halt = false;
  std::optional<bool> reportNow;  // when the user was asked: whether one more progress report is wanted
};

/// Who watches a run. By default nobody does, a run ends at the call limit and is never interrupted.
class SimplexWatch {
 public:
  virtual ~SimplexWatch() = default;

  /// A new simplex is about to be built.
  virtual void OnBuilding() {}
  /// The simplex stands, built or resumed from.
  virtual void OnStart(const SimplexState&) {}
  /// A terminal or file report is due.
  virtual void OnTerminalReport(const SimplexState&, const SimplexProgress&) {}
  virtual void OnFileReport(const SimplexState&, const SimplexProgress&) {}
  /// NF has passed the limit of function calls: true to allow as many again.
  virtual bool ContinueBeyondCallLimit() { return false; }
  /// The tolerance is met and the axial search begins; after each axial call that does not improve; its end.
  virtual void OnVerifying() {}
  virtual void OnAxialCall(int /*call*/, int /*of*/) {}
  virtual void OnVerified() {}
  /// The search improved on parameter number `parameter`: restart number `Restarts` is about to begin.
  virtual void OnRestart(int /*Restarts*/, int /*parameter*/) {}
  /// The minimum is found. The run still gives its last turn.
  virtual void OnMinimum(const SimplexState&, const SimplexProgress&) {}
  /// The best value is 0, which a relative tolerance cannot do with.
  virtual void OnZeroValue() {}
  /// Lets pending events run and asks the user if an interrupt is among them.
  virtual SimplexInterrupt Turn() { return {}; }
  /// The run is over and Value holds the best vertex; after ZeroValue it is what it was.
  virtual void OnEnd(SimplexEnding, const SimplexProgress&) {}
};

/// Minimises the objective over the free parameters (PackFree has been called and NFREE is at least 1) by the polytope
/// of J. A. Nelder and R. Mead, A simplex method for function minimization, Computer Journal 7 (1965) 308-313, with
/// reflection factor 1, extension factor 2, contraction and reduction factors 1/2. The action is chosen by counting how
/// many vertices are worse than the reflected point; a reflected point that beat the worst vertex alone enters before
/// the contraction, which then starts from it. A simplex that meets the tolerance is not believed until an axial search
/// around its best vertex has failed; its success restarts the minimiser.
///
/// Goes on from the polytope that stands when data, values, steps, fuses and priors are as its run left them and no
/// other minimisation has been made since; otherwise builds a new one from FreeValue and FreeStep. Leaves the best
/// vertex in Value. A trial point at which the objective cannot be evaluated counts as UnevaluatedF; ArithmeticFailure
/// when that is so at the starting point, and for a step that leads beyond all numbers. After any failure there is
/// nothing to resume from.
SimplexResult MinimiseSimplex(RunState& state, Objective& objective, SimplexState& simplex, SimplexWatch& watch);

}  // namespace merlane
