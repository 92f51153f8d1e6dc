#include "control/frm_edit_vs.h"

#include <cmath>

#include "base/arithmetic.h"
#include "forms/desk.h"

namespace merlane {

FrmEditVS::FrmEditVS(Desk& d, RunState& state, FrmAlgo& editor)
    : Form(d, "frmEditVS", "Edit all parameters"), state_(state), editor_(editor) {
  const auto step = [this](double value) {
    const double fraction = editor_.StepFraction;
    return value == 0 ? fraction : Checked(fraction * value);
  };
  editor_.table.onEditAllValues = [this] { desk.Show(*this); };
  cmdFree.onClick = [this, step] {
    Save();
    EditValues(Walked::FreeParameters, "Edit free parameter values", step);
  };
  cmdProp.onClick = [this, step] {
    Save();
    EditValues(Walked::AllParameters, "Edit all parameter values",
               [step](double value) { return std::fabs(step(value)); });
  };
  cmdNoProp.onClick = [this] { EditValues(Walked::AllParameters, "Edit a parameter value", {}); };
  Change_Fraction.onClick = [this] { editor_.ChangeFraction(); };
  cmdUnFuse.onClick = [this] { editor_.table.UnfuseAll(); };
}

void FrmEditVS::OnLoad() {
  desk.charge.Take(*this, Charge::Resting::Commands);
  const EditMarks& marks = editor_.Marks();
  cmdFree.enabled = cmdProp.enabled = marks.Offered(EditItem::Values) && marks.Offered(EditItem::Steps);
  cmdNoProp.enabled = marks.Offered(EditItem::Values);
  cmdUnFuse.enabled = marks.Offered(EditItem::Fuses);
  desk.Hide(editor_);
}

void FrmEditVS::Save() {
  saveAlg();
  editor_.ShowName();
}

void FrmEditVS::EditValues(Walked walked, const std::string& boxTitle,
                           const std::function<double(double value)>& stepOf) {
  AlgorithmData& a = state_.algorithm;
  editor_.table.Walk(
      boxTitle, "Enter the new value of parameter #", a.Value,
      [&](int i) { return walked == Walked::AllParameters || a.Step(i) != 0; },
      [&](int i, double value) {
        if (stepOf) {
          a.Step(i) = stepOf(value);
          editor_.table.ShowChangedStep(i);
        }
        a.Value(i) = value;
        editor_.table.ShowChangedValue(i);
      });
}

}  // namespace merlane
