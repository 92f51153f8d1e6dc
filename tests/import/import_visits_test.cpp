// Files as people have them, and the data files that become of them.

#include "import/import_visits.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <random>

#include "base/runtime_failure.h"
#include "data/brood_reader.h"
#include "import/column_proposal.h"
#include "import/import_source.h"
#include "platform/files.h"

namespace merlane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;

Imported AsProposed(const std::string& bytes) {
  const ImportChoices choices = ProposedChoices(bytes);
  return ImportRows(Decoded(bytes, choices.encoding), choices);
}

BroodData Read(const std::string& text, int firstYear, int lastYear, int covariates) {
  BroodData data;
  data.FirstYear = static_cast<std::int16_t>(firstYear);
  data.LastYear = static_cast<std::int16_t>(lastYear);
  data.NCov = static_cast<std::int16_t>(covariates);
  ReadingReport report;
  ReadTextData(
      text, false, data, [](const Message&) {}, report);
  return data;
}

const std::string Header = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";

TEST(ImportVisits, ATableInTheOrderOfTheFormatGoesThroughAsItIs) {
  const Imported imported = AsProposed(
      "Year,Code,DofY,HatchDay,BroodAge,#EorJ,Lake_Prod\n1995,ORCBLX,161,172,-11,5,0.6485\n"
      "1995,ORCBLX,186,172,14,4,0.6485\n");
  EXPECT_EQ(imported.text, Header +
                               ",   Lake_Prod\r\n"
                               "    1995,  ORCBLX,     161,     172,     -11,       5,      0.6485\r\n"
                               "    1995,  ORCBLX,     186,     172,      14,       4,      0.6485\r\n");
  EXPECT_EQ(imported.records, 2);
  EXPECT_EQ(imported.broods, 1);
  EXPECT_EQ(imported.covariates, 1);
  EXPECT_EQ(imported.moved, 0);
  EXPECT_THAT(imported.remarks, IsEmpty());
}

TEST(ImportVisits, NoneOfTheOnlyKindThatIsCountedIsToldWhereTheBroodIsOfTheOther) {
  EXPECT_THAT(AsProposed("Nest;Date;Hatch date;Eggs;Vipas\n"
                         "A;2023-05-03;2023-05-13;7;\n"
                         "A;2023-05-14;2023-05-13;0;6\n"
                         "A;2023-05-20;2023-05-13;0;5\n")
                  .remarks,
              Contains(HasSubstr("no eggs are counted, and by its age the brood has hatched: it counts as dead")));
  EXPECT_THAT(AsProposed("Nest;Date;Hatch date;Young\n"
                         "A;2023-05-03;2023-05-13;0\n"
                         "A;2023-05-09;2023-05-13;0\n")
                  .remarks,
              Contains(HasSubstr("no young are counted, and by its age none has hatched: the clutch counts as dead")));
}

TEST(ImportVisits, WhatAColumnOfOneKindMeansOverHatchIsToldAndNotAskedAbout) {
  const Imported both = AsProposed(
      "Nest;Date;Hatch date;Eggs\nA;2023-05-03;2023-05-13;7\nA;2023-05-14;2023-05-13;6\nA;2023-05-20;2023-05-13;5\n");
  EXPECT_THAT(both.remarks, IsEmpty());
  EXPECT_THAT(both.meanings,
              ElementsAre("\"Eggs\" is the number of young, too, behind hatch: 2 visits so, the first in line 3"));
  const Imported once = AsProposed("Nest;Date;Hatch date;Eggs\nA;2023-05-03;;7\nA;2023-05-14;2023-05-13;6\n");
  EXPECT_THAT(once.meanings, ElementsAre(HasSubstr("1 visit so, the first in line 3")));
  EXPECT_THAT(AsProposed("Nest;Date;Hatch date;Count\nA;2023-05-03;2023-05-13;7\nA;2023-05-14;2023-05-13;6\n").meanings,
              IsEmpty());
}

