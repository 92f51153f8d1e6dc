#include "uncertainty/frm_cov_data.h"

#include <utility>

#include "forms/desk.h"

namespace merlane {

FrmCovData::FrmCovData(Desk& d) : Form(d, "frmCovData", "Covariance results") {
  rtbCovData.readOnly = false;
  cmdStop.onClick = [this] { Stop(); };
}

void FrmCovData::OpenForCalculation() {
  desk.Unload(*this);
  CovInterrupt_ = false;
  cmdStop.offeredWhileBusy = true;
  desk.Show(*this);
}

void FrmCovData::OpenForReport() {
  desk.Show(*this);
  cmdStop.text = "To save these results [restore or minimize this form then] choose 'Save covariance results as...'";
  cmdStop.enabled = true;
  cmdStop.offeredWhileBusy = false;
}

bool FrmCovData::TakeInterrupt() {
  if (!std::exchange(CovInterrupt_, false)) return false;
  cmdStop.enabled = true;
  return true;
}

void FrmCovData::Stop() {
  if (cmdStop.text == InterruptCaption) {
    CovInterrupt_ = true;
    cmdStop.enabled = false;
  } else if (onCloseDisplay) {
    onCloseDisplay();
  }
}

void FrmCovData::OnUnload() {
  cmdStop.text = InterruptCaption;
  if (onClosed) onClosed();
}

}  // namespace merlane
