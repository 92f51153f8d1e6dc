#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/array1.h"
#include "data/initialisation.h"

namespace merlane {

/// No value, in every numeric table.
inline constexpr int Missing = -999;

/// The field data. Visits of all broods stand one after the other in the order year, brood, visit; a brood is a range
/// of visits, a year a range of broods. Columns are counted from 0; the number of a brood within its year, and of a
/// visit within its brood, is its distance from the first of the range plus 1. Result tables have the same shape.
struct BroodData {
  // Visits, one entry each.
  std::vector<std::int16_t> VisitYear;
  std::vector<std::int16_t> VisitDate;   // day of the year of the count
  std::vector<double> VisitAge;          // days relative to hatch, negative before it; Missing when unknown
  std::vector<std::int16_t> VisitStage;  // -1 a clutch record, +1 a brood record, 0 no record
  std::vector<std::int16_t> VisitCount;  // eggs or juveniles; Missing when there is no count

  // Broods, one entry each.
  std::vector<std::string> BroodCode;        // as it stands in the file, up to 8 columns
  std::vector<std::int16_t> HatchDate;       // day of the year, from the brood's last record; 0 when the field is blank
  std::vector<std::uint8_t> ClutchAgeKnown;  // 0 or 1
  std::vector<std::uint8_t> BroodAgeKnown;   // 0 or 1
  std::vector<int> FirstVisit;               // where its visits begin
  std::vector<int> VisitsOf;                 // how many it has
  std::vector<std::int16_t> BroodYear;
  std::vector<double> Covariate;  // NCov values for each brood, from its first record; Missing when it has none

  // Years FirstYear to LastYear, one entry each.
  std::vector<int> FirstBrood;       // where its broods begin
  std::vector<int> BroodsInYear;     // how many it has
  std::vector<int> ClutchesInYear;   // broods with at least one record of stage -1
  std::vector<int> JuvBroodsInYear;  // broods with at least one record of stage +1

  /// False for the gaps in a brood whose records stand apart in an unsorted file: its visits are numbered on over the
  /// records between them. A gap is no record, whatever is listed, written or counted.
  bool HasRecord(std::size_t visit) const { return VisitStage[visit] != 0; }

  /// Whether the other holds the same visits of the same broods.
  bool HasSameRecords(const BroodData& other) const;

  int Visits() const { return static_cast<int>(VisitAge.size()); }
  int Broods() const { return static_cast<int>(FirstVisit.size()); }
  int Years() const { return static_cast<int>(FirstBrood.size()); }
  int YearAt(int yearIndex) const { return FirstYear + yearIndex; }
  int YearIndex(int year) const { return year - FirstYear; }
  /// Number of a brood within its year, from 1.
  int BroodNumber(int brood) const {
    const int year = YearIndex(BroodYear[static_cast<std::size_t>(brood)]);
    return brood - FirstBrood[static_cast<std::size_t>(year)] + 1;
  }
  /// The NCov covariates of a brood, covariate m at [m - 1].
  const double* CovariatesOf(int brood) const {
    return Covariate.data() + static_cast<std::size_t>(brood) * static_cast<std::size_t>(NCov);
  }
  double* CovariatesOf(int brood) {
    return Covariate.data() + static_cast<std::size_t>(brood) * static_cast<std::size_t>(NCov);
  }

  // The choices the data were read with.
  std::string DataFileName;   // path as chosen
  std::string DataBaseName;   // its name without folder and extension
  std::string DataExt;        // its last three characters
  std::string TextFileName;   // the text file that is really read
  std::string SimulatedText;  // the data set that a bootstrap has simulated, as it stands in a file
  std::string SheetName;      // the worksheet a workbook was read from
  bool CensorEggs = false;
  bool CensorJuvs = false;
  std::int16_t NCov = 0;
  std::string CovariateFormat = "O";  // "O" original values, "A" standard anomalies
  std::int16_t InteractionBase = 30;  // 30 + 4 x the number of covariates chosen
  std::int16_t FirstYear = 0, LastYear = 0;
  SimulatorSettings simulator;

  // What the reader found.
  Array1<std::string> CovariateName;        // 1..NCov, from the header
  int MaxBroods = 0;                        // largest number of broods of a year
  int MaxVisits = 0;                        // largest number of visits of a brood
  std::int32_t DistinctCodes = 0;           // brood codes not met in an earlier year
  std::int32_t TotalRecords = 0;            // records accepted
  std::int32_t EggTotal = 0;                // sum of the counts of clutch records
  std::int32_t JuvTotal = 0;                // sum of the counts of brood records
  std::int16_t MinDate = 366, MaxDate = 0;  // rounded outwards to multiples of 5, for plots
  std::int16_t MaxCount = 0;                // rounded up to an even number
  std::int16_t MinAge = 0;                  // rounded down to an even number
  bool AllClutchAgesKnown = true;
  bool AllBroodAgesKnown = true;
  bool CodesAreUtf8 = true;  // those of all broods: columns of a file that has them are characters, not bytes
  bool ReadOK = false;
};

/// Dimensions all tables for `visitsOf`[year][brood] visits and leaves them without values; measures `MaxBroods` and
/// `MaxVisits`. RuntimeFailure when the tables would be too large for a machine.
void AllocateTables(BroodData& data, const std::vector<std::vector<int>>& visitsOf);
/// The same for the visits alone; what is known of the broods stays.
void AllocateVisits(BroodData& data, const std::vector<std::vector<int>>& visitsOf);

/// Leaves the years without visits.
void ForgetVisits(BroodData& data);

}  // namespace merlane