TEST(ImportVisits, ANumberWithAPowerOfTenIsTold) {
  const Imported imported =
      AsProposed("Nest,Date,Hatch date,Young\nA,2023-05-10,2023-05-08,1E1\nA,2023-05-12,2023-05-08,8\n");
  EXPECT_THAT(imported.remarks, Contains(HasSubstr("\"1E1\" was read with a power of ten, as 10")));
}

TEST(ImportVisits, AShareInPercentIsNotProposedAsTheNumber) {
  for (const std::string heading : {"% young", "Young (%)", "Eggs %"}) {
    const ImportChoices choices = ProposedChoices("Nest,Date,Hatch date," + heading +
                                                  "\nA,2023-05-10,2023-05-08,100\nA,2023-05-12,2023-05-08,80\n");
    EXPECT_FALSE(choices.Has(Role::Count)) << heading;
  }
}

TEST(ImportVisits, DatesGiveDaysAndYearsAndHatchDatesGiveAges) {
  const std::string records =
      "    2023,       A,     150,     160,     -10,       5\r\n"
      "    2023,       A,     165,     160,       5,       4\r\n";
  for (const char* text : {"Nest;Date;Hatch date;Eggs\nA;30.5.2023;9.6.2023;5\nA;14.6.2023;9.6.2023;4\n",
                           "nest,date,hatch_date,eggs\nA,2023-05-30,2023-06-09,5\nA,2023-06-14,2023-06-09,4\n",
                           "nest\tdate\thatch date\teggs\nA\t5/30/2023\t6/9/2023\t5\nA\t6/14/2023\t6/9/2023\t4\n"})
    EXPECT_EQ(AsProposed(text).text, Header + "\r\n" + records) << text;
}

TEST(ImportVisits, TheSerialDaysOfASpreadsheetAreDates) {
  const std::string text = "nest,date,eggs,young\nA,45076,5,9\n";
  ImportChoices choices = ProposedChoices(text);
  choices.roles = {Role::Code, Role::Date, Role::Count, Role::Unused};
  choices.dates = DateOrder::SerialDays;
  EXPECT_EQ(ImportRows(text, choices).text, Header + "\r\n    2023,       A,     150,       0,      -?,       5\r\n");
}

TEST(ImportVisits, RowsAreSortedByYearCodeAndDay) {
  const Imported imported =
      AsProposed("Year,Code,Day,Age,Count\n1996,A,1,1,1\n1995,B,9,1,1\n1995,A,8,2,3\n1995,A,7,1,4\n");
  EXPECT_EQ(imported.text, Header +
                               "\r\n"
                               "    1995,       A,       7,       0,       1,       4\r\n"
                               "    1995,       A,       8,       0,       2,       3\r\n"
                               "    1995,       B,       9,       0,       1,       1\r\n"
                               "    1996,       A,       1,       0,       1,       1\r\n");
  EXPECT_EQ(imported.moved, 4);
  EXPECT_EQ(imported.broods, 3);
  EXPECT_EQ(imported.firstYear, 1995);
  EXPECT_EQ(imported.lastYear, 1996);
}

TEST(ImportVisits, MissingAgesAreWhatWasChosen) {
  const std::string text = "Year,Code,Day,Age,Count\n1995,A,160,NA,4\n1995,B,161,-,3\n1995,C,162,1,3\n";
  ImportChoices choices = ProposedChoices(text);
  EXPECT_THAT(ImportRows(text, choices).text, HasSubstr("       A,     160,       0,      -?,       4\r\n"));
  EXPECT_EQ(ImportRows(text, choices).unknownOfEggs, 2);
  choices.unknownAge = UnknownAge::OfJuveniles;
  EXPECT_THAT(ImportRows(text, choices).text, HasSubstr("       A,     160,       0,       ?,       4\r\n"));
  choices.unknownAge = UnknownAge::LeftOut;
  const Imported imported = ImportRows(text, choices);
  EXPECT_EQ(imported.records, 1);
  EXPECT_EQ(imported.leftOut, 2);
  EXPECT_THAT(imported.remarks,
              ElementsAre("line 2: left out, its age is not known", "line 3: left out, its age is not known"));
}

