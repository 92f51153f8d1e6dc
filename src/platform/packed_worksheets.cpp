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
  }
  return sheets;
}

}  // namespace merlane
