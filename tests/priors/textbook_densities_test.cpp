// The nine priors against the densities of the textbooks, from the C library's own functions: -ln[L] may differ from
// -ln of the density by a constant alone.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "priors/distributions.h"
#include "priors/set_prior.h"

namespace merlane {
namespace {

using Density = std::function<double(double x)>;  // logarithm of a density, or of something proportional to it

struct Prior {
  const char* name;
  const char* code;
  double mean, sd;
  PriorTerm secondMean, secondSD;
  double from, to;  // where they are compared
  Density lnDensity;
  double tolerance;
};

double LnPhi(double z) { return std::log(0.5 * std::erfc(-z / std::sqrt(2.0))); }

double Normal(double x, double m, double s) { return -0.5 * (x - m) * (x - m) / (s * s) - std::log(s); }

double Gamma(double x, double mean, double sd) {
  const double shape = mean * mean / (sd * sd), scale = sd * sd / mean;
  return (shape - 1) * std::log(x) - x / scale - std::lgamma(shape) - shape * std::log(scale);
}

double LnNormal(double x, double mean, double sd) {
  const double variance = std::log1p(sd * sd / (mean * mean));
  const double mu = std::log(mean) - variance / 2;
  return -std::log(x) - 0.5 * (std::log(x) - mu) * (std::log(x) - mu) / variance;
}

double Beta(double x, double mean, double sd) {
  const double sum = mean * (1 - mean) / (sd * sd) - 1;
  const double a = mean * sum, b = (1 - mean) * sum;
  return (a - 1) * std::log(x) + (b - 1) * std::log1p(-x) + std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b);
}

const std::vector<Prior>& All() {
  static const PriorTerm none = PriorUnused;
  static const std::vector<Prior> all{
      {"Uniform", "U", 0, 0, none, none, -10, 10, [](double) { return 0.0; }, 0},
      {"Normal", "N", 0.5, 0.1, none, none, -1, 2, [](double x) { return Normal(x, 0.5, 0.1); }, 1e-11},
      {"Gamma", "G", 2, 0.5, none, none, 0.01, 8, [](double x) { return Gamma(x, 2, 0.5); }, 1e-11},
      {"GammaOfAFlatShape", "G", 1, 0.9, none, none, 0.001, 20, [](double x) { return Gamma(x, 1, 0.9); }, 1e-11},
      // The rate is the stored number itself, and not its reciprocal.
      {"Exponential", "E", 2, 2, none, none, 0.001, 10, [](double x) { return std::log(2.0) - 2 * x; }, 1e-12},
      {"LnNormal", "L", 3, 1, none, none, 0.05, 20, [](double x) { return LnNormal(x, 3, 1); }, 1e-11},
      {"Beta", "B", 0.3, 0.1, none, none, 0.001, 0.999, [](double x) { return Beta(x, 0.3, 0.1); }, 1e-11},
      // The distribution function is a fit with a relative error below 1.2e-7 on the smaller side.
      {"LeftCliff", "S", -3, 1, none, none, -15, 3, [](double x) { return LnPhi(x + 3); }, 2e-7},
      {"RightCliff", "D", 4, 0.5, none, none, 1, 6.5, [](double x) { return LnPhi((4 - x) / 0.5); }, 2e-6},
      {"Bounded", "T", 1, 0.1, PriorTerm("3"), PriorTerm(0.2), 0.1, 3.9,
       [](double x) { return LnPhi((x - 1) / 0.1) + LnPhi((3 - x) / 0.2); }, 2e-6}};
  return all;
}

class TextbookDensity : public ::testing::TestWithParam<std::size_t> {};

TEST_P(TextbookDensity, DiffersByAConstantAlone) {
  const Prior& prior = All()[GetParam()];
  Priors priors = test::PriorsOf(1, prior.code, prior.mean, prior.sd, prior.secondMean, prior.secondSD);
  const auto sum = [&](double x) { return EvaluatePrior(Array1<double>{x}, 1, priors) + prior.lnDensity(x); };
  const double constant = sum((prior.from + prior.to) / 2);
  for (int i = 0; i <= 1000; ++i) {
    const double x = prior.from + i * (prior.to - prior.from) / 1000;
    EXPECT_NEAR(sum(x), constant, prior.tolerance * std::max(1.0, std::fabs(prior.lnDensity(x)))) << x;
  }
}

INSTANTIATE_TEST_SUITE_P(All, TextbookDensity, ::testing::Range(std::size_t{0}, All().size()),
                         [](const auto& prior) { return std::string(All()[prior.param].name); });

}  // namespace
}  // namespace merlane
