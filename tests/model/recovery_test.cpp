// Fits of simulated data: the parameters with which counts were simulated lie around the estimates as the standard
// errors say.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "minimise/simplex.h"
#include "model/planned.h"
#include "uncertainty/covariance.h"

namespace merlane {
namespace {

/// A simulated data set, fitted from the values it was simulated with.
class FittedSimulation {
 public:
  FittedSimulation(const SimulatorSettings& settings, int broods, std::uint64_t seed,
                   const std::map<int, double>& truth)
      : planned_(settings, broods, seed) {
    for (const auto& [number, value] : truth) planned_.Value(number) = value;
    planned_.Simulate().Observe();
    likelihood_.emplace(planned_.data);

    AlgorithmData& a = run_.algorithm;
    a.NPAR = 34;
    a.ParName.Dimension(34);
    SetDefaultAlgorithm(a);
    a.Value = planned_.Value;
    a.Step.Fill(0);
    for (const auto& [number, value] : truth)
      if (number >= 15) a.Step(number) = 0.1 * value;
    a.Tolerance = 1e-5;
    run_.flags.ObjectiveConstant = 2;
    Pack();
    SimplexState simplex;
    SimplexWatch watch;
    objective_(a.Value, 1);
    MinimiseSimplex(run_, objective_, simplex, watch);
    Pack();
    CovarianceWatch covarianceWatch;
    Covariances c = PrepareCovariances({}, run_, objective_);
    CalculateCovariances(c, false, run_, objective_, covarianceWatch);
    for (int position = 1; position <= c.CovCount; ++position) {
      const int number = c.CovIndex(position);
      z[number] = (a.Value(number) - truth.at(number)) / c.grid(2).standardErrors(position);
    }
  }

  /// How many standard errors each estimate lies from the truth, by the number of the parameter.
  std::map<int, double> z;

 private:
  void Pack() {
    BuildFuseGroups(run_);
    PackFree(run_);
  }
  void Evaluate(ModelCall& call) {
    likelihood_->EvaluateObjective(planned_.setting, planned_.state, call.F, call.X, call.StepSize, call.Names,
                                   call.Fuses, call.N, call.NF, call.K);
  }

  test::Planned planned_;
  std::optional<Likelihood> likelihood_;
  RunState run_;
  Objective objective_{run_, [this](ModelCall& call) { Evaluate(call); }};
};

void ExpectRecovery(const SimulatorSettings& settings, int broods, const std::map<int, double>& truth) {
  const int dataSets = 40;
  double sum = 0, squares = 0;
  int count = 0;
  for (std::uint64_t seed = 1; seed <= dataSets; ++seed)
    for (const auto& [number, z] : FittedSimulation(settings, broods, seed, truth).z) {
      EXPECT_LT(std::abs(z), 4) << "parameter " << number << ", seed " << seed;
      sum += z;
      squares += z * z;
      ++count;
    }
  const auto free = std::ranges::count_if(truth, [](const auto& parameter) { return parameter.first >= 15; });
  EXPECT_EQ(count, dataSets * free) << "every parameter has a standard error in every data set";
  // The mean square of 40 standard normal numbers lies in here 99 times of 100.
  EXPECT_GT(squares / count, 0.5) << "the standard errors are too large";
  EXPECT_LT(squares / count, 1.8) << "the standard errors are too small";
  EXPECT_LT(std::abs(sum / count), 3.3 / std::sqrt(dataSets)) << "the estimates are biased";
}

TEST(Recovery, RatesOfEggsAndJuvenilesUnderRandomMortality) {
  const SimulatorSettings settings{
      .MinInitSize = 6, .MaxInitSize = 12, .InitAge = -14, .FinalAge = 20, .SampFreq1 = 1, .SampFreq2 = 1};
  ExpectRecovery(settings, 30, {{15, 0.012}, {17, 0.03}});
}

TEST(Recovery, RateAndShapeOfJuveniles) {
  const SimulatorSettings settings{
      .MinInitSize = 6, .MaxInitSize = 12, .InitAge = 0, .FinalAge = 30, .SampFreq1 = 1, .SampFreq2 = 1};
  ExpectRecovery(settings, 30, {{17, 0.06}, {18, 0.8}});
}

TEST(Recovery, RateOfCorrelatedMortalityAlone) {
  const SimulatorSettings settings{
      .MinInitSize = 6, .MaxInitSize = 12, .InitAge = 0, .FinalAge = 20, .SampFreq1 = 1, .SampFreq2 = 1};
  ExpectRecovery(settings, 30, {{13, 1}, {21, 0.04}});
}

}  // namespace
}  // namespace merlane
