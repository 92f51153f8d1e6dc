#include "likelihood/column_loops.h"

#include <cmath>

#include "base/processor.h"
#include "likelihood/count_logs.h"

// Loops without branches, so that the compiler can take several entries at a time. It may not contract
// (-ffp-contract=off), and each operation rounds as it does alone.

namespace merlane {
namespace {

#define MERLANE_IN_COLUMNS [[gnu::always_inline]] inline
#define MERLANE_OUT double* __restrict

using In = const double*;
using Indexes = const int*;
using Counts = const std::int16_t*;
using Rates = const SurvivalRate*;

MERLANE_IN_COLUMNS bool AreBounded(In x, std::size_t n) {
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) odd |= !(std::fabs(x[i]) <= 1e100);
  return odd == 0;
}

MERLANE_IN_COLUMNS void Products(double factor, In x, MERLANE_OUT y, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) y[i] = factor * x[i];
}

MERLANE_IN_COLUMNS void Constants(double c, double f, In AlphaR, In AlphaC, MERLANE_OUT normaliser, MERLANE_OUT shareR,
                                  MERLANE_OUT shareC, std::size_t n) {
  const bool attenuated = c != 0 && f != 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double R = f + AlphaR[i], C = f + AlphaC[i];
    const double common = 1 + c * f * (AlphaC[i] - AlphaR[i]) / (R * C);
    normaliser[i] = attenuated ? common : 1.0;
    shareR[i] = c * AlphaR[i] / R;
    shareC[i] = c * AlphaC[i] / C;
  }
}

MERLANE_IN_COLUMNS void RandomExponents(Rates rates, Indexes mortality, In power, MERLANE_OUT exponent, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) exponent[i] = -rates[mortality[i]].Alpha * power[i];
}
MERLANE_IN_COLUMNS void CorrelatedExponents(Rates rates, Indexes mortality, In power, MERLANE_OUT exponent,
                                            std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) exponent[i] = -(rates[mortality[i]].f + rates[mortality[i]].Alpha) * power[i];
}
MERLANE_IN_COLUMNS void RandomShares(Rates rates, Indexes mortality, In surviving, In attenuation, MERLANE_OUT SR,
                                     std::size_t n) {
  for (std::size_t i = 0; i < n; ++i)
    SR[i] = surviving[i] * (1 - rates[mortality[i]].share * attenuation[i]) / rates[mortality[i]].normaliser;
}
MERLANE_IN_COLUMNS void CorrelatedShares(Rates rates, Indexes mortality, In surviving, MERLANE_OUT SC, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) SC[i] = rates[mortality[i]].share * surviving[i] / rates[mortality[i]].normaliser;
}

MERLANE_IN_COLUMNS double ShareAlive(double S1, double S2) { return S1 > 0 ? S2 / S1 : 0.0; }

MERLANE_IN_COLUMNS void SharesAlive(Indexes from, Indexes to, In S, MERLANE_OUT alive, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) alive[i] = ShareAlive(S[from[i]], S[to[i]]);
}
MERLANE_IN_COLUMNS void Spans(Indexes from, Indexes to, In SR, In SC, MERLANE_OUT aliveR, MERLANE_OUT aliveC,
                              MERLANE_OUT aliveAll, MERLANE_OUT PCorr, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const double R1 = SR[from[i]], C1 = SC[from[i]], R2 = SR[to[i]], C2 = SC[to[i]];
    const double S1 = R1 + C1;
    aliveAll[i] = ShareAlive(S1, R2 + C2);
    aliveC[i] = ShareAlive(C1, C2);
    aliveR[i] = ShareAlive(R1, R2);
    PCorr[i] = C1 / S1;
  }
}

MERLANE_IN_COLUMNS void Survivors(Indexes span, In alive, In N, MERLANE_OUT out, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) out[i] = alive[span[i]] * N[i];
}
MERLANE_IN_COLUMNS bool FewerThan(double least, In N, In OutAll, std::size_t n) {
  int fewer = 0;
  for (std::size_t i = 0; i < n; ++i) fewer |= (N[i] > 0) & ((OutAll[i] < least) | (OutAll[i] == 0));
  return fewer != 0;
}

