#include "likelihood/column_loops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "likelihood/streams.h"
#include "survival/same_bits.h"
#include "survival/survival.h"

namespace merlane {
namespace {

using Column = std::vector<double>;

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double Greatest = std::numeric_limits<double>::max();

/// Columns of any length, with numbers such as an evaluation meets, and such as it should not.
class ColumnLoopWay : public testing::TestWithParam<ColumnLoops> {
 protected:
  void SetUp() override {
    if (!GetParam().available()) GTEST_SKIP() << "not on this processor";
  }

  std::size_t Below(std::size_t n) { return static_cast<std::size_t>(Uniform() * static_cast<double>(n)); }
  double Uniform() { return streams_.random.Uniform(); }
  Column Any(std::size_t n) {
    constexpr double odd[] = {0.0, -0.0, 1.0, 1e-9, 1e-200, -3.0, 1e100, 2e100, Greatest, Infinite, -Infinite, NAN};
    Column column(n);
    for (double& x : column) x = Uniform() < 0.2 ? odd[Below(std::size(odd))] : Uniform();
    return column;
  }
  std::vector<int> Indexes(std::size_t n, std::size_t of) {
    std::vector<int> indexes(n);
    for (int& index : indexes) index = static_cast<int>(Below(of));
    return indexes;
  }
  std::vector<std::int16_t> Counts(std::size_t n) {
    std::vector<std::int16_t> counts(n);
    for (std::int16_t& count : counts) count = static_cast<std::int16_t>(Below(20));
    return counts;
  }

  /// Calls `test` with numbers of entries, of which some fill registers and others leave a rest.
  template <class Test>
  void ForLengths(const Test& test) {
    for (std::size_t n = 0; n < 70; ++n)
      for (int again = 0; again < 20; ++again) test(n);
  }

