#include "platform/freexl_omissions.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "platform/cell_dates.h"
#include "platform/compound_document.h"
#include "platform/number_formats.h"

namespace merlane {
namespace {

/// The kinds of records that are looked at.
enum RecordKind : std::uint16_t {
  Formula = 0x0006,
  DateMode = 0x0022,
  Font = 0x0031,
  ColumnInfo = 0x007D,
  BoundSheet = 0x0085,
  ShortNumbers = 0x00BD,
  ExtendedFormat = 0x00E0,
  SharedText = 0x00FD,
  LongNumber = 0x0203,
  OwnText = 0x0204,
  TruthOrError = 0x0205,
  FormulaText = 0x0207,
  RowInfo = 0x0208,
  ShortNumber = 0x027E,
  NumberFormat = 0x041E,
  Begin = 0x0809
};

constexpr std::uint16_t FontIsStruckOut = 0x0008;
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

  std::map<std::string, FreexlOmissions> Omissions() {
    for (std::size_t at = 0; at + 4 <= bytes_.size();) {
      const auto kind = At<std::uint16_t>(bytes_, at), length = At<std::uint16_t>(bytes_, at + 2);
      if (const auto sheet = sheets_.find(static_cast<std::uint32_t>(at)); sheet != sheets_.end())
        present_ = sheet->second;
      Take(kind, bytes_.substr(at + 4, length));
      at += 4 + std::size_t{length};
    }
    return std::move(omissions_);
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
        TakeSheet(record);
        break;
      case NumberFormat:
        own_[At<std::uint16_t>(record, 0)] = isVersion8_ ? Text(record, 2, At<std::uint16_t>(record, 2), 2)
                                                         : Text(record, 2, At<std::uint8_t>(record, 2), 1);
        break;
      case Font:
        fontIsStruck_.push_back((At<std::uint16_t>(record, 2) & FontIsStruckOut) != 0);
        break;
      case ExtendedFormat:
        formats_.push_back(At<std::uint16_t>(record, 2));
        formatIsStruck_.push_back(IsStruck(At<std::uint16_t>(record, 0)));
        break;
      case SharedText:
      case OwnText:
        LookAtStrike(record, At<std::uint16_t>(record, 4));
        break;
      case ColumnInfo:
        TakeColumns(record);
        break;
      case RowInfo:
        TakeRow(record);
        break;
      case LongNumber:
        TakeNumber(record, At<std::uint16_t>(record, 2), At<std::uint16_t>(record, 4), At<double>(record, 6));
        break;
      case ShortNumber:
        TakeNumber(record, At<std::uint16_t>(record, 2), At<std::uint16_t>(record, 4),
                   Short(At<std::uint32_t>(record, 6)));
        break;
      case ShortNumbers:
        TakeShortNumbers(record);
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

  void TakeSheet(std::string_view record) {
    constexpr std::uint8_t StateBits = 3;
    FreexlOmissions& sheet = omissions_[Text(record, 6, At<std::uint8_t>(record, 6), 1)];
    sheet.isHidden = (At<std::uint8_t>(record, 4) & StateBits) != 0;
    sheets_[At<std::uint32_t>(record, 0)] = &sheet;
  }

  /// Fonts are counted from 0, and none has the number 4.
  bool IsStruck(std::uint16_t font) const {
    const std::size_t place = font < 4 ? font : font - std::size_t{1};
    return font != 4 && place < fontIsStruck_.size() && fontIsStruck_[place];
  }

  void LookAtStrike(std::string_view record, std::uint16_t format) {
    if (present_ != nullptr && format < formatIsStruck_.size() && formatIsStruck_[format])
      present_->struckRows.insert(At<std::uint16_t>(record, 0));
  }

  void TakeColumns(std::string_view record) {
    const auto first = At<std::uint16_t>(record, 0), last = At<std::uint16_t>(record, 2);
    const bool isHidden = (At<std::uint16_t>(record, 8) & 1) != 0;
    for (unsigned column = first; isHidden && present_ != nullptr && column <= last; ++column)
      present_->hiddenColumns.insert(column);
  }

  void TakeRow(std::string_view record) {
    constexpr std::uint8_t IsHidden = 0x20;
    if (present_ != nullptr && (At<std::uint8_t>(record, 12) & IsHidden) != 0)
      present_->hiddenRows.insert(At<std::uint16_t>(record, 0));
  }

  /// A number in four bytes: a whole one, or the first bits of a double, and maybe a hundredth of that.
  static double Short(std::uint32_t bits) {
    constexpr std::uint32_t IsHundredth = 1, IsWhole = 2;
    const auto whole = static_cast<std::int32_t>(bits) >> 2;
    const std::uint64_t wide = static_cast<std::uint64_t>(bits & ~3U) << 32;
    double number = 0;
    std::memcpy(&number, &wide, sizeof number);
    if ((bits & IsWhole) != 0) number = whole;
    return (bits & IsHundredth) != 0 ? number / 100 : number;
  }

  void TakeShortNumbers(std::string_view record) {
    constexpr std::size_t First = 4, Each = 6;
    auto column = At<std::uint16_t>(record, 2);
    for (std::size_t at = First; at + Each <= record.size(); at += Each)
      TakeNumber(record, column++, At<std::uint16_t>(record, at), Short(At<std::uint32_t>(record, at + 2)));
  }

  /// A number of the row in which a record begins: keeps what its format shows, or that it is a date.
  void TakeNumber(std::string_view record, unsigned column, std::uint16_t format, double number) {
    if (present_ == nullptr || format >= formats_.size()) return;
    LookAtStrike(record, format);
    const unsigned row = At<std::uint16_t>(record, 0);
    WorkbookCell cell = Number(number, format);
    if (!std::holds_alternative<double>(cell))
      present_->cells[{row, column}] = std::move(cell);
    else if (std::optional<std::string> shown = ShownAs(number, CodeAt(format)))
      present_->shown[row].emplace_back(column, std::move(*shown));
  }

  std::string_view CodeAt(std::uint16_t format) const {
    const auto own = own_.find(formats_[format]);
    return own == own_.end() ? CodeOf(formats_[format]) : std::string_view(own->second);
  }

  WorkbookCell* Put(std::string_view record, WorkbookCell value) {
    if (present_ == nullptr) return nullptr;
    WorkbookCell& cell = present_->cells[{At<std::uint16_t>(record, 0), At<std::uint16_t>(record, 2)}];
    cell = std::move(value);
    return &cell;
  }

  /// The value of a formula is a number or, where its last bytes are set, of a kind that the first one tells.
  void TakeFormula(std::string_view record) {
    constexpr std::uint8_t IsText = 0, IsTruth = 1, IsError = 2;
    constexpr std::size_t value = 6;
    awaited_ = nullptr;
    if (At<std::uint16_t>(record, value + 6) != 0xFFFF) {
      const auto format = At<std::uint16_t>(record, 4);
      const auto number = At<double>(record, value);
      Put(record, Number(number, format));
      TakeNumber(record, At<std::uint16_t>(record, 2), format, number);
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
    const Shows shows = own == own_.end() ? ShownBy(formats_[format]) : ShownBy(own->second);
    if (shows == Shows::Number) return number;
    return DateText(number, shows, from1904_);
  }

  const std::string_view bytes_;
  std::map<std::string, FreexlOmissions> omissions_;
  std::map<std::uint32_t, FreexlOmissions*> sheets_;  // by where they begin
  std::map<int, std::string> own_;                    // codes of formats
  std::vector<int> formats_;
  std::vector<bool> fontIsStruck_, formatIsStruck_;
  FreexlOmissions* present_ = nullptr;
  WorkbookCell* awaited_ = nullptr;  // a formula's cell whose text comes with a later record
  bool isVersion8_ = false, from1904_ = false;
};

}  // namespace

std::map<std::string, FreexlOmissions> FreexlOmissionsOf(std::string_view file) {
  const std::string stream = StreamIn(file, {"Workbook", "Book"});
  return Stream(stream).Omissions();
}

}  // namespace merlane
