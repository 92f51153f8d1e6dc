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

/// An analysis whose figures are known: what it is made from.
struct GoldenCase {
  std::string name;
  std::string dataFile, algFile, priorsFile;  // paths; no priors: empty
  int exitStatus = 0;                         // 2 a fatal data error, 4 a run-time failure
  Initialisation choices;

  /// The figures after one function call; read when asked for, since each test program lists all cases at its start.
  nlohmann::json Expected() const { return GoldenJson(name + ".json"); }
};

inline GoldenCase MakeGoldenCase(const nlohmann::json& entry) {
  GoldenCase c;
  c.name = entry["name"];
  c.dataFile = GoldenPath(entry["data"]);
  c.algFile = GoldenPath(entry["alg"]);
  c.exitStatus = entry["exit_status"];
  c.choices.DataFileName = c.dataFile;
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

inline const std::vector<GoldenCase>& GoldenCases() {
  static const std::vector<GoldenCase> all = [] {
    std::vector<GoldenCase> cases;
    for (const nlohmann::json listed = GoldenJson("cases.json"); const auto& entry : listed["cases"])
      cases.push_back(MakeGoldenCase(entry));
    return cases;
  }();
  return all;
}

/// Those whose data can be read and evaluated.
inline std::vector<GoldenCase> SoundCases() {
  std::vector<GoldenCase> cases = GoldenCases();
  std::erase_if(cases, [](const GoldenCase& c) { return c.exitStatus != 0; });
  return cases;
}

/// Sound ones, without the one that takes long.
inline std::vector<GoldenCase> SmallCases() {
  std::vector<GoldenCase> cases = SoundCases();
  std::erase_if(cases, [](const GoldenCase& c) { return c.name == "large"; });
  return cases;
}

inline const GoldenCase& GoldenCaseNamed(const std::string& name) {
  return *std::ranges::find(GoldenCases(), name, &GoldenCase::name);
}

inline void PrintTo(const GoldenCase& c, std::ostream* out) { *out << c.name; }

}  // namespace merlane::test
