#include "platform/freexl_workbooks.h"

#include <fmt/format.h>
#include <freexl.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

#include "base/runtime_failure.h"
#include "platform/apart.h"
#include "platform/file_kind.h"
#include "platform/files.h"
#include "platform/freexl_omissions.h"
#include "platform/packed_worksheets.h"

namespace merlane {
namespace {

constexpr std::int64_t MostBytes = std::int64_t{256} << 20;  // of a workbook; sheets that are full have less

/// Why a workbook could not be opened, in words: the library's reasons are numbers.
std::string WhyUnreadable(const std::string& path) {
  const std::string bytes = ReadWholeFile(path);  // names a file that is not there or cannot be read
  if (bytes.empty()) return path + " is empty";
  const std::string kind = ForeignKind(bytes);
  if (kind.empty()) return path + " is no workbook: it seems to be a text, whose name should end in .dat";
  if (!IsCompoundDocument(bytes) || kind.find("encrypted") != std::string::npos)
    return fmt::format("{} is {}: save it as a workbook of the old kind (.xls), without a password", path, kind);
  return path + " is a workbook that is cut short or damaged";
}

/// An open workbook that closes itself.
class OpenWorkbook {
 public:
  explicit OpenWorkbook(const std::string& path) {
    errno = 0;
    const int opened = freexl_open(path.c_str(), &handle_);
    // Where memory runs out the library may open nothing, and say nothing of it.
    if (opened == FREEXL_INSUFFICIENT_MEMORY || (handle_ == nullptr && errno == ENOMEM)) throw std::bad_alloc();
    if (opened != FREEXL_OK) throw RuntimeFailure(WhyUnreadable(path));
    // Where a password begins, the library stops, and has a workbook without contents.
    unsigned int encrypted = 0;
    if (freexl_get_info(handle_, FREEXL_BIFF_PASSWORD, &encrypted) != FREEXL_OK || encrypted == FREEXL_BIFF_OBFUSCATED)
      throw RuntimeFailure("the workbook " + path + " is encrypted: save it without a password");
  }
  ~OpenWorkbook() { freexl_close(handle_); }
  OpenWorkbook(const OpenWorkbook&) = delete;
  OpenWorkbook& operator=(const OpenWorkbook&) = delete;
  const void* Get() const { return handle_; }

 private:
  const void* handle_ = nullptr;
};

WorkbookCell FreexlCell(const void* handle, unsigned int row, unsigned short column) {
  FreeXL_CellValue cell{};
  if (freexl_get_cell_value(handle, row, column, &cell) != FREEXL_OK) throw RuntimeFailure("a cell cannot be read");
  switch (cell.type) {
    case FREEXL_CELL_INT:
      return static_cast<double>(cell.value.int_value);
    case FREEXL_CELL_DOUBLE:
      return cell.value.double_value;
    case FREEXL_CELL_NULL:
      return std::monostate();
    default:
      return std::string(cell.value.text_value == nullptr ? "" : cell.value.text_value);
  }
}

bool IsEmpty(const WorkbookCell& cell) { return std::holds_alternative<std::monostate>(cell); }

/// The active sheet, with what the library omits of it.
class ActiveSheet {
 public:
  ActiveSheet(const void* handle, const FreexlOmissions& omissions) : handle_(handle), omissions_(omissions) {
    if (freexl_worksheet_dimensions(handle, &rows_, &columns_) != FREEXL_OK)
      throw RuntimeFailure("the size of a worksheet cannot be read");
  }

  /// The smallest rectangle of cells that holds everything.
  Worksheet Read(const std::string& name) {
    FindUsedRange();
    Worksheet sheet{name, {}, top_ + 1, {}, {}};
    sheet.hidden.sheet = omissions_.isHidden;
    for (unsigned int r = top_; r < rows_ && r <= bottom_; ++r) {
      sheet.rows.push_back(Row(r));
      sheet.shown.push_back(ShownIn(r));
      const bool isHidden = omissions_.hiddenRows.contains(r) && !std::ranges::all_of(sheet.rows.back(), IsEmpty);
      if (isHidden && sheet.hidden.rows++ == 0) sheet.hidden.firstRow = static_cast<int>(r) + 1;
      if (omissions_.struckRows.contains(r) && sheet.hidden.struckRows++ == 0)
        sheet.hidden.firstStruckRow = static_cast<int>(r) + 1;
    }
    for (const unsigned column : omissions_.hiddenColumns)
      if (column >= left_ && column <= right_) sheet.hidden.columns.push_back(static_cast<int>(column) + 1);
    return sheet;
  }