TEST(ImportVisits, AVisitOfUnknownAgeIsOfWhatItsHeadingCounts) {
  const std::string text = "Brood,Date,Chicks\nA,2023-05-30,5\nA,2023-06-10,0\n";
  ImportChoices choices = ProposedChoices(text);
  const std::string ofYoung = Header +
                              "\r\n"
                              "    2023,       A,     150,       0,       ?,       5\r\n"
                              "    2023,       A,     161,       0,       ?,       0\r\n";
  const Imported imported = ImportRows(text, choices);
  EXPECT_EQ(imported.text, ofYoung);
  EXPECT_THAT(imported.remarks, ElementsAre("2 rows, the first in line 2: the age is not known, and the number is that "
                                            "of \"Chicks\": written as young of unknown age"));
  choices.unknownAge = UnknownAge::OfJuveniles;
  EXPECT_EQ(ImportRows(text, choices).text, ofYoung);
  EXPECT_THAT(ImportRows(text, choices).remarks, IsEmpty()) << "it is what was chosen";
  const std::string eggs = "Brood,Date,Eggs\nA,2023-05-30,5\n";
  EXPECT_THAT(ImportRows(eggs, choices).text, HasSubstr("      -?,       5\r\n"));
  EXPECT_THAT(
      ImportRows(eggs, choices).remarks,
      ElementsAre("line 2: the age is not known, and the number is that of \"Eggs\": written as eggs of unknown "
                  "age"));
}

TEST(ImportVisits, OfEggsAndYoungInColumnsOfTheirOwnThoseThatAreThereTellWhatAVisitIsOf) {
  const Imported imported = AsProposed(
      "Nest,Date,Eggs,Young\nA,2023-05-30,5,0\nA,2023-06-10,0,4\nA,2023-06-12,,3\nA,2023-06-14,0,0\nB,2023-05-30,2,2\n"
      "C,2023-05-30,0,0\n");
  EXPECT_EQ(imported.text, Header +
                               "\r\n"
                               "    2023,       A,     150,       0,      -?,       5\r\n"
                               "    2023,       A,     161,       0,       ?,       4\r\n"
                               "    2023,       A,     163,       0,       ?,       3\r\n"
                               "    2023,       A,     165,       0,       ?,       0\r\n"
                               "    2023,       B,     150,       0,      -?,       4\r\n"
                               "    2023,       C,     150,       0,      -?,       0\r\n");
  EXPECT_THAT(imported.remarks, Contains("3 rows, the first in line 3: the age is not known, and the number is that of "
                                         "\"Young\": written as young of unknown age"));
}

TEST(ImportVisits, AHeadingOfEggsAndYoungTellsNothingOfUnknownAges) {
  const std::string text = "Brood,Date,Eggs or young\nA,2023-05-30,5\n";
  ImportChoices choices = ProposedChoices(text);
  EXPECT_THAT(ImportRows(text, choices).text, HasSubstr("      -?,       5\r\n"));
  choices.unknownAge = UnknownAge::OfJuveniles;
  EXPECT_THAT(ImportRows(text, choices).text, HasSubstr("       ?,       5\r\n"));
}

TEST(ImportVisits, AMissingPartOfASumIsTold) {
  const Imported imported = AsProposed(
      "Year,Nest,Day,Age,Eggs,Young\n2023,A,150,-10,5,NA\n2023,A,162,2,NA,3\n2023,A,163,3,2,\n2023,B,150,-10,5,0\n");
  EXPECT_EQ(imported.records, 4);
  EXPECT_THAT(imported.remarks, Contains("2 rows, the first in line 2: of the columns that make the number, some are "
                                         "missing and were taken as none"));
}

TEST(ImportVisits, ARowThatCannotBeUnderstoodIsLeftOutWithItsReason) {
  const Imported imported = AsProposed(
      "Year,Code,Day,Age,Count\n1995,A,160,-10,5\n1995,B,160,-10,12a\n1995,C,,-10,5\n1995,,160,-10,5\nNA,D,160,-10,5\n"
      "1995,E,160.5,-10,5\n1995,F,160,-10,40000\n1995,G,160,old,5\n");
  EXPECT_EQ(imported.records, 1);
  EXPECT_EQ(imported.rows, 8);
  EXPECT_THAT(imported.remarks,
              ElementsAre("line 3: left out, \"12a\" is no number", "line 4: left out, it has no day",
                          "line 5: left out, it has no code", "line 6: left out, it has no year",
                          HasSubstr("line 7: left out, \"160.5\" is no day of the year"),
                          HasSubstr("line 8: left out, \"40000\" is no number, which is a whole number from 0"),
                          "line 9: left out, \"old\" is no brood age"));
}

