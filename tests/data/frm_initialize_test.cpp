#include "data/frm_initialize.h"

#include "base/runtime_failure.h"
#include "control/version.h"
#include "data/data_text.h"
#include "data/initialize_help.h"
#include "data/record_layout.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// The form, shown, with a plain form for the menu.
struct Initializing {
  Initializing() {
    form.onDone = [this] { ++done; };
    frmMenu.beginsCommands = true;
    desk.charge.home = &frmMenu;
    desk.Load(frmMenu);
    desk.Show(form);
  }
  /// A data file with a record in each of these years.
  static std::string FileOf(const std::vector<int>& years, int covariates) {
    std::string text = record::Header, values;
    for (int m = 0; m < covariates; ++m) {
      text += ",       Cover";
      values += ",         0.5";
    }
    for (const int year : years)
      text += "\n    " + std::to_string(year) + ",       A,     160,       0,      -?,       5" + values;
    const std::string path = testing::TempDir() + "initialize_lake.dat";
    WriteWholeFile(path, text + "\n");
    return path;
  }
  const Message& LastMessage() const { return host.windows.messages.back(); }
  /// Presses cmdDone and expects this refusal.
  void ExpectRefused(const std::string& title, const std::string& text) {
    const int before = done;
    EXPECT_TRUE(desk.Press(form.cmdDone));
    EXPECT_EQ(done, before);
    ASSERT_FALSE(host.windows.messages.empty());
    EXPECT_EQ(LastMessage().title, title);
    EXPECT_EQ(LastMessage().text, text);
    EXPECT_EQ(LastMessage().style, style::Information);
    EXPECT_TRUE(form.Visible());
  }
  void ExpectDone() {
    const int before = done;
    EXPECT_TRUE(desk.Press(form.cmdDone));
    EXPECT_EQ(done, before + 1) << (host.windows.messages.empty() ? "" : LastMessage().text);
  }

  struct Menu : Form {
    explicit Menu(Desk& d) : Form(d, "frmMenu", "") {}
  };

  test::ScriptedHost host;
  Desk desk{host.Get()};
  FrmMain frmMain{desk};
  Menu frmMenu{desk};
  FrmInitialize form{desk, frmMain};
  int done = 0;
};

TEST(FrmInitialize, ItsLoadTakesTheMenuAwayAndNamesTheProgram) {
  Initializing t;
  EXPECT_FALSE(t.frmMenu.TakesInput());
  EXPECT_EQ(t.frmMain.title, "Merlane Survival Estimation Model: Version" + std::string(Version()));
  EXPECT_EQ(t.form.title, "Initialize Merlane Survival Model (Version" + std::string(Version()) + ")");
  EXPECT_EQ(t.form.lblObjective.text, "Objective function is -2lnL");
}

TEST(FrmInitialize, BeginsWithReadingAndItsDefaults) {
  Initializing t;
  EXPECT_TRUE(t.form.optRead.value);
  EXPECT_FALSE(t.form.optSimulate.value);
  EXPECT_TRUE(t.form.cmdLoadData.enabled);
  EXPECT_TRUE(t.form.txtDataInput.readOnly);
  EXPECT_EQ(t.form.txtDataInput.text, "");
  EXPECT_EQ(t.form.cboBroodCovs.text, "0");
  EXPECT_EQ(t.form.cboFormat.text, "O");
  EXPECT_EQ(t.form.cboStartYear.text, "1995");
  EXPECT_EQ(t.form.cboEndYear.text, "1995");
  EXPECT_EQ(t.form.cboMinInitBroodSize.text, "10");
  EXPECT_EQ(t.form.cboMaxInitBroodSize.text, "20");
  EXPECT_EQ(t.form.cboInitBroodAge.text, "0");
  EXPECT_EQ(t.form.cboFinalBroodAge.text, "30");
  EXPECT_EQ(t.form.cboNClutchesBroods.text, "20");
  EXPECT_EQ(t.form.cboMinHatchDay.text, "0");
  EXPECT_EQ(t.form.cboMaxHatchDay.text, "0");
  EXPECT_EQ(t.form.cboSampFreq1.text, "1");
  EXPECT_EQ(t.form.cboSampFreq2.text, "1");
  EXPECT_FALSE(t.form.cboFormat.visible);
  EXPECT_FALSE(t.form.cboNClutchesBroods.visible);
  EXPECT_TRUE(t.form.chkCensorEggs.visible && t.form.cboStartYear.visible);
}

