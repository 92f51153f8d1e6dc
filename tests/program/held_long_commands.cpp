#include "program/held_long_commands.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "base/number_text.h"
#include "platform/files.h"
#include "results/detail_series.h"

namespace merlane::test {
namespace {

using ::testing::ElementsAreArray;

/// Finishes the window for which a command waits.
void FinishWaiting(Program& program) {
  Button* const buttons[] = {&program.frmAlgo.cmdFinish, &program.frmDistPlot.cmdDone, &program.frmBivarPlot.cmdDone};
  for (Button* button : buttons)
    if (button->form.Visible() && program.desk.Press(*button)) return;
  throw EndProgram{};
}

/// All numbers of a series.
std::vector<std::vector<double>> Numbers(const std::optional<ConfidenceSeries>& series) {
  std::vector<std::vector<double>> numbers;
  if (!series) return numbers;
  const ConfidenceSeries& s = *series;
  for (const Array1<double>* column :
       {&s.ProfileX, &s.ProfileF, &s.ProfilePDF, &s.ProfileNormal, &s.ProfileCIMode, &s.ProfileCIMean, &s.ProfileCum})
    numbers.emplace_back(column->begin(), column->end());
  numbers.push_back({s.ModeValue, s.ExpectedValue, s.EstimatedDiff, s.EstimatedSE});
  return numbers;
}

std::vector<double> Numbers(const Matrix1<double>& matrix) {
  std::vector<double> numbers;
  for (int i = 1; i <= matrix.Rows(); ++i)
    for (int j = 1; j <= matrix.Columns(); ++j) numbers.push_back(matrix(i, j));
  return numbers;
}

std::vector<std::vector<double>> Numbers(const std::optional<BivariateDensity>& density) {
  std::vector<std::vector<double>> numbers;
  if (!density) return numbers;
  const BivariateDensity& d = *density;
  numbers.emplace_back(d.X.begin(), d.X.end());
  numbers.emplace_back(d.Y.begin(), d.Y.end());
  numbers.push_back(Numbers(d.f));
  numbers.push_back({d.fmax, d.peakX, d.peakY});
  return numbers;
}

/// What stands in the files that may have been saved under these names.
std::map<std::string, std::string> Saved(const std::vector<Reply>& replies) {
  std::map<std::string, std::string> files;
  for (const Reply& reply : replies)
    for (const char* extension : {"", ".bpv", ".bse"}) {
      const std::string path = reply.text.value_or("") + extension;
      if (std::filesystem::is_regular_file(path)) files[path] = ReadWholeFile(path);
    }
  return files;
}

/// The replies of an evaluation without the rounds of questions that led to nothing but the next.
std::vector<Reply> LastRound(std::vector<Reply> replies) {
  const auto asks = [](const char* part) {
    return [part](const Reply& reply) { return reply.question.find(part) != std::string::npos; };
  };
  const auto first = std::ranges::find_if(replies, asks("Choose the parameter number"));
  auto begun = first;  // the last round
  for (const char* again : {"step size of zero; please try again", "Required number of function calls exceeds"})
    begun = std::max(begun, std::find_if(replies.rbegin(), replies.rend(), asks(again)).base());
  replies.erase(first, begun);
  return replies;
}

/// Which files of another bootstrap are replaced is not the same in another folder.
std::vector<std::string> WithoutReplaced(std::vector<std::string> questions) {
  std::erase_if(questions, [](const std::string& q) { return q.find("Data files of another bootstrap") != q.npos; });
  return questions;
}

}  // namespace

bool Doing::Asked(const std::string& part) const {
  return std::ranges::any_of(replies,
                             [&part](const Reply& reply) { return reply.question.find(part) != std::string::npos; });
}

std::vector<std::string> Doing::Questions() const {
  std::vector<std::string> questions;
  for (const Reply& reply : replies) questions.push_back(reply.question);
  return questions;
}

void HeldLongCommands::Before() {
  before_ = Whereabouts::Of(walked_);
  summaryBefore_ = walked_.frmSummary.rtbOut.text;
  evaluationBefore_ = walked_.evaluation;
  if (!walked_.frmRank.Loaded()) entries_.clear();  // their numbers begin anew
}

void HeldLongCommands::Behind(const Doing& step) {
  for (const Reply& reply : step.replies)
    if (!step.failed && reply.question.starts_with("Enter constant: ")) constantEntered_ = reply;
  if (!before_) return;
  const bool whole = !step.failed && !step.anythingBeside;
  if (step.control == "frmMenu.cmdUserSummary") {
    summary_.reset();
    if (whole && walked_.frmSummary.rtbOut.text != summaryBefore_) summary_ = Summary{*before_, step.replies};
  }
  if (step.failed) return;
  if (step.control == "frmParEvals.cmdML") CompareEvaluation(step, &FrmParEvals::cmdML, &Program::frmMaxLike);
  if (step.control == "frmParEvals.cmdBP") CompareEvaluation(step, &FrmParEvals::cmdBP, &Program::frmBayesian);
  const std::vector<Competitor>& rows = walked_.frmRank.Models().entered;
  if (step.control == "frmRank.cmdAICc" && !rows.empty()) entries_.insert_or_assign(rows.back().RankOrder, *before_);
  if (step.control == "frmRank.cmdRank") CompareRanking(false);
  if (step.control == "frmRank.cmdAverage") CompareRanking(true);
  if (step.control == "frmSummary.cmdPlots" && !step.Asked("is not the present fit")) ComparePlots();
  if (step.control == "frmSummary.cmdBootstrap" && whole) CompareBootstrap(step);
}

void HeldLongCommands::CompareEvaluation(const Doing& step, Button FrmParEvals::*button,
                                         FrmDistributionTable Program::*table) {
  const Evaluation& last = walked_.evaluation;
  // What is shown once more has been compared; who interrupts would have to do it once more at the same turn.
  if (!last.series || Numbers(last.series) == Numbers(evaluationBefore_.series) || step.Asked("Interrupt received"))
    return;
  Whereabouts there = *before_;
  AlgorithmData& a = there.algorithm;
  // Values and steps can be edited on the way.
  a.Value = last.of.Value;
  a.Step = last.of.Step;
  a.Fuse = last.of.Fuse;
  a.FileFreq = 0;
  FreshProgram fresh(there);
  Program& program = fresh.program;
  if (evaluationBefore_.ReferenceReading == walked_.state.reading) {
    program.evaluation.ReferenceF = evaluationBefore_.ReferenceF;
    program.evaluation.ReferenceReading = program.state.reading;
  }
  const std::vector<Reply> replies = LastRound(step.replies);
  fresh.windows.replies.assign(replies.begin(), replies.end());
  fresh.windows.onWait = [&program] { FinishWaiting(program); };
  EXPECT_TRUE(program.desk.Press(program.frmMenu.cmdParEstimate));
  EXPECT_TRUE(program.desk.Press(program.frmParEvals.*button));
  EXPECT_EQ(Numbers(last.series), Numbers(program.evaluation.series)) << step.control;
  EXPECT_EQ(Numbers(last.bivariate), Numbers(program.evaluation.bivariate)) << step.control;
  EXPECT_EQ((walked_.*table).rtbTable.text, (program.*table).rtbTable.text) << step.control;
  tally_.Count(button == &FrmParEvals::cmdML ? "likelihood profile" : "posterior");
}

void HeldLongCommands::EnterRow(FreshProgram& fresh, const Competitor& row) const {
  Program& program = fresh.program;
  FrmRank& form = program.frmRank;
  const Whereabouts& there = entries_.at(row.RankOrder);
  program.state.algorithm = there.algorithm;
  program.priors = there.priors;
  program.state.flags.PriorsKnownAs = there.PriorsKnownAs;
  program.state.flags.BayesOn = there.BayesOn;
  // A prior counts for nothing before a constant has been entered for the first time.
  program.state.flags.ObjectiveConstant = there.ObjectiveConstant == 0 ? 0 : row.constant;
  if (constantEntered_) fresh.windows.replies.push_back(*constantEntered_);
  EXPECT_TRUE(program.desk.Press(form.cmdAICc));
  const int position = form.Models().ModelCount();
  if (form.Models().entered.back().RankCovFile == row.RankCovFile) return;
  fresh.windows.replies.push_back(
      {"Choose an associated covariance file: Please input the desired covariance file name", Answer::Ok,
       row.RankCovFile});
  program.desk.DoubleClick(form.grdRank, position, 7);
}

void HeldLongCommands::CompareRanking(bool averaged) {
  const Ranking& models = walked_.frmRank.Models();
  const auto unknown = [this](const Competitor& row) {
    return !entries_.contains(row.RankOrder) || row.RankAlgFile.empty();
  };
  if (walked_.frmRank.grdRank.At(0, 0).text != "Ranked" || std::ranges::any_of(models.ranked, unknown)) return;
  if (models.ranked.empty() || (averaged && !walked_.frmRank.AveragedFlag)) return;
  FreshProgram fresh(entries_.at(models.ranked.front().RankOrder));
  Program& program = fresh.program;
  FrmRank& form = program.frmRank;
  fresh.windows.otherwise = Answer::Yes;
  EXPECT_TRUE(program.desk.Press(program.frmMenu.cmdRank));
  for (const Competitor& row : models.ranked) EnterRow(fresh, row);
  if (program.state.flags.ObjectiveConstant != models.ranked.back().constant)
    return;  // nobody knows how it was entered
  if (models.CHat != 1) {
    fresh.windows.replies.push_back(
        {"Overdispersion correction: Input a value for C-hat (1 or greater) to correct for unexplained overdispersion:",
         Answer::Ok, Shortest(models.CHat)});
    EXPECT_TRUE(program.desk.Press(form.cmdQAICc));
  }
  EXPECT_TRUE(program.desk.Press(form.cmdRank));
  ASSERT_EQ(form.Models().ranked.size(), models.ranked.size());
  for (std::size_t i = 0; i < models.ranked.size(); ++i) {
    const Competitor &walked = models.ranked[i], &anew = form.Models().ranked[i];
    EXPECT_EQ(walked.RankNegLnL, anew.RankNegLnL) << walked.RankAlgFile;
    EXPECT_EQ(models.Criterion(walked), form.Models().Criterion(anew)) << walked.RankAlgFile;
    EXPECT_EQ(models.Weight(walked), form.Models().Weight(anew)) << walked.RankAlgFile;
    const int row = static_cast<int>(i) + 1;
    const auto text = [row](const FrmRank& rank, int column) {
      const std::string& shown = rank.grdRank.At(row, column).text;
      // What is in a file may have changed since the model was entered.
      if (column == RankTable::AlgorithmFile) return shown.substr(0, shown.find(" ("));
      // Where a covariance file has come since, the fresh row has been given the name of none.
      return shown == NoCovarianceFile ? std::string(NoSuchFile) : shown;
    };
    for (int column = RankTable::NegLnL; column <= RankTable::PriorsFile; ++column)
      EXPECT_EQ(text(walked_.frmRank, column), text(form, column));
  }
  tally_.Count("ranking");
  if (!averaged) return;
  EXPECT_TRUE(program.desk.Press(form.cmdAverage));
  EXPECT_EQ(walked_.frmRank.txtAverage.text, form.txtAverage.text);
  tally_.Count("average of models");
}

std::vector<PlotTable> HeldLongCommands::Plots(Program& program) const {
  const MerlaneModel& model = program.model;
  const DetailSubject subject{model.data, model.Evaluated().best, model.Estimates(), model.simulation};
  return {BuildBroodPlot(subject, 0), BuildBroodPlot(subject, model.data.Broods() - 1), BuildYearPlot(subject, {})};
}

void HeldLongCommands::ComparePlots() {
  if (!summary_ || walked_.model.data.Broods() == 0) return;
  FreshProgram fresh(summary_->there);
  fresh.windows.replies.assign(summary_->replies.begin(), summary_->replies.end());
  fresh.windows.onWait = [] { throw EndProgram{}; };
  EXPECT_TRUE(fresh.program.desk.Press(fresh.program.frmMenu.cmdUserSummary));
  const std::vector<PlotTable> walked = Plots(walked_), anew = Plots(fresh.program);
  for (std::size_t page = 0; page < walked.size(); ++page) {
    EXPECT_EQ(walked[page].PlotVarName, anew[page].PlotVarName);
    EXPECT_EQ(Numbers(walked[page].PlotData), Numbers(anew[page].PlotData)) << "page " << page;
    EXPECT_EQ(walked[page].PlotYMin, anew[page].PlotYMin) << "page " << page;
    EXPECT_EQ(walked[page].PlotYMax, anew[page].PlotYMax) << "page " << page;
  }
  tally_.Count("plots of a summary");
}

void HeldLongCommands::CompareBootstrap(const Doing& step) {
  const std::string& text = walked_.frmSummary.rtbOut.text;
  if (text == summaryBefore_) return;  // refused or called off
  const std::map<std::string, std::string> files = Saved(step.replies);
  if (files.contains(before_->algorithm.AlgName)) return;  // saved over the model that was bootstrapped
  FreshProgram fresh(*before_);
  Program& program = fresh.program;
  program.desk.host.bootstrapFolder = walked_.desk.host.bootstrapFolder + "fresh/";
  std::filesystem::create_directories(program.desk.host.bootstrapFolder);
  fresh.windows.otherwise = Answer::Yes;
  EXPECT_TRUE(program.desk.Press(program.frmMenu.cmdUserSummary));
  const std::string own = program.frmSummary.rtbOut.text;
  fresh.RewindRandomNumbers();
  fresh.windows.asked.clear();
  fresh.windows.replies.assign(step.replies.begin(), step.replies.end());
  EXPECT_TRUE(program.desk.Press(program.frmSummary.cmdBootstrap));
  EXPECT_THAT(WithoutReplaced(step.Questions()), ElementsAreArray(WithoutReplaced(fresh.windows.asked)));
  EXPECT_EQ(text.substr(summaryBefore_.size()), program.frmSummary.rtbOut.text.substr(own.size()));
  for (const auto& [path, content] : files) EXPECT_EQ(content, ReadWholeFile(path)) << path;
  tally_.Count("bootstrap");
}

}  // namespace merlane::test
