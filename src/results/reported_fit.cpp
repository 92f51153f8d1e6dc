#include "results/reported_fit.h"

#include <fmt/format.h>

namespace merlane {
namespace {

bool SameFree(const Array1<double>& a, const Array1<double>& b) {
  for (int i = 1; i <= a.Size(); ++i)
    if ((a(i) == 0) != (b(i) == 0)) return false;
  return true;
}

}  // namespace

ReportedFit::Fit ReportedFit::Present() const {
  const AlgorithmData& a = state_.algorithm;
  return {
      a.Value, a.Step, a.Fuse, model_.likelihood.best.Value, model_.estimates.estimated, model_.simulation.simulated};
}

std::string ReportedFit::Changes(const Fit& now) const {
  if (!kept_) return "nothing has been reported";
  if (kept_->Value.Size() != now.Value.Size()) return "another model has been initialized";
  if (kept_->Value != now.Value) return "parameter values have been changed";
  if (!SameFree(kept_->Step, now.Step)) return "other parameters are free";
  if (kept_->Fuse != now.Fuse) return "fuses have been changed";
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
