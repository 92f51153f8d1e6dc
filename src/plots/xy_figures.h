#pragma once

#include <optional>
#include <string>

namespace merlane {

/// The sums over the points of an XY plot and the figures that stand beside it. Deliberately the one-pass sums, not a
/// steadier form: the figures shown are defined by them.
class XyFigures {
 public:
  void Add(double x, double y);
  int Count() const { return n_; }

  /// Pearson's r and its standard error sqrt(1 - r²) / (n - 2), two lines; none when a variance is not positive or n is
  /// below 3.
  std::optional<std::string> Correlation() const;
  /// Mean, SD and variance of Y.
  std::string ScatterOfY() const;
  /// Mean, SD and variance of X with Y as its weight; none when the weights sum to 0 or the variance is not positive.
  /// `meanPattern` is the template of the mean.
  std::optional<std::string> DistributionOfX(const char* meanPattern) const;

 private:
  int n_ = 0;
  double sx_ = 0, sxx_ = 0, sy_ = 0, syy_ = 0, sxy_ = 0, sxxy_ = 0;
};

}  // namespace merlane
