#pragma once

#include <functional>
#include <string>

#include "control/frm_algo.h"

namespace merlane {

/// The companion of the editor of algorithm data, for editing all values at once. The editor is hidden while it is
/// open.
class FrmEditVS : public Form {
 public:
  FrmEditVS(Desk& d, RunState& state, FrmAlgo& editor);

  /// Asks for a file and saves the algorithm data: before values and steps are changed together.
  std::function<void()> saveAlg;

  Button cmdFree{*this, "cmdFree", "Change &free values and step sizes (proportionately)"};
  Button cmdProp{*this, "cmdProp", "Change &all values and step sizes (proportionately)"};
  Button cmdNoProp{*this, "cmdNoProp", "Change all values but &not their step sizes"};
  Button Change_Fraction{*this, "Change_Fraction", "Change only the step size &proportionality constant"};
  Button cmdUnFuse{*this, "cmdUnFuse", "Unfuse all values"};
  Label lblNote{*this, "lblNote",
                "Note: If a parameter value is set to zero then the step size is set at the chosen proportionality "
                "constant"};

 protected:
  void OnLoad() override;

 private:
  /// Asks for a file and saves the algorithm data; the editor then bears its name.
  void Save();
  enum class Walked { FreeParameters, AllParameters };
  /// Asks for the value of one parameter after the other until it is cancelled. `stepOf` gives the step of a new value;
  /// none: steps stay.
  void EditValues(Walked walked, const std::string& boxTitle, const std::function<double(double value)>& stepOf);

  RunState& state_;
  FrmAlgo& editor_;
};

}  // namespace merlane
