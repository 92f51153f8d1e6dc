// A table becomes a data file, as somebody meets it who begins an analysis.
#include <gmock/gmock.h>

#include <chrono>

#include "program/analysis.h"
#include "support/new_workbook.h"

namespace merlane {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* Visits =
    "Nest;Date;Hatch date;Eggs;Cover\n"
    "A;30.5.2023;9.6.2023;5;0,65\n"
    "B;31.5.2023;9.6.2023;4;0,7\n"
    "A;14.6.2023;9.6.2023;4;0,65\n"
    "C;1.6.2024;10.6.2024;3;0,1\n";

constexpr const char* DataOfVisits =
    "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,       Cover\r\n"
    "    2023,       A,     150,     160,     -10,       5,        0.65\r\n"
    "    2023,       A,     165,     160,       5,       4,        0.65\r\n"
    "    2023,       B,     151,     160,      -9,       4,         0.7\r\n"
    "    2024,       C,     153,     162,      -9,       3,         0.1\r\n";

/// That of worksheets.
const std::vector<std::string> Heading{"Nest", "Day", "Age", "Eggs"};

/// A program whose description of an analysis is open, and a folder with tables.
struct Importing : test::Analysis {
  explicit Importing(const std::string& name) : folder("import_" + name) {
    EXPECT_TRUE(desk.Press(menu.cmdInitialize));
  }

  std::string Table(const std::string& name, const std::string& text) {
    WriteWholeFile(folder / name, text);
    return folder / name;
  }
  /// Chooses a file to be imported.
  void Open(const std::string& path) {
    windows.File(path, "Import data");
    ASSERT_TRUE(desk.Press(initialize.cmdImport));
  }
  /// Chooses a file as the data file.
  void Select(const std::string& path) {
    windows.File(path, "Load brood survival data file");
    ASSERT_TRUE(desk.Press(initialize.cmdLoadData));
  }
  /// Takes the choices that were kept with another import.
  void TakeChoices(const std::string& kept) {
    windows.File(kept, "Choices of another import");
    ASSERT_TRUE(desk.Press(form.cmdChoices));
  }
  /// Opens a file and takes the choices that were kept with the import of another of the folder.
  void OpenWithChoicesOf(const std::string& file, const std::string& other) {
    Open(folder / file);
    TakeChoices(folder / (other + ".dat.import"));
  }
  void Import() { ASSERT_TRUE(desk.Press(form.cmdDone)); }
  /// Imports with an answer to the question that comes first.
  void ImportAndSay(Answer answer) {
    answer == Answer::Yes ? windows.Yes("Import") : windows.No("Import");
    Import();
  }
  void GiveRole(int column, const std::string& role) {
    ASSERT_TRUE(desk.SelectRow(form.grdColumns, column));
    ASSERT_TRUE(desk.SetText(form.cboRole, role));
  }
  std::vector<std::string> Roles() const {
    std::vector<std::string> roles;
    for (int row = 1; row < form.grdColumns.Rows(); ++row) roles.push_back(form.grdColumns.At(row, 1).text);
    return roles;
  }

  test::Folder folder;
  FrmInitialize& initialize = program.frmInitialize;
  FrmImport& form = program.frmImport;
};

TEST(Import, ATableBecomesTheDataFileThatTheAnalysisUsesAndNames) {
  Importing t("whole");
  t.Open(t.Table("lake.csv", Visits));
  ASSERT_TRUE(t.form.Visible());
  EXPECT_EQ(t.form.txtFile.text, t.folder / "lake.csv");
  EXPECT_EQ(t.form.cboDelimiter.text, "semicolon");
  EXPECT_EQ(t.form.cboDecimal.text, "comma");
  EXPECT_TRUE(t.form.chkHeading.value);
  EXPECT_THAT(t.Roles(), ElementsAre("code", "date", "hatch date", "number", "covariate"));
  EXPECT_EQ(t.form.txtPreview.text, DataOfVisits);
  EXPECT_EQ(t.form.lblRemarks.text, "Nothing has to be looked at in these rows.");

  t.Import();
  EXPECT_FALSE(t.form.Visible());
  const std::string made = t.folder / "lake.csv.dat";
  EXPECT_EQ(ReadWholeFile(made), DataOfVisits);
  EXPECT_EQ(t.initialize.txtDataInput.text, made);
  EXPECT_THAT(t.windows.LastText(), AllOf(HasSubstr("4 records of 3 broods"), HasSubstr(made)));
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr("2 records sorted to another place"));

  t.desk.SetText(t.initialize.cboStartYear, "2023");
  t.desk.SetText(t.initialize.cboEndYear, "2024");
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  EXPECT_EQ(t.windows.LastText(), "Data read successfully - analysis can continue");
  EXPECT_EQ(t.program.frmMain.stbMain0.Get(1), "Brood data file name: " + made);
  EXPECT_EQ(t.program.model.data.TotalRecords, 4);
}

