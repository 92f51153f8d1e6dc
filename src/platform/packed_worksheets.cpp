#include "platform/packed_worksheets.h"

#include <cstring>
#include <utility>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

constexpr const char* Incomplete = "the worksheets came over incomplete";

/// Counts and numbers as they lie in memory, texts behind their lengths.
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
  /// How many sheets, rows or cells follow; each takes a number at least.
  std::size_t TakeCount() {
    const auto count = Take<std::size_t>();
    if (count > (bytes_.size() - at_) / sizeof count) throw RuntimeFailure(Incomplete);
    return count;
  }
  std::string TakeText() {
    const auto length = Take<std::size_t>();
    return std::string(Next(length), length);
  }

 private:
  const char* Next(std::size_t length) {
    if (bytes_.size() - at_ < length) throw RuntimeFailure(Incomplete);
    at_ += length;
    return bytes_.data() + at_ - length;
  }
  std::string bytes_;
  std::size_t at_ = 0;
};

void PutShown(Packed& packed, const std::vector<ShownNumbers>& rows) {
  packed.Put(rows.size());
  for (const ShownNumbers& row : rows) {
    packed.Put(row.size());
    for (const auto& [place, text] : row) {
      packed.Put(place);
      packed.Put(text);
    }
  }
}

std::vector<ShownNumbers> TakeShown(Packed& packed) {
  std::vector<ShownNumbers> rows(packed.TakeCount());
  for (ShownNumbers& row : rows) {
    row.resize(packed.TakeCount());
    for (auto& [place, text] : row) {
      place = packed.Take<std::size_t>();
      text = packed.TakeText();
    }
  }
  return rows;
}

void PutHidden(Packed& packed, const HiddenParts& hidden) {
  packed.Put(std::size_t{hidden.sheet});
  packed.Put(hidden.rows);
  packed.Put(hidden.firstRow);
  packed.Put(hidden.struckRows);
  packed.Put(hidden.firstStruckRow);
  packed.Put(hidden.columns.size());
  for (const int column : hidden.columns) packed.Put(std::size_t(column));
}

HiddenParts TakeHidden(Packed& packed) {
  HiddenParts hidden;
  hidden.sheet = packed.Take<std::size_t>() != 0;
  hidden.rows = packed.Take<int>();
  hidden.firstRow = packed.Take<int>();
  hidden.struckRows = packed.Take<int>();
  hidden.firstStruckRow = packed.Take<int>();
  hidden.columns.resize(packed.TakeCount());
  for (int& column : hidden.columns) column = static_cast<int>(packed.Take<std::size_t>());
  return hidden;
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

}  // namespace

std::string PackWorksheets(const std::vector<Worksheet>& sheets) {
  Packed packed;
  packed.Put(sheets.size());
  for (const Worksheet& sheet : sheets) {
    packed.Put(sheet.name);
    packed.Put(sheet.firstRow);
    packed.Put(sheet.rows.size());
    for (const auto& row : sheet.rows) {
      packed.Put(row.size());
      for (const WorkbookCell& cell : row) {
        packed.Put(cell.index());
        if (const double* number = std::get_if<double>(&cell)) packed.Put(*number);
        if (const std::string* text = std::get_if<std::string>(&cell)) packed.Put(*text);
      }
    }
    PutShown(packed, sheet.shown);
    PutHidden(packed, sheet.hidden);
  }
  return packed.Bytes();
}

std::vector<Worksheet> UnpackWorksheets(std::string bytes) {
  Packed packed(std::move(bytes));
  std::vector<Worksheet> sheets(packed.TakeCount());
  for (Worksheet& sheet : sheets) {
    sheet.name = packed.TakeText();
    sheet.firstRow = packed.Take<unsigned>();
    sheet.rows.resize(packed.TakeCount());
    for (auto& row : sheet.rows) {
      row.resize(packed.TakeCount());
      for (WorkbookCell& cell : row) cell = TakeCell(packed);
    }
    sheet.shown = TakeShown(packed);
    sheet.hidden = TakeHidden(packed);
  }
  return sheets;
}

}  // namespace merlane
