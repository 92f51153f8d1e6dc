#include "bootstrap/bootstrap_minimisers.h"

#include "control/fuses.h"

namespace merlane {

void BootstrapMinimisers::BeginAfresh(BootstrapResults::Minimiser minimiser) {
  simplex_.BeginAfresh();
  if (minimiser == BootstrapResults::Minimiser::Marquardt) marquardt_.TakeNumericalDerivatives();
}

bool BootstrapMinimisers::Minimise(BootstrapResults::Minimiser minimiser) {
  BuildFuseGroups(state_);
  PackFree(state_);
  BeginAfresh(minimiser);
  if (minimiser == BootstrapResults::Minimiser::Simplex) {
    simplex_.Minimise();
    return true;
  }
  return marquardt_.Minimise().ending != MarquardtEnding::MatrixFailed;
}

void BootstrapMinimisers::Close() {
  desk_.Unload(simplex_);
  desk_.Unload(marquardt_);
}

bool MinimiseAhead(BootstrapResults::Minimiser minimiser, RunState& run, Objective& objective) {
  BuildFuseGroups(run);
  PackFree(run);
  if (minimiser == BootstrapResults::Minimiser::Simplex) {
    SimplexState polytope;
    SimplexWatch nobody;
    MinimiseSimplex(run, objective, polytope, nobody);
    return true;
  }
  MarquardtWatch nobody;
  return MinimiseMarquardt(run, objective, DerivativeMode::Numerical, nobody).ending != MarquardtEnding::MatrixFailed;
}

}  // namespace merlane
