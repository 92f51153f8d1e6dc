#include "support/golden_covariances.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "platform/files.h"

namespace merlane::test {
namespace {

using nlohmann::json;

template <class T>
Array1<T> ArrayOf(const json& list) {
  Array1<T> array(static_cast<int>(list.size()));
  for (int i = 1; i <= array.Size(); ++i) array(i) = list[static_cast<std::size_t>(i) - 1].get<T>();
  return array;
}

CovarianceGrid GridOf(const json& kept) {
  CovarianceGrid grid;
  grid.GridFactor = kept["factor"];
  grid.GridMean = kept["mean"];
  grid.GridSD = kept["sd"];
  grid.failedAt = kept["failed_at"];
  grid.ending = grid.failedAt > 0 ? GridEnding::NotPositiveDefinite : GridEnding::Calculated;
  grid.standardErrors = ArrayOf<double>(kept["se"]);
  const int n = grid.standardErrors.Size();
  grid.covariances.Dimension(n, n);
  for (int a = 1; a <= n; ++a)
    for (int b = 1; b <= n; ++b)
      grid.covariances(a, b) = kept["covariance"][static_cast<std::size_t>(a) - 1][static_cast<std::size_t>(b) - 1];
  grid.determinant = kept["determinant"];
  grid.productOfVariances = kept["product_of_variances"];
  return grid;
}

/// Takes fuses and names from the rows of a kept report.
void ReadNames(GoldenCovariances& kept) {
  const std::vector<std::string> lines = Lines(kept.report);
  Covariances& c = kept.covariances;
  const int NPAR = c.CovBaseValue.Size();
  c.CovFuse.Dimension(NPAR);
  c.CovName.Dimension(NPAR);
  for (int i = 1; i <= NPAR; ++i) {
    const std::string& line = lines[static_cast<std::size_t>(i) + 3];
    c.CovFuse(i) = std::string(Trim(Columns(line, 38, 40)));
    c.CovName(i) = line.substr(42);
  }
}

GoldenCovariances Kept(const json& fit) {
  const json& kept = fit["covariance"];
  GoldenCovariances golden;
  golden.name = fit["case"];
  Covariances& c = golden.covariances;
  c.CovBaseValue = ArrayOf<double>(kept["base_value"]);
  c.CovStep = ArrayOf<double>(kept["step"]);
  c.CovIndex = ArrayOf<std::int16_t>(kept["parameters"]);
  c.CovCount = static_cast<std::int16_t>(c.CovIndex.Size());
  c.CovF0 = kept["F0"];
  c.CovConstantInverse = kept["constant_inverse"];
  c.OptimisticSE = kept["optimistic"] != 0;
  for (int g = 1; g <= 3; ++g) c.grid(g) = GridOf(kept["grids"][static_cast<std::size_t>(g) - 1]);
  golden.pane = WithCrLf(kept["pane_while_running"].get<std::string>());
  const std::string path = std::string(MERLANE_GOLDEN_DIR "/") + golden.name + ".cov";
  if (!c.OptimisticSE && std::filesystem::exists(path)) {
    golden.report = ReadWholeFile(path);
    ReadNames(golden);
  }
  return golden;
}

}  // namespace

std::vector<GoldenCovariances> KeptCovariances() {
  std::vector<GoldenCovariances> all;
  const json file = json::parse(ReadWholeFile(MERLANE_GOLDEN_DIR "/fits.json"));
  for (const json& fit : file["fits"])
    if (fit.contains("covariance")) all.push_back(Kept(fit));
  return all;
}

std::vector<GoldenCovariances> KeptReports() {
  std::vector<GoldenCovariances> all = KeptCovariances();
  std::erase_if(all, [](const GoldenCovariances& kept) { return kept.report.empty(); });
  return all;
}

}  // namespace merlane::test
