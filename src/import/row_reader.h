#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "import/brood_ends.h"
#include "import/brood_places.h"
#include "import/counted_stage.h"
#include "import/covariate_look.h"
#include "import/parted_codes.h"
#include "import/remarks.h"
#include "import/row_fields.h"
#include "import/row_widths.h"
#include "import/stray_rows.h"
#include "import/visit_record.h"

namespace merlane {

/// Makes visits of rows, and remarks what could not be kept as it stood. The choices have the columns that are
/// required.
class RowReader {
 public:
  RowReader(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingFields,
            Remarks& remarks);

  std::vector<VisitRecord> visits;  // without an age where it is missing

  /// LeftOut when the row gives no visit.
  void Take(const TextRow& row);

  /// What can be said when all rows have been read.
  void RemarkWhole();
  /// What can be said of eggs and young when the ages of visits have been settled.
  void LookAtStages(const std::vector<VisitRecord>& settled);

 private:
  void RemarkUnusedColumns();
  /// An unused column that by its heading could be what another is.
  void RemarkOtherColumn(std::size_t column);
  /// Columns that are not used and seem to be of other visits than the one of the row.
  void RemarkOtherVisits();
  /// Numbers under a heading of dates.
  void RemarkDayNumbers();
  void RemarkYear();
  /// Of how many columns a code is made.
  void RemarkCode();
  /// How many nests failed and how many did not, by the words that tell it.
  void RemarkFates();
  /// Columns of months that are not used, where days could be those of a month.
  void RemarkMonths();

  void TakeVisit(const RowFields& fields, int line);

  /// The year that a column tells; none where there is no such column, or no value.
  std::optional<int> YearOf(const RowFields& fields, int line);
  /// The year for a row that tells none: the one for all rows, where no column tells it.
  int YearTaken(int line);

  /// Year, day, hatch day and age of a visit.
  void SetDays(const RowFields& fields, VisitRecord& visit);

  /// A day from the first of the visit's year on.
  int CountedOn(const VisitRecord& visit, DayOfYear date, const std::string& what);

  /// None for a day of 0, too, which stands for none in a data file.
  std::optional<DayOfYear> HatchOf(const RowFields& fields, int year, int line);

  /// The number beside a date that tells the same day.
  void CompareDay(DayOfYear date, std::optional<DayOfYear> number, const std::string& what, int line);

  /// The age as it stands, or since the hatch day; empty when it is missing and follows from nothing.
  std::string AgeOf(const RowFields& fields, const VisitRecord& visit, bool hatchKnown);

  /// The number of a visit: what stands in all columns with counts.
  int CountOf(const RowFields& fields, int line) const;

  /// A number such as 2.000, which may be meant as two thousand.
  void RemarkThousands(const std::string& text, Role role, int line) const;

  /// Whether a brood of which none is left has fledged or hatched by another column.
  void CompareFate(const RowFields& fields, const VisitRecord& visit);

  std::string Covariates(const RowFields& fields, int line);

  /// A nest from its first visit to its last.
  struct Nest {
    int first = 0, last = 0, end = 0;  // days: found, last known present, last visit
    int eggs = 1;
    Fate fate = Fate::Untold;
    std::optional<double> age;  // on the first day
    std::string unknownAge;     // as it is written, where it is
  };

  /// One row for nests of the same fate: each becomes visits of one egg or, where the row tells a number, of the
  /// clutch.
  void TakeNest(const RowFields& fields, int line);

  /// What a row tells of its nests, whose visits are given the year and the hatch day.
  Nest NestOf(const RowFields& fields, VisitRecord& visit);

  /// The age of a nest when it was found, as it stands or since the hatch day, which the visit is given.
  std::optional<double> AgeOfNest(const RowFields& fields, VisitRecord& visit);

  /// Two nests are never one.
  void MakeUnique(VisitRecord& visit);

  void AddNest(VisitRecord visit, const Nest& nest);

  bool IsDate(const std::string& text) const { return DateIn(text, choices_.dates).has_value(); }

  const ImportChoices& choices_;
  const ColumnsByRole columns_;
  const std::vector<std::string>& names_;
  Remarks& remarks_;
  RowWidths widths_;
  StrayRows stray_;
  BroodPlaces places_;
  PartedCodes parted_;
  BroodEnds ends_;
  std::vector<std::size_t> fateColumns_;   // that may tell what became of a brood
  std::vector<std::size_t> youngColumns_;  // of those, the ones that seem to count young
  DateLook dates_;
  CountedStage stages_;
  std::vector<CovariateLook> covariates_;                    // of those columns, in their order
  int yearsTold_ = 0, yearsTaken_ = 0, firstYearTaken_ = 0;  // rows
  std::set<std::pair<int, std::string>> nests_;              // by year and code
  std::map<std::pair<int, std::string>, int> again_;         // how often a code came once more
  std::map<Fate, std::map<std::string, int>> fates_;         // nests by what became of them and by its words
};

}  // namespace merlane
