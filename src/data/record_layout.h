#pragma once

#include <string_view>

namespace merlane {

/// A field of a text data file's record: its columns, counted from 1. Fields are read by position alone; the column
/// behind each holds a comma, and a line that has something else there is told. Columns are characters where the file
/// is UTF-8, and bytes in any other.
struct RecordField {
  int first = 0, last = 0;

  constexpr int Width() const { return last - first + 1; }
};

namespace record {
inline constexpr int Width = 8, CovariateWidth = 12;
inline constexpr int FieldsBeforeCovariates = 6;
inline constexpr int MostCovariates = 50;

/// Field `n` of a record, from 1: the six of every record, then the covariates.
constexpr RecordField Field(int n) {
  const int narrow = n > FieldsBeforeCovariates ? FieldsBeforeCovariates : n - 1;  // fields before it, by width
  const int first = narrow * (Width + 1) + (n - 1 - narrow) * (CovariateWidth + 1) + 1;
  return {first, first + (n > FieldsBeforeCovariates ? CovariateWidth : Width) - 1};
}
constexpr RecordField Covariate(int m) { return Field(FieldsBeforeCovariates + m); }

inline constexpr RecordField Year = Field(1);
inline constexpr RecordField Code = Field(2);
inline constexpr RecordField Date = Field(3);  // day of the year of the count
inline constexpr RecordField HatchDay = Field(4);
inline constexpr RecordField Age = Field(5);
inline constexpr RecordField Count = Field(6);  // eggs or juveniles

/// The header of the files that the program writes, without a line end. Covariates have no names there.
inline constexpr const char* Header = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";
static_assert(std::string_view(Header).size() == Count.last);
}  // namespace record

}  // namespace merlane