TEST(ImportVisits, WhatTheReadingWouldRefuseIsListed) {
  const Imported imported =
      AsProposed("Year,Code,Day,Age,Count\n1995,A,160,-10,5\n1995,A,160,-10,6\n1995,b 1,160,-10,5\n1995,B1,165,-5,5\n");
  EXPECT_THAT(imported.remarks,
              testing::UnorderedElementsAre(
                  HasSubstr("1 visit has a number that rises or an age that does not"),
                  "line 3: \"A\" has the day of line 2", "line 3: \"A\" has 6 behind 5 of line 2",
                  "line 3: \"A\" has the age -10 behind -10 of line 2", HasSubstr("differ in case or blanks only")));
}

TEST(ImportVisits, LongCodesKeepTheirLastCharactersWhileTheseTellThemApart) {
  EXPECT_THAT(AsProposed("Year,Code,Day,Age,Count\n1995,Lake-2023-A,160,-10,5\n1995,Lake-2023-B,160,-10,5\n").text,
              testing::AllOf(HasSubstr(",e-2023-A"), HasSubstr(",e-2023-B")));
  const Imported numbered =
      AsProposed("Year,Code,Day,Age,Count\n1995,North-12345678,160,-10,5\n1995,South-12345678,160,-10,5\n");
  EXPECT_THAT(numbered.text, testing::AllOf(HasSubstr(",N0000001,"), HasSubstr(",N0000002,")));
  EXPECT_THAT(numbered.remarks, ElementsAre(HasSubstr("replaced by numbers")));
}

TEST(ImportVisits, LettersAndDecimalCommasComeThrough) {
  const Imported imported = AsProposed(
      "Jahr;Year;Code;Day;Age;Count;Fl\xE4"
      "che\n1;1995;M\xD6WE1;160;-10;5;0,65\n");
  EXPECT_THAT(imported.text, HasSubstr("   M\u00D6WE1,     160,"));
  EXPECT_THAT(imported.text, HasSubstr(",      Fl\u00E4"
                                       "che\r\n"));
  EXPECT_THAT(imported.text, HasSubstr(",        0.65\r\n"));
}

TEST(ImportVisits, ANestBecomesVisitsOfOneEgg) {
  const Imported imported = AsProposed(
      "\"id\",\"FirstFound\",\"LastPresent\",\"LastChecked\",\"Fate\",\"Freq\"\n"
      "\"A\",1,9,9,0,1\n\"B\",5,5,9,1,1\n\"C\",5,8,12,1,2\n");
  EXPECT_EQ(imported.text, Header +
                               "\r\n"
                               "    1995,       A,       1,       0,      -?,       1\r\n"
                               "    1995,       A,       9,       0,      -?,       1\r\n"
                               "    1995,       B,       5,       0,      -?,       1\r\n"
                               "    1995,       B,       9,       0,      -?,       0\r\n"
                               "    1995,     C-1,       5,       0,      -?,       1\r\n"
                               "    1995,     C-1,       8,       0,      -?,       1\r\n"
                               "    1995,     C-1,      12,       0,      -?,       0\r\n"
                               "    1995,     C-2,       5,       0,      -?,       1\r\n"
                               "    1995,     C-2,       8,       0,      -?,       1\r\n"
                               "    1995,     C-2,      12,       0,      -?,       0\r\n");
  EXPECT_THAT(imported.remarks, ElementsAre("no column tells the year: 1995 was taken",
                                            "of the nests, by their fate: 3 failed (\"1\"), 1 did not fail (\"0\")"));
}

