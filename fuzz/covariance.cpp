// Covariance files, as the averaging of models reads them.
#include "base/runtime_failure.h"
#include "inference/covariance_match.h"
#include "targets.h"

namespace merlane::fuzz {

void Covariance(std::string_view bytes) {
  const CovarianceFileShape shape = ShapeOfCovarianceFile(bytes);
  Require(shape.parameters >= 0, "a file has no fewer than no parameters");
  if (shape.parameters == 0) return;
  const int rows = static_cast<int>(shape.counted.size());
  try {
    const CovarianceFile file = ReadCovarianceFile(bytes, shape.parameters, rows);
    Require(file.values.Size() == shape.parameters && file.rows.Size() == rows, "as many as the shape tells");
    for (int i = 1; i <= rows; ++i)
      Require(file.rows(i).parameter >= 1 && file.rows(i).parameter <= shape.parameters, "a row names a parameter");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
}

}  // namespace merlane::fuzz
