#include "model/forward_expectation.h"

#include "model/survival.h"

namespace merlane {
namespace {

bool AgesKnown(const BroodData& data, int brood) {
  const auto b = static_cast<std::size_t>(brood);
  return data.ClutchAgeKnown[b] && data.BroodAgeKnown[b];
}

bool HasExpectationByAge(const BroodData& data, const Parameters& best, std::size_t v) {
  const double a = data.VisitAge[v], before = data.VisitAge[v - 1];
  if (a == Missing || before == Missing) return false;
  if (a <= 0) return before < 0 && a >= best.LayAge;
  return a < best.FledgeAge || best.FledgeAge == 0;
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

/// The forward values of the visits of one brood whose ages are known.
class ByAge {
 public:
  ByAge(const BroodData& data, const Parameters& best, bool BootstrapMode, int brood, Simulation& simulation)
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
    const Mortality clutch = ClutchMortalityByAge(best_);
    if (a < 0)
      return WithinStage(ExpectedSurvivors(clutch, before - best_.LayAge, a - best_.LayAge, N, bootstrapMode_));

    Survivors hatched;
    if (before < 0) {
      hatched = ExpectedSurvivors(clutch, before - best_.LayAge, -best_.LayAge, N, bootstrapMode_);
      simulation_.SimEHatchR[b_] = hatched.OutR;
      simulation_.SimEHatchC[b_] = hatched.OutC;
      simulation_.SimEHatch[b_] = hatched.OutAll;
    }
    if (a == 0) return WithinStage(hatched);
    if (visit == data_.FirstVisit[b_] + 1) NoteDeficiencies();
    const Mortality brood = BroodMortalityByAge(best_, data_, brood_, simulation_.SimEHatch[b_]).mortality;
    if (before >= 0) return WithinStage(ExpectedSurvivors(brood, before, a, N, bootstrapMode_));
    return OverHatch(brood, a, hatched);
  }

 private:
  void NoteDeficiencies() {
    if (simulation_.SimEHatch[b_] == Missing && best_.UsesBroodSize) simulation_.SimBroodSizeDeficient = true;
    if (data_.HatchDate[b_] == 0 && best_.UsesHatchDate) simulation_.SimHatchDateDeficient = true;
  }

  std::optional<CountExpectation> OverHatch(const Mortality& brood, double a, const Survivors& hatched) const {
    if (hatched.OutAll == Missing) return std::nullopt;
    const Survivors fromR = ExpectedSurvivors(brood, 0, a, hatched.OutR, bootstrapMode_);
    const Survivors fromC = ExpectedSurvivors(brood, 0, a, hatched.OutC, bootstrapMode_);
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
  const auto b = static_cast<std::size_t>(brood);
  const auto v = static_cast<std::size_t>(visit);
  if (AgesKnown(data, brood)) return HasExpectationByAge(data, best, v);
  const int before = data.VisitStage[v - 1], stage = data.VisitStage[v];
  return (!data.ClutchAgeKnown[b] && before == -1 && stage == -1) ||
         (!data.BroodAgeKnown[b] && before == 1 && stage == 1);
}

std::optional<CountExpectation> ForwardExpectation(const BroodData& data, const Parameters& best, bool BootstrapMode,
                                                   int brood, int visit, Simulation& simulation) {
  if (AgesKnown(data, brood)) return ByAge(data, best, BootstrapMode, brood, simulation).At(visit);
  const auto v = static_cast<std::size_t>(visit);
  const Mortality mortality =
      data.VisitStage[v] == -1
          ? ClutchMortalityByDate(best)
          : BroodMortalityByDate(best, data, brood, simulation.SimEHatch[static_cast<std::size_t>(brood)]).mortality;
  return WithinStage(ExpectedSurvivors(mortality, data.VisitDate[v - 1], data.VisitDate[v], simulation.SimCount[v - 1],
                                       BootstrapMode));
}

}  // namespace merlane
