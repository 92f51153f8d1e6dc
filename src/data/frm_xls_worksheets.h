#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/desk.h"
#include "platform/workbooks.h"

namespace merlane {

/// The modal choice of a worksheet, and with it the conversion of a workbook into a text data file.
class FrmXlsWorksheets : public Form {
 public:
  explicit FrmXlsWorksheets(Desk& d);

  Label lblSelect{*this, "lblSelect", "Select worksheet to use:"};
  ListBox lstWorksheets{*this, "lstWorksheets"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

  struct Converted {
    std::string TextFileName;
    std::string SheetName;
    std::vector<std::string> changes = {};  // what is written otherwise than it stands in its cell
  };
  /// Reads a workbook, asks for the worksheet and writes it as text "EXCEL_to_TEXT_DataFormat_######.dat" into the
  /// host's output folder, or beside the workbook where the host has none. None when the user cancelled; RuntimeFailure
  /// when the workbook cannot be read or the text cannot be written.
  std::optional<Converted> ConvertWorkbook(const std::string& path);

 protected:
  void OnLoad() override;
  void OnUnload() override;

 private:
  /// Where the text of that workbook is written, with a slash at its end.
  std::string OutputFolder(const std::string& path) const;
  int Choose(const std::vector<Worksheet>& sheets);
  void Accept();
  void Cancel();

  int SheetChoice_ = -1;  // position in the list, from 0; -1 cancelled
};

}  // namespace merlane
