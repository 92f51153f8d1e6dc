#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "results/results_summary.h"
#include "results/summary_command.h"

namespace merlane {

/// Writes the results summary of the best state: asks how many randomisations shall judge the fit and what shall be
/// listed, and shows the text to be edited and saved.
class ResultsCommand : SummaryCommand {
 public:
  ResultsCommand(Desk& desk, RunState& state, MerlaneModel& model, FrmMain& main, FrmAbort& abort, FrmSummary& summary);

  /// The model's answer to the request for results. What is impossible for a visit or a brood is left out, told, and
  /// listed at the end. RuntimeFailure when all parameters are 0, so that there is no state to report.
  void WriteResults(ModelCall& call);

  /// Offers the plots of the fit; called behind the summary when the user chose them instead of a listing.
  std::function<void()> offerPlots = [] {};

 private:
  std::int32_t AskForRandomisations();
  /// The lines about the fit; none when nothing was predicted or the randomisations were aborted.
  std::string JudgeFit(std::int32_t randomisations);
  void EstimateSurvival();
  /// None: the user wants no listing.
  std::optional<Listing> AskForListing();
  std::string List(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes);

  void NoteImpossible(const ImpossibleStep& step);
  void TellOfImpossible();

  std::vector<std::string> impossible_;  // what this summary has left out, as lines
};

}  // namespace merlane
