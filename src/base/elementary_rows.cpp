#include "base/elementary_rows.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/elementary.h"
#include "base/gamma_ln.h"
#include "base/processor.h"

namespace merlane {
namespace {

// One after the other.
void ExpPlain(const double* x, double* y, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) y[i] = Exp(x[i]);
}
void LogPlain(const double* x, double* y, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) y[i] = Log(x[i]);
}
void PowPlain(const double* x, const double* exponent, double* y, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) y[i] = Pow(x[i], exponent[i]);
}
void GammaLnPlain(const double* x, double* y, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) y[i] = x[i] >= 1 ? GammaLn(x[i]) : 0;
}

}  // namespace
}  // namespace merlane

#ifdef __x86_64__

// The published algorithms of exp, log and pow by tables of 128 entries, as the elementary functions have them, over
// their very tables: without branches, so that the compiler can take several arguments at a time. It may not contract
// (-ffp-contract=off), and each operation rounds as it does alone, so the bits are the same for any number of arguments
// at a time. Arguments out of the ordinary are left to the elementary functions.

namespace {

struct ExpTable {
  double invLn2N, shift, negLn2hiN, negLn2loN, C[4], unused[6];
  std::uint64_t tab[2 * 128];  // of 2^(i/128): what rounding has lost, and the bits but for the exponent
};
struct LogTable {
  double ln2hi, ln2lo, A[5], B[11];
  struct {
    double invc, logc;
  } tab[128];
  struct {
    double chi, clo;
  } center[128];
};
struct PowLogTable {
  double ln2hi, ln2lo, A[7];
  struct {
    double invc, unused, logc, logctail;
  } tab[128];
};

}  // namespace

extern "C" {
extern const ExpTable merlane_exp_data;
extern const LogTable merlane_log_data;
extern const PowLogTable merlane_pow_log_data;
}

