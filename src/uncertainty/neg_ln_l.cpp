#include "uncertainty/neg_ln_l.h"

#include "base/arithmetic.h"
#include "base/runtime_failure.h"
#include "control/fuses.h"

namespace merlane {

double NegLnL(Array1<double>& vector, RunState& state, Objective& objective, ConstantWatch& watch) {
  RunFlags& flags = state.flags;
  ApplyFuses(vector, state);
  const double F = objective.Call(vector, 1);
  if (flags.NOBS > 0) {
    flags.ObjectiveConstant = Divide(static_cast<double>(flags.NOBS) - state.free.NFREE - 1, 2 * F);
    if (!(flags.ObjectiveConstant > 0)) watch.OnBadConstant();
    if (flags.ObjectiveConstant == 0) throw RuntimeFailure("division by zero");  // which no other point can mend
  }
  const double prior = flags.BayesOn ? objective.priorTerm(vector) : 0;
  return Divide(F + prior, flags.ObjectiveConstant);
}

}  // namespace merlane
