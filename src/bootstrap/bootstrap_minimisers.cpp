#include "bootstrap/bootstrap_minimisers.h"

#include "control/fuses.h"

namespace merlane {

bool BootstrapMinimisers::Minimise(BootstrapResults::Minimiser minimiser) {
  BuildFuseGroups(state_);
  PackFree(state_);
  if (minimiser == BootstrapResults::Minimiser::Simplex) {
    state_.flags.SimplexBuilt = false;
    simplex_.Minimise();
    return true;
  }
  marquardt_.TakeNumericalDerivatives();
  return marquardt_.Minimise().ending != MarquardtEnding::MatrixFailed;
}

void BootstrapMinimisers::Close() {
  desk_.Unload(simplex_);
  desk_.Unload(marquardt_);
}

void MinimiseAhead(BootstrapResults::Minimiser minimiser, RunState& run, Objective& objective) {
  BuildFuseGroups(run);
  PackFree(run);
  if (minimiser == BootstrapResults::Minimiser::Simplex) {
    run.flags.SimplexBuilt = false;
    SimplexState polytope;
    SimplexWatch nobody;
    MinimiseSimplex(run, objective, polytope, nobody);
  } else {
    MarquardtWatch nobody;
    MinimiseMarquardt(run, objective, DerivativeMode::Numerical, nobody);
  }
}

}  // namespace merlane
