#pragma once

#include <string>
#include <string_view>

#include "inference/ranking.h"
#include "uncertainty/covariance_report.h"

namespace merlane {

/// What a covariance file tells about itself, whatever model it was made for.
struct CovarianceFileShape {
  int parameters = 0;        // lines of parameter values, counted by their numbers
  std::vector<int> counted;  // numbers of the parameters with standard errors
};

/// The shape of a .cov file; no parameters in a text that is none.
CovarianceFileShape ShapeOfCovarianceFile(std::string_view text);

/// Whether two numbers can be the same one that has been through files: these keep eight digits, and it may have been
/// through two of them.
bool SameInFiles(double a, double b);

/// In which respect a covariance file is not one of this model's present estimates: another set of estimated
/// parameters, another constant, other fuses, a value that differs beyond the digits that files keep, another -ln[L]
/// there, as with other data, or errors that are optimistic. Empty when it is one of them.
std::string DifferenceFromModel(const CovarianceFile& file, const Competitor& model);

}  // namespace merlane