 private:
  test::Streams streams_{4711};
};

void ExpectSame(const Column& column, const Column& expected, const char* what) {
  ASSERT_EQ(column.size(), expected.size());
  for (std::size_t i = 0; i < column.size(); ++i) {
    const bool same = SameBits(column[i], expected[i]) || (std::isnan(column[i]) && std::isnan(expected[i]));
    ASSERT_TRUE(same) << what << " " << i << " of " << column.size() << ": " << column[i] << ", not " << expected[i];
  }
}

constexpr std::size_t Others = 30;  // what indexes point to

TEST_P(ColumnLoopWay, SharesAliveHaveTheBitsOfOneAlone) {
  ForLengths([&](std::size_t n) {
    std::vector<SurvivalRate> rates(Others);
    for (SurvivalRate& rate : rates) {
      const Column any = Any(4);
      rate = {any[0], 1, any[1], any[2], any[3]};
    }
    const std::vector<int> mortality = Indexes(n, Others);
    const Column power = Any(n), surviving = Any(n), attenuation = Any(n);
    Column column(n), expected(n);
    const auto expect = [&](const char* what, const auto& alone) {
      for (std::size_t i = 0; i < n; ++i) expected[i] = alone(rates[static_cast<std::size_t>(mortality[i])], i);
      ExpectSame(column, expected, what);
    };
    GetParam().products(-0.3, power.data(), column.data(), n);
    expect("product", [&](const SurvivalRate&, std::size_t i) { return -0.3 * power[i]; });
    GetParam().randomExponents(rates.data(), mortality.data(), power.data(), column.data(), n);
    expect("random exponent", [&](const SurvivalRate& rate, std::size_t i) { return -rate.Alpha * power[i]; });
    GetParam().correlatedExponents(rates.data(), mortality.data(), power.data(), column.data(), n);
    expect("correlated exponent",
           [&](const SurvivalRate& rate, std::size_t i) { return -(rate.f + rate.Alpha) * power[i]; });
    GetParam().randomShares(rates.data(), mortality.data(), surviving.data(), attenuation.data(), column.data(), n);
    expect("random share", [&](const SurvivalRate& rate, std::size_t i) {
      return surviving[i] * (1 - rate.share * attenuation[i]) / rate.normaliser;
    });
    GetParam().correlatedShares(rates.data(), mortality.data(), surviving.data(), column.data(), n);
    expect("correlated share",
           [&](const SurvivalRate& rate, std::size_t i) { return rate.share * surviving[i] / rate.normaliser; });
  });
}

TEST_P(ColumnLoopWay, ConstantsOfMortalitiesHaveTheBitsOfOneAlone) {
  ForLengths([&](std::size_t n) {
    Column AlphaR(n), AlphaC(n);
    for (Column* const column : {&AlphaR, &AlphaC})
      for (double& Alpha : *column) Alpha = Uniform() < 0.2 ? 0 : 10 * Uniform();
    const double c = Uniform() < 0.2 ? 0 : Uniform(), f = Uniform() < 0.2 ? 0 : Uniform();
    Column normaliser(n), shareR(n), shareC(n), expected[3] = {Column(n), Column(n), Column(n)};
    GetParam().constants(c, f, AlphaR.data(), AlphaC.data(), normaliser.data(), shareR.data(), shareC.data(), n);
    for (std::size_t i = 0; i < n; ++i) {
      const SurvivalFunctions functions({AlphaR[i], 1, AlphaC[i], 1, c, f});
      expected[0][i] = functions.OfTheMortality().normaliser;
      expected[1][i] = functions.OfTheMortality().shareR;
      expected[2][i] = functions.OfTheMortality().shareC;
    }
    ExpectSame(normaliser, expected[0], "normaliser");
    ExpectSame(shareR, expected[1], "shareR");
    ExpectSame(shareC, expected[2], "shareC");
  });
}

TEST_P(ColumnLoopWay, SpansAndSurvivorsHaveTheBitsOfOneAlone) {
  ForLengths([&](std::size_t n) {
    const Column SR = Any(Others), SC = Any(Others), N = Any(n);
    const std::vector<int> from = Indexes(n, Others), to = Indexes(n, Others);
    Column R(n), C(n), all(n), PCorr(n), out(n);
    GetParam().spans(from.data(), to.data(), SR.data(), SC.data(), R.data(), C.data(), all.data(), PCorr.data(), n);
    GetParam().survivors(from.data(), SR.data(), N.data(), out.data(), n);
    Column alone(n);
    GetParam().sharesAlive(from.data(), to.data(), SR.data(), alone.data(), n);
    Column expectedR(n), expectedC(n), expectedAll(n), expectedPCorr(n), expectedOut(n);
    for (std::size_t i = 0; i < n; ++i) {
      const double R1 = SR[static_cast<std::size_t>(from[i])], R2 = SR[static_cast<std::size_t>(to[i])];
      const double C1 = SC[static_cast<std::size_t>(from[i])], C2 = SC[static_cast<std::size_t>(to[i])];
      expectedR[i] = R1 > 0 ? R2 / R1 : 0;
      expectedC[i] = C1 > 0 ? C2 / C1 : 0;
      expectedAll[i] = R1 + C1 > 0 ? (R2 + C2) / (R1 + C1) : 0;
      expectedPCorr[i] = C1 / (R1 + C1);
      expectedOut[i] = R1 * N[i];
    }
    ExpectSame(R, expectedR, "aliveR");
    ExpectSame(alone, expectedR, "alive under one kind");
    ExpectSame(C, expectedC, "aliveC");
    ExpectSame(all, expectedAll, "aliveAll");
    ExpectSame(PCorr, expectedPCorr, "PCorr");
    ExpectSame(out, expectedOut, "survivors");
  });
}

TEST_P(ColumnLoopWay, ProbabilitiesHaveTheBitsOfOneAlone) {
  ForLengths([&](std::size_t n) {
    const std::vector<int> index = Indexes(n, Others);
    const Column Out = Any(Others), N = Any(Others), x = Any(n), y = Any(n);
    const std::vector<std::int16_t> k = Counts(n), others = Counts(n);
    Column p(n), q(n), exponent(n), P(n);
    GetParam().binomialShares(index.data(), Out.data(), N.data(), p.data(), q.data(), n);
    GetParam().binomialExponents(x.data(), k.data(), others.data(), index.data(), Out.data(), N.data(), exponent.data(),
                                 n);
    GetParam().mixtures(x.data(), y.data(), index.data(), Out.data(), P.data(), n);
    Column expectedP(n), expectedQ(n), expectedExponent(n), expectedMixture(n);
    for (std::size_t i = 0; i < n; ++i) {
      const double a = Out[static_cast<std::size_t>(index[i])], b = N[static_cast<std::size_t>(index[i])];
      const double share = a / b;
      expectedP[i] = share < 1e-6 ? 1e-6 : share > 0.999999 ? 0.999999 : share;
      expectedQ[i] = 1 - expectedP[i];
      expectedExponent[i] = x[i] + k[i] * a + others[i] * b;
      expectedMixture[i] = (1 - a) * x[i] + a * y[i];
    }
    ExpectSame(p, expectedP, "p");
    ExpectSame(q, expectedQ, "1 - p");
    ExpectSame(exponent, expectedExponent, "exponent");
    ExpectSame(P, expectedMixture, "mixture");
  });
}

TEST_P(ColumnLoopWay, DeviancesAreThoseOfPossibleCounts) {
  ForLengths([&](std::size_t n) {
    Column P(n, 0.5);
    const Column logP = Any(n);
    Column deviance(n), expected(n);
    if (n > 0) P[Below(n)] = 0;
    const auto filled = [&] { return GetParam().deviances(P.data(), logP.data(), deviance.data(), n); };
    EXPECT_TRUE(filled());
    for (std::size_t i = 0; i < n; ++i) expected[i] = P[i] > 0 ? -2 * logP[i] : 0;
    ExpectSame(deviance, expected, "deviance");
    for (const double impossible : {-1e-300, Infinite, static_cast<double>(NAN)}) {
      if (n == 0) continue;
      const std::size_t i = Below(n);
      P[i] = impossible;
      EXPECT_FALSE(filled()) << impossible << " at " << i << " of " << n;
      P[i] = Greatest;
    }
  });
}

TEST_P(ColumnLoopWay, FindsTheOneEntryThatIsOutOfTheOrdinary) {
  ForLengths([&](std::size_t n) {
    Column x(n, -1e100), N(n, 3), Out(n, 2e-8);
    EXPECT_TRUE(GetParam().areBounded(x.data(), n));
    EXPECT_FALSE(GetParam().fewerThan(1e-8, N.data(), Out.data(), n));
    if (n == 0) return;
    const std::size_t i = Below(n);
    for (const double unbounded : {1.1e100, -Infinite, static_cast<double>(NAN)}) {
      x[i] = unbounded;
      EXPECT_FALSE(GetParam().areBounded(x.data(), n)) << unbounded << " at " << i << " of " << n;
    }
    Out[i] = 0;
    EXPECT_TRUE(GetParam().fewerThan(1e-8, N.data(), Out.data(), n));
    EXPECT_TRUE(GetParam().fewerThan(0, N.data(), Out.data(), n));
    Out[i] = 0.9e-8;
    EXPECT_TRUE(GetParam().fewerThan(1e-8, N.data(), Out.data(), n));
    EXPECT_FALSE(GetParam().fewerThan(0, N.data(), Out.data(), n));
    N[i] = 0;
    EXPECT_FALSE(GetParam().fewerThan(1e-8, N.data(), Out.data(), n));
  });
}

INSTANTIATE_TEST_SUITE_P(Ways, ColumnLoopWay, testing::ValuesIn(ColumnLoopWays().begin(), ColumnLoopWays().end()),
                         [](const auto& way) { return std::string(way.param.name); });

}  // namespace
}  // namespace merlane