MERLANE_IN_COLUMNS void BinomialShares(Indexes interval, In Out, In N, MERLANE_OUT p, MERLANE_OUT q, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const double share = BinomialShare(Out[interval[i]] / N[interval[i]]);
    p[i] = share;
    q[i] = 1 - share;
  }
}
MERLANE_IN_COLUMNS void BinomialExponents(In logChoices, Counts k, Counts others, Indexes distribution, In logP,
                                          In logQ, MERLANE_OUT exponent, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i)
    exponent[i] = logChoices[i] + k[i] * logP[distribution[i]] + others[i] * logQ[distribution[i]];
}

MERLANE_IN_COLUMNS void Mixtures(In PR, In PC, Indexes span, In PCorr, MERLANE_OUT P, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) P[i] = (1 - PCorr[span[i]]) * PR[i] + PCorr[span[i]] * PC[i];
}
MERLANE_IN_COLUMNS bool Deviances(In P, In logP, MERLANE_OUT deviance, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) deviance[i] = P[i] > 0 ? -2 * logP[i] : 0;
  int odd = 0;
  for (std::size_t i = 0; i < n; ++i) odd |= !((P[i] >= 0) & (P[i] <= std::numeric_limits<double>::max()));
  return odd == 0;
}

#undef MERLANE_OUT
#undef MERLANE_IN_COLUMNS

// Each loop, compiled for what every processor has, and for what some have.
template <auto Loop>
struct Plain;
template <class Result, class... Arguments, Result (*Loop)(Arguments...)>
struct Plain<Loop> {
  static Result Run(Arguments... arguments) { return Loop(arguments...); }
};

#ifdef __x86_64__
#define MERLANE_COMPILED_FOR(Way, features)                                                            \
  template <auto Loop>                                                                                 \
  struct Way;                                                                                          \
  template <class Result, class... Arguments, Result (*Loop)(Arguments...)>                            \
  struct Way<Loop> {                                                                                   \
    [[gnu::target(features)]] static Result Run(Arguments... arguments) { return Loop(arguments...); } \
  };

MERLANE_COMPILED_FOR(Avx2, "avx2")
MERLANE_COMPILED_FOR(Avx512, "avx512f,avx512dq,avx512vl")

#undef MERLANE_COMPILED_FOR
#endif

template <template <auto> class Way>
constexpr ColumnLoops Compiled(const char* name, bool (*available)()) {
  return {.name = name,
          .available = available,
          .areBounded = Way<AreBounded>::Run,
          .products = Way<Products>::Run,
          .constants = Way<Constants>::Run,
          .randomExponents = Way<RandomExponents>::Run,
          .correlatedExponents = Way<CorrelatedExponents>::Run,
          .randomShares = Way<RandomShares>::Run,
          .correlatedShares = Way<CorrelatedShares>::Run,
          .sharesAlive = Way<SharesAlive>::Run,
          .spans = Way<Spans>::Run,
          .survivors = Way<Survivors>::Run,
          .fewerThan = Way<FewerThan>::Run,
          .binomialShares = Way<BinomialShares>::Run,
          .binomialExponents = Way<BinomialExponents>::Run,
          .mixtures = Way<Mixtures>::Run,
          .deviances = Way<Deviances>::Run};
}

constexpr ColumnLoops Ways[] = {
    Compiled<Plain>("plain", [] { return true; }),
#ifdef __x86_64__
    Compiled<Avx2>("avx2", HasAvx2),
    Compiled<Avx512>("avx512", HasAvx512),
#endif
};

}  // namespace

std::span<const ColumnLoops> ColumnLoopWays() { return Ways; }

const ColumnLoops& Columns() {
  static const ColumnLoops& fastest = []() -> const ColumnLoops& {
    const ColumnLoops* last = Ways;
    for (const ColumnLoops& way : Ways)
      if (way.available()) last = &way;
    return *last;
  }();
  return fastest;
}

}  // namespace merlane
