#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/objective_plan.h"
#include "survival/parameters.h"
#include "survival/survival.h"

namespace merlane {

/// What the properties of broods make of their rates and shapes, for many broods at once and with the bits of
/// BroodMortalityByAge (survival.h): one term after the other, and the exponentials in a row.
class EffectColumns {
 public:
  /// Gathers the properties of the broods whose mortalities the plan numbers. Keeps a reference to it.
  EffectColumns(const BroodData& data, const ObjectivePlan& plan);

  /// Room for the values of a piece; each thread has its own.
  struct Rows {
    explicit Rows(const ObjectivePlan& plan);
    std::vector<double> E;  // E[brood size@hatch] of each mortality, to be filled in
    std::vector<double> X, effect;
    std::array<std::vector<double>, 4> values;  // by family
    Mortality Of(std::size_t number, const Parameters& p) const {
      return {values[0][number], values[1][number], values[2][number], values[3][number], p.c_B, p.f_B};
    }
  };

  /// True where the broods of a piece have these effects: where all of them have ages.
  static bool Serve(const ObjectivePlan& plan, const ObjectivePlan::Piece& piece);
  /// Fills the values of a piece's mortalities; false where one overflows or is too large.
  bool Fill(const ObjectivePlan::Piece& piece, const Parameters& p, Rows& rows) const;

 private:
  bool Fill(const ObjectivePlan::Piece& piece, double base, const Array1<double>& Z, const Matrix1<double>& Zx,
            std::vector<double>& values, Rows& rows) const;

  const int NCov_;
  // By mortality of broods.
  std::vector<double> H_;                        // hatch dates
  std::vector<std::vector<double>> covariates_;  // of each covariate
};

}  // namespace merlane
