#pragma once

#include <functional>

#include "forms/desk.h"

namespace merlane {

/// The choice between the two ways to judge one parameter. It gives way to the one chosen, and the menu comes back when
/// it closes.
class FrmParEvals : public Form {
 public:
  explicit FrmParEvals(Desk& d);

  /// The likelihood profile and the posterior; each unloads this form when it ends.
  std::function<void()> evaluateProfile;
  std::function<void()> evaluatePosterior;

  Label lblChoice{*this, "lblChoice", "For any free parameter you have the choice to generate:"};
  Button cmdML{*this, "cmdML", "&Maximium likelihood (ML) confidence distributions"};
  Button cmdBP{*this, "cmdBP", "&Bayesian posterior (BP) distributions"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Label lblValid{*this, "lblValid",
                 "Results are valid only if the objective function is the Sum of Squares or the -ln[L]"};
  Label lblEdits{*this, "lblEdits",
                 "These routines can automatically edit your algorithm file so take care not to inadvertently save "
                 "these edits"};
  Label lblLinked{*this, "lblLinked", "Only the lowest ordinal linked parameter can be evaluated"};

 protected:
  void OnLoad() override;

 private:
  void Evaluate(const std::function<void()>& evaluation);
};

}  // namespace merlane
