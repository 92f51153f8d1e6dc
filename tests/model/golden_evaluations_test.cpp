#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "minimise/marquardt.h"
#include "model/survival_run.h"
#include "platform/files.h"
#include "uncertainty/posterior.h"
#include "uncertainty/profile.h"

namespace merlane {
namespace {

using nlohmann::json;

/// The fits that hold a profile or a posterior, of the survival model behind a simplex.
const std::vector<json>& KeptFits() {
  static const std::vector<json> fits = [] {
    std::vector<json> found;
    const json all = json::parse(ReadWholeFile(MERLANE_GOLDEN_DIR "/fits.json"));
    for (const json& fit : all["fits"])
      if (fit.contains("profile") || fit.contains("posterior")) found.push_back(fit);
    return found;
  }();
  return fits;
}

const json& Kept(const std::string& what) {
  for (const json& fit : KeptFits())
    if (fit["what"] == what) return fit;
  throw std::runtime_error("no such fit: " + what);
}

const test::GoldenCase& CaseOf(const json& fit) { return test::GoldenCaseNamed(fit["case"]); }

/// The survival model at the minimum that a simplex found, with the steps of the evaluation.
struct Fitted {
  explicit Fitted(const json& fit) : run(CaseOf(fit)) {
    run.OneFunctionCall();
    run.Minimise();
    for (int i = 1; i <= run.state.algorithm.NPAR; ++i)
      run.state.algorithm.Step(i) = fit["steps"][static_cast<std::size_t>(i) - 1];
    run.Pack();
  }
  test::SurvivalRun run;
};

void ExpectSeries(const ConfidenceSeries& series, const EvaluatedPoints& points, const json& kept) {
  ASSERT_EQ(points.Count(), kept["points"].get<int>());
  EXPECT_EQ(points.IMin, kept["IMin"].get<int>());
  EXPECT_EQ(points.H, kept["H"].get<double>());
  EXPECT_EQ(series.IMean, kept["IMean"].get<int>());
  EXPECT_EQ(series.ModeValue, kept["mode"].get<double>());
  EXPECT_EQ(series.ExpectedValue, kept["expected"]) << "expected value";
  EXPECT_EQ(series.EstimatedDiff, kept["difference"]) << "difference";
  EXPECT_EQ(series.EstimatedSE, kept["se"]) << "standard error";
  for (int i = 1; i <= points.Count(); ++i) {
    const json& row = kept["table"][static_cast<std::size_t>(i) - 1];
    const std::string at = " of point " + std::to_string(i);
    EXPECT_EQ(series.ProfileX(i), row["x"].get<double>()) << at;
    EXPECT_EQ(series.ProfileF(i), row["neg_lnl"].get<double>()) << at;
    EXPECT_EQ(series.ProfilePDF(i), row["pdf"].get<double>()) << "density" << at;
    EXPECT_EQ(series.ProfileNormal(i), row["normal"].get<double>()) << "normal density" << at;
    EXPECT_EQ(series.ProfileCum(i), row["cumulative"].get<double>()) << at;
    EXPECT_EQ(series.ProfileCIMode(i), row["ci_mode"].get<double>()) << at;
    EXPECT_EQ(series.ProfileCIMean(i), row["ci_mean"].get<double>()) << at;
  }
}

/// A kept profile once more: each point minimised by `minimise`, which gives what the point ended with. All points, the
/// calls of all minimisations and the values that are left agree; then `also` compares what only this minimiser tells.
template <class Result>
void ExpectProfile(const char* name, const std::function<Result(test::SurvivalRun&)>& minimise,
                   const std::function<void(const Result&, const json& point)>& also) {
  const json& fit = Kept(name);
  const json& kept = fit["profile"];
  Fitted f(fit);
  RunState& state = f.run.state;
  state.profile.ProfileOn = true;
  std::vector<Result> results;
  ProfileWatch profileWatch;
  EvaluatedPoints points;
  {
    const PinnedParameter pinned(state, kept["parameter"]);
    points = EvaluateProfile(
        pinned, kept["points"], state, f.run.objective,
        [&] {
          results.push_back(minimise(f.run));
          return true;
        },
        profileWatch);
  }
  ExpectSeries(MakeConfidenceSeries(points), points, kept);
  ASSERT_EQ(results.size(), kept["trace"].size());
  for (std::size_t i = 0; i < results.size(); ++i) {
    SCOPED_TRACE("point " + std::to_string(i + 1));
    const json& point = kept["trace"][i];
    EXPECT_EQ(results[i].calls, point["calls"].get<int>());
    EXPECT_EQ(results[i].NF, point["NF"].get<int>());
    EXPECT_EQ(results[i].Iterations, point["iterations"].get<int>());
    also(results[i], point);
  }
  for (int i = 1; i <= state.algorithm.NPAR; ++i)
    EXPECT_EQ(state.algorithm.Value(i), fit["final_value"][static_cast<std::size_t>(i) - 1]) << "value";
}

TEST(GoldenProfile, BySimplexAgreesCallByCall) {
  SimplexState simplex;
  SimplexWatch watch;
  ExpectProfile<SimplexResult>(
      "simplex, then a profile of 17 by simplex",
      [&](test::SurvivalRun& run) {
        simplex.Forget();
        return MinimiseSimplex(run.state, run.objective, simplex, watch);
      },
      [](const SimplexResult& result, const json& point) {
        EXPECT_EQ(result.Restarts, point["restarts"].get<int>());
        EXPECT_EQ(result.F, point["minimum"]);
      });
}

TEST(GoldenProfile, ByMarquardtAgreesCallByCall) {
  MarquardtWatch watch;
  ExpectProfile<MarquardtResult>(
      "simplex, then a profile of 17 by Marquardt",
      [&](test::SurvivalRun& run) {
        return MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, watch);
      },
      [](const MarquardtResult&, const json&) {});
}

TEST(GoldenPosterior, AgreesNodeByNode) {
  const json& fit = Kept("simplex, then a posterior of 17");
  const json& kept = fit["posterior"];
  Fitted f(fit);
  RunState& state = f.run.state;
  state.profile.IntegrationOn = true;
  double ReferenceF = 0;
  PosteriorWatch watch;
  Posterior posterior;
  {
    const PinnedParameter pinned(state, kept["parameter"]);
    posterior =
        EvaluatePosterior(pinned, {kept["points"], kept["grid_points"]}, state, f.run.objective, ReferenceF, watch);
  }
  EXPECT_EQ(posterior.NodeCounter, kept["nodes"].get<double>());
  EXPECT_EQ(ReferenceF, kept["reference"]) << "reference";
  ExpectSeries(MakeConfidenceSeries(posterior.points), posterior.points, kept);

  ASSERT_TRUE(posterior.bivariate);
  const BivariateDensity& density = *posterior.bivariate;
  const json& joint = kept["bivariate"];
  EXPECT_EQ(std::vector<double>(density.X.begin(), density.X.end()), joint["X"].get<std::vector<double>>());
  EXPECT_EQ(std::vector<double>(density.Y.begin(), density.Y.end()), joint["Y"].get<std::vector<double>>());
  for (int j = 1; j <= density.Y.Size(); ++j)
    for (int i = 1; i <= density.X.Size(); ++i)
      EXPECT_EQ(density.f(j, i), joint["density"][static_cast<std::size_t>(j) - 1][static_cast<std::size_t>(i) - 1])
          << "density " << j << ", " << i;
  EXPECT_EQ(density.fmax, joint["peak"]) << "peak";
  EXPECT_EQ(density.peakX, joint["peak_x"].get<double>());
  EXPECT_EQ(density.peakY, joint["peak_y"].get<double>());
  EXPECT_EQ(density.firstParameter, 17);
  EXPECT_EQ(density.secondParameter, 18);
  for (int i = 1; i <= state.algorithm.NPAR; ++i)
    EXPECT_EQ(state.algorithm.Value(i), fit["final_value"][static_cast<std::size_t>(i) - 1]) << "value";
}

}  // namespace
}  // namespace merlane
