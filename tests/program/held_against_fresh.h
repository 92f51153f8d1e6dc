#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "program/held_long_commands.h"

namespace merlane::test {

/// Holds what the windows of a program tell, step by step, against a fresh program in the same place: what was done
/// before must not matter. Differences fail the test.
class HeldAgainstFresh {
 public:
  /// To evaluate at each step fills tables that the model owes otherwise, so that some walks are better gone without.
  HeldAgainstFresh(Program& walked, bool evaluates, Tally& tally)
      : walked_(walked), evaluates_(evaluates), tally_(tally), longCommands_(walked, tally) {}

  void Before();
  void Behind(const Doing& step);

 private:
  /// Whether the data file is still what was read. Over one that was read somebody may save, or import, something else;
  /// of what stood there a fresh program knows nothing.
  bool DataFileIsAsRead();
  /// The run as it stands: one call's objective, K and what it leaves.
  void CompareOneCall();
  /// The texts that a command tells, and what it leaves in the run.
  void CompareCommand(const Doing& step, Button& (*button)(Program&), Pane& (*pane)(Program&),
                      const std::string& before);
  /// The standard errors that are kept.
  void CompareCovariances();
  /// What the covariances' window shows of them.
  void CompareCovarianceReport();
  /// The objective that a minimisation reports, where it says that it is reached.
  void CompareMinimisation();
  /// What a report tells, beside the objective of a fit, of one call at its values, which is another.
  void ReportSaysOneOf(const std::vector<std::string>& words);
  /// What the review of the priors tells, as long as it says that it is of the present run.
  void CompareReview();
  /// The last row of the ranking, when it is new.
  void CompareRow(const Doing& step);

  Program& walked_;
  const bool evaluates_;
  Tally& tally_;
  HeldLongCommands longCommands_;
  std::optional<Whereabouts> before_;
  std::string summaryBefore_;  // what its pane showed
  struct Read {
    std::int64_t reading;
    std::string bytes;
  };
  std::optional<Read> read_;  // the data file of the present reading
  struct Called {
    std::string at;  // everything that the call depends on
    OneCall call;
  };
  std::optional<Called> called_;
  std::string checkedCovariances_;                             // in which run
  std::string checkedReview_;                                  // likewise
  std::optional<std::pair<std::int64_t, double>> checkedFit_;  // which search, and what it had reached
};

}  // namespace merlane::test