 private:
  WorkbookCell CellAt(unsigned int row, unsigned short column) const {
    WorkbookCell cell = FreexlCell(handle_, row, column);
    if (std::holds_alternative<std::string>(cell)) return cell;
    const auto found = omissions_.cells.find({row, column});
    return found == omissions_.cells.end() ? cell : found->second;
  }

  /// A stray format can make a sheet's dimensions enormous, so the cells are looked through before any are kept.
  void FindUsedRange() {
    top_ = rows_;
    left_ = columns_;
    for (unsigned int r = 0; r < rows_; ++r)
      for (unsigned short c = 0; c < columns_; ++c) {
        if (IsEmpty(CellAt(r, c))) continue;
        top_ = std::min(top_, r);
        bottom_ = std::max(bottom_, r);
        left_ = std::min(left_, c);
        right_ = std::max(right_, c);
      }
  }

  std::vector<WorkbookCell> Row(unsigned int r) const {
    std::vector<WorkbookCell> row;
    for (unsigned short c = left_; c <= right_; ++c) row.push_back(CellAt(r, c));
    return row;
  }

  ShownNumbers ShownIn(unsigned int r) const {
    ShownNumbers shown;
    const auto found = omissions_.shown.find(r);
    if (found == omissions_.shown.end()) return shown;
    for (const auto& [column, text] : found->second)
      if (column >= left_ && column <= right_) shown.emplace_back(column - left_, text);
    std::ranges::sort(shown);
    return shown;
  }

  const void* handle_;
  const FreexlOmissions& omissions_;
  unsigned int rows_ = 0, top_ = 0, bottom_ = 0;
  unsigned short columns_ = 0, left_ = 0, right_ = 0;
};

std::map<std::string, FreexlOmissions> OmissionsOf(const std::string& path) {
  const std::string bytes = ReadWholeFile(path, MostBytes);
  if (!IsCompoundDocument(bytes)) return {};  // a workbook of before 1993, as nobody has it any longer
  try {
    return FreexlOmissionsOf(bytes);
  } catch (const RuntimeFailure&) {
    throw RuntimeFailure(path + " is a workbook that is cut short or damaged");
  }
}

std::vector<Worksheet> ReadHere(const std::string& path) {
  const OpenWorkbook workbook(path);
  unsigned int count = 0;
  if (freexl_get_info(workbook.Get(), FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
    throw RuntimeFailure("the worksheets of " + path + " cannot be counted");
  std::map<std::string, FreexlOmissions> omissions = OmissionsOf(path);
  std::vector<Worksheet> sheets;
  for (unsigned int i = 0; i < count; ++i) {
    const char* name = nullptr;
    if (freexl_get_worksheet_name(workbook.Get(), static_cast<unsigned short>(i), &name) != FREEXL_OK ||
        freexl_select_active_worksheet(workbook.Get(), static_cast<unsigned short>(i)) != FREEXL_OK)
      throw RuntimeFailure(fmt::format("worksheet {} of {} cannot be read", i + 1, path));
    const std::string sheet = name == nullptr ? "" : name;
    sheets.push_back(ActiveSheet(workbook.Get(), omissions[sheet]).Read(sheet));
  }
  return sheets;
}

}  // namespace

std::vector<Worksheet> FreexlWorkbooks::Read(const std::string& path, const ReadingProgress& progress) {
  RefuseAllButFiles(path, MostBytes);
  // The library trusts what a damaged file says of itself, and reads beyond its own buffers.
  return UnpackWorksheets(RunApart([&] { return PackWorksheets(ReadHere(path)); }, {}, progress));
}

}  // namespace merlane
