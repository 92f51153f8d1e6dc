#pragma once

#include <cstdint>

#include "data/reading_report.h"

namespace merlane {

/// Reads the fields of a data file as numbers, leniently, and notes each that is not as it should be.
class FieldReader {
 public:
  /// Notes into the report, which must outlive the reader; nothing unless `notes`.
  FieldReader(ReadingReport& r, bool notes) : report(r), notes_(notes) {}

  double Number(const DataLine& line, RecordField field);
  /// Rounded half to even; RuntimeFailure beyond the range of 16 bits.
  std::int16_t Whole(const DataLine& line, RecordField field);
  double Covariate(const DataLine& line, int m);
  /// A count, of which -999 is the mark for none.
  std::int16_t Count(const DataLine& line);
  /// A day of the year, or a hatch day, of which 0 stands for none; -999 is `mark`.
  std::int16_t Day(const DataLine& line, RecordField field, const char* mark);
  /// An age that is no unknown one; -999 is the mark for it all the same.
  double Age(const DataLine& line);

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
  const bool notes_;
};

}  // namespace merlane
