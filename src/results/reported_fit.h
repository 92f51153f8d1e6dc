#pragma once

#include <optional>
#include <string>

#include "control/basis.h"
#include "control/objective.h"
#include "forms/desk.h"
#include "model/merlane_model.h"

namespace merlane {

/// The fit that the summary on the screen reports. What follows upon a summary, plots and bootstraps, takes its figures
/// from the run and from the model's tables as they are; this knows whether these are still what the summary was
/// written from.
class ReportedFit {
 public:
  ReportedFit(Desk& desk, const Objective& objective, const MerlaneModel& model)
      : desk_(desk), objective_(objective), model_(model) {}

  /// A summary has just been written of the run as it stands.
  void Keep() { kept_ = Present(); }
  /// True while nothing has changed since; otherwise the user is told what has.
  bool Holds();

 private:
  struct Fit {
    Basis basis;
    Array1<double> evaluated;   // the vector to which the model's tables belong
    bool estimated, simulated;  // which of the other tables hold something
  };
  Fit Present() const;
  /// What has changed from the fit that was kept, in words; empty when nothing has.
  std::string Changes(const Fit& now) const;

  Desk& desk_;
  const Objective& objective_;
  const MerlaneModel& model_;
  std::optional<Fit> kept_;
};

}  // namespace merlane
