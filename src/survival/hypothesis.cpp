#include "survival/hypothesis.h"

#include <fmt/format.h>

#include <array>

#include "base/number_text.h"
#include "base/text.h"
#include "survival/parameter_layout.h"
#include "survival/survival_tables.h"

namespace merlane {
namespace {

constexpr const char* T5 = "DO NOT ESTIMATE (MUST=0) Overdispersion Theta_NC^2 for eggs";
constexpr const char* T6 = "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient for Theta_NC^2";
constexpr const char* T7 = "DO NOT ESTIMATE (MUST=0) Overdispersion Theta_BC^2 for juveniles";
constexpr const char* T8 = "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient for Theta_BC^2";

constexpr const char* FixedAlpha_NR = "DO NOT ESTIMATE (MUST=0) Alpha_NR for egg survival";
constexpr const char* FixedBeta_NR = "DO NOT ESTIMATE (MUST=1) Beta_NR  for egg survival";
constexpr const char* FixedAlpha_BR = "DO NOT ESTIMATE (MUST=0) Alpha_BR for juvenile survival";
constexpr const char* FixedBeta_BR = "DO NOT ESTIMATE (MUST=1) Beta_BR for juvenile survival";
constexpr const char* FixedAlpha_NC = "DO NOT ESTIMATE (MUST=0) Alpha_NC for egg survival";
constexpr const char* FixedBeta_NC = "DO NOT ESTIMATE (MUST=1) Beta_NC  for egg survival";
constexpr const char* FixedAlpha_BC = "DO NOT ESTIMATE (MUST=0) Alpha_BC for juvenile survival";
constexpr const char* FixedBeta_BC = "DO NOT ESTIMATE (MUST=1) Beta_BC for juvenile survival";

constexpr const char* EstimateAlpha_NR = "DO ESTIMATE     (MUST>0) Alpha_NR for egg survival";
constexpr const char* EstimateAlpha_NC = "DO ESTIMATE     (MUST>0) Alpha_NC for egg survival";
constexpr const char* EstimateAlpha_BR = "DO ESTIMATE (MUST>0) Alpha_BR for juvenile survival";
constexpr const char* EstimateAlpha_BC = "DO ESTIMATE (MUST>0) Alpha_BC for juvenile survival";

constexpr const char* FixedClutchAttenuation = "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (f_N)";
constexpr const char* FixedBroodAttenuation = "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (f_B)";
constexpr const char* FixedRandomCovariates = "DO NOT ESTIMATE (MUST=0) Brood covariates (random mortality)";
constexpr const char* FixedCorrelatedCovariates = "DO NOT ESTIMATE (MUST=0) Brood covariates (correlated mortality)";
constexpr const char* FixedRandomInteractions =
    "DO NOT ESTIMATE (MUST=0) Brood covariate interactions  (random mortality)";
constexpr const char* FixedCorrelatedInteractions =
    "DO NOT ESTIMATE (MUST=0) Brood covariate interactions  (correlated mortality)";
constexpr const char* FixedAllCovariates =
    "DO NOT ESTIMATE (MUST=0) Brood covariates & interactions (random & correlated mortality)";

/// The coefficients of attributes in the order of their numbers.
constexpr std::array<const char*, 8> AttributeTexts = {
    "DO NOT ESTIMATE (MUST=0) Zeta_BR(01)  (on Alpha_BR): E[brood size@hatch]",
    "DO NOT ESTIMATE (MUST=0) Zeta_BR(02)  (on Alpha_BR): Hatch date",
    "DO NOT ESTIMATE (MUST=0) Gamma_BR(01) (on Beta_BR):  E[brood size@hatch]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date",
    "DO NOT ESTIMATE (MUST=0) Zeta_BC(01)  (on Alpha_BC): E[brood size@hatch]",
    "DO NOT ESTIMATE (MUST=0) Zeta_BC(02)  (on Alpha_BC): Hatch date",
    "DO NOT ESTIMATE (MUST=0) Gamma_BC(01) (on Beta_BC):  E[brood size@hatch]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BC(02) (on Beta_BC):  Hatch date",
};

constexpr std::array<const char*, 4> AttributeInteractionTexts = {
    "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Zeta_BR(01) x  Zeta_BR(02)",
    "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Gamma_BR(01) x Gamma_BR(02)",
    "DO NOT ESTIMATE (MUST=0) Interaction term coefficients  Zeta_BC(01) x  Zeta_BC(02)",
    "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Gamma_BC(01) x Gamma_BC(02)",
};

/// The families of coefficients as the texts of interactions with a covariate name them, all of one width.
constexpr std::array<const char*, 4> FamilyNames = {" Zeta_BR", "Gamma_BR", " Zeta_BC", "Gamma_BC"};

/// One repair. Later rules see what earlier ones have done, and the last rule to touch a parameter wins.
class Repair {
 public:
  Repair(const BroodData& data, const SurvivalTables& tables, Array1<double>& Value, Array1<double>& Step,
         Array1<std::string>& Names)
      : data_(data), layout_(data), tables_(tables), Value_(Value), Step_(Step), Names_(Names) {}

