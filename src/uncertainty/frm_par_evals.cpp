#include "uncertainty/frm_par_evals.h"

namespace merlane {

FrmParEvals::FrmParEvals(Desk& d, FrmMain& main) : Form(d, "frmParEvals", "Evaluation of estimates"), main_(main) {
  cmdML.onClick = [this] { Evaluate(evaluateProfile); };
  cmdBP.onClick = [this] { Evaluate(evaluatePosterior); };
  cmdCancel.onClick = [this] { desk.Unload(*this); };
  restsDuringCommands = true;
}

void FrmParEvals::Evaluate(const std::function<void()>& evaluation) {
  desk.Hide(*this);
  evaluation();
}

void FrmParEvals::OnUnload() {
  main_.mnuApplication.enabled = true;
  desk.Show("frmMenu");
}

}  // namespace merlane
