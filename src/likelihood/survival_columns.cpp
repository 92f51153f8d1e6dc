#include "likelihood/survival_columns.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "base/elementary_rows.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

std::size_t At(int index) { return static_cast<std::size_t>(index); }

bool AreBounded(std::span<const double> column) { return Columns().areBounded(column.data(), column.size()); }

}  // namespace

SurvivalColumns::SurvivalColumns(const BroodData& data, const ObjectivePlan& plan)
    : N(plan.N), data_(data), plan_(plan), effects_(data, plan), filled_(plan.broodPieces.size() + 1) {
  for (const ObjectivePlan::Piece& piece : plan.broodPieces) effectsServe_.push_back(EffectColumns::Serve(plan, piece));
  for (Shares* shares : {&random_, &correlated_}) {
    for (auto* rates : {&shares->rate, &shares->made}) rates->resize(At(plan.Mortalities()));
    shares->madeFor.assign(At(plan.Mortalities()), SurvivalRate::NotYet);
    for (auto* column : {&shares->alive, &shares->power}) column->resize(plan.Time.size());
  }
  for (auto* column : {&aliveR, &aliveC, &aliveAll, &PCorr}) column->resize(plan.from.size());
  for (auto* column : {&OutR, &OutC, &OutAll}) column->resize(plan.N.size());
}

SurvivalColumns::Rows::Rows(const ObjectivePlan& plan) : effects(plan) {
  std::size_t most = std::max(plan.clutches.time.Size(), plan.DistinctTimes.size());
  for (const ObjectivePlan::Piece& piece : plan.broodPieces)
    most = std::max({most, piece.time.Size(), piece.mortality.Size()});
  for (auto* row : {&distinctPower, &exponent, &surviving, &attenuation}) row->resize(most);
}

bool SurvivalColumns::FillClutches(const Parameters& p, bool BootstrapMode, Rows& rows) {
  // The rates, which both have in common, tell the kind; one that no clutch has may fail.
  Kind kind = Kind::Both;
  const bool byAge = SetMortality(PreparedVisits::ClutchByAge, ClutchMortalityByAge(p), true, kind);
  const bool byDate = SetMortality(PreparedVisits::ClutchByDate, ClutchMortalityByDate(p), false, kind);
  if ((plan_.clutchesByAge && !byAge) || (plan_.clutchesByDate && !byDate)) return false;
  return FillSurvival(plan_.clutches, kind, BootstrapMode, {}, filled_.front(), rows);
}

void SurvivalColumns::BeginAtHatch() {
  for (const ObjectivePlan::FromHatch& hatch : plan_.fromHatch) {
    N[At(hatch.random)] = OutR[At(hatch.clutch)];
    N[At(hatch.correlated)] = OutC[At(hatch.clutch)];
  }
}

bool SurvivalColumns::FillBroods(std::size_t piece, const Parameters& p, bool BootstrapMode, Rows& rows) {
  Kind kind = Kind::Both;
  return SetMortalities(piece, p, kind, rows) &&
         FillSurvival(plan_.broodPieces[piece], kind, BootstrapMode, OfClutches(), filled_[piece + 1], rows);
}

bool SurvivalColumns::SetMortalities(std::size_t number, const Parameters& p, Kind& kind, Rows& rows) {
  const ObjectivePlan::Piece& piece = plan_.broodPieces[number];
  for (std::size_t i = 0; i < piece.mortality.Size(); ++i) {
    const ObjectivePlan::BroodMortalityOf& of =
        plan_.broods[piece.mortality.begin + i - ObjectivePlan::ClutchMortalities];
    rows.effects.E[i] = of.hatch >= 0 ? OutAll[At(of.hatch)] : of.EHatch;
  }
  if (effectsServe_[number]) {
    if (!effects_.Fill(piece, p, rows.effects)) return false;
    if (SetMortalitiesInRow(piece, p, kind, rows)) return true;
    for (std::size_t i = 0; i < piece.mortality.Size(); ++i)
      if (!SetMortality(piece.mortality.begin + i, rows.effects.Of(i, p), i == 0, kind)) return false;
    return true;
  }
  for (std::size_t i = 0; i < piece.mortality.Size(); ++i) {
    const ObjectivePlan::BroodMortalityOf& of =
        plan_.broods[piece.mortality.begin + i - ObjectivePlan::ClutchMortalities];
    const double E = rows.effects.E[i];
    const BroodMortality effective =
        of.byAge ? BroodMortalityByAge(p, data_, of.brood, E) : BroodMortalityByDate(p, data_, of.brood, E);
    double Penalty = 0;
    effective.AddTo(Penalty);
    if (Penalty != 0 || !SetMortality(piece.mortality.begin + i, effective.mortality, i == 0, kind)) return false;
  }
  return true;
}