TEST(ImportVisits, ANestOfWhichTheEggsAreToldBecomesVisitsOfTheClutch) {
  EXPECT_EQ(AsProposed("id,FirstFound,LastPresent,LastChecked,Fate,Eggs\nA,1,9,12,1,4\n").text,
            Header +
                "\r\n"
                "    1995,       A,       1,       0,      -?,       4\r\n"
                "    1995,       A,       9,       0,      -?,       4\r\n"
                "    1995,       A,      12,       0,      -?,       0\r\n");
}

TEST(ImportVisits, ANestOfWhichTheHatchDayIsToldHasAges) {
  EXPECT_EQ(
      AsProposed("id,FirstFound,LastPresent,LastChecked,Fate,Hatch day\nA,150,159,162,1,170\nB,150,159,159,0,NA\n")
          .text,
      Header +
          "\r\n"
          "    1995,       A,     150,     170,     -20,       1\r\n"
          "    1995,       A,     159,     170,     -11,       1\r\n"
          "    1995,       A,     162,     170,      -8,       0\r\n"
          "    1995,       B,     150,       0,      -?,       1\r\n"
          "    1995,       B,     159,       0,      -?,       1\r\n");
}

TEST(ImportVisits, ANestThatCannotBeIsLeftOut) {
  EXPECT_THAT(
      AsProposed("id,FirstFound,LastPresent,LastChecked,Fate\nA,1,9,9,0\nB,9,5,9,1\nC,5,9,9,1\nD,5,9,10,2\n").remarks,
      ElementsAre("no column tells the year: 1995 was taken", HasSubstr("1 did not fail (\"0\")"),
                  HasSubstr("line 3: left out, it was last present before"), HasSubstr("line 4: left out, it failed"),
                  HasSubstr("line 5: left out, \"2\" is no fate")));
}

TEST(ImportVisits, ThePublishedNestsBecomeTheKeptDataFile) {
  const std::string kept = ReadWholeFile(MERLANE_GOLDEN_DIR "/real/killdeer.dat");
  const std::string made = AsProposed(ReadWholeFile(MERLANE_TEST_INPUTS_DIR "/import/killdeer.csv")).text;
  const BroodData known = Read(kept, 1995, 1995, 0), ours = Read(made, 1995, 1995, 0);
  EXPECT_EQ(ours.VisitDate, known.VisitDate);
  EXPECT_EQ(ours.VisitCount, known.VisitCount);
  EXPECT_EQ(ours.VisitsOf, known.VisitsOf);
  EXPECT_EQ(ours.VisitStage, known.VisitStage);
}

TEST(ImportVisits, AFieldBookBecomesTheVisitsThatItHolds) {
  const ImportSource source(MERLANE_SOURCE_DIR "/examples/field_book.xlsx");
  const ImportChoices choices = source.Proposed();
  EXPECT_EQ(choices.sheet, "Visits");
  const Imported imported = ImportRows(source.Text(choices).rows, choices);
  const BroodData ours = Read(imported.text, 1995, 1997, 3);
  const BroodData known = Read(ReadWholeFile(MERLANE_SOURCE_DIR "/examples/first_fit.dat"), 1995, 1997, 3);
  EXPECT_EQ(ours.BroodCode, known.BroodCode);
  EXPECT_EQ(ours.VisitsOf, known.VisitsOf);
  EXPECT_EQ(ours.VisitYear, known.VisitYear);
  EXPECT_EQ(ours.VisitDate, known.VisitDate);
  EXPECT_EQ(ours.VisitAge, known.VisitAge);
  EXPECT_EQ(ours.VisitCount, known.VisitCount);
  EXPECT_EQ(ours.HatchDate, known.HatchDate);
  EXPECT_EQ(ours.Covariate, known.Covariate);
  EXPECT_GT(imported.moved, 300);
  EXPECT_THAT(imported.remarks, ElementsAre("1 row above the heading was passed over", "not used: \"Remarks\"",
                                            "the number of a visit is Eggs + Young"));
}

