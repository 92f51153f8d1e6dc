#include "data/field_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

/// A number with a letter inside: nobody writes a day, an age or a count as 1e1 but by a slip.
bool WithExponent(const DataLine& line, RecordField field) {
  return line.Text(field).find_first_of("eE") != std::string_view::npos;
}

}  // namespace

double FieldReader::Number(const DataLine& line, RecordField field) {
  const DataLine::Reading reading = line.Read(field);
  if (!reading.plain || WithExponent(line, field))
    Note(line.IsBlank(field) ? Oddity::Empty : Oddity::NotNumber, line, field, Shortest(reading.value));
  return reading.value;
}

std::int16_t FieldReader::OtherWhole(const DataLine& line, RecordField field) {
  const DataLine::Reading reading = line.Read(field);
  std::int16_t whole = 0;
  try {
    whole = ToInt16(reading.value);
  } catch (const RuntimeFailure&) {
    line.Refuse(field, "is beyond the range of -32768 to 32767");
  }
  if (!reading.plain || WithExponent(line, field))
    Note(line.IsBlank(field) ? Oddity::Empty : Oddity::NotNumber, line, field, std::to_string(whole));
  else if (whole != reading.value)
    Note(Oddity::Rounded, line, field, std::to_string(whole));
  return whole;
}

double FieldReader::Covariate(const DataLine& line, int m) {
  const RecordField field = record::Covariate(m);
  const DataLine::Reading reading = line.Read(field);
  if (!reading.plain) {
    ++report.covariates[static_cast<std::size_t>(m) - 1].notNumbers;
    Note(line.IsBlank(field) ? Oddity::Empty : Oddity::NotNumber, line, field, Shortest(reading.value));
  } else if (reading.value == Missing) {
    Note(Oddity::Mark, line, field, "no value");
  }
  return reading.value;
}

void FieldReader::NoteCount(const DataLine& line, std::int16_t count) {
  if (count == Missing)
    Note(Oddity::Mark, line, record::Count, "no count");
  else
    Note(Oddity::Negative, line, record::Count, std::to_string(count));
}

void FieldReader::NoteDay(const DataLine& line, RecordField field, std::int16_t day, const char* mark) {
  const bool standsForNone = field.first == record::HatchDay.first && day == 0;
  if (day == Missing)
    Note(Oddity::Mark, line, field, mark);
  else if (!standsForNone)
    Note(Oddity::OtherYear, line, field, std::to_string(day));
}

double FieldReader::OtherAge(const DataLine& line) {
  const double age = Number(line, record::Age);
  if (age == Missing) Note(Oddity::Mark, line, record::Age, "an unknown age of a clutch");
  return age;
}

void FieldReader::Note(Oddity kind, const DataLine& line, RecordField field, const std::string& readAs) {
  Note(kind, [&] { return fmt::format("{}, read as {}", line.At(field), readAs); });
}

void FieldReader::NoteDivision(const DataLine& line, int covariates) {
  if (!notes_ || line.IsDivided(covariates)) return;
  Note(Oddity::Separator, [&] { return line.Misdivided(covariates); });
}

void FieldReader::NoteBeyond(const DataLine& line, int covariates) {
  if (!notes_) return;
  const std::string where = line.Beyond(std::max(covariates, report.CovariatesInHeader));
  if (!where.empty()) Note(Oddity::Beyond, [&] { return where; });
}

}  // namespace merlane
