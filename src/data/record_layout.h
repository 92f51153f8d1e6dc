#pragma once

namespace merlane {

/// A field of a text data file's record: its columns, counted from 1. Fields are read by position alone; the column
/// behind each holds a comma, and a line that has something else there is told. Columns are characters where the file
/// is UTF-8, and bytes in any other.
struct RecordField {
  int first = 0, last = 0;

  constexpr int Width() const { return last - first + 1; }
  constexpr RecordField Next(int width) const { return {last + 2, last + 1 + width}; }
};

namespace record {
inline constexpr int Width = 8, CovariateWidth = 12;
inline constexpr int FieldsBeforeCovariates = 6;
inline constexpr int MostCovariates = 50;
inline constexpr RecordField Year{1, Width};
inline constexpr RecordField Code = Year.Next(Width);
inline constexpr RecordField Date = Code.Next(Width);  // day of the year of the count
inline constexpr RecordField HatchDay = Date.Next(Width);
inline constexpr RecordField Age = HatchDay.Next(Width);
inline constexpr RecordField Count = Age.Next(Width);  // eggs or juveniles

constexpr RecordField Covariate(int m) {
  const int first = Count.last + 2 + (m - 1) * (CovariateWidth + 1);
  return {first, first + CovariateWidth - 1};
}

/// Field `n` of a record, from 1: the six of every record, then the covariates.
constexpr RecordField Field(int n) {
  if (n > FieldsBeforeCovariates) return Covariate(n - FieldsBeforeCovariates);
  return {(n - 1) * (Width + 1) + 1, n * (Width + 1) - 1};
}

/// The header of the files that the program writes, without a line end. Covariates have no names there.
inline constexpr const char* Header = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";
}  // namespace record

}  // namespace merlane
