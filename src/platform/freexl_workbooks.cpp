#include "platform/freexl_workbooks.h"

#include <fmt/format.h>
#include <freexl.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

#include "base/runtime_failure.h"
#include "platform/apart.h"
#include "platform/calculated_cells.h"
#include "platform/file_kind.h"
#include "platform/files.h"
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

/// The active sheet: the smallest rectangle of cells that holds everything. `calculated` are the cells that the library
/// passes over.
Worksheet ActiveSheet(const void* handle, std::string name, const CellsByPlace& calculated) {
  const auto cellAt = [&](unsigned int row, unsigned short column) {
    WorkbookCell cell = FreexlCell(handle, row, column);
    if (!IsEmpty(cell)) return cell;
    const auto found = calculated.find({row, column});
    return found == calculated.end() ? cell : found->second;
  };
  unsigned int rowCount = 0;
  unsigned short columnCount = 0;
  if (freexl_worksheet_dimensions(handle, &rowCount, &columnCount) != FREEXL_OK)
    throw RuntimeFailure("the size of a worksheet cannot be read");
  // A stray format can make a sheet's dimensions enormous, so the cells are looked through before any are kept.
  unsigned int top = rowCount, bottom = 0;
  unsigned short left = columnCount, right = 0;
  for (unsigned int r = 0; r < rowCount; ++r)
    for (unsigned short c = 0; c < columnCount; ++c) {
      if (IsEmpty(cellAt(r, c))) continue;
      top = std::min(top, r);
      bottom = std::max(bottom, r);
      left = std::min(left, c);
      right = std::max(right, c);
    }
  Worksheet sheet{std::move(name), {}, top + 1};
  for (unsigned int r = top; r < rowCount && r <= bottom; ++r) {
    std::vector<WorkbookCell>& row = sheet.rows.emplace_back();
    for (unsigned short c = left; c <= right; ++c) row.push_back(cellAt(r, c));
  }
  return sheet;
}

std::map<std::string, CellsByPlace> CalculatedCellsOf(const std::string& path) {
  const std::string bytes = ReadWholeFile(path, MostBytes);
  if (!IsCompoundDocument(bytes)) return {};  // a workbook of before 1993, as nobody has it any longer
  try {
    return CalculatedCells(bytes);
  } catch (const RuntimeFailure&) {
    throw RuntimeFailure(path + " is a workbook that is cut short or damaged");
  }
}

std::vector<Worksheet> ReadHere(const std::string& path) {
  const OpenWorkbook workbook(path);
  unsigned int count = 0;
  if (freexl_get_info(workbook.Get(), FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
    throw RuntimeFailure("the worksheets of " + path + " cannot be counted");
  const std::map<std::string, CellsByPlace> calculated = CalculatedCellsOf(path);
  std::vector<Worksheet> sheets;
  for (unsigned int i = 0; i < count; ++i) {
    const char* name = nullptr;
    if (freexl_get_worksheet_name(workbook.Get(), static_cast<unsigned short>(i), &name) != FREEXL_OK ||
        freexl_select_active_worksheet(workbook.Get(), static_cast<unsigned short>(i)) != FREEXL_OK)
      throw RuntimeFailure(fmt::format("worksheet {} of {} cannot be read", i + 1, path));
    const std::string sheet = name == nullptr ? "" : name;
    const auto found = calculated.find(sheet);
    sheets.push_back(ActiveSheet(workbook.Get(), sheet, found == calculated.end() ? CellsByPlace() : found->second));
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
