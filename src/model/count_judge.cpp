#include "model/count_judge.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/elementary_rows.h"
#include "model/count_logs.h"

namespace merlane {
namespace {

std::size_t At(int index) { return static_cast<std::size_t>(index); }

}  // namespace

CountJudge::CountJudge(const ObjectivePlan& plan, const CountDistributions& distributions, int maxCount)
    : plan_(plan), spanningJudge_(distributions, maxCount) {
  std::size_t mostDistributions = 0, mostPredictions = 0;
  for (const ObjectivePlan::Row& row : plan.rows) {
    const Distributions judged = plan.DistributionsOf(row);
    mostDistributions = std::max(mostDistributions, judged.size());
    mostPredictions = std::max(mostPredictions, At(judged.back().predictionEnd - judged.front().prediction));
  }
  for (auto* column : {&share_, &logs_}) column->reserve(2 * mostDistributions);
  for (auto* column : {&exponent_, &P_, &PR_, &PC_, &logP_}) column->reserve(mostPredictions);
}

void CountJudge::Begin(Distributions distributions) {
  first_ = At(distributions.front().prediction);
  for (auto* column : {&exponent_, &P_, &PR_, &PC_, &logP_})
    column->resize(At(distributions.back().predictionEnd) - first_);
  for (auto* column : {&share_, &logs_}) column->resize(2 * distributions.size());
}

/// See LikelihoodPass::Outcome. Random mortality is not overdispersed.
bool CountJudge::JudgeStage(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                            const std::vector<double>& thetas, std::vector<double>& deviance) {
  if (distributions.empty()) return true;
  Begin(distributions);
  std::fill(PR_.begin(), PR_.end(), 1.0);
  std::fill(PC_.begin(), PC_.end(), 1.0);
  if (errors.random) {
    FillBinomialLogs(distributions, survival, survival.OutR);
    for (std::size_t j = 0; j < distributions.size(); ++j) FillBinomialExponents(distributions[j], j);
    ExpRow(exponent_, PR_);
  }
  if (errors.correlated) {
    if (!FillCorrelatedExponents(distributions, survival, errors, thetas)) return false;
    ExpRow(exponent_, PC_);
  }
  for (const ObjectivePlan::Distribution& d : distributions) {
    const double q = survival.PCorr[At(plan_.span[At(d.interval)])];
    for (std::size_t i = At(d.prediction) - first_; i < At(d.predictionEnd) - first_; ++i)
      P_[i] = (1 - q) * PR_[i] + q * PC_[i];
  }
  return FillDeviances(deviance);
}

/// See BinomialLogs.
void CountJudge::FillBinomialLogs(Distributions distributions, const SurvivalColumns& survival,
                                  const std::vector<double>& Out) {
  for (std::size_t j = 0; j < distributions.size(); ++j) {
    const std::size_t interval = At(distributions[j].interval);
    const double p = BinomialShare(Out[interval] / survival.N[interval]);
    share_[2 * j] = p;
    share_[2 * j + 1] = 1 - p;
  }
  LogRow(share_, logs_);
}

void CountJudge::FillBinomialExponents(const ObjectivePlan::Distribution& d, std::size_t number) {
  const BinomialLogs logs(logs_[2 * number], logs_[2 * number + 1]);
  for (std::size_t i = At(d.prediction); i < At(d.predictionEnd); ++i)
    exponent_[i - first_] = logs.LogProbability(plan_.logChoices[i], d.n, plan_.k[i]);
}

bool CountJudge::FillCorrelatedExponents(Distributions distributions, const SurvivalColumns& survival,
                                         const StageErrors& errors, const std::vector<double>& thetas) {
  FillBinomialLogs(distributions, survival, survival.OutC);
  for (std::size_t j = 0; j < distributions.size(); ++j) {
    const ObjectivePlan::Distribution& d = distributions[j];
    const double theta = thetas[At(d.age)];
    if (std::isnan(theta)) return false;
    if (d.n == 1 || errors.CodeC == 1 || theta <= 1e-6)
      FillBinomialExponents(d, j);
    else
      FillOverdispersedExponents(d, survival.OutC[At(d.interval)], theta);
  }
  return true;
}

void CountJudge::FillOverdispersedExponents(const ObjectivePlan::Distribution& d, double E, double theta) {
  const BetaBinomialLogs logs(logGamma_, d.n, E, theta == 1.0 ? 0.999999 : theta);
  for (std::size_t i = At(d.prediction); i < At(d.predictionEnd); ++i)
    exponent_[i - first_] = logs.LogProbability(plan_.logChoices[i], d.n, plan_.k[i]);
}

bool CountJudge::JudgeOverHatch(Distributions distributions, const SurvivalColumns& survival, const CountErrors& errors,
                                const Thetas& thetas, bool testSums, std::vector<double>& deviance) {
  if (distributions.empty()) return true;
  Begin(distributions);
  for (const ObjectivePlan::Distribution& d : distributions) {
    const ObjectivePlan::FromHatch& hatch = plan_.fromHatch[At(d.interval)];
    const std::size_t clutch = At(hatch.clutch), random = At(hatch.random), correlated = At(hatch.correlated);
    SpanningJudge::Expected expected{{},
                                     survival.PCorr[At(plan_.span[clutch])],
                                     survival.PCorr[At(plan_.span[correlated])],
                                     thetas.eggs[At(d.age)],
                                     thetas.juveniles[At(d.age)]};
    expected.numbers.EHatchR = survival.OutR[clutch];
    expected.numbers.EHatchC = survival.OutC[clutch];
    expected.numbers.juveniles = {survival.OutR[random], survival.OutR[correlated], survival.OutC[random],
                                  survival.OutC[correlated]};
    const std::size_t first = At(d.prediction), count = At(d.predictionEnd) - first;
    if (!spanningJudge_.FillProbabilities(errors, expected, d.n, std::span(plan_.k).subspan(first, count), testSums,
                                          std::span(P_).subspan(first - first_, count)))
      return false;
  }
  return FillDeviances(deviance);
}

bool CountJudge::FillDeviances(std::vector<double>& deviance) {
  bool impossible = false;
  for (const double P : P_) impossible |= !(P >= 0 && P <= std::numeric_limits<double>::max());
  LogRow(P_, logP_);
  for (std::size_t i = 0; i < P_.size(); ++i) deviance[first_ + i] = P_[i] > 0 ? -2 * logP_[i] : 0;
  return !impossible;
}

}  // namespace merlane
