#include "base/elementary_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "base/gamma_ln.h"

namespace merlane {
namespace {

constexpr std::size_t Length = 1000;

/// Arguments such as a calculation meets, and such as it should not.
class Arguments {
 public:
  std::vector<double> Row(const std::function<double()>& draw) {
    std::vector<double> row(Length);
    for (double& x : row) x = draw();
    return row;
  }
  double Uniform() { return static_cast<double>(random_() >> 11) * 0x1p-53; }
  double AnyBits() { return std::bit_cast<double>(random_()); }
  double Day() { return static_cast<double>(random_() % 60); }

 private:
  std::mt19937_64 random_{3};
};

void ExpectSame(const ElementaryRowWay& way, const std::vector<double>& x, const std::vector<double>& row,
                const std::function<double(std::size_t)>& alone) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    const double expected = alone(i);
    if (std::isnan(expected) && std::isnan(row[i])) continue;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(row[i]), std::bit_cast<std::uint64_t>(expected))
        << way.name << " at " << x[i];
  }
}

class ElementaryRows : public testing::TestWithParam<ElementaryRowWay> {
 protected:
  void SetUp() override {
    if (!GetParam().available()) GTEST_SKIP() << "not on this processor";
  }
  static constexpr int Rows = 300;
  Arguments arguments;
  std::vector<double> y = std::vector<double>(Length);
};

TEST_P(ElementaryRows, ExponentialsHaveTheBitsOfOneAlone) {
  const std::vector<std::function<double()>> draws = {[&] { return -30 * arguments.Uniform(); },
                                                      [&] { return 1600 * (arguments.Uniform() - 0.5); },
                                                      [&] { return arguments.AnyBits(); }};
  for (const auto& draw : draws)
    for (int i = 0; i < Rows; ++i) {
      const std::vector<double> x = arguments.Row(draw);
      GetParam().exp(x.data(), y.data(), Length);
      ExpectSame(GetParam(), x, y, [&](std::size_t j) { return Exp(x[j]); });
    }
}

TEST_P(ElementaryRows, LogarithmsHaveTheBitsOfOneAlone) {
  const std::vector<std::function<double()>> draws = {
      [&] { return arguments.Uniform(); }, [&] { return 0.9 + 0.2 * arguments.Uniform(); },
      [&] { return 1e6 * arguments.Uniform(); }, [&] { return arguments.AnyBits(); }};
  for (const auto& draw : draws)
    for (int i = 0; i < Rows; ++i) {
      const std::vector<double> x = arguments.Row(draw);
      GetParam().log(x.data(), y.data(), Length);
      ExpectSame(GetParam(), x, y, [&](std::size_t j) { return Log(x[j]); });
    }
}

TEST_P(ElementaryRows, PowersHaveTheBitsOfOneAlone) {
  const std::vector<std::function<double()>> bases = {[&] { return arguments.Day(); },
                                                      [&] { return 60 * arguments.Uniform() - 1; },
                                                      [&] { return arguments.AnyBits(); }};
  const std::vector<std::function<double()>> exponents = {
      [&] { return 3 * arguments.Uniform(); }, [&] { return arguments.Day(); }, [&] { return arguments.AnyBits(); }};
  for (const auto& base : bases)
    for (const auto& exponent : exponents)
      for (int i = 0; i < Rows / 3; ++i) {
        const std::vector<double> x = arguments.Row(base), p = arguments.Row(exponent);
        GetParam().pow(x.data(), p.data(), y.data(), Length);
        ExpectSame(GetParam(), x, y, [&](std::size_t j) { return Pow(x[j], p[j]); });
      }
}

TEST_P(ElementaryRows, LnGammaHasTheBitsOfOneAlone) {
  const std::vector<std::function<double()>> draws = {
      [&] { return 1 + 10 * arguments.Uniform(); }, [&] { return 1 + 0x1p-20 * arguments.Uniform(); },
      [&] { return 1 + 2e7 * arguments.Uniform(); }, [&] { return std::max(1.0, std::abs(arguments.AnyBits())); }};
  for (const auto& draw : draws)
    for (int i = 0; i < Rows; ++i) {
      const std::vector<double> x = arguments.Row(draw);
      GetParam().gammaLn(x.data(), y.data(), Length);
      ExpectSame(GetParam(), x, y, [&](std::size_t j) { return GammaLn(x[j]); });
    }
}

TEST_P(ElementaryRows, LnGammaTakesRowsOfAnyLength) {
  for (const std::size_t length : {0, 1, 7, 31, 33, 500}) {
    std::vector<double> x(length);
    std::ranges::generate(x, [argument = 1.0]() mutable { return std::exchange(argument, argument * 1.0041 + 0.001); });
    if (length == 500) x[250] = 0.5;  // of which nothing comes out, and whose neighbours do not mind
    y.assign(length, 0);
    GetParam().gammaLn(x.data(), y.data(), length);
    for (std::size_t i = 0; i < length; ++i)
      if (x[i] >= 1) {
        ASSERT_EQ(y[i], GammaLn(x[i])) << GetParam().name << " at " << x[i];
      }
  }
}

TEST_P(ElementaryRows, TakeTheEndsOfTheRange) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  const std::vector<double> x{
      0.0,     -0.0,     1,          -1,           0x1p-1022,    0x1p-1074, 0x1.fffffffffffffp1023,
      512,     -512,     infinite,   -infinite,    std::nan(""), 709.9,     -745.2,
      0x1p-60, -0x1p-54, 1 - 0x1p-4, 1 + 0x1.09p-4};
  const auto at = [&](const auto& function) { return [&x, function](std::size_t j) { return function(x[j]); }; };
  y.resize(x.size());
  GetParam().exp(x.data(), y.data(), x.size());
  ExpectSame(GetParam(), x, y, at(Exp));
  GetParam().log(x.data(), y.data(), x.size());
  ExpectSame(GetParam(), x, y, at(Log));
  const std::vector<double> large{1, 0x1.fffffffffffffp1023, infinite};
  std::vector<double> ofLarge(large.size());
  GetParam().gammaLn(large.data(), ofLarge.data(), large.size());
  ExpectSame(GetParam(), large, ofLarge, [&](std::size_t j) { return GammaLn(large[j]); });
  for (const double exponent : x) {
    const std::vector<double> p(x.size(), exponent);
    GetParam().pow(x.data(), p.data(), y.data(), x.size());
    ExpectSame(GetParam(), x, y, [&](std::size_t j) { return Pow(x[j], exponent); });
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, ElementaryRows,
                         testing::ValuesIn(ElementaryRowWays().begin(), ElementaryRowWays().end()),
                         [](const auto& way) { return std::string(way.param.name); });

TEST(ElementaryRow, IsTheFunctionOfEach) {
  const std::vector<double> x{0.5, 2, 7}, p{2, 0.5, 1.5};
  std::vector<double> y(3);
  ExpRow(x, y);
  EXPECT_EQ(y, (std::vector<double>{Exp(0.5), Exp(2), Exp(7)}));
  LogRow(x, y);
  EXPECT_EQ(y, (std::vector<double>{Log(0.5), Log(2), Log(7)}));
  PowRow(x, p, y);
  EXPECT_EQ(y, (std::vector<double>{Pow(0.5, 2), Pow(2, 0.5), Pow(7, 1.5)}));
  GammaLnRow(p, y);
  EXPECT_EQ(y[0], GammaLn(2));
  EXPECT_EQ(y[2], GammaLn(1.5));
}

}  // namespace
}  // namespace merlane
