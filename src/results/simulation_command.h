#pragma once

#include "results/summary_command.h"

namespace merlane {

/// Simulates the data set that was planned when the analysis was initialised, and shows it as the text of a data file
/// to be saved.
class SimulationCommand : SummaryCommand {
 public:
  using SummaryCommand::SummaryCommand;

  /// The model's answer to the request to simulate. False when it was aborted: there is no text.
  bool Simulate(ModelCall& call);

 private:
  void SimulateCounts(const ModelCall& call);
  void TellOfDeficiencies();
  void WriteSimulatedData();
  std::string SimulatedText();
};

}  // namespace merlane
