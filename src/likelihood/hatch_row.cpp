#include "likelihood/hatch_row.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

#include "base/elementary_rows.h"
#include "likelihood/count_logs.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

constexpr std::uint64_t Bit(int count) { return std::uint64_t{1} << count; }
constexpr std::uint64_t UpTo(int count) { return Bit(count) | (Bit(count) - 1); }

template <class Action>
void ForEach(std::uint64_t counts, const Action& action) {
  for (; counts != 0; counts &= counts - 1) action(std::countr_zero(counts));
}

std::uint64_t HashOf(double a, double b) {
  const auto mixed = std::bit_cast<std::uint64_t>(a) ^ std::rotl(std::bit_cast<std::uint64_t>(b), 23);
  return mixed * 0x9E3779B97F4A7C15u;
}

}  // namespace

HatchRow::HatchRow(const CountDistributions& distributions, const Size& most) : distributions_(distributions) {
  const auto numbers = static_cast<std::size_t>(std::min(most.n, Most)) + 1;  // that may hatch
  const std::size_t fates = 4 * most.distributions, parts = fates + fates * numbers;
  const std::size_t terms = (fates + 4 * most.counts) * numbers + fates;
  row_.reserve(most.distributions);
  parts_.reserve(parts);
  juveniles_.reserve(fates);
  for (auto* column : {&shares_, &logs_}) column->reserve(2 * parts);
  for (auto* column : {&arguments_, &logGammas_}) column->reserve(4 * parts + 2 * terms);
  for (auto* column : {&exponents_, &terms_}) column->reserve(terms);
  for (auto& ofFate : ofFate_) ofFate.reserve(numbers);
}

void HatchRow::Begin() {
  row_.clear();
  parts_.clear();
  juveniles_.clear();
  shares_.clear();
  knownEggs_.fill(-1);
  knownJuveniles_.fill(-1);
}

HatchRow::Addition HatchRow::Add(const CountErrors& errors, const SpanningJudge::Expected& expected, int n,
                                 std::span<const std::int16_t> counts, bool testSums, std::span<double> P) {
  if (n > Most) return Addition::LeftAlone;
  Distribution added{n, counts, P, FateWeights(expected.q, expected.r), {1, 1, 1, 1}, {}, {}, {}};
  std::array<FateDistributions, 4> fates;
  std::array<double, 4> sum = {};
  for (const HatchFate fate : HatchFates) {
    if (!Occurs(fate, errors, expected.numbers)) continue;
    added.otherwise[fate] = 0;
    added.calculated[fate] = expected.numbers.juveniles[fate] > 0;
    if (!added.calculated[fate]) continue;
    const std::optional<FateDistributions> by = expected.Of(fate, errors, n);
    if (!by) return Addition::Fails;
    if (!by->SumIsKnown(n)) return Addition::LeftAlone;
    fates[fate] = *by;
    sum[fate] = 1;
  }
  const double whole = added.weights[RR] * sum[RR] + added.weights[CR] * sum[CR] + added.weights[RC] * sum[RC] +
                       added.weights[CC] * sum[CC];
  if (testSums && whole != 0 && std::abs(whole - 1) > 5e-7) return Addition::Fails;

  for (const HatchFate fate : HatchFates) {
    if (!added.calculated[fate]) continue;
    added.eggs[fate] = EggsOf(fates[fate], n, counts.front());
    added.juveniles[fate] = JuvenilesOf(fates[fate], n, counts);
  }
  row_.push_back(added);
  return Addition::Done;
}

/// The part that tells how many hatch of n, from `least` on.
std::size_t HatchRow::EggsOf(const FateDistributions& fate, int n, int least) {
  Part eggs{fate.binomialEggs ? Part::Kind::Binomial : Part::Kind::BetaBinomial, n,
            fate.binomialEggs ? fate.EN / n : fate.EN, fate.ThetaE, UpTo(n) & ~(Bit(least) - 1)};
  int& known = knownEggs_[HashOf(eggs.expected, n) >> 55];
  if (known >= 0) {
    Part& other = parts_[static_cast<std::size_t>(known)];
    if (other.kind == eggs.kind && other.n == n && SameBits(other.expected, eggs.expected) &&
        SameBits(other.theta, eggs.theta)) {
      other.counts |= eggs.counts;
      return static_cast<std::size_t>(known);
    }
  }
  if (fate.binomialEggs) eggs.logs = AskLogs(eggs.expected);
  known = static_cast<int>(parts_.size());
  parts_.push_back(eggs);
  return parts_.size() - 1;
}

std::size_t HatchRow::JuvenilesOf(const FateDistributions& fate, int n, std::span<const std::int16_t> counts) {
  int& known = knownJuveniles_[HashOf(fate.pJ, fate.binomialJuvs ? -1 : fate.ThetaJ) >> 55];
  const auto isKnown = [&](const Juveniles& other) {
    return other.binomial == fate.binomialJuvs && SameBits(other.pJ, fate.pJ) && SameBits(other.theta, fate.ThetaJ);
  };
  if (known < 0 || !isKnown(juveniles_[static_cast<std::size_t>(known)])) {
    known = static_cast<int>(juveniles_.size());
    juveniles_.push_back({fate.pJ, fate.ThetaJ, fate.binomialJuvs, n, 0});
  }
  Juveniles& juveniles = juveniles_[static_cast<std::size_t>(known)];
  juveniles.n = std::max(juveniles.n, n);
  for (const int k : counts) juveniles.counts |= Bit(k);
  return static_cast<std::size_t>(known);
}

