#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/array1.h"
#include "uncertainty/covariance.h"

namespace merlane {

/// The report of a covariance calculation as it stands in its pane: lines in fixed columns that end with CR LF. A
/// number too long for its columns moves what stands behind it. Saved with its name on top (SavePane) it is a .cov
/// file, which the averaging of models reads by line and column. `turn` is called for each parameter that is tested
/// against 0 and 1, which takes its time.
std::string CovarianceReport(
    const Covariances& c, const std::function<void()>& turn = [] {});

/// What averaging reads back from a .cov file.
struct CovarianceFile {
  struct Row {
    std::int16_t parameter = 0;              // number of the parameter
    std::array<double, 3> standardErrors{};  // on grids 1 to 3; -1 where a grid has none
  };
  Array1<double> values;  // estimates 1..NPAR
  Array1<Row> rows;       // of the parameters that have standard errors
  double constant = 0;    // that times the objective was -ln[likelihood]; 0 where the file does not tell
};

/// The lines of a .cov file from the last name under which it was saved on: a pane that is saved again has more on top.
std::vector<std::string> CovarianceFileLines(std::string_view text);

/// Reads a .cov file, also one that was saved again and names each file on top, of a model with NPAR parameters, of
/// which `rows` have standard errors. RuntimeFailure when the file ends too soon, and when a row names no parameter of
/// the model, as happens in a file made for another NPAR.
CovarianceFile ReadCovarianceFile(std::string_view text, int NPAR, int rows);

}  // namespace merlane
