#include "import/frm_import.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/data_line.h"
#include "import/column_proposal.h"
#include "import/heading.h"
#include "import/import_preview.h"
#include "import/kept_choices.h"
#include "import/remarks.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr const char* Title = "Import";
constexpr const char* Proposed = "Proposed from the file";
/// What a preview is made of: enough rows to see, and to see soon.
constexpr int RowsPreviewed = 20;

const std::vector<std::string>& DecimalNames() {
  static const std::vector<std::string> names{"point", "comma"};
  return names;
}

template <class Choice>
const std::string& NameOf(const std::vector<std::string>& names, Choice choice) {
  return names[static_cast<std::size_t>(choice)];
}

}  // namespace

FrmImport::FrmImport(Desk& d) : Form(d, "frmImport", "Import data"), file_(d) {
  txtFile.readOnly = txtRemarks.wraps = true;
  cboEncoding.items = EncodingNames();
  cboDelimiter.items = DelimiterNames();
  cboDecimal.items = DecimalNames();
  cboDates.items = DateOrderNames();
  cboUnknownAge.items = UnknownAgeNames();
  cboRole.items = RoleNames();
  grdColumns.selectsRows = true;
  cmdCancel.offeredWhileBusy = true;
  grdColumns.toolTip = "Select a column to say what it is";
  cboUnknownAge.toolTip =
      "What becomes of visits, or nests, without a brood age whose hatch day is not known either; a number under a "
      "heading of eggs or of young alone is of those";
  cmdDone.toolTip = "Write a data file in fixed columns beside the file, with which the analysis goes on";
  cmdChoices.toolTip = "Take the choices that were kept with another import, of last year for instance";

  cboSheet.onChange = [this] { ChooseSheet(); };
  cboEncoding.onChange = [this] { ChooseEncoding(); };
  cboDelimiter.onChange = [this] { ChooseDelimiter(); };
  cboDecimal.onChange = [this] { ChooseDecimal(); };
  chkHeading.onClick = [this] {
    choices_.heading = chkHeading.value;
    ShowChoices();
  };
  cboDates.onChange = [this] { Choose(lblDates, cboDates, choices_.dates); };
  cboUnknownAge.onChange = [this] { Choose(lblUnknownAge, cboUnknownAge, choices_.unknownAge); };
  txtYear.onLeave = [this] { ChooseYear(); };
  grdColumns.onClick = [this](int, int) { ShowRole(); };
  cboRole.onChange = [this] { ChooseRole(); };
  cmdDone.onClick = [this] { Import(); };
  cmdChoices.onClick = [this] { ChooseAnotherImports(); };
  cmdCancel.onClick = [this] {
    if (reading_)
      cancelled_ = true;
    else
      desk.Unload(*this);
  };
}

bool FrmImport::Read(const char* what, const std::function<void(const ReadingProgress&)>& reading) {
  cancelled_ = false;
  const auto busy = Meanwhile(reading_, true);
  const AtEnd quiet([this] { lblProgress.text.clear(); });
  try {
    reading([&](double share) {
      lblProgress.text = fmt::format("{} {:.0f} %", what, 100 * share);
      desk.Turn();
      if (cancelled_) throw Cancelled{};
    });
    return true;
  } catch (const Cancelled&) {
    return false;
  } catch (const RuntimeFailure& failure) {
    desk.TellFailure(Title, std::string("This cannot be imported so:\r\n\r\n") + failure.what(), style::Exclamation);
    return false;
  }
}

void FrmImport::Open(const std::string& path) {
  desk.Unload(*this);
  desk.Load(*this);
  txtFile.text = path_ = path;
  desk.Show(*this);
  const bool read = Read("Looking at the file...", [this](const ReadingProgress& progress) {
    source_ = ImportSource(path_, progress);
    if (!TakeLastTimes(progress)) Take(source_.Proposed(progress), Proposed, progress);
  });
  if (!read) return desk.Unload(*this);
  ShowChoices();
  focus = &grdColumns;
}

void FrmImport::Take(const ImportChoices& choices, const std::string& whence, const ReadingProgress& progress) {
  SourceText text = source_.Text(choices, progress);
  choices_ = choices;
  text_ = std::move(text);
  choices_.names = ColumnNames(text_.rows, choices_);
  sheetsAlike_ = source_.SheetsAlike(choices_, progress);
  kept_.reset();
  lblProposal.text = whence + ": look at each column, and at the records below.";
  grdColumns.selectedRow = grdColumns.headingRows;
}

void FrmImport::TakeKept(const ImportChoices& kept, const std::string& whence, const ReadingProgress& progress) {
  Take(source_.ForThis(kept, progress), whence, progress);
  kept_ = kept;
}

bool FrmImport::TakeLastTimes(const ReadingProgress& progress) {
  const std::string kept = desk.host.standing(file_.ChoicesFile(path_));
  if (!std::filesystem::exists(kept)) return false;
  try {
    TakeKept(ChoicesIn(ReadWholeFile(kept)), "As it was chosen when this file was imported last", progress);
    return true;
  } catch (const RuntimeFailure& failure) {
    desk.Tell(Title, "What was chosen for this file last time is of no use now", style::Information, failure.what());
    return false;
  }
}