TEST(ImportVisits, AMonthTellsOfWhichMonthADayIs) {
  const Imported imported = AsProposed("year,month,day,nest,eggs,age\n2020,5,3,A,4,-20\n2020,May,13,A,4,-10\n");
  EXPECT_THAT(imported.text, HasSubstr("    2020,       A,     124,       0,     -20,       4\r\n"
                                       "    2020,       A,     134,       0,     -10,       4\r\n"))
      << "of a leap year";
  EXPECT_THAT(imported.remarks, IsEmpty());
  const Imported ofYear = AsProposed("Year,Month,Day,Nest,Eggs,Age\n2020,5,124,A,4,-20\n2020,5,134,A,4,-10\n");
  EXPECT_EQ(ofYear.text, imported.text) << "days that are none of a month";
  EXPECT_THAT(ofYear.remarks, testing::ElementsAre("not used: \"Month\""));
}

TEST(ImportVisits, AMonthAloneIsRefused) {
  const std::string text = "Nest,Date,Month,Eggs,Age\nA,2020-05-03,5,4,-20\n";
  ImportChoices choices = ProposedChoices(text);
  EXPECT_EQ(choices.roles[2], Role::Unused);
  choices.roles[2] = Role::Month;
  EXPECT_THROW(ImportRows(text, choices), RuntimeFailure);
}

TEST(ImportVisits, AStageTellsOfWhichUnknownAgeANestIs) {
  const Imported imported = AsProposed(
      "Nest,FirstFound,LastPresent,LastChecked,Fate,Stage\nA,1,9,9,0,egg\nB,3,9,9,0,nestling\nC,5,9,9,0,egg\n");
  EXPECT_EQ(imported.unknownOfEggs, 4);
  EXPECT_EQ(imported.unknownOfYoung, 2);
  EXPECT_THAT(imported.text, HasSubstr("       B,       3,       0,       ?,       1"));
}

TEST(ImportVisits, ARowThatLacksAPartOfItsCodeIsLeftOut) {
  const std::string text = "Box,Brood,Date,Age,Young\nB1,1,2023-06-01,2,4\n,1,2023-06-02,3,4\nB1,1,2023-06-05,6,4\n";
  ImportChoices choices = ProposedChoices(text);
  choices.roles[0] = Role::CodePart;
  choices.roles[1] = Role::Code;
  const Imported imported = ImportRows(text, choices);
  EXPECT_EQ(imported.records, 2);
  EXPECT_THAT(imported.text, HasSubstr("    B1-1,"));
  EXPECT_THAT(imported.remarks, testing::ElementsAre("line 3: left out, a part of its code is missing"));
}

TEST(ImportVisits, WhatIsEasilyMisreadIsToldBeforeAnybodyGoesOn) {
  const auto remarks = [](const std::string& text) { return AsProposed(text).remarks; };
  EXPECT_THAT(remarks("Nest,Day,Age,Count\n11,140,3,5,4\n11,150,13,5,4\n"),
              Contains(HasSubstr("a field more than the heading")))
      << "decimal commas between commas";
  EXPECT_THAT(remarks("Year,Nest,Day,Age,Count,Notes\n2020,A,140,-5,4,\"open\n2020,A,150,5,3,x\n2020,A,155,10,2,y\" z\n"
                      "2020,A,160,15,1,x\n"),
              Contains(HasSubstr("line 2: a field in quotes goes on in another line")));
  EXPECT_THAT(remarks("Year,Nest,Day,Age,Eggs,Count\n2020,A,140,-5,4,4\n2020,A,144,-1,4,2\n"),
              Contains("\"Count\" is the number, which \"Eggs\" could be, too"));
  EXPECT_THAT(remarks("Nest,Day,Age,Count\nA,140,-5,4\nA,144,-1,4\n"),
              Contains("no column tells the year: 1995 was taken"));
  EXPECT_THAT(remarks("Year,Nest,Date,Eggs,Hatched\n2020,A,2020-05-10,4,3\n2020,A,2020-05-14,4,3\n"),
              Contains("not used: \"Hatched\""))
      << "how many, not when";
  EXPECT_THAT(remarks("Year,Nest,Day,Age,Eggs,Young\n2020,A,140,-1,4,0\n2020,A,142,1,0,NA\n"),
              Contains(HasSubstr("line 3: 0 in one of the numbers, and another is missing")));
}

