#include "likelihood/count_judge.h"

#include <algorithm>
#include <cmath>

#include "base/elementary_rows.h"
#include "likelihood/column_loops.h"

namespace merlane {
namespace {

std::size_t At(int index) { return static_cast<std::size_t>(index); }

/// The counts that were met of a distribution.
std::span<const std::int16_t> CountsOf(const ObjectivePlan& plan, const ObjectivePlan::Distribution& d) {
  return std::span(plan.k).subspan(At(d.prediction), At(d.predictionEnd - d.prediction));
}

/// Of the rows over hatch.
HatchRow::Size LargestOverHatch(const ObjectivePlan& plan) {
  HatchRow::Size most;
  for (const ObjectivePlan::Row& row : plan.rows) {
    if (row.kind != Prediction::Spanning) continue;
    const CountJudge::Distributions judged = plan.DistributionsOf(row);
    most.distributions = std::max(most.distributions, judged.size());
    most.counts = std::max(most.counts, At(judged.back().predictionEnd - judged.front().prediction));
    for (const ObjectivePlan::Distribution& d : judged) most.n = std::max(most.n, d.n);
  }
  return most;
}

}  // namespace

CountJudge::CountJudge(const ObjectivePlan& plan, const CountDistributions& distributions, int maxCount)
    : plan_(plan), spanningJudge_(distributions, maxCount), hatchRow_(distributions, LargestOverHatch(plan)) {
  std::size_t mostDistributions = 0, mostPredictions = 0;
  for (const ObjectivePlan::Row& row : plan.rows) {
    const Distributions judged = plan.DistributionsOf(row);
    mostDistributions = std::max(mostDistributions, judged.size());
    mostPredictions = std::max(mostPredictions, At(judged.back().predictionEnd - judged.front().prediction));
  }
  interval_.reserve(mostDistributions);
  for (auto* column : {&share_, &logs_}) column->reserve(2 * mostDistributions);
  for (auto* column : {&exponent_, &P_, &logP_}) column->resize(mostPredictions);
  overdispersed_.reserve(mostDistributions);
  for (auto* row : {&arguments_, &logGammas_}) row->resize(4 * mostDistributions + 2 * mostPredictions);
}

void CountJudge::Begin(Distributions distributions) {
  first_ = At(distributions.front().prediction);
  size_ = At(distributions.back().predictionEnd) - first_;
}

/// See LikelihoodPass::Outcome. Random mortality is not overdispersed.
bool CountJudge::JudgeStage(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                            const std::vector<double>& thetas, const Known& known, Probabilities& probabilities,
                            std::vector<double>& deviance) {
  if (distributions.empty()) return true;
  Begin(distributions);
  const auto PR = std::span(probabilities.random).subspan(first_, size_);
  const auto PC = std::span(probabilities.correlated).subspan(first_, size_);
  if (!known.random && !errors.random) std::ranges::fill(PR, 1.0);
  if (!known.random && errors.random) {
    FillBinomialLogs(distributions, survival, survival.OutR);
    FillBinomialExponents();
    ExpRow(std::span(exponent_).first(size_), PR);
  }
  if (!known.correlated && !errors.correlated) std::ranges::fill(PC, 1.0);
  if (!known.correlated && errors.correlated) {
    if (!FillCorrelatedExponents(distributions, survival, errors, thetas)) return false;
    ExpRow(std::span(exponent_).first(size_), PC);
  }
  Columns().mixtures(PR.data(), PC.data(), plan_.spanOfPrediction.data() + first_, survival.PCorr.data(), P_.data(),
                     size_);
  return FillDeviances(deviance);
}

/// See BinomialLogs.
void CountJudge::FillBinomialLogs(Distributions distributions, const SurvivalColumns& survival,
                                  const std::vector<double>& Out) {
  const std::size_t size = distributions.size();
  interval_.clear();
  for (const ObjectivePlan::Distribution& d : distributions) interval_.push_back(d.interval);
  for (auto* column : {&share_, &logs_}) column->resize(2 * size);
  Columns().binomialShares(interval_.data(), Out.data(), survival.N.data(), share_.data(), share_.data() + size, size);
  LogRow(share_, logs_);
}

void CountJudge::FillBinomialExponents() {
  Columns().binomialExponents(plan_.logChoices.data() + first_, plan_.k.data() + first_, plan_.others.data() + first_,
                              plan_.distribution.data() + first_, logs_.data(), logs_.data() + logs_.size() / 2,
                              exponent_.data(), size_);
}

bool CountJudge::FillCorrelatedExponents(Distributions distributions, const SurvivalColumns& survival,
                                         const StageErrors& errors, const std::vector<double>& thetas) {
  FillBinomialLogs(distributions, survival, survival.OutC);
  FillBinomialExponents();
  overdispersed_.clear();
  for (const ObjectivePlan::Distribution& d : distributions) {
    const double theta = thetas[At(d.age)];
    if (std::isnan(theta)) return false;
    if (d.n == 1 || errors.CodeC == 1 || theta <= 1e-6) continue;
    double E = survival.OutC[At(d.interval)];
    overdispersed_.push_back({&d, BetaBinomialShapes(d.n, E, theta == 1.0 ? 0.999999 : theta)});
  }
  FillOverdispersedExponents();
  return true;
}

/// See BetaBinomialLogs.
void CountJudge::FillOverdispersedExponents() {
  double* end = arguments_.data();
  for (const auto& [d, shapes] : overdispersed_) {
    const auto [a, b] = shapes;
    for (const double x : {a + b, a, b, d->n + a + b}) *end++ = x;
    for (const std::int16_t k : CountsOf(plan_, *d))
      for (const double x : {k + a, d->n - k + b}) *end++ = x;
  }
  logGamma_.Row({arguments_.data(), end}, logGammas_);
  const double* next = logGammas_.data();
  for (const auto& [d, shapes] : overdispersed_) {
    const double logAB = next[0], logA = next[1], logB = next[2], logNAB = next[3];
    next += 4;
    for (std::size_t i = At(d->prediction); i < At(d->predictionEnd); ++i, next += 2)
      exponent_[i - first_] = plan_.logChoices[i] + logAB - logA - logB + next[0] + next[1] - logNAB;
  }
}

SpanningJudge::Expected CountJudge::ExpectedOf(const ObjectivePlan::Distribution& d, const SurvivalColumns& survival,
                                               const Thetas& thetas) const {
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
  return expected;
}

bool CountJudge::JudgeOverHatch(Distributions distributions, const SurvivalColumns& survival, const CountErrors& errors,
                                const Thetas& thetas, bool testSums, std::vector<double>& deviance) {
  if (distributions.empty()) return true;
  Begin(distributions);
  hatchRow_.Begin();
  for (const ObjectivePlan::Distribution& d : distributions) {
    const SpanningJudge::Expected expected = ExpectedOf(d, survival, thetas);
    const std::span<const std::int16_t> counts = CountsOf(plan_, d);
    const auto P = std::span(P_).subspan(At(d.prediction) - first_, counts.size());
    const HatchRow::Addition added = hatchRow_.Add(errors, expected, d.n, counts, testSums, P);
    const bool alone = added == HatchRow::Addition::LeftAlone;
    if (added == HatchRow::Addition::Fails) return false;
    if (alone && !spanningJudge_.FillProbabilities(errors, expected, d.n, counts, testSums, P)) return false;
  }
  hatchRow_.FillProbabilities();
  return FillDeviances(deviance);
}

bool CountJudge::FillDeviances(std::vector<double>& deviance) {
  LogRow(std::span(P_).first(size_), std::span(logP_).first(size_));
  return Columns().deviances(P_.data(), logP_.data(), deviance.data() + first_, size_);
}

}  // namespace merlane
