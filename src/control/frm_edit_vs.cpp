#include "control/frm_edit_vs.h"

#include <fmt/format.h>

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
  cmdFree.onClick = [this, step] {
    saveAlg();
    EditValues(Walked::FreeParameters, "Edit free parameter values", step);
  };
  cmdProp.onClick = [this, step] {
    saveAlg();
    EditValues(Walked::AllParameters, "Edit all parameter values",
               [step](double value) { return std::fabs(step(value)); });
  };
  cmdNoProp.onClick = [this] { EditValues(Walked::AllParameters, "Edit a parameter value", {}); };
  Change_Fraction.onClick = [this] { editor_.ChangeFraction(); };
  cmdUnFuse.onClick = [this] { editor_.UnfuseAll(); };
}

void FrmEditVS::OnLoad() {
  const EditMarks& marks = editor_.Marks();
  cmdFree.enabled = cmdProp.enabled = marks.Offered(EditItem::Values) && marks.Offered(EditItem::Steps);
  cmdNoProp.enabled = marks.Offered(EditItem::Values);
  cmdUnFuse.enabled = marks.Offered(EditItem::Fuses);
  desk.Hide(editor_);
}

void FrmEditVS::OnUnload() {
  if (editor_.Loaded()) desk.Show(editor_);
}

void FrmEditVS::EditValues(Walked walked, const std::string& boxTitle,
                           const std::function<double(double value)>& stepOf) {
  AlgorithmData& a = state_.algorithm;
  for (int i = 1; i <= a.NPAR; ++i) {
    if (walked == Walked::FreeParameters && a.Step(i) == 0) continue;
    const std::optional<double> number = [&] {
      const FrmAlgo::RowMark mark(editor_, i);
      return editor_.AskNumber(boxTitle, fmt::format("Enter the new value of parameter #{}", i), a.Value(i));
    }();
    if (!number) return;
    if (std::fabs(*number - a.Value(i)) < EditThreshold) continue;
    if (stepOf) {
      a.Step(i) = stepOf(*number);
      editor_.ShowChangedStep(i);
    }
    a.Value(i) = *number;
    editor_.ShowChangedValue(i);
  }
}

}  // namespace merlane