TEST(ImportVisits, TheOrderOfDatesIsThatOfTheWholeFile) {
  std::string text = "Nest,Date,Age,Count\n";
  for (int nest = 0; nest < 150; ++nest)
    text +=
        fmt::format("N{0},6/7/2023,-10,4\nN{0},6/{1}/2023,{2},4\n", nest, nest < 149 ? 9 : 13, nest < 149 ? -8 : -4);
  const Imported imported = AsProposed(text);
  EXPECT_THAT(imported.remarks, IsEmpty());
  EXPECT_THAT(imported.text, HasSubstr("    2023,      N0,     158,       0,     -10,       4\r\n"));
  const Imported mixed = AsProposed(text + "M,13/6/2023,-10,4\nM,14/6/2023,-9,4\n");
  EXPECT_THAT(mixed.remarks, Contains(HasSubstr("dates are in two orders: 1 in the other one left out, the first in "
                                                "line 301, and 299 such as \"6/7/2023\", which could be of both")));
}

TEST(ImportVisits, AMonthBeforePointsIsTold) {
  const std::string text = "Nest,Date,Age,Count\nA,5.6.2023,-19,4\nA,5.20.2023,-5,4\nA,5.21.2023,-4,4\n";
  EXPECT_THAT(AsProposed(text).remarks,
              ElementsAre("1 date between points, such as \"5.6.2023\", was taken as month/day/year"));
}

TEST(ImportVisits, MoreVisitsOfABroodThanADataFileHasRoomForAreRefused) {
  std::string text = "Year,Nest,Day,Age,Eggs\n";
  for (int visit = 0; visit < 33000; ++visit) text += "2023,A,150,-10,5\n";
  EXPECT_THAT(
      [&] { AsProposed(text); },
      ThrowsMessage<RuntimeFailure>("\"A\" has more than 32000 visits in 2023, for which a data file has no room "
                                    "(the next is in line 32002): is that column the code?"));
}

TEST(ImportVisits, MoreBroodsOfAYearThanADataFileHasRoomForAreRefused) {
  std::string text = "Year,Nest,Day,Age,Eggs\n";
  for (int brood = 0; brood < 33000; ++brood) text += fmt::format("2023,N{:05},150,-10,5\n", brood);
  EXPECT_THAT([&] { AsProposed(text); },
              ThrowsMessage<RuntimeFailure>("2023 has more than 32000 broods, for which a data file has no room (the "
                                            "next is in line 32002): is that column the code?"));
}

TEST(ImportVisits, NestsWithoutAnAgeAreOfWhatWasChosen) {
  const std::string text = "id,FirstFound,LastPresent,LastChecked,Fate,Age\nA,1,9,9,0,\nB,1,9,12,1,-5\nC,2,4,4,0,-?\n";
  ImportChoices choices = ProposedChoices(text);
  EXPECT_THAT(ImportRows(text, choices).text, HasSubstr("       A,       1,       0,      -?,       1\r\n"));
  EXPECT_EQ(ImportRows(text, choices).unknownOfEggs, 2);
  choices.unknownAge = UnknownAge::OfJuveniles;
  const Imported young = ImportRows(text, choices);
  EXPECT_EQ(young.unknownOfYoung, 2);
  EXPECT_THAT(young.text, HasSubstr("       A,       1,       0,       ?,       1\r\n"));
  EXPECT_THAT(young.text, HasSubstr("       B,       9,       0,       3,       1\r\n"));
  EXPECT_THAT(young.text, HasSubstr("       C,       2,       0,      -?,       1\r\n")) << "as its row tells";
  choices.unknownAge = UnknownAge::LeftOut;
  const Imported known = ImportRows(text, choices);
  EXPECT_EQ(known.broods, 2);
  EXPECT_THAT(known.remarks, Contains("line 2: left out, its age is not known"));
}