TEST(FrmInitialize, TheListsOfferWhatIsUsual) {
  Initializing t;
  EXPECT_EQ(t.form.cboBroodCovs.items.size(), 51u);
  EXPECT_EQ(t.form.cboBroodCovs.items.back(), "50");
  EXPECT_THAT(t.form.cboFormat.items, ElementsAre("O", "A"));
  EXPECT_EQ(t.form.cboStartYear.items.front(), "1980");
  EXPECT_EQ(t.form.cboEndYear.items.back(), "2010");
  EXPECT_THAT(t.form.cboMinInitBroodSize.items,
              ElementsAre("1", "2", "5", "10", "15", "20", "25", "30", "35", "40", "45", "50"));
  EXPECT_EQ(t.form.cboMaxInitBroodSize.items, t.form.cboMinInitBroodSize.items);
  EXPECT_THAT(t.form.cboInitBroodAge.items, ElementsAre("-20", "-10", "-5", "-1", "0", "1", "5", "10"));
  EXPECT_THAT(t.form.cboFinalBroodAge.items, ElementsAre("1", "2", "5", "10", "20", "25", "40", "50", "100"));
  EXPECT_THAT(t.form.cboNClutchesBroods.items,
              ElementsAre("1", "2", "5", "10", "20", "25", "40", "50", "100", "200", "400", "500", "1000", "2000"));
  EXPECT_EQ(t.form.cboMinHatchDay.items.size(), 19u);
  EXPECT_EQ(t.form.cboMaxHatchDay.items.back(), "360");
  EXPECT_EQ(t.form.cboSampFreq2.items.size(), 20u);
}

TEST(FrmInitialize, SimulatingHidesWhatBelongsToReadingAndSetsTheYearsTo1) {
  Initializing t;
  t.host.windows.File("/data/lake.dat");
  t.desk.Press(t.form.cmdLoadData);
  t.desk.SetText(t.form.cboBroodCovs, "3");
  t.desk.SetText(t.form.cboFormat, "A");
  EXPECT_TRUE(t.desk.Choose(t.form.optSimulate));
  EXPECT_FALSE(t.form.cmdLoadData.enabled);
  for (const Control* control : std::initializer_list<const Control*>{
           &t.form.lblBroodCovs, &t.form.cboBroodCovs, &t.form.lblFormat, &t.form.cboFormat, &t.form.cboStartYear,
           &t.form.cboEndYear, &t.form.lblStartYear, &t.form.lblEndYear, &t.form.chkCensorEggs, &t.form.chkCensorJuvs,
           &t.form.lblDataInput, &t.form.txtDataInput})
    EXPECT_FALSE(control->visible) << control->name;
  for (const Control* control : std::initializer_list<const Control*>{
           &t.form.fraSims, &t.form.cboMinInitBroodSize, &t.form.cboMaxInitBroodSize, &t.form.cboInitBroodAge,
           &t.form.cboFinalBroodAge, &t.form.cboNClutchesBroods, &t.form.cboMinHatchDay, &t.form.cboMaxHatchDay,
           &t.form.cboSampFreq1, &t.form.cboSampFreq2})
    EXPECT_TRUE(control->visible) << control->name;
  const Initialisation c = t.form.Choices();
  EXPECT_TRUE(c.Simulate);
  EXPECT_EQ(c.NCov, 0);
  EXPECT_EQ(c.CovariateFormat, "O");
  EXPECT_EQ(c.FirstYear, 1);
  EXPECT_EQ(c.LastYear, 1);
  EXPECT_EQ(c.DataFileName, "");
  t.ExpectDone();
}

TEST(FrmInitialize, ReadingAgainShowsWhatBelongsToItButTheYearsStay1AndTheFileEmpty) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.Choose(t.form.optRead);
  EXPECT_TRUE(t.form.cmdLoadData.enabled && t.form.cboBroodCovs.visible && t.form.chkCensorJuvs.visible);
  EXPECT_FALSE(t.form.cboFormat.visible || t.form.fraSims.visible || t.form.cboSampFreq1.visible);
  EXPECT_EQ(t.form.cboStartYear.text, "1");
  EXPECT_EQ(t.form.cboEndYear.text, "1");
  t.ExpectRefused("Missing input", "Please choose a data file");
}

