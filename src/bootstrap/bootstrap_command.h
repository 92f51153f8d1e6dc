#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bootstrap/growing_file.h"
#include "bootstrap/parametric_bootstrap.h"
#include "control/frm_abort.h"
#include "control/frm_summary.h"

namespace merlane {

/// The parametric bootstrap that follows upon a results summary: asks how, runs it behind the abort window with the
/// summary hidden, adds its lines to the summary, and offers its two reports to be saved. Until they have been offered
/// the replicates' parameters stand in a file of their own, as they come.
class BootstrapCommand {
 public:
  BootstrapCommand(Desk& desk, RunState& state, const MerlaneModel& model, ParametricBootstrap& bootstrap,
                   FrmAbort& abort, FrmSummary& summary);

  void Bootstrap();

 private:
  /// False, which is told, when no count is predicted from the data: each replicate would be as empty.
  bool AnythingIsPredicted();
  /// What is bootstrapped is the model in the algorithm file. False when there is none, when it has no free parameter,
  /// and when it is not the present one and the user does not want it; all is told.
  bool SavedModelIsMeant();
  std::string FileOfModel() const;
  /// None: the user has thought better of it.
  std::optional<BootstrapOptions> AskForOptions();
  /// A whole number from `least` to `most`, asked for until it is; none when the box was cancelled.
  std::optional<std::int32_t> AskForNumber(const std::string& prompt, int proposal, int least, int most);
  BootstrapResults RunHidden(const BootstrapOptions& options, GrowingFile& kept);
  /// Makes the reports and offers them.
  void Report(const BootstrapResults& results);

  /// One of the two reports: what is asked about it, and how it is saved.
  struct File {
    std::string question, dialogTitle, extension, text;
  };
  /// Offers to save a report until it is saved or the user is sure to have done without.
  void Offer(const File& file);
  bool Save(const File& file);

  Desk& desk_;
  RunState& state_;
  const MerlaneModel& model_;
  ParametricBootstrap& bootstrap_;
  FrmAbort& abort_;
  FrmSummary& summary_;
};

}  // namespace merlane
