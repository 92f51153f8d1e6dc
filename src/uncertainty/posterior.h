#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "control/objective.h"
#include "control/run_state.h"
#include "platform/shared_work.h"
#include "plots/bivariate.h"
#include "uncertainty/confidence_series.h"
#include "uncertainty/neg_ln_l.h"
#include "uncertainty/pinned_parameter.h"

namespace merlane {

/// The other free parameters over which a posterior can be summed.
inline constexpr int MostGridParameters = 6;

/// -ln[L] of a point at which the densities of all nodes underflow, or none can be evaluated.
inline constexpr double VanishedF = 1E+20;

struct PosteriorOptions {
  std::int16_t ProfilePoints = 25;  // of the parameter itself; odd, 3 at least
  std::int16_t GridPoints = 25;     // of each other free parameter, likewise; 0 when none is free
};

/// Follows the integration of a posterior.
class PosteriorWatch : public ConstantWatch {
 public:
  /// The first point is about to begin, with this many function calls before it.
  virtual void OnStart(double /*calls*/) {}
  /// A point of the parameter itself begins; Value has its value.
  virtual void OnPoint(int /*point*/) {}
  /// Grid point j of another parameter begins.
  virtual void OnGridPoint(int /*parameter*/, int /*j*/) {}
  /// A function call has been made, the `call`-th of all the `calls`.
  virtual void OnCall(double /*call*/, double /*calls*/) {}
  /// Asked at each grid point, and behind each call when no other parameter is free: does the user quit?
  virtual bool Quits() { return false; }
  /// So many nodes could not be evaluated and counted as impossible; why the first of them could not.
  virtual void OnUnevaluated(double /*nodes*/, const std::string& /*why*/) {}
  /// The memory does not hold the joint density of two parameters, which is then left out.
  virtual void OnBivariateTooLarge() {}
};

struct Posterior {
  EvaluatedPoints points;
  std::optional<BivariateDensity> bivariate;  // with exactly one other free parameter; its X are not turned round, and
                                              // its peak is that of all nodes, also of points that are not kept
  double NodeCounter = 0;                     // function calls done
  bool losesDigits = false;                   // sums over nodes are too small to have all theirs

  /// True when every point is VanishedF: there is no curve, and the points have no minimum.
  bool Vanishes() const;
};

/// The marginal posterior of a pinned parameter: at each of its points the likelihood is summed over a regular grid of
/// all other free parameters (MostGridParameters at most), with one function call at each node, centred at Value and a
/// step apart. -ln[L] of a point is -ln of the plain sum of exp(ReferenceF - (-ln[L])) over the nodes, or VanishedF
/// when all of them underflow; with no other free parameter it is that of the one call.
///
/// ReferenceF is kept by the caller from one run to the next and is set, to -ln[L] at Value, only when exactly one
/// other parameter is free; with more it is what an earlier run has left, 0 at first.
///
/// What the model rewrites in a vector stays there while the loops of the parameters behind it run: a value out of its
/// range is penalised at the first node and sits on its bound at the others.
///
/// A node that cannot be evaluated has a density of 0, and at the end that is told once.
///
/// A row of the grid is what other runs can have a share of (`shared`): the nodes along the last parameter, or the one
/// call of a point without others. A run that does a share evaluates its rows alone, and what it returns is no
/// posterior; one that is given what the rows have come to evaluates as if alone, and the model looks up the sums.
///
/// Quitting at a point keeps the points up to the one before the last that was done. The points come ascending.
/// RuntimeFailure when a density overflows, when the reference cannot be evaluated, and when no node can.
Posterior EvaluatePosterior(const PinnedParameter& pinned, const PosteriorOptions& options, RunState& state,
                            Objective& objective, double& ReferenceF, PosteriorWatch& watch,
                            SharedWork* shared = nullptr);

}  // namespace merlane