SurvivalColumns::Changes SurvivalColumns::OfBroods() const {
  Changes changes;
  for (const Filled& piece : std::span(filled_).subspan(1)) {
    changes.random += piece.changes.random;
    changes.correlated += piece.changes.correlated;
  }
  return changes;
}

SurvivalColumns::Kind SurvivalColumns::KindOf(double AlphaR, double AlphaC) {
  if (AlphaR > 0 && AlphaC == 0) return Kind::Random;
  return AlphaC > 0 && AlphaR == 0 ? Kind::Correlated : Kind::Both;
}

/// No intermediate result is beyond all bounds where neither the rates nor what comes of them are.
bool SurvivalColumns::SetMortalitiesInRow(const ObjectivePlan::Piece& piece, const Parameters& p, Kind& kind,
                                          Rows& rows) {
  const std::size_t size = piece.mortality.Size(), first = piece.mortality.begin;
  const auto& [AlphaR, BetaR, AlphaC, BetaC] = rows.effects.values;
  const auto normaliser = std::span(rows.exponent).first(size), shareR = std::span(rows.surviving).first(size),
             shareC = std::span(rows.attenuation).first(size);
  Columns().constants(p.c_B, p.f_B, AlphaR.data(), AlphaC.data(), normaliser.data(), shareR.data(), shareC.data(),
                      size);
  kind = KindOf(AlphaR[0], AlphaC[0]);
  bool ofOneKind = true;
  for (std::size_t i = 0; i < size; ++i) {
    ofOneKind &= KindOf(AlphaR[i], AlphaC[i]) == kind;
    random_.rate[first + i] = {AlphaR[i], BetaR[i], p.f_B, normaliser[i], shareR[i]};
    correlated_.rate[first + i] = {AlphaC[i], BetaC[i], p.f_B, normaliser[i], shareC[i]};
  }
  return ofOneKind && AreBounded(std::array{p.c_B, p.f_B}) && AreBounded(std::span(AlphaR).first(size)) &&
         AreBounded(std::span(AlphaC).first(size)) && AreBounded(normaliser) &&
         (kind == Kind::Correlated || AreBounded(shareR)) && (kind == Kind::Random || AreBounded(shareC));
}

bool SurvivalColumns::SetMortality(std::size_t number, const Mortality& mortality, bool first, Kind& kind) {
  const SurvivalFunctions functions(mortality);
  const SurvivalFunctions::Constants constants = functions.OfTheMortality();
  const Kind ofThis = KindOf(mortality.AlphaR, mortality.AlphaC);
  if (first) kind = ofThis;
  if (constants.failed || kind != ofThis) return false;
  const auto [AlphaR, BetaR, AlphaC, BetaC, c, f] = mortality;
  random_.rate[number] = {AlphaR, BetaR, f, constants.normaliser, constants.shareR};
  correlated_.rate[number] = {AlphaC, BetaC, f, constants.normaliser, constants.shareC};
  return true;
}

