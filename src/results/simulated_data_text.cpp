#include "results/simulated_data_text.h"

#include <fmt/format.h>

#include <cmath>

#include "base/runtime_failure.h"
#include "data/data_record_text.h"
#include "data/record_layout.h"

namespace merlane {

std::string SimulatedDataText(const BroodData& data, const std::vector<std::int16_t>& SimCount, RandomStreams& random,
                              const CalculationWatch& watch) {
  const int least = data.simulator.SampFreq1, most = data.simulator.SampFreq2;
  if (least < 1) throw RuntimeFailure(fmt::format("broods cannot be visited every {} days", least));
  std::string text = fmt::format("{}\r\n", record::Header);
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    bool dead = false, deathWritten = false;
    int next = 0;  // the visit to be made
    for (int j = 0; j < data.VisitsOf[b]; ++j) {
      const std::size_t v = first + static_cast<std::size_t>(j);
      dead = dead || SimCount[v] == 0;
      if (j != next) continue;
      watch.progress(fmt::format("Virtually writing the summary record for visit {} of brood {} in year {}", j + 1,
                                 data.BroodNumber(brood), data.BroodYear[b]));
      watch.turn();
      if (watch.aborted()) return text;
      if (dead ? !deathWritten : SimCount[v] != Missing) {
        text += FieldsBeforeCount(data, b, v) + CountField(dead ? 0 : SimCount[v]) + "\r\n";
        deathWritten = dead;
      }
      // Drawn for a dead brood too, and for the step that leaves the brood.
      next += static_cast<int>(std::floor((most - least + 1) * random.Uniform())) + least;
    }
  }
  return text;
}

}  // namespace merlane
