#include "likelihood/first_evaluation.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "survival/catalogue.h"
#include "survival/hypothesis.h"

namespace merlane {
namespace {

void TellOfVisitsBeforeLaying(const BroodData& data, LikelihoodState& state, const EvaluationSetting& setting) {
  const double LayAge = state.parameters.LayAge;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    for (int j = 1; j <= data.VisitsOf[b]; ++j) {
      const double age = data.VisitAge[static_cast<std::size_t>(data.FirstVisit[b] + j - 1)];
      if (!(age < LayAge && age != Missing)) continue;
      if (age < state.YoungestAge) state.YoungestAge = age;
      setting.tell({"Warning: data record will be ignored!",
                    fmt::format("Visit #{} of clutch #{} in year {} is younger ({} days) than the laying day of {} set "
                                "in the algorithm data\r\n\r\nYoungest age so far is: {} days.",
                                j, data.BroodNumber(brood), data.BroodYear[b], Shortest(age), Shortest(LayAge),
                                Shortest(state.YoungestAge))});
    }
  }
}

void TellOfDeficiency(const EvaluationSetting& setting, const std::string& title, const std::string& finding) {
  setting.tell({title, finding + "\r\nReview your data or the Results Summary to locate the deficient broods.\r\n",
                style::Critical});
}

}  // namespace

void BeginEvaluations(const BroodData& data, LikelihoodState& state, const EvaluationSetting& setting,
                      const std::function<void()>& fillSurvivalTables, Array1<double>& Value, Array1<double>& Step,
                      Array1<std::string>& Names, Array1<std::string>& Fuse, std::int16_t NPAR) {
  state.Preset();
  state.YoungestAge = 0;
  if (setting.OneCallRun) TellOfVisitsBeforeLaying(data, state, setting);
  if (!setting.OneCallRun && !setting.SimulationMode) return;

  FillParameterDescriptions(Names, NPAR, data);
  fillSurvivalTables();
  const bool changed = ValidateHypothesis(data, state.survival, setting.SimulationMode, Value, Step, Names, Fuse);
  if (changed) {
    setting.tell({"Parameters altered to suit hypothesis or data",
                  "At least one parameter fixed at 0 or 1, or made > 0; altered values are unfused.  Click on '1 "
                  "Function call' once more."});
    DecodeParameters(Value, Step, ParameterLayout(data), state.parameters, state.Penalty);
  }
  if (setting.SimulationMode || changed) return;
  if (state.survival.BroodSizeDeficient)
    TellOfDeficiency(setting, "Warning: Hypotheses concerning the E[brood size@hatch] are invalid!",
                     "A data deficiency means the E[brood size@hatch] cannot be calculated for at least some broods.");
  if (state.survival.HatchDateDeficient)
    TellOfDeficiency(setting, "Warning: Hypotheses concerning Hatch Day are invalid!",
                     "A data deficiency means that Hatch Day is not available for at least some broods.");
}

}  // namespace merlane
