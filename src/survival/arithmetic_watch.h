#pragma once

#include <cmath>
#include <limits>

namespace merlane {

/// Passes intermediate results through and remembers whether each was a number. In IEEE arithmetic an infinity may turn
/// into an innocent 0 one step later, so none may go unseen. A value that underflows is no error.
class ArithmeticWatch {
 public:
  double operator()(double x) {
    failed_ |= !(std::abs(x) <= std::numeric_limits<double>::max());
    return x;
  }
  bool Failed() const { return failed_; }

 private:
  bool failed_ = false;
};

}  // namespace merlane
