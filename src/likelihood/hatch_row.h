#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "likelihood/count_distributions.h"
#include "likelihood/hatch_fates.h"
#include "likelihood/kept_gamma_ln.h"
#include "likelihood/spanning_judge.h"
#include "likelihood/stage_errors.h"

namespace merlane {

/// The probabilities of counts over hatch for many distributions at once, with the bits of SpanningJudge: what several
/// of them are made of is computed once, and all logarithms, all ln Gamma and then all exponentials in a row. For one
/// thread.
class HatchRow {
 public:
  /// What a row holds at most.
  struct Size {
    std::size_t distributions = 0, counts = 0;
    int n = 0;  // individuals of a distribution
  };
  /// Keeps a reference to the distributions. There is room for rows up to that size.
  HatchRow(const CountDistributions& distributions, const Size& most);

  /// Begins a row; then its distributions are added, as SpanningJudge::FillProbabilities takes them.
  void Begin();
  enum class Addition {
    Done,
    Fails,      // it has no probabilities
    LeftAlone,  // left to SpanningJudge: it has to be seen whether its probabilities sum to 1, or it is a large one
  };
  /// ArithmeticFailure as SpanningJudge. `P` and the counts are kept until it is filled.
  Addition Add(const CountErrors& errors, const SpanningJudge::Expected& expected, int n,
               std::span<const std::int16_t> counts, bool testSums, std::span<double> P);
  /// Fills the `P` of all distributions of the row.
  void FillProbabilities();

 private:
  /// Counts, each a bit.
  using Counts = std::uint64_t;
  static constexpr int Most = 63;

  /// Some probabilities of a distribution of n individuals. It is binomial with the share `expected`, or beta-binomial
  /// with so many expected, or of none, of whom none are left.
  struct Part {
    enum class Kind { Binomial, BetaBinomial, OfNone } kind;
    int n;
    double expected, theta;
    Counts counts;
    std::size_t logs = 0;  // where those of the share are
    std::size_t term = 0;  // where the probabilities are, those of ascending counts
  };
  /// The juveniles of which a share lives on, of up to n that hatched.
  struct Juveniles {
    double pJ, theta;
    bool binomial;
    int n;
    Counts counts;
    std::size_t part = 0;  // one for each number that hatched, from the least count on
  };
  struct Distribution {
    int n;
    std::span<const std::int16_t> counts;
    std::span<double> P;
    std::array<double, 4> weights;
    // By fate.
    std::array<double, 4> otherwise;  // P of each count where it is not calculated, 0 or 1
    std::array<bool, 4> calculated;
    std::array<std::size_t, 4> eggs, juveniles;  // which
  };

  std::size_t EggsOf(const FateDistributions& fate, int n, int least);
  std::size_t JuvenilesOf(const FateDistributions& fate, int n, std::span<const std::int16_t> counts);
  void AddJuvenileParts();
  std::size_t AskLogs(double p);
  void AskLogGammas(const Part& part);
  void FillExponents(Part& part);
  void SumUp(const Distribution& d);

  const CountDistributions& distributions_;
  std::vector<Distribution> row_;
  std::vector<Part> parts_;  // the eggs', then those of the juveniles
  std::vector<Juveniles> juveniles_;
  /// Where eggs and juveniles may stand that are asked for again.
  std::array<int, 512> knownEggs_ = {}, knownJuveniles_ = {};
  std::vector<double> shares_, logs_;  // p and 1 - p of binomial parts
  KeptGammaLn logGamma_;
  std::vector<double> arguments_, logGammas_;  // of the others: all that they ask ln Gamma of, and what it is
  std::vector<double> exponents_, terms_;      // of all parts
  const double* nextLogGamma_ = nullptr;       // while these are filled
  std::array<std::vector<double>, 4> ofFate_;  // probabilities of a distribution's counts
};

}  // namespace merlane
