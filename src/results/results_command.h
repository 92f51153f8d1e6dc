#pragma once

#include <functional>
#include <optional>
#include <string>

#include "results/results_summary.h"
#include "results/summary_command.h"

namespace merlane {

/// Writes the results summary of the best state: asks how many randomisations shall judge the fit and what shall be
/// listed, and shows the text to be edited and saved.
class ResultsCommand : SummaryCommand {
 public:
  using SummaryCommand::SummaryCommand;

  /// The model's answer to the request for results. RuntimeFailure when all parameters are 0, so that there is no
  /// state to report.
  void WriteResults(ModelCall& call);

  /// Offers the plots of the fit; called behind the summary when the user chose them instead of a listing.
  std::function<void()> offerPlots = [] {};

 private:
  int AskForRandomisations();
  /// The lines about the fit; none when nothing was predicted or the randomisations were aborted.
  std::string JudgeFit(int randomisations);
  void EstimateSurvival();
  /// None: the user wants no listing.
  std::optional<Listing> AskForListing();
  std::string List(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes);
};

}  // namespace merlane