bool SurvivalColumns::FillSurvival(const ObjectivePlan::Piece& piece, Kind kind, bool BootstrapMode,
                                   const Changes& hatched, Filled& filled, Rows& rows) {
  const bool comparable =
      std::exchange(filled.whole, false) && filled.kind == kind && filled.BootstrapMode == BootstrapMode;
  const bool sameR = kind == Kind::Correlated || AreMade(piece, random_);
  const bool sameC = kind == Kind::Random || AreMade(piece, correlated_);
  if (!comparable || !sameR) ++filled.changes.random;
  if (!comparable || !sameC) ++filled.changes.correlated;
  if (!comparable || !sameR || !sameC || filled.hatched != hatched) {
    if (!sameR && !FillSharesR(piece, rows)) return false;
    if (!sameC && !FillSharesC(piece, rows)) return false;
    if (!FillSpans(piece, kind) || !FillSurvivors(piece, BootstrapMode)) return false;
  }
  filled.whole = true;
  filled.kind = kind;
  filled.BootstrapMode = BootstrapMode;
  filled.hatched = hatched;
  return true;
}

/// Whether the shares of a piece are those of its rates.
bool SurvivalColumns::AreMade(const ObjectivePlan::Piece& piece, const Shares& shares) {
  return std::ranges::equal(piece.mortality.Of(shares.rate), piece.mortality.Of(shares.made),
                            [](const SurvivalRate& a, const SurvivalRate& b) {
                              return SameBits(a.Alpha, b.Alpha) && SameBits(a.Beta, b.Beta) && SameBits(a.f, b.f) &&
                                     SameBits(a.normaliser, b.normaliser) && SameBits(a.share, b.share);
                            });
}

void SurvivalColumns::NoteMade(const ObjectivePlan::Piece& piece, Shares& shares) {
  for (std::size_t m = piece.mortality.begin; m < piece.mortality.end; ++m) shares.made[m] = shares.rate[m];
}

/// Each time to the shape of its mortality: where there is one shape only, each distinct time once.
void SurvivalColumns::FillPowers(const ObjectivePlan::Piece& piece, Shares& shares, Rows& rows) const {
  const double shape = shares.rate[piece.mortality.begin].Beta;
  bool oneShape = true, made = true;
  for (std::size_t m = piece.mortality.begin; m < piece.mortality.end; ++m) {
    const double Beta = shares.rate[m].Beta;
    oneShape = oneShape && SameBits(Beta, shape);
    made = made && SameBits(Beta, shares.madeFor[m]);
    shares.madeFor[m] = Beta;
  }
  if (made) return;
  const std::size_t size = piece.time.Size();
  const std::span<double> power = std::span(shares.power).subspan(piece.time.begin, size);
  if (!oneShape) {
    for (std::size_t i = 0; i < size; ++i)
      rows.exponent[i] = shares.madeFor[At(plan_.mortalityOfTime[piece.time.begin + i])];
    PowRow(piece.time.Of(plan_.Time), std::span(rows.exponent).first(size), power);
    return;
  }
  const std::span<const double> times = piece.distinctTime.Of(plan_.DistinctTimes);
  const std::span<double> exponent = std::span(rows.exponent).first(times.size());
  std::ranges::fill(exponent, shape);
  PowRow(times, exponent, std::span(rows.distinctPower).first(times.size()));
  for (std::size_t i = 0; i < size; ++i)
    power[i] = rows.distinctPower[At(plan_.distinctTime[piece.time.begin + i]) - piece.distinctTime.begin];
}

