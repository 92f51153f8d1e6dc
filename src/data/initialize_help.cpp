#include "data/initialize_help.h"

#include <initializer_list>

namespace merlane {
namespace {

std::string Joined(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text.append(line).append("\r\n");
  return text;
}

}  // namespace

std::string ModelHelp() {
  return Joined({
      "I estimate the survival of clutches of eggs and of broods of juveniles from the counts of repeated visits.",
      "",
      "From each visit to the next I predict how many of the eggs or juveniles seen are still alive. Two kinds of "
      "mortality act on them:",
      "- random mortality: each individual dies independently of its nest mates;",
      "- correlated mortality: deaths in a nest are linked, as when a predator finds the whole nest.",
      "",
      "Each kind has a modified Weibull survival function of age, with a rate Alpha and a shape Beta (Beta = 1: the "
      "same mortality every day). Eggs and juveniles have parameters of their own.",
      "A clutch is in the correlated state at laying with probability c_N, a brood at hatch with probability c_B; f_N "
      "and f_B let that share fall with age.",
      "",
      "Counts are binomial; under correlated mortality they may be beta-binomial, with an overdispersion Theta that "
      "may fall with age.",
      "",
      "The survival of juveniles may depend on the expected brood size at hatch, on the hatch date, on up to 50 brood "
      "covariates that you supply, and on the interactions of the first two with each other and with the covariates.",
      "",
      "Where ages are unknown I use the dates of the visits instead, with a constant daily mortality.",
      "",
      "I can also simulate: you choose sizes, ages, hatch days and the rhythm of the visits here, and the mortality in "
      "the algorithm data.",
  });
}

std::string DataFormatHelp() {
  constexpr const char* Columns =
      "Each field has its columns, and is read by its columns alone; the commas between them are there for your eye. A "
      "field must not overflow its columns.";
  return Joined({
      "A data file is plain text with one record (one visit to one clutch or brood) per line.",
      "",
      "The first line is a header. Of it I read only the names of the brood covariates.",
      "",
      Columns,
      "",
      "Columns 1-8: Year.",
      "Columns 10-17: Code, a tag or any other code of the clutch or brood, as you write it.",
      "Columns 19-26: DofY, the day of the year of the count.",
      "Columns 28-35: HatchDay, the hatch day of the year.",
      "Columns 37-44: BroodAge in days: negative before hatch, 0 on the hatch day.",
      "Columns 46-53: #EorJ, the number of eggs or juveniles counted.",
      "Columns 55-66, 68-79, 81-92 and so on, 12 columns each: the brood covariates, up to 50.",
      "",
      "A negative age makes a record of eggs, an age of 0 or more a record of juveniles.",
      "Unknown ages: put a ? in column 44. With a - before it (-?) it is a clutch of eggs of unknown age, with a blank "
      "before it a brood of juveniles of unknown age. There are no other codes for missing values.",
      "A blank number is read as 0. So a blank age makes a brood record of age 0.",
      "",
      "Sort the records by year, then code, then day. Records that follow one another with the same code in the same "
      "year are one brood; a code that returns behind another code is a new brood.",
      "Within a brood the counts must never rise and the ages must always rise: otherwise I stop.",
      "",
      "The covariates of a brood are those of its first record, its hatch day is that of its last.",
      "A record that lacks any of the covariates is skipped. So is a record of a year outside the years you choose.",
      "Censoring eggs (juveniles) skips the records of negative (positive) age; records of the hatch day, age 0, stay.",
      "Covariates are used as they stand (format O) or as standard anomalies (format A): the distance from the mean of "
      "all broods in standard deviations. A covariate that is the same for all broods has no anomaly.",
      "",
      "Note that the program has a limit of 32000 visits to a single brood and 32000 broods per year.",
      "",
      "EXCEL workbooks (.xls): put the columns in the order decribed above, with the field identifiers in the first "
      "row. You choose the worksheet, and I write it to a text file of this format. Codes keep their last 8 "
      "characters, covariates five significant digits.",
      "",
      "Any other table (text with commas, semicolons, tabs or blanks, a workbook .xlsx, dates, columns in another "
      "order, "
      "one row for each nest): press Import..., and I make a data file of it. You see beforehand what becomes of it.",
  });
}

std::string ExampleData() {
  return Joined({
      "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,    Year1995,    Year1996,   Lake_Prod",
      "    1995,  ORCBLX,     161,     172,     -11,       5,           1,           0,      0.6485",
      "    1995,  ORCBLX,     186,     172,      14,       4,           1,           0,      0.6485",
      "    1995,  ORCBLX,     200,     172,      28,       3,           1,           0,      0.6485",
      "    1995,  ORGRNX,     158,     170,     -12,       6,           1,           0,      0.7120",
      "    1995,  ORGRNX,     170,     170,       0,       6,           1,           0,      0.7120",
      "    1995,  ORGRNX,     191,     170,      21,       4,           1,           0,      0.7120",
      "    1996,  BLKORX,     160,     175,     -15,       5,           0,           1,      0.5903",
      "    1996,  BLKORX,     182,     175,       7,       5,           0,           1,      0.5903",
      "    1996,  BLKORX,     205,     175,      30,       2,           0,           1,      0.5903",
      "    1996,  ORCBLX,     163,     176,     -13,       4,           0,           1,      0.6485",
      "    1996,  ORCBLX,     190,     176,      14,       4,           0,           1,      0.6485",
      "    1996,  ORCBLX,     211,     176,      35,       3,           0,           1,      0.6485",
  });
}

}  // namespace merlane
