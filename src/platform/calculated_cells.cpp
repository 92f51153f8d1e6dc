#include "platform/calculated_cells.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "platform/cell_dates.h"
#include "platform/compound_document.h"

namespace merlane {
namespace {

/// The kinds of records that are looked at.
enum RecordKind : std::uint16_t {
  Formula = 0x0006,
  DateMode = 0x0022,
  BoundSheet = 0x0085,
  ExtendedFormat = 0x00E0,
  TruthOrError = 0x0205,
  FormulaText = 0x0207,
  NumberFormat = 0x041E,
  Begin = 0x0809
};

constexpr std::uint16_t Version8 = 0x0600;  // of workbooks since 1997

template <class Number>
Number At(std::string_view bytes, std::size_t place) {
  if (place > bytes.size() || bytes.size() - place < sizeof(Number))
    throw RuntimeFailure("it is a workbook that is cut short or damaged");
  Number number;
  std::memcpy(&number, bytes.data() + place, sizeof number);
  return number;
}

std::string ErrorText(std::uint8_t code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    case 0x2A:
      return "#N/A";
    default:
      return "#ERROR";
  }
}

class Stream {
 public:
  explicit Stream(std::string_view bytes) : bytes_(bytes) {}

  std::map<std::string, CellsByPlace> Cells() {
    for (std::size_t at = 0; at + 4 <= bytes_.size();) {
      const auto kind = At<std::uint16_t>(bytes_, at), length = At<std::uint16_t>(bytes_, at + 2);
      if (const auto sheet = sheets_.find(static_cast<std::uint32_t>(at)); sheet != sheets_.end())
        present_ = &cells_[sheet->second];
      Take(kind, bytes_.substr(at + 4, length));
      at += 4 + std::size_t{length};
    }
    return std::move(cells_);
  }

 private:
  void Take(std::uint16_t kind, std::string_view record) {
    switch (kind) {
      case Begin:
        if (present_ == nullptr) isVersion8_ = At<std::uint16_t>(record, 0) == Version8;
        break;
      case DateMode:
        from1904_ = At<std::uint16_t>(record, 0) == 1;
        break;
      case BoundSheet:
        sheets_[At<std::uint32_t>(record, 0)] = Text(record, 6, At<std::uint8_t>(record, 6), 1);
        break;
      case NumberFormat:
        own_[At<std::uint16_t>(record, 0)] = isVersion8_ ? ShownBy(Text(record, 2, At<std::uint16_t>(record, 2), 2))
                                                         : ShownBy(Text(record, 2, At<std::uint8_t>(record, 2), 1));
        break;
      case ExtendedFormat:
        formats_.push_back(At<std::uint16_t>(record, 2));
        break;
      case TruthOrError:
        Put(record, Truth(At<std::uint8_t>(record, 6), At<std::uint8_t>(record, 7) != 0));
        break;
      case Formula:
        TakeFormula(record);
        break;
      case FormulaText:
        if (awaited_ != nullptr) *awaited_ = Text(record, 0, At<std::uint16_t>(record, 0), 2);
        awaited_ = nullptr;
        break;
      default:
        break;
    }
  }

  /// A text of `length` characters, whose length of so many bytes stands at `place`.
  std::string Text(std::string_view record, std::size_t place, std::size_t length, std::size_t lengthBytes) const {
    std::size_t at = place + lengthBytes;
    bool wide = false;
    if (isVersion8_) wide = (At<std::uint8_t>(record, at++) & 1) != 0;
    std::string text;
    for (; length > 0 && at < record.size(); --length, at += wide ? 2 : 1)
      text += Utf8Character(wide ? At<std::uint16_t>(record, at) : At<std::uint8_t>(record, at));
    return text;
  }

  static WorkbookCell Truth(std::uint8_t value, bool isError) {
    if (isError) return ErrorText(value);
    return std::string(value == 0 ? "FALSE" : "TRUE");
  }

  WorkbookCell* Put(std::string_view record, WorkbookCell value) {
    if (present_ == nullptr) return nullptr;
    WorkbookCell& cell = (*present_)[{At<std::uint16_t>(record, 0), At<std::uint16_t>(record, 2)}];
    cell = std::move(value);
    return &cell;
  }

  /// The value of a formula is a number or, where its last bytes are set, of a kind that the first one tells.
  void TakeFormula(std::string_view record) {
    constexpr std::uint8_t IsText = 0, IsTruth = 1, IsError = 2;
    constexpr std::size_t value = 6;
    awaited_ = nullptr;
    if (At<std::uint16_t>(record, value + 6) != 0xFFFF) {
      Put(record, Number(At<double>(record, value), At<std::uint16_t>(record, 4)));
      return;
    }
    const auto kind = At<std::uint8_t>(record, value), what = At<std::uint8_t>(record, value + 2);
    if (kind == IsText)
      awaited_ = Put(record, std::string("="));  // its text follows
    else if (kind == IsTruth || kind == IsError)
      Put(record, Truth(what, kind == IsError));
  }

  WorkbookCell Number(double number, std::uint16_t format) const {
    if (!std::isfinite(number)) return std::string("#NUM!");
    if (format >= formats_.size()) return number;
    const auto own = own_.find(formats_[format]);
    const Shows shows = own == own_.end() ? ShownBy(formats_[format]) : own->second;
    if (shows == Shows::Number) return number;
    return DateText(number, shows, from1904_);
  }

  const std::string_view bytes_;
  std::map<std::uint32_t, std::string> sheets_;  // by where they begin
  std::map<int, Shows> own_;
  std::vector<int> formats_;
  std::map<std::string, CellsByPlace> cells_;
  CellsByPlace* present_ = nullptr;
  WorkbookCell* awaited_ = nullptr;  // a formula's cell whose text comes with a later record
  bool isVersion8_ = false, from1904_ = false;
};

}  // namespace

std::map<std::string, CellsByPlace> CalculatedCells(std::string_view file) {
  const std::string stream = StreamIn(file, {"Workbook", "Book"});
  return Stream(stream).Cells();
}

}  // namespace merlane
