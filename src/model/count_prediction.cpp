#include "model/count_prediction.h"

#include <algorithm>
#include <cmath>

#include "likelihood/interval_kinds.h"

namespace merlane {
namespace {

/// Sums the probabilities up. The last one is made to close the distribution at exactly 1 where the sum is 1 to six
/// digits; false where it is neither that nor 0.
bool Close(std::span<double> Pmf, std::vector<double>& Cum) {
  const std::size_t n = Pmf.size() - 1;
  Cum.resize(Pmf.size());
  Cum[0] = Pmf[0];
  for (std::size_t k = 1; k < n; ++k) Cum[k] = Cum[k - 1] + Pmf[k];
  if (std::fabs(1 - Cum[n - 1] - Pmf[n]) <= 1e-6) {
    Cum[n] = 1;
    Pmf[n] = 1 - Cum[n - 1];
    return true;
  }
  Cum[n] = Cum[n - 1] + Pmf[n];
  return Cum[n] == 0;
}

int LargestCount(const BroodData& data) {
  return std::max<int>(0, data.VisitCount.empty() ? 0 : *std::ranges::max_element(data.VisitCount));
}

}  // namespace

CountExpectation BestExpectation(const BroodData& data, const SurvivalTables& best, int brood, int visit) {
  const auto b = static_cast<std::size_t>(brood);
  const auto v = static_cast<std::size_t>(visit);
  CountExpectation expected;
  expected.ER = best.EVisitR[v];
  expected.EC = best.EVisitC[v];
  expected.overHatch = OverHatch(best, b);
  switch (PredictionOf(data, visit)) {
    case Prediction::Clutch:
      expected.q = data.VisitAge[v] == 0 ? best.PCorrHatch[b] : best.PCorrEgg[v];
      break;
    case Prediction::Brood:
      expected.q = best.PCorrJuv[v];
      break;
    default:
      expected.q = best.PCorrHatch[b];
      expected.r = best.PCorrJuv[v];
  }
  return expected;
}

CountPredictor::CountPredictor(const BroodData& data, const Parameters& best)
    : data_(data), errors_(best), distributions_(LargestCount(data)) {}

void CountPredictor::Predict(int visit, int n, const CountExpectation& expected, CountPrediction& prediction,
                             const std::function<void(long)>& turn) {
  const auto width = static_cast<std::size_t>(n) + 1;
  prediction.inaccurateComponents = 0;
  for (auto* Pmf : {&prediction.Pmf, &PmfR_, &PmfC_}) Pmf->assign(width, 0.0);
  const Prediction kind = PredictionOf(data_, visit);
  if (kind == Prediction::Clutch || kind == Prediction::Brood)
    MixOneStage(visit, n, expected, errors_.Of(kind == Prediction::Brood), prediction);
  else
    MixOverHatch(visit, n, expected, prediction, turn);

  prediction.inaccurateSums = 0;
  for (auto* Pmf : {&PmfR_, &PmfC_, &prediction.Pmf})  // the mixture last, since its sums are kept
    if (!Close(*Pmf, prediction.Cum)) ++prediction.inaccurateSums;
  prediction.VarR = PmfVariance(PmfR_);
  prediction.VarC = PmfVariance(PmfC_);
  prediction.VarAll = PmfVariance(prediction.Pmf);
}

void CountPredictor::MixOneStage(int visit, int n, const CountExpectation& expected, const StageErrors& errors,
                                 CountPrediction& prediction) {
  // A kind of mortality that cannot occur contributes 0 to every count.
  if (errors.random) distributions_.ProbVisits(logGamma_, errors.CodeR, errors.ThetaR, n, expected.ER, PmfR_);
  if (errors.correlated)
    distributions_.ProbVisits(logGamma_, errors.CodeC,
                              errors.Theta(true, data_.VisitAge[static_cast<std::size_t>(visit) - 1]), n, expected.EC,
                              PmfC_);
  for (std::size_t k = 0; k < prediction.Pmf.size(); ++k)
    prediction.Pmf[k] = (1 - expected.q) * PmfR_[k] + expected.q * PmfC_[k];
}

void CountPredictor::MixOverHatch(int visit, int n, const CountExpectation& expected, CountPrediction& prediction,
                                  const std::function<void(long)>& turn) {
  const double age = data_.VisitAge[static_cast<std::size_t>(visit) - 1];
  const std::array<double, 4> weights = FateWeights(expected.q, expected.r);
  component_.resize(prediction.Pmf.size());
  for (const HatchFate fate : HatchFates) {
    if (!Occurs(fate, errors_, expected.overHatch))
      std::ranges::fill(component_, 1.0);
    else if (!FateDistribution(fate, distributions_, logGamma_, errors_, expected.overHatch, n, age, component_, turn))
      ++prediction.inaccurateComponents;
    std::vector<double>& sameJuvs = CorrelatedJuveniles(fate) ? PmfC_ : PmfR_;
    for (std::size_t k = 0; k < component_.size(); ++k) {
      const double weighted = weights[fate] * component_[k];
      sameJuvs[k] += weighted;
      prediction.Pmf[k] += weighted;
    }
  }
  const auto divide = [](std::vector<double>& Pmf, double share) {
    for (double& probability : Pmf) probability = share > 0 ? probability / share : 0;
  };
  divide(PmfR_, 1 - expected.r);
  divide(PmfC_, expected.r);
}

}  // namespace merlane
