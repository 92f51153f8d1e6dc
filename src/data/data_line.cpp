#include "data/data_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"

namespace merlane {
namespace {

/// The number of the common field, blanks and a whole number; none of anything else.
std::optional<int> PlainWhole(std::string_view field) {
  if (field.size() == record::Width)
    if (const std::optional<int> number = RightSetWhole(field.data())) return number;
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

std::optional<int> DataLine::ReadOtherWhole(RecordField field) const { return PlainWhole(Text(field)); }

bool DataLine::IsDivided(int covariates) const {
  const auto end = static_cast<std::size_t>(record::Field(record::FieldsBeforeCovariates + covariates).last);
  if (wide_ || text_.size() < end) return Misdivided(covariates).empty();
  constexpr std::size_t EndOfSix = record::Count.last;
  for (std::size_t comma = record::Width; comma < EndOfSix; comma += record::Width + 1)
    if (text_[comma] != ',') return false;
  for (std::size_t comma = EndOfSix; comma < end; comma += record::CovariateWidth + 1)
    if (text_[comma] != ',') return false;
  return text_.size() == end || text_[end] == ' ' || text_[end] == ',';
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

std::string DataLine::BeyondFields(int covariates) const {
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
