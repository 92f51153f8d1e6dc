#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "import/import_choices.h"
#include "import/remarks.h"
#include "import/visit_record.h"

namespace merlane {

/// Looks through sorted visits for what the reading of their file will refuse, or what looks like a slip of the pen or
/// like another column than it was taken for.
class VisitExaminer {
 public:
  /// `names` are those of the columns.
  VisitExaminer(const ImportChoices& choices, const std::vector<std::string>& names, Remarks& remarks);

  /// Looks at codes as they stand in the file.
  void LookAtCodes(const std::vector<VisitRecord>& visits);
  /// Looks at all else.
  void Look(const std::vector<VisitRecord>& visits);

 private:
  void LookAtCode(const VisitRecord& visit);

  /// Codes and days that seem to be something else.
  void LookAtColumns(const std::vector<VisitRecord>& visits);

  /// Broods that are never seen near to hatch, as when hatch days are counted from another day than days.
  void LookAtHatch(const std::vector<VisitRecord>& visits);

  /// Hatch days that may be of a month, or stand for no value, where ages are as they may be.
  void LookAtHatchDays(const std::vector<VisitRecord>& visits);

  /// Years that hardly can be, and those far from all others.
  void LookAtYears(const std::vector<VisitRecord>& visits);

  /// The first visit of a brood.
  void LookAtFirst(const std::vector<VisitRecord>& visits, std::size_t i);

  /// Without a column for it, the year is the date's, and a season over a New Year falls in two.
  void LookOverNewYear(const std::vector<VisitRecord>& visits, std::size_t i);

  /// A brood that nobody has seen for long may be another one of its nest.
  void LookAtPause(const VisitRecord& before, const VisitRecord& visit);

  /// The age of a brood goes on with the days.
  void LookAtAging(const VisitRecord& before, const VisitRecord& visit);

  void LookAtPair(const VisitRecord& before, const VisitRecord& visit);

  void LookAtCovariates(const VisitRecord& before, const VisitRecord& visit);

  const ImportChoices& choices_;
  Remarks& remarks_;
  std::vector<std::string> covariates_;  // their names
  std::map<std::string, std::string> spelling_;
  std::set<std::pair<int, std::string>> late_;
  int refused_ = 0;        // visits that the reading will not take
  int agedOtherwise_ = 0;  // pairs of visits whose ages do not go with their days
};

}  // namespace merlane
