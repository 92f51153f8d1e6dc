#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/desk.h"
#include "import/import_source.h"
#include "import/import_visits.h"
#include "import/imported_file.h"

namespace merlane {

/// The window in which a table becomes a data file: how the file is written, what its columns are, the first records
/// as they will be and what should be looked at. It stands beside the description of the analysis, which stays usable.
class FrmImport : public Form {
 public:
  explicit FrmImport(Desk& d);

  /// Shows the window, reads a file, and proposes how it is to be understood, or as was chosen for it last time. Tells
  /// what cannot be imported, and closes again.
  void Open(const std::string& path);

  /// A data file has been written.
  std::function<void(const std::string& dataFile)> onImported = [](const std::string&) {};

  Label lblFile{*this, "lblFile", "File to import:"};
  TextBox txtFile{*this, "txtFile", ""};
  Label lblSheet{*this, "lblSheet", "Worksheet:"};
  ComboBox cboSheet{*this, "cboSheet", ""};
  Label lblEncoding{*this, "lblEncoding", "Encoding:"};
  ComboBox cboEncoding{*this, "cboEncoding", ""};
  Label lblDelimiter{*this, "lblDelimiter", "Between the fields:"};
  ComboBox cboDelimiter{*this, "cboDelimiter", ""};
  Label lblDecimal{*this, "lblDecimal", "Decimal mark:"};
  ComboBox cboDecimal{*this, "cboDecimal", ""};
  CheckBox chkHeading{*this, "chkHeading", "The first row is a heading"};
  Label lblDates{*this, "lblDates", "Dates:"};
  ComboBox cboDates{*this, "cboDates", ""};
  Label lblUnknownAge{*this, "lblUnknownAge", "Where the age is missing:"};
  ComboBox cboUnknownAge{*this, "cboUnknownAge", ""};
  Label lblYear{*this, "lblYear", "Year, as no column tells it:"};
  TextBox txtYear{*this, "txtYear", ""};
  Label lblProposal{*this, "lblProposal", ""};
  Label lblColumns{*this, "lblColumns", "Columns of the file, and what they are:"};
  Grid grdColumns{*this, "grdColumns"};
  Label lblRole{*this, "lblRole", "The selected column is:"};
  ComboBox cboRole{*this, "cboRole", ""};
  Label lblNests{*this, "lblNests", ""};
  Label lblPreview{*this, "lblPreview", "The first rows as they will be understood:"};
  Pane txtPreview{*this, "txtPreview"};
  Label lblRemarks{*this, "lblRemarks", ""};
  Pane txtRemarks{*this, "txtRemarks"};
  Label lblProgress{*this, "lblProgress", ""};
  Button cmdDone{*this, "cmdDone", "I&mport"};
  Button cmdChoices{*this, "cmdChoices", "C&hoices of another import..."};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 protected:
  bool OnCloseRequest() override;
  void OnUnload() override;

 private:
  /// Reads, with progress shown and the window's Cancel offered meanwhile. False when it was cancelled, or cannot be
  /// read so, which is told.
  bool Read(const char* what, const std::function<void(const ReadingProgress&)>& reading);

  /// The place of what was picked or typed among the items of a box; -1, which is told, when it is none of them.
  int Picked(const Label& label, const ComboBox& box);
  template <class Choice>
  void Choose(const Label& label, const ComboBox& box, Choice& choice);
  /// Reads the file by other choices, for which its columns are proposed anew.
  void ReadAgain(const char* what, const ImportChoices& choices);
  void ChooseSheet();
  void ChooseEncoding();
  void ChooseDelimiter();
  void ChooseDecimal();
  void ChooseRole();
  void ChooseYear();
  void ChooseAnotherImports();
  /// Takes choices and the text of the file by them, and says whence they are.
  void Take(const ImportChoices& choices, const std::string& whence, const ReadingProgress& progress);
  /// Takes choices that were kept with a file, as far as they fit this one; what does not is told with the remarks.
  void TakeKept(const ImportChoices& kept, const std::string& whence, const ReadingProgress& progress);
  /// The choices kept beside the data file; false when there are none of use.
  bool TakeLastTimes(const ReadingProgress& progress);

  /// Writes the choices into the controls, and shows what comes of them.
  void ShowChoices();
  void ShowWhatApplies();
  void ShowColumns();
  void ShowRole();
  void ShowPreview();
  void ShowRemarks(const char* where, const Imported& imported);
  /// The place of the selected column; -1 when none is.
  int SelectedColumn() const { return grdColumns.selectedRow - grdColumns.headingRows; }

  void Import();
  /// What somebody should look at, a line for each: of the choices, and of what comes of them.
  std::string ToLookAt(const Imported& imported) const;
  /// The other sheets with such data, in words.
  std::string ListedSheets() const;

  std::string path_;
  SourceText text_;
  ImportSource source_;
  ImportChoices choices_;
  std::optional<ImportChoices> kept_;     // those that were kept with a file and are used now
  std::vector<std::string> sheetsAlike_;  // that could be imported as well
  ImportedFile file_;
  bool reading_ = false, cancelled_ = false;
};

}  // namespace merlane
