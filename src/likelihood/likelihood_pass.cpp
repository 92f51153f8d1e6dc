#include "likelihood/likelihood_pass.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "likelihood/calculation_problem.h"
#include "survival/failure_context.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

bool SameExpected(const OverHatch& a, const OverHatch& b) {
  return SameBits(a.EHatchR, b.EHatchR) && SameBits(a.EHatchC, b.EHatchC) &&
         std::equal(a.juveniles.begin(), a.juveniles.end(), b.juveniles.begin(), SameBits);
}

}  // namespace

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

void LikelihoodPass::TakeErrors(const Parameters& p) {
  const CountErrors errors(p);
  if (stamp_ != 0 && errors == errors_) return;
  errors_ = errors;
  ++stamp_;
}

void LikelihoodPass::Do_Likelihoods(const EvaluationSetting& setting, std::int32_t NF, LikelihoodState& state,
                                    double& F) {
  TakeErrors(state.parameters);
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
    if (setting.turn) setting.turn(1);
  }
  state.EggsAtRisk = ToInt32(static_cast<double>(eggs));
  state.JuvsAtRisk = ToInt32(static_cast<double>(juveniles));
}

const LikelihoodPass::KeptOutcome& LikelihoodPass::Outcome(std::size_t visit, double ER, double EC, double q) {
  const PreparedVisits::Judgement& judgement = prepared_.Judgements[visit];
  KeptOutcome& kept = outcomes_[static_cast<std::size_t>(judgement.outcome)];
  if (kept.stamp == stamp_ && SameBits(kept.ER, ER) && SameBits(kept.EC, EC) && SameBits(kept.q, q)) return kept;

  const int n = judgement.countBefore, k = judgement.count;
  const bool brood = judgement.prediction == Prediction::Brood;
  const StageErrors& errors = errors_.Of(brood);
  KeptOutcome outcome{.stamp = stamp_, .ER = ER, .EC = EC, .q = q, .clampedEC = EC};
  double ProbRandom = 1.0, ProbCorr = 1.0;
  if (errors.random && ER != Missing) {
    double E = ER;  // random mortality is not overdispersed and leaves it alone
    ProbRandom = distributions_.ProbVisit(logGamma_, errors.CodeR, errors.ThetaR, n, k, E, outcome.VarR);
  }
  if (errors.correlated && EC != Missing)
    ProbCorr = distributions_.ProbVisit(logGamma_, errors.CodeC, errors.Theta(true, data_.VisitAge[visit - 1]), n, k,
                                        outcome.clampedEC, outcome.VarC);
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

LikelihoodPass::FateDistributions LikelihoodPass::DistributionsOverHatch(std::size_t visit, int n,
                                                                         const SurvivalTables& tables,
                                                                         const std::function<void(long)>& turn) {
  const PreparedVisits::Judgement& judgement = prepared_.Judgements[visit];
  // Without a prediction of its own the visit is judged from the count of an earlier one. That costs nothing, since no
  // such visit counts, but its deviance stays in the table; it is not prepared for.
  const bool own = n == judgement.countBefore;
  KeptSpanning& kept = own ? spanning_[static_cast<std::size_t>(judgement.outcome)] : passing_;
  const std::span<double> probabilities =
      own ? std::span(probabilities_).subspan(kept.firstProbability, 4 * (static_cast<std::size_t>(n) + 1))
          : std::span(passingProbabilities_);
  if (!own) passing_.stamp = 0;
  const OverHatch expected(tables, static_cast<std::size_t>(judgement.brood));
  if (kept.stamp != stamp_ || !SameExpected(kept.expected, expected))
    FillDistributions(kept, probabilities, visit, n, expected, turn);
  return {kept, probabilities};
}

void LikelihoodPass::FillDistributions(KeptSpanning& kept, std::span<double> probabilities, std::size_t visit, int n,
                                       const OverHatch& expected, const std::function<void(long)>& turn) {
  kept.stamp = 0;  // until all four are there
  const auto width = static_cast<std::size_t>(n) + 1;
  for (const HatchFate fate : HatchFates) {
    const auto Pmf = probabilities.subspan(fate * width, width);
    std::fill(Pmf.begin(), Pmf.end(), 0.0);
    kept.accurate[fate] =
        !Occurs(fate, errors_, expected) ||
        FateDistribution(fate, distributions_, logGamma_, errors_, expected, n, data_.VisitAge[visit - 1], Pmf, turn);
  }
  kept.expected = expected;
  kept.stamp = stamp_;
}

void LikelihoodPass::JudgeSpanning(std::size_t visit, int n, const EvaluationSetting& setting, std::int32_t NF,
                                   LikelihoodState& state) {
  const PreparedVisits::Judgement& judgement = prepared_.Judgements[visit];
  const auto width = static_cast<std::size_t>(n) + 1;
  const auto [kept, probabilities] = DistributionsOverHatch(visit, n, state.survival, setting.turn);
  std::array<double, 4> Prob = {1.0, 1.0, 1.0, 1.0};
  for (const HatchFate fate : HatchFates) {
    if (!kept.accurate[fate]) setting.tell(InaccurateSpanningDistribution());
    if (!Occurs(fate, errors_, kept.expected)) continue;
    if (judgement.count < 0 || judgement.count > n) throw ArithmeticFailure("subscript out of range");
    Prob[fate] = probabilities[fate * width + static_cast<std::size_t>(judgement.count)];
  }
  const std::array<double, 4> weights =
      FateWeights(state.survival.PCorrHatch[static_cast<std::size_t>(judgement.brood)], state.survival.PCorrJuv[visit]);
  const auto mixture = [&weights](double PRR, double PCR, double PRC, double PCC) {
    return weights[RR] * PRR + weights[CR] * PCR + weights[RC] * PRC + weights[CC] * PCC;
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
