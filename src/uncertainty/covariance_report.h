#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
  Array1<double> values;      // estimates 1..NPAR
  Array1<std::string> fuses;  // likewise; none where the file does not tell them
  Array1<Row> rows;           // of the parameters that have standard errors
  bool optimistic = false;    // the errors are conditional: each takes those of all other parameters to be 0
  double constant = 0;        // that times the objective was -ln[likelihood]; 0 where the file does not tell
  /// What the file tells of a grid: the factor of its steps, 0 for analytical derivatives, and the mean of
  /// -ln[likelihood] over it. None of a grid that was abandoned, and where it does not tell.
  struct Grid {
    double factor = 0, mean = 0;
  };
  std::vector<Grid> grids;

  /// Between which bounds -ln[likelihood] lay at the values, as far as the grids tell; none when they do not. It is
  /// taken to move away from there at least as fast as the distance grows: its mean over a grid is then nearer than the
  /// mean over a larger one, in the ratio of their factors at least.
  struct Bounds {
    double low = 0, high = 0;
  };
  std::optional<Bounds> NegLnLAtValues() const;
};

/// The lines of a .cov file from the last name under which it was saved on: a pane that is saved again has more on top.
std::vector<std::string> CovarianceFileLines(std::string_view text);

/// Reads a .cov file, also one that was saved again and names each file on top, of a model with NPAR parameters, of
/// which `rows` have standard errors. RuntimeFailure when the file ends too soon, and when a row names no parameter of
/// the model, as happens in a file made for another NPAR.
CovarianceFile ReadCovarianceFile(std::string_view text, int NPAR, int rows);

}  // namespace merlane
