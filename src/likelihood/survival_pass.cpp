#include "likelihood/survival_pass.h"

#include "survival/failure_context.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

bool SameMortality(const Mortality& a, const Mortality& b) {
  return SameBits(a.AlphaR, b.AlphaR) && SameBits(a.BetaR, b.BetaR) && SameBits(a.AlphaC, b.AlphaC) &&
         SameBits(a.BetaC, b.BetaC) && SameBits(a.c, b.c) && SameBits(a.f, b.f);
}

/// Which of a brood's properties have a coefficient that is not 0.
struct InPlay {
  bool attributes = false;  // E[brood size@hatch] or hatch date
  bool covariates = false;
};

InPlay CoefficientsInPlay(const Parameters& p, int NCov) {
  InPlay inPlay;
  for (const auto* Z : {&p.ZetaBR, &p.GammaBR, &p.ZetaBC, &p.GammaBC}) {
    inPlay.attributes |= (*Z)(property::BroodSize) != 0 || (*Z)(property::HatchDate) != 0;
    for (int m = 1; m <= NCov; ++m) inPlay.covariates |= (*Z)(property::Covariate(m)) != 0;
  }
  for (const auto* Zx : {&p.ZetaBRx, &p.GammaBRx, &p.ZetaBCx, &p.GammaBCx}) {
    inPlay.attributes |= (*Zx)(property::BroodSize, property::HatchDate) != 0;
    for (int m = 1; m <= NCov; ++m)
      for (const int attribute : {property::BroodSize, property::HatchDate})
        inPlay.attributes |= (*Zx)(attribute, property::Covariate(m)) != 0;
  }
  return inPlay;
}

}  // namespace

SurvivalPass::SurvivalPass(const BroodData& data, const PreparedVisits& prepared)
    : data_(data),
      prepared_(prepared),
      stages_(static_cast<std::size_t>(prepared.Mortalities())),
      shares_(prepared.Times.size()),
      survivors_(prepared.Intervals.size()) {}

void SurvivalPass::FillSurvivalTables(const Parameters& parameters, bool BootstrapMode,
                                      const std::function<void(long)>& turn, SurvivalTables& tables, double& Penalty) {
  parameters_ = &parameters;
  bootstrapMode_ = BootstrapMode;
  ++filling_;
  groupsAreAlike_ = BroodsShareMortalities(parameters);
  FillClutches(turn, tables, Penalty);
  FillBroods(tables, Penalty);
}

bool SurvivalPass::BroodsShareMortalities(const Parameters& parameters) const {
  const InPlay inPlay = CoefficientsInPlay(parameters, data_.NCov);
  return !inPlay.attributes && (!inPlay.covariates || prepared_.GroupsShareCovariates);
}

void SurvivalPass::Set(Stage& stage, const Mortality& mortality, double startAge) {
  if (stage.stamp != 0 && SameMortality(stage.mortality, mortality) && stage.startAge == startAge &&
      stage.BootstrapMode == bootstrapMode_)
    return;
  stage.mortality = mortality;
  stage.functions = SurvivalFunctions(mortality);
  stage.startAge = startAge;
  stage.BootstrapMode = bootstrapMode_;
  stage.stamp = ++lastStamp_;
}

const SurvivalPass::Stage& SurvivalPass::StageOfBrood(int number, int brood, double E, bool byAge) {
  Stage& stage = stages_[static_cast<std::size_t>(number)];
  if (stage.filling == filling_ && (stage.brood == brood || groupsAreAlike_)) return stage;
  stage.effective =
      byAge ? BroodMortalityByAge(*parameters_, data_, brood, E) : BroodMortalityByDate(*parameters_, data_, brood, E);
  stage.filling = filling_;
  stage.brood = brood;
  Set(stage, stage.effective.mortality, 0);
  return stage;
}

const SharesAlive& SurvivalPass::SharesAt(int time, const Stage& stage) {
  KeptShares& kept = shares_[static_cast<std::size_t>(time)];
  if (kept.stamp != stage.stamp) {
    kept.shares = stage.functions.At(prepared_.Times[static_cast<std::size_t>(time)] - stage.startAge);
    kept.stamp = stage.stamp;
  }
  return kept.shares;
}

const Survivors& SurvivalPass::SurvivorsOf(int interval, const Stage& stage, double N) {
  KeptSurvivors& kept = survivors_[static_cast<std::size_t>(interval)];
  if (kept.stamp != stage.stamp || !SameBits(kept.N, N)) {
    const auto [from, to] = prepared_.Intervals[static_cast<std::size_t>(interval)];
    const SharesAlive& atT1 = SharesAt(from, stage);
    const SharesAlive& atT2 = SharesAt(to, stage);
    kept.survivors = ExpectedSurvivors(stage.functions, atT1, atT2, N, bootstrapMode_);
    kept.N = N;
    kept.stamp = stage.stamp;
  }
  return kept.survivors;
}

