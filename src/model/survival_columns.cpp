#include "model/survival_columns.h"

#include <algorithm>
#include <cmath>

#include "base/elementary_rows.h"
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

SurvivalColumns::SurvivalColumns(const BroodData& data, const ObjectivePlan& plan)
    : N(plan.N), data_(data), plan_(plan) {
  for (auto* column : {&AlphaR_, &BetaR_, &AlphaC_, &BetaC_, &normaliser_, &shareR_, &shareC_})
    column->resize(At(plan.Mortalities()));
  for (auto* column : {&SR_, &SC_}) column->resize(plan.Time.size());
  for (auto* column : {&aliveR, &aliveC, &aliveAll, &PCorr}) column->resize(plan.from.size());
  for (auto* column : {&OutR, &OutC, &OutAll}) column->resize(plan.N.size());
}

SurvivalColumns::Rows::Rows(const ObjectivePlan& plan) {
  std::size_t most = std::max(plan.clutches.time.Size(), plan.DistinctTimes.size());
  for (const ObjectivePlan::Piece& piece : plan.broodPieces) most = std::max(most, piece.time.Size());
  for (auto* row : {&distinctPower, &power, &exponent, &surviving, &attenuation}) row->reserve(most);
}

bool SurvivalColumns::FillClutches(const Parameters& p, bool BootstrapMode, Rows& rows) {
  // The rates, which both have in common, tell the kind; one that no clutch has may fail.
  Acting acting;
  const bool byAge = SetMortality(PreparedVisits::ClutchByAge, ClutchMortalityByAge(p), true, acting);
  const bool byDate = SetMortality(PreparedVisits::ClutchByDate, ClutchMortalityByDate(p), false, acting);
  if ((plan_.clutchesByAge && !byAge) || (plan_.clutchesByDate && !byDate)) return false;
  return FillSurvival(plan_.clutches, acting, BootstrapMode, rows);
}

void SurvivalColumns::BeginAtHatch() {
  for (const ObjectivePlan::FromHatch& hatch : plan_.fromHatch) {
    N[At(hatch.random)] = OutR[At(hatch.clutch)];
    N[At(hatch.correlated)] = OutC[At(hatch.clutch)];
  }
}

bool SurvivalColumns::FillBroods(const ObjectivePlan::Piece& piece, const Parameters& p, bool BootstrapMode,
                                 Rows& rows) {
  Acting acting;
  for (std::size_t m = piece.mortality.begin; m < piece.mortality.end; ++m) {
    const ObjectivePlan::BroodMortalityOf& of = plan_.broods[m - ObjectivePlan::ClutchMortalities];
    const double E = of.hatch >= 0 ? OutAll[At(of.hatch)] : of.EHatch;
    const BroodMortality effective =
        of.byAge ? BroodMortalityByAge(p, data_, of.brood, E) : BroodMortalityByDate(p, data_, of.brood, E);
    double Penalty = 0;
    effective.AddTo(Penalty);
    if (Penalty != 0 || !SetMortality(m, effective.mortality, m == piece.mortality.begin, acting)) return false;
  }
  return FillSurvival(piece, acting, BootstrapMode, rows);
}

bool SurvivalColumns::SetMortality(std::size_t number, const Mortality& mortality, bool first, Acting& acting) {
  const SurvivalFunctions functions(mortality);
  const SurvivalFunctions::Constants constants = functions.OfTheMortality();
  const Kind kind = functions.RandomOnly() ? Kind::Random : functions.CorrelatedOnly() ? Kind::Correlated : Kind::Both;
  if (first) acting = {kind, mortality.f};
  if (constants.failed || kind != acting.kind) return false;
  AlphaR_[number] = mortality.AlphaR;
  BetaR_[number] = mortality.BetaR;
  AlphaC_[number] = mortality.AlphaC;
  BetaC_[number] = mortality.BetaC;
  normaliser_[number] = constants.normaliser;
  shareR_[number] = constants.shareR;
  shareC_[number] = constants.shareC;
  return true;
}

bool SurvivalColumns::FillSurvival(const ObjectivePlan::Piece& piece, const Acting& acting, bool BootstrapMode,
                                   Rows& rows) {
  for (auto* row : {&rows.power, &rows.exponent, &rows.surviving, &rows.attenuation}) row->resize(piece.time.Size());
  return (acting.kind == Kind::Correlated || FillSharesR(piece, acting.f, rows)) &&
         (acting.kind == Kind::Random || FillSharesC(piece, acting.f, rows)) && FillSpans(piece, acting.kind) &&
         FillSurvivors(piece, BootstrapMode);
}

