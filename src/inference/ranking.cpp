#include "inference/ranking.h"

#include <algorithm>
#include <utility>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

void Void(Competitor& model) {
  model.RankDeltaAICc = model.RankAICWt = model.RankDeltaQAICc = model.RankQAICWt = std::nullopt;
}

}  // namespace

std::string DefinedText(const std::optional<double>& figure, const char* pattern) {
  return figure ? Format(*figure, pattern) : "undefined";
}

const std::optional<double>& Ranking::Delta(const Competitor& model) const {
  return ByQAICc() ? model.RankDeltaQAICc : model.RankDeltaAICc;
}

const std::optional<double>& Ranking::Weight(const Competitor& model) const {
  return ByQAICc() ? model.RankQAICWt : model.RankAICWt;
}

void Ranking::Add() {
  const std::int16_t entry = CheckedInt16(lastEntry_ + 1);
  ranked.emplace_back();
  entered.emplace_back().RankOrder = lastEntry_ = entry;
}

void Ranking::Scale(Competitor& model, double constant) const {
  model.RankNegLnL = Divide(model.objective + constant * model.prior, constant);
  model.constant = constant;
  SetCriteria(model);
}

Ranking Ranking::AsRanked() const {
  Ranking asRanked = *this;
  asRanked.CHat = rankedCHat.value_or(CHat);
  return asRanked;
}

bool Ranking::ScaleAll(double constant) {
  const auto other = [constant](const Competitor& model) { return model.constant != 0 && model.constant != constant; };
  if (std::ranges::none_of(entered, other)) return false;
  Ranking scaled = *this;
  for (Competitor& model : scaled.entered)
    if (other(model)) Scale(model, constant);
  const Ranking asRanked = AsRanked();
  for (Competitor& model : scaled.ranked)
    if (other(model)) asRanked.Scale(model, constant);
  for (std::vector<Competitor>* models : {&scaled.entered, &scaled.ranked})
    for (Competitor& model : *models) Void(model);
  *this = std::move(scaled);
  return true;
}

void Ranking::SetCriteria(Competitor& model) const {
  const double K = model.RankK, n = model.sampleSize;
  const double size = Divide(2 * K * n, n - K - 1);
  model.RankAICc = size + 2 * model.RankNegLnL;
  if (ByQAICc()) model.RankQAICc = size + (2 * model.RankNegLnL) / CHat;
}

void Ranking::VoidWeights() {
  for (std::vector<Competitor>* models : {&entered, &ranked})
    for (Competitor& model : *models) {
      model.RankDeltaAICc = model.RankAICWt = std::nullopt;
      if (ByQAICc()) model.RankDeltaQAICc = model.RankQAICWt = std::nullopt;
    }
}

void Ranking::Correct(double cHat) {
  Ranking corrected = *this;
  corrected.CHat = cHat;
  for (Competitor& model : corrected.entered)
    if (model.constant != 0) corrected.SetCriteria(model);  // of one that is half done there is no -ln[L]
  corrected.VoidWeights();
  *this = std::move(corrected);
}

std::vector<int> Ranking::RankedPositions() const {
  std::vector<int> positions;
  std::vector<bool> taken(entered.size(), false);
  for (std::size_t j = 0; j < entered.size(); ++j) {
    double best = 1e+100;
    int choice = -1;
    for (std::size_t i = 0; i < entered.size(); ++i) {
      const double criterion = Criterion(entered[i]);
      if (taken[i] || criterion <= 0 || criterion >= best) continue;
      best = criterion;
      choice = static_cast<int>(i);
    }
    if (choice < 0) throw RuntimeFailure("all values of the criterion must be positive for a ranking");
    taken[static_cast<std::size_t>(choice)] = true;
    positions.push_back(choice);
  }
  return positions;
}

void Ranking::Rank() {
  std::vector<Competitor> order;
  for (const int position : RankedPositions()) order.push_back(entered[static_cast<std::size_t>(position)]);
  // The columns of the mode that is not in force stay what they were at their position.
  for (std::size_t j = 0; j < order.size(); ++j) {
    const Competitor before = std::exchange(ranked[j], order[j]);
    ranked[j].RankDeltaAICc = before.RankDeltaAICc;
    ranked[j].RankAICWt = before.RankAICWt;
    ranked[j].RankDeltaQAICc = before.RankDeltaQAICc;
    ranked[j].RankQAICWt = before.RankQAICWt;
  }
  if (ModelCount() > 1) {
    const double lowest = Criterion(ranked.front());
    double sum = 0;
    for (std::size_t j = 0; j < ranked.size(); ++j) {
      const double delta = j == 0 ? 0 : Criterion(ranked[j]) - lowest;
      (ByQAICc() ? ranked[j].RankDeltaQAICc : ranked[j].RankDeltaAICc) = delta;
      sum += Exp(-0.5 * delta);
    }
    for (Competitor& model : ranked) (ByQAICc() ? model.RankQAICWt : model.RankAICWt) = Exp(-0.5 * *Delta(model)) / sum;
  }
  rankedCHat = CHat;
  entered = std::move(order);
  for (Competitor& model : entered) Void(model);
}

void Ranking::Delete(int position) {
  entered.erase(entered.begin() + position - 1);
  ranked.erase(ranked.begin() + position - 1);
  for (Competitor& model : entered) Void(model);
  for (Competitor& model : ranked) Void(model);
}

}  // namespace merlane
