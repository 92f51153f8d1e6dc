#pragma once

#include <vector>

namespace merlane {

/// What a profile, a posterior or a prior profile hands over for one parameter: values of the parameter and the series
/// over them.
struct DistributionSeries {
  enum class Source { LikelihoodProfile, Posterior, Prior };
  Source source = Source::LikelihoodProfile;
  int parameter = 0;
  std::vector<double> values;  // X, in the order of the points
  std::vector<double> negLnL;  // -ln[L]
  std::vector<double> density;
  std::vector<double> regionOnMode;  // confidence region
  std::vector<double> regionOnMean;
  std::vector<double> cumulative;  // from left to right
  std::vector<double> normal;      // the normal density of the same mean and SD
  double maximumLikelihood = 0;    // value at the lowest -ln[L]
  double expected = 0;
  double difference = 0;  // maximumLikelihood less expected
  double standardError = 0;
};

}  // namespace merlane
