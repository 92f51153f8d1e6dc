#pragma once

#include "control/fit_label.h"
#include "forms/desk.h"

namespace merlane {

/// The review of the priors after a fit, which may be edited and saved.
class FrmReviewPriors : public Form {
 public:
  explicit FrmReviewPriors(Desk& d);

  Button cmdSave{*this, "cmdSave", "&Save review as..."};
  FitLabel lblFit{*this};
  Pane rtbReview{*this, "rtbReview"};

  /// Shows the form with this text, of a fit that `words` tell.
  void Open(const std::string& text, std::function<std::string()> words);

 private:
  void Save();
};

}  // namespace merlane
