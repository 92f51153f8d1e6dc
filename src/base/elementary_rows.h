#pragma once

#include <cstddef>
#include <span>

namespace merlane {

/// The elementary functions (elementary.h) of a row of arguments: the same bits, several of them at a time where the
/// processor can. `y` is as long as the arguments and does not overlap them.
void ExpRow(std::span<const double> x, std::span<double> y);
void LogRow(std::span<const double> x, std::span<double> y);
void PowRow(std::span<const double> x, std::span<const double> exponent, std::span<double> y);

/// GammaLn (gamma_ln.h) of a row of arguments; of those below 1 nothing comes out.
void GammaLnRow(std::span<const double> x, std::span<double> y);

/// How the rows are computed on this processor, of the ways that ElementaryRowWays lists; all give the same bits.
struct ElementaryRowWay {
  const char* name;
  bool (*available)();
  void (*exp)(const double* x, double* y, std::size_t n);
  void (*log)(const double* x, double* y, std::size_t n);
  void (*pow)(const double* x, const double* exponent, double* y, std::size_t n);
  void (*gammaLn)(const double* x, double* y, std::size_t n);
};
std::span<const ElementaryRowWay> ElementaryRowWays();

}  // namespace merlane
