#include "model/hypothesis.h"

#include <fmt/format.h>

#include <array>

#include "base/number_text.h"
#include "base/text.h"
#include "model/survival_tables.h"

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

/// The attribute coefficients 23 to 30: odd numbers E[brood size@hatch], even ones the hatch date.
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
      : data_(data), tables_(tables), Value_(Value), Step_(Step), Names_(Names) {}

  void MendCodesAndOverdispersion() {
    for (int i = 1; i <= 2; ++i)
      if (Value_(i) == 2) {
        Value_(i) = 1;
        Step_(i) = 0;
      }
    if (Value_(3) == 1) FixEggOverdispersion();
    if (Value_(4) == 1) FixJuvenileOverdispersion();
    if (Value_(5) == 0) Fix(6, 0, T6);
    if (Value_(7) == 0) Fix(8, 0, T8);
  }

  void MendEggs() {
    if (Value_(11) == 0) {
      FixEggOverdispersion();
      Fix(12, 0, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (c_N)");
      Fix(19, 0, FixedAlpha_NC);
      Fix(20, 1, FixedBeta_NC);
      StartIfZero(15, EstimateAlpha_NR);
    }
    if (Value_(11) == 1 && Value_(12) == 0) {
      Fix(15, 0, FixedAlpha_NR);
      Fix(16, 1, FixedBeta_NR);
      StartIfZero(19, EstimateAlpha_NC);
    }
  }

  void MendJuvenilesWithoutCorrelatedMortality() {
    if (Value_(13) != 0) return;
    const int NCov = data_.NCov, base = data_.InteractionBase;
    FixJuvenileOverdispersion();
    Fix(14, 0, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (c_B)");
    Fix(21, 0, FixedAlpha_BC);
    StartIfZero(17, EstimateAlpha_BR);
    FixMissingAttributes();
    FixRange(27, 30, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates");
    FixRange(30 + NCov + 1, 30 + 2 * NCov, 0, FixedCorrelatedCovariates);
    FixRange(30 + 3 * NCov + 1, 30 + 4 * NCov, 0, FixedCorrelatedCovariates);
    FixRange(base + 3, base + 4, 0, FixedCorrelatedInteractions);
    FixRange(base + 4 + 4 * NCov + 1, base + 4 + 8 * NCov, 0, FixedCorrelatedInteractions);
    Fix(22, 1, FixedBeta_BC);
  }

  void MendJuvenilesWithoutRandomMortality() {
    if (Value_(13) != 1 || Value_(14) != 0) return;
    const int NCov = data_.NCov, base = data_.InteractionBase;
    Fix(17, 0, FixedAlpha_BR);
    StartIfZero(21, EstimateAlpha_BC);
    FixRange(23, 26, 0, FixedRandomCovariates);
    FixRange(30 + 1, 30 + NCov, 0, FixedRandomCovariates);
    FixRange(30 + 2 * NCov + 1, 30 + 3 * NCov, 0, FixedRandomCovariates);
    FixRange(base + 1, base + 2, 0, FixedRandomInteractions);
    FixRange(base + 4 + 1, base + 4 + 4 * NCov, 0, FixedRandomInteractions);
    Fix(18, 1, FixedBeta_BR);
  }

  void StartBothMortalities() {
    if (HasBothMortalities(11, 12)) {
      StartIfZero(19, "DO ESTIMATE     (MUST>0) Theta_NC^2 for egg survival");
      StartIfZero(15, EstimateAlpha_NR);
    }
    if (HasBothMortalities(13, 14)) {
      StartIfZero(17, EstimateAlpha_BR);
      StartIfZero(21, EstimateAlpha_BC);
    }
  }

  void FixWhatHasNoIntervals() {
    if (tables_.ClutchIntervals == 0) {
      FixEggOverdispersion();
      Fix(11, 0, "DO NOT ESTIMATE (MUST=0) p[Clutch experiences correlated mortality @ a=I] (c_N)");
      Fix(12, 0, FixedClutchAttenuation);
      Fix(15, 0, FixedAlpha_NR);
      Fix(19, 0, FixedAlpha_NC);
      Fix(16, 1, FixedBeta_NR);
      Fix(20, 1, FixedBeta_NC);
    }
    if (tables_.BroodIntervals == 0) {
      FixJuvenileOverdispersion();
      Fix(13, 0, "DO NOT ESTIMATE (MUST=0) p[Brood experiences correlated mortality @ a=0] (c_B)");
      Fix(14, 0, FixedBroodAttenuation);
      Fix(17, 0, FixedAlpha_BR);
      Fix(21, 0, FixedAlpha_BC);
      FixRange(23, 30, 0, "DO NOT ESTIMATE (MUST=0) Brood attributes (random & correlated mortality)");
      FixRange(31, Value_.Size(), 0, "DO NOT ESTIMATE (MUST=0) Brood covariates (random & correlated mortality)");
      Fix(18, 1, FixedBeta_BR);
      Fix(22, 1, FixedBeta_BC);
    }
  }

  void FixWhatNeedsAges() {
    if (!data_.AllClutchAgesKnown) {
      Fix(12, 0, FixedClutchAttenuation);
      Fix(16, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR");
      Fix(20, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC");
    }
    if (!data_.AllBroodAgesKnown) {
      Fix(14, 0, FixedBroodAttenuation);
      Fix(18, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR");
      Fix(22, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC");
      for (int i = 23; i <= 30; ++i) Fix(i, 0, AttributeText(i));
      FixRange(31, Value_.Size(), 0, FixedAllCovariates);
    }
  }

  void FixWhatIsNotSimulated() { FixRange(31, Value_.Size(), 0, FixedAllCovariates); }

 private:
  void Fix(int i, double value, const char* text) {
    Value_(i) = value;
    Step_(i) = 0;
    Names_(i) = text;
  }
  void FixRange(int first, int last, double value, const char* text) {
    for (int i = first; i <= last; ++i) Fix(i, value, text);
  }
  /// Gives a parameter that has to carry the mortality something to start from.
  void StartIfZero(int i, const char* text) {
    if (Value_(i) != 0) return;
    Value_(i) = 0.01;
    Step_(i) = 0.001;
    Names_(i) = text;
  }
  void FixEggOverdispersion() {
    Fix(5, 0, T5);
    Fix(6, 0, T6);
  }
  void FixJuvenileOverdispersion() {
    Fix(7, 0, T7);
    Fix(8, 0, T8);
  }
  static const char* AttributeText(int i) { return AttributeTexts[static_cast<std::size_t>(i) - 23]; }

  bool HasBothMortalities(int c, int f) const {
    return (Value_(c) > 0 && Value_(c) < 1) || (Value_(c) == 1 && Value_(f) > 0);
  }

  /// A juvenile interval that the model uses, in a brood whose size at hatch or hatch day is missing, takes that
  /// attribute from all broods. The values of its interactions stay; only their texts say that they must be 0.
  void FixMissingAttributes() {
    const bool sizeMissing = AnyUsedBrood([&](std::size_t b) { return tables_.EHatch[b] == Missing; });
    const bool dateMissing = AnyUsedBrood([&](std::size_t b) { return data_.HatchDate[b] == Missing; });
    if (sizeMissing) FixAttribute(1);
    if (dateMissing) FixAttribute(2);
    if (!sizeMissing && !dateMissing) return;
    for (int f = 0; f < 4; ++f)
      Names_(data_.InteractionBase + 1 + f) = AttributeInteractionTexts[static_cast<std::size_t>(f)];
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
    for (int f = 0; f < 4; ++f) {
      const int i = 23 + 2 * f + attribute - 1;
      Fix(i, 0, AttributeText(i));
    }
    const int NCov = data_.NCov, base = data_.InteractionBase + 4;
    for (int m = 1; m <= NCov; ++m)
      for (int f = 0; f < 4; ++f)
        Names_(base + (2 * f + attribute - 1) * NCov + m) =
            fmt::format("DO NOT ESTIMATE (MUST=0) Interaction term coefficients {0}(0{1}) x {0}({2})        {3}",
                        FamilyNames[static_cast<std::size_t>(f)], attribute, Format(m + 2, "00"),
                        RightSet(data_.CovariateName(m), 12));
  }

  const BroodData& data_;
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
