#pragma once

#include <functional>
#include <string>

#include "forms/desk.h"
#include "import/import_visits.h"

namespace merlane {

/// The window in which a delimited text becomes a data file: how the file is written, what its columns are, and the
/// first records as they will be. It stands beside the description of the analysis, which stays usable.
class FrmImport : public Form {
 public:
  explicit FrmImport(Desk& d);

  /// Reads a file, proposes how it is to be understood, or as was chosen for it last time, and shows the window.
  /// RuntimeFailure when the file cannot be read or is no text.
  void Open(const std::string& path);

  /// Whether a file seems to be a delimited text, and no data file in fixed columns.
  static bool LooksDelimited(const std::string& path);

  /// A data file has been written.
  std::function<void(const std::string& dataFile)> onImported = [](const std::string&) {};

  Label lblFile{*this, "lblFile", "File to import:"};
  TextBox txtFile{*this, "txtFile", ""};
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
  Label lblYear{*this, "lblYear", "Year, where no column tells it:"};
  TextBox txtYear{*this, "txtYear", ""};
  Label lblColumns{*this, "lblColumns", "Columns, with what stands in them first, and what they are:"};
  ListBox lstColumns{*this, "lstColumns"};
  Label lblRole{*this, "lblRole", "The selected column is:"};
  ComboBox cboRole{*this, "cboRole", ""};
  Label lblPreview{*this, "lblPreview", "The first records:"};
  Pane txtPreview{*this, "txtPreview"};
  Button cmdDone{*this, "cmdDone", "&Import"};
  Button cmdChoices{*this, "cmdChoices", "C&hoices of another import..."};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 protected:
  void OnUnload() override;

 private:
  /// Takes what was typed or picked: the place of a text among names, or the present one.
  template <class Choice>
  void Choose(const ComboBox& box, const std::vector<std::string>& names, Choice& choice);
  void ChooseEncoding();
  void ChooseDelimiter();
  void ChooseRole();
  void ChooseYear();
  void TakeOtherChoices();
  /// Takes the choices that a file keeps, as far as they fit.
  void TakeChoices(const std::string& path);
  /// Writes the choices into the controls, and shows what comes of them.
  void ShowChoices();
  void ShowColumns();
  std::string Preview() const;
  void Import();
  bool MayGoOn(const Imported& imported);
  bool MayReplace(const std::string& path, const std::string& text);
  /// Where the data file stands, and the choices beside it.
  std::string DataFile() const;

  std::string path_, bytes_, text_;
  ImportChoices choices_;
};

}  // namespace merlane
