#include "priors/frm_review_priors.h"

#include <utility>

#include "control/save_pane.h"

namespace merlane {

FrmReviewPriors::FrmReviewPriors(Desk& d) : Form(d, "frmReviewPriors", "Review of Bayesian priors") {
  rtbReview.readOnly = false;
  rtbReview.wraps = true;  // its paragraphs; the lines of figures are short
  cmdSave.toolTip = "Saves the (possibly edited) review appearing in the textbox below";
  cmdSave.onClick = [this] { Save(); };
}

void FrmReviewPriors::Open(const std::string& text, std::function<std::string()> words) {
  desk.Load(*this);
  lblFit.Show(std::move(words));
  rtbReview.text = text;
  desk.Show(*this);
}

void FrmReviewPriors::Save() {
  const auto path = desk.AskFile({FileRequest::Kind::Save, "Save review in...", "Review priors files (*.rvp)|*.rvp", 1,
                                  ClockName(desk.host.clock) + ".rvp"});
  if (path) SavePane(desk, rtbReview, *path);
}

}  // namespace merlane
