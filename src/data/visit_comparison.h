#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "data/brood_data.h"
#include "data/field_reader.h"

namespace merlane {

/// Compares the visits of a data file with one another, while they are stored and when all have been: what does not go
/// together is noted or, where nothing could be concluded from it, refused.
class VisitComparison {
 public:
  /// Of data whose tables have been dimensioned. Keeps references to both.
  VisitComparison(const BroodData& data, FieldReader& fields);

  /// Takes the line of a visit of a brood that has just been stored.
  void Take(const DataLine& line, std::size_t brood, std::size_t visit);
  /// Tests all visits of each brood in their order: days and ages rise, counts never do. FatalDataError for an age or a
  /// count.
  void TestOrder() const;

 private:
  void CompareAge(const DataLine& line, std::size_t brood, std::size_t visit);
  void CompareUnknownAge(const DataLine& line, std::size_t brood, std::size_t visit);
  void CompareCovariates(const DataLine& line, std::size_t brood);
  void TestOrder(int brood, int number, std::size_t visit) const;
  void CompareDays(int brood, std::size_t visit) const;
  void CompareHatchDays(int brood, std::size_t visit) const;
  void CompareAging(int brood, std::size_t visit) const;
  bool TellsHatchDay(std::size_t visit) const;

  const BroodData& data_;
  FieldReader& fields_;
  std::vector<int> lineOf_;                          // where in the file each visit stood
  std::vector<std::int16_t> hatchDayOf_;             // that of each visit's record
  std::vector<std::optional<DataLine>> firstVisit_;  // of each brood, where covariates are read
};

}  // namespace merlane
