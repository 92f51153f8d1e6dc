#pragma once

#include <map>
#include <string>

#include "import/remarks.h"

namespace merlane {

/// Looks at the numbers of a covariate for some that seem to stand for something else: for no value, as -9999 among
/// numbers that are never negative, or 999 among much smaller ones, or for thousands, as 1.234 where every number has
/// three digits behind its point, or for percents, where a spreadsheet shows some of the numbers as such and others
/// not.
class CovariateLook {
 public:
  /// Between commas nobody writes thousands with a point, so that a point is a decimal mark there where all numbers
  /// have one.
  explicit CovariateLook(bool thousandsMayBe) : thousandsMayBe_(thousandsMayBe) {}

  /// Takes the number of a row, how it is written, and what a spreadsheet shows of it.
  void Take(double number, const std::string& text, const std::string& shown, int line);
  /// Says what was seen, of a column of that name.
  void Remark(const std::string& name, Remarks& remarks) const;

 private:
  bool MayBeThousands() const;

  struct Seen {
    int count = 0, line = 0;
  };
  bool thousandsMayBe_;
  std::map<double, Seen> marks_;  // that may stand for no value
  Seen percents_, others_;        // shown as percents, and not
  double leastOfOthers_ = 0, mostOfOthers_ = 0;
  double mostOfWhole_ = 0;  // of numbers without a mark
  int likeThousands_ = 0, otherParts_ = 0;
  std::string exampleOfThousands_;
};

}  // namespace merlane
