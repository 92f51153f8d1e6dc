#include "likelihood/objective_pass.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "survival/arithmetic_watch.h"
#include "survival/same_bits.h"

namespace merlane {

ObjectivePass::ObjectivePass(const BroodData& data, const PreparedVisits& prepared,
                             const CountDistributions& distributions, std::shared_ptr<const ObjectivePlan> plan,
                             Workers* workers)
    : plan_(std::move(plan)),
      workers_(workers != nullptr && plan_->IsLarge() ? workers : nullptr),
      survival_(data, *plan_),
      deviance_(plan_->k.size()) {
  thetasMadeFor_.fill(std::numeric_limits<double>::quiet_NaN());  // nothing yet
  for (int worker = 0; worker < (workers_ == nullptr ? 1 : workers_->Count()); ++worker) {
    rowsOf_.emplace_back(*plan_);
    judgeOf_.emplace_back(*plan_, distributions, prepared.MaxCount);
  }
  for (auto* column : {&thetas_.eggs, &thetas_.juveniles}) column->resize(plan_->Ages.size());
  for (auto* column : {&probabilities_.random, &probabilities_.correlated}) column->resize(plan_->k.size());
}

std::optional<double> ObjectivePass::Sum(const Parameters& p, bool BootstrapMode, bool testSums) {
  if (!plan_->regular || !FillSurvival(p, BootstrapMode)) return std::nullopt;
  FillThetas(p);
  if (!FillDeviances(CountErrors(p), testSums)) return std::nullopt;
  double F = 0;
  for (const int prediction : plan_->counted) F = F + deviance_[static_cast<std::size_t>(prediction)];
  return F;
}

/// Has each piece filled, by whom it may be. False when one of them does not say that it is.
template <class Fill>
bool ObjectivePass::InPieces(std::size_t pieces, const Fill& fill) {
  std::atomic<bool> filled = true;
  const auto fillPiece = [&](int piece, int worker) {
    try {
      if (!fill(static_cast<std::size_t>(piece), static_cast<std::size_t>(worker))) filled = false;
    } catch (const RuntimeFailure&) {
      filled = false;  // the tables' passes meet it in their order
    }
  };
  if (workers_ != nullptr)
    workers_->Share(static_cast<int>(pieces), fillPiece);
  else
    for (int piece = 0; filled && piece < static_cast<int>(pieces); ++piece) fillPiece(piece, 0);
  return filled;
}

bool ObjectivePass::FillSurvival(const Parameters& p, bool BootstrapMode) {
  if (!InPieces(1, [&](std::size_t, std::size_t) { return survival_.FillClutches(p, BootstrapMode, rowsOf_[0]); }))
    return false;
  survival_.BeginAtHatch();
  return InPieces(plan_->broodPieces.size(), [&](std::size_t piece, std::size_t worker) {
    return survival_.FillBroods(piece, p, BootstrapMode, rowsOf_[worker]);
  });
}

void ObjectivePass::FillThetas(const Parameters& p) {
  const std::array<double, 5> madeFor{p.ThetaEggC, p.v_N, static_cast<double>(p.LayAge), p.ThetaJuvC, p.v_B};
  if (std::ranges::equal(madeFor, thetasMadeFor_, SameBits)) return;
  thetasMadeFor_ = madeFor;
  const auto theta = [](double Theta, double v, double days) {
    ArithmeticWatch watch;
    const double value = watch(Theta * watch(Exp(watch(-v * days))));
    return watch.Failed() ? std::numeric_limits<double>::quiet_NaN() : value;
  };
  for (std::size_t i = 0; i < plan_->Ages.size(); ++i) {
    thetas_.eggs[i] = theta(p.ThetaEggC, p.v_N, plan_->Ages[i] - p.LayAge);
    thetas_.juveniles[i] = theta(p.ThetaJuvC, p.v_B, plan_->Ages[i]);
  }
}

bool ObjectivePass::FillDeviances(const CountErrors& errors, bool testSums) {
  const SurvivalColumns::Changes clutches = survival_.OfClutches(), broods = survival_.OfBroods();
  const CountJudge::Known knownOfClutches = KnownOf(clutchesJudged_, clutches, errors.eggs);
  const CountJudge::Known knownOfBroods = KnownOf(broodsJudged_, broods, errors.juveniles);
  clutchesJudged_.all = broodsJudged_.all = false;
  if (!InPieces(plan_->rows.size(), [&](std::size_t row, std::size_t worker) {
        return Judge(plan_->rows[row], judgeOf_[worker], errors, knownOfClutches, knownOfBroods, testSums);
      }))
    return false;
  clutchesJudged_ = {true, clutches, errors.eggs};
  broodsJudged_ = {true, broods, errors.juveniles};
  return true;
}

CountJudge::Known ObjectivePass::KnownOf(const Judged& judged, const SurvivalColumns::Changes& survival,
                                         const StageErrors& errors) {
  return {.random = judged.all && judged.survival.random == survival.random && judged.errors.random == errors.random,
          .correlated = judged.all && judged.survival.correlated == survival.correlated && judged.errors == errors};
}

bool ObjectivePass::Judge(const ObjectivePlan::Row& row, CountJudge& judge, const CountErrors& errors,
                          const CountJudge::Known& clutches, const CountJudge::Known& broods, bool testSums) {
  const CountJudge::Distributions distributions = plan_->DistributionsOf(row);
  if (row.kind == Prediction::Clutch)
    return clutches.Both() ||
           judge.JudgeStage(distributions, survival_, errors.eggs, thetas_.eggs, clutches, probabilities_, deviance_);
  if (row.kind == Prediction::Brood)
    return broods.Both() || judge.JudgeStage(distributions, survival_, errors.juveniles, thetas_.juveniles, broods,
                                             probabilities_, deviance_);
  return judge.JudgeOverHatch(distributions, survival_, errors, thetas_, testSums, deviance_);
}

}  // namespace merlane
