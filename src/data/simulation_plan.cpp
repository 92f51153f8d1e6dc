#include "data/simulation_plan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

/// A whole number drawn evenly from `least` to `most`.
std::int16_t DrawFrom(std::int16_t least, std::int16_t most, RandomStreams& random) {
  return ToInt16(std::floor((most - least + 1) * random.Uniform()) + least);
}

void PlanBrood(BroodData& data, std::size_t b, RandomStreams& random) {
  const SimulatorSettings& plan = data.simulator;
  const int year = data.BroodYear[b];
  const std::string number = fmt::format("{:04}", data.BroodNumber(static_cast<int>(b)));
  data.HatchDate[b] = DrawFrom(plan.MinHatchDay, plan.MaxHatchDay, random);
  data.BroodCode[b] = fmt::format("Y{}B{}", Rightmost(fmt::format("{:02}", year), 2), Rightmost(number, 4));
  for (int j = 1; j <= data.VisitsOf[b]; ++j) {
    const auto v = static_cast<std::size_t>(data.FirstVisit[b] + j - 1);
    const int age = plan.InitAge + j - 1;
    data.VisitYear[v] = static_cast<std::int16_t>(year);
    if (j == 1) data.VisitCount[v] = DrawFrom(plan.MinInitSize, plan.MaxInitSize, random);
    data.VisitAge[v] = age;
    data.VisitStage[v] = age < 0 ? -1 : 1;
    data.VisitDate[v] = CheckedInt16(data.HatchDate[b] + age);
  }
}

}  // namespace

void PlanSimulation(BroodData& data, int broods, RandomStreams& random) {
  const int visits = CheckedInt16(data.simulator.FinalAge - data.simulator.InitAge + 1);
  if (broods < 0 || visits < 1)
    throw RuntimeFailure(fmt::format("a simulation cannot have {} broods of {} visits", broods, visits));
  if (data.simulator.MinInitSize < 0)
    throw RuntimeFailure(fmt::format("broods cannot begin with {} eggs or juveniles", data.simulator.MinInitSize));
  const auto years = static_cast<std::size_t>(std::max(0, data.LastYear - data.FirstYear + 1));
  AllocateTables(data,
                 std::vector<std::vector<int>>(years, std::vector<int>(static_cast<std::size_t>(broods), visits)));
  random.BeginNext();
  for (std::size_t b = 0; b < data.FirstVisit.size(); ++b) PlanBrood(data, b, random);
}

}  // namespace merlane