TEST(FrmInitialize, Typing51CovariatesTurnsThemTo0) {
  Initializing t;
  t.desk.SetText(t.form.cboBroodCovs, "50");
  EXPECT_TRUE(t.form.cboFormat.visible && t.form.lblFormat.visible);
  t.desk.SetText(t.form.cboFormat, "a");
  EXPECT_EQ(t.form.cboFormat.text, "A");
  t.desk.SetText(t.form.cboBroodCovs, "51");
  EXPECT_EQ(t.form.cboBroodCovs.text, "0");
  EXPECT_FALSE(t.form.cboFormat.visible || t.form.lblFormat.visible);
  EXPECT_EQ(t.form.cboFormat.text, "O");
  t.desk.SetText(t.form.cboBroodCovs, "-1");
  EXPECT_EQ(t.form.cboBroodCovs.text, "0");
}

TEST(FrmInitialize, WithoutCovariatesTheFormatIsHiddenAndIsO) {
  Initializing t;
  t.desk.SetText(t.form.cboBroodCovs, "2");
  t.desk.SetText(t.form.cboFormat, "A");
  t.desk.SetText(t.form.cboBroodCovs, "none");
  EXPECT_FALSE(t.form.cboFormat.visible);
  EXPECT_EQ(t.form.Choices().CovariateFormat, "O");
  EXPECT_EQ(t.form.Choices().NCov, 0);
}

TEST(FrmInitialize, AnotherNumberOfCovariatesLeavesTheirFormat) {
  Initializing t;
  t.desk.SetText(t.form.cboBroodCovs, "2");
  t.desk.SetText(t.form.cboFormat, "A");
  t.desk.SetText(t.form.cboBroodCovs, "3");
  EXPECT_EQ(t.form.cboFormat.text, "A");
}

TEST(FrmInitialize, AnyOtherFormatBecomesO) {
  Initializing t;
  t.desk.SetText(t.form.cboBroodCovs, "2");
  for (const char* typed : {"x", "", "anomaly"}) {
    t.desk.SetText(t.form.cboFormat, typed);
    EXPECT_EQ(t.form.cboFormat.text, "O");
  }
}

TEST(FrmInitialize, AMaximumHatchDayOf366Becomes0AndThenTheLastTestMayFail) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboMinHatchDay, "150");
  t.desk.SetText(t.form.cboMaxHatchDay, "366");
  EXPECT_EQ(t.form.cboMaxHatchDay.text, "0");
  t.ExpectRefused("Bad input", "Please choose a maximum hatch day >= the minimum hatch day");
  t.desk.SetText(t.form.cboMaxHatchDay, "365");
  t.ExpectDone();
  t.desk.SetText(t.form.cboMinHatchDay, "-1");
  EXPECT_EQ(t.form.cboMinHatchDay.text, "0");
}

TEST(FrmInitialize, TickingBothCensorBoxesIsNotPossible) {
  Initializing t;
  t.desk.Tick(t.form.chkCensorEggs, true);
  t.desk.Tick(t.form.chkCensorJuvs, true);
  EXPECT_FALSE(t.form.chkCensorEggs.value);
  EXPECT_TRUE(t.form.Choices().CensorJuvs);
  t.desk.Tick(t.form.chkCensorEggs, true);
  EXPECT_FALSE(t.form.chkCensorJuvs.value);
  t.desk.Tick(t.form.chkCensorEggs, false);
  EXPECT_FALSE(t.form.chkCensorEggs.value || t.form.chkCensorJuvs.value);
}

TEST(FrmInitialize, AFileIsChosenInADialogThatOffersDataFilesFirst) {
  Initializing t;
  t.host.windows.File("/data/lake.dat", "Load brood survival data file");
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_EQ(t.form.txtDataInput.text, "/data/lake.dat");
  EXPECT_EQ(t.form.focus, &t.form.cmdDone);
  const FileRequest& request = t.host.windows.files.back();
  EXPECT_EQ(request.filter,
            "All Files (*.*)|*.*|Original text and EXCEL data files (*.dat;*.xls)|*.dat;*.xls|Original text data files "
            "(*.dat)|*.dat|Original EXCEL data files (*.xls)|*.xls|Simulated text data Files (*.sim)|*.sim|"
            "Tables to import (*.csv;*.tsv;*.txt;*.xlsx;*.xls)|*.csv;*.tsv;*.txt;*.xlsx;*.xls");
  EXPECT_EQ(request.filterIndex, 2);
  EXPECT_EQ(request.kind, FileRequest::Kind::Open);
  t.host.windows.CancelFile();
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_EQ(t.form.txtDataInput.text, "/data/lake.dat") << "cancel changes nothing";
  t.ExpectDone();
  EXPECT_EQ(t.form.Choices().DataFileName, "/data/lake.dat");
}