void HatchRow::FillProbabilities() {
  AddJuvenileParts();
  for (auto* column : {&arguments_, &exponents_}) column->clear();
  for (const Part& part : parts_)
    if (part.kind == Part::Kind::BetaBinomial) AskLogGammas(part);
  logs_.resize(shares_.size());
  LogRow(shares_, logs_);
  logGammas_.resize(arguments_.size());
  logGamma_.Row(arguments_, logGammas_);
  nextLogGamma_ = logGammas_.data();
  for (Part& part : parts_) FillExponents(part);
  terms_.resize(exponents_.size());
  ExpRow(exponents_, terms_);
  for (const Distribution& d : row_) SumUp(d);
}

void HatchRow::AddJuvenileParts() {
  for (Juveniles& juveniles : juveniles_) {
    juveniles.part = parts_.size();
    const std::size_t logs = AskLogs(juveniles.pJ);
    for (int m = std::countr_zero(juveniles.counts); m <= juveniles.n; ++m) {
      Part part{Part::Kind::Binomial, m, juveniles.pJ, juveniles.theta, juveniles.counts & UpTo(m), logs};
      if (m != 1 && !juveniles.binomial) {
        part.kind = m == 0 ? Part::Kind::OfNone : Part::Kind::BetaBinomial;
        part.expected = m * juveniles.pJ;
      }
      parts_.push_back(part);
    }
  }
}

std::size_t HatchRow::AskLogs(double p) {
  shares_.push_back(BinomialShare(p));
  shares_.push_back(1 - BinomialShare(p));
  return shares_.size() - 2;
}

/// See BetaBinomialLogs.
void HatchRow::AskLogGammas(const Part& part) {
  double E = part.expected;
  const auto [a, b] = BetaBinomialShapes(part.n, E, part.theta);
  const std::size_t size = arguments_.size();
  arguments_.resize(size + 4 + 2 * static_cast<std::size_t>(std::popcount(part.counts)));
  double* next = arguments_.data() + size;
  for (const double x : {a + b, a, b, part.n + a + b}) *next++ = x;
  ForEach(part.counts, [&, a = a, b = b](int k) {
    *next++ = k + a;
    *next++ = part.n - k + b;
  });
}

void HatchRow::FillExponents(Part& part) {
  const int n = part.n;
  part.term = exponents_.size();
  if (part.kind == Part::Kind::OfNone) {
    exponents_.push_back(0);
  } else if (part.kind == Part::Kind::Binomial) {
    const BinomialLogs logs(logs_[part.logs], logs_[part.logs + 1]);
    ForEach(part.counts,
            [&](int k) { exponents_.push_back(logs.LogProbability(distributions_.LogChoices(n, k), n, k)); });
  } else {
    const double logAB = nextLogGamma_[0], logA = nextLogGamma_[1], logB = nextLogGamma_[2], logNAB = nextLogGamma_[3];
    nextLogGamma_ += 4;
    ForEach(part.counts, [&](int k) {
      exponents_.push_back(distributions_.LogChoices(n, k) + logAB - logA - logB + nextLogGamma_[0] + nextLogGamma_[1] -
                           logNAB);
      nextLogGamma_ += 2;
    });
  }
}

/// The probability of each count by each fate, summed over the number that hatched, and the mixture of them.
void HatchRow::SumUp(const Distribution& d) {
  for (const HatchFate fate : HatchFates) {
    ofFate_[fate].assign(d.counts.size(), d.otherwise[fate]);
    if (!d.calculated[fate]) continue;
    const Part& eggs = parts_[d.eggs[fate]];
    const Juveniles& juveniles = juveniles_[d.juveniles[fate]];
    const double* const hatched = terms_.data() + eggs.term;
    const int least = std::countr_zero(eggs.counts);
    const Part* const lives = parts_.data() + juveniles.part;
    const int leastCount = std::countr_zero(juveniles.counts);
    for (std::size_t i = 0; i < d.counts.size(); ++i) {
      const int k = d.counts[i];
      const auto place = static_cast<std::size_t>(std::popcount(juveniles.counts & (Bit(k) - 1)));
      double sum = 0;
      for (int m = k; m <= d.n; ++m) sum += hatched[m - least] * terms_[lives[m - leastCount].term + place];
      ofFate_[fate][i] = sum;
    }
  }
  for (std::size_t i = 0; i < d.counts.size(); ++i)
    d.P[i] = d.weights[RR] * ofFate_[RR][i] + d.weights[CR] * ofFate_[CR][i] + d.weights[RC] * ofFate_[RC][i] +
             d.weights[CC] * ofFate_[CC][i];
}

}  // namespace merlane