/// See SurvivalFunctions::At. An exponent beyond all bounds gives an innocent 0, and is looked at; whatever else is no
/// number stays none.
bool SurvivalColumns::FillSharesR(const ObjectivePlan::Piece& piece, Rows& rows) {
  FillPowers(piece, random_, rows);
  random_.made[piece.mortality.begin] = {};  // until they are
  const ColumnLoops& columns = Columns();
  const std::size_t size = piece.time.Size();
  const int* const mortality = plan_.mortalityOfTime.data() + piece.time.begin;
  const double* const power = random_.power.data() + piece.time.begin;
  const auto exponent = std::span(rows.exponent).first(size);
  const auto surviving = std::span(rows.surviving).first(size);
  const auto attenuation = std::span(rows.attenuation).first(size);
  columns.randomExponents(random_.rate.data(), mortality, power, exponent.data(), size);
  bool bounded = AreBounded(exponent);
  ExpRow(exponent, surviving);
  const double f = random_.rate[piece.mortality.begin].f;  // which all have
  columns.products(-f, power, exponent.data(), size);
  bounded &= AreBounded(exponent);
  if (f != 0)
    ExpRow(exponent, attenuation);
  else
    std::ranges::fill(attenuation, 1.0);
  const auto SR = std::span(random_.alive).subspan(piece.time.begin, size);
  columns.randomShares(random_.rate.data(), mortality, surviving.data(), attenuation.data(), SR.data(), size);
  if (!bounded || !AreBounded(SR)) return false;
  NoteMade(piece, random_);
  return true;
}

bool SurvivalColumns::FillSharesC(const ObjectivePlan::Piece& piece, Rows& rows) {
  FillPowers(piece, correlated_, rows);
  correlated_.made[piece.mortality.begin] = {};
  const ColumnLoops& columns = Columns();
  const std::size_t size = piece.time.Size();
  const int* const mortality = plan_.mortalityOfTime.data() + piece.time.begin;
  const double* const power = correlated_.power.data() + piece.time.begin;
  const auto exponent = std::span(rows.exponent).first(size);
  const auto surviving = std::span(rows.surviving).first(size);
  columns.correlatedExponents(correlated_.rate.data(), mortality, power, exponent.data(), size);
  const bool bounded = AreBounded(exponent);
  ExpRow(exponent, surviving);
  const auto SC = std::span(correlated_.alive).subspan(piece.time.begin, size);
  columns.correlatedShares(correlated_.rate.data(), mortality, surviving.data(), SC.data(), size);
  if (!bounded || !AreBounded(SC)) return false;
  NoteMade(piece, correlated_);
  return true;
}

/// See ExpectedSurvivors.
bool SurvivalColumns::FillSpans(const ObjectivePlan::Piece& piece, Kind kind) {
  const std::size_t begin = piece.span.begin, size = piece.span.Size();
  const int *const from = plan_.from.data() + begin, *const to = plan_.to.data() + begin;
  double *const R = aliveR.data() + begin, *const C = aliveC.data() + begin, *const all = aliveAll.data() + begin,
                *const q = PCorr.data() + begin;
  if (kind == Kind::Both) {
    Columns().spans(from, to, random_.alive.data(), correlated_.alive.data(), R, C, all, q, size);
  } else {
    const std::vector<double>& S = kind == Kind::Random ? random_.alive : correlated_.alive;
    Columns().sharesAlive(from, to, S.data(), all, size);
    std::copy_n(all, size, kind == Kind::Random ? R : C);
    std::fill_n(kind == Kind::Random ? C : R, size, 0.0);
    for (std::size_t i = 0; i < size; ++i) q[i] = kind == Kind::Correlated && S[At(from[i])] > 0 ? 1 : 0;
  }
  bool bounded = true;
  for (const auto* column : {&aliveR, &aliveC, &aliveAll, &PCorr}) bounded &= AreBounded(piece.span.Of(*column));
  return bounded;
}

bool SurvivalColumns::FillSurvivors(const ObjectivePlan::Piece& piece, bool BootstrapMode) {
  const ColumnLoops& columns = Columns();
  const std::size_t begin = piece.interval.begin, size = piece.interval.Size();
  const int* const span = plan_.span.data() + begin;
  columns.survivors(span, aliveR.data(), N.data() + begin, OutR.data() + begin, size);
  columns.survivors(span, aliveC.data(), N.data() + begin, OutC.data() + begin, size);
  columns.survivors(span, aliveAll.data(), N.data() + begin, OutAll.data() + begin, size);
  return !columns.fewerThan(BootstrapMode ? 0 : 1e-8, N.data() + begin, OutAll.data() + begin, size);
}

}  // namespace merlane
