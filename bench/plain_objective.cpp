#include "plain_objective.h"

#include <vector>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "likelihood/calculation_problem.h"
#include "likelihood/first_evaluation.h"
#include "plain_distributions.h"
#include "survival/catalogue.h"
#include "survival/survival.h"

namespace merlane::plain {
namespace {

/// One brood's view of the columns: visits counted from 1.
class Brood {
 public:
  Brood(const BroodData& data, int brood) : data_(data), b(static_cast<std::size_t>(brood)) {}
  int Visits() const { return data_.VisitsOf[b]; }
  std::size_t At(int j) const { return static_cast<std::size_t>(data_.FirstVisit[b] + j - 1); }
  double Age(int j) const { return data_.VisitAge[At(j)]; }
  int Stage(int j) const { return data_.VisitStage[At(j)]; }
  int Count(int j) const { return data_.VisitCount[At(j)]; }
  int Date(int j) const { return data_.VisitDate[At(j)]; }

 private:
  const BroodData& data_;

 public:
  const std::size_t b;
};

/// ExpectedSurvivors into elements of tables.
void Survive(const Mortality& mortality, double T1, double T2, double& PCorr, double N, double& OutR, double& OutC,
             double& OutAll, const EvaluationSetting& setting, double& Penalty) {
  const Survivors out = ExpectedSurvivors(mortality, T1, T2, N, setting.BootstrapMode);
  PCorr = out.PCorr;
  OutR = out.OutR;
  OutC = out.OutC;
  OutAll = out.OutAll;
  Penalty = Penalty + out.Penalty;
}

void FillClutchByAge(const Brood& brood, const EvaluationSetting& setting, LikelihoodState& state) {
  SurvivalTables& t = state.survival;
  const Mortality mortality = ClutchMortalityByAge(state.parameters);
  const double I = state.parameters.LayAge;
  const std::size_t b = brood.b;
  for (int j = 1; j <= brood.Visits(); ++j) {
    const double a = brood.Age(j);
    if (!(a >= I)) continue;
    if (j == 1 && a == 0) t.EHatch[b] = t.EHatchR[b] = t.EHatchC[b] = brood.Count(1);
    if (j == 1) continue;
    const double p = brood.Age(j - 1);
    if (!(p != Missing && p < 0)) continue;
    const std::size_t v = brood.At(j);
    if (a >= 0) {
      Survive(mortality, p - I, -I, t.PCorrHatch[b], brood.Count(j - 1), t.EHatchR[b], t.EHatchC[b], t.EHatch[b],
              setting, state.Penalty);
      if (a == 0) {
        t.EVisitR[v] = t.EHatchR[b];
        t.EVisitC[v] = t.EHatchC[b];
        t.EVisit[v] = t.EHatch[b];
        t.PCorrEgg[v] = t.PCorrHatch[b];
        ++t.ClutchIntervals;
      }
    }
    if (a < 0 && a != Missing) {
      Survive(mortality, p - I, a - I, t.PCorrEgg[v], brood.Count(j - 1), t.EVisitR[v], t.EVisitC[v], t.EVisit[v],
              setting, state.Penalty);
      ++t.ClutchIntervals;
    }
  }
}

void FillClutchByDate(const Brood& brood, const EvaluationSetting& setting, LikelihoodState& state) {
  SurvivalTables& t = state.survival;
  for (int j = 2; j <= brood.Visits(); ++j) {
    if (!(brood.Stage(j - 1) == -1 && brood.Stage(j) == -1 && brood.Count(j) != Missing)) continue;
    const std::size_t v = brood.At(j);
    Survive(ClutchMortalityByDate(state.parameters), brood.Date(j - 1), brood.Date(j), t.PCorrEgg[v],
            brood.Count(j - 1), t.EVisitR[v], t.EVisitC[v], t.EVisit[v], setting, state.Penalty);
    ++t.ClutchIntervals;
  }
}

void FillBroodByAge(const BroodData& data, const Brood& brood, const EvaluationSetting& setting,
                    LikelihoodState& state) {
  SurvivalTables& t = state.survival;
  const Parameters& par = state.parameters;
  const double D = par.FledgeAge;
  const std::size_t b = brood.b;
  for (int j = 1; j <= brood.Visits(); ++j) {
    const double a = brood.Age(j);
    if (j == 1 && a == 0) {
      t.EHatch[b] = brood.Count(1);
      t.EHatchR[b] = t.EHatchC[b] = 0;
    }
    if (!(a < D || D == 0)) continue;
    if (!(a > 0 && a != Missing && j >= 2)) continue;
    if (j == 2) {
      if (t.EHatch[b] == Missing && par.UsesBroodSize) t.BroodSizeDeficient = true;
      if (data.HatchDate[b] == 0 && par.UsesHatchDate) t.HatchDateDeficient = true;
    }
    const BroodMortality effective = BroodMortalityByAge(par, data, static_cast<int>(b), t.EHatch[b]);
    effective.AddTo(state.Penalty);
    const double p = brood.Age(j - 1);
    if (p == Missing) continue;
    const std::size_t v = brood.At(j);
    if (p < 0 && t.EHatch[b] != Missing) {
      if (t.EHatchR[b] != Missing)
        Survive(effective.mortality, 0, a, t.PCorrJuv[v], t.EHatchR[b], t.JuvRR[b], t.JuvRC[b], t.EVisitR[v], setting,
                state.Penalty);
      if (t.EHatchC[b] != Missing)
        Survive(effective.mortality, 0, a, t.PCorrJuv[v], t.EHatchC[b], t.JuvCR[b], t.JuvCC[b], t.EVisitC[v], setting,
                state.Penalty);
      const double q = t.PCorrHatch[b];
      t.EVisitR[v] = (1 - q) * t.JuvRR[b] + q * t.JuvCR[b];
      t.EVisitC[v] = (1 - q) * t.JuvRC[b] + q * t.JuvCC[b];
      t.EVisit[v] = (1 - t.PCorrJuv[v]) * t.EVisitR[v] + t.PCorrJuv[v] * t.EVisitC[v];
      ++t.ClutchIntervals;
    }
    if (p >= 0) {
      Survive(effective.mortality, p, a, t.PCorrJuv[v], brood.Count(j - 1), t.EVisitR[v], t.EVisitC[v], t.EVisit[v],
              setting, state.Penalty);
      ++t.BroodIntervals;
    }
  }
}

void FillBroodByDate(const BroodData& data, const Brood& brood, const EvaluationSetting& setting,
                     LikelihoodState& state) {
  SurvivalTables& t = state.survival;
  for (int j = 2; j <= brood.Visits(); ++j) {
    if (!(brood.Stage(j - 1) == 1 && brood.Stage(j) == 1 && brood.Count(j) != Missing)) continue;
    const std::size_t v = brood.At(j);
    const BroodMortality effective =
        BroodMortalityByDate(state.parameters, data, static_cast<int>(brood.b), t.EHatch[brood.b]);
    effective.AddTo(state.Penalty);
    Survive(effective.mortality, brood.Date(j - 1), brood.Date(j), t.PCorrJuv[v], brood.Count(j - 1), t.EVisitR[v],
            t.EVisitC[v], t.EVisit[v], setting, state.Penalty);
    ++t.BroodIntervals;
  }
}

double ThetaEggs(const Parameters& p, double age) {
  return Checked(p.ThetaEggC * Checked(Exp(Checked(-p.v_N * (age - p.LayAge)))));
}

double ThetaJuvs(const Parameters& p, double age) { return Checked(p.ThetaJuvC * Checked(Exp(Checked(-p.v_B * age)))); }

void TakeDeviance(double P, double& VisitDeviance, double& Penalty) {
  if (Checked(P) > 0) {
    VisitDeviance = -2 * Log(P);
  } else {
    VisitDeviance = 0;
    Penalty = Penalty + P * P * 1e20;
  }
}

/// One component of a prediction over hatch; the probability of the count k.
double Component(int code, int n, int k, double ThetaE, double ThetaJ, double EN, double EJ, std::vector<double>& Pmf,
                 const EvaluationSetting& setting) {
  if (EJ > 0 && !Calc_Probs_and_Theta(code, n, ThetaE, ThetaJ, EN, EJ, Pmf))
    setting.tell(InaccurateSpanningDistribution());
  if (k < 0 || k > n) throw RuntimeFailure("subscript out of range");
  return Pmf[static_cast<std::size_t>(k)];
}

void JudgeClutch(const Brood& brood, int j, int n, LikelihoodState& state) {
  const Parameters& par = state.parameters;
  SurvivalTables& t = state.survival;
  const std::size_t v = brood.At(j);
  double ProbRandom = 1.0, ProbCorr = 1.0;
  if (!((par.c_N >= 1 && par.f_N <= 0) || t.EVisitR[v] == Missing))
    ProbRandom = ProbVisit(par.CodeEggR, par.ThetaEggR, n, brood.Count(j), t.EVisitR[v], state.VarR[v]);
  if (!(par.c_N <= 0 || t.EVisitC[v] == Missing))
    ProbCorr =
        ProbVisit(par.CodeEggC, ThetaEggs(par, brood.Age(j - 1)), n, brood.Count(j), t.EVisitC[v], state.VarC[v]);
  const double q = brood.Age(j) == 0 ? t.PCorrHatch[brood.b] : t.PCorrEgg[v];
  TakeDeviance((1 - q) * ProbRandom + q * ProbCorr, state.VisitDeviance[v], state.Penalty);
}

void JudgeBrood(const Brood& brood, int j, int n, LikelihoodState& state) {
  const Parameters& par = state.parameters;
  SurvivalTables& t = state.survival;
  const std::size_t v = brood.At(j);
  double ProbRandom = 1.0, ProbCorr = 1.0;
  if (!((par.c_B >= 1 && par.f_B <= 0) || t.EVisitR[v] == Missing))
    ProbRandom = ProbVisit(par.CodeJuvR, par.ThetaJuvR, n, brood.Count(j), t.EVisitR[v], state.VarR[v]);
  if (!(par.c_B <= 0 || t.EVisitC[v] == Missing))
    ProbCorr =
        ProbVisit(par.CodeJuvC, ThetaJuvs(par, brood.Age(j - 1)), n, brood.Count(j), t.EVisitC[v], state.VarC[v]);
  const double q = t.PCorrJuv[v];
  TakeDeviance((1 - q) * ProbRandom + q * ProbCorr, state.VisitDeviance[v], state.Penalty);
}

void JudgeSpanning(const Brood& brood, int j, int n, std::int32_t NF, const EvaluationSetting& setting,
                   LikelihoodState& state) {
  const Parameters& par = state.parameters;
  SurvivalTables& t = state.survival;
  const std::size_t b = brood.b, v = brood.At(j);
  const int k = brood.Count(j);
  const double p = brood.Age(j - 1);
  const std::vector<double> none(static_cast<std::size_t>(n) + 1, 0.0);
  std::vector<double> PmfRR = none, PmfCR = none, PmfRC = none, PmfCC = none;
  double ProbRR = 1.0, ProbCR = 1.0, ProbRC = 1.0, ProbCC = 1.0;
  const bool noneRandomEggs = par.c_N >= 1 && par.f_N <= 0, noneCorrelatedEggs = par.c_N <= 0;
  const bool noneRandomJuvs = par.c_B >= 1 && par.f_B <= 0, noneCorrelatedJuvs = par.c_B <= 0;
  const auto code = [](int eggs, int juvs) { return eggs == 2 || juvs == 2 ? 2 : 1; };
  // A theta is formed only for a component that is computed.
  const auto thetaE = [&](double expected) { return expected > 0 ? ThetaEggs(par, p) : 0; };
  const auto thetaJ = [&](double expected) { return expected > 0 ? ThetaJuvs(par, p) : 0; };
  if (!(t.JuvRR[b] == Missing || noneRandomEggs || noneRandomJuvs))
    ProbRR = Component(code(par.CodeEggR, par.CodeJuvR), n, k, par.ThetaEggR, par.ThetaJuvR, t.EHatchR[b], t.JuvRR[b],
                       PmfRR, setting);
  if (!(t.JuvCR[b] == Missing || noneCorrelatedEggs || noneRandomJuvs))
    ProbCR = Component(code(par.CodeEggC, par.CodeJuvR), n, k, thetaE(t.JuvCR[b]), par.ThetaJuvR, t.EHatchC[b],
                       t.JuvCR[b], PmfCR, setting);
  if (!(t.JuvRC[b] == Missing || noneRandomEggs || noneCorrelatedJuvs))
    ProbRC = Component(code(par.CodeEggR, par.CodeJuvC), n, k, par.ThetaEggR, thetaJ(t.JuvRC[b]), t.EHatchR[b],
                       t.JuvRC[b], PmfRC, setting);
  if (!(t.JuvCC[b] == Missing || noneCorrelatedEggs || noneCorrelatedJuvs))
    ProbCC = Component(code(par.CodeEggC, par.CodeJuvC), n, k, thetaE(t.JuvCC[b]), thetaJ(t.JuvCC[b]), t.EHatchC[b],
                       t.JuvCC[b], PmfCC, setting);
  const double q = t.PCorrHatch[b], r = t.PCorrJuv[v];
  const double P = (1 - r) * (1 - q) * ProbRR + (1 - r) * q * ProbCR + (1 - q) * r * ProbRC + q * r * ProbCC;
  double sum = 0;
  for (std::size_t m = 0; m <= static_cast<std::size_t>(n); ++m)
    sum = sum + ((1 - r) * (1 - q) * PmfRR[m] + (1 - r) * q * PmfCR[m] + (1 - q) * r * PmfRC[m] + q * r * PmfCC[m]);
  if (NF == 1 && sum != 0 && (sum < 0.999999 || sum > 1.000001)) setting.tell(SumOfProbabilitiesNotOne(sum));
  TakeDeviance(P, state.VisitDeviance[v], state.Penalty);
}

void KeepBest(const Array1<double>& Value, LikelihoodState& state) {
  state.MinDeviance = 1e100;
  state.MaxDeviance = -1e100;
  state.best.Value = Value;
  state.best.parameters = state.parameters;
  state.best.survival = state.survival;
  for (std::size_t v = 0; v < state.VisitDeviance.size(); ++v) {
    const double deviance = state.VisitDeviance[v];
    state.best.VisitDeviance[v] = deviance;
    if (deviance < state.MinDeviance) state.MinDeviance = deviance;
    if (deviance > state.MaxDeviance) state.MaxDeviance = deviance;
    const double P = Exp(-0.5 * deviance);
    if (P > 0 && (1 - P) / P < state.MinDeviance) state.MinDeviance = (1 - P) / P;
    state.best.VarR[v] = state.VarR[v];
    state.best.VarC[v] = state.VarC[v];
  }
}

}  // namespace

void FillSurvivalTables(const BroodData& data, const EvaluationSetting& setting, LikelihoodState& state) {
  state.survival.ClutchIntervals = 0;
  for (int b = 0; b < data.Broods(); ++b) {
    const Brood brood(data, b);
    if (data.ClutchAgeKnown[brood.b])
      FillClutchByAge(brood, setting, state);
    else
      FillClutchByDate(brood, setting, state);
  }
  if (setting.turn) setting.turn(1);
  state.survival.BroodIntervals = 0;
  state.survival.BroodSizeDeficient = state.survival.HatchDateDeficient = false;
  for (int b = 0; b < data.Broods(); ++b) {
    const Brood brood(data, b);
    if (data.BroodAgeKnown[brood.b])
      FillBroodByAge(data, brood, setting, state);
    else
      FillBroodByDate(data, brood, setting, state);
  }
}

void Do_Likelihoods(const BroodData& data, const EvaluationSetting& setting, std::int32_t NF, LikelihoodState& state,
                    double& F) {
  const SurvivalTables& t = state.survival;
  int n = 0;
  for (int b = 0; b < data.Broods(); ++b) {
    const Brood brood(data, b);
    for (int j = 1; j <= brood.Visits(); ++j) {
      const std::size_t v = brood.At(j);
      state.VarR[v] = state.VarC[v] = 0;
      if (j > 1 && (t.EVisitR[v] != Missing || t.EVisitC[v] != Missing)) n = brood.Count(j - 1);
      if (n < 1) continue;
      if (j > 1) {
        const int before = brood.Stage(j - 1), stage = brood.Stage(j);
        if (before == -1 && (stage == -1 || brood.Age(j) == 0))
          JudgeClutch(brood, j, n, state);
        else if (before == 1 && stage == 1)
          JudgeBrood(brood, j, n, state);
        else if (before == -1 && stage == 1 && brood.Age(j) != 0)
          JudgeSpanning(brood, j, n, NF, setting, state);
        if (t.EVisit[v] != Missing) {
          F = F + state.VisitDeviance[v];
          if (before == -1) state.EggsAtRisk += brood.Count(j - 1);
          if (before == 1) state.JuvsAtRisk += brood.Count(j - 1);
        }
      }
      if (setting.turn) setting.turn(1);
    }
  }
}

void EvaluateObjective(const BroodData& data, const EvaluationSetting& setting, LikelihoodState& state, double& F,
                       Array1<double>& Value, Array1<double>& Step, Array1<std::string>& Names,
                       Array1<std::string>& Fuse, std::int16_t NPAR, std::int32_t NF, std::int32_t& SampleSize) {
  F = 0;
  state.Penalty = 0;
  bool allZero = true;
  for (const double value : Value) allZero = allZero && value == 0;
  if (allZero) return;
  DecodeParameters(Value, Step, ParameterLayout(data), state.parameters, state.Penalty);
  if (NF == 1)
    BeginEvaluations(
        data, state, setting, [&] { FillSurvivalTables(data, setting, state); }, Value, Step, Names, Fuse, NPAR);
  FillSurvivalTables(data, setting, state);
  F = 0;
  state.EggsAtRisk = state.JuvsAtRisk = 0;
  if (!setting.SimulationMode) {
    Do_Likelihoods(data, setting, NF, state, F);
    F = Checked(F + state.Penalty);
  }
  if (NF != 1 && F >= state.BestObjective) return;
  state.BestObjective = F;
  SampleSize = state.EggsAtRisk + state.JuvsAtRisk;
  KeepBest(Value, state);
}

}  // namespace merlane::plain