TEST(Import, OpensByItselfForADataFileThatIsNotInFixedColumns) {
  Importing t("itself");
  const std::string table = t.Table("lake.csv", Visits);
  t.Select(table);
  EXPECT_TRUE(t.form.Visible());
  EXPECT_EQ(t.initialize.txtDataInput.text, table) << "the choice stands until something is imported";
  ASSERT_TRUE(t.desk.Press(t.form.cmdCancel));
  EXPECT_FALSE(t.form.Visible());
  EXPECT_EQ(t.initialize.txtDataInput.text, table);
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
}

TEST(Import, StaysAwayFromDataFilesAndFromWhatCannotBeRead) {
  Importing t("away");
  for (const std::string& path : {test::Golden("attributes.dat"), test::Golden("real/killdeer.dat"),
                                  t.folder / "missing.dat", t.Table("empty.dat", ""), t.Table("one.txt", "a b\n")}) {
    t.Select(path);
    EXPECT_FALSE(t.form.Visible()) << path;
  }
}

TEST(Import, OpensByItselfForThreeColumns) {
  Importing t("three");
  t.Select(t.Table("lake.csv", "Nest,Day,Eggs\nA,150,5\nA,155,4\n"));
  EXPECT_TRUE(t.form.Visible());
  EXPECT_THAT(t.Roles(), ElementsAre("code", "day of the year", "number"));
}

/// A reading that was told to be of another kind of file was left for the import.
void ExpectTheImportInstead(Importing& t, const std::string& title, const std::string& table) {
  EXPECT_EQ(t.windows.messages.back().title, title);
  EXPECT_EQ(t.windows.messages.back().offer, "Import...");
  EXPECT_TRUE(t.form.Visible() && t.initialize.Visible());
  EXPECT_FALSE(t.program.frmMenu.Visible());
  EXPECT_EQ(t.form.txtFile.text, table);
  EXPECT_EQ(t.windows.toldFailures, 0);
  EXPECT_FALSE(t.windows.exitStatus.has_value());
}

TEST(Import, IsOfferedByTheBoxThatTellsOfAnotherKindOfFile) {
  Importing t("offered");
  const std::string table = t.Table("lake.csv", Visits);
  t.Select(table);
  ASSERT_TRUE(t.desk.Press(t.form.cmdCancel));
  t.windows.TakeOffer("Analysis update");
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  ExpectTheImportInstead(t, "Analysis update", table);
  t.Import();
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdFit));
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  EXPECT_EQ(t.program.model.data.TotalRecords, 4);
  EXPECT_EQ(t.windows.messages.back().offer, "") << "there is nothing to import of a data file";
  EXPECT_TRUE(t.program.frmMenu.Visible());
}

TEST(Import, WhoTakesTheOfferAndThinksBetterOfItIsBackAtTheMenu) {
  Importing t("better_not");
  t.Select(t.Table("lake.csv", Visits));
  t.windows.TakeOffer();
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  ASSERT_TRUE(t.desk.Press(t.form.cmdCancel));
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdCancel));
  EXPECT_TRUE(t.program.frmMenu.Visible());
  EXPECT_TRUE(t.desk.Usable(t.menu.cmdInitialize));
}

TEST(Import, IsOfferedByTheBoxOfAReadingThatFailedOrWouldEndTheProgram) {
  Importing t("offered_on_failure");
  const std::string book = t.folder / "lake.xlsx";
  test::WriteNewWorkbook(book, {{"Visits", {Heading, {"A", "130", "-10", "4"}}}});
  t.Select(book);
  t.windows.TakeOffer("Problem finding data file or reading data");
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  ExpectTheImportInstead(t, "Problem finding data file or reading data", book);
  EXPECT_FALSE(t.program.model.data.ReadOK);

  const std::string table = t.Table(
      "lake.csv",
      "Year;Nest;Day;Hatch day;Age;Eggs;Remarks\n1995;A;150;160;-10;5;found by Ann on her way to the other lake\n"
      "1995;A;151;160;-9;4;as it was when she went home, and wet\n");
  t.Select(table);
  t.windows.TakeOffer();
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));
  EXPECT_TRUE(t.form.Visible());
  EXPECT_FALSE(t.windows.exitStatus.has_value());
}

TEST(Import, TheDescriptionStaysUsableBesideIt) {
  Importing t("beside");
  t.Select(t.Table("lake.csv", Visits));
  ASSERT_TRUE(t.form.Visible());
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdDone));  // read as it is, and told so
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr("it may be another kind of file"));
  EXPECT_FALSE(t.form.Visible()) << "it goes with the description";
  EXPECT_TRUE(t.program.frmMenu.Visible());
}

