#include "data/data_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"

namespace merlane {
namespace {

bool OnlyBlanks(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

/// A field of eight columns with nothing but blanks in front of a whole number: all columns at once. None of any other.
std::optional<int> RightSetWhole(std::string_view field) {
  std::uint64_t columns = 0;  // the first one lowest
  if (std::endian::native != std::endian::little || field.size() != sizeof columns) return std::nullopt;
  std::memcpy(&columns, field.data(), sizeof columns);
  const int blanks = std::countr_zero(columns ^ 0x2020202020202020) / 8;
  if (blanks == 8) return std::nullopt;
  const bool negative = static_cast<unsigned char>(columns >> 8 * blanks) == '-';
  const int before = blanks + (negative ? 1 : 0);
  if (before == 8) return std::nullopt;
  const std::uint64_t digits = columns >> 8 * before << 8 * before;
  const std::uint64_t zeros = std::uint64_t{0x3030303030303030} >> 8 * before << 8 * before;
  const std::uint64_t values = digits ^ zeros;
  if (((values | (values + 0x0606060606060606)) & 0xF0F0F0F0F0F0F0F0) != 0) return std::nullopt;
  // Neighbours are joined: to numbers of two digits, of four, of eight.
  const std::uint64_t two = (values * 2561) >> 8 & 0x00FF00FF00FF00FF;
  const std::uint64_t four = (two * 6553601) >> 16 & 0x0000FFFF0000FFFF;
  const int magnitude = static_cast<int>((four * 42949672960001) >> 32);
  return negative ? -magnitude : magnitude;
}

/// The number of the common field, blanks and a whole number; none of anything else.
std::optional<int> PlainWhole(std::string_view field) {
  if (const std::optional<int> number = RightSetWhole(field)) return number;
  std::size_t i = 0;
  while (i < field.size() && field[i] == ' ') ++i;
  const bool negative = i < field.size() && field[i] == '-';
  if (negative) ++i;
  const std::size_t digits = i;
  int magnitude = 0;
  for (; i < field.size() && field[i] >= '0' && field[i] <= '9' && i - digits < 9; ++i)
    magnitude = magnitude * 10 + (field[i] - '0');
  if (i == digits || i - digits > 8) return std::nullopt;
  while (i < field.size() && field[i] == ' ') ++i;
  if (i < field.size()) return std::nullopt;
  return negative ? -magnitude : magnitude;
}

}  // namespace

std::string Shown(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    const bool control = length == 1 && (text.front() < ' ' || text.front() == '\x7F');
    if (length == 0 || control)
      shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(text.front()));
    else
      shown += text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown;
}

DataLine::DataLine(std::string_view text, int number, bool wide)
    : text_(text), number_(number), wide_(wide && !IsAscii(text)) {}

std::string_view DataLine::Text(RecordField field) const {
  return wide_ ? CharacterColumns(text_, field.first, field.last) : Columns(text_, field.first, field.last);
}

bool DataLine::IsBlank() const { return OnlyBlanks(text_); }

bool DataLine::IsBlank(RecordField field) const { return OnlyBlanks(Text(field)); }

DataLine::Reading DataLine::Read(RecordField field) const {
  const std::string_view text = Text(field);
  if (const std::optional<int> number = PlainWhole(text)) {
    const bool minus = *number == 0 && text.find('-') != std::string_view::npos;
    return {minus ? -0.0 : *number, true};
  }
  try {
    return {LenientNumber(text), IsNumber(text)};
  } catch (const RuntimeFailure&) {
    Refuse(field, "is too large a number");
  }
}

std::optional<int> DataLine::ReadWhole(RecordField field) const { return PlainWhole(Text(field)); }

bool DataLine::IsDivided(int covariates) const {
  const auto behind = [this](int n) { return static_cast<std::size_t>(record::Field(n).last); };
  const int fields = record::FieldsBeforeCovariates + covariates;
  if (wide_ || text_.size() < behind(fields)) return Misdivided(covariates).empty();
  for (int n = 1; n < fields; ++n)
    if (text_[behind(n)] != ',') return false;
  const char end = text_.size() == behind(fields) ? ' ' : text_[behind(fields)];
  return end == ' ' || end == ',';
}

std::string DataLine::Misdivided(int covariates) const {
  const int fields = record::FieldsBeforeCovariates + covariates;
  for (int n = 1; n <= fields; ++n) {
    const int column = record::Field(n).last + 1;
    const std::string_view found = Text({column, column});
    if (found == "," || (n == fields && (found.empty() || OnlyBlanks(found)))) continue;
    if (found.empty()) {
      const RecordField next = record::Field(n + 1);
      return fmt::format("line {} ends before the field of columns {} to {}", number_, next.first, next.last);
    }
    return fmt::format("line {}, column {}: \"{}\" {}", number_, column, Shown(found),
                       n == fields ? "behind the last field" : "where a comma belongs");
  }
  return "";
}

std::string DataLine::Beyond(int covariates) const {
  constexpr int EndOfLine = std::numeric_limits<int>::max();
  const RecordField field{record::Field(record::FieldsBeforeCovariates + covariates).last + 2, EndOfLine};
  const std::string_view found = Text(field);
  if (found.find_first_not_of(" ,") == std::string_view::npos) return "";
  return fmt::format("line {}, from column {} on: \"{}\"", number_, field.first, Shown(found));
}

std::string DataLine::At(RecordField field) const {
  return fmt::format("line {}, columns {} to {}: \"{}\"", number_, field.first, field.last, Shown(Text(field)));
}

void DataLine::Refuse(RecordField field, std::string_view why) const {
  throw RuntimeFailure(fmt::format("{} {}", At(field), why));
}

bool DataLines::Next() {
  if (next_ >= bytes_.size()) return false;
  // Looked for when it has been passed: in a file of other line ends that is once.
  if (feed_ < next_ || number_ == 0) feed_ = std::min(bytes_.find('\n', next_), bytes_.size());
  const std::string_view upToFeed = bytes_.substr(next_, feed_ - next_);
  const std::size_t length = std::min(upToFeed.find('\r'), upToFeed.size());
  line_ = upToFeed.substr(0, length);
  const bool carriageReturn = length < upToFeed.size();
  next_ += length + (carriageReturn && next_ + length + 1 == feed_ && feed_ < bytes_.size() ? 2 : 1);
  ++number_;
  return true;
}

}  // namespace merlane
