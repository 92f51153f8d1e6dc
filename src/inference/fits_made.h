#pragma once

#include <string>
#include <vector>

#include "control/run_state.h"
#include "inference/provenance.h"

namespace merlane {

/// The minima that have been found in a session, and with which data and priors. A file of algorithm data does not tell
/// with which its values were fitted; of those that were fitted here it is known.
class FitsMade {
 public:
  /// A minimum was found at these estimates.
  void Keep(const AlgorithmData& estimates, Provenance provenance);

  /// The file of the data to which these estimates, free parameters and fuses were fitted last, when it was to other
  /// data than these and never to these; empty otherwise. Values need not agree beyond the digits that files keep.
  std::string OtherData(const AlgorithmData& estimates, const Provenance& present) const;

  /// In words, how the priors under which they were fitted last to these data differ from the present ones, when they
  /// never were fitted under these; empty otherwise. `made` says what is made with the present ones.
  std::string OtherPriors(const AlgorithmData& estimates, const Provenance& present, const std::string& made) const;

 private:
  struct Made {
    Array1<double> Value, Step;
    Array1<std::string> Fuse;
    Provenance provenance;

    bool IsOf(const AlgorithmData& estimates) const;
  };
  std::vector<Made> made_;
};

}  // namespace merlane
