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

  // Visits whose age follows from nothing: written as such, or left out.
  int unknownOfEggs = 0, unknownOfYoung = 0, leftOut = 0;

  /// Goes through sorted visits: a hatch day that only some rows of a brood tell is that of all its visits, from which
  /// missing ages follow. Those that follow from nothing are left out or unknown, as was chosen: unknown of eggs or of
  /// young where the number tells which were counted, else of those that were chosen.
  void Settle(std::vector<VisitRecord>& visits);

 private:
  using Visits = std::vector<VisitRecord>::iterator;
  void ShareHatchDay(Visits begin, Visits end);
  /// Where nothing was counted, in columns of eggs and of young, the brood was last what the visit before tells.
  static void ShareCounted(Visits begin, Visits end);
  /// Whether the visit stays.
  bool SettleAge(VisitRecord& visit);
  /// As one of eggs or of young; remarked where it is not the one that was chosen.
  void WriteUnknown(VisitRecord& visit);

  const UnknownAge unknownAge_;
  Remarks& remarks_;
};

}  // namespace merlane
