#pragma once

#include <array>
#include <optional>
#include <string>

#include "import/import_choices.h"
#include "import/remarks.h"

namespace merlane {

/// Looks at dates for those that may be meant as others: with day and month the other way round, of a spreadsheet that
/// understood them so, or counted from another day.
class DateLook {
 public:
  explicit DateLook(const ImportChoices& choices) : order_(choices.dates), ofSheet_(!choices.sheet.empty()) {}

  /// Takes a date of the column of that role, and how it is written.
  void Take(Role role, const std::string& text, DayOfYear date, int line);
  /// Takes a text that is no date in the order that was chosen: the order in which it is one, where that is easily
  /// mistaken for it.
  std::optional<DateOrder> TakeRefused(const std::string& text, int line);
  /// Says what was seen.
  void Remark(Remarks& remarks) const;

 private:
  void TakeInOrder(Role role, const std::string& text, DayOfYear date, int line);
  /// Whether a date is within some weeks of the row's visit, as hatch mostly is.
  bool IsNearVisit(DayOfYear date) const;
  void TakeShortYear(const std::string& text, DayOfYear date, int line);
  void TakeNumber(const std::string& text, DayOfYear date);
  void RemarkOrder(Remarks& remarks) const;
  void RemarkUnclear(Remarks& remarks) const;
  void RemarkShortYears(Remarks& remarks) const;
  void RemarkExchanged(Remarks& remarks) const;

  /// How many there are of a kind, how the first is written and where it stands.
  struct Seen {
    int count = 0, line = 0;
    std::string text;
    void Add(const std::string& example, int where);
  };

  const DateOrder order_;
  const bool ofSheet_;
  std::array<Seen, NumberOfRoles> unclear_;     // would be other days in the other order, by column
  std::array<bool, NumberOfRoles> clear_{};     // of which one at least is a date in the chosen order only
  Seen shortYears_;                             // of two digits
  int firstShortYear_ = 0, lastShortYear_ = 0;  // what they were taken as
  DayOfYear visit_;                             // of the row, or of its nest the day when it was found
  Seen monthBeforePoint_;  // would be other days where the day stands before the month, as with points it mostly does
  Seen otherOrder_;        // dates in the other order only
  int ordered_ = 0;        // whose day and month are told by their order
  Seen mayBeExchanged_;    // that begin with their year
  Seen universal_;         // with a time of another time zone, most often
  Seen numbers_;           // of days that could be counted from another day
  DayOfYear firstNumber_;  // the day of the first of those
};

}  // namespace merlane
