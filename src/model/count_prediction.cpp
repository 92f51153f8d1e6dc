#include "model/count_prediction.h"

#include <algorithm>
#include <cmath>

#include "model/distributions.h"
#include "model/prepared_visits.h"

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
  expected.EHatchR = best.EHatchR[b];
  expected.EHatchC = best.EHatchC[b];
  expected.JuvRR = best.JuvRR[b];
  expected.JuvCR = best.JuvCR[b];
  expected.JuvRC = best.JuvRC[b];
  expected.JuvCC = best.JuvCC[b];
  switch (PredictionOf(data, visit)) {
    case PreparedVisits::Prediction::Clutch:
      expected.q = data.VisitAge[v] == 0 ? best.PCorrHatch[b] : best.PCorrEgg[v];
      break;
    case PreparedVisits::Prediction::Brood:
      expected.q = best.PCorrJuv[v];
      break;
    default:
      expected.q = best.PCorrHatch[b];
      expected.r = best.PCorrJuv[v];
  }
  return expected;
}

CountPredictor::CountPredictor(const BroodData& data, const Parameters& best)
    : data_(data), best_(best), distributions_(LargestCount(data)) {}

void CountPredictor::Predict(int visit, int n, const CountExpectation& expected, CountPrediction& prediction) {
  const auto width = static_cast<std::size_t>(n) + 1;
  prediction.inaccurateComponents = 0;
  for (auto* Pmf : {&prediction.Pmf, &PmfR_, &PmfC_}) Pmf->assign(width, 0.0);
  const PreparedVisits::Prediction kind = PredictionOf(data_, visit);
  if (kind == PreparedVisits::Prediction::Clutch || kind == PreparedVisits::Prediction::Brood)
    MixOneStage(visit, n, expected, kind == PreparedVisits::Prediction::Brood, prediction);
  else
    MixOverHatch(visit, n, expected, prediction);

  prediction.inaccurateSums = 0;
  for (auto* Pmf : {&PmfR_, &PmfC_, &prediction.Pmf})  // the mixture last, since its sums are kept
    if (!Close(*Pmf, prediction.Cum)) ++prediction.inaccurateSums;
  prediction.VarR = PmfVariance(PmfR_);
  prediction.VarC = PmfVariance(PmfC_);
  prediction.VarAll = PmfVariance(prediction.Pmf);
}

void CountPredictor::MixOneStage(int visit, int n, const CountExpectation& expected, bool brood,
                                 CountPrediction& prediction) {
  // A kind of mortality that cannot occur contributes 0 to every count.
  if (brood ? best_.JuvsRandom() : best_.EggsRandom())
    distributions_.ProbVisits(brood ? best_.CodeJuvR : best_.CodeEggR, brood ? best_.ThetaJuvR : best_.ThetaEggR, n,
                              expected.ER, PmfR_);
  if (brood ? best_.JuvsCorrelated() : best_.EggsCorrelated()) {
    const double age = data_.VisitAge[static_cast<std::size_t>(visit) - 1];
    const double theta = brood ? Overdispersion(best_.ThetaJuvC, best_.v_B, age)
                               : Overdispersion(best_.ThetaEggC, best_.v_N, age - best_.LayAge);
    distributions_.ProbVisits(brood ? best_.CodeJuvC : best_.CodeEggC, theta, n, expected.EC, PmfC_);
  }
  for (std::size_t k = 0; k < prediction.Pmf.size(); ++k)
    prediction.Pmf[k] = (1 - expected.q) * PmfR_[k] + expected.q * PmfC_[k];
}

void CountPredictor::MixOverHatch(int visit, int n, const CountExpectation& expected, CountPrediction& prediction) {
  struct Component {
    bool eggsC, juvsC;
    double juveniles, weight;
  };
  const double q = expected.q, r = expected.r;
  const Component components[] = {{false, false, expected.JuvRR, (1 - r) * (1 - q)},
                                  {true, false, expected.JuvCR, (1 - r) * q},
                                  {false, true, expected.JuvRC, (1 - q) * r},
                                  {true, true, expected.JuvCC, q * r}};
  const double age = data_.VisitAge[static_cast<std::size_t>(visit) - 1];
  component_.resize(prediction.Pmf.size());
  for (const auto& [eggsC, juvsC, juveniles, weight] : components) {
    const bool possible =
        (eggsC ? best_.EggsCorrelated() : best_.EggsRandom()) && (juvsC ? best_.JuvsCorrelated() : best_.JuvsRandom());
    if (!possible || juveniles == Missing) {
      std::ranges::fill(component_, 1.0);  // has no weight, as in the likelihood
    } else if (!(juveniles > 0)) {
      std::ranges::fill(component_, 0.0);
    } else {
      const bool overdispersed =
          (eggsC ? best_.CodeEggC : best_.CodeEggR) == 2 || (juvsC ? best_.CodeJuvC : best_.CodeJuvR) == 2;
      // The juveniles' overdispersion is taken at the negative age of the clutch, as in the likelihood.
      const double thetaE = eggsC ? Overdispersion(best_.ThetaEggC, best_.v_N, age - best_.LayAge) : best_.ThetaEggR;
      const double thetaJ = juvsC ? Overdispersion(best_.ThetaJuvC, best_.v_B, age) : best_.ThetaJuvR;
      if (!distributions_.Calc_Probs_and_Theta(overdispersed ? 2 : 1, n, thetaE, thetaJ,
                                               eggsC ? expected.EHatchC : expected.EHatchR, juveniles, component_))
        ++prediction.inaccurateComponents;
    }
    std::vector<double>& sameJuvs = juvsC ? PmfC_ : PmfR_;
    for (std::size_t k = 0; k < component_.size(); ++k) {
      const double weighted = weight * component_[k];
      sameJuvs[k] += weighted;
      prediction.Pmf[k] += weighted;
    }
  }
  const auto divide = [](std::vector<double>& Pmf, double share) {
    for (double& probability : Pmf) probability = share > 0 ? probability / share : 0;
  };
  divide(PmfR_, 1 - r);
  divide(PmfC_, r);
}

}  // namespace merlane