namespace merlane {
namespace {

using Bits = std::uint64_t;

#define MERLANE_IN_ROW [[gnu::always_inline]] inline

MERLANE_IN_ROW Bits Of(double x) { return std::bit_cast<Bits>(x); }
MERLANE_IN_ROW double Number(Bits bits) { return std::bit_cast<double>(bits); }

constexpr Bits ExponentBits = Bits{0xfff} << 52;
constexpr double LeastNormal = 0x1p-1022, Largest = 0x1.fffffffffffffp1023;

/// The exponent in the bits of a number, which is a number with a sign there.
MERLANE_IN_ROW double Exponent(Bits bits) {
  return Number(((bits + (Bits{1} << 63)) >> 52) | 0x4330000000000000u) - (0x1p52 + 2048);
}

MERLANE_IN_ROW bool ExpIsOrdinary(double x) { return std::fabs(x) < 512.0; }

/// exp(x + tail), where x = k ln2/128 + r and so exp(x) = 2^(k/128) exp(r).
MERLANE_IN_ROW double ExpOf(double x, double tail) {
  const ExpTable& T = merlane_exp_data;
  const double shifted = T.invLn2N * x + T.shift;
  const Bits k = Of(shifted);
  const double kd = shifted - T.shift;
  const double r = x + kd * T.negLn2hiN + kd * T.negLn2loN + tail;
  const double lost = Number(T.tab[2 * (k % 128)]);
  const double scale = Number(T.tab[2 * (k % 128) + 1] + (k << 45));
  const double r2 = r * r;
  return scale + scale * (lost + r + r2 * (T.C[0] + r * T.C[1]) + r2 * r2 * (T.C[2] + r * T.C[3]));
}

MERLANE_IN_ROW bool LogIsOrdinary(double x) { return (x >= LeastNormal) & (x <= Largest); }

/// ln x, where x = 2^k z and z is near c, whose logarithm is in the table.
MERLANE_IN_ROW double LogByTable(double x) {
  const LogTable& T = merlane_log_data;
  const Bits offset = Of(x) - 0x3fe6000000000000u;
  const Bits i = (offset >> 45) % 128;
  const double z = Number(Of(x) - (offset & ExponentBits));
  const double k = Exponent(offset);
  const double r = (z - T.center[i].chi - T.center[i].clo) * T.tab[i].invc;
  const double w = k * T.ln2hi + T.tab[i].logc;
  const double hi = w + r;
  const double lo = w - hi + r + k * T.ln2lo;
  const double r2 = r * r;
  return lo + r2 * T.A[0] + r * r2 * (T.A[1] + r * T.A[2] + r2 * (T.A[3] + r * T.A[4])) + hi;
}

/// ln x near 1, where the table would cancel out.
MERLANE_IN_ROW double LogNearOne(double x) {
  const double(&B)[11] = merlane_log_data.B;
  const double r = x - 1.0, r2 = r * r, r3 = r * r2;
  const double y = r3 * (B[1] + r * B[2] + r2 * B[3] +
                         r3 * (B[4] + r * B[5] + r2 * B[6] + r3 * (B[7] + r * B[8] + r2 * B[9] + r3 * B[10])));
  const double split = r * 0x1p27;
  const double rhi = r + split - split, rlo = r - rhi;
  const double w = rhi * rhi * B[0];
  const double hi = r + w;
  const double lo = r - hi + w + B[0] * rlo * (rhi + r);
  return y + lo + hi;
}

/// ln x in two parts, more exact than a number holds.
struct Logarithm {
  double hi, lo;
};
MERLANE_IN_ROW Logarithm LogForPower(double x) {
  const PowLogTable& T = merlane_pow_log_data;
  const Bits offset = Of(x) - 0x3fe6955500000000u;
  const Bits i = (offset >> 45) % 128;
  const Bits zBits = Of(x) - (offset & ExponentBits);
  const double k = Exponent(offset);
  const double zhi = Number((zBits + (Bits{1} << 31)) & (~Bits{0} << 32)), zlo = Number(zBits) - zhi;
  const double rhi = zhi * T.tab[i].invc - 1.0, rlo = zlo * T.tab[i].invc;
  const double r = rhi + rlo;
  const double t1 = k * T.ln2hi + T.tab[i].logc, t2 = t1 + r;
  const double lo1 = k * T.ln2lo + T.tab[i].logctail, lo2 = t1 - t2 + r;
  const double ar = T.A[0] * r, ar2 = r * ar, ar3 = r * ar2;
  const double arhi = T.A[0] * rhi, arhi2 = rhi * arhi;
  const double sum = t2 + arhi2;
  const double lo3 = rlo * (ar + arhi), lo4 = t2 - sum + arhi2;
  const double p = ar3 * (T.A[1] + r * T.A[2] + ar2 * (T.A[3] + r * T.A[4] + ar2 * (T.A[5] + r * T.A[6])));
  const double lo = lo1 + lo2 + lo3 + lo4 + p;
  return {sum + lo, sum - (sum + lo) + lo};
}

struct Power {
  double value;
  bool ordinary;
};
MERLANE_IN_ROW Power PowerOf(double x, double y) {
  const auto high = [](double number) { return Number(Of(number) & (~Bits{0} << 27)); };
  const Logarithm log = LogForPower(x);
  const double yhi = high(y), lhi = high(log.hi);
  const double hi = yhi * lhi, lo = (y - yhi) * lhi + y * (log.hi - lhi + log.lo);
  const bool zero = (Of(x) == 0) & (y > 0);
  const bool ordinary =
      (x >= LeastNormal) & (x <= Largest) & (std::fabs(y) >= 0x1p-65) & (std::fabs(y) < 0x1p63) & ExpIsOrdinary(hi);
  return {zero ? 0.0 : ExpOf(hi, lo), static_cast<bool>(int{zero} | int{ordinary})};
}

/// ln Gamma(x) of x from 1 on, whose logarithms are of numbers above 2.
MERLANE_IN_ROW double GammaLnOf(double x) {
  double y = x - 1;
  const double t = y + 5.5;
  const double power = (y + 0.5) * LogByTable(t) - t;
  double s = 1.0;
  for (const double coefficient : gamma_series::Coefficients) {
    y = y + 1;
    s = s + coefficient / y;
  }
  return power + LogByTable(gamma_series::RootOf2Pi * s);
}

MERLANE_IN_ROW void ExpInRow(const double* __restrict x, double* __restrict y, std::size_t n) {
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) {
    y[i] = ExpOf(x[i], 0);
    odd |= !ExpIsOrdinary(x[i]);
  }
  for (std::size_t i = 0; odd && i < n; ++i)
    if (!ExpIsOrdinary(x[i])) y[i] = Exp(x[i]);
}

MERLANE_IN_ROW void LogInRow(const double* __restrict x, double* __restrict y, std::size_t n) {
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const bool nearOne = (x[i] >= 1.0 - 0x1p-4) & (x[i] < 1.0 + 0x1.09p-4);
    const double near = LogNearOne(x[i]), far = LogByTable(x[i]);
    y[i] = nearOne ? near : far;
    odd |= !LogIsOrdinary(x[i]);
  }
  for (std::size_t i = 0; odd && i < n; ++i)
    if (!LogIsOrdinary(x[i])) y[i] = Log(x[i]);
}

