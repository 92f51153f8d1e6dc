#pragma once

#include "data/brood_data.h"
#include "survival/parameters.h"

namespace merlane {

/// Mortality of one stage of life, eggs or juveniles: Weibull rates per day and shapes of random (R) and correlated (C)
/// mortality, the probability c of the correlated state at the start of the stage and its attenuation f.
struct Mortality {
  double AlphaR = 0, BetaR = 0, AlphaC = 0, BetaC = 0, c = 0, f = 0;
};

/// Shares of a nest's individuals alive at a time and in the random or the correlated state; 0 where the mortality
/// knows one state only. `failed` when no number came out.
struct SharesAlive {
  double SR = 0, SC = 0;
  bool failed = false;
};

/// The modified Weibull survival functions of a mortality.
class SurvivalFunctions {
 public:
  SurvivalFunctions() : SurvivalFunctions(Mortality()) {}
  explicit SurvivalFunctions(const Mortality& mortality);

  /// Shares alive at the time t, days since the start of the stage (or a day of the year, where ages are unknown). Any
  /// overflow, division by zero, or power of a negative time with a fractional shape makes the shares fail.
  SharesAlive At(double t) const;

  /// Mortality of one kind alone is told by the rates, whatever c is.
  bool RandomOnly() const { return m_.AlphaR > 0 && m_.AlphaC == 0; }
  bool CorrelatedOnly() const { return m_.AlphaC > 0 && m_.AlphaR == 0; }

  /// What does not depend on time, for who computes many shares in a row; see At. `failed` when one is no number.
  struct Constants {
    double normaliser, shareR, shareC;
    bool failed;
  };
  Constants OfTheMortality() const {
    return {normaliser_, shareR_, shareC_, (!CorrelatedOnly() && failedR_) || (!RandomOnly() && failedC_)};
  }

 private:
  Mortality m_;
  // Of each function what does not depend on time.
  double normaliser_ = 1;  // Dn
  double shareR_ = 0;      // c AlphaR / (f + AlphaR)
  double shareC_ = 0;      // c AlphaC / (f + AlphaC)
  bool failedR_ = false;
  bool failedC_ = false;
};

/// Expected survivors of an interval: under random mortality, under correlated mortality and over both; Missing where
/// an arithmetic error left none. PCorr is the probability of the correlated state at the start of the interval.
/// Penalty is what too few survivors add to the objective's penalties.
struct Survivors {
  double PCorr = 0, OutR = 0, OutC = 0, OutAll = 0, Penalty = 0;
};

/// Survivors at T2 of N individuals alive at T1.
Survivors ExpectedSurvivors(const Mortality& mortality, double T1, double T2, double N, bool BootstrapMode);

/// The same from the shares alive at both times, which a caller may have kept.
Survivors ExpectedSurvivors(const SurvivalFunctions& functions, const SharesAlive& atT1, const SharesAlive& atT2,
                            double N, bool BootstrapMode);

/// The mortality of a brood's juveniles after its attributes and covariates have acted on the rates and shapes.
/// Penalties are due once for each interval, in the order AlphaR, BetaR, AlphaC, BetaC.
struct BroodMortality {
  Mortality mortality;
  double PenaltyAlphaR = 0, PenaltyBetaR = 0, PenaltyAlphaC = 0, PenaltyBetaC = 0;

  void AddTo(double& Penalty) const;
};

/// By age: E[brood size@hatch] E, the hatch date and the covariates act on all four. RuntimeFailure on an overflow.
BroodMortality BroodMortalityByAge(const Parameters& p, const BroodData& data, int brood, double E);
/// By date: rates alone, without the main terms of the two attributes; the shapes are 1.
BroodMortality BroodMortalityByDate(const Parameters& p, const BroodData& data, int brood, double E);

/// The mortality of eggs; by date the shapes are 1.
Mortality ClutchMortalityByAge(const Parameters& p);
Mortality ClutchMortalityByDate(const Parameters& p);

}  // namespace merlane
