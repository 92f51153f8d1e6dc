#pragma once

#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/remarks.h"
#include "import/visit_record.h"

namespace merlane {

/// An age as its field has it. An age far from hatch, or one of more digits than there is room for, is remarked.
std::string AgeText(double age, int line, Remarks& remarks);

/// What is settled of hatch days and ages when all rows have been read.
class BroodAges {
 public:
  BroodAges(UnknownAge unknownAge, Remarks& remarks) : unknownAge_(unknownAge), remarks_(remarks) {}

  int unknown = 0, leftOut = 0;  // visits whose age follows from nothing: written as such, or left out

  /// Goes through sorted visits: a hatch day that only some rows of a brood tell is that of all its visits, from which
  /// missing ages follow; for those that follow from nothing is done as was chosen.
  void Settle(std::vector<VisitRecord>& visits);

 private:
  using Visits = std::vector<VisitRecord>::iterator;
  void ShareHatchDay(Visits begin, Visits end);
  /// Whether the visit stays.
  bool SettleAge(VisitRecord& visit);

  const UnknownAge unknownAge_;
  Remarks& remarks_;
};

}  // namespace merlane