bool FrmImport::OnCloseRequest() { return !reading_; }

void FrmImport::OnUnload() {
  source_ = {};
  text_ = {};
  kept_.reset();
  grdColumns.Resize(0, 0);
  grdColumns.selectedRow = -1;
}

int FrmImport::Picked(const Label& label, const ComboBox& box) {
  const int place = PlaceOf(box.items, box.text);
  if (place < 0) {
    const std::string what = label.text.substr(0, label.text.find(':'));
    desk.TellFailure(Title, fmt::format("\"{}\" is none that \"{}\" can be", box.text, what), style::Information);
  }
  return place;
}

template <class Choice>
void FrmImport::Choose(const Label& label, const ComboBox& box, Choice& choice) {
  if (const int place = Picked(label, box); place >= 0) choice = static_cast<Choice>(place);
  ShowChoices();
}

void FrmImport::ChooseDecimal() {
  if (const int place = Picked(lblDecimal, cboDecimal); place >= 0) choices_.decimal = place == 1 ? ',' : '.';
  ShowChoices();
}

void FrmImport::ReadAgain(const char* what, const ImportChoices& choices) {
  Read(what, [&](const ReadingProgress& progress) {
    ImportChoices proposed = choices;
    ProposeColumns(source_.Text(proposed, progress).rows, proposed);
    Take(proposed, Proposed, progress);
  });
}

void FrmImport::ChooseSheet() {
  ImportChoices choices = choices_;
  choices.sheet = cboSheet.text;
  const bool isAnother = Picked(lblSheet, cboSheet) >= 0 && choices != choices_;
  if (isAnother) ReadAgain("Reading the worksheet...", source_.WithYear(choices));
  ShowChoices();
}

void FrmImport::ChooseEncoding() {
  ImportChoices choices = choices_;
  const int place = Picked(lblEncoding, cboEncoding);
  if (place >= 0) choices.encoding = static_cast<Encoding>(place);
  if (choices != choices_) ReadAgain("Reading the file...", choices);
  ShowChoices();
}

void FrmImport::ChooseDelimiter() {
  ImportChoices choices = choices_;
  const int place = Picked(lblDelimiter, cboDelimiter);
  if (place >= 0) choices.delimiter = static_cast<Delimiter>(place);
  if (choices != choices_) ReadAgain("Dividing the rows...", choices);
  ShowChoices();
}

void FrmImport::ChooseRole() {
  const int place = Picked(lblRole, cboRole);
  const int column = SelectedColumn();
  if (place >= 0 && column >= 0) {
    const Role role = static_cast<Role>(place);
    if (!MayBeMany(role)) std::ranges::replace(choices_.roles, role, Role::Unused);
    choices_.roles[static_cast<std::size_t>(column)] = role;
  }
  ShowChoices();
}

void FrmImport::ChooseYear() {
  try {
    choices_.year = StrictInt16(txtYear.text);
  } catch (const RuntimeFailure&) {
    desk.TellFailure(Title, "A year is a whole number, and \"" + txtYear.text + "\" is none", style::Information);
  }
  ShowChoices();
}

void FrmImport::ChooseAnotherImports() {
  const auto path = desk.AskFile({FileRequest::Kind::Open, "Choices of another import",
                                  "All Files (*.*)|*.*|Choices (*.import)|*.import|", 2, ""});
  if (!path) return;
  Read("Reading the file...", [&](const ReadingProgress& progress) {
    TakeKept(ChoicesIn(ReadWholeFile(*path)), "As it was chosen in " + std::string(FileName(*path)), progress);
    choices_ = source_.WithYear(choices_);
  });
  ShowChoices();
}

void FrmImport::ShowChoices() {
  cboSheet.items = source_.Sheets();
  cboSheet.text = choices_.sheet;
  cboEncoding.text = NameOf(EncodingNames(), choices_.encoding);
  cboDelimiter.text = NameOf(DelimiterNames(), choices_.delimiter);
  cboDecimal.text = DecimalNames()[choices_.decimal == ',' ? 1 : 0];
  chkHeading.value = choices_.heading;
  cboDates.text = NameOf(DateOrderNames(), choices_.dates);
  cboUnknownAge.text = NameOf(UnknownAgeNames(), choices_.unknownAge);
  txtYear.text = std::to_string(choices_.year);
  ShowWhatApplies();
  ShowColumns();
  ShowRole();
  ShowPreview();
}