TEST(Import, GoesWithTheDescriptionThatIsCancelled) {
  Importing t("cancelled");
  t.Open(t.Table("lake.csv", Visits));
  ASSERT_TRUE(t.desk.Press(t.initialize.cmdCancel));
  EXPECT_FALSE(t.form.Loaded());
}

TEST(Import, ThePreviewKeepsInStepWithEachChoice) {
  Importing t("preview");
  t.Open(t.Table("lake.csv", "Nest;When;Count;Note\nA;1.2.2023;5;1,5\nB;2.3.2023;;2\n"));
  EXPECT_THAT(t.form.txtPreview.text,
              HasSubstr("Not yet: no column is the day of the year or the date, which a heading such as"));
  EXPECT_TRUE(t.form.txtPreview.wraps);
  EXPECT_FALSE(t.form.lblRemarks.visible) << "there are no records yet";
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("the heading was taken from line 1: \"Nest\", \"When\", \"Count\""));
  EXPECT_EQ(t.form.cboRole.text, "code") << "the first column is selected";
  t.GiveRole(2, "date");
  EXPECT_FALSE(t.form.txtPreview.wraps);
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       A,      32,"));
  EXPECT_THAT(t.form.txtRemarks.text, HasSubstr("line 3: left out, it has no number"));
  t.desk.SetText(t.form.cboDates, DateOrderNames()[static_cast<std::size_t>(DateOrder::MonthDayYear)]);
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       A,       2,"));
  t.GiveRole(4, "covariate");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("         1.5\r\n"));
  t.desk.SetText(t.form.cboUnknownAge, "unknown age of young");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       ?,       5"));
  t.desk.SetText(t.form.cboDelimiter, "comma");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("Not yet"));
  EXPECT_EQ(t.form.cboDelimiter.text, "comma");
}

TEST(Import, TheFirstValuesOfAColumnAreThoseThatAreThere) {
  Importing t("first_values");
  t.Open(t.Table("lake.csv", "Nest,Day,Eggs,Young\nA,150,5,\nA,155,4,\nA,165,,3\n"));
  EXPECT_EQ(t.form.grdColumns.At(1, 2).text, "A  A  A");
  EXPECT_EQ(t.form.grdColumns.At(4, 2).text, "3");
}

TEST(Import, AColumnTakesARoleFromAnother) {
  Importing t("role");
  t.Open(t.Table("lake.csv", "Nest,Ring,Day,Eggs\nA,X,150,5\n"));
  EXPECT_THAT(t.Roles(), ElementsAre("code", "not used", "day of the year", "number"));
  t.GiveRole(2, "code");
  EXPECT_THAT(t.Roles(), ElementsAre("not used", "code", "day of the year", "number"));
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       X,"));
}

TEST(Import, WhatIsNoneOfTheChoicesIsToldAsAFailureAndLeavesThemAsTheyWere) {
  Importing t("none");
  t.Open(t.Table("lake.csv", "Nest,Day,Eggs,Note\nA,150,5,x\n"));
  t.GiveRole(1, "Column 99999999999");
  EXPECT_EQ(t.windows.LastText(), "\"Column 99999999999\" is none that \"The selected column is\" can be");
  EXPECT_EQ(t.form.cboRole.text, "code");
  int failures = 1;
  for (ComboBox* box :
       {&t.form.cboEncoding, &t.form.cboDelimiter, &t.form.cboDecimal, &t.form.cboDates, &t.form.cboUnknownAge}) {
    const std::string before = box->text, preview = t.form.txtPreview.text;
    t.desk.SetText(*box, "nonsense");
    EXPECT_THAT(t.windows.LastText(), StartsWith("\"nonsense\" is none that "));
    EXPECT_EQ(t.windows.toldFailures, ++failures);
    EXPECT_EQ(box->text, before);
    EXPECT_EQ(t.form.txtPreview.text, preview);
  }
  t.desk.SetText(t.form.txtYear, "soon");
  EXPECT_EQ(t.windows.LastText(), "A year is a whole number, and \"soon\" is none");
  EXPECT_EQ(t.form.txtYear.text, "1995");
  t.desk.SetText(t.form.txtYear, "2021");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("\r\n    2021,"));
}

TEST(Import, AnEncodingThatTheFileHasNotIsToldAndTheOneBeforeStays) {
  Importing t("encoding");
  t.Open(t.Table("lake.csv", "Nest;Day;Eggs;Note\nM\xD6WE1;150;5;x\n"));
  EXPECT_EQ(t.form.cboEncoding.text, EncodingNames()[static_cast<std::size_t>(Encoding::Latin1)]);
  t.desk.SetText(t.form.cboEncoding, EncodingNames()[static_cast<std::size_t>(Encoding::Utf8)]);
  EXPECT_THAT(t.windows.LastText(), StartsWith("This cannot be imported so:"));
  EXPECT_EQ(t.form.cboEncoding.text, EncodingNames()[static_cast<std::size_t>(Encoding::Latin1)]);
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("   M\u00D6WE1,"));
}

