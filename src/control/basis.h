#pragma once

#include <cstdint>
#include <string>

#include "control/run_state.h"

namespace merlane {

/// What a result was computed from. Whoever keeps a result keeps its basis with it and, before the result is used
/// again, compares that with the present one (`Objective::Present`): it is content that is compared, so that nobody who
/// changes the run has to remember what he makes void.
struct Basis {
  std::int64_t reading = 0;  // of the data
  std::int64_t search = 0;   // the minimisation that was begun last
  Array1<double> Value;      // of a fused parameter, that of its group
  Array1<double> Step;       // 0 for a parameter that is not free
  Array1<std::string> Fuse;
  std::string priors;         // what the prior term is made of; empty when there is none
  double constant = 0;        // RunFlags::ObjectiveConstant as it was entered; 0 for that of a sum of squares
  std::string AlgName;        // where it came from, in words alone: the same data may be saved under another name
  std::string besideAlgName;  // what is said beside it, as " (changed since)", where a result is shown by that name

  /// The same data, values, free parameters, fuses and priors: the objective and what the model tells of it are the
  /// same.
  bool SameEstimates(const Basis& other) const;
  /// The same steps, and no minimisation has been begun in between: a search would begin where this one began.
  bool SameSearch(const Basis& other) const;
};

/// The basis of what is computed from this run now, with priors made of `priors`.
Basis BasisOf(const RunState& state, const std::string& priors);

/// What has changed from one basis to the other, as parts of a sentence ("other data have been read, ..."); empty when
/// nothing has.
std::string ChangesBetween(const Basis& then, const Basis& now);

}  // namespace merlane
