#include "minimise/simplex_report.h"

#include <gtest/gtest.h>

#include "base/runtime_failure.h"
#include "minimise/parameter_rows.h"

namespace merlane::test {
namespace {

/// Five of eight parameters are free, 2 and 7 fused; best vertex 3, worst vertex 2.
class SimplexReport : public testing::Test {
 protected:
  SimplexReport() {
    AlgorithmData& a = state.algorithm;
    a.NPAR = 8;
    a.Fuse.Dimension(8, "~~");
    a.Fuse(2) = "A";
    a.Fuse(7) = "XY";
    a.Tolerance = 1e-4;
    a.TerminalFreq = 10;
    a.FileFreq = 10;
    state.free.NFREE = 5;
    state.free.FreeIndex = {2, 3, 5, 7, 8};
    simplex.ILow = 3;
    simplex.IHigh = 2;
    simplex.Simplex.Dimension(10, Array1<double>(8));
    simplex.Simplex(1) = {1, -2, 0.5, 1e10, 0, 0, 0, 0};
    simplex.Simplex(3) = {1.25, -2.5, 0.012345678, 1e-100, -1e-100, 0, 0, 0};
    simplex.SimplexF = {700, 701.5, 693.25, 694, 695, 696, 0, 0, 0, 0};
    now.NF = 45;
    now.Iterations = 20;
    now.Restarts = 1;
    now.ImprovedCount = 3;
    now.ActionAccepted = "Reflection            ";
  }
  RunState state;
  SimplexState simplex;
  SimplexProgress now;
};

TEST_F(SimplexReport, Initial) {
  EXPECT_EQ(SimplexInitialPane(state, simplex),
            "Initial Simplex: Starting function value> 7.0000000E+02 Max> 7.0150000E+02 Min> 6.9325000E+02\n"
            "\n"
            "Initial parameter values:\n"
            "\n"
            "    002)  1.0000000E+00   A  \n"
            "    003) -2.0000000E+00  ~~  \n"
            "    005)  5.0000000E-01  ~~  \n"
            "    007)  1.0000000E+10  XY  \n"
            "    008)  0.0000000E+00  ~~  \n");
  EXPECT_EQ(SimplexInitialLog(state, simplex),
            "\n"
            "\n"
            "Initial parameter values:\n"
            "\n"
            "    002)  1.0000000E+00    003) -2.0000000E+00    005)  5.0000000E-01    007)  1.0000000E+10\n"
            "    008)  0.0000000E+00\n"
            "\n"
            "\n"
            "Initial Simplex: Starting function value> 7.0000000E+02 Max> 7.0150000E+02 Min> 6.9325000E+02\n");
}

TEST_F(SimplexReport, Terminal) {
  EXPECT_EQ(SimplexTerminalPane(state, simplex, now),
            "\n"
            "Note: 20 iterations, 45 function calls, and 1 restarts\n"
            "\n"
            "Current: Min> 693.250000     Max> 701.500000     Abs TC> 8.2500E+00\n"
            "\n"
            "Current minimum found at these 5 adjusted parameter values:\n"
            "\n"
            "    002)  1.2500000E+00   A  \n"
            "    003) -2.5000000E+00  ~~  \n"
            "    005)  1.2345678E-02  ~~  \n"
            "    007) 1.0000000E-100  XY  \n"
            "    008) -1.0000000E-100  ~~  \n"
            "\n");
}

TEST_F(SimplexReport, TerminalAtEveryIterationTellsTheAction) {
  state.algorithm.TerminalFreq = 1;
  const std::string text = SimplexTerminalPane(state, simplex, now);
  EXPECT_EQ(text.substr(0, text.find("Current minimum")),
            "\n"
            "Note: 20 iterations, 45 function calls, and 1 restarts\n"
            "\n"
            "Current: Min> 693.250000     Max> 701.500000     Abs TC> 8.2500E+00\n"
            "\n"
            "Number of function values (parameter vectors) improved: 3; Action accepted: Reflection            \n"
            "\n");
}

TEST_F(SimplexReport, ARelativeToleranceShowsTheRelativeMeasure) {
  state.algorithm.Tolerance = -1e-4;
  simplex.SimplexF(3) = -16;
  simplex.SimplexF(2) = -14;
  EXPECT_NE(SimplexTerminalPane(state, simplex, now)
                .find("\nCurrent: Min> -16.000000     Max> -14.000000     Rel TC> 1.2500E-01\n\n"),
            std::string::npos);
}

TEST_F(SimplexReport, ARelativeMeasureOfABestValueOfZeroIsUndefined) {
  state.algorithm.Tolerance = -1e-4;
  simplex.SimplexF(3) = 0;
  const std::string line = "Current: Min> 0.000000     Max> 701.500000     Rel TC> undefined\n";
  EXPECT_NE(SimplexTerminalPane(state, simplex, now).find(line), std::string::npos);
  EXPECT_NE(SimplexFileLog(state, simplex, now).find(line), std::string::npos);
}

TEST_F(SimplexReport, FinalTellsInOneLineHowManyPointsCouldNotBeEvaluated) {
  const std::string pane = SimplexFinalPane(state, simplex, now), log = SimplexFinalLog(state, simplex, now);
  now.unevaluated = 12;
  const std::string line = "Note: The objective function could not be evaluated at 12 points, which counted as 1E+30\n";
  EXPECT_EQ(SimplexFinalPane(state, simplex, now), pane + line);
  EXPECT_EQ(SimplexFinalLog(state, simplex, now), log.substr(0, log.size() - 1) + line + "\n");
  now.unevaluated = 1;
  EXPECT_NE(SimplexFinalPane(state, simplex, now).find(" at 1 point, which counted "), std::string::npos);
}

TEST_F(SimplexReport, File) {
  EXPECT_EQ(SimplexFileLog(state, simplex, now),
            "\n"
            "Note: 20 iterations, 45 function calls, and 1 restarts\n"
            "\n"
            "Current minimum found at these 5 adjusted parameter values: \n"
            "\n"
            "    002)  1.2500000E+00    003) -2.5000000E+00    005)  1.2345678E-02    007) 1.0000000E-100\n"
            "    008) -1.0000000E-100\n"
            "\n"
            "\n"
            "Current: Min> 693.250000     Max> 701.500000     Abs TC> 8.2500E+00\n"
            "\n");
}

TEST_F(SimplexReport, FileAtEveryIterationTellsTheAction) {
  state.algorithm.FileFreq = 1;
  const std::string text = SimplexFileLog(state, simplex, now);
  EXPECT_EQ(text.substr(0, text.find("Current minimum")),
            "\n"
            "Note: 20 iterations, 45 function calls, and 1 restarts\n"
            "Number of function values (parameter vectors) improved: 3; Action accepted: Reflection            \n"
            "\n");
}

TEST_F(SimplexReport, Final) {
  EXPECT_EQ(SimplexFinalPane(state, simplex, now),
            "Minimum of 693.250000 found at these 5 adjusted parameter values:\n"
            "\n"
            "    002)  1.2500000E+00   A  \n"
            "    003) -2.5000000E+00  ~~  \n"
            "    005)  1.2345678E-02  ~~  \n"
            "    007) 1.0000000E-100  XY  \n"
            "    008) -1.0000000E-100  ~~  \n"
            "\n"
            "This result required 20 iterations, 45 function calls, and 1 restarts\n");
  EXPECT_EQ(SimplexFinalLog(state, simplex, now),
            "\n"
            "\n"
            "Minimum of 693.250000 found at these 5 adjusted parameter values:\n"
            "\n"
            "    002)  1.2500000E+00    003) -2.5000000E+00    005)  1.2345678E-02    007) 1.0000000E-100\n"
            "    008) -1.0000000E-100\n"
            "\n"
            "\n"
            "This result required 20 iterations, 45 function calls, and 1 restarts\n"
            "\n");
}

TEST_F(SimplexReport, RowsOfTheLogHoldFourAndNoEmptyRestFollows) {
  state.free.NFREE = 4;
  EXPECT_EQ(LogRows(state, simplex.Simplex(1)),
            "    002)  1.0000000E+00    003) -2.0000000E+00    005)  5.0000000E-01    007)  1.0000000E+10\n");
  state.free.NFREE = 1;
  EXPECT_EQ(LogRows(state, simplex.Simplex(1)), "    002)  1.0000000E+00\n");
}

}  // namespace
}  // namespace merlane::test
