#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/array1.h"
#include "data/brood_data.h"
#include "likelihood/objective_pass.h"
#include "likelihood/objective_plan.h"
#include "likelihood/survival_pass.h"
#include "platform/workers.h"
#include "survival/parameters.h"

namespace merlane {

/// What the plan has to be for so that these parameters can be evaluated with it.
ObjectivePlan::Subject SubjectOf(const Parameters& parameters, const SurvivalPass& survivalPass);

/// The objectives of vectors that are going to be evaluated, computed ahead by all workers at once. Whoever evaluates
/// goes on as if nobody had, and takes a sum from here when vector and mode are those that it was computed for, bit for
/// bit; a vector that is never asked for costs time and nothing else.
class SumsAhead {
 public:
  /// Keeps references to all.
  SumsAhead(const BroodData& data, const SurvivalPass& survivalPass, Workers& workers)
      : data_(data), survivalPass_(survivalPass), workers_(workers) {}

  struct Mode {
    bool BootstrapMode = false, testSums = false;
    bool operator==(const Mode&) const = default;
  };
  /// One pass for each worker, all of one plan.
  using Passes = std::vector<std::unique_ptr<ObjectivePass>>;

  /// Forgets what it knew and computes the sums at these vectors, as far as they go with the passes' plan.
  void Compute(std::span<const Array1<double>> vectors, const Array1<double>& Step, const Mode& mode,
               const Passes& passes);
  /// The sum at a vector that has been decoded, as ObjectivePass::Sum gives it; null where it is not known.
  const std::optional<double>* Find(const Array1<double>& Value, const Mode& mode);

 private:
  struct Known {
    Array1<double> Value;  // as decoding leaves it
    std::optional<double> sum;
    bool computed = false;
  };
  void Compute(Known& known, Parameters& parameters, const Array1<double>& Step, ObjectivePass& pass) const;

  const BroodData& data_;
  const SurvivalPass& survivalPass_;
  Workers& workers_;
  Mode mode_;
  std::vector<Known> known_;
  std::size_t next_ = 0;                // the one behind that which was found last
  std::vector<Parameters> parameters_;  // of each worker
};

}  // namespace merlane
