#include "model/objective_pass.h"

#include <cmath>
#include <limits>
#include <span>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "model/arithmetic_watch.h"
#include "model/same_bits.h"

namespace merlane {
namespace {

std::size_t At(int index) { return static_cast<std::size_t>(index); }

/// Passes intermediate results through and remembers whether each stayed so far from an overflow that what is made of
/// it by some few multiplications is a number, too.
class BoundsWatch {
 public:
  double operator()(double x) {
    failed_ |= !(std::abs(x) <= 1e100);
    return x;
  }
  bool Failed() const { return failed_; }

 private:
  bool failed_ = false;
};

}  // namespace

ObjectivePass::ObjectivePass(const BroodData& data, const PreparedVisits& prepared,
                             const CountDistributions& distributions, const ObjectivePlan::Subject& subject)
    : data_(data),
      spanningJudge_(distributions, logGamma_, prepared.MaxCount),
      plan_(data, prepared, distributions, subject),
      clutches_{.mortality = 0,
                .mortalityEnd = ObjectivePlan::ClutchMortalities,
                .time = 0,
                .timeEnd = plan_.clutchTimes,
                .distinctTime = 0,
                .distinctTimeEnd = plan_.clutchDistinctTimes,
                .span = 0,
                .spanEnd = plan_.clutchSpans,
                .interval = 0,
                .intervalEnd = plan_.clutchIntervals},
      broods_{.mortality = ObjectivePlan::ClutchMortalities,
              .mortalityEnd = At(plan_.Mortalities()),
              .time = plan_.clutchTimes,
              .timeEnd = plan_.Time.size(),
              .distinctTime = plan_.clutchDistinctTimes,
              .distinctTimeEnd = plan_.DistinctTimes.size(),
              .span = plan_.clutchSpans,
              .spanEnd = plan_.from.size(),
              .interval = plan_.clutchIntervals,
              .intervalEnd = plan_.N.size()} {
  if (!plan_.regular) return;
  for (auto* column : {&AlphaR_, &BetaR_, &AlphaC_, &BetaC_, &normaliser_, &shareR_, &shareC_})
    column->resize(At(plan_.Mortalities()));
  distinctPower_.resize(plan_.DistinctTimes.size());
  for (auto* column : {&powerR_, &powerC_, &SR_, &SC_}) column->resize(plan_.Time.size());
  for (auto* column : {&aliveR_, &aliveC_, &aliveAll_, &PCorr_}) column->resize(plan_.from.size());
  N_ = plan_.N;
  for (auto* column : {&OutR_, &OutC_, &OutAll_}) column->resize(plan_.N.size());
  for (auto* column : {&thetaEggs_, &thetaJuvs_}) column->resize(plan_.Ages.size());
  spanning_.resize(At(prepared.MaxCount) + 1);
  deviance_.resize(plan_.k.size());
}

std::optional<double> ObjectivePass::Sum(const Parameters& parameters, bool BootstrapMode, bool testSums) {
  if (!plan_.regular) return std::nullopt;
  try {
    if (!Evaluate(parameters, BootstrapMode, testSums)) return std::nullopt;
  } catch (const RuntimeFailure&) {
    return std::nullopt;  // the tables' passes meet it in their order
  }
  double F = 0;
  for (const int prediction : plan_.counted) F = F + deviance_[At(prediction)];
  return F;
}

bool ObjectivePass::Evaluate(const Parameters& p, bool BootstrapMode, bool testSums) {
  if (!SetClutchMortalities(p) || !FillSurvival(clutches_, BootstrapMode)) return false;
  BeginAtHatch();
  if (!SetBroodMortalities(p) || !FillSurvival(broods_, BootstrapMode)) return false;
  FillThetas(p);
  const CountErrors errors(p);
  return Judge(plan_.clutchDistributions, errors.eggs, thetaEggs_) &&
         Judge(plan_.broodDistributions, errors.juveniles, thetaJuvs_) && JudgeSpanning(errors, testSums);
}

bool ObjectivePass::SetMortality(std::size_t number, const Mortality& mortality, Stage& stage) {
  const SurvivalFunctions functions(mortality);
  const SurvivalFunctions::Constants constants = functions.OfTheMortality();
  const Kind kind = functions.RandomOnly() ? Kind::Random : functions.CorrelatedOnly() ? Kind::Correlated : Kind::Both;
  if (number == stage.mortality) stage.kind = kind;
  if (constants.failed || kind != stage.kind) return false;
  stage.f = mortality.f;
  AlphaR_[number] = mortality.AlphaR;
  BetaR_[number] = mortality.BetaR;
  AlphaC_[number] = mortality.AlphaC;
  BetaC_[number] = mortality.BetaC;
  normaliser_[number] = constants.normaliser;
  shareR_[number] = constants.shareR;
  shareC_[number] = constants.shareC;
  return true;
}

bool ObjectivePass::SetClutchMortalities(const Parameters& p) {
  // The rates, which both have in common, tell the kind; one that no clutch has may fail.
  const bool byAge = SetMortality(PreparedVisits::ClutchByAge, ClutchMortalityByAge(p), clutches_);
  const bool byDate = SetMortality(PreparedVisits::ClutchByDate, ClutchMortalityByDate(p), clutches_);
  return (byAge || !plan_.clutchesByAge) && (byDate || !plan_.clutchesByDate);
}

bool ObjectivePass::SetBroodMortalities(const Parameters& p) {
  std::size_t number = broods_.mortality;
  for (const ObjectivePlan::BroodMortalityOf& of : plan_.broods) {
    const double E = of.hatch >= 0 ? OutAll_[At(of.hatch)] : of.EHatch;
    const BroodMortality effective =
        of.byAge ? BroodMortalityByAge(p, data_, of.brood, E) : BroodMortalityByDate(p, data_, of.brood, E);
    double Penalty = 0;
    effective.AddTo(Penalty);
    if (Penalty != 0 || !SetMortality(number, effective.mortality, broods_)) return false;
    ++number;
  }
  return true;
}

bool ObjectivePass::FillSurvival(const Stage& stage, bool BootstrapMode) {
  return FillShares(stage) && FillSpans(stage) && FillSurvivors(stage, BootstrapMode);
}

void ObjectivePass::FillPowers(const Stage& stage, const std::vector<double>& Beta, std::vector<double>& powers) {
  bool oneShape = true;
  for (std::size_t m = stage.mortality; m < stage.mortalityEnd; ++m)
    oneShape = oneShape && SameBits(Beta[m], Beta[stage.mortality]);
  if (!oneShape) {
    for (std::size_t i = stage.time; i < stage.timeEnd; ++i)
      powers[i] = Pow(plan_.Time[i], Beta[At(plan_.mortalityOfTime[i])]);
    return;
  }
  for (std::size_t i = stage.distinctTime; i < stage.distinctTimeEnd; ++i)
    distinctPower_[i] = Pow(plan_.DistinctTimes[i], Beta[stage.mortality]);
  for (std::size_t i = stage.time; i < stage.timeEnd; ++i) powers[i] = distinctPower_[At(plan_.distinctTime[i])];
}

/// See SurvivalFunctions::At.
bool ObjectivePass::FillShares(const Stage& stage) {
  // An exponent beyond all bounds gives an innocent 0, and is watched; whatever else is no number stays none.
  BoundsWatch watch;
  const double f = stage.f;
  if (stage.kind != Kind::Correlated) {
    FillPowers(stage, BetaR_, powerR_);
    for (std::size_t i = stage.time; i < stage.timeEnd; ++i) {
      const std::size_t m = At(plan_.mortalityOfTime[i]);
      const double w = powerR_[i];
      const double surviving = Exp(watch(-AlphaR_[m] * w));
      const double attenuation = f == 0 ? 1.0 : Exp(watch(-f * w));  // exp(0) is 1
      SR_[i] = watch(surviving * (1 - shareR_[m] * attenuation) / normaliser_[m]);
    }
  }
  if (stage.kind != Kind::Random) {
    FillPowers(stage, BetaC_, powerC_);
    for (std::size_t i = stage.time; i < stage.timeEnd; ++i) {
      const std::size_t m = At(plan_.mortalityOfTime[i]);
      SC_[i] = watch(shareC_[m] * Exp(watch(-(f + AlphaC_[m]) * powerC_[i])) / normaliser_[m]);
    }
  }
  return !watch.Failed();
}

/// See ExpectedSurvivors.
bool ObjectivePass::FillSpans(const Stage& stage) {
  BoundsWatch watch;
  const auto alive = [&](double S1, double S2) { return S1 > 0 ? watch(S2 / S1) : 0.0; };
  for (std::size_t i = stage.span; i < stage.spanEnd; ++i) {
    const std::size_t from = At(plan_.from[i]), to = At(plan_.to[i]);
    if (stage.kind == Kind::Random) {
      aliveR_[i] = aliveAll_[i] = alive(SR_[from], SR_[to]);
      aliveC_[i] = PCorr_[i] = 0;
    } else if (stage.kind == Kind::Correlated) {
      aliveC_[i] = aliveAll_[i] = alive(SC_[from], SC_[to]);
      aliveR_[i] = 0;
      PCorr_[i] = SC_[from] > 0 ? 1 : 0;
    } else {
      const double S1 = SR_[from] + SC_[from];
      aliveAll_[i] = alive(S1, SR_[to] + SC_[to]);
      aliveC_[i] = alive(SC_[from], SC_[to]);
      aliveR_[i] = alive(SR_[from], SR_[to]);
      PCorr_[i] = watch(SC_[from] / S1);
    }
  }
  return !watch.Failed();
}

bool ObjectivePass::FillSurvivors(const Stage& stage, bool BootstrapMode) {
  bool tooFew = false;
  for (std::size_t i = stage.interval; i < stage.intervalEnd; ++i) {
    const std::size_t span = At(plan_.span[i]);
    OutR_[i] = aliveR_[span] * N_[i];
    OutC_[i] = aliveC_[span] * N_[i];
    OutAll_[i] = aliveAll_[span] * N_[i];
    tooFew |= N_[i] > 0 && (BootstrapMode ? OutAll_[i] == 0 : OutAll_[i] < 1e-8);
  }
  return !tooFew;
}

void ObjectivePass::BeginAtHatch() {
  for (const ObjectivePlan::FromHatch& hatch : plan_.fromHatch) {
    N_[At(hatch.random)] = OutR_[At(hatch.clutch)];
    N_[At(hatch.correlated)] = OutC_[At(hatch.clutch)];
  }
}

/// The overdispersion at each age; NaN where it overflows, since it may not be needed there.
void ObjectivePass::FillThetas(const Parameters& p) {
  const auto theta = [](double Theta, double v, double days) {
    ArithmeticWatch watch;
    const double value = watch(Theta * watch(Exp(watch(-v * days))));
    return watch.Failed() ? std::numeric_limits<double>::quiet_NaN() : value;
  };
  for (std::size_t i = 0; i < plan_.Ages.size(); ++i) {
    thetaEggs_[i] = theta(p.ThetaEggC, p.v_N, plan_.Ages[i] - p.LayAge);
    thetaJuvs_[i] = theta(p.ThetaJuvC, p.v_B, plan_.Ages[i]);
  }
}

BinomialLogs ObjectivePass::LogsOf(double p) {
  // Where each brood has a mortality of its own hardly any share recurs.
  return plan_.subject.broodsShareMortalities ? binomialLogs_(p) : LogsOfShare(p);
}

/// See LikelihoodPass::Outcome. Random mortality is not overdispersed.
bool ObjectivePass::Judge(const std::vector<ObjectivePlan::Distribution>& distributions, const StageErrors& errors,
                          const std::vector<double>& thetas) {
  for (const ObjectivePlan::Distribution& d : distributions) {
    const std::size_t i = At(d.interval);
    const double q = PCorr_[At(plan_.span[i])];
    const double theta = thetas[At(d.age)];
    if (errors.correlated && std::isnan(theta)) return false;
    const BinomialLogs random = errors.random ? LogsOf(OutR_[i] / N_[i]) : BinomialLogs();
    const auto mixed = [&](const auto& correlated) {
      return FillDeviances(d, [&](std::size_t prediction) {
        const double logChoices = plan_.logChoices[prediction];
        const int k = plan_.k[prediction];
        const double ProbRandom = errors.random ? random.Probability(logChoices, d.n, k) : 1.0;
        const double ProbCorr = errors.correlated ? correlated.Probability(logChoices, d.n, k) : 1.0;
        return (1 - q) * ProbRandom + q * ProbCorr;
      });
    };
    double E = OutC_[i];
    const bool overdispersed = errors.correlated && d.n > 1 && errors.CodeC != 1 && theta > 1e-6;
    const bool told = overdispersed       ? mixed(BetaBinomialLogs(logGamma_, d.n, E, theta == 1.0 ? 0.999999 : theta))
                      : errors.correlated ? mixed(LogsOf(E / N_[i]))
                                          : mixed(BinomialLogs());
    if (!told) return false;
  }
  return true;
}

bool ObjectivePass::JudgeSpanning(const CountErrors& errors, bool testSums) {
  for (const ObjectivePlan::Distribution& d : plan_.spanningDistributions) {
    const ObjectivePlan::FromHatch& hatch = plan_.fromHatch[At(d.interval)];
    const std::size_t clutch = At(hatch.clutch), random = At(hatch.random), correlated = At(hatch.correlated);
    SpanningJudge::Expected expected{{},
                                     PCorr_[At(plan_.span[clutch])],
                                     PCorr_[At(plan_.span[correlated])],
                                     thetaEggs_[At(d.age)],
                                     thetaJuvs_[At(d.age)]};
    expected.numbers.EHatchR = OutR_[clutch];
    expected.numbers.EHatchC = OutC_[clutch];
    expected.numbers.juveniles = {OutR_[random], OutR_[correlated], OutC_[random], OutC_[correlated]};
    const std::size_t first = At(d.prediction), count = At(d.predictionEnd) - first;
    const auto P = std::span(spanning_).first(count);
    if (!spanningJudge_.FillProbabilities(errors, expected, d.n, std::span(plan_.k).subspan(first, count), testSums, P))
      return false;
    if (!FillDeviances(d, [&](std::size_t prediction) { return P[prediction - first]; })) return false;
  }
  return true;
}

/// False when a probability is no number or costs a penalty.
bool ObjectivePass::FillDeviances(const ObjectivePlan::Distribution& d, const auto& probability) {
  bool impossible = false;
  for (std::size_t i = At(d.prediction); i < At(d.predictionEnd); ++i) {
    const double P = probability(i);
    impossible |= !(P >= 0 && P <= std::numeric_limits<double>::max());
    deviance_[i] = P > 0 ? -2 * Log(P) : 0;
  }
  return !impossible;
}

}  // namespace merlane
