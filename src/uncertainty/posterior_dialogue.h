#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "plots/frm_bivar_plot.h"
#include "uncertainty/evaluation_dialogue.h"
#include "uncertainty/posterior.h"

namespace merlane {

/// The Bayesian posterior of one parameter: what it asks, in which order, and what it shows.
class PosteriorDialogue final : private EvaluationDialogue {
 public:
  PosteriorDialogue(EvaluationParts& parts, FrmDistributionTable& frmBayesian, FrmBivarPlot& bivarPlot);

  /// The command. The parameter's value and step are what they were when it ends.
  void EvaluatePosterior() { Evaluate(p_.state.profile.IntegrationOn); }

 private:
  class Progress;
  static const Texts Words;

  Reply AskMethod(EvaluationSetup& setup) override;
  double StepFrom(double standardError, std::int16_t parameter, const EvaluationSetup& setup) const override;
  std::optional<double> Run(const EvaluationSetup& setup) override;
  std::string Table(const ConfidenceSeries& series) const override;
  void ShowMore(const Evaluation& evaluation) override;

  /// Asks for the points on the axes of the other free parameters; none when the user quits.
  std::optional<std::int16_t> AskGridPoints();
  void SaveGrid(const BivariateDensity& density);
  void TellTooSmall(const std::string& what) const;

  FrmBivarPlot& bivarPlot_;
};

}  // namespace merlane