TEST(ImportVisits, AgesThatDoNotGoWithTheDaysAreToldAndDoNotCrowdOutWhatElseIs) {
  EXPECT_THAT(AsProposed("Year,Nest,Day,Age,Eggs\n2023,A,150,-10,5\n2023,A,155,-7,5\n2023,A,156,-5.5,5\n").remarks,
              ElementsAre("line 3: \"A\" is older by 3 than in line 2, and its day is later by 5"));
  std::string text = "Year,Nest,Day,Age,Eggs\n";
  for (int visit = 0; visit < 300; ++visit)
    text += fmt::format("2023,A,{},{},{}\n", 10 + visit, visit - 600 + 2 * visit, visit < 299 ? 9 : 10);
  EXPECT_THAT(AsProposed(text).remarks, Contains("line 301: \"A\" has 10 behind 9 of line 300"));
}

TEST(ImportVisits, AHatchDayOfZeroIsNone) {
  const Imported imported =
      AsProposed("Year,Code,DofY,HatchDay,BroodAge,EorJ\n2020,A,140,0,-999,4\n2020,A,144,0,-999,4\n");
  EXPECT_EQ(imported.unknownOfEggs, 2);
}

TEST(ImportVisits, ANestOfWhichNoNumberIsToldIsLeftOut) {
  const Imported imported =
      AsProposed("id,FirstFound,LastPresent,LastChecked,Fate,Freq\nA,1,9,9,0,2\nB,1,9,9,0,NA\nC,1,9,9,0,0\n");
  EXPECT_EQ(imported.leftOut, 2);
}

TEST(ImportVisits, AColumnThatIsNeededIsAskedFor) {
  const std::string text = "a,b\n1,2\n";
  ImportChoices choices = ProposedChoices(text);
  try {
    ImportRows(text, choices);
    FAIL() << "it was imported";
  } catch (const RuntimeFailure& failure) {
    EXPECT_STREQ(
        failure.what(),
        "no column is the code, which a heading such as \"Nest\", \"Brood\" or \"Code\" tells; the heading was "
        "taken from line 1: \"a\", \"b\"");
  }
  choices.roles = {Role::Code, Role::FirstFound};
  EXPECT_THROW(ImportRows(text, choices), RuntimeFailure);
}

TEST(ImportVisits, WhereAColumnWasLookedForIsTold) {
  const auto refusal = [](const std::string& text) -> std::string {
    try {
      ImportRows(text, ProposedChoices(text));
    } catch (const RuntimeFailure& failure) {
      return failure.what();
    }
    return "";
  };
  EXPECT_EQ(refusal("Lake Meer,,\n\nNest,When,Eggs\nA,x,5\nB,y,4\n"),
            "no column is the day of the year or the date, which a heading such as \"Date\" or \"Day\" tells; the "
            "heading was taken from line 3: \"Nest\", \"When\", \"Eggs\"");
  EXPECT_EQ(refusal("A,150,5\nB,151,4\n"),
            "no column is the code, which a heading such as \"Nest\", \"Brood\" or \"Code\" tells; the first row is "
            "taken for no heading");
}

TEST(ImportVisits, WhatIsMadeReadsWithNoOtherRemarkThanThatACovariateChanges) {
  const Imported imported = AsProposed(
      "Code;Date;Hatch date;Count;Depth;Cover\nM\u00D6WE1;30.5.2023;9.6.2023;5;1,25;12345678901234\n"
      "M\u00D6WE1;14.6.2023;9.6.2023;4;1,25;0,000000000012345678\n");
  BroodData data;
  data.FirstYear = data.LastYear = 2023;
  data.NCov = 2;
  ReadingReport report;
  ReadTextData(
      imported.text, false, data, [](const Message& m) { ADD_FAILURE() << m.title; }, report);
  EXPECT_EQ(report.oddities.Details(2),
            "1 covariate is not as at the brood's first visit, which counts:\r\n"
            "  line 3, columns 68 to 79: \"1.234568e-11\", and 12345680000000 at the first\r\n");
  EXPECT_THAT(data.BroodCode, ElementsAre("   M\u00D6WE1"));
  EXPECT_THAT(data.VisitAge, ElementsAre(-10, 5));
  EXPECT_THAT(data.Covariate, ElementsAre(1.25, 1.234568e13));
}

}  // namespace
}  // namespace merlane
