#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "control/run_state.h"

namespace merlane {

/// The minima that have been found in a session, and of which data. A file of algorithm data does not tell to which
/// data its values were fitted; of those that were fitted here it is known.
class FitsMade {
 public:
  /// The data of a fit: a number that is the same for the same records, and the name of their file.
  struct Data {
    std::uint64_t digest = 0;
    std::string file;
  };

  /// A minimum was found at these estimates.
  void Keep(const AlgorithmData& estimates, Data data);

  /// The file of the data to which these estimates, free parameters and fuses were fitted last, when it was to other
  /// data than these and never to these; empty otherwise. Values need not agree beyond the digits that files keep.
  std::string OtherData(const AlgorithmData& estimates, const Data& data) const;

 private:
  struct Made {
    Array1<double> Value, Step;
    Array1<std::string> Fuse;
    Data data;

    bool IsOf(const AlgorithmData& estimates) const;
  };
  std::vector<Made> made_;
};

}  // namespace merlane