TEST(Import, WhatIsToBeLookedAtCanBeLookedAtBeforeGoingOn) {
  Importing t("remarks");
  t.Open(t.Table("lake.csv", "Year,Nest,Day,Age,Eggs\n2023,A,150,-10,5\n2023,A,150,-10,6\n2023,a,151,-9,5\n"));
  t.ImportAndSay(Answer::No);
  EXPECT_TRUE(t.form.Visible());
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
  EXPECT_EQ(t.form.lblRemarks.text, "To look at in the whole file:");
  for (const char* remark : {"has the day of line 2", "has 6 behind 5 of line 2", "differ in case or blanks only"}) {
    EXPECT_THAT(t.form.txtRemarks.text, HasSubstr(remark));
    EXPECT_THAT(t.windows.messages.back().details, HasSubstr(remark));
  }
  t.ImportAndSay(Answer::Yes);
  EXPECT_TRUE(std::filesystem::exists(t.folder / "lake.csv.dat"));
}

TEST(Import, VisitsWithoutAnAgeAreToldAsTheyAreWritten) {
  Importing t("ages_of_young");
  t.Open(t.Table("lake.csv", "Nest,Date,Eggs,Young\nA,2023-05-30,5,0\nA,2023-06-10,0,4\nA,2023-06-12,0,3\n"));
  EXPECT_EQ(t.form.cboUnknownAge.text, "unknown age of eggs");
  EXPECT_THAT(t.form.txtRemarks.text,
              HasSubstr("1 visit without a brood age or a hatch day: written as unknown age of eggs\r\n"
                        "2 visits without a brood age or a hatch day: written as unknown age of young\r\n"));
}

TEST(Import, VisitsWithoutAnAgeAreAskedAbout) {
  Importing t("ages");
  t.Open(t.Table("lake.csv", "Year,Nest,Day,Age,Eggs\n2023,A,150,NA,5\n2023,A,155,-5,5\n2023,B,150,.,5\n"));
  EXPECT_THAT(t.form.txtRemarks.text,
              HasSubstr("2 visits without a brood age or a hatch day: written as unknown age of eggs"));
  t.ImportAndSay(Answer::No);
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
  ASSERT_TRUE(t.desk.SetText(t.form.cboUnknownAge, "leave the visit out"));
  EXPECT_THAT(t.form.txtRemarks.text, HasSubstr("line 2: left out, its age is not known"));
  t.ImportAndSay(Answer::Yes);
  EXPECT_EQ(t.program.frmInitialize.txtDataInput.text, t.folder / "lake.csv.dat");
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr("3 rows, 2 of them left out"));
}

TEST(Import, WhatWasChosenLastTimeIsOfferedAndGivesTheSameBytes) {
  Importing t("kept");
  const std::string table = t.Table("lake.csv", "Nest;When;Eggs;Note\nA;1.2.2023;5;1,5\nB;2.3.2023;4;2\n");
  t.Open(table);
  t.GiveRole(2, "date");
  t.GiveRole(4, "not used");
  t.ImportAndSay(Answer::Yes);
  const std::string first = ReadWholeFile(t.folder / "lake.csv.dat");
  t.Open(table);
  EXPECT_THAT(t.Roles(), ElementsAre("code", "date", "number", "not used"));
  EXPECT_THAT(t.form.lblProposal.text, StartsWith("As it was chosen when this file was imported last: "));
  t.ImportAndSay(Answer::Yes);
  EXPECT_EQ(ReadWholeFile(t.folder / "lake.csv.dat"), first);
}

TEST(Import, TheChoicesOfLastYearFitThisYearsFile) {
  Importing t("last_year");
  t.Open(t.Table("2022.csv", "Nest;When;Eggs;Note\nA;1.2.2022;5;1,5\n"));
  t.GiveRole(2, "date");
  t.ImportAndSay(Answer::Yes);
  t.Open(t.Table("2023.csv", "Note;Eggs;When;Nest\n2,5;4;1.2.2023;B\n"));
  t.TakeChoices(t.folder / "2022.csv.dat.import");
  EXPECT_THAT(t.Roles(), ElementsAre("covariate", "number", "date", "code"));
  EXPECT_EQ(t.form.lblProposal.text,
            "As it was chosen in 2022.csv.dat.import: look at each column, and at the records below.");
  EXPECT_THAT(t.form.txtRemarks.text, Not(HasSubstr("choices were kept")));
  t.TakeChoices(t.folder / "2022.csv");
  EXPECT_THAT(t.windows.LastText(), HasSubstr("this file holds no choices of an import"));
  EXPECT_THAT(t.Roles(), ElementsAre("covariate", "number", "date", "code"));
}