TEST(FrmInitialize, SaysWhatTheFileHoldsAndFitsItselfWhenThatIsPressed) {
  Initializing t;
  EXPECT_FALSE(t.form.lblFileHolds.visible || t.form.cmdFit.visible);
  t.host.windows.File(t.FileOf({2019, 2023}, 2));
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_EQ(t.form.lblFileHolds.text, "The file holds years 2019 to 2023 and 2 covariates.");
  EXPECT_EQ(t.form.cboStartYear.text + t.form.cboEndYear.text + t.form.cboBroodCovs.text, "199519950")
      << "the defaults stay until somebody presses";
  ASSERT_TRUE(t.desk.Press(t.form.cmdFit));
  EXPECT_EQ(t.form.cboStartYear.text, "2019");
  EXPECT_EQ(t.form.cboEndYear.text, "2023");
  EXPECT_EQ(t.form.cboBroodCovs.text, "2");
  EXPECT_TRUE(t.form.cboFormat.visible);
}

TEST(FrmInitialize, SaysNothingOfAFileThatCannotBeLookedAt) {
  Initializing t;
  for (const std::string path :
       {"/nowhere.dat", MERLANE_TEST_INPUTS_DIR "/workbooks/lake.xls", "/dev/zero", MERLANE_TEST_INPUTS_DIR}) {
    t.host.windows.File(path);
    t.desk.Press(t.form.cmdLoadData);
    EXPECT_FALSE(t.form.lblFileHolds.visible || t.form.cmdFit.visible) << path;
  }
}

TEST(FrmInitialize, AFileOfAnotherKindIsToldAndNothingIsOfferedToFitTo) {
  Initializing t;
  const std::string path = testing::TempDir() + "initialize_table.csv";
  WriteWholeFile(path, "Year,Code,DofY,HatchDay,BroodAge,#EorJ\n1995,A,160,0,-?,5\n");
  t.host.windows.File(path);
  std::string chosen;
  t.form.onChosen = [&](const std::string& file) { chosen = file; };
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_THAT(t.form.lblFileHolds.text, HasSubstr("may be another kind of file"));
  EXPECT_TRUE(t.form.lblFileHolds.visible);
  EXPECT_FALSE(t.form.cmdFit.visible);
  EXPECT_EQ(chosen, path);
}

TEST(FrmInitialize, WhatWasChosenForAFileLastTimeIsOfferedAgain) {
  Initializing t;
  const std::string path = t.FileOf({2019, 2023}, 2);
  t.host.windows.File(path);
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_FALSE(t.form.cmdLastTime.visible);
  t.desk.SetText(t.form.cboStartYear, "2019");
  t.desk.SetText(t.form.cboEndYear, "2020");
  t.desk.SetText(t.form.cboBroodCovs, "1");
  t.desk.SetText(t.form.cboFormat, "A");
  t.desk.Tick(t.form.chkCensorJuvs, true);
  t.ExpectDone();
  t.desk.Unload(t.form);
  t.desk.Show(t.form);
  EXPECT_FALSE(t.form.lblLastTime.visible);
  t.host.windows.File(path);
  t.desk.Press(t.form.cmdLoadData);
  EXPECT_EQ(t.form.lblLastTime.text,
            "Chosen last time: years 2019 to 2020, 1 covariate as anomalies, juveniles censored.");
  EXPECT_EQ(t.form.cboStartYear.text, "1995");
  ASSERT_TRUE(t.desk.Press(t.form.cmdLastTime));
  const Initialisation c = t.form.Choices();
  EXPECT_EQ(c.FirstYear, 2019);
  EXPECT_EQ(c.LastYear, 2020);
  EXPECT_EQ(c.NCov, 1);
  EXPECT_EQ(c.CovariateFormat, "A");
  EXPECT_TRUE(c.CensorJuvs);
}

