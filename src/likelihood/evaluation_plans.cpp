#include "likelihood/evaluation_plans.h"

namespace merlane {

std::shared_ptr<const ObjectivePlan> EvaluationPlans::For(const BroodData& data,
                                                          const ObjectivePlan::Subject& subject) {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<const ObjectivePlan>& kept = subject.broodsShareMortalities ? shared_ : own_;
  if (!kept || kept->subject != subject)
    kept = std::make_shared<const ObjectivePlan>(data, visits, distributions, subject);
  return kept;
}

}  // namespace merlane
