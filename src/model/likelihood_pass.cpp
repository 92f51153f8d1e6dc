#include "model/likelihood_pass.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "model/calculation_problem.h"
#include "model/distributions.h"
#include "model/failure_context.h"
#include "model/same_bits.h"

namespace merlane {

LikelihoodPass::LikelihoodPass(const BroodData& data, const PreparedVisits& prepared)
    : data_(data),
      prepared_(prepared),
      distributions_(prepared.MaxCount),
      outcomes_(static_cast<std::size_t>(prepared.Outcomes)),
      spanning_(prepared.SpanningCounts.size()),
      passingProbabilities_(4 * (static_cast<std::size_t>(prepared.MaxCount) + 1)) {
  std::size_t probabilities = 0;
  for (std::size_t i = 0; i < spanning_.size(); ++i) {
    spanning_[i].firstProbability = probabilities;
    probabilities += 4 * (static_cast<std::size_t>(prepared.SpanningCounts[i]) + 1);
  }
  probabilities_.resize(probabilities);
}

void LikelihoodPass::TakeSettings(const Parameters& p) {
  const Settings settings{.CodeEggR = p.CodeEggR,
                          .CodeJuvR = p.CodeJuvR,
                          .CodeEggC = p.CodeEggC,
                          .CodeJuvC = p.CodeJuvC,
                          .ThetaEggR = p.ThetaEggR,
                          .ThetaJuvR = p.ThetaJuvR,
                          .ThetaEggC = p.ThetaEggC,
                          .ThetaJuvC = p.ThetaJuvC,
                          .v_N = p.v_N,
                          .v_B = p.v_B,
                          .LayAge = static_cast<double>(p.LayAge),
                          .eggsRandom = p.EggsRandom(),
                          .eggsCorrelated = p.EggsCorrelated(),
                          .juvsRandom = p.JuvsRandom(),
                          .juvsCorrelated = p.JuvsCorrelated()};
  if (stamp_ != 0 && settings == settings_) return;
  settings_ = settings;
  ++stamp_;
}

double LikelihoodPass::ThetaEggs(double age) const {
  return OfParameter(6, settings_.v_N,
                     [&](double v) { return Overdispersion(settings_.ThetaEggC, v, age - settings_.LayAge); });
}

double LikelihoodPass::ThetaJuvs(double age) const {
  return OfParameter(8, settings_.v_B, [&](double v) { return Overdispersion(settings_.ThetaJuvC, v, age); });
}

void LikelihoodPass::Do_Likelihoods(const EvaluationSetting& setting, std::int32_t NF, LikelihoodState& state,
                                    double& F) {
  using Prediction = PreparedVisits::Prediction;
  TakeSettings(state.parameters);
  const SurvivalTables& tables = state.survival;
  std::int64_t eggs = 0, juveniles = 0;
  int n = 0;  // of the last visit with a prediction
  for (std::size_t v = 0; v < prepared_.Judgements.size(); ++v) {
    const PreparedVisits::Judgement& judgement = prepared_.Judgements[v];
    state.VarR[v] = state.VarC[v] = 0;
    if (tables.EVisitR[v] != Missing || tables.EVisitC[v] != Missing) n = judgement.countBefore;
    if (n < 1) continue;  // a prediction from nothing
    const auto b = static_cast<std::size_t>(judgement.brood);
    AtVisit(data_, v, b, [&] {
      if (judgement.prediction == Prediction::Spanning) {
        JudgeSpanning(v, n, setting, NF, state);
      } else if (judgement.prediction != Prediction::None) {
        const bool brood = judgement.prediction == Prediction::Brood;
        JudgeOne(v,
                 brood                  ? tables.PCorrJuv[v]
                 : judgement.onHatchDay ? tables.PCorrHatch[b]
                                        : tables.PCorrEgg[v],
                 state);
      }
    });
    if (tables.EVisit[v] != Missing) {
      F = F + state.VisitDeviance[v];
      if (judgement.stageBefore == -1) eggs += judgement.countBefore;
      if (judgement.stageBefore == 1) juveniles += judgement.countBefore;
    }
    if (setting.turn) setting.turn();
  }
  state.EggsAtRisk = ToInt32(static_cast<double>(eggs));
  state.JuvsAtRisk = ToInt32(static_cast<double>(juveniles));
}

const LikelihoodPass::KeptOutcome& LikelihoodPass::Outcome(std::size_t visit, double ER, double EC, double q) {
  const PreparedVisits::Judgement& judgement = prepared_.Judgements[visit];
  KeptOutcome& kept = outcomes_[static_cast<std::size_t>(judgement.outcome)];
  if (kept.stamp == stamp_ && SameBits(kept.ER, ER) && SameBits(kept.EC, EC) && SameBits(kept.q, q)) return kept;

  const int n = judgement.countBefore, k = judgement.count;
  const bool brood = judgement.prediction == PreparedVisits::Prediction::Brood;
  const bool random = brood ? settings_.juvsRandom : settings_.eggsRandom;
  const bool correlated = brood ? settings_.juvsCorrelated : settings_.eggsCorrelated;
  KeptOutcome outcome{.stamp = stamp_, .ER = ER, .EC = EC, .q = q, .clampedEC = EC};
  double ProbRandom = 1.0, ProbCorr = 1.0;
  if (random && ER != Missing) {
    double E = ER;  // random mortality is not overdispersed and leaves it alone
    ProbRandom = distributions_.ProbVisit(brood ? settings_.CodeJuvR : settings_.CodeEggR,
                                          brood ? settings_.ThetaJuvR : settings_.ThetaEggR, n, k, E, outcome.VarR);
  }
  if (correlated && EC != Missing) {
    const double age = data_.VisitAge[visit - 1];
    ProbCorr = distributions_.ProbVisit(brood ? settings_.CodeJuvC : settings_.CodeEggC,
                                        brood ? ThetaJuvs(age) : ThetaEggs(age), n, k, outcome.clampedEC, outcome.VarC);
  }
  outcome.P = Checked((1 - q) * ProbRandom + q * ProbCorr);
  outcome.deviance = outcome.P > 0 ? -2 * Log(outcome.P) : 0;
  return kept = outcome;
}

void LikelihoodPass::JudgeOne(std::size_t visit, double q, LikelihoodState& state) {
  const KeptOutcome& outcome = Outcome(visit, state.survival.EVisitR[visit], state.survival.EVisitC[visit], q);
  state.VarR[visit] = outcome.VarR;
  state.VarC[visit] = outcome.VarC;
  state.survival.EVisitC[visit] = outcome.clampedEC;
  state.VisitDeviance[visit] = outcome.deviance;
  if (!(outcome.P > 0)) state.Penalty = state.Penalty + outcome.P * outcome.P * 1e20;
}

bool LikelihoodPass::Possible(Component component) const {
  const bool eggs = component == RR || component == RC ? settings_.eggsRandom : settings_.eggsCorrelated;
  const bool juvs = component == RR || component == CR ? settings_.juvsRandom : settings_.juvsCorrelated;
  return eggs && juvs;
}

void LikelihoodPass::Distributions(KeptSpanning& kept, std::span<double> probabilities, std::size_t visit, int n,
                                   const LikelihoodState& state) {
  const auto b = static_cast<std::size_t>(prepared_.Judgements[visit].brood);
  const SurvivalTables& t = state.survival;
  const double juveniles[4] = {t.JuvRR[b], t.JuvCR[b], t.JuvRC[b], t.JuvCC[b]};
  if (kept.stamp == stamp_ && SameBits(kept.EHatchR, t.EHatchR[b]) && SameBits(kept.EHatchC, t.EHatchC[b]) &&
      SameBits(kept.juveniles[RR], juveniles[RR]) && SameBits(kept.juveniles[CR], juveniles[CR]) &&
      SameBits(kept.juveniles[RC], juveniles[RC]) && SameBits(kept.juveniles[CC], juveniles[CC]))
    return;

  kept.stamp = 0;  // until all four are there
  const double age = data_.VisitAge[visit - 1];
  const auto width = static_cast<std::size_t>(n) + 1;
  for (const Component component : {RR, CR, RC, CC}) {
    const auto Pmf = probabilities.subspan(component * width, width);
    std::fill(Pmf.begin(), Pmf.end(), 0.0);
    kept.accurate[component] = true;
    kept.juveniles[component] = juveniles[component];
    if (juveniles[component] == Missing || !Possible(component) || !(juveniles[component] > 0)) continue;
    const bool eggsC = component == CR || component == CC;
    const bool juvsC = component == RC || component == CC;
    const bool overdispersed = (eggsC ? settings_.CodeEggC : settings_.CodeEggR) == 2 ||
                               (juvsC ? settings_.CodeJuvC : settings_.CodeJuvR) == 2;
    // The juveniles' overdispersion is taken at the negative age of the clutch, so that it exceeds its value at hatch.
    kept.accurate[component] = distributions_.Calc_Probs_and_Theta(
        overdispersed ? 2 : 1, n, eggsC ? ThetaEggs(age) : settings_.ThetaEggR,
        juvsC ? ThetaJuvs(age) : settings_.ThetaJuvR, eggsC ? t.EHatchC[b] : t.EHatchR[b], juveniles[component], Pmf);
  }
  kept.EHatchR = t.EHatchR[b];
  kept.EHatchC = t.EHatchC[b];
  kept.stamp = stamp_;
}

void LikelihoodPass::JudgeSpanning(std::size_t visit, int n, const EvaluationSetting& setting, std::int32_t NF,
                                   LikelihoodState& state) {
  const PreparedVisits::Judgement& judgement = prepared_.Judgements[visit];
  const auto b = static_cast<std::size_t>(judgement.brood);
  const auto width = static_cast<std::size_t>(n) + 1;
  // Without a prediction of its own the visit is judged from the count of an earlier one, which is not prepared for.
  const bool own = n == judgement.countBefore;
  KeptSpanning& kept = own ? spanning_[static_cast<std::size_t>(judgement.outcome)] : passing_;
  const std::span<double> probabilities =
      own ? std::span(probabilities_).subspan(kept.firstProbability, 4 * width) : std::span(passingProbabilities_);
  if (!own) passing_.stamp = 0;
  Distributions(kept, probabilities, visit, n, state);

  double Prob[4] = {1.0, 1.0, 1.0, 1.0};
  for (const Component component : {RR, CR, RC, CC}) {
    if (!kept.accurate[component]) setting.tell(InaccurateSpanningDistribution());
    if (kept.juveniles[component] == Missing || !Possible(component)) continue;
    if (judgement.count < 0 || judgement.count > n) throw ArithmeticFailure("subscript out of range");
    Prob[component] = probabilities[component * width + static_cast<std::size_t>(judgement.count)];
  }
  const double q = state.survival.PCorrHatch[b];
  const double r = state.survival.PCorrJuv[visit];
  const auto mixture = [q, r](double PRR, double PCR, double PRC, double PCC) {
    return (1 - r) * (1 - q) * PRR + (1 - r) * q * PCR + (1 - q) * r * PRC + q * r * PCC;
  };
  const double P = Checked(mixture(Prob[RR], Prob[CR], Prob[RC], Prob[CC]));
  if (NF == 1) {
    double sum = 0;
    for (std::size_t m = 0; m < width; ++m)
      sum = sum + mixture(probabilities[m], probabilities[width + m], probabilities[2 * width + m],
                          probabilities[3 * width + m]);
    if (sum != 0 && (sum < 0.999999 || sum > 1.000001)) setting.tell(SumOfProbabilitiesNotOne(sum));
  }
  if (P > 0) {
    state.VisitDeviance[visit] = -2 * Log(P);
  } else {
    state.VisitDeviance[visit] = 0;
    state.Penalty = state.Penalty + P * P * 1e20;
  }
}

}  // namespace merlane
