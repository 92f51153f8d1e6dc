#include "batch/exports.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/json_text.h"
#include "base/number_text.h"
#include "minimise/evaluate_trial.h"

namespace merlane {
namespace {

/// A text as a field: in double quotes, its own doubled, where it would not stand for itself.
std::string Field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string Field(double x) { return x == Missing ? "" : Shortest(x); }

/// The value of a table at a visit; none in tables that no evaluation has filled yet.
std::string Field(const std::vector<double>& table, std::size_t visit) {
  return visit < table.size() ? Field(table[visit]) : "";
}

}  // namespace

std::string ParametersCsv(const AlgorithmData& algorithm) {
  std::string csv = "number,value,step,fuse,free,name\n";
  // A run without algorithm data has names alone.
  const int count = std::min({algorithm.Value.Size(), algorithm.Step.Size(), algorithm.Fuse.Size()});
  for (int i = 1; i <= count; ++i)
    csv += fmt::format("{},{},{},{},{},{}\n", i, Shortest(algorithm.Value(i)), Shortest(algorithm.Step(i)),
                       Field(algorithm.Fuse(i)), algorithm.Step(i) != 0 ? 1 : 0,
                       i <= algorithm.ParName.Size() ? Field(algorithm.ParName(i)) : "");
  return csv;
}

std::string VisitsCsv(const BroodData& data, const BestTables& best) {
  std::string csv =
      "year,code,brood,visit,date,hatch_day,age,stage,count,E_R,E_C,E,pcorr_egg,pcorr_juv,var_R,var_C,deviance\n";
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    for (int i = 0; i < data.VisitsOf[b]; ++i) {
      const auto v = static_cast<std::size_t>(data.FirstVisit[b] + i);
      if (!data.HasRecord(v)) continue;
      const std::string fields[] = {fmt::format("{}", data.BroodYear[b]),
                                    Field(data.BroodCode[b]),
                                    fmt::format("{}", data.BroodNumber(brood)),
                                    fmt::format("{}", i + 1),
                                    Field(data.VisitDate[v]),
                                    Field(data.HatchDate[b]),
                                    Field(data.VisitAge[v]),
                                    fmt::format("{}", data.VisitStage[v]),
                                    Field(data.VisitCount[v]),
                                    Field(best.survival.EVisitR, v),
                                    Field(best.survival.EVisitC, v),
                                    Field(best.survival.EVisit, v),
                                    Field(best.survival.PCorrEgg, v),
                                    Field(best.survival.PCorrJuv, v),
                                    Field(best.VarR, v),
                                    Field(best.VarC, v),
                                    Field(best.VisitDeviance, v)};
      csv += fmt::format("{}\n", fmt::join(fields, ","));
    }
  }
  return csv;
}

std::string FitJson(const Fit& fit, const std::string& changes) {
  JsonMembers members{{"objective", JsonOf(fit.objective)},
                      {"penalty", JsonOf(fit.penalty)},
                      {"prior", JsonOf(fit.prior)},
                      {"sample_size", JsonOf(fit.sampleSize)},
                      {"eggs_at_risk", JsonOf(fit.eggsAtRisk)},
                      {"juveniles_at_risk", JsonOf(fit.juvenilesAtRisk)},
                      {"clutch_intervals", JsonOf(fit.clutchIntervals)},
                      {"brood_intervals", JsonOf(fit.broodIntervals)},
                      {"free_parameters", JsonOf(fit.freeParameters)}};
  if (fit.ofOneCall)
    members.emplace_back("objective_of_one_call", *fit.ofOneCall < UnevaluatedF ? JsonOf(*fit.ofOneCall) : JsonNull);
  if (!changes.empty()) members.emplace_back("changed_since", JsonOf(changes));
  const auto& minimisation = fit.minimisation;
  const auto add = [&](const char* name, auto figure) {
    members.emplace_back(name, minimisation ? JsonOf((*minimisation).*figure) : JsonNull);
  };
  add("function_calls", &Minimisation::functionCalls);
  add("iterations", &Minimisation::iterations);
  add("restarts", &Minimisation::restarts);
  add("minimiser", &Minimisation::minimiser);
  add("ending", &Minimisation::ending);
  return JsonObjectInLines(members);
}

}  // namespace merlane
