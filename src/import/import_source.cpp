#include "import/import_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "import/column_proposal.h"
#include "import/kept_choices.h"
#include "import/remarks.h"
#include "platform/file_kind.h"
#include "platform/files.h"
#include "platform/freexl_workbooks.h"
#include "platform/xlsx_workbook.h"

namespace merlane {

/// A sheet as a text.
struct SheetRows {
  std::string text;
  HiddenParts hidden;  // nothing where not all rows were asked for
};

class ImportSource::Book {
 public:
  virtual ~Book() = default;
  virtual std::vector<std::string> Sheets() const = 0;
  virtual bool IsHidden(const std::string& sheet) const = 0;
  /// All of a sheet, or at least its first `rows` rows.
  virtual SheetRows Rows(const std::string& sheet, int rows, const ReadingProgress& progress) = 0;

  std::string Text(const std::string& sheet, int rows, const ReadingProgress& progress) {
    return Rows(sheet, rows, progress).text;
  }
};

namespace {

/// Every row of a sheet, and enough rows to see what it is.
constexpr int AllRows = 1'048'576, RowsLookedAt = 250;

class NewBook : public ImportSource::Book {
 public:
  explicit NewBook(const std::string& path) : workbook_(path) {}

  std::vector<std::string> Sheets() const override { return workbook_.Sheets(); }
  bool IsHidden(const std::string& sheet) const override { return workbook_.IsHidden(sheet); }

  SheetRows Rows(const std::string& sheet, int rows, const ReadingProgress& progress) override {
    struct Enough {};
    SheetText text;
    HiddenParts hidden;
    int taken = 0;
    try {
      hidden = workbook_.Read(
          sheet,
          [&](const WorkbookRow& row) {
            text.Add(row.number, row.cells, row.shown);
            if (++taken == rows) throw Enough();
          },
          progress);
    } catch (const Enough&) {
    }
    return {text.Text(), hidden};
  }

 private:
  XlsxWorkbook workbook_;
};

class OldBook : public ImportSource::Book {
 public:
  OldBook(const std::string& path, const ReadingProgress& progress)
      : path_(path), sheets_(FreexlWorkbooks().Read(path, progress)) {}

  std::vector<std::string> Sheets() const override {
    std::vector<std::string> names;
    for (const Worksheet& sheet : sheets_) names.push_back(sheet.name);
    return names;
  }

  bool IsHidden(const std::string& sheet) const override { return Sheet(sheet).hidden.sheet; }

  SheetRows Rows(const std::string& sheet, int, const ReadingProgress&) override {
    const Worksheet& found = Sheet(sheet);
    SheetText text;
    int row = static_cast<int>(found.firstRow);
    for (std::size_t r = 0; r < found.rows.size(); ++r) text.Add(row++, found.rows[r], found.shown[r]);
    return {text.Text(), found.hidden};
  }

 private:
  const Worksheet& Sheet(const std::string& name) const {
    const auto found = std::ranges::find(sheets_, name, &Worksheet::name);
    if (found == sheets_.end())
      throw RuntimeFailure(fmt::format("the workbook {} has no worksheet \"{}\"", path_, name));
    return *found;
  }