MERLANE_IN_ROW void PowInRow(const double* __restrict x, const double* __restrict exponent, double* __restrict y,
                             std::size_t n) {
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Power power = PowerOf(x[i], exponent[i]);
    y[i] = power.value;
    odd |= !power.ordinary;
  }
  for (std::size_t i = 0; odd && i < n; ++i)
    if (!PowerOf(x[i], exponent[i]).ordinary) y[i] = Pow(x[i], exponent[i]);
}

MERLANE_IN_ROW void GammaLnInRow(const double* __restrict x, double* __restrict y, std::size_t n) {
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) {
    y[i] = GammaLnOf(x[i]);
    odd |= !(x[i] <= Largest);
  }
  for (std::size_t i = 0; odd && i < n; ++i)
    if (x[i] > Largest) y[i] = GammaLn(x[i]);
}

#undef MERLANE_IN_ROW

// The same loops, compiled for what the processor has.
#define MERLANE_ROWS(Way, ...)                                                                   \
  __VA_ARGS__ void Exp##Way(const double* x, double* y, std::size_t n) { ExpInRow(x, y, n); }    \
  __VA_ARGS__ void Log##Way(const double* x, double* y, std::size_t n) { LogInRow(x, y, n); }    \
  __VA_ARGS__ void Pow##Way(const double* x, const double* exponent, double* y, std::size_t n) { \
    PowInRow(x, exponent, y, n);                                                                 \
  }                                                                                              \
  __VA_ARGS__ void GammaLn##Way(const double* x, double* y, std::size_t n) { GammaLnInRow(x, y, n); }

MERLANE_ROWS(Avx2, [[gnu::target("avx2")]])
MERLANE_ROWS(Avx512, [[gnu::target("avx512f,avx512dq,avx512vl")]])

#undef MERLANE_ROWS

}  // namespace
}  // namespace merlane

#endif

namespace merlane {
namespace {

// The last that is available is the fastest.
constexpr ElementaryRowWay Ways[] = {
    {"plain", [] { return true; }, ExpPlain, LogPlain, PowPlain, GammaLnPlain},
#ifdef __x86_64__
    {"avx2", HasAvx2, ExpAvx2, LogAvx2, PowAvx2, GammaLnAvx2},
    {"avx512", HasAvx512, ExpAvx512, LogAvx512, PowAvx512, GammaLnAvx512},
#endif
};

const ElementaryRowWay& Fastest() {
  static const ElementaryRowWay& fastest = []() -> const ElementaryRowWay& {
    const ElementaryRowWay* last = Ways;
    for (const ElementaryRowWay& way : Ways)
      if (way.available()) last = &way;
    return *last;
  }();
  return fastest;
}

}  // namespace

std::span<const ElementaryRowWay> ElementaryRowWays() { return Ways; }

void ExpRow(std::span<const double> x, std::span<double> y) { Fastest().exp(x.data(), y.data(), x.size()); }
void LogRow(std::span<const double> x, std::span<double> y) { Fastest().log(x.data(), y.data(), x.size()); }
void PowRow(std::span<const double> x, std::span<const double> exponent, std::span<double> y) {
  Fastest().pow(x.data(), exponent.data(), y.data(), x.size());
}
void GammaLnRow(std::span<const double> x, std::span<double> y) { Fastest().gammaLn(x.data(), y.data(), x.size()); }

}  // namespace merlane
