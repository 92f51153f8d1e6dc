#include "likelihood/sums_ahead.h"

#include <algorithm>

#include "base/runtime_failure.h"
#include "survival/catalogue.h"
#include "survival/same_bits.h"

namespace merlane {

ObjectivePlan::Subject SubjectOf(const Parameters& p, const SurvivalPass& survivalPass) {
  return {p.LayAge, p.FledgeAge, survivalPass.BroodsShareMortalities(p)};
}

void SumsAhead::Compute(std::span<const Array1<double>> vectors, const Array1<double>& Step, const Mode& mode,
                        const Passes& passes) {
  mode_ = mode;
  next_ = 0;
  for (Known& known : known_) known.computed = false;  // in another mode, as they stay where memory gives out
  known_.resize(vectors.size());
  parameters_.resize(passes.size());
  workers_.Share(static_cast<int>(vectors.size()), [&](int item, int worker) {
    const auto i = static_cast<std::size_t>(item), w = static_cast<std::size_t>(worker);
    known_[i] = {.Value = vectors[i], .sum = {}, .computed = false};
    Compute(known_[i], parameters_[w], Step, *passes[w]);
  });
}

void SumsAhead::Compute(Known& known, Parameters& parameters, const Array1<double>& Step, ObjectivePass& pass) const {
  try {
    double Penalty = 0;
    DecodeParameters(known.Value, Step, ParameterLayout(data_), parameters, Penalty);
    if (SubjectOf(parameters, survivalPass_) != pass.Plan().subject) return;
    known.sum = pass.Sum(parameters, mode_.BootstrapMode, mode_.testSums);
    known.computed = true;
  } catch (const RuntimeFailure&) {
    // Whoever evaluates it meets the same.
  }
}

const std::optional<double>* SumsAhead::Find(const Array1<double>& Value, const Mode& mode) {
  if (mode != mode_) return nullptr;
  for (std::size_t tried = 0; tried < known_.size(); ++tried) {
    const std::size_t i = (next_ + tried) % known_.size();
    const Known& known = known_[i];
    if (!known.computed || !std::equal(Value.begin(), Value.end(), known.Value.begin(), known.Value.end(), SameBits))
      continue;
    next_ = i + 1;
    return &known.sum;
  }
  return nullptr;
}

}  // namespace merlane
