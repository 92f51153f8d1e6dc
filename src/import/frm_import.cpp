#include "import/frm_import.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/data_line.h"
#include "platform/file_kind.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr const char* ChoicesExtension = ".import";
/// What a preview is made of: enough rows to see, and to see soon.
constexpr std::size_t RowsPreviewed = 12;

const std::vector<std::string>& DecimalNames() {
  static const std::vector<std::string> names{"point", "comma"};
  return names;
}

/// The rows of a text up to that many behind its heading.
std::string_view FirstRows(std::string_view text, Delimiter delimiter, std::size_t count) {
  DelimitedRows rows(text, delimiter);
  TextRow row;
  for (std::size_t i = 0; i <= count; ++i)
    if (!rows.Next(row)) return text;
  return text.substr(0, text.size() - rows.Rest().size());
}

/// Whether most of the first lines are divided as a data file in fixed columns is.
bool FitsFixedColumns(std::string_view bytes) {
  constexpr int LinesLookedAt = 200;
  DataLines lines(bytes, IsUtf8(bytes));
  lines.Next();
  int fit = 0, all = 0;
  while (all < LinesLookedAt && lines.Next()) {
    if (lines.Line().IsBlank()) continue;
    ++all;
    if (lines.Line().Misdivided(0).empty()) ++fit;
  }
  return 2 * fit >= all;
}

}  // namespace

FrmImport::FrmImport(Desk& d) : Form(d, "frmImport", "Import data") {
  txtFile.readOnly = true;
  cboEncoding.items = EncodingNames();
  cboDelimiter.items = DelimiterNames();
  cboDecimal.items = DecimalNames();
  cboDates.items = DateOrderNames();
  cboUnknownAge.items = UnknownAgeNames();
  cboRole.items = RoleNames();
  lstColumns.toolTip = "Select a column to say what it is";
  cboUnknownAge.toolTip = "Which visits these are: their ages follow from no hatch day either";
  cmdDone.toolTip = "Write a data file in fixed columns, with which the analysis goes on";
  cmdChoices.toolTip = "Take the choices that were kept with another import, of last year for instance";

  cboEncoding.onChange = [this] { ChooseEncoding(); };
  cboDelimiter.onChange = [this] { ChooseDelimiter(); };
  cboDecimal.onChange = [this] {
    choices_.decimal = cboDecimal.text == DecimalNames()[1] ? ',' : '.';
    ShowChoices();
  };
  chkHeading.onClick = [this] {
    choices_.heading = chkHeading.value;
    ShowChoices();
  };
  cboDates.onChange = [this] { Choose(cboDates, DateOrderNames(), choices_.dates); };
  cboUnknownAge.onChange = [this] { Choose(cboUnknownAge, UnknownAgeNames(), choices_.unknownAge); };
  txtYear.onLeave = [this] { ChooseYear(); };
  lstColumns.onSelect = [this] { ShowColumns(); };
  cboRole.onChange = [this] { ChooseRole(); };
  cmdDone.onClick = [this] { Import(); };
  cmdChoices.onClick = [this] { TakeOtherChoices(); };
  cmdCancel.onClick = [this] { desk.Unload(*this); };
}

bool FrmImport::LooksDelimited(const std::string& path) {
  try {
    const std::string bytes = ReadWholeFile(path);
    const Encoding encoding = ProposedEncoding(bytes);
    if (encoding != Encoding::Utf16 && (!ForeignKind(bytes).empty() || FitsFixedColumns(bytes))) return false;
    constexpr std::size_t LeastColumns = 4;
    return ProposedChoices(bytes).roles.size() >= LeastColumns;
  } catch (const RuntimeFailure&) {
    return false;  // the reading tells it
  }
}

void FrmImport::Open(const std::string& path) {
  std::string bytes = ReadWholeFile(path);
  const std::string kind = ForeignKind(bytes);
  if (!kind.empty() && ProposedEncoding(bytes) != Encoding::Utf16)
    throw RuntimeFailure(fmt::format("{} is {}: save it as a text with commas or semicolons (.csv)", path, kind));
  path_ = path;
  bytes_ = std::move(bytes);
  const std::string kept = DataFile() + ChoicesExtension;
  desk.Load(*this);
  choices_ = ProposedChoices(bytes_);
  text_ = Decoded(bytes_, choices_.encoding);
  try {
    if (std::filesystem::exists(kept)) TakeChoices(kept);
  } catch (const RuntimeFailure& failure) {
    desk.Tell("Import", "What was chosen for this file last time is of no use now", style::Information, failure.what());
  }
  lstColumns.selected = -1;
  ShowChoices();
  desk.Show(*this);
}

void FrmImport::OnUnload() {
  bytes_.clear();
  text_.clear();
}

template <class Choice>
void FrmImport::Choose(const ComboBox& box, const std::vector<std::string>& names, Choice& choice) {
  const int place = PlaceOf(names, box.text);
  if (place >= 0) choice = static_cast<Choice>(place);
  ShowChoices();
}

void FrmImport::ChooseEncoding() {
  const int place = PlaceOf(EncodingNames(), cboEncoding.text);
  if (place >= 0) {
    text_ = Decoded(bytes_, static_cast<Encoding>(place));
    choices_.encoding = static_cast<Encoding>(place);
    lstColumns.selected = -1;
    ProposeColumns(text_, choices_);
  }
  ShowChoices();
}