TEST(FrmInitialize, AFileToBeImportedIsAskedForWithTheFileChosenBefore) {
  Initializing t;
  std::string asked;
  t.form.onImport = [&](const std::string& path) { asked = path; };
  t.host.windows.CancelFile("Import data");
  t.desk.Press(t.form.cmdImport);
  EXPECT_EQ(asked, "");
  t.form.txtDataInput.text = "/data/lake.csv";
  t.host.windows.File("/data/lake.csv", "Import data");
  t.desk.Press(t.form.cmdImport);
  EXPECT_EQ(asked, "/data/lake.csv");
  EXPECT_EQ(t.host.windows.files.back().startName, "/data/lake.csv");
  t.desk.Choose(t.form.optSimulate);
  EXPECT_FALSE(t.desk.Usable(t.form.cmdImport));
}

TEST(FrmInitialize, TheYearsAreTestedBeforeTheFile) {
  Initializing t;
  t.desk.SetText(t.form.cboStartYear, "1996");
  t.ExpectRefused("Problem with your choice of years", "The first year of data exceeds the last year of data");
  t.desk.SetText(t.form.cboEndYear, "1998");
  t.ExpectRefused("Missing input", "Please choose a data file");
  EXPECT_EQ(t.form.Choices().FirstYear, 1996);
  EXPECT_EQ(t.form.Choices().LastYear, 1998);
}

TEST(FrmInitialize, NoBroodsToSimulateAreRefusedWithAMessageOnBroodSize) {
  for (ComboBox FrmInitialize::*box :
       {&FrmInitialize::cboMinInitBroodSize, &FrmInitialize::cboMaxInitBroodSize, &FrmInitialize::cboNClutchesBroods}) {
    Initializing t;
    t.desk.Choose(t.form.optSimulate);
    t.desk.SetText(t.form.*box, "0");
    t.ExpectRefused("Bad input", "Please choose non-zero values for brood size and (or) final brood age");
  }
}

TEST(FrmInitialize, ATextThatIsNoNumberAmongSizesAndBroodsFails) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboNClutchesBroods, "many");
  t.host.windows.ExpectFailure("many");
  t.desk.Press(t.form.cmdDone);
  EXPECT_EQ(t.done, 0);
  EXPECT_TRUE(t.form.Visible() && t.form.TakesInput());
}

TEST(FrmInitialize, SizesInTheWrongOrderAreRefusedWithAMessageOnHatchDays) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboMinInitBroodSize, "25");
  t.ExpectRefused("Bad input", "Please choose a maximum hatch day >= the minimum hatch day");
  t.desk.SetText(t.form.cboMaxInitBroodSize, "25");
  t.ExpectDone();
}

TEST(FrmInitialize, VisitIntervalsMayNotDecreaseAndNotBe0) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboSampFreq1, "3");
  t.ExpectRefused("Bad input",
                  "Please assure simulated clutch/brood visitation intervals don't decrease from left to right");
  t.desk.SetText(t.form.cboSampFreq1, "0");
  t.ExpectRefused("Bad input", "Please assure simulated clutch/brood visitation intervals are greater than zero");
  t.desk.SetText(t.form.cboSampFreq1, "1");
  t.ExpectDone();
}

TEST(FrmInitialize, ASamplingFrequencyOfFourTenthsRoundsTo0) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboSampFreq1, "0");
  t.desk.SetText(t.form.cboSampFreq2, "0.4");
  t.ExpectRefused("Bad input", "Please assure simulated clutch/brood visitation intervals are greater than zero");
  t.desk.SetText(t.form.cboSampFreq1, "1");
  t.ExpectRefused("Bad input",
                  "Please assure simulated clutch/brood visitation intervals don't decrease from left to right");
}

TEST(FrmInitialize, TheSettingsOfTheSimulatorAreHandedOverRounded) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboMinInitBroodSize, "4");
  t.desk.SetText(t.form.cboMaxInitBroodSize, "9");
  t.desk.SetText(t.form.cboInitBroodAge, "-12.5");
  t.desk.SetText(t.form.cboFinalBroodAge, "40 days");
  t.desk.SetText(t.form.cboNClutchesBroods, "150");
  t.desk.SetText(t.form.cboMinHatchDay, "140");
  t.desk.SetText(t.form.cboMaxHatchDay, "160");
  t.desk.SetText(t.form.cboSampFreq1, "3");
  t.desk.SetText(t.form.cboSampFreq2, "7");
  t.ExpectDone();
  const Initialisation c = t.form.Choices();
  EXPECT_EQ(c.simulator.MinInitSize, 4);
  EXPECT_EQ(c.simulator.MaxInitSize, 9);
  EXPECT_EQ(c.simulator.InitAge, -12);
  EXPECT_EQ(c.simulator.FinalAge, 40);
  EXPECT_EQ(c.simulator.MinHatchDay, 140);
  EXPECT_EQ(c.simulator.MaxHatchDay, 160);
  EXPECT_EQ(c.simulator.SampFreq1, 3);
  EXPECT_EQ(c.simulator.SampFreq2, 7);
  EXPECT_EQ(c.SimulatedBroods, 150);
}