void SurvivalPass::FillClutches(const std::function<void(long)>& turn, SurvivalTables& tables, double& Penalty) {
  using Kind = ClutchInterval;
  Stage& byAge = stages_[PreparedVisits::ClutchByAge];
  Stage& byDate = stages_[PreparedVisits::ClutchByDate];
  Set(byAge, ClutchMortalityByAge(*parameters_), parameters_->LayAge);
  Set(byDate, ClutchMortalityByDate(*parameters_), 0);
  tables.ClutchIntervals = 0;
  for (const PreparedVisits::ClutchStep& step : prepared_.ClutchSteps) {
    const auto v = static_cast<std::size_t>(step.visit);
    const auto b = static_cast<std::size_t>(step.brood);
    if (step.kind == Kind::FirstOnHatchDay) {
      tables.EHatch[b] = tables.EHatchR[b] = tables.EHatchC[b] = step.count;
      continue;
    }
    if (step.kind == Kind::ByAge && !parameters_->CoversClutchOf(data_.VisitAge[v])) continue;

    const Survivors& out = SurvivorsOf(step.interval, step.kind == Kind::ByDate ? byDate : byAge, step.count);
    if (out.Penalty != 0) Penalty = Penalty + out.Penalty;
    if (step.kind == Kind::ToHatch || step.kind == Kind::ToHatchDay) {
      tables.EHatchR[b] = out.OutR;
      tables.EHatchC[b] = out.OutC;
      tables.EHatch[b] = out.OutAll;
      tables.PCorrHatch[b] = out.PCorr;
    }
    if (step.kind == Kind::ToHatch) continue;  // the interval that the brood pass fills
    tables.EVisitR[v] = out.OutR;
    tables.EVisitC[v] = out.OutC;
    tables.EVisit[v] = out.OutAll;
    tables.PCorrEgg[v] = out.PCorr;
    ++tables.ClutchIntervals;
  }
  if (turn) turn(1);
}

void SurvivalPass::FillBroods(SurvivalTables& tables, double& Penalty) {
  using Kind = BroodInterval;
  tables.BroodIntervals = 0;
  tables.BroodSizeDeficient = tables.HatchDateDeficient = false;
  for (const PreparedVisits::BroodStep& step : prepared_.BroodSteps) {
    const auto v = static_cast<std::size_t>(step.visit);
    const auto b = static_cast<std::size_t>(step.brood);
    const int group = prepared_.GroupOfBrood[b];
    if (step.kind == Kind::FirstOnHatchDay) {
      tables.EHatch[b] = step.count;
      tables.EHatchR[b] = tables.EHatchC[b] = 0;  // no egg history to split by
      continue;
    }
    const bool byAge = step.kind != Kind::ByDate;
    if (byAge) {
      if (!parameters_->CoversBroodOf(data_.VisitAge[v])) continue;
      if (step.secondVisit) {
        if (tables.EHatch[b] == Missing && parameters_->UsesBroodSize) tables.BroodSizeDeficient = true;
        if (data_.HatchDate[b] == 0 && parameters_->UsesHatchDate) tables.HatchDateDeficient = true;
      }
    }
    const int number = byAge ? PreparedVisits::BroodByAge(group) : PreparedVisits::BroodByDate(group);
    const Stage& stage = AtVisit(
        data_, v, b, [&]() -> const Stage& { return StageOfBrood(number, step.brood, tables.EHatch[b], byAge); });
    stage.effective.AddTo(Penalty);
    if (step.kind == Kind::AgeBeforeUnknown) continue;
    if (step.kind == Kind::FromClutch) {
      if (tables.EHatch[b] != Missing) FillFromClutch(step, stage, tables, Penalty);
      continue;
    }
    const Survivors& out = SurvivorsOf(step.interval, stage, step.count);
    if (out.Penalty != 0) Penalty = Penalty + out.Penalty;
    tables.PCorrJuv[v] = out.PCorr;
    tables.EVisitR[v] = out.OutR;
    tables.EVisitC[v] = out.OutC;
    tables.EVisit[v] = out.OutAll;
    ++tables.BroodIntervals;
  }
}

void SurvivalPass::FillFromClutch(const PreparedVisits::BroodStep& step, const Stage& stage, SurvivalTables& tables,
                                  double& Penalty) {
  const auto v = static_cast<std::size_t>(step.visit);
  const auto b = static_cast<std::size_t>(step.brood);
  const auto carryOn = [&](double EHatch, int interval, double& JuvR, double& JuvC) {
    if (EHatch == Missing) return;
    const Survivors& out = SurvivorsOf(interval, stage, EHatch);
    if (out.Penalty != 0) Penalty = Penalty + out.Penalty;
    tables.PCorrJuv[v] = out.PCorr;
    JuvR = out.OutR;
    JuvC = out.OutC;
  };
  carryOn(tables.EHatchR[b], step.interval, tables.JuvRR[b], tables.JuvRC[b]);
  carryOn(tables.EHatchC[b], step.intervalCorrelated, tables.JuvCR[b], tables.JuvCC[b]);
  const double q = tables.PCorrHatch[b];
  const double r = tables.PCorrJuv[v];
  tables.EVisitR[v] = (1 - q) * tables.JuvRR[b] + q * tables.JuvCR[b];
  tables.EVisitC[v] = (1 - q) * tables.JuvRC[b] + q * tables.JuvCC[b];
  tables.EVisit[v] = (1 - r) * tables.EVisitR[v] + r * tables.EVisitC[v];
  ++tables.ClutchIntervals;
}

}  // namespace merlane