TEST(Import, AColumnOfKeptChoicesThatIsNotThereIsTold) {
  Importing t("lacking");
  t.Open(t.Table("lake.csv", Visits));
  t.Import();
  t.Open(t.Table("lake.csv", "Nest;Date;Hatch date;Eggs\nA;30.5.2023;9.6.2023;5\n"));
  const std::string told = "not in this file, and used when the choices were kept: \"Cover\" (covariate)";
  EXPECT_THAT(t.form.txtRemarks.text, HasSubstr(told));
  t.ImportAndSay(Answer::No);
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr(told));
}

TEST(Import, ANewColumnOfNextYearsFileIsNamedWithWhatItMayBe) {
  Importing t("new_column");
  t.Open(t.Table("lake.csv", Visits));
  t.Import();
  t.Open(t.Table("lake.csv", "Nest;Date;Hatch date;Eggs;Cover;Wind\nA;30.5.2024;9.6.2024;5;0,65;3,5\n"));
  const std::string told = "new since the choices were kept, and not used: \"Wind\" (covariate?)";
  EXPECT_THAT(t.form.txtRemarks.text, HasSubstr(told));
  t.ImportAndSay(Answer::No);
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr(told));
  t.GiveRole(6, "covariate");
  EXPECT_THAT(t.form.txtRemarks.text, Not(HasSubstr("new since")));
}

TEST(Import, ChoicesOfATextInAnotherEncodingOrWithAnotherDelimiterAreNotTakenAtTheirWord) {
  Importing t("written_otherwise");
  t.Open(t.Table("2022.csv", "Nest;Date;Eggs\nM\xD6WE1;1.2.2022;5\n"));
  t.ImportAndSay(Answer::Yes);
  t.Open(t.Table("2023.csv", "Nest,Date,Eggs\nM\u00D6WE1,1.2.2023,5\n"));
  t.TakeChoices(t.folder / "2022.csv.dat.import");
  EXPECT_EQ(t.form.cboEncoding.text, "UTF-8");
  EXPECT_EQ(t.form.cboDelimiter.text, "comma");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("   M\u00D6WE1,      32,"));
  EXPECT_THAT(t.form.txtRemarks.text, HasSubstr("this file is not written as the one whose choices were kept"));
}

TEST(Import, EggsAndYoungInTwoColumnsAreAdded) {
  Importing t("stages");
  t.Open(t.Table("lake.csv", "Year,Nest,Day,Age,Eggs,Chicks\n2023,A,150,-10,5,0\n2023,A,165,5,1,3\n"));
  EXPECT_THAT(t.Roles(), ElementsAre("year", "code", "day of the year", "brood age", "number", "number"));
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("     165,       0,       5,       4\r\n"));
}

TEST(Import, ASheetOfAWorkbookIsChosen) {
  Importing t("sheets");
  t.Open(std::string(MERLANE_SOURCE_DIR "/tests/data/import/lo_titles_on_second_sheet.xls"));
  EXPECT_TRUE(t.form.cboSheet.visible);
  EXPECT_FALSE(t.form.cboEncoding.visible || t.form.cboDelimiter.visible);
  ASSERT_GE(t.form.cboSheet.items.size(), 2u);
  const std::string proposed = t.form.cboSheet.text, preview = t.form.txtPreview.text;
  const std::string other = t.form.cboSheet.items[proposed == t.form.cboSheet.items[0] ? 1 : 0];
  t.desk.SetText(t.form.cboSheet, other);
  EXPECT_EQ(t.form.cboSheet.text, other);
  EXPECT_NE(t.form.txtPreview.text, preview);
  t.desk.SetText(t.form.cboSheet, "no such sheet");
  EXPECT_EQ(t.form.cboSheet.text, other);
  t.desk.SetText(t.form.cboSheet, proposed);
  EXPECT_EQ(t.form.txtPreview.text, preview);
}

