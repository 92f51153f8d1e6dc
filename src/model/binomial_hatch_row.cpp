#include "model/binomial_hatch_row.h"

#include <cmath>

#include "base/elementary_rows.h"
#include "model/count_logs.h"

namespace merlane {
namespace {

constexpr std::size_t Eggs(HatchFate fate) { return CorrelatedEggs(fate) ? 1 : 0; }

}  // namespace

BinomialHatchRow::BinomialHatchRow(const CountDistributions& distributions, std::size_t mostDistributions,
                                   std::size_t mostTerms)
    : distributions_(distributions) {
  row_.reserve(mostDistributions);
  // p and 1 - p of the eggs under both mortalities, and of the juveniles by each fate
  for (auto* column : {&shares_, &logs_}) column->reserve(12 * mostDistributions);
  for (auto* column : {&exponents_, &terms_}) column->reserve(mostTerms);
}

std::size_t BinomialHatchRow::MostTerms(int n, std::span<const std::int16_t> counts) {
  std::size_t terms = 2 * static_cast<std::size_t>(n - counts.front() + 1);
  for (const int k : counts) terms += 4 * static_cast<std::size_t>(n - k + 1);
  return terms;
}

bool BinomialHatchRow::Serves(const CountErrors& errors, int maxCount) {
  const auto binomial = [](const StageErrors& of) { return of.CodeR != 2 && of.CodeC != 2; };
  // Of these the probabilities sum to 1 to far more than six digits.
  return !CountDistributions::TakesLong(maxCount) && binomial(errors.eggs) && binomial(errors.juveniles);
}

void BinomialHatchRow::Begin() {
  for (auto* column : {&shares_, &exponents_}) column->clear();
  row_.clear();
}

void BinomialHatchRow::AddShare(double p) {
  shares_.push_back(BinomialShare(p));
  shares_.push_back(1 - BinomialShare(p));
}

bool BinomialHatchRow::Add(const CountErrors& errors, const SpanningJudge::Expected& expected, int n,
                           std::span<const std::int16_t> counts, bool testSums) {
  Distribution added{n, counts, FateWeights(expected.q, expected.r), {1, 1, 1, 1}, {}, {}};
  std::array<double, 4> sum = {};
  for (const HatchFate fate : HatchFates) {
    if (!Occurs(fate, errors, expected.numbers)) continue;
    added.otherwise[fate] = 0;
    added.calculated[fate] = expected.numbers.juveniles[fate] > 0;
    if (!added.calculated[fate]) continue;
    const bool overdispersionFails = (CorrelatedEggs(fate) && std::isnan(expected.thetaEggs)) ||
                                     (CorrelatedJuveniles(fate) && std::isnan(expected.thetaJuvs));
    if (overdispersionFails) return false;
    added.hatched[Eggs(fate)] = true;
    sum[fate] = 1;
  }
  const double whole = added.weights[RR] * sum[RR] + added.weights[CR] * sum[CR] + added.weights[RC] * sum[RC] +
                       added.weights[CC] * sum[CC];
  if (testSums && whole != 0 && std::abs(whole - 1) > 5e-7) return false;

  if (added.hatched[0]) AddShare(expected.numbers.EHatchR / n);
  if (added.hatched[1]) AddShare(expected.numbers.EHatchC / n);
  for (const HatchFate fate : HatchFates) {
    if (!added.calculated[fate]) continue;
    const double pJ = expected.numbers.juveniles[fate] / expected.numbers.EHatch(fate);
    if (!std::isfinite(pJ)) return false;
    AddShare(pJ);
  }
  row_.push_back(added);
  return true;
}

void BinomialHatchRow::FillProbabilities(std::span<double> P) {
  logs_.resize(shares_.size());
  LogRow(shares_, logs_);
  const double* logs = logs_.data();
  for (const Distribution& d : row_) {
    const int least = d.counts.front();
    for (const bool hatched : d.hatched) {
      if (!hatched) continue;
      for (int m = least; m <= d.n; ++m)
        exponents_.push_back(distributions_.LogChoices(d.n, m) + m * logs[0] + (d.n - m) * logs[1]);
      logs += 2;
    }
    for (const bool calculated : d.calculated) {
      if (!calculated) continue;
      for (const int k : d.counts)
        for (int m = k; m <= d.n; ++m)
          exponents_.push_back(distributions_.LogChoices(m, k) + k * logs[0] + (m - k) * logs[1]);
      logs += 2;
    }
  }
  terms_.resize(exponents_.size());
  ExpRow(exponents_, terms_);

  const double* term = terms_.data();
  auto probability = P.begin();
  for (const Distribution& d : row_) {
    const int least = d.counts.front();
    std::array<const double*, 2> hatched = {};  // P of m hatched, from the least count on
    for (std::size_t eggs : {0u, 1u}) {
      if (!d.hatched[eggs]) continue;
      hatched[eggs] = term;
      term += d.n - least + 1;
    }
    // By fate and count; the mixture is made count by count.
    std::array<const double*, 4> ofFate = {};
    for (const HatchFate fate : HatchFates) {
      if (!d.calculated[fate]) continue;
      ofFate[fate] = term;
      for (const int k : d.counts) term += d.n - k + 1;
    }
    for (const int k : d.counts) {
      std::array<double, 4> PFate = d.otherwise;
      for (const HatchFate fate : HatchFates) {
        if (!d.calculated[fate]) continue;
        double sum = 0;
        for (int m = k; m <= d.n; ++m) sum += hatched[Eggs(fate)][m - least] * *ofFate[fate]++;
        PFate[fate] = sum;
      }
      *probability++ =
          d.weights[RR] * PFate[RR] + d.weights[CR] * PFate[CR] + d.weights[RC] * PFate[RC] + d.weights[CC] * PFate[CC];
    }
  }
}

}  // namespace merlane
