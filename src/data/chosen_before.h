#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/initialisation.h"

namespace merlane {

/// What was chosen for data files when they were read last.
class ChosenBefore {
 public:
  /// Keeps it in that file from one run of the program to the next. What cannot be read or written there is forgotten
  /// with the program, and nobody is bothered.
  void KeepIn(const std::string& path);

  /// Years, covariates and censoring of that data file; none when it was never read.
  std::optional<Initialisation> For(const std::string& dataFile) const;
  /// Remembers the choices for their data file.
  void Remember(Initialisation choices);

 private:
  std::string path_;
  std::vector<Initialisation> choices_;  // the last one first
};

}  // namespace merlane
