#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace merlane {

/// All that the shares alive under one kind of mortality are computed from; see SurvivalFunctions.
struct SurvivalRate {
  static constexpr double NotYet = std::numeric_limits<double>::quiet_NaN();
  double Alpha = NotYet, Beta = NotYet, f = NotYet, normaliser = NotYet, share = NotYet;
};

/// The loops over columns in which an evaluation spends its time, but for those of the elementary functions
/// (elementary_rows.h): several entries at a time where the processor can, with the bits of one alone. Each takes `n`
/// entries; columns that are written overlap no others.
struct ColumnLoops {
  const char* name;
  bool (*available)();

  /// Whether all are numbers so far from an overflow that what is made of them by some few multiplications is one, too.
  bool (*areBounded)(const double* x, std::size_t n);

  /// y = factor x.
  void (*products)(double factor, const double* x, double* y, std::size_t n);

  /// What does not depend on time of mortalities of these rates; see SurvivalFunctions.
  void (*constants)(double c, double f, const double* AlphaR, const double* AlphaC, double* normaliser, double* shareR,
                    double* shareC, std::size_t n);
  /// What the exponential is taken of for the shares that live under each kind of mortality up to a time, by its power
  /// under the shape; `mortality` is that of the time, among the rates.
  void (*randomExponents)(const SurvivalRate* rates, const int* mortality, const double* power, double* exponent,
                          std::size_t n);
  void (*correlatedExponents)(const SurvivalRate* rates, const int* mortality, const double* power, double* exponent,
                              std::size_t n);
  /// The shares alive, of those exponentials; `attenuation` is exp(-f power).
  void (*randomShares)(const SurvivalRate* rates, const int* mortality, const double* surviving,
                       const double* attenuation, double* SR, std::size_t n);
  void (*correlatedShares)(const SurvivalRate* rates, const int* mortality, const double* surviving, double* SC,
                           std::size_t n);

  /// The share that lives through each span between two times, given those alive at all times; 0 where none are.
  void (*sharesAlive)(const int* from, const int* to, const double* S, double* alive, std::size_t n);
  /// The same of a mortality of both kinds, and the probability of the correlated state at the start of each.
  void (*spans)(const int* from, const int* to, const double* SR, const double* SC, double* aliveR, double* aliveC,
                double* aliveAll, double* PCorr, std::size_t n);
  /// out = alive N, where `span` tells whose share is meant.
  void (*survivors)(const int* span, const double* alive, const double* N, double* out, std::size_t n);
  /// Whether of any that begin less than `least`, or none, are expected.
  bool (*fewerThan)(double least, const double* N, const double* OutAll, std::size_t n);

  /// The share p = Out/N of each interval, as binomial distributions keep it, and 1 - p.
  void (*binomialShares)(const int* interval, const double* Out, const double* N, double* p, double* q, std::size_t n);
  /// logChoices + k ln p + (n - k) ln(1 - p), where `distribution` tells whose p is meant.
  void (*binomialExponents)(const double* logChoices, const std::int16_t* k, const std::int16_t* others,
                            const int* distribution, const double* logP, const double* logQ, double* exponent,
                            std::size_t n);
  /// P = (1 - q) PR + q PC, where `span` tells whose probability q of the correlated state is meant.
  void (*mixtures)(const double* PR, const double* PC, const int* span, const double* PCorr, double* P, std::size_t n);
  /// -2 ln P, or 0 where P is; false where any P is no number, or below 0.
  bool (*deviances)(const double* P, const double* logP, double* deviance, std::size_t n);
};

/// How they are compiled, the last that is available being the fastest; all give the same bits.
std::span<const ColumnLoops> ColumnLoopWays();
/// The fastest on this processor.
const ColumnLoops& Columns();

}  // namespace merlane
