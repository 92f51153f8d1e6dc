#include "bootstrap/bootstrap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace merlane {

void Spread::Add(double x) {
  ++count_;
  sum_ += x;
  sumOfSquares_ += x * x;
  minimum_ = std::min(minimum_, x);
  maximum_ = std::max(maximum_, x);
}

double Spread::SD() const {
  if (count_ == 0) return 0;
  const double V = sumOfSquares_ / count_ - Mean() * Mean();
  return V > 0 ? std::sqrt(V) : 0;
}

void BootstrapResults::Begin(double deviance0, const Array1<double>& Value, const FreeParameters& free, int visits) {
  originalDeviance = deviance0;
  originalEstimates.Dimension(free.NFREE);
  estimates.Dimension(free.NFREE);
  for (std::vector<Spread>& column : survival) column.resize(static_cast<std::size_t>(visits));
  parameters.Dimension(free.NFREE);  // last of what wants memory: one that has parameters has begun
  for (int i = 1; i <= free.NFREE; ++i) {
    parameters(i) = free.FreeIndex(i);
    originalEstimates(i) = Value(free.FreeIndex(i));
  }
}

void BootstrapResults::Keep(double F, const Array1<double>& Value, const SurvivalEstimates& s) {
  Array1<double> kept(parameters.Size());
  for (int i = 1; i <= parameters.Size(); ++i) kept(i) = Value(parameters(i));
  BootEstimates.push_back(std::move(kept));
  BootDeviance.push_back(F);  // last of what wants memory: a replicate counts with all that it has, or not at all
  deviance.Add(F);
  if (!(F < originalDeviance)) ++BootAboveObserved;
  for (int i = 1; i <= parameters.Size(); ++i) estimates(i).Add(BootEstimates.back()(i));
  const std::vector<double>* const columns[] = {&s.LiveDay,    &s.LiveDayR,    &s.LiveDayC,
                                                &s.FledgeFrom, &s.FledgeFromR, &s.FledgeFromC,
                                                &s.FledgeZero, &s.FledgeZeroR, &s.FledgeZeroC};
  for (std::size_t q = 0; q < survival.size(); ++q)
    for (std::size_t v = 0; v < survival[q].size(); ++v)
      if ((*columns[q])[v] != Missing) survival[q][v].Add((*columns[q])[v]);
}

}  // namespace merlane
