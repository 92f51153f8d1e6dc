#pragma once

#include <string>

#include "control/fit_label.h"
#include "forms/desk.h"

namespace merlane {

/// A window with the table of a likelihood profile, a posterior or a prior profile, which may be edited and saved.
class FrmDistributionTable : public Form {
 public:
  /// What the three windows differ in.
  struct Texts {
    const char* form;
    const char* title;
    const char* pane;
    const char* button;
    const char* caption;
    const char* fileTitle;  // of the question for the file
    const char* filter;
    int filterIndex;  // of the files of this kind
    const char* extension;
  };
  static const Texts MaxLike, Bayesian, PriorDists;

  FrmDistributionTable(Desk& d, const Texts& texts);

  /// Shows the window with this table, of a fit that `words` tell.
  void Open(const std::string& table, std::function<std::string()> words);

  Button cmdSave;
  FitLabel lblFit{*this};
  Pane rtbTable;

 private:
  void Save();

  const Texts& texts_;
};

}  // namespace merlane
