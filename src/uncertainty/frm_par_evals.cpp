#include "uncertainty/frm_par_evals.h"

namespace merlane {

FrmParEvals::FrmParEvals(Desk& d) : Form(d, "frmParEvals", "Evaluation of estimates") {
  cmdML.onClick = [this] { Evaluate(evaluateProfile); };
  cmdBP.onClick = [this] { Evaluate(evaluatePosterior); };
  cmdCancel.onClick = [this] { desk.Unload(*this); };
}

void FrmParEvals::Evaluate(const std::function<void()>& evaluation) {
  desk.Hide(*this);
  evaluation();
}

void FrmParEvals::OnLoad() { desk.charge.Take(*this, Charge::Resting::ApplicationMenu); }

}  // namespace merlane
