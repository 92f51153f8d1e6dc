#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// Where the Hessian comes from: differences of the objective on three grids, or the model's own derivatives, which
/// give the same answer three times.
enum class CovarianceMode { Numerical, Analytical };

/// How one of the three grids ended. Whatever has not been calculated is -1.
enum class GridEnding { Calculated, Abandoned, NotPositiveDefinite };

/// What one of the three grids gave. a and b count the parameters that take part ("positions").
struct CovarianceGrid {
  double GridFactor = 0;  // the steps are multiplied by it; 0 for analytical derivatives
  double GridMean = -1;   // of the objective over the grid's calls
  double GridSD = -1;     // likewise; negative when rounding has made the variance negative
  GridEnding ending = GridEnding::Abandoned;
  int failedAt = 0;                // parameter at which the Hessian was found not to be positive definite
  Array1<double> standardErrors;   // of position a; negative for a negative variance
  Matrix1<double> covariances;     // (a, b); not exactly symmetric, since each column is solved by itself
  double determinant = -1;         // of the matrix of covariances
  double productOfVariances = -1;  // of all its diagonal elements

  /// True when the standard error of position a could be calculated.
  bool HasStandardError(int a) const { return ending == GridEnding::Calculated && standardErrors(a) > 0; }
  /// Covariance over the product of both standard errors; -1 when that is 0, and for a grid without a result.
  double Correlation(int a, int b) const;
  /// Determinant of the matrix of correlations; -1 when there is none.
  double CorrelationDeterminant() const;
};

/// The last covariances that were calculated, with all that is told of them, so that they can be shown when the run has
/// long become another. They live as long as the program.
struct Covariances {
  std::optional<Basis> basis;  // none while nothing has been calculated
  CovarianceMode mode = CovarianceMode::Numerical;
  Array1<double> CovBaseValue;    // parameter values at the minimum, as the model left them after a call
  Array1<double> CovStep;         // steps; a parameter takes part when its step is not 0
  Array1<std::string> CovFuse;    // fuses
  Array1<std::string> CovName;    // descriptions
  std::int16_t CovCount = 0;      // parameters that take part
  Array1<std::int16_t> CovIndex;  // parameter number of position 1..CovCount
  double CovF0 = 0;               // objective at the base point, prior included
  double CovConstantInverse = 0;  // 1 / c, where c times the objective is -ln[likelihood]
  bool OptimisticSE = false;      // the off-diagonal of the Hessian was taken as 0: conditional standard errors
  std::optional<Array1<double>> stepsTaken;  // of the run since an evaluation took its steps from these standard errors
  Array1<CovarianceGrid> grid{3};            // from 1

  /// True when they are those of the present estimates, free parameters, steps, priors and constant, and no
  /// minimisation has been begun since. Steps that were taken from them do not make them those of another run.
  bool AreOf(const Basis& now) const;
  /// What has changed since, as parts of a sentence; empty when nothing has.
  std::string ChangesUntil(const Basis& now) const;

 private:
  /// Their basis as it reads beside the present one.
  Basis BesidePresent(const Basis& now) const;
};

struct CovarianceOptions {
  CovarianceMode mode = CovarianceMode::Numerical;
  /// What the steps are multiplied by on each grid. For meaningful results the standard deviation of -ln[likelihood]
  /// should go from near 0 on the smallest grid to about 5 on the largest.
  Array1<double> GridFactor{1.0, 0.1, 0.01};
};

/// Follows a covariance calculation.
class CovarianceWatch {
 public:
  virtual ~CovarianceWatch() = default;
  virtual void OnGrid(int /*g*/) {}
  /// Before call number `call` of the `calls` of this grid, and behind it.
  virtual void OnCall(int /*call*/, int /*calls*/) {}
  virtual void OnCalled(int /*g*/, int /*call*/, int /*calls*/) {}
  /// Asked behind each call: does the user quit this grid?
  virtual bool AbandonGrid() { return false; }
  /// Mean and standard deviation of -ln[likelihood] over the grid's calls.
  virtual void OnSummary(int /*g*/, double /*mean*/, double /*sd*/) {}
  virtual void OnNotPositiveDefinite(int /*parameter*/) {}
  virtual void OnInverting(int /*g*/) {}
  virtual void OnDeterminant(double /*determinant*/) {}
  /// A turn for the window system during a decomposition.
  virtual void Turn() {}
};

/// The base point of a covariance calculation: which parameters take part, and the objective there. Sets NFREE to
/// their number. With priors, a constant that has not been entered before leaves the prior out of this one objective.
Covariances PrepareCovariances(const CovarianceOptions& options, RunState& state, Objective& objective);

/// Calculates the covariances around a prepared base point: Hessians, their test for positive definiteness, and their
/// inverses scaled with the run's ObjectiveConstant. `optimistic` takes all parameters as known but one at a time,
/// which costs 2 CovCount calls a grid instead of CovCount (CovCount + 1); it means nothing to analytical derivatives.
/// RuntimeFailure when a result overflows, and when no parameter has a step on a numerical grid.
void CalculateCovariances(Covariances& c, bool optimistic, RunState& state, Objective& objective,
                          CovarianceWatch& watch);

}  // namespace merlane
