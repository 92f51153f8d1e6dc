#include "model/forward_expectation.h"

#include "likelihood/interval_kinds.h"
#include "survival/survival.h"

namespace merlane {
namespace {

/// Expected counts within one stage.
std::optional<CountExpectation> WithinStage(const Survivors& survivors) {
  if (survivors.OutAll == Missing) return std::nullopt;
  CountExpectation expected;
  expected.ER = survivors.OutR;
  expected.EC = survivors.OutC;
  expected.q = survivors.PCorr;
  return expected;
}

/// The forward values of one visit.
class Forward {
 public:
  Forward(const BroodData& data, const Parameters& best, bool BootstrapMode, int brood, int visit,
          ForwardShares& shares, Simulation& simulation)
      : data_(data),
        best_(best),
        bootstrapMode_(BootstrapMode),
        brood_(brood),
        visit_(visit),
        b_(static_cast<std::size_t>(brood)),
        v_(static_cast<std::size_t>(visit)),
        shares_(shares),
        simulation_(simulation) {}

  std::optional<CountExpectation> Expectation() {
    const auto clutch = ClutchIntervalTo(data_, brood_, visit_);
    const auto juveniles = BroodIntervalTo(data_, brood_, visit_);
    Survivors hatched;
    if (clutch == ClutchInterval::ToHatch || clutch == ClutchInterval::ToHatchDay) hatched = Hatch();
    if (!HasForwardExpectation(data_, best_, brood_, visit_)) return std::nullopt;
    if (clutch == ClutchInterval::ByDate) return WithinStage(ByDate(shares_.clutches, ClutchMortalityByDate(best_)));
    if (clutch == ClutchInterval::ByAge)
      return WithinStage(Survive(shares_.clutches, ClutchMortalityByAge(best_), SinceLaying(v_ - 1), SinceLaying(v_)));
    if (clutch == ClutchInterval::ToHatchDay) return WithinStage(hatched);
    if (juveniles == BroodInterval::ByDate)
      return WithinStage(
          ByDate(shares_.broods, BroodMortalityByDate(best_, data_, brood_, simulation_.SimEHatch[b_]).mortality));
    if (visit_ == data_.FirstVisit[b_] + 1) NoteDeficiencies();
    const Mortality mortality = BroodMortalityByAge(best_, data_, brood_, simulation_.SimEHatch[b_]).mortality;
    if (juveniles == BroodInterval::FromClutch) return OverHatchOf(mortality, hatched);
    return WithinStage(Survive(shares_.broods, mortality, data_.VisitAge[v_ - 1], data_.VisitAge[v_]));
  }

 private:
  double SinceLaying(std::size_t v) const { return data_.VisitAge[v] - best_.LayAge; }

  Survivors Survive(SharesByTime& shares, const Mortality& mortality, double T1, double T2, double N) const {
    shares.Under(mortality);
    const SharesAlive atT1 = shares.At(T1);
    return ExpectedSurvivors(shares.Functions(), atT1, shares.At(T2), N, bootstrapMode_);
  }
  Survivors Survive(SharesByTime& shares, const Mortality& mortality, double T1, double T2) const {
    return Survive(shares, mortality, T1, T2, simulation_.SimCount[v_ - 1]);
  }
  Survivors ByDate(SharesByTime& shares, const Mortality& mortality) const {
    return Survive(shares, mortality, data_.VisitDate[v_ - 1], data_.VisitDate[v_]);
  }
  /// What remains of the clutch at hatch.
  Survivors Hatch() {
    const Survivors hatched =
        Survive(shares_.clutches, ClutchMortalityByAge(best_), SinceLaying(v_ - 1), -best_.LayAge);
    simulation_.SimEHatchR[b_] = hatched.OutR;
    simulation_.SimEHatchC[b_] = hatched.OutC;
    simulation_.SimEHatch[b_] = hatched.OutAll;
    return hatched;
  }

  void NoteDeficiencies() {
    if (simulation_.SimEHatch[b_] == Missing && best_.UsesBroodSize) simulation_.SimBroodSizeDeficient = true;
    if (data_.HatchDate[b_] == 0 && best_.UsesHatchDate) simulation_.SimHatchDateDeficient = true;
  }

  std::optional<CountExpectation> OverHatchOf(const Mortality& brood, const Survivors& hatched) const {
    if (hatched.OutAll == Missing) return std::nullopt;
    const double age = data_.VisitAge[v_];
    const Survivors fromR = Survive(shares_.broods, brood, 0, age, hatched.OutR);
    const Survivors fromC = Survive(shares_.broods, brood, 0, age, hatched.OutC);
    if (fromR.OutAll == Missing) return std::nullopt;
    CountExpectation expected;
    expected.overHatch.EHatchR = hatched.OutR;
    expected.overHatch.EHatchC = hatched.OutC;
    expected.overHatch.juveniles[RR] = fromR.OutR;
    expected.overHatch.juveniles[CR] = fromC.OutR;
    expected.overHatch.juveniles[RC] = fromR.OutC;
    expected.overHatch.juveniles[CC] = fromC.OutC;
    expected.q = hatched.PCorr;
    expected.r = fromC.PCorr;
    return expected;
  }

  const BroodData& data_;
  const Parameters& best_;
  const bool bootstrapMode_;
  const int brood_, visit_;
  const std::size_t b_, v_;
  ForwardShares& shares_;
  Simulation& simulation_;
};

}  // namespace

bool HasForwardExpectation(const BroodData& data, const Parameters& best, int brood, int visit) {
  const auto clutch = ClutchIntervalTo(data, brood, visit);
  const auto juveniles = BroodIntervalTo(data, brood, visit);
  if (clutch == ClutchInterval::ByDate || clutch == ClutchInterval::ToHatchDay || juveniles == BroodInterval::ByDate)
    return true;
  const double age = data.VisitAge[static_cast<std::size_t>(visit)];
  if (clutch == ClutchInterval::ByAge) return best.CoversClutchOf(age);
  return best.CoversBroodOf(age) && (juveniles == BroodInterval::ByAge ||
                                     (juveniles == BroodInterval::FromClutch && clutch == ClutchInterval::ToHatch));
}

std::optional<CountExpectation> ForwardExpectation(const BroodData& data, const Parameters& best, bool BootstrapMode,
                                                   int brood, int visit, ForwardShares& shares,
                                                   Simulation& simulation) {
  return Forward(data, best, BootstrapMode, brood, visit, shares, simulation).Expectation();
}

}  // namespace merlane