TEST(Import, OtherSheetsWithTheSameColumnsAreNamed) {
  Importing t("sheets_alike");
  const std::string book = t.folder / "book.xlsx";
  test::WriteNewWorkbook(book, {{"2019", {Heading, {"A", "130", "-10", "4"}}},
                                {"2020", {{"Brood", "Day", "Age", "Count"}, {"B", "131", "-9", "5"}}},
                                {"Notes", {{"all done"}}}});
  t.Open(book);
  EXPECT_EQ(t.form.cboSheet.text, "2019");
  EXPECT_THAT(t.form.txtRemarks.text,
              StartsWith("the worksheet \"2019\" alone is imported; such data are also in \"2020\"\r\n"));
  t.ImportAndSay(Answer::No);
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr("the worksheet \"2019\" alone is imported"));
  t.ImportAndSay(Answer::Yes);
  EXPECT_THAT(t.windows.messages.back().details, HasSubstr("1 row of the worksheet \"2019\", 0 of them left out"));
  t.Open(book);
  t.desk.SetText(t.form.cboSheet, "Notes");
  EXPECT_THAT(t.form.txtRemarks.text, Not(HasSubstr("alone is imported")));
}

TEST(Import, TheChoicesOfLastYearsWorkbookSayWhichSheetTheyTake) {
  Importing t("sheet_of_last_year");
  test::WriteNewWorkbook(t.folder / "2019.xlsx", {{"2019", {Heading, {"A", "130", "-10", "4"}}}});
  const test::Sheet old{"2019", {Heading, {"A", "130", "-10", "4"}}}, next{"2020", {Heading, {"B", "131", "-9", "5"}}};
  test::WriteNewWorkbook(t.folder / "both.xlsx", {old, next});
  test::WriteNewWorkbook(t.folder / "2020.xlsx", {next});
  t.Open(t.folder / "2019.xlsx");
  t.ImportAndSay(Answer::Yes);
  t.OpenWithChoicesOf("both.xlsx", "2019.xlsx");
  EXPECT_EQ(t.form.cboSheet.text, "2019");
  EXPECT_THAT(t.form.txtRemarks.text,
              HasSubstr("the worksheet \"2019\" alone is imported; such data are also in \"2020\""));
  t.OpenWithChoicesOf("2020.xlsx", "2019.xlsx");
  EXPECT_EQ(t.form.cboSheet.text, "2020");
  EXPECT_THAT(t.form.txtRemarks.text,
              AllOf(HasSubstr("there is no worksheet \"2019\" in this file: \"2020\" was taken"),
                    HasSubstr("no column tells the year: 2020 was taken")));
}

TEST(Import, TheChoicesOfATextFitAWorkbookAndTheReverse) {
  Importing t("of_another_kind");
  t.Open(t.Table("lake.csv", "Nest;Day;Age;Eggs;Cover\nA;130;-10;4;0,5\n"));
  t.ImportAndSay(Answer::Yes);
  const std::string book = t.folder / "lake.xlsx";
  test::WriteNewWorkbook(book,
                         {{"Visits", {{"Cover", "Nest", "Day", "Age", "Eggs"}, {"0.5", "A", "130", "-10", "4"}}}});
  const auto takeKept = [&](const std::string& file, const std::string& kept) {
    t.OpenWithChoicesOf(file, kept);
    EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       A,     130,       0,     -10,       4,         0.5\r\n"));
    t.ImportAndSay(Answer::Yes);
  };
  takeKept("lake.xlsx", "lake.csv");
  takeKept("lake.csv", "lake.xlsx");
}

TEST(Import, ChoicesThatAreSpoiltAreToldAndProposedAnew) {
  Importing t("spoilt");
  const std::string table = t.Table("lake.csv", Visits);
  WriteWholeFile(t.folder / "lake.csv.dat.import", "Choices of an import, version 1\r\n");
  t.Open(table);
  EXPECT_EQ(t.windows.LastText(), "What was chosen for this file last time is of no use now");
  EXPECT_EQ(t.form.txtPreview.text, DataOfVisits);
}

TEST(Import, OtherDataAreNotReplacedUnasked) {
  Importing t("replace");
  const std::string made = t.folder / "lake.csv.dat";
  WriteWholeFile(made, "something else");
  t.Open(t.Table("lake.csv", Visits));
  t.ImportAndSay(Answer::No);
  EXPECT_EQ(ReadWholeFile(made), "something else");
  EXPECT_TRUE(t.form.Visible());
  EXPECT_FALSE(std::filesystem::exists(made + ".import"));
  t.ImportAndSay(Answer::Yes);
  EXPECT_EQ(ReadWholeFile(made), DataOfVisits);
}

TEST(Import, ChoicesThatThisWindowDidNotKeepAreNotReplacedUnasked) {
  Importing t("replace_choices");
  const std::string other = t.folder / "lake.csv.dat.import";
  t.Open(t.Table("lake.csv", Visits));
  WriteWholeFile(other, "my notes");
  t.ImportAndSay(Answer::No);
  EXPECT_THAT(t.windows.LastText(), StartsWith(other + "\r\n\r\nis there already, with other contents."));
  EXPECT_EQ(ReadWholeFile(other), "my notes");
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
  t.ImportAndSay(Answer::Yes);
  EXPECT_THAT(ReadWholeFile(other), StartsWith("Choices of an import"));
}