TEST(FrmInitialize, AFailureBehindSoundChoicesLeavesTheFormUsable) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.form.onDone = [] { throw RuntimeFailure("no room"); };
  t.host.windows.ExpectFailure("no room");
  t.desk.Press(t.form.cmdDone);
  EXPECT_TRUE(t.desk.Usable(t.form.cmdDone));
  EXPECT_EQ(t.form.cboNClutchesBroods.text, "20");
}

TEST(FrmInitialize, CancelAndTheFrameGoBackToTheMenu) {
  Initializing cancelled, closed;
  cancelled.desk.Press(cancelled.form.cmdCancel);
  EXPECT_TRUE(cancelled.frmMenu.Visible());
  EXPECT_TRUE(cancelled.frmMenu.TakesInput());
  EXPECT_FALSE(cancelled.form.Loaded());
  closed.desk.Close(closed.form);
  EXPECT_TRUE(closed.frmMenu.Visible());
  EXPECT_FALSE(closed.form.Loaded());
}

TEST(FrmInitialize, ANewLoadBeginsWithTheDefaults) {
  Initializing t;
  t.desk.Choose(t.form.optSimulate);
  t.desk.SetText(t.form.cboNClutchesBroods, "5");
  t.desk.Unload(t.form);
  t.desk.Show(t.form);
  EXPECT_TRUE(t.form.optRead.value);
  EXPECT_EQ(t.form.cboStartYear.text, "1995");
  EXPECT_EQ(t.form.cboNClutchesBroods.text, "20");
  EXPECT_FALSE(t.form.fraSims.visible);
}

TEST(FrmInitialize, ToolTipsSayWhatTheChoicesDo) {
  Initializing t;
  EXPECT_EQ(t.form.chkCensorEggs.toolTip,
            "Check this box to ignore all egg records in the data file (hatch day record not ignored)");
  EXPECT_EQ(t.form.lblFormat.toolTip,
            "Choose how to treat the brood covariate data series (i.e., use the (O)riginal, perhaps categorical, data "
            "or transform it to a standard (A)nomaly from the mean)");
  EXPECT_EQ(t.form.optSimulate.toolTip,
            "Simulate new data based on the values for parameters 1 to 42 in the algorithm data");
  EXPECT_EQ(t.form.cmdDone.toolTip, "Continue with analysis or simulation");
}

TEST(InitializeHelp, TheFormatNamesLimitsSortingAndWorkbooks) {
  EXPECT_THAT(
      DataFormatHelp(),
      AllOf(HasSubstr("\r\nNote that the program has a limit of 32000 visits to a single brood and 32000 "
                      "broods per year.\r\n"),
            HasSubstr("Sort the records by year, then code, then day."), HasSubstr("EXCEL"), HasSubstr("decribed")));
  EXPECT_THAT(ModelHelp(), AllOf(HasSubstr("Weibull"), HasSubstr("beta-binomial"), HasSubstr("simulate")));
}

TEST(InitializeHelp, TheExampleCanBeReadAsItStands) {
  test::Reading reading(1995, 1996, 3);
  const BroodData& d = reading.Of(ExampleData()).data;
  EXPECT_EQ(d.TotalRecords, 12);
  EXPECT_EQ(d.Broods(), 4);
  EXPECT_TRUE(reading.messages.empty());
  for (std::size_t b = 0; b < 4; ++b)
    for (int v = d.FirstVisit[b]; v < d.FirstVisit[b] + d.VisitsOf[b]; ++v) {
      const auto i = static_cast<std::size_t>(v);
      EXPECT_EQ(d.VisitAge[i], d.VisitDate[i] - d.HatchDate[b]) << "ages count from the hatch day";
    }
}

}  // namespace
}  // namespace merlane
