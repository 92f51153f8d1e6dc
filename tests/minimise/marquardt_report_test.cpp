#include "minimise/marquardt_report.h"

#include <gtest/gtest.h>

#include "base/runtime_failure.h"

namespace merlane::test {
namespace {

/// Two of three parameters are free.
class MarquardtReport : public testing::Test {
 protected:
  MarquardtReport() {
    AlgorithmData& a = state.algorithm;
    a.NPAR = 3;
    a.Fuse.Dimension(3, "~~");
    a.Fuse(3) = "B";
    a.Tolerance = 1e-4;
    state.free.NFREE = 2;
    state.free.FreeIndex = {1, 3, 0};
    state.free.FreeValue = {0.05, -1.5, 0};
    now.Iterations = 5;
    now.NF = 36;
    now.FTrial = 694.846570510559;
    now.FBest = 694.8468628734772;
    now.GradientShown = {-0.22833675, 1e-7};
    now.HessianShown.Dimension(2, 2);
    now.HessianShown(1, 1) = 1234567;
    now.HessianShown(1, 2) = -98.5;
    now.HessianShown(2, 1) = 99;  // only the upper triangle is shown
    now.HessianShown(2, 2) = 0;
  }
  RunState state;
  MarquardtProgress now;
};

TEST_F(MarquardtReport, Terminal) {
  EXPECT_EQ(MarquardtTerminalPane(state, now),
            "\n"
            "Note: 5 iterations and 36 function calls\n"
            "\n"
            "Current Min> 694.846571     Last Min> 694.846863     Abs TC> 2.9236E-04\n"
            "\n"
            "Current minimum found at these 2 adjusted parameter values: \n"
            "\n"
            "    001)  5.0000000E-02  ~~  \n"
            "    003) -1.5000000E+00   B  \n"
            "\n");
}

TEST_F(MarquardtReport, File) {
  EXPECT_EQ(MarquardtFileLog(state, now),
            "Note: 5 iterations and 36 function calls\n"
            "\n"
            "Current minimum found at these 2 adjusted parameter values: \n"
            "\n"
            "    001)  5.0000000E-02    003) -1.5000000E+00\n"
            "\n"
            "\n"
            "Current Min> 694.846571     Last Min> 694.846863     Abs TC> 2.9236E-04\n"
            "\n");
}

TEST_F(MarquardtReport, TheMeasureIsRelativeForANegativeTolerance) {
  state.algorithm.Tolerance = -1e-4;
  now.FBest = 8;
  now.FTrial = 7;
  EXPECT_NE(MarquardtTerminalPane(state, now)
                .find("\nCurrent Min> 7.000000     Last Min> 8.000000     Rel TC> 1.2500E-01\n\n"),
            std::string::npos);
  now.FBest = 0;
  EXPECT_NE(MarquardtTerminalPane(state, now).find("Last Min> 0.000000     Rel TC> undefined\n"), std::string::npos);
  state.algorithm.Tolerance = 1e-4;
  EXPECT_NE(MarquardtTerminalPane(state, now).find("Last Min> 0.000000     Abs TC> 7.0000E+00\n"), std::string::npos);
}

TEST_F(MarquardtReport, FinalTellsInOneLineHowManyPointsCouldNotBeEvaluated) {
  const std::string pane = MarquardtFinalPane(state, now), log = MarquardtFinalLog(state, now);
  now.unevaluated = 3;
  const std::string line = "Note: The objective function could not be evaluated at 3 points, which counted as 1E+30\n";
  EXPECT_EQ(MarquardtFinalPane(state, now), pane + line);
  EXPECT_EQ(MarquardtFinalLog(state, now), log.substr(0, log.size() - 1) + line + "\n");
}

TEST_F(MarquardtReport, Final) {
  EXPECT_EQ(MarquardtFinalPane(state, now),
            "Minimum of 694.846863 found at these 2 adjusted parameter values:\n"
            "\n"
            "    001)  5.0000000E-02  ~~  \n"
            "    003) -1.5000000E+00   B  \n"
            "\n"
            "This result required 5 iterations and 36 function calls\n");
  EXPECT_EQ(MarquardtFinalLog(state, now),
            "\n"
            "\n"
            "Minimum of 694.846863 found at these 2 adjusted parameter values:\n"
            "\n"
            "    001)  5.0000000E-02    003) -1.5000000E+00\n"
            "\n"
            "\n"
            "after 5 iterations and 36 function calls\n"
            "\n");
}

TEST_F(MarquardtReport, Derivatives) {
  EXPECT_EQ(DerivativeList(state, now, DerivativeMode::Numerical),
            "\n"
            "1st & 2nd partial derivatives of the objective function wrt to the previous parameter estimates:\n"
            "\n"
            "Numerical 1st derivative wrt Parameter      001) -2.28337E-01\n"
            "Numerical 2nd derivative wrt Parameters 001,001)  1.23457E+06\n"
            "Numerical 2nd derivative wrt Parameters 001,003) -9.85000E+01\n"
            "Numerical 1st derivative wrt Parameter      003)  1.00000E-07\n"
            "Numerical 2nd derivative wrt Parameters 003,003)  0.00000E+00\n");
  const std::string analytical = DerivativeList(state, now, DerivativeMode::Analytical);
  EXPECT_NE(analytical.find("\nAnalytical 1st derivative wrt Parameter      001) "), std::string::npos);
  EXPECT_NE(analytical.find("\nAnalytical 2nd derivative wrt Parameters 001,003) "), std::string::npos);
}

}  // namespace
}  // namespace merlane::test
