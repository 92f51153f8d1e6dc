#include "results/reported_fit.h"

#include <fmt/format.h>

namespace merlane {

ReportedFit::Fit ReportedFit::Present() const {
  return {objective_.Present(), model_.Evaluated().best.Value, model_.Estimates().estimated,
          model_.simulation.simulated};
}

std::string ReportedFit::Changes(const Fit& now) const {
  if (!kept_) return "nothing has been reported";
  if (!kept_->basis.SameEstimates(now.basis)) return ChangesBetween(kept_->basis, now.basis);
  if (kept_->evaluated != now.evaluated || kept_->estimated != now.estimated || kept_->simulated != now.simulated)
    return "other calculations have been made since";
  return "";
}

bool ReportedFit::Holds() {
  const std::string changes = Changes(Present());
  if (changes.empty()) return true;
  desk_.Tell("Results Summary",
             fmt::format("What the summary reports is not the present fit: {}.\r\n\r\nClose the summary, and make it "
                         "again for the present fit.",
                         changes),
             style::Exclamation);
  return false;
}

}  // namespace merlane
