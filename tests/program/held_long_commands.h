#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "plots/plot_table.h"
#include "program/fresh_program.h"
#include "program/tally.h"

namespace merlane::test {

/// What somebody did at the windows in one step.
struct Doing {
  std::string control;          // FORM.CONTROL; empty when no control was used
  std::vector<Reply> replies;   // to what was asked meanwhile
  bool anythingBeside = false;  // other controls were used while the first was at work
  bool failed = false;          // the command ended in a failure

  /// Whether a question that holds this was asked.
  bool Asked(const std::string& part) const;
  std::vector<std::string> Questions() const;
};

/// Gives commands that take long, or build upon several others, once more to a fresh program: profiles and posteriors,
/// rankings with their averages, the plots behind a summary, bootstraps. What waits for its user there is finished at
/// once. Differences fail the test.
class HeldLongCommands {
 public:
  HeldLongCommands(Program& walked, Tally& tally) : walked_(walked), tally_(tally) {}

  void Before();
  /// Behind a step over data that a fresh program can read as they were read.
  void Behind(const Doing& step);

 private:
  /// The series, the joint density and the table of a profile or posterior that has been calculated in this step.
  void CompareEvaluation(const Doing& step, Button FrmParEvals::*button, FrmDistributionTable Program::*table);
  /// The rows of a table that has been ranked or averaged, and the averages.
  void CompareRanking(bool averaged);
  void EnterRow(FreshProgram& fresh, const Competitor& row) const;
  /// What can be plotted behind the summary that is open.
  void ComparePlots();
  std::vector<PlotTable> Plots(Program& program) const;
  /// The lines that a bootstrap adds to the summary, and the files that were saved of it.
  void CompareBootstrap(const Doing& step);

  Program& walked_;
  Tally& tally_;
  std::optional<Whereabouts> before_;
  std::string summaryBefore_;  // what its pane showed
  Evaluation evaluationBefore_;
  std::map<int, Whereabouts> entries_;    // of the ranking, by entry number
  std::optional<Reply> constantEntered_;  // the last one
  struct Summary {
    Whereabouts there;
    std::vector<Reply> replies;
  };
  std::optional<Summary> summary_;  // that was made last
};

}  // namespace merlane::test
