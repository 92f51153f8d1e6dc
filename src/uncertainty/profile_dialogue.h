#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "minimise/frm_marquardt.h"
#include "minimise/frm_simplex.h"
#include "uncertainty/evaluation_dialogue.h"
#include "uncertainty/profile.h"

namespace merlane {

/// The likelihood profile of one parameter: what it asks, in which order, and what it shows.
class ProfileDialogue final : private EvaluationDialogue {
 public:
  /// `run` is what the windows of the minimisers are told of the profile.
  ProfileDialogue(EvaluationParts& parts, FrmDistributionTable& frmMaxLike, FrmSimplex& simplex,
                  FrmMarquardt& marquardt, ProfileRun& run);

  /// The command. Leaves Value at the last point's minimum, but for the parameter itself, whose value is what it was.
  void EvaluateProfile() { Evaluate(p_.state.profile.ProfileOn); }

 private:
  class Progress;
  enum class Method { Simplex, Marquardt };
  static const Texts Words;

  Reply AskMethod(EvaluationSetup& setup) override;
  double StepFrom(double standardError, std::int16_t parameter, const EvaluationSetup& setup) const override;
  std::optional<double> Run(const EvaluationSetup& setup) override;
  std::string Table(const ConfidenceSeries& series) const override;

  /// Minimises at the present point. False when the user has quit, or has chosen no derivatives.
  bool Minimise();
  bool MinimiseBySimplex();
  bool MinimiseByMarquardt();

  FrmSimplex& simplex_;
  FrmMarquardt& marquardt_;
  ProfileRun& run_;
  Method method_ = Method::Simplex;
  bool declined_ = false;  // no derivatives were chosen
};

}  // namespace merlane