void FrmImport::ShowWhatApplies() {
  const bool workbook = source_.IsWorkbook(), nests = choices_.OfNests();
  lblSheet.visible = cboSheet.visible = workbook;
  lblEncoding.visible = cboEncoding.visible = lblDelimiter.visible = cboDelimiter.visible = !workbook;
  lblYear.visible = txtYear.visible = !choices_.Has(Role::Year) && !choices_.Has(Role::Date);
  if (nests)
    lblNests.text = fmt::format(
        "Each row is a nest. It becomes visits of {}: on the day when it was found, on the day when it was last known "
        "present and, if it failed, on the day when it was last checked, with none left. {}",
        choices_.Has(Role::Count) ? "the clutch" : "one egg",
        choices_.Has(Role::Age) || choices_.Has(Role::HatchDay) || choices_.Has(Role::HatchDate)
            ? "Its age goes on from visit to visit."
            : "Beside \"Where the age is missing\" stands whether it counts as a clutch or as a brood.");
  lblNests.visible = nests;
}

void FrmImport::ShowColumns() {
  const std::vector<std::string>& names = choices_.names = ColumnNames(text_.rows, choices_);
  const std::vector<std::string> values = FirstValues(text_.rows, choices_);
  const int columns = static_cast<int>(choices_.roles.size());
  grdColumns.Resize(columns + 1, 3);
  for (const auto& [column, heading] : {std::pair(0, "Column"), std::pair(1, "Is"), std::pair(2, "First values")})
    grdColumns.At(0, column).text = heading;
  for (int c = 0; c < columns; ++c) {
    const auto place = static_cast<std::size_t>(c);
    grdColumns.At(c + 1, 0).text = Shown(names[place]);
    grdColumns.At(c + 1, 1).text = NameOf(RoleNames(), choices_.roles[place]);
    grdColumns.At(c + 1, 1).fore = choices_.roles[place] == Role::Unused ? Colour::Gray : Colour::Default;
    grdColumns.At(c + 1, 2).text = values[place];
  }
  if (SelectedColumn() >= columns) grdColumns.selectedRow = -1;
}

void FrmImport::ShowRole() {
  const int column = SelectedColumn();
  cboRole.enabled = column >= 0;
  cboRole.text = column < 0 ? "" : NameOf(RoleNames(), choices_.roles[static_cast<std::size_t>(column)]);
}

void FrmImport::ShowPreview() {
  Imported imported;
  txtPreview.wraps = false;
  try {
    imported = ImportRows(Beginning(text_.rows, choices_, RowsPreviewed), choices_);
    txtPreview.text = imported.text;
  } catch (const RuntimeFailure& failure) {
    txtPreview.wraps = true;
    txtPreview.text =
        fmt::format("Not yet: {}.\r\n\r\nSelect a column above, and choose below it what it is.", failure.what());
  }
  ShowRemarks("these rows", imported);
}

void FrmImport::ShowRemarks(const char* where, const Imported& imported) {
  const std::string toLookAt = ToLookAt(imported);
  txtRemarks.text = toLookAt;
  for (const std::string& meaning : imported.meanings) txtRemarks.text += meaning + "\r\n";
  txtRemarks.visible = !txtRemarks.text.empty();
  lblRemarks.visible = txtRemarks.visible || imported.records > 0;
  lblRemarks.text = !toLookAt.empty() ? fmt::format("To look at in {}:", where)
                                      : fmt::format("Nothing has to be looked at in {}.", where);
}

void FrmImport::Import() {
  Imported imported;
  const auto make = [&](const ReadingProgress& progress) { imported = ImportRows(text_.rows, choices_, progress); };
  if (!Read("Importing...", make)) return;
  ShowRemarks("the whole file", imported);
  const std::string dataFile = file_.DataFile(path_);
  if (!file_.Write(path_, imported, choices_, ToLookAt(imported))) return;
  desk.Unload(*this);
  onImported(dataFile);
}

std::string FrmImport::ListedSheets() const {
  std::string list;
  for (const std::string& sheet : sheetsAlike_)
    list += fmt::format("{}\"{}\"{}", list.empty() ? "" : ", ", OnOneLine(sheet),
                        source_.IsHidden(sheet) ? " (hidden)" : "");
  return list;
}

std::string FrmImport::ToLookAt(const Imported& imported) const {
  std::string list;
  for (const std::string& sentence : text_.toLookAt) list += sentence + "\r\n";
  if (!sheetsAlike_.empty())
    list += fmt::format("the worksheet \"{}\" alone is imported; such data are also in {}\r\n",
                        OnOneLine(choices_.sheet), ListedSheets());
  if (kept_)
    for (const std::string& sentence : WhereKeptDiffer(*kept_, choices_, text_.rows)) list += sentence + "\r\n";
  for (const auto& [visits, unknownAge] : {std::pair(imported.unknownOfEggs, UnknownAge::OfEggs),
                                           std::pair(imported.unknownOfYoung, UnknownAge::OfJuveniles)})
    if (visits > 0)
      list += fmt::format("{} without a brood age or a hatch day: written as {}\r\n", Counted(visits, "visit"),
                          NameOf(UnknownAgeNames(), unknownAge));
  for (const std::string& remark : imported.remarks) list += remark + "\r\n";
  const int more = imported.remarkCount - static_cast<int>(imported.remarks.size());
  return more > 0 ? list + fmt::format("and {} more\r\n", more) : list;
}

}  // namespace merlane
