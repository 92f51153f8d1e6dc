#include "inference/competitor.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "base/text.h"
#include "control/fuses.h"

namespace merlane {

void EvaluateCompetitor(Competitor& model, RunState& state, Objective& objective) {
  BuildFuseGroups(state);
  PackFree(state);
  Array1<double>& Value = state.algorithm.Value;
  ApplyFuses(Value, state);
  model.objective = objective.Call(Value, 1);
  model.sampleSize = state.flags.SampleSize;
  double& constant = state.flags.ObjectiveConstant;
  if (!state.flags.BayesOn) return;
  const auto asNegLnL = Meanwhile(constant, constant == 0 ? 0.0 : 1.0);
  model.prior = objective.priorTerm(Value);
}

bool NameFiles(Competitor& model, const RunState& state) {
  const std::string& path = state.algorithm.AlgName;
  if (path.find_last_of("/\\") == std::string::npos) return false;
  model.RankAlgFile = FileName(path);
  model.folder = path.substr(0, path.size() - model.RankAlgFile.size());
  const std::string bare =
      model.RankAlgFile.substr(0, model.RankAlgFile.size() - std::min<std::size_t>(4, model.RankAlgFile.size()));
  model.RankCovFile = ReadableName(model, bare + ".cov", NoCovarianceFile);
  const std::string priorsFile(FileName(state.flags.PriorsKnownAs));
  model.RankPriFile = !state.flags.BayesOn ? "No Priors loaded" : priorsFile.empty() ? "Priors in no file" : priorsFile;
  return true;
}

void CountParameters(Competitor& model, const AlgorithmData& algorithm) {
  model.Value = algorithm.Value;
  model.Fuse = algorithm.Fuse;
  for (int i = 1; i <= algorithm.NPAR; ++i)
    if (algorithm.Step(i) != 0) model.counted.push_back(i);
  model.RankK = CheckedInt16(static_cast<std::int64_t>(model.counted.size()));
}

std::string ReadableName(const Competitor& model, const std::string& file, const char* marker) {
  // To open what is no file may fail only when it is read, or block.
  const std::filesystem::path path = std::filesystem::path(model.folder) / file;
  std::error_code unknown;  // such as a name too long, which cannot be opened either
  return std::filesystem::is_regular_file(path, unknown) && std::ifstream(path).good() ? file : marker;
}

}  // namespace merlane