  void MendCodesAndOverdispersion() {
    for (const int i : {parameter::CodeEggR, parameter::CodeJuvR})
      if (Value_(i) == 2) {
        Value_(i) = 1;
        Step_(i) = 0;
      }
    if (Value_(parameter::CodeEggC) == 1) FixEggOverdispersion();
    if (Value_(parameter::CodeJuvC) == 1) FixJuvenileOverdispersion();
    if (Value_(parameter::ThetaEggC) == 0) Fix(parameter::v_N, 0, T6);
    if (Value_(parameter::ThetaJuvC) == 0) Fix(parameter::v_B, 0, T8);
  }

  void MendEggs() {
    if (Value_(parameter::c_N) == 0) {
      FixEggOverdispersion();
      Fix(parameter::f_N, 0, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (c_N)");
      Fix(parameter::Alpha_NC, 0, FixedAlpha_NC);
      Fix(parameter::Beta_NC, 1, FixedBeta_NC);
      StartIfZero(parameter::Alpha_NR, EstimateAlpha_NR);
    }
    if (Value_(parameter::c_N) == 1 && Value_(parameter::f_N) == 0) {
      Fix(parameter::Alpha_NR, 0, FixedAlpha_NR);
      Fix(parameter::Beta_NR, 1, FixedBeta_NR);
      StartIfZero(parameter::Alpha_NC, EstimateAlpha_NC);
    }
  }

  void MendJuvenilesWithoutCorrelatedMortality() {
    if (Value_(parameter::c_B) != 0) return;
    FixJuvenileOverdispersion();
    Fix(parameter::f_B, 0, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (c_B)");
    Fix(parameter::Alpha_BC, 0, FixedAlpha_BC);
    StartIfZero(parameter::Alpha_BR, EstimateAlpha_BR);
    FixMissingAttributes();
    FixFamilies(CorrelatedFamilies, "DO NOT ESTIMATE (MUST=0) Brood covariates", FixedCorrelatedCovariates,
                FixedCorrelatedInteractions);
    Fix(parameter::Beta_BC, 1, FixedBeta_BC);
  }

  void MendJuvenilesWithoutRandomMortality() {
    if (Value_(parameter::c_B) != 1 || Value_(parameter::f_B) != 0) return;
    Fix(parameter::Alpha_BR, 0, FixedAlpha_BR);
    StartIfZero(parameter::Alpha_BC, EstimateAlpha_BC);
    FixFamilies(RandomFamilies, FixedRandomCovariates, FixedRandomCovariates, FixedRandomInteractions);
    Fix(parameter::Beta_BR, 1, FixedBeta_BR);
  }

  void StartBothMortalities() {
    if (HasBothMortalities(parameter::c_N, parameter::f_N)) {
      StartIfZero(parameter::Alpha_NC, "DO ESTIMATE     (MUST>0) Theta_NC^2 for egg survival");
      StartIfZero(parameter::Alpha_NR, EstimateAlpha_NR);
    }
    if (HasBothMortalities(parameter::c_B, parameter::f_B)) {
      StartIfZero(parameter::Alpha_BR, EstimateAlpha_BR);
      StartIfZero(parameter::Alpha_BC, EstimateAlpha_BC);
    }
  }

  void FixWhatHasNoIntervals() {
    if (tables_.ClutchIntervals == 0) {
      FixEggOverdispersion();
      Fix(parameter::c_N, 0, "DO NOT ESTIMATE (MUST=0) p[Clutch experiences correlated mortality @ a=I] (c_N)");
      Fix(parameter::f_N, 0, FixedClutchAttenuation);
      Fix(parameter::Alpha_NR, 0, FixedAlpha_NR);
      Fix(parameter::Alpha_NC, 0, FixedAlpha_NC);
      Fix(parameter::Beta_NR, 1, FixedBeta_NR);
      Fix(parameter::Beta_NC, 1, FixedBeta_NC);
    }
    if (tables_.BroodIntervals == 0) {
      FixJuvenileOverdispersion();
      Fix(parameter::c_B, 0, "DO NOT ESTIMATE (MUST=0) p[Brood experiences correlated mortality @ a=0] (c_B)");
      Fix(parameter::f_B, 0, FixedBroodAttenuation);
      Fix(parameter::Alpha_BR, 0, FixedAlpha_BR);
      Fix(parameter::Alpha_BC, 0, FixedAlpha_BC);
      FixRange(parameter::FirstOfAttributes, parameter::LastOfAttributes,
               "DO NOT ESTIMATE (MUST=0) Brood attributes (random & correlated mortality)");
      FixCovariates("DO NOT ESTIMATE (MUST=0) Brood covariates (random & correlated mortality)");
      Fix(parameter::Beta_BR, 1, FixedBeta_BR);
      Fix(parameter::Beta_BC, 1, FixedBeta_BC);
    }
  }

  void FixWhatNeedsAges() {
    if (!data_.AllClutchAgesKnown) {
      Fix(parameter::f_N, 0, FixedClutchAttenuation);
      Fix(parameter::Beta_NR, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR");
      Fix(parameter::Beta_NC, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC");
    }
    if (!data_.AllBroodAgesKnown) {
      Fix(parameter::f_B, 0, FixedBroodAttenuation);
      Fix(parameter::Beta_BR, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR");
      Fix(parameter::Beta_BC, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC");
      FixAttribute(property::BroodSize);
      FixAttribute(property::HatchDate);
      FixCovariates(FixedAllCovariates);
    }
  }

  void FixWhatIsNotSimulated() { FixCovariates(FixedAllCovariates); }

 private:
  void Fix(int i, double value, const char* text) {
    Value_(i) = value;
    Step_(i) = 0;
    Names_(i) = text;
  }
  void FixRange(int first, int last, const char* text) {
    for (int i = first; i <= last; ++i) Fix(i, 0, text);
  }
  /// The covariates and all interactions.
  void FixCovariates(const char* text) { FixRange(parameter::FirstOfCovariates, Value_.Size(), text); }
  /// All that acts on a brood's mortality of one kind.
  void FixFamilies(const std::array<Family, 2>& families, const char* attributes, const char* covariates,
                   const char* interactions) {
    for (const Family family : families) {
      Fix(layout_.AttributeInteraction(family), 0, interactions);
      for (const int attribute : Attributes) {
        Fix(AttributeParameter(family, attribute), 0, attributes);
        for (int m = 1; m <= layout_.NCov; ++m)
          Fix(layout_.CovariateInteraction(family, attribute, m), 0, interactions);
      }
      for (int m = 1; m <= layout_.NCov; ++m) Fix(layout_.Covariate(family, m), 0, covariates);
    }
  }
  /// Gives a parameter that has to carry the mortality something to start from.
  void StartIfZero(int i, const char* text) {
    if (Value_(i) != 0) return;
    Value_(i) = 0.01;
    Step_(i) = 0.001;
    Names_(i) = text;
  }
  void FixEggOverdispersion() {
    Fix(parameter::ThetaEggC, 0, T5);
    Fix(parameter::v_N, 0, T6);
  }
  void FixJuvenileOverdispersion() {
    Fix(parameter::ThetaJuvC, 0, T7);
    Fix(parameter::v_B, 0, T8);
  }
  bool HasBothMortalities(int c, int f) const {
    return (Value_(c) > 0 && Value_(c) < 1) || (Value_(c) == 1 && Value_(f) > 0);
  }

  /// A juvenile interval that the model uses, in a brood whose size at hatch or hatch day is missing, takes that
  /// attribute from all broods. The values of its interactions stay; only their texts say that they must be 0.
  void FixMissingAttributes() {
    const bool sizeMissing = AnyUsedBrood([&](std::size_t b) { return tables_.EHatch[b] == Missing; });
    const bool dateMissing = AnyUsedBrood([&](std::size_t b) { return data_.HatchDate[b] == Missing; });
    if (sizeMissing) FixAttributeEverywhere(property::BroodSize);
    if (dateMissing) FixAttributeEverywhere(property::HatchDate);
    if (!sizeMissing && !dateMissing) return;
    for (const Family family : Families)
      Names_(layout_.AttributeInteraction(family)) = AttributeInteractionTexts[static_cast<std::size_t>(family)];
  }

  template <class Test>
  bool AnyUsedBrood(Test test) const {
    for (std::size_t b = 0; b < data_.FirstVisit.size(); ++b)
      if (test(b) && HasUsedJuvenileInterval(b)) return true;
    return false;
  }
  bool HasUsedJuvenileInterval(std::size_t b) const {
    const auto first = static_cast<std::size_t>(data_.FirstVisit[b]);
    const auto last = first + static_cast<std::size_t>(data_.VisitsOf[b]);
    for (std::size_t v = first; v < last; ++v)
      if (data_.VisitAge[v] > 0 && (tables_.EVisitR[v] != Missing || tables_.EVisitC[v] != Missing)) return true;
    return false;
  }

  void FixAttribute(int attribute) {
    for (const Family family : Families) {
      const int i = AttributeParameter(family, attribute);
      Fix(i, 0, AttributeTexts[static_cast<std::size_t>(i - parameter::FirstOfAttributes)]);
    }
  }

  /// With the texts, but not the values, of its interactions.
  void FixAttributeEverywhere(int attribute) {
    FixAttribute(attribute);
    for (const Family family : Families)
      for (int m = 1; m <= layout_.NCov; ++m)
        Names_(layout_.CovariateInteraction(family, attribute, m)) =
            fmt::format("DO NOT ESTIMATE (MUST=0) Interaction term coefficients {0}(0{1}) x {0}({2})        {3}",
                        FamilyNames[static_cast<std::size_t>(family)], attribute, Format(property::Covariate(m), "00"),
                        RightSet(data_.CovariateName(m), 12));
  }

  static constexpr std::array<int, 2> Attributes = {property::BroodSize, property::HatchDate};

  const BroodData& data_;
  const ParameterLayout layout_;
  const SurvivalTables& tables_;
  Array1<double>& Value_;
  Array1<double>& Step_;
  Array1<std::string>& Names_;
};

}  // namespace

bool ValidateHypothesis(const BroodData& data, const SurvivalTables& tables, bool simulationMode, Array1<double>& Value,
                        Array1<double>& Step, Array1<std::string>& Names, Array1<std::string>& Fuse) {
  const Array1<double> oldValue = Value, oldStep = Step;
  Repair repair(data, tables, Value, Step, Names);
  repair.MendCodesAndOverdispersion();
  repair.MendEggs();
  repair.MendJuvenilesWithoutCorrelatedMortality();
  repair.MendJuvenilesWithoutRandomMortality();
  repair.StartBothMortalities();
  repair.FixWhatHasNoIntervals();
  repair.FixWhatNeedsAges();
  if (simulationMode) repair.FixWhatIsNotSimulated();

  for (int i = 1; i <= Value.Size(); ++i)
    if (Value(i) != oldValue(i) || Step(i) != oldStep(i)) {
      Fuse(i) = "~";
      return true;
    }
  return false;
}

}  // namespace merlane
