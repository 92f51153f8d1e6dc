#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/array1.h"

namespace merlane {

/// The parameter vector of a model and what the minimisers need beside it: kept between runs in a .alg file.
struct AlgorithmData {
  std::int16_t NPAR = 0;
  Array1<double> Value;         // 1..NPAR
  Array1<double> Step;          // 0 freezes a parameter at its value
  Array1<std::string> Fuse;     // one or two capitals; "~~" unfused
  Array1<std::string> ParName;  // descriptions, written by the model
  // Positive: absolute test of convergence; negative: relative. 0 until data are loaded: a load that fails ends by it.
  double Tolerance = 0;
  std::int32_t MaxCalls = 9999;  // function calls of the simplex, iterations of the Marquardt method
  std::int16_t TerminalFreq = 10;
  std::int16_t FileFreq = 0;
  std::string LogName = "minimize.tvl";
  double StepReduction = 0.1;
  std::string AlgName;       // path of the .alg file; empty: no algorithm data in the run
  std::string AlgShortName;  // its file name without folder and last four characters
};

/// The fused groups of the parameters, by first appearance.
struct FuseGroups {
  std::int16_t FuseCount = 0;
  Array1<std::string> FuseName;
  Array1<std::int16_t> FuseMembers;
  Array1<double> FuseValue;  // value of the group's first member
  Array1<int> Leader;        // while fuses are applied: the member each group follows, 0 when none has been met
};

/// The parameters that a minimiser moves, packed.
struct FreeParameters {
  std::int32_t NFREE = 0;
  Array1<double> FreeValue;
  Array1<double> FreeStep;
  Array1<std::int16_t> FreeIndex;  // parameter number of each free parameter
};

/// What a likelihood profile or posterior integration has under evaluation.
struct ProfileStatus {
  /// A parameter that is held at values other than its own, without a step; a profile minimises over the others.
  struct Pinned {
    std::int16_t parameter;
    double value, step;          // its own, which it gets back
    Array1<double> Value, Step;  // of all parameters, as the user had them
  };
  bool ProfileOn = false;
  bool IntegrationOn = false;
  std::int16_t ProfileParameter = 0;  // 0 when none
  std::int16_t ProfileState = 0;      // 1 when a profile or integration has left its results
  std::optional<Pinned> pinned;       // while a profile or integration runs or shows its plots
};

/// Where the run stands; lives as long as the program.
struct RunFlags {
  bool ModelInitialised = false;   // an initialisation has ended, though the data may have failed to be read
  std::string PriorFileName;       // path that the dialogues of the priors propose; empty: none yet
  std::string PriorsKnownAs;       // path under which the priors in the run are known; empty: they are new, in no file
  bool BayesOn = false;            // priors contribute to the objective
  bool OneCallRun = false;         // only during the run of "1 Function call"
  bool SimulationMode = false;     // data are simulated, not read
  bool BootstrapMode = false;      // the model reads no form and shows no messages of the reading
  bool ReadSimulatedFile = false;  // while the data set is read that a bootstrap has just simulated
  bool InterruptBayes = false;     // asked for by the user; polled by a posterior integration
  bool InterruptML = false;        // the same, polled by a likelihood profile
  bool AbortRun = false;           // the same, polled by simulations, randomisations and bootstraps
  std::int32_t NOBS = 0;           // data points of a sum-of-squares objective; 0: the objective is a likelihood
  std::int32_t SampleSize = 0;     // of the information criteria; written by the model
  double ObjectiveConstant = 0;    // 1 / c, where c times the objective is -ln[L]; 0 until a command sets it
  double ObjectiveHint = 0;        // the constant c that the model proposes; 0: none
};

/// The run state of the framework: what every command reads and writes.
struct RunState {
  AlgorithmData algorithm;
  FuseGroups fuses;
  FreeParameters free;
  ProfileStatus profile;
  RunFlags flags;
  // What results were computed from (`Basis`): each reading of data and each minimisation has a number of its own, also
  // one whose run state is put back later.
  std::int64_t reading = 0;
  std::int64_t search = 0;
  Array1<double> Gradient{1};  // derivatives that a model with analytical derivatives would return
  Matrix1<double> Hessian{1, 1};
};

}  // namespace merlane
