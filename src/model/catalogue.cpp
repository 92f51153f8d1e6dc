#include "model/catalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"
#include "model/failure_context.h"

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
    {12, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coef   (egg corr'd mortality) [0]"},
    {16, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR     (egg random mortality) [1]"},
    {20, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC     (egg corr'd mortality) [1]"},
}};

constexpr std::array<Replacement, 11> BroodAgeUnknownTexts = {{
    {14, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coef    (juv corr'd mortality) [0]"},
    {18, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR  (juv random mortality)    [1]"},
    {22, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC  (juv corr'd mortality)    [1]"},
    {23, "DO NOT ESTIMATE (MUST=0) Zeta_BR(01)  (on Alpha_BR): E[brood size@hatch]      [0]"},
    {24, "DO NOT ESTIMATE (MUST=0) Zeta_BR(02)  (on Alpha_BR): Hatch date               [0]"},
    {25, "DO NOT ESTIMATE (MUST=0) Gamma_BR(01) (on Beta_BR):  E[brood size@hatch]      [0]"},
    {26, "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date               [0]"},
    {27, "DO NOT ESTIMATE (MUST=0) Zeta_BC(01)  (on Alpha_BC): E[brood size@hatch]      [0]"},
    {28, "DO NOT ESTIMATE (MUST=0) Zeta_BC(02)  (on Alpha_BC): Hatch date               [0]"},
    {29, "DO NOT ESTIMATE (MUST=0) Gamma_BC(01) (on Beta_BC):  E[brood size@hatch]      [0]"},
    {30, "DO NOT ESTIMATE (MUST=0) Gamma_BC(02) (on Beta_BC):  Hatch date               [0]"},
}};

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
  const int NCov = data.NCov;
  const int base = data.InteractionBase + 4;
  const std::string nn = Format(m + 2, "00"), mm = Format(m, "00");
  const std::string name = RightSet(data.CovariateName(m), 12);
  const auto mainText = [&](const char* coefficient, const char* on, const char* mortality) {
    return fmt::format("{}({}) (on {}): Brood covariate {} ({} mortality) {} [0]", coefficient, nn, on, mm, mortality,
                       name);
  };
  Names(30 + m) = mainText("Zeta_BR", "Alpha_BR", "random");
  Names(30 + NCov + m) = mainText("Zeta_BC", "Alpha_BC", "corr'd");
  Names(30 + 2 * NCov + m) = mainText("Gamma_BR", "Beta_BR", "random");
  Names(30 + 3 * NCov + m) = mainText("Gamma_BC", "Beta_BC", "corr'd");
  for (int block = 0; block < 8; ++block)
    Names(base + block * NCov + m) =
        fmt::format("{}{})        {} [0]", CovariateInteractionHeads[static_cast<std::size_t>(block)], nn, name);
}

void ReplaceWhereBroodAgesAreUnknown(Array1<std::string>& Names, int NPAR, int InteractionBase) {
  for (const Replacement& replacement : BroodAgeUnknownTexts) Names(replacement.number) = replacement.text;
  for (int i = 31; i <= InteractionBase; ++i)
    Names(i) = "DO NOT ESTIMATE (MUST=0) Brood covariates                                     [0]";
  for (int i = 1; i <= 4; ++i)
    Names(InteractionBase + i) = AttributeInteractionUnknownTexts[static_cast<std::size_t>(i) - 1];
  for (int i = InteractionBase + 5; i <= NPAR; ++i)
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

/// 1 to 22: error distributions, overdispersion, ages of laying and fledging, and both kinds of mortality.
void DecodeStructure(Array1<double>& Value, Parameters& p, double& Penalty) {
  constexpr double LargestTheta = 0.999999;
  for (int i = 1; i <= 22; ++i) Value(i) = std::fabs(Value(i));
  for (int i = 1; i <= 4; ++i)
    if (Value(i) != 1.0 && Value(i) != 2.0) Value(i) = 1.0;
  p.CodeEggR = ToInt16(Value(1));
  p.CodeJuvR = ToInt16(Value(2));
  p.CodeEggC = ToInt16(Value(3));
  p.CodeJuvC = ToInt16(Value(4));

  CapAtOne(Value, 5, Penalty);
  CapAtOne(Value, 7, Penalty);
  p.ThetaEggR = p.ThetaJuvR = 0;
  p.ThetaEggC = std::min(Value(5), LargestTheta);
  p.v_N = Value(6);
  p.ThetaJuvC = std::min(Value(7), LargestTheta);
  p.v_B = Value(8);

  Value(9) = -Value(9);
  p.LayAge = Age(Value, 9);
  p.FledgeAge = Age(Value, 10);
  CapAtOne(Value, 11, Penalty);
  CapAtOne(Value, 13, Penalty);
  p.c_N = Value(11);
  p.f_N = Value(12);
  p.c_B = Value(13);
  p.f_B = Value(14);

  p.Alpha_NR = Value(15);
  p.Beta_NR = EggExponent(Value, 16, Penalty);
  p.Alpha_BR = Value(17);
  p.Beta_BR = Value(18);
  p.Alpha_NC = Value(19);
  p.Beta_NC = EggExponent(Value, 20, Penalty);
  p.Alpha_BC = Value(21);
  p.Beta_BC = Value(22);
}

/// True for a coefficient that acts or may be estimated.
bool InPlay(const Array1<double>& Value, const Array1<double>& Step, int i) { return Value(i) != 0 || Step(i) != 0; }

/// 23 to 30 + 4 NCov. The attributes (23 to 30) come family after family, their covariates (31 and on) in another order
/// of the families; saved files depend on both.
void DecodeMainEffects(const Array1<double>& Value, const Array1<double>& Step, int NCov, Parameters& p) {
  Array1<double>* const families[] = {&p.ZetaBR, &p.GammaBR, &p.ZetaBC, &p.GammaBC};
  for (int f = 0; f < 4; ++f) {
    Array1<double>& family = *families[f];
    if (family.Size() != NCov + 2) family.Dimension(NCov + 2);
    const int first = 23 + 2 * f;
    family(1) = Value(first);
    family(2) = Value(first + 1);
    if (InPlay(Value, Step, first)) p.UsesBroodSize = true;
    if (InPlay(Value, Step, first + 1)) p.UsesHatchDate = true;
  }
  for (int m = 1; m <= NCov; ++m) {
    p.ZetaBR(m + 2) = Value(30 + m);
    p.ZetaBC(m + 2) = Value(30 + NCov + m);
    p.GammaBR(m + 2) = Value(30 + 2 * NCov + m);
    p.GammaBC(m + 2) = Value(30 + 3 * NCov + m);
  }
}

/// InteractionBase + 1 and on: the attributes with each other, then with the covariates.
void DecodeInteractions(const Array1<double>& Value, const Array1<double>& Step, int NCov, int InteractionBase,
                        Parameters& p) {
  Matrix1<double>* const families[] = {&p.ZetaBRx, &p.GammaBRx, &p.ZetaBCx, &p.GammaBCx};
  const int base = InteractionBase + 4;
  for (int f = 0; f < 4; ++f) {
    Matrix1<double>& family = *families[f];
    if (family.Columns() != NCov + 2) family.Dimension(2, NCov + 2);
    const int attributes = InteractionBase + 1 + f;
    family(1, 2) = Value(attributes);
    if (InPlay(Value, Step, attributes)) p.UsesBroodSize = p.UsesHatchDate = true;
    for (int m = 1; m <= NCov; ++m) {
      const int withSize = base + 2 * f * NCov + m, withDate = withSize + NCov;
      family(1, m + 2) = Value(withSize);
      family(2, m + 2) = Value(withDate);
      if (InPlay(Value, Step, withSize)) p.UsesBroodSize = true;
      if (InPlay(Value, Step, withDate)) p.UsesHatchDate = true;
    }
  }
}

}  // namespace

void FillParameterDescriptions(Array1<std::string>& Names, std::int16_t NPAR, const BroodData& data) {
  for (int i = 1; i <= 30; ++i) Names(i) = FixedTexts[static_cast<std::size_t>(i) - 1];
  for (int i = 1; i <= 4; ++i)
    Names(data.InteractionBase + i) = AttributeInteractionTexts[static_cast<std::size_t>(i) - 1];
  for (int m = 1; m <= data.NCov; ++m) FillCovariateTexts(Names, data, m);
  if (!data.AllClutchAgesKnown)
    for (const Replacement& replacement : ClutchAgeUnknownTexts) Names(replacement.number) = replacement.text;
  if (!data.AllBroodAgesKnown) ReplaceWhereBroodAgesAreUnknown(Names, NPAR, data.InteractionBase);
}

void DecodeParameters(Array1<double>& Value, const Array1<double>& Step, std::int16_t NCov,
                      std::int16_t InteractionBase, Parameters& decoded, double& Penalty) {
  decoded.UsesBroodSize = decoded.UsesHatchDate = false;
  DecodeStructure(Value, decoded, Penalty);
  DecodeMainEffects(Value, Step, NCov, decoded);
  DecodeInteractions(Value, Step, NCov, InteractionBase, decoded);
}

}  // namespace merlane
