#include "data/frm_xls_worksheets.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/workbook_conversion.h"

namespace merlane {
namespace {

/// The used range of an empty sheet is one empty cell.
bool HasMoreThanOneCell(const Worksheet& sheet) {
  return !sheet.rows.empty() && sheet.rows.size() * sheet.rows.front().size() > 1;
}

}  // namespace

FrmXlsWorksheets::FrmXlsWorksheets(Desk& d) : Form(d, "frmXLSworksheets", "Read data from EXCEL worksheet") {
  lstWorksheets.toolTip = "Choose which of perhaps several worksheets of data to use for this analysis";
  lstWorksheets.onDoubleClick = [this] { Accept(); };
  cmdOK.onClick = [this] { Accept(); };
  cmdCancel.onClick = [this] { Cancel(); };
}

std::optional<FrmXlsWorksheets::Converted> FrmXlsWorksheets::ConvertWorkbook(const std::string& path) {
  const std::vector<Worksheet> sheets = desk.host.workbooks.Read(path);
  const int choice = Choose(sheets);
  if (choice == -1) return std::nullopt;
  // The list leaves out empty sheets while the number counts them all: behind an empty sheet the choice is off by one.
  const Worksheet& sheet = sheets.at(static_cast<std::size_t>(choice));
  if (sheet.rows.empty()) throw RuntimeFailure("worksheet " + sheet.name + " is empty");
  desk.host.random.BeginNext();
  const double n = std::floor(desk.host.random.Uniform() * 1000000 + 0.5);
  const std::string textFile = OutputFolder(path) + "EXCEL_to_TEXT_DataFormat_" + Format(n, "000000") + ".dat";
  ConvertedSheet converted = BroodDataText(sheet);
  desk.Write(textFile, converted.text);
  return Converted{textFile, sheet.name, std::move(converted.changes)};
}

std::string FrmXlsWorksheets::OutputFolder(const std::string& path) const {
  const std::string& folder = desk.host.outputFolder;
  return folder.empty() ? path.substr(0, path.size() - FileName(path).size()) : folder + "/";
}

int FrmXlsWorksheets::Choose(const std::vector<Worksheet>& sheets) {
  desk.Load(*this);
  lstWorksheets.items.clear();
  lstWorksheets.selected = -1;
  for (const Worksheet& sheet : sheets)
    if (HasMoreThanOneCell(sheet))
      lstWorksheets.items.push_back(
          fmt::format("{} ( {} rows by {} columns )", sheet.name, sheet.rows.size(), sheet.rows.front().size()));
  SheetChoice_ = -1;
  focus = &lstWorksheets;
  desk.Show(*this);
  desk.WaitFor(*this);
  return SheetChoice_;
}

void FrmXlsWorksheets::Accept() {
  if (lstWorksheets.selected == -1) {
    desk.Tell("No worksheet selected", "You must select at least a worksheet or else click on 'Cancel'",
              style::Information);
    return;
  }
  SheetChoice_ = lstWorksheets.selected;
  desk.Unload(*this);
}

void FrmXlsWorksheets::Cancel() {
  SheetChoice_ = -1;
  desk.Unload(*this);
}

void FrmXlsWorksheets::OnLoad() { desk.charge.Take(*this, Charge::Resting::Everything); }

void FrmXlsWorksheets::OnUnload() { lstWorksheets.items.clear(); }

}  // namespace merlane
