#include "control/fuses.h"
#include "program/program.h"

namespace merlane {

bool Program::BootstrapSimplex() {
  state.flags.SimplexBuilt = false;
  BuildFuseGroups(state);
  PackFree(state);
  frmSimplex.Minimise();
  return true;
}

bool Program::BootstrapMarquardt() {
  BuildFuseGroups(state);
  PackFree(state);
  frmMarquardt.TakeNumericalDerivatives();
  return frmMarquardt.Minimise().ending != MarquardtEnding::MatrixFailed;
}

void Program::MinimiseAhead(BootstrapResults::Minimiser minimiser, RunState& run, Objective& objective) {
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