TEST(Import, ChoicesOfAnEarlierSessionAreReplacedWhenThatIsAnsweredAndThoseOfThisOneUnasked) {
  const std::string table = "Year,Nest,Day,Age,Eggs,Cover\n2023,A,150,-10,5,1.5\n";
  test::Folder folder("import_earlier");
  {
    Importing t("earlier_session");
    WriteWholeFile(folder / "lake.csv", table);
    t.Open(folder / "lake.csv");
    t.Import();
    t.Open(folder / "lake.csv");
    t.desk.SetText(t.form.txtYear, "2023");  // which no row needs, and is kept all the same
    t.desk.SetText(t.form.cboUnknownAge, "unknown age of young");
    t.Import();
    EXPECT_FALSE(t.form.Visible()) << "it was made by this window a moment ago";
  }
  Importing t("this_session");
  t.Open(folder / "lake.csv");
  t.desk.SetText(t.form.cboUnknownAge, "leave the visit out");
  t.ImportAndSay(Answer::No);
  EXPECT_THAT(ReadWholeFile(folder / "lake.csv.dat.import"), HasSubstr("Unknown age: unknown age of young"));
  t.ImportAndSay(Answer::Yes);
  EXPECT_THAT(ReadWholeFile(folder / "lake.csv.dat.import"), HasSubstr("Unknown age: leave the visit out"));
}

TEST(Import, DataAndChoicesThatAreBothThereAlreadyAreAskedAboutInOneQuestion) {
  Importing t("replace_both");
  const std::string made = t.folder / "lake.csv.dat";
  t.Open(t.Table("lake.csv", Visits));
  WriteWholeFile(made, "something else");
  WriteWholeFile(made + ".import", "my notes");
  t.ImportAndSay(Answer::Yes);
  EXPECT_EQ(ReadWholeFile(made), DataOfVisits);
}

TEST(Import, ADataFileThatCannotBeWrittenLeavesTheChoicesOnTheScreen) {
  Importing t("unwritten");
  t.Open(t.Table("lake.csv", Visits));
  std::filesystem::create_directory(t.folder / "lake.csv.dat");
  t.windows.ExpectFailure("frmImport.cmdDone");
  t.Import();
  EXPECT_TRUE(t.form.Visible());
  EXPECT_EQ(t.form.txtPreview.text, DataOfVisits);
  EXPECT_EQ(t.initialize.txtDataInput.text, "");
}

TEST(Import, WhatIsNoTableIsToldInWords) {
  Importing t("no_table");
  t.Open(t.Table("report.pdf", "%PDF-1.7 and so on"));
  EXPECT_FALSE(t.form.Visible());
  EXPECT_THAT(t.windows.LastText(), HasSubstr("a PDF document"));
  EXPECT_EQ(t.windows.toldFailures, 1);
  EXPECT_TRUE(t.initialize.Visible());
}

TEST(Import, TheWindowSaysHowNestsBecomeVisits) {
  Importing t("nests");
  t.Open(t.Table("nests.csv", "id,FirstFound,LastPresent,LastChecked,Fate\nA,1,9,12,1\n"));
  EXPECT_TRUE(t.form.lblNests.visible);
  EXPECT_THAT(t.form.lblNests.text, HasSubstr("visits of one egg"));
  EXPECT_THAT(t.form.lblNests.text, HasSubstr("stands whether it counts as a clutch or as a brood"));
  EXPECT_THAT(t.form.txtRemarks.text,
              HasSubstr("3 visits without a brood age or a hatch day: written as unknown age of eggs"));
  EXPECT_TRUE(t.form.cboUnknownAge.visible);
  t.desk.SetText(t.form.cboUnknownAge, "unknown age of young");
  EXPECT_THAT(t.form.txtPreview.text, HasSubstr("       ?,       1\r\n"));
  t.GiveRole(2, "not used");
  EXPECT_FALSE(t.form.lblNests.visible);
}

TEST(Import, ALongImportShowsHowFarItIsAndCanBeCancelled) {
  Importing t("long");
  std::string text = "Nest,Year,Day,Age,Eggs\n";
  for (int nest = 0; nest < 10000; ++nest) {
    const std::string code = "N" + std::to_string(nest);
    text += code + ",2023,150,-10,5\n" + code + ",2023,151,-9,5\n";
  }
  t.Open(t.Table("lake.csv", text));
  std::string progress;
  bool refused = false;
  t.windows.AtTurn(3, [&] {
    progress = t.form.lblProgress.text;
    refused = !t.desk.Press(t.initialize.cmdDone) && !t.desk.SetText(t.form.cboDelimiter, "tab");
    EXPECT_FALSE(t.desk.Close(t.form));
    EXPECT_TRUE(t.desk.Press(t.form.cmdCancel));
  });
  t.Import();
  EXPECT_THAT(progress, AllOf(StartsWith("Importing..."), HasSubstr(" %")));
  EXPECT_TRUE(refused);
  EXPECT_TRUE(t.form.Visible()) << "the import was cancelled, not the window";
  EXPECT_EQ(t.form.lblProgress.text, "");
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
  t.Import();
  EXPECT_TRUE(std::filesystem::exists(t.folder / "lake.csv.dat"));
}

