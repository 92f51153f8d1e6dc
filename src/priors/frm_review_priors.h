#pragma once

#include "forms/desk.h"

namespace merlane {

/// The review of the priors after a fit, which may be edited and saved.
class FrmReviewPriors : public Form {
 public:
  explicit FrmReviewPriors(Desk& d);

  Button cmdSave{*this, "cmdSave", "&Save review as..."};
  Pane rtbReview{*this, "rtbReview"};

  /// Shows the form with this text.
  void Open(const std::string& text);

 private:
  void Save();
};

}  // namespace merlane