  const std::string path_;
  const std::vector<Worksheet> sheets_;
};

/// Whether the columns that an import cannot do without were found.
bool LooksLikeData(const ImportChoices& choices) {
  return choices.OfNests() || (choices.Has(Role::Code) && choices.Has(Role::Count));
}

/// Whether dates stand in texts, whose order all rows must tell: that of a cell with a date is year-month-day.
bool TakesTextsForDates(const ImportChoices& choices) {
  return choices.dates == DateOrder::DayMonthYear || choices.dates == DateOrder::MonthDayYear;
}

ImportChoices ProposedForSheet(const std::string& sheet, std::string_view text) {
  ImportChoices choices;
  choices.sheet = sheet;
  choices.delimiter = SheetDelimiter;
  ProposeColumns(text, choices);
  return choices;
}

/// Takes over how a file is written.
void TakeWriting(const ImportChoices& from, ImportChoices& choices) {
  choices.sheet = from.sheet;
  choices.encoding = from.encoding;
  choices.delimiter = from.delimiter;
  choices.decimal = from.decimal;
  choices.dates = from.dates;
}

/// What a spreadsheet calls a column, from 1: A to Z, AA and so on.
std::string ColumnLetters(int column) {
  constexpr int Letters = 26;
  std::string name;
  for (; column > 0; column = (column - 1) / Letters)
    name.insert(name.begin(), static_cast<char>('A' + (column - 1) % Letters));
  return name;
}

/// What a spreadsheet does not show of a sheet, in sentences.
std::vector<std::string> WhatIsHidden(const std::string& sheet, const HiddenParts& hidden) {
  std::vector<std::string> sentences;
  if (hidden.sheet) sentences.push_back(fmt::format("the worksheet \"{}\" is hidden", OnOneLine(sheet)));
  if (hidden.rows > 0)
    sentences.push_back(fmt::format("{} {} hidden, as by a filter, the first row {}: {} imported as well",
                                    Counted(hidden.rows, "row"), hidden.rows == 1 ? "is" : "are", hidden.firstRow,
                                    hidden.rows == 1 ? "it is" : "they are"));
  if (hidden.struckRows > 0)
    sentences.push_back(fmt::format("{} {} what is struck out, the first row {}: {} imported as well",
                                    Counted(hidden.struckRows, "row"), hidden.struckRows == 1 ? "has" : "have",
                                    hidden.firstStruckRow, hidden.struckRows == 1 ? "it is" : "they are"));
  std::string columns;
  for (const int column : hidden.columns) columns += (columns.empty() ? "" : ", ") + ColumnLetters(column);
  if (!columns.empty())
    sentences.push_back(hidden.columns.size() == 1
                            ? fmt::format("column {} is hidden, and stands among the columns here", columns)
                            : fmt::format("columns {} are hidden, and stand among the columns here", columns));
  return sentences;
}

/// Whether bytes that seem to be of one encoding may as well be of another: they must give the same text, unless nobody
/// can tell the two apart for sure.
bool CanBeMeant(std::string_view bytes, Encoding encoding, Encoding proposed) {
  const auto isOfBytes = [](Encoding each) { return each == Encoding::Latin1 || each == Encoding::MacRoman; };
  if (isOfBytes(encoding) && isOfBytes(proposed)) return true;  // which DoubtfulLetters tells
  try {
    return Decoded(bytes, encoding) == Decoded(bytes, proposed);
  } catch (const RuntimeFailure&) {
    return false;
  }
}

}  // namespace

ImportSource::ImportSource(const std::string& path, const ReadingProgress& progress)
    : path_(path), bytes_(ReadWholeFile(path)) {
  if (bytes_.empty()) throw RuntimeFailure(path + " is empty");
  const std::string kind = ForeignKind(bytes_);
  if (kind.empty() || kind == Utf16Text) return;
  if (kind == NewWorkbook)
    book_ = std::make_shared<NewBook>(path);
  else if (kind == OldWorkbook)
    book_ = std::make_shared<OldBook>(path, progress);
  else
    throw RuntimeFailure(
        fmt::format("{} is {}: save it as an Excel workbook (.xlsx) or as a text with commas or semicolons (.csv), "
                    "without a password",
                    path, kind));
  bytes_ = {};
  sheets_ = book_->Sheets();
}

bool ImportSource::IsHidden(const std::string& sheet) const { return book_ && book_->IsHidden(sheet); }

std::vector<std::string> ImportSource::SheetsToTry() const {
  std::vector<std::string> sheets = sheets_;
  std::stable_partition(sheets.begin(), sheets.end(),
                        [this](const std::string& sheet) { return !book_->IsHidden(sheet); });
  return sheets;
}

ImportChoices ImportSource::Proposed(const ReadingProgress& progress) const {
  if (!book_) return WithYear(ProposedChoices(bytes_));
  std::optional<ImportChoices> first;
  for (const std::string& sheet : SheetsToTry()) {
    const std::string text = book_->Text(sheet, RowsLookedAt, progress);
    ImportChoices choices = ProposedForSheet(sheet, text);
    if (TakesTextsForDates(choices)) choices = ProposedForSheet(sheet, book_->Text(sheet, AllRows, progress));
    if (LooksLikeData(choices)) return WithYear(choices);
    if (!first && !text.empty()) first = choices;
  }
  if (!first) throw RuntimeFailure("the worksheets are empty");
  return WithYear(*first);
}

ImportChoices ImportSource::WithYear(ImportChoices choices) const {
  std::optional<int> year = YearInName(choices.sheet);
  if (!year) year = YearInName(FileName(path_));
  choices.year = year.value_or(choices.year);
  return choices;
}

ImportChoices ImportSource::ForThis(const ImportChoices& kept, const ReadingProgress& progress) const {
  if (!book_) {
    const ImportChoices choices = AsWritten(kept, progress);
    return ForText(choices, Text(choices, progress).rows);
  }
  ImportChoices choices = kept;
  if (std::ranges::find(sheets_, kept.sheet) == sheets_.end()) {
    const ImportChoices proposed = Proposed(progress);
    if (kept.sheet.empty())
      TakeWriting(proposed, choices);
    else
      choices.sheet = proposed.sheet;
  }
  return ForText(choices, book_->Text(choices.sheet, RowsLookedAt, progress));
}

ImportChoices ImportSource::AsWritten(ImportChoices kept, const ReadingProgress& progress) const {
  const ImportChoices proposed = Proposed(progress);
  const auto lacking = [&](const ImportChoices& choices) { return ColumnsLacking(choices, Text(choices).rows).size(); };
  ImportChoices otherwise = kept;
  TakeWriting(proposed, otherwise);
  if (!kept.sheet.empty()) return otherwise;
  if (kept.encoding != proposed.encoding && !CanBeMeant(bytes_, kept.encoding, proposed.encoding))
    kept.encoding = proposed.encoding;
  return kept.delimiter != proposed.delimiter && lacking(otherwise) < lacking(kept) ? otherwise : kept;
}

std::vector<std::string> ImportSource::SheetsAlike(const ImportChoices& choices,
                                                   const ReadingProgress& progress) const {
  std::vector<std::string> alike;
  if (!book_ || !LooksLikeData(choices)) return alike;
  for (const std::string& sheet : sheets_) {
    if (sheet == choices.sheet) continue;
    const std::string text = book_->Text(sheet, RowsLookedAt, progress);
    if (text.empty()) continue;
    if (ColumnsLacking(choices, text).empty() || LooksLikeData(ProposedForSheet(sheet, text))) alike.push_back(sheet);
  }
  return alike;
}

SourceText ImportSource::Text(const ImportChoices& choices, const ReadingProgress& progress) const {
  if (!book_) return {Decoded(bytes_, choices.encoding), DoubtfulLetters(bytes_, choices.encoding)};
  SheetRows sheet = book_->Rows(choices.sheet, AllRows, progress);
  return {std::move(sheet.text), WhatIsHidden(choices.sheet, sheet.hidden)};
}

}  // namespace merlane