TEST(Import, WhoQuitsMeanwhileLeavesNoDataFile) {
  Importing t("quit");
  std::string text = "Nest,Year,Day,Age,Eggs\n";
  for (int row = 0; row < 20000; ++row) text += "N" + std::to_string(row) + ",2023,150,-10,5\n";
  t.Open(t.Table("lake.csv", text));
  t.windows.AtTurn(3, [&] { t.desk.Close(t.program.frmMain); });
  t.windows.Yes("Exit Tolvane");
  t.windows.No("What about algorithm data?");
  t.Import();
  EXPECT_EQ(t.windows.exitStatus, 0);
  EXPECT_FALSE(std::filesystem::exists(t.folder / "lake.csv.dat"));
}

TEST(Import, AWorkbookThatIsCancelledWhileItIsReadLeavesEverythingAsItWas) {
  using Moment = std::chrono::steady_clock;
  constexpr auto Promptly = std::chrono::milliseconds(100);
  Importing t("cancelled_workbook");
  t.Open(t.Table("lake.csv", Visits));
  t.Import();
  test::Sheet large{"Visits", {Heading}}, other{"More", {Heading, {"B", "131", "-9", "5"}}};
  for (int row = 0; row < 60000; ++row) large.rows.push_back({"N" + std::to_string(row), "150", "-10", "5"});
  const std::string book = t.folder / "large.xlsx";
  test::WriteNewWorkbook(book, {other, large});
  const std::string chosen = t.initialize.txtDataInput.text;

  Moment::time_point pressed, before;
  Moment::duration longest{};
  const auto cancelAtTurn = [&](int n) {
    const int first = t.windows.turns + 1;
    before = {};
    for (int turn = 1; turn <= n; ++turn)
      t.windows.AtTurn(turn, [&, last = first + n - 1] {
        const auto now = Moment::now();
        if (before != Moment::time_point{}) longest = std::max(longest, now - before);
        before = now;
        if (t.windows.turns < last) return;
        EXPECT_THAT(t.form.lblProgress.text, HasSubstr(" %"));
        EXPECT_TRUE(t.desk.Press(t.form.cmdCancel));
        pressed = Moment::now();
      });
  };

  t.Open(book);  // the sheet that comes first
  const std::string preview = t.form.txtPreview.text;
  cancelAtTurn(30);
  t.desk.SetText(t.form.cboSheet, "Visits");
  EXPECT_LT(Moment::now() - pressed, Promptly);
  EXPECT_EQ(t.form.cboSheet.text, "More") << "the sheet that was there before";
  EXPECT_EQ(t.form.txtPreview.text, preview);
  EXPECT_EQ(t.form.lblProgress.text, "");

  t.desk.SetText(t.form.cboSheet, "Visits");
  cancelAtTurn(30);
  t.Import();
  EXPECT_LT(Moment::now() - pressed, Promptly);
  EXPECT_TRUE(t.form.Visible());
  EXPECT_FALSE(std::filesystem::exists(book + ".dat") || std::filesystem::exists(book + ".dat.import"));

  ASSERT_TRUE(t.desk.Press(t.form.cmdCancel));
  test::WriteNewWorkbook(book, {large});
  cancelAtTurn(30);
  t.Open(book);
  EXPECT_LT(Moment::now() - pressed, Promptly);
  EXPECT_FALSE(t.form.Visible()) << "there is nothing yet to be seen";
  EXPECT_EQ(t.initialize.txtDataInput.text, chosen);
  EXPECT_LT(longest, Promptly) << "between two moments in which it can be cancelled";
}

TEST(Import, AnAnalysisThatSimulatesReadsWhatWasImportedBesideIt) {
  Importing t("simulated");
  t.Open(t.Table("lake.csv", Visits));
  ASSERT_TRUE(t.desk.Choose(t.initialize.optSimulate));
  EXPECT_FALSE(t.desk.Usable(t.initialize.cmdImport));
  t.Import();
  EXPECT_TRUE(t.initialize.optRead.value);
  EXPECT_FALSE(t.initialize.optSimulate.value);
  EXPECT_TRUE(t.initialize.txtDataInput.visible);
}

}  // namespace
}  // namespace merlane
