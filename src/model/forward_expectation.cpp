#include "model/forward_expectation.h"

#include "model/survival.h"

namespace merlane {
namespace {

/// How the count at a visit is predicted from the count before it.
enum class Rule { None, ClutchByAge, ClutchByDate, OverHatch, BroodByAge, BroodByDate };

/// The rule of the fit. Each stage has its own: by age where its ages are known, by date where they are not.
Rule RuleFor(const BroodData& data, const Parameters& best, int brood, int visit) {
  const auto b = static_cast<std::size_t>(brood);
  const auto v = static_cast<std::size_t>(visit);
  const bool clutchAges = data.ClutchAgeKnown[b], broodAges = data.BroodAgeKnown[b];
  const auto within = [&](int stage) {
    return data.VisitStage[v - 1] == stage && data.VisitStage[v] == stage && data.VisitCount[v] != Missing;
  };
  if (!clutchAges && within(-1)) return Rule::ClutchByDate;
  if (!broodAges && within(1)) return Rule::BroodByDate;
  const double a = data.VisitAge[v], before = data.VisitAge[v - 1];
  if (a == Missing || before == Missing) return Rule::None;
  if (a <= 0) return clutchAges && before < 0 && a >= best.LayAge ? Rule::ClutchByAge : Rule::None;
  if (!broodAges || !(a < best.FledgeAge || best.FledgeAge == 0)) return Rule::None;
  if (before >= 0) return Rule::BroodByAge;
  return clutchAges ? Rule::OverHatch : Rule::None;
}

/// Expected counts within one stage.
std::optional<CountExpectation> WithinStage(const Survivors& survivors) {
  if (survivors.OutAll == Missing) return std::nullopt;
  CountExpectation expected;
  expected.ER = survivors.OutR;
  expected.EC = survivors.OutC;
  expected.q = survivors.PCorr;
  return expected;
}

/// The forward values of the visits of one brood.
class ForwardValues {
 public:
  ForwardValues(const BroodData& data, const Parameters& best, bool BootstrapMode, int brood, Simulation& simulation)
      : data_(data),
        best_(best),
        bootstrapMode_(BootstrapMode),
        brood_(brood),
        b_(static_cast<std::size_t>(brood)),
        simulation_(simulation) {}

  std::optional<CountExpectation> At(int visit) {
    const auto v = static_cast<std::size_t>(visit);
    const double a = data_.VisitAge[v], before = data_.VisitAge[v - 1];
    const double N = simulation_.SimCount[v - 1];
    Survivors hatched;
    if (data_.ClutchAgeKnown[b_] && before != Missing && before < 0 && a >= 0) hatched = Hatch(before, N);
    switch (RuleFor(data_, best_, brood_, visit)) {
      case Rule::ClutchByAge:
        return WithinStage(a == 0 ? hatched : Survive(ClutchMortalityByAge(best_), before - I(), a - I(), N));
      case Rule::ClutchByDate:
        return WithinStage(Survive(ClutchMortalityByDate(best_), data_.VisitDate[v - 1], data_.VisitDate[v], N));
      case Rule::OverHatch:
        return OverHatch(BroodByAge(visit), a, hatched);
      case Rule::BroodByAge:
        return WithinStage(Survive(BroodByAge(visit), before, a, N));
      case Rule::BroodByDate:
        return WithinStage(Survive(BroodMortalityByDate(best_, data_, brood_, simulation_.SimEHatch[b_]).mortality,
                                   data_.VisitDate[v - 1], data_.VisitDate[v], N));
      case Rule::None:
        break;
    }
    return std::nullopt;
  }

 private:
  double I() const { return best_.LayAge; }

  Survivors Survive(const Mortality& mortality, double from, double to, double N) const {
    return ExpectedSurvivors(mortality, from, to, N, bootstrapMode_);
  }

  /// What remains at hatch of N eggs of an age.
  Survivors Hatch(double age, double N) {
    const Survivors hatched = Survive(ClutchMortalityByAge(best_), age - I(), -I(), N);
    simulation_.SimEHatchR[b_] = hatched.OutR;
    simulation_.SimEHatchC[b_] = hatched.OutC;
    simulation_.SimEHatch[b_] = hatched.OutAll;
    return hatched;
  }

  Mortality BroodByAge(int visit) {
    if (visit == data_.FirstVisit[b_] + 1) NoteDeficiencies();
    return BroodMortalityByAge(best_, data_, brood_, simulation_.SimEHatch[b_]).mortality;
  }

  void NoteDeficiencies() {
    if (simulation_.SimEHatch[b_] == Missing && best_.UsesBroodSize) simulation_.SimBroodSizeDeficient = true;
    if (data_.HatchDate[b_] == 0 && best_.UsesHatchDate) simulation_.SimHatchDateDeficient = true;
  }

  std::optional<CountExpectation> OverHatch(const Mortality& brood, double a, const Survivors& hatched) const {
    if (hatched.OutAll == Missing) return std::nullopt;
    const Survivors fromR = Survive(brood, 0, a, hatched.OutR);
    const Survivors fromC = Survive(brood, 0, a, hatched.OutC);
    if (fromR.OutAll == Missing) return std::nullopt;
    CountExpectation expected;
    expected.EHatchR = hatched.OutR;
    expected.EHatchC = hatched.OutC;
    expected.JuvRR = fromR.OutR;
    expected.JuvRC = fromR.OutC;
    expected.JuvCR = fromC.OutR;
    expected.JuvCC = fromC.OutC;
    expected.q = hatched.PCorr;
    expected.r = fromC.PCorr;
    return expected;
  }

  const BroodData& data_;
  const Parameters& best_;
  const bool bootstrapMode_;
  const int brood_;
  const std::size_t b_;
  Simulation& simulation_;
};

}  // namespace

bool HasForwardExpectation(const BroodData& data, const Parameters& best, int brood, int visit) {
  return RuleFor(data, best, brood, visit) != Rule::None;
}

std::optional<CountExpectation> ForwardExpectation(const BroodData& data, const Parameters& best, bool BootstrapMode,
                                                   int brood, int visit, Simulation& simulation) {
  return ForwardValues(data, best, BootstrapMode, brood, simulation).At(visit);
}

}  // namespace merlane
