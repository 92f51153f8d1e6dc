#pragma once

#include <array>
#include <string>
#include <variant>

#include "base/array1.h"

namespace merlane {

/// A term that is not set; shown as "*". No formula tests for it.
inline constexpr double PriorUnset = 1e-100;
/// What stands in a second term that a distribution does not have.
inline constexpr const char* PriorUnused = "Unused";

/// A second term: a number, or a text as it was typed or read (numeric for "T", else "Unused").
using PriorTerm = std::variant<double, std::string>;
/// The number of a second term. RuntimeFailure for a text that is none.
double NumberOf(const PriorTerm& secondTerm);
/// True for a second term that equals PriorUnset, as a number or as the text of one.
bool IsUnset(const PriorTerm& secondTerm);

/// The open ends of the domains of distributions that live on positive numbers or on (0, 1).
inline constexpr double PriorLowerEnd = 1e-06;
inline constexpr double PriorUpperEnd = 0.999999;

/// The nine prior distributions, in the order in which they are offered.
struct PriorDistribution {
  const char* code;
  const char* name;
};
inline constexpr std::array<PriorDistribution, 9> PriorDistributions = {{{"U", "Uniform - unbounded"},
                                                                         {"T", "Uniform - bounded"},
                                                                         {"N", "Gaussian or Normal"},
                                                                         {"E", "Exponential"},
                                                                         {"G", "Gamma"},
                                                                         {"B", "Beta"},
                                                                         {"S", "Left-side cliff"},
                                                                         {"D", "Right-side cliff"},
                                                                         {"L", "Ln-normal"}}};

/// The prior distribution of each parameter (1..NPAR), whether it is free, fused or fixed, and the last evaluation.
struct Priors {
  Array1<std::string> PriorCode;      // code of a distribution
  Array1<double> PriorFirstMean;      // mean, or the location of the (left) foot
  Array1<double> PriorFirstSD;        // standard deviation, there
  Array1<PriorTerm> PriorSecondMean;  // location of the right foot of "T", else "Unused"
  Array1<PriorTerm> PriorSecondSD;    // standard deviation there, else "Unused"
  Array1<double> PriorNegLnL;         // -ln[L] of each parameter, 0 at the most likely value
  double PriorTotal = 0;              // their sum on the scale of the objective

  /// Gives each of NPAR parameters the unbounded uniform distribution.
  void Reset(int NPAR);
  /// True when at least one parameter has a code other than "U".
  bool AnySet() const;
  /// The priors that are set, each with its parameter and terms, the numbers in full; empty when none is.
  std::string InWords() const;
};

/// Name of the distribution with this code; empty for a code that is none of the nine.
std::string PriorDistName(const std::string& code);

/// Evaluates all priors at `values` (1..NPAR): leaves PriorNegLnL, and in PriorTotal the sum of the -ln[L] times
/// `ObjectiveConstant`, which is also returned. Outside the domain of a gamma, exponential, ln-normal or beta
/// distribution a penalty stands in PriorNegLnL but is not in the total; the penalties of the cliffs are.
/// RuntimeFailure, which names the parameter, where a formula cannot be computed: a standard deviation of 0, a
/// logarithm of a number that is not positive, a second term of "T" that is no number.
double EvaluatePrior(const Array1<double>& values, double ObjectiveConstant, Priors& priors);

/// The exponents a and b of a beta distribution of that mean (between 0 and 1) and standard deviation.
/// ArithmeticFailure for a deviation of 0.
struct BetaShape {
  double a, b;
};
BetaShape BetaShapeOf(double mean, double sd);

/// Standard normal distribution function by the Chebyshev fit `erfcc` of W. H. Press, B. P. Flannery, S. A. Teukolsky
/// and W. T. Vetterling, Numerical Recipes (1986), chapter 6.2; relative error of the smaller tail below 1.2e-7.
/// Reaches 1 exactly some eight deviations above the mean.
double NormalCDF(double z);

}  // namespace merlane