void FrmImport::ChooseDelimiter() {
  const int place = PlaceOf(DelimiterNames(), cboDelimiter.text);
  if (place >= 0) {
    choices_.delimiter = static_cast<Delimiter>(place);
    lstColumns.selected = -1;
    ProposeColumns(text_, choices_);
  }
  ShowChoices();
}

void FrmImport::ChooseRole() {
  const int place = PlaceOf(RoleNames(), cboRole.text);
  if (place >= 0 && lstColumns.selected >= 0)
    choices_.roles[static_cast<std::size_t>(lstColumns.selected)] = static_cast<Role>(place);
  ShowChoices();
}

void FrmImport::ChooseYear() {
  if (IsNumber(txtYear.text)) choices_.year = StrictInt16(txtYear.text);
  ShowChoices();
}

void FrmImport::TakeOtherChoices() {
  const auto path = desk.AskFile({FileRequest::Kind::Open, "Choices of another import",
                                  "All Files (*.*)|*.*|Choices (*.import)|*.import|", 2, ""});
  if (!path) return;
  TakeChoices(*path);
  lstColumns.selected = -1;
  ShowChoices();
}

void FrmImport::TakeChoices(const std::string& path) {
  const ImportChoices kept = ChoicesIn(ReadWholeFile(path));
  text_ = Decoded(bytes_, kept.encoding);
  choices_ = ForText(kept, text_);
}

void FrmImport::ShowChoices() {
  txtFile.text = path_;
  cboEncoding.text = EncodingNames()[static_cast<std::size_t>(choices_.encoding)];
  cboDelimiter.text = DelimiterNames()[static_cast<std::size_t>(choices_.delimiter)];
  cboDecimal.text = DecimalNames()[choices_.decimal == ',' ? 1 : 0];
  chkHeading.value = choices_.heading;
  cboDates.text = DateOrderNames()[static_cast<std::size_t>(choices_.dates)];
  cboUnknownAge.text = UnknownAgeNames()[static_cast<std::size_t>(choices_.unknownAge)];
  txtYear.text = std::to_string(choices_.year);
  ShowColumns();
  txtPreview.text = Preview();
}

void FrmImport::ShowColumns() {
  const std::vector<std::string> names = ColumnNames(text_, choices_);
  DelimitedRows rows(text_, choices_.delimiter);
  TextRow row;
  if (choices_.heading) rows.Next(row);
  row.fields.clear();
  rows.Next(row);
  lstColumns.items.clear();
  for (std::size_t c = 0; c < choices_.roles.size(); ++c)
    lstColumns.items.push_back(fmt::format("{} (\"{}\"): {}", names[c],
                                           c < row.fields.size() ? Shown(row.fields[c]) : "",
                                           RoleNames()[static_cast<std::size_t>(choices_.roles[c])]));
  const int selected = lstColumns.selected;
  cboRole.enabled = selected >= 0;
  cboRole.text =
      selected < 0 ? "" : RoleNames()[static_cast<std::size_t>(choices_.roles[static_cast<std::size_t>(selected)])];
}

std::string FrmImport::Preview() const {
  try {
    const Imported imported = ImportRows(FirstRows(text_, choices_.delimiter, RowsPreviewed), choices_);
    std::string text = imported.text;
    for (const std::string& remark : imported.remarks) text += remark + "\r\n";
    return text;
  } catch (const RuntimeFailure& failure) {
    return std::string("Not yet: ") + failure.what();
  }
}

std::string FrmImport::DataFile() const {
  const std::string& folder = desk.host.outputFolder;
  return (folder.empty() ? path_ : folder + "/" + std::string(FileName(path_))) + ".dat";
}

void FrmImport::Import() {
  const Imported imported = ImportRows(text_, choices_);
  const std::string file = DataFile();
  if (!MayGoOn(imported) || !MayReplace(file, imported.text)) return;
  desk.Write(file, imported.text);
  choices_.names = ColumnNames(text_, choices_);
  desk.Write(file + ChoicesExtension, ChoicesText(choices_));
  desk.Tell(
      "Import",
      fmt::format("{} records of {} broods were written to\r\n\r\n{}", imported.records, imported.broods, file),
      style::Information,
      fmt::format("{} rows, {} of them left out; {} records sorted to another place\r\nYears {} to {}, {} covariates",
                  imported.rows, imported.leftOut, imported.moved, imported.firstYear, imported.lastYear,
                  imported.covariates));
  desk.Unload(*this);
  onImported(file);
}

bool FrmImport::MayGoOn(const Imported& imported) {
  if (imported.remarkCount == 0) return true;
  std::string details;
  for (const std::string& remark : imported.remarks) details += remark + "\r\n";
  const int more = imported.remarkCount - static_cast<int>(imported.remarks.size());
  if (more > 0) details += fmt::format("and {} more\r\n", more);
  return desk.Ask("Import",
                  fmt::format("Things to look at: {}\r\n\r\nWrite the data file all the same?", imported.remarkCount),
                  style::YesNoQuestion, details) == Answer::Yes;
}

bool FrmImport::MayReplace(const std::string& path, const std::string& text) {
  if (!std::filesystem::exists(path) || ReadWholeFile(path) == text) return true;
  return desk.Ask("Import", path + "\r\n\r\nholds other data. Replace them?", style::YesNoQuestion) == Answer::Yes;
}

}  // namespace merlane
