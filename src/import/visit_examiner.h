#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "import/remarks.h"
#include "import/visit_record.h"

namespace merlane {

/// Looks through sorted visits for what the reading of their file will refuse, or what looks like a slip of the pen.
class VisitExaminer {
 public:
  VisitExaminer(bool yearsAreTold, Remarks& remarks) : yearsAreTold_(yearsAreTold), remarks_(remarks) {}

  void Look(const std::vector<VisitRecord>& visits);

 private:
  /// Letters as if written with small ones and without blanks. Accented ones of western Europe have two bytes.
  static std::string Plain(const std::string& code);

  void LookAtCode(const VisitRecord& visit);

  /// Without a column for it, the year is the date's, and a season over a New Year falls in two.
  void LookOverNewYear(const std::vector<VisitRecord>& visits, std::size_t i);

  void LookAtPair(const VisitRecord& before, const VisitRecord& visit);

  const bool yearsAreTold_;
  Remarks& remarks_;
  std::map<std::string, std::string> spelling_;
  std::set<std::pair<int, std::string>> late_;
};

}  // namespace merlane
