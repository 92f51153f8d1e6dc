// One data set and its algorithm file, evaluated or fitted as the yardsticks do it (see run_yardsticks.py), so that
// both can be measured beside each other. Prints lines "key value".
//
//   bench_yardstick DATA ALG --ncov N --years FIRST LAST [--evaluate K] [--simplex]

#include <fmt/format.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "control/algorithm_file.h"
#include "data/brood_reader.h"
#include "measured_run.h"
#include "minimise/simplex.h"
#include "platform/files.h"
#include "survival/catalogue.h"

namespace {

using namespace merlane;

struct Options {
  std::string data, alg;
  std::int16_t NCov = 0, FirstYear = 1995, LastYear = 1995;
  int evaluations = 0;
  bool simplex = false;
};

Options Read(int argc, char** argv) {
  Options o;
  const auto number = [&](int& i) { return static_cast<std::int16_t>(std::atoi(argv[++i])); };
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--ncov") {
      o.NCov = number(i);
    } else if (argument == "--years") {
      o.FirstYear = number(i);
      o.LastYear = number(i);
    } else if (argument == "--evaluate") {
      o.evaluations = number(i);
    } else if (argument == "--simplex") {
      o.simplex = true;
    } else if (argument == "--format") {
      ++i;  // original values alone
    } else {
      (o.data.empty() ? o.data : o.alg) = argument;
    }
  }
  return o;
}

double Now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Runs `action` and prints what it took: on the wall, and on all cores together.
template <class Action>
void Measure(const char* name, const Action& action) {
  const double wall = Now(CLOCK_MONOTONIC), cpu = Now(CLOCK_PROCESS_CPUTIME_ID);
  action();
  fmt::print("{0}_cpu_seconds {2:.9f}\n{0}_seconds {1:.9f}\n", name, Now(CLOCK_MONOTONIC) - wall,
             Now(CLOCK_PROCESS_CPUTIME_ID) - cpu);
}

/// Free value j of evaluation e, moved a little as all yardsticks move it.
double Moved(const RunState& state, int e, int j) {
  const long step = (7919L * e + 104729L * j) % 2001 - 1000;
  return state.free.FreeValue(j) + state.free.FreeStep(j) * 0.001 * static_cast<double>(step) / 1000;
}

void Evaluate(MeasuredRun& run, int evaluations) {
  double F = 0;
  run.Measure([&] {
    Array1<double> vector;
    Measure("evaluate", [&] {
      for (int e = 1; e <= evaluations; ++e) {
        vector = run.state.algorithm.Value;
        for (int j = 1; j <= run.state.free.NFREE; ++j) vector(run.state.free.FreeIndex(j)) = Moved(run.state, e, j);
        F = run.objective(vector, e + 1);
      }
    });
  });
  fmt::print("evaluations {}\nlast_F {:.17g}\n", evaluations, F);
}

void Fit(MeasuredRun& run) {
  SimplexResult result;
  run.Measure([&] {
    Measure("simplex", [&] {
      SimplexState simplex;
      SimplexWatch watch;
      result = MinimiseSimplex(run.state, run.objective, simplex, watch);
    });
  });
  fmt::print("simplex_calls {}\nsimplex_F {:.17g}\n", result.calls, result.F);
}

}  // namespace

int main(int argc, char** argv) {
  const Options o = Read(argc, argv);
  BroodData data;
  data.FirstYear = o.FirstYear;
  data.LastYear = o.LastYear;
  data.NCov = o.NCov;
  data.InteractionBase = static_cast<std::int16_t>(30 + 4 * o.NCov);
  ReadingReport report;
  Measure("read", [&] {
    ReadTextData(
        ReadWholeFile(o.data), false, data, [](const Message&) {}, report);
  });
  fmt::print("records {}\n", data.TotalRecords);

  AlgorithmData algorithm;
  algorithm.NPAR = static_cast<std::int16_t>(ParameterCount(o.NCov));
  algorithm.ParName.Dimension(algorithm.NPAR);
  if (ReadAlgorithm(ReadWholeFile(o.alg), algorithm).failure != AlgorithmReading::Failure::None) return 1;
  MeasuredRun run(o.data, std::move(data), algorithm);
  if (o.evaluations > 0) Evaluate(run, o.evaluations);
  if (o.simplex) Fit(run);
}