/// Each time to the shape of its mortality: where there is one shape only, each distinct time once.
void SurvivalColumns::FillPowers(const ObjectivePlan::Piece& piece, const std::vector<double>& Beta, Rows& rows) const {
  const double shape = Beta[piece.mortality.begin];
  bool oneShape = true;
  for (std::size_t m = piece.mortality.begin; m < piece.mortality.end; ++m)
    oneShape = oneShape && SameBits(Beta[m], shape);
  if (!oneShape) {
    for (std::size_t i = 0; i < piece.time.Size(); ++i)
      rows.exponent[i] = Beta[At(plan_.mortalityOfTime[piece.time.begin + i])];
    PowRow(piece.time.Of(plan_.Time), rows.exponent, rows.power);
    return;
  }
  const std::span<const double> times = piece.distinctTime.Of(plan_.DistinctTimes);
  rows.distinctPower.resize(times.size());
  rows.exponent.resize(std::max(times.size(), piece.time.Size()));
  std::fill(rows.exponent.begin(), rows.exponent.end(), shape);
  PowRow(times, rows.exponent, rows.distinctPower);
  rows.exponent.resize(piece.time.Size());
  for (std::size_t i = 0; i < piece.time.Size(); ++i)
    rows.power[i] = rows.distinctPower[At(plan_.distinctTime[piece.time.begin + i]) - piece.distinctTime.begin];
}

/// See SurvivalFunctions::At. An exponent beyond all bounds gives an innocent 0, and is watched; whatever else is no
/// number stays none.
bool SurvivalColumns::FillSharesR(const ObjectivePlan::Piece& piece, double f, Rows& rows) {
  FillPowers(piece, BetaR_, rows);
  BoundsWatch watch;
  const std::span<const int> mortality = piece.time.Of(plan_.mortalityOfTime);
  for (std::size_t i = 0; i < mortality.size(); ++i)
    rows.exponent[i] = watch(-AlphaR_[At(mortality[i])] * rows.power[i]);
  ExpRow(rows.exponent, rows.surviving);
  for (std::size_t i = 0; i < mortality.size(); ++i) rows.exponent[i] = watch(-f * rows.power[i]);
  if (f != 0)
    ExpRow(rows.exponent, rows.attenuation);
  else
    std::fill(rows.attenuation.begin(), rows.attenuation.end(), 1.0);
  double* const SR = SR_.data() + piece.time.begin;
  for (std::size_t i = 0; i < mortality.size(); ++i) {
    const std::size_t m = At(mortality[i]);
    SR[i] = watch(rows.surviving[i] * (1 - shareR_[m] * rows.attenuation[i]) / normaliser_[m]);
  }
  return !watch.Failed();
}

bool SurvivalColumns::FillSharesC(const ObjectivePlan::Piece& piece, double f, Rows& rows) {
  FillPowers(piece, BetaC_, rows);
  BoundsWatch watch;
  const std::span<const int> mortality = piece.time.Of(plan_.mortalityOfTime);
  for (std::size_t i = 0; i < mortality.size(); ++i)
    rows.exponent[i] = watch(-(f + AlphaC_[At(mortality[i])]) * rows.power[i]);
  ExpRow(rows.exponent, rows.surviving);
  double* const SC = SC_.data() + piece.time.begin;
  for (std::size_t i = 0; i < mortality.size(); ++i) {
    const std::size_t m = At(mortality[i]);
    SC[i] = watch(shareC_[m] * rows.surviving[i] / normaliser_[m]);
  }
  return !watch.Failed();
}

/// See ExpectedSurvivors.
bool SurvivalColumns::FillSpans(const ObjectivePlan::Piece& piece, Kind kind) {
  BoundsWatch watch;
  const auto alive = [&](double S1, double S2) { return S1 > 0 ? watch(S2 / S1) : 0.0; };
  for (std::size_t i = piece.span.begin; i < piece.span.end; ++i) {
    const std::size_t from = At(plan_.from[i]), to = At(plan_.to[i]);
    if (kind == Kind::Random) {
      aliveR[i] = aliveAll[i] = alive(SR_[from], SR_[to]);
      aliveC[i] = PCorr[i] = 0;
    } else if (kind == Kind::Correlated) {
      aliveC[i] = aliveAll[i] = alive(SC_[from], SC_[to]);
      aliveR[i] = 0;
      PCorr[i] = SC_[from] > 0 ? 1 : 0;
    } else {
      const double S1 = SR_[from] + SC_[from];
      aliveAll[i] = alive(S1, SR_[to] + SC_[to]);
      aliveC[i] = alive(SC_[from], SC_[to]);
      aliveR[i] = alive(SR_[from], SR_[to]);
      PCorr[i] = watch(SC_[from] / S1);
    }
  }
  return !watch.Failed();
}

bool SurvivalColumns::FillSurvivors(const ObjectivePlan::Piece& piece, bool BootstrapMode) {
  bool tooFew = false;
  for (std::size_t i = piece.interval.begin; i < piece.interval.end; ++i) {
    const std::size_t span = At(plan_.span[i]);
    OutR[i] = aliveR[span] * N[i];
    OutC[i] = aliveC[span] * N[i];
    OutAll[i] = aliveAll[span] * N[i];
    tooFew |= N[i] > 0 && (BootstrapMode ? OutAll[i] == 0 : OutAll[i] < 1e-8);
  }
  return !tooFew;
}

}  // namespace merlane
