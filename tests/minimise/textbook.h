#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "control/fuses.h"
#include "control/objective.h"
#include "control/run_state.h"

namespace merlane::test {

/// A function of a vector, brought to the framework as a model: it knows nothing of the data behind it.
using Function = std::function<double(Array1<double>&)>;

/// A run state whose model is a function, with steps of 0.1 and all parameters free unless told otherwise.
struct FunctionRun {
  FunctionRun(const std::vector<double>& start, Function f, double step = 0.1)
      : objective(state, [this, f = std::move(f)](ModelCall& call) {
          codes.push_back(call.NF);
          if (call.NF > 0) call.F = f(call.X);
        }) {
    AlgorithmData& a = state.algorithm;
    a.NPAR = static_cast<std::int16_t>(start.size());
    a.Value.Dimension(a.NPAR);
    std::copy(start.begin(), start.end(), a.Value.begin());
    a.Step.Dimension(a.NPAR, step);
    a.Fuse.Dimension(a.NPAR, Unfused);
    a.ParName.Dimension(a.NPAR);
    a.Tolerance = 1e-4;
  }
  FunctionRun(const FunctionRun&) = delete;
  FunctionRun& operator=(const FunctionRun&) = delete;

  /// What every command does before it minimises.
  void Pack() {
    BuildFuseGroups(state);
    PackFree(state);
  }

  RunState state;
  Objective objective;
  std::vector<std::int32_t> codes;  // function-call codes that the model has seen
};

inline double Square(double x) { return x * x; }

/// (x - 3)^2 + 4 (y + 1)^2 + 5.
inline double Quadratic(const Array1<double>& x) { return Square(x(1) - 3) + 4 * Square(x(2) + 1) + 5; }

// The order of operations in these functions is that of the runs they are compared with: Marquardt's method follows the
// last bit of an objective.
//
// J. J. More, B. S. Garbow and K. E. Hillstrom, Testing unconstrained optimization software, ACM Transactions on
// Mathematical Software 7 (1981) 17-41: numbers in brackets are those of the collection.

/// [1], from (-1.2, 1); minimum 0 at (1, 1).
inline double Rosenbrock(const Array1<double>& x) { return 100 * Square(x(2) - x(1) * x(1)) + Square(1 - x(1)); }

/// [7], from (-1, 0, 0); minimum 0 at (1, 0, 0).
inline double HelicalValley(const Array1<double>& x) {
  const double pi = 4 * std::atan(1.0);
  double theta = std::atan(x(2) / x(1)) / (2 * pi);
  if (x(1) < 0) theta += 0.5;
  return Square(10 * (x(3) - 10 * theta)) + Square(10 * (std::sqrt(x(1) * x(1) + x(2) * x(2)) - 1)) + Square(x(3));
}

/// [12] with 10 terms, from (0, 10, 20); minimum 0 at (1, 10, 1), (10, 1, -1) and wherever x1 = x2 and x3 = 0.
inline double Box3(const Array1<double>& x) {
  double sum = 0;
  for (int i = 1; i <= 10; ++i) {
    const double t = 0.1 * i;
    sum += Square(std::exp(-t * x(1)) - std::exp(-t * x(2)) - x(3) * (std::exp(-t) - std::exp(-10 * t)));
  }
  return sum;
}

/// [13], from (3, -1, 0, 1); minimum 0 at the origin, where the Hessian is singular.
inline double PowellSingular(const Array1<double>& x) {
  return Square(x(1) + 10 * x(2)) + 5 * Square(x(3) - x(4)) + std::pow(x(2) - 2 * x(3), 4) +
         10 * std::pow(x(1) - x(4), 4);
}

/// [14], from (-3, -1, -3, -1); minimum 0 at (1, 1, 1, 1); a saddle near (-1, 1, -1, 1).
inline double Wood(const Array1<double>& x) {
  return 100 * Square(x(1) * x(1) - x(2)) + Square(x(1) - 1) + Square(x(3) - 1) + 90 * Square(x(3) * x(3) - x(4)) +
         10.1 * (Square(x(2) - 1) + Square(x(4) - 1)) + 19.8 * (x(2) - 1) * (x(4) - 1);
}

}  // namespace merlane::test
