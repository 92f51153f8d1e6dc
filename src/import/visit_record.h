#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// What was counted at a visit, as far as the headings of the columns tell.
enum class Stage { Untold, Eggs, Young };

/// A visit as a record of a data file tells it.
struct VisitRecord {
  int year = 0;
  std::string code;
  int day = 0, hatchDay = 0;
  std::string age;  // a number, "?" or "-?"; empty as long as it is missing and follows from nothing
  int count = 0;
  Stage counted = Stage::Untold;
  std::string countedUnder;                      // the heading that tells it
  bool countsEggs = false, countsYoung = false;  // in columns of theirs
  std::string covariates;                        // their fields, each behind its comma
  int line = 0;                                  // of the row that it comes from

  bool AgeIsKnown() const { return age.back() != '?'; }
};

/// Appends the line of a record, or of a heading with names of covariates.
void AppendRecord(std::string& text, const VisitRecord& visit);

/// A number in at most `width` characters, with as many of its digits as there is room for; `rounded` when those are
/// not all.
struct FieldNumber {
  std::string text;
  bool rounded = false;
};
FieldNumber InWidth(double number, int width);

/// A text flush right in a field: its first characters when it is longer.
std::string FlushRight(std::string_view text, int width);

}  // namespace merlane
