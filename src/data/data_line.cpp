#include "data/data_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"

namespace merlane {
namespace {

bool OnlyBlanks(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

/// Reads the common field, blanks and a whole number, without a detour; false for anything else.
bool PlainWhole(std::string_view field, double& number) {
  std::size_t i = 0;
  while (i < field.size() && field[i] == ' ') ++i;
  const bool negative = i < field.size() && field[i] == '-';
  if (negative) ++i;
  const std::size_t digits = i;
  int magnitude = 0;
  for (; i < field.size() && field[i] >= '0' && field[i] <= '9' && i - digits < 9; ++i)
    magnitude = magnitude * 10 + (field[i] - '0');
  if (i == digits || i - digits > 8) return false;
  while (i < field.size() && field[i] == ' ') ++i;
  number = negative ? -static_cast<double>(magnitude) : magnitude;
  return i == field.size();
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

DataLine::DataLine(std::string_view text, int number, bool utf8)
    : text_(text), number_(number), wide_(utf8 && !IsAscii(text)) {}

std::string_view DataLine::Text(RecordField field) const {
  return wide_ ? CharacterColumns(text_, field.first, field.last) : Columns(text_, field.first, field.last);
}

bool DataLine::IsBlank() const { return OnlyBlanks(text_); }

bool DataLine::IsBlank(RecordField field) const { return OnlyBlanks(Text(field)); }

DataLine::Reading DataLine::Read(RecordField field) const {
  const std::string_view text = Text(field);
  double number = 0;
  if (PlainWhole(text, number)) return {number, true};
  try {
    return {LenientNumber(text), IsNumber(text)};
  } catch (const RuntimeFailure&) {
    Refuse(field, "is too large a number");
  }
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
  if (rest_.empty()) return false;
  std::size_t end = 0;
  while (end < rest_.size() && rest_[end] != '\n' && rest_[end] != '\r') ++end;
  line_ = rest_.substr(0, end);
  if (end + 1 < rest_.size() && rest_[end] == '\r' && rest_[end + 1] == '\n') ++end;
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  ++number_;
  return true;
}

}  // namespace merlane
