#include "survival/catalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"
#include "survival/failure_context.h"

namespace merlane {
namespace {

constexpr std::array<const char*, 30> FixedTexts = {
    "Error dist'n for eggs      (random mortality):        Fix and DNE>         BI [1]",  // 1
    "Error dist'n for juveniles (random mortality):        Fix and DNE>         BI [1]",  // 2
    "Error dist'n for eggs      (correlated mortality):    Fix and DNE> BI [1]; BB [2]",  // 3
    "Error dist'n for juveniles (correlated mortality):    Fix and DNE> BI [1]; BB [2]",  // 4
    "Overdispersion Theta_NC^2 for eggs         (BB only, correlated mortality)    [0]",  // 5
    "Clutch age attenuation coefficient for Theta_NC^2 (BB only, v_N)              [0]",  // 6
    "Overdispersion Theta_BC^2 for juveniles    (BB only, correlated mortality)    [0]",  // 7
    "Brood age attenuation coefficient for Theta_BC^2 (BB only, v_B)               [0]",  // 8
    "Age @ laying (I, a negative number of days prior to hatch day) Fix and DNE    [0]",  // 9
    "Age @ fledge (D, a positive number of days after hatch day) Fix and DNE       [0]",  // 10
    "Probability a clutch experiences correlated mortality at lay date (c_N)       [0]",  // 11
    "Clutch age attenuation coefficient for correlated mortality (f_N)             [0]",  // 12
    "Probability a brood experiences correlated mortality at hatch date (c_B)      [0]",  // 13
    "Brood age attenuation coefficient for correlated mortality (f_B)              [0]",  // 14
    "Weibull Alpha_NR for egg survival to hatch (random mortality)                 [0]",  // 15
    "Weibull Beta_NR  for egg survival to hatch (random mortality)                 [1]",  // 16
    "Weibull Alpha_BR for juvenile survival     (random mortality)                 [0]",  // 17
    "Weibull Beta_BR  for juvenile survival     (random mortality)                 [1]",  // 18
    "Weibull Alpha_NC for egg survival to hatch (correlated mortality)             [0]",  // 19
    "Weibull Beta_NC  for egg survival to hatch (correlated mortality)             [1]",  // 20
    "Weibull Alpha_BC for juvenile survival     (correlated mortality)             [0]",  // 21
    "Weibull Beta_BC  for juvenile survival     (correlated mortality)             [1]",  // 22
    "Zeta_BR(01) (on Alpha_BR): E[brood size@hatch] (brood random mortality)       [0]",  // 23
    "Zeta_BR(02) (on Alpha_BR): Hatch date          (brood random mortality)       [0]",  // 24
    "Gamma_BR(01) (on Beta_BR): E[brood size@hatch] (brood random mortality)       [0]",  // 25
    "Gamma_BR(02) (on Beta_BR): Hatch date          (brood random mortality)       [0]",  // 26
    "Zeta_BC(01) (on Alpha_BC): E[brood size@hatch] (brood correlated mortality)   [0]",  // 27
    "Zeta_BC(02) (on Alpha_BC): Hatch date          (brood correlated mortality)   [0]",  // 28
    "Gamma_BC(01) (on Beta_BC): E[brood size@hatch] (brood correlated mortality)   [0]",  // 29
    "Gamma_BC(02) (on Beta_BC): Hatch date          (brood correlated mortality)   [0]",  // 30
};

/// A description that replaces the one of parameter `number`.
struct Replacement {
  int number;
  const char* text;
};

constexpr std::array<Replacement, 3> ClutchAgeUnknownTexts = {{
    {parameter::f_N, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coef   (egg corr'd mortality) [0]"},
    {parameter::Beta_NR, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR     (egg random mortality) [1]"},
    {parameter::Beta_NC, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC     (egg corr'd mortality) [1]"},
}};

constexpr std::array<Replacement, 3> BroodAgeUnknownTexts = {{
    {parameter::f_B, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coef    (juv corr'd mortality) [0]"},
    {parameter::Beta_BR, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR  (juv random mortality)    [1]"},
    {parameter::Beta_BC, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC  (juv corr'd mortality)    [1]"},
}};

/// The attributes in the order of their numbers.
constexpr std::array<const char*, 8> AttributeUnknownTexts = {
    "DO NOT ESTIMATE (MUST=0) Zeta_BR(01)  (on Alpha_BR): E[brood size@hatch]      [0]",
    "DO NOT ESTIMATE (MUST=0) Zeta_BR(02)  (on Alpha_BR): Hatch date               [0]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BR(01) (on Beta_BR):  E[brood size@hatch]      [0]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date               [0]",
    "DO NOT ESTIMATE (MUST=0) Zeta_BC(01)  (on Alpha_BC): E[brood size@hatch]      [0]",
    "DO NOT ESTIMATE (MUST=0) Zeta_BC(02)  (on Alpha_BC): Hatch date               [0]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BC(01) (on Beta_BC):  E[brood size@hatch]      [0]",
    "DO NOT ESTIMATE (MUST=0) Gamma_BC(02) (on Beta_BC):  Hatch date               [0]",
};

constexpr std::array<const char*, 4> AttributeInteractionTexts = {
    "Interaction term coefficients Zeta_BR(01) x  Zeta_BR(02)                      [0]",
    "Interaction term coefficients Gamma_BR(01) x Gamma_BR(02)                     [0]",
    "Interaction term coefficients  Zeta_BC(01) x  Zeta_BC(02)                     [0]",
    "Interaction term coefficients Gamma_BC(01) x Gamma_BC(02)                     [0]",
};

constexpr std::array<const char*, 4> AttributeInteractionUnknownTexts = {
    "DO NOT ESTIMATE (MUST=0) Interaction term coef  Zeta_BR(01) x  Zeta_BR(02)    [0]",
    "DO NOT ESTIMATE (MUST=0) Interaction term coef Gamma_BR(01) x Gamma_BR(02)    [0]",
    "DO NOT ESTIMATE (MUST=0) Interaction term coef  Zeta_BC(01) x  Zeta_BC(02)    [0]",
    "DO NOT ESTIMATE (MUST=0) Interaction term coef Gamma_BC(01) x Gamma_BC(02)    [0]",
};

/// The heads of the eight blocks of interactions with covariates, up to the number of the covariate's coefficient.
constexpr std::array<const char*, 8> CovariateInteractionHeads = {
    "Interaction term coefficients  Zeta_BR(01) x  Zeta_BR(", "Interaction term coefficients  Zeta_BR(02) x  Zeta_BR(",
    "Interaction term coefficients Gamma_BR(01) x Gamma_BR(", "Interaction term coefficients Gamma_BR(02) x Gamma_BR(",
    "Interaction term coefficients  Zeta_BC(01) x  Zeta_BC(", "Interaction term coefficients  Zeta_BC(02) x  Zeta_BC(",
    "Interaction term coefficients Gamma_BC(01) x Gamma_BC(", "Interaction term coefficients Gamma_BC(02) x Gamma_BC(",
};

void FillCovariateTexts(Array1<std::string>& Names, const BroodData& data, int m) {
  const ParameterLayout layout(data);
  const std::string nn = Format(property::Covariate(m), "00"), mm = Format(m, "00");
  const std::string name = RightSet(data.CovariateName(m), 12);
  const auto mainText = [&](const char* coefficient, const char* on, const char* mortality) {
    return fmt::format("{}({}) (on {}): Brood covariate {} ({} mortality) {} [0]", coefficient, nn, on, mm, mortality,
                       name);
  };
  Names(layout.Covariate(Family::ZetaBR, m)) = mainText("Zeta_BR", "Alpha_BR", "random");
  Names(layout.Covariate(Family::ZetaBC, m)) = mainText("Zeta_BC", "Alpha_BC", "corr'd");
  Names(layout.Covariate(Family::GammaBR, m)) = mainText("Gamma_BR", "Beta_BR", "random");
  Names(layout.Covariate(Family::GammaBC, m)) = mainText("Gamma_BC", "Beta_BC", "corr'd");
  std::size_t head = 0;
  for (const Family family : Families)
    for (const int attribute : {property::BroodSize, property::HatchDate})
      Names(layout.CovariateInteraction(family, attribute, m)) =
          fmt::format("{}{})        {} [0]", CovariateInteractionHeads[head++], nn, name);
}

void FillAttributeInteractionTexts(Array1<std::string>& Names, const ParameterLayout& layout,
                                   const std::array<const char*, 4>& texts) {
  for (const Family family : Families)
    Names(layout.AttributeInteraction(family)) = texts[static_cast<std::size_t>(family)];
}

void ReplaceWhereBroodAgesAreUnknown(Array1<std::string>& Names, int NPAR, const ParameterLayout& layout) {
  for (const Replacement& replacement : BroodAgeUnknownTexts) Names(replacement.number) = replacement.text;
  for (int i = parameter::FirstOfAttributes; i <= parameter::LastOfAttributes; ++i)
    Names(i) = AttributeUnknownTexts[static_cast<std::size_t>(i - parameter::FirstOfAttributes)];
  for (int i = parameter::FirstOfCovariates; i <= layout.InteractionBase; ++i)
    Names(i) = "DO NOT ESTIMATE (MUST=0) Brood covariates                                     [0]";
  FillAttributeInteractionTexts(Names, layout, AttributeInteractionUnknownTexts);
  for (int i = layout.FirstCovariateInteraction(); i <= NPAR; ++i)
    Names(i) = "DO NOT ESTIMATE (MUST=0) Brood covariate interaction terms                    [0]";
}

/// The penalty of an entry that lies `excess` beyond its limit.
double PenaltyOf(double excess) { return Checked(excess * excess * 1e20); }

/// Keeps parameter `i`, a probability or an overdispersion, at 1 at most, in the vector itself.
void CapAtOne(Array1<double>& Value, int i, double& Penalty) {
  if (Value(i) > 1) {
    Penalty = OfParameter(i, Value(i), [&](double value) { return Checked(Penalty + PenaltyOf(value - 1)); });
    Value(i) = 1;
  }
}

/// Parameter `i`, a Weibull exponent of the eggs, at most 10; the entry of the vector keeps the larger number.
double EggExponent(const Array1<double>& Value, int i, double& Penalty) {
  if (Value(i) <= 10) return Value(i);
  Penalty = OfParameter(i, Value(i), [&](double value) { return Checked(Penalty + PenaltyOf(value - 10)); });
  return 10;
}

/// Parameter `i`, an age.
std::int16_t Age(const Array1<double>& Value, int i) { return OfParameter(i, Value(i), ToInt16); }

/// Error distributions, overdispersion, ages of laying and fledging, and both kinds of mortality.
void DecodeStructure(Array1<double>& Value, Parameters& p, double& Penalty) {
  constexpr double LargestTheta = 0.999999;
  for (int i = 1; i <= parameter::LastOfMortality; ++i) Value(i) = std::fabs(Value(i));
  for (const int i : {parameter::CodeEggR, parameter::CodeJuvR, parameter::CodeEggC, parameter::CodeJuvC})
    if (Value(i) != 1.0 && Value(i) != 2.0) Value(i) = 1.0;
  p.CodeEggR = ToInt16(Value(parameter::CodeEggR));
  p.CodeJuvR = ToInt16(Value(parameter::CodeJuvR));
  p.CodeEggC = ToInt16(Value(parameter::CodeEggC));
  p.CodeJuvC = ToInt16(Value(parameter::CodeJuvC));

  CapAtOne(Value, parameter::ThetaEggC, Penalty);
  CapAtOne(Value, parameter::ThetaJuvC, Penalty);
  p.ThetaEggR = p.ThetaJuvR = 0;
  p.ThetaEggC = std::min(Value(parameter::ThetaEggC), LargestTheta);
  p.v_N = Value(parameter::v_N);
  p.ThetaJuvC = std::min(Value(parameter::ThetaJuvC), LargestTheta);
  p.v_B = Value(parameter::v_B);

  Value(parameter::LayAge) = -Value(parameter::LayAge);
  p.LayAge = Age(Value, parameter::LayAge);
  p.FledgeAge = Age(Value, parameter::FledgeAge);
  CapAtOne(Value, parameter::c_N, Penalty);
  CapAtOne(Value, parameter::c_B, Penalty);
  p.c_N = Value(parameter::c_N);
  p.f_N = Value(parameter::f_N);
  p.c_B = Value(parameter::c_B);
  p.f_B = Value(parameter::f_B);

  p.Alpha_NR = Value(parameter::Alpha_NR);
  p.Beta_NR = EggExponent(Value, parameter::Beta_NR, Penalty);
  p.Alpha_BR = Value(parameter::Alpha_BR);
  p.Beta_BR = Value(parameter::Beta_BR);
  p.Alpha_NC = Value(parameter::Alpha_NC);
  p.Beta_NC = EggExponent(Value, parameter::Beta_NC, Penalty);
  p.Alpha_BC = Value(parameter::Alpha_BC);
  p.Beta_BC = Value(parameter::Beta_BC);
}

/// Takes a coefficient of attributes, which may need to be known: those that act or may be estimated do.
double AttributeCoefficient(const Array1<double>& Value, const Array1<double>& Step, int i,
                            std::initializer_list<bool*> needed) {
  if (Value(i) != 0 || Step(i) != 0)
    for (bool* const uses : needed) *uses = true;
  return Value(i);
}

void DecodeMainEffects(const Array1<double>& Value, const Array1<double>& Step, const ParameterLayout& layout,
                       Parameters& p) {
  for (const Family family : Families) {
    Array1<double>& Z = p.Coefficients(family);
    if (Z.Size() != property::Covariate(layout.NCov)) Z.Dimension(property::Covariate(layout.NCov));
    Z(property::BroodSize) =
        AttributeCoefficient(Value, Step, AttributeParameter(family, property::BroodSize), {&p.UsesBroodSize});
    Z(property::HatchDate) =
        AttributeCoefficient(Value, Step, AttributeParameter(family, property::HatchDate), {&p.UsesHatchDate});
    for (int m = 1; m <= layout.NCov; ++m) Z(property::Covariate(m)) = Value(layout.Covariate(family, m));
  }
}

void DecodeInteractions(const Array1<double>& Value, const Array1<double>& Step, const ParameterLayout& layout,
                        Parameters& p) {
  for (const Family family : Families) {
    Matrix1<double>& Zx = p.Interactions(family);
    if (Zx.Columns() != property::Covariate(layout.NCov)) Zx.Dimension(2, property::Covariate(layout.NCov));
    Zx(property::BroodSize, property::HatchDate) =
        AttributeCoefficient(Value, Step, layout.AttributeInteraction(family), {&p.UsesBroodSize, &p.UsesHatchDate});
    for (int m = 1; m <= layout.NCov; ++m) {
      Zx(property::BroodSize, property::Covariate(m)) = AttributeCoefficient(
          Value, Step, layout.CovariateInteraction(family, property::BroodSize, m), {&p.UsesBroodSize});
      Zx(property::HatchDate, property::Covariate(m)) = AttributeCoefficient(
          Value, Step, layout.CovariateInteraction(family, property::HatchDate, m), {&p.UsesHatchDate});
    }
  }
}

}  // namespace

void FillParameterDescriptions(Array1<std::string>& Names, std::int16_t NPAR, const BroodData& data) {
  const ParameterLayout layout(data);
  for (std::size_t i = 0; i < FixedTexts.size(); ++i) Names(static_cast<int>(i) + 1) = FixedTexts[i];
  FillAttributeInteractionTexts(Names, layout, AttributeInteractionTexts);
  for (int m = 1; m <= data.NCov; ++m) FillCovariateTexts(Names, data, m);
  if (!data.AllClutchAgesKnown)
    for (const Replacement& replacement : ClutchAgeUnknownTexts) Names(replacement.number) = replacement.text;
  if (!data.AllBroodAgesKnown) ReplaceWhereBroodAgesAreUnknown(Names, NPAR, layout);
}

void DecodeParameters(Array1<double>& Value, const Array1<double>& Step, const ParameterLayout& layout,
                      Parameters& decoded, double& Penalty) {
  decoded.UsesBroodSize = decoded.UsesHatchDate = false;
  DecodeStructure(Value, decoded, Penalty);
  DecodeMainEffects(Value, Step, layout, decoded);
  DecodeInteractions(Value, Step, layout, decoded);
}

bool AllZero(const Array1<double>& Value) {
  return std::all_of(Value.begin(), Value.end(), [](double value) { return value == 0; });
}

}  // namespace merlane
