#pragma once

#include <array>

#include "data/brood_data.h"

namespace merlane {

// Where each parameter stands in the vector, counted from 1. Saved files depend on it.

/// The parameters that every analysis has, in the names of what they are decoded into (Parameters): N is a clutch, B a
/// brood, R random and C correlated mortality.
namespace parameter {
inline constexpr int CodeEggR = 1, CodeJuvR = 2, CodeEggC = 3, CodeJuvC = 4;
inline constexpr int ThetaEggC = 5, v_N = 6, ThetaJuvC = 7, v_B = 8;
inline constexpr int LayAge = 9, FledgeAge = 10;
inline constexpr int c_N = 11, f_N = 12, c_B = 13, f_B = 14;
inline constexpr int Alpha_NR = 15, Beta_NR = 16, Alpha_BR = 17, Beta_BR = 18;
inline constexpr int Alpha_NC = 19, Beta_NC = 20, Alpha_BC = 21, Beta_BC = 22;
inline constexpr int LastOfMortality = Beta_BC;  // up to here all are taken as absolute values
inline constexpr int FirstOfAttributes = 23, LastOfAttributes = 30;
inline constexpr int FirstOfCovariates = 31;
}  // namespace parameter

/// The families of coefficients of a brood's properties: on the rates (Zeta) and shapes (Gamma) of random and of
/// correlated mortality, in the order of their attributes and interactions.
enum class Family { ZetaBR, GammaBR, ZetaBC, GammaBC };
inline constexpr std::array<Family, 4> Families = {Family::ZetaBR, Family::GammaBR, Family::ZetaBC, Family::GammaBC};
inline constexpr std::array<Family, 2> RandomFamilies = {Family::ZetaBR, Family::GammaBR};
inline constexpr std::array<Family, 2> CorrelatedFamilies = {Family::ZetaBC, Family::GammaBC};

/// The properties by their number within a family: two attributes, then the covariates.
namespace property {
inline constexpr int BroodSize = 1, HatchDate = 2;
constexpr int Covariate(int m) { return m + 2; }
}  // namespace property

/// Number of a family's coefficient of an attribute, 1 or 2.
constexpr int AttributeParameter(Family family, int attribute) {
  return parameter::FirstOfAttributes + 2 * static_cast<int>(family) + attribute - 1;
}

/// Number of parameters of a model with that many brood covariates.
constexpr int ParameterCount(int covariates) { return 12 * covariates + 34; }

/// The last parameter before the interactions, likewise.
constexpr int InteractionBaseOf(int covariates) { return parameter::LastOfAttributes + 4 * covariates; }

/// What stands behind the attributes, and depends on the number of covariates.
struct ParameterLayout {
  int NCov = 0;
  int InteractionBase = InteractionBaseOf(0);

  ParameterLayout(int covariates, int interactionBase) : NCov(covariates), InteractionBase(interactionBase) {}
  explicit ParameterLayout(const BroodData& data) : ParameterLayout(data.NCov, data.InteractionBase) {}

  /// A family's coefficient of covariate m. The families stand in another order than those of the attributes.
  int Covariate(Family family, int m) const {
    constexpr int Place[] = {0, 2, 1, 3};  // of ZetaBR, GammaBR, ZetaBC, GammaBC
    return parameter::LastOfAttributes + Place[static_cast<int>(family)] * NCov + m;
  }
  /// Its interaction of the two attributes with each other.
  int AttributeInteraction(Family family) const { return InteractionBase + 1 + static_cast<int>(family); }
  /// Its interaction of an attribute with covariate m.
  int CovariateInteraction(Family family, int attribute, int m) const {
    return InteractionBase + 4 + (2 * static_cast<int>(family) + attribute - 1) * NCov + m;
  }
  int FirstCovariateInteraction() const { return InteractionBase + 5; }
};

}  // namespace merlane
