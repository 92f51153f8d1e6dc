// Plots of the fit, behind a results summary.
#include <gmock/gmock.h>

#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr const char* Title = "Data and prediction plots";

struct DetailPlotsTest : ::testing::Test, Analysis {
  FrmXyPlot& plot = program.frmXYPlot;
  std::vector<std::string> pages;

  void Summary(Answer listing = Answer::Yes) {
    windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
    windows.Reply(listing, "Choose among output options");
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  }
  /// A summary of two years, and the answers up to the plots of the first of them.
  void AnswerUpToTheFirstOfTwoYears() {
    Initialize({.path = Golden("covariates_original.dat"), .endYear = "1996", .covariates = "3"});
    LoadAlg(Golden("covariates_original.alg"));
    Summary();
    windows.No(Title);
    windows.Yes(Title);
    windows.Yes(Title);
  }
  /// When the program next waits for a page: notes it and goes to the next one, or quits the plots.
  void AtPage(bool next) {
    windows.AtWait([this, next] {
      pages.push_back(plot.lblPage.text);
      EXPECT_TRUE(desk.Press(next ? plot.cmdNext_Page : plot.cmdCancel));
    });
  }
  std::vector<std::string> Questions() const {
    std::vector<std::string> texts;
    for (const Message& message : windows.messages)
      if (message.title == Title) texts.push_back(message.text);
    return texts;
  }
};

TEST_F(DetailPlotsTest, CancelAtTheOutputOptionsInvokesThePlotsBehindTheSummary) {
  Ready("juveniles_only");
  windows.Enter("1");
  windows.Reply(Answer::Cancel, "Choose among output options");
  windows.No(Title);
  windows.No(Title);
  desk.Press(menu.cmdUserSummary);
  EXPECT_THAT(Questions(), ElementsAre("Do you want to see detailed data plots for each brood?",
                                       "Do you want to see annual summary plots for all broods?"));
  EXPECT_TRUE(program.frmSummary.Visible());
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(DetailPlotsTest, PlotsAreReachedFromTheSummaryBehindAListing) {
  Ready("juveniles_only");
  Summary();
  EXPECT_THAT(Questions(), SizeIs(0));
  windows.No(Title);
  windows.No(Title);
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_THAT(Questions(), SizeIs(2));
}

TEST_F(DetailPlotsTest, BroodsArePagedThroughUntilPlotsAreQuit) {
  Ready("juveniles_only");
  Summary();
  windows.Yes(Title);  // each brood
  windows.Yes(Title);  // the first
  AtPage(true);
  windows.No(Title);   // the second
  windows.Yes(Title);  // the third
  AtPage(false);
  windows.No(Title);  // annual summaries
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_THAT(pages, ElementsAre("Page:  C00001 1995", "Page:  C00003 1995"));
  EXPECT_THAT(Questions(), ElementsAre("Do you want to see detailed data plots for each brood?",
                                       "Do you want to see plots for mother C00001 1995?",
                                       "Do you want to see plots for mother C00002 1995?",
                                       "Do you want to see plots for mother C00003 1995?",
                                       "Do you want to see annual summary plots for all broods?"));
}

TEST_F(DetailPlotsTest, CancelAsksAboutNoMoreBroods) {
  Ready("juveniles_only");
  Summary();
  windows.Yes(Title);
  windows.Reply(Answer::Cancel, Title);
  windows.No(Title);
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_THAT(Questions(), SizeIs(3));
}

TEST_F(DetailPlotsTest, YearsArePagedThroughAndThenAllOfThem) {
  AnswerUpToTheFirstOfTwoYears();
  AtPage(true);
  windows.Yes(Title);
  AtPage(true);
  windows.Yes(Title);
  AtPage(true);
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_THAT(pages, ElementsAre("Page:  Brood summaries for 1995", "Page:  Brood summaries for 1996",
                                 "Page:  Brood summaries for ALL YEARS"));
  EXPECT_THAT(Questions(), Contains("Do you want to see plots for year 1996?"));
  EXPECT_THAT(Questions(), Contains("Do you want to see plots for all years combined?"));
}

TEST_F(DetailPlotsTest, QuittingAYearEndsTheAnnualPages) {
  AnswerUpToTheFirstOfTwoYears();
  AtPage(false);
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_THAT(pages, SizeIs(1));
}

TEST_F(DetailPlotsTest, SummaryCanBeReadButNotUsedWhileAPageIsOpen) {
  Ready("juveniles_only");
  Summary();
  windows.No(Title);
  windows.Yes(Title);
  windows.Yes(Title);
  windows.AtWait([this] {
    EXPECT_TRUE(program.frmSummary.Visible());
    EXPECT_FALSE(desk.Usable(program.frmSummary.cmdBootstrap));
    EXPECT_FALSE(desk.Close(program.frmSummary));
    EXPECT_FALSE(menu.Visible() || ApplicationMenuUsable());
    EXPECT_TRUE(desk.Close(plot)) << "by its frame: another page is wanted";
  });
  windows.No(Title);
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_TRUE(desk.Usable(program.frmSummary.cmdBootstrap));
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(DetailPlotsTest, ColumnOfMissingValuesPlotsAnEmptyPageAndNothingFails) {
  Ready("eggs_only");
  Summary();
  windows.Yes(Title);
  windows.Yes(Title);
  windows.AtWait([this] {
    ASSERT_TRUE(desk.Select(plot.listYVar, 3));  // juveniles
    const std::size_t before = plot.picGraph.drawing.items.size();
    desk.Press(plot.cmdPlot);
    EXPECT_EQ(plot.picGraph.drawing.items.size(), before + 1) << "the dashed line of Y = 0";
    desk.Press(plot.cmdCancel);
  });
  windows.No(Title);
  desk.Press(program.frmSummary.cmdPlots);
}

TEST_F(DetailPlotsTest, PageThatFailsGivesTheSummaryBack) {
  Ready("juveniles_only");
  Summary();
  program.model.Evaluated().best.VisitDeviance.assign(program.model.data.VisitAge.size(), 2000);
  windows.No(Title);
  windows.Yes(Title);
  windows.Yes(Title);
  windows.ExpectFailure("division by zero");
  desk.Press(program.frmSummary.cmdPlots);
  EXPECT_TRUE(desk.Usable(program.frmSummary.cmdPlots));
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(DetailPlotsTest, SimulatedCountsArePlottedBehindTheListingThatSimulates) {
  Ready("juveniles_only");
  Summary(Answer::No);
  windows.Yes(Title);
  windows.Yes(Title);
  windows.AtWait([this] {
    desk.Select(plot.listYVar, 12);
    desk.Press(plot.cmdPlot);
    EXPECT_NE(plot.lblCorr.text, "");
    desk.Press(plot.cmdCancel);
  });
  windows.No(Title);
  desk.Press(program.frmSummary.cmdPlots);
}

TEST_F(DetailPlotsTest, SimulatedDataHaveNeitherPlotsNorABootstrap) {
  InitializeSimulation();
  LoadAlg(Golden("spanning_mixture.alg"));
  desk.Press(menu.cmdUserSummary);
  ASSERT_TRUE(program.frmSummary.Visible());
  EXPECT_FALSE(program.frmSummary.cmdPlots.visible || program.frmSummary.cmdBootstrap.visible);
}

}  // namespace
}  // namespace merlane
