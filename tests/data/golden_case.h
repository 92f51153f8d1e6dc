#pragma once

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "data/initialisation.h"

namespace merlane::test {

inline std::string GoldenPath(const std::string& file) { return std::string(MERLANE_GOLDEN_DIR) + "/" + file; }

inline nlohmann::json GoldenJson(const std::string& file) {
  std::ifstream in(GoldenPath(file));
  return nlohmann::json::parse(in);
}

/// An analysis whose figures are known: what it is made from, and the figures after one function call.
struct GoldenCase {
  std::string name;
  std::string dataFile, algFile, priorsFile;  // paths; no priors: empty
  int exitStatus = 0;                         // 2 a fatal data error, 4 a run-time failure
  Initialisation choices;
  nlohmann::json expected;
};

inline GoldenCase MakeGoldenCase(const nlohmann::json& entry) {
  GoldenCase c;
  c.name = entry["name"];
  c.dataFile = GoldenPath(entry["data"]);
  c.algFile = GoldenPath(entry["alg"]);
  c.exitStatus = entry["exit_status"];
  c.choices.DataFileName = c.dataFile;
  c.expected = GoldenJson(c.name + ".json");
  const std::vector<std::string> args = entry["args"];
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--ncov") {
      c.choices.NCov = static_cast<std::int16_t>(std::stoi(args[++i]));
    } else if (args[i] == "--format") {
      c.choices.CovariateFormat = args[++i];
    } else if (args[i] == "--years") {
      c.choices.FirstYear = static_cast<std::int16_t>(std::stoi(args[++i]));
      c.choices.LastYear = static_cast<std::int16_t>(std::stoi(args[++i]));
    } else if (args[i] == "--censor-eggs") {
      c.choices.CensorEggs = true;
    } else if (args[i] == "--censor-juvs") {
      c.choices.CensorJuvs = true;
    } else if (args[i] == "--constant") {
      ++i;
    } else if (args[i] == "--priors") {
      c.priorsFile = GoldenPath(args[++i]);
    } else {
      throw std::runtime_error("a golden case has the unknown argument " + args[i]);
    }
  }
  return c;
}

inline std::vector<GoldenCase> GoldenCases() {
  std::vector<GoldenCase> cases;
  const nlohmann::json all = GoldenJson("cases.json");
  for (const auto& entry : all["cases"]) cases.push_back(MakeGoldenCase(entry));
  return cases;
}

inline GoldenCase GoldenCaseNamed(const std::string& name) {
  const std::vector<GoldenCase> cases = GoldenCases();
  return *std::ranges::find(cases, name, &GoldenCase::name);
}

inline void PrintTo(const GoldenCase& c, std::ostream* out) { *out << c.name; }

}  // namespace merlane::test
