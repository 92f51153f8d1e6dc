#include "platform/freexl_workbooks.h"

#include <freexl.h>

#include <cstring>

#include "base/runtime_failure.h"
#include "platform/apart.h"

namespace merlane {
namespace {

using Rows = std::vector<std::vector<WorkbookCell>>;

/// An open workbook that closes itself.
class OpenWorkbook {
 public:
  explicit OpenWorkbook(const std::string& path) {
    Check(freexl_open(path.c_str(), &handle_), path);
    unsigned int encrypted = 0;
    if (freexl_get_info(handle_, FREEXL_BIFF_PASSWORD, &encrypted) == FREEXL_OK && encrypted == FREEXL_BIFF_OBFUSCATED)
      throw RuntimeFailure("the workbook " + path + " is encrypted");
  }
  ~OpenWorkbook() { freexl_close(handle_); }
  OpenWorkbook(const OpenWorkbook&) = delete;
  OpenWorkbook& operator=(const OpenWorkbook&) = delete;
  const void* Get() const { return handle_; }

 private:
  static void Check(int code, const std::string& path) {
    if (code != FREEXL_OK)
      throw RuntimeFailure(fmt::format("{} is not a workbook that can be read (reason {})", path, code));
  }
  const void* handle_ = nullptr;
};

WorkbookCell CellAt(const void* handle, unsigned int row, unsigned short column) {
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

/// The smallest rectangle of cells that holds everything on the active sheet.
Rows UsedRange(const void* handle) {
  unsigned int rowCount = 0;
  unsigned short columnCount = 0;
  if (freexl_worksheet_dimensions(handle, &rowCount, &columnCount) != FREEXL_OK)
    throw RuntimeFailure("the size of a worksheet cannot be read");
  // A stray format can make a sheet's dimensions enormous, so the cells are looked through before any are kept.
  unsigned int top = rowCount, bottom = 0;
  unsigned short left = columnCount, right = 0;
  for (unsigned int r = 0; r < rowCount; ++r)
    for (unsigned short c = 0; c < columnCount; ++c) {
      if (IsEmpty(CellAt(handle, r, c))) continue;
      top = std::min(top, r);
      bottom = std::max(bottom, r);
      left = std::min(left, c);
      right = std::max(right, c);
    }
  Rows used;
  for (unsigned int r = top; r < rowCount && r <= bottom; ++r) {
    std::vector<WorkbookCell>& row = used.emplace_back();
    for (unsigned short c = left; c <= right; ++c) row.push_back(CellAt(handle, r, c));
  }
  return used;
}

/// Worksheets as bytes and back: counts and numbers as they lie in memory, texts behind their lengths.
class Packed {
 public:
  Packed() = default;
  explicit Packed(std::string bytes) : bytes_(std::move(bytes)) {}
  const std::string& Bytes() const { return bytes_; }

  template <class Number>
  void Put(Number number) {
    bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  void Put(const std::string& text) {
    Put(text.size());
    bytes_ += text;
  }
  template <class Number>
  Number Take() {
    Number number;
    std::memcpy(&number, Next(sizeof number), sizeof number);
    return number;
  }
  std::string TakeText() {
    const auto length = Take<std::size_t>();
    return std::string(Next(length), length);
  }

 private:
  const char* Next(std::size_t length) {
    if (bytes_.size() - at_ < length) throw RuntimeFailure("the worksheets came over incomplete");
    at_ += length;
    return bytes_.data() + at_ - length;
  }
  std::string bytes_;
  std::size_t at_ = 0;
};

std::string Pack(const std::vector<Worksheet>& sheets) {
  Packed packed;
  packed.Put(sheets.size());
  for (const Worksheet& sheet : sheets) {
    packed.Put(sheet.name);
    packed.Put(sheet.rows.size());
    for (const auto& row : sheet.rows) {
      packed.Put(row.size());
      for (const WorkbookCell& cell : row) {
        packed.Put(cell.index());
        if (const double* number = std::get_if<double>(&cell)) packed.Put(*number);
        if (const std::string* text = std::get_if<std::string>(&cell)) packed.Put(*text);
      }
    }
  }
  return packed.Bytes();
}

WorkbookCell TakeCell(Packed& packed) {
  switch (packed.Take<std::size_t>()) {
    case 1:
      return packed.Take<double>();
    case 2:
      return packed.TakeText();
    default:
      return std::monostate();
  }
}

std::vector<Worksheet> Unpack(std::string bytes) {
  Packed packed(std::move(bytes));
  std::vector<Worksheet> sheets(packed.Take<std::size_t>());
  for (Worksheet& sheet : sheets) {
    sheet.name = packed.TakeText();
    sheet.rows.resize(packed.Take<std::size_t>());
    for (auto& row : sheet.rows) {
      row.resize(packed.Take<std::size_t>());
      for (WorkbookCell& cell : row) cell = TakeCell(packed);
    }
  }
  return sheets;
}

std::vector<Worksheet> ReadHere(const std::string& path) {
  const OpenWorkbook workbook(path);
  unsigned int count = 0;
  if (freexl_get_info(workbook.Get(), FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
    throw RuntimeFailure("the worksheets of " + path + " cannot be counted");
  std::vector<Worksheet> sheets;
  for (unsigned int i = 0; i < count; ++i) {
    const char* name = nullptr;
    if (freexl_get_worksheet_name(workbook.Get(), static_cast<unsigned short>(i), &name) != FREEXL_OK ||
        freexl_select_active_worksheet(workbook.Get(), static_cast<unsigned short>(i)) != FREEXL_OK)
      throw RuntimeFailure(fmt::format("worksheet {} of {} cannot be read", i + 1, path));
    sheets.push_back({name == nullptr ? "" : name, UsedRange(workbook.Get())});
  }
  return sheets;
}

}  // namespace

std::vector<Worksheet> FreexlWorkbooks::Read(const std::string& path) {
  // The library trusts what a damaged file says of itself, and reads beyond its own buffers.
  return Unpack(RunApart([&] { return Pack(ReadHere(path)); }));
}

}  // namespace merlane
