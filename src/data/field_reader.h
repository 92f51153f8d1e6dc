#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "data/brood_data.h"
#include "data/data_line.h"
#include "data/reading_report.h"

namespace merlane {

/// Reads the fields of a data file as numbers, leniently, and notes each that is not as it should be.
class FieldReader {
 public:
  /// Notes into the report, which must outlive the reader; nothing unless `notes`.
  FieldReader(ReadingReport& r, bool notes) : report(r), notes_(notes) {}

  double Number(const DataLine& line, RecordField field);
  /// Rounded half to even; RuntimeFailure beyond the range of 16 bits.
  std::int16_t Whole(const DataLine& line, RecordField field) {
    const std::optional<int> plain = line.ReadWhole(field);
    return plain && std::in_range<std::int16_t>(*plain) ? static_cast<std::int16_t>(*plain) : OtherWhole(line, field);
  }
  double Covariate(const DataLine& line, int m);
  /// A count, of which -999 is the mark for none.
  std::int16_t Count(const DataLine& line) {
    const std::int16_t count = Whole(line, record::Count);
    if (count < 0) NoteCount(line, count);
    return count;
  }
  /// A day of the year, or a hatch day, of which 0 stands for none; -999 is `mark`.
  std::int16_t Day(const DataLine& line, RecordField field, const char* mark) {
    constexpr int LastDay = 366;
    const std::int16_t day = Whole(line, field);
    if (day < 1 || day > LastDay) NoteDay(line, field, day, mark);
    return day;
  }
  /// An age that is no unknown one; -999 is the mark for it all the same.
  double Age(const DataLine& line) {
    const std::optional<int> plain = line.ReadWhole(record::Age);
    const bool isUsual = plain && *plain != 0 && *plain != Missing;  // a 0 may have a sign
    return isUsual ? *plain : OtherAge(line);
  }

  /// Notes that a field holds something odd that is read as told.
  void Note(Oddity kind, const DataLine& line, RecordField field, const std::string& readAs);
  /// Notes what is odd beyond a field; `where` gives the words for it.
  template <class Where>
  void Note(Oddity kind, Where where) {
    if (notes_) report.oddities.Add(kind, where);
  }
  /// Notes a line that is not divided by commas where it should be.
  void NoteDivision(const DataLine& line, int covariates);
  /// Notes what stands behind the covariates that are read and those that the heading names.
  void NoteBeyond(const DataLine& line, int covariates);

  ReadingReport& report;

 private:
  std::int16_t OtherWhole(const DataLine& line, RecordField field);
  double OtherAge(const DataLine& line);
  void NoteCount(const DataLine& line, std::int16_t count);
  void NoteDay(const DataLine& line, RecordField field, std::int16_t day, const char* mark);

  const bool notes_;
};

}  // namespace merlane
