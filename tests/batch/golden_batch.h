#pragma once

#include "batch/replay.h"

namespace merlane {

inline const std::string golden = MERLANE_GOLDEN_DIR "/";

inline nlohmann::json Parse(const std::string& name) { return nlohmann::json::parse(ReadFile(golden + name)); }

inline std::vector<nlohmann::json> Cases() { return Parse("cases.json")["cases"].get<std::vector<nlohmann::json>>(); }

inline nlohmann::json CaseNamed(const std::string& name) {
  for (const nlohmann::json& one : Cases())
    if (one["name"] == name) return one;
  throw std::runtime_error("no golden case is named " + name);
}

/// The lines that describe the analysis of a case, up to its loaded algorithm data and priors.
inline std::string BatchFor(const nlohmann::json& golden_case) {
  std::string covariates, format, first, last, ticks, constant, priors;
  const std::vector<std::string> args = golden_case["args"];
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--ncov") covariates = args[++i];
    if (args[i] == "--format") format = args[++i];
    if (args[i] == "--years") {
      first = args[++i];
      last = args[++i];
    }
    if (args[i] == "--constant") constant = args[++i];
    if (args[i] == "--priors") priors = args[++i];
    if (args[i] == "--censor-eggs") ticks += "tick frmInitialize.chkCensorEggs\n";
    if (args[i] == "--censor-juvs") ticks += "tick frmInitialize.chkCensorJuvs\n";
  }
  std::string text = "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " +
                     InQuotes(golden + golden_case["data"].get<std::string>()) +
                     " at \"Load brood survival data file\"\n";
  text += "set frmInitialize.cboBroodCovs " + covariates + "\n";
  if (covariates != "0") text += "set frmInitialize.cboFormat " + format + "\n";
  text += "set frmInitialize.cboStartYear " + first + "\nset frmInitialize.cboEndYear " + last + "\n" + ticks;
  text += "press frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes at \"Load algorithm data\"\nfile " +
          InQuotes(golden + golden_case["alg"].get<std::string>()) + " at \"Open algorithm data file\"\n";
  // The first file of a run leaves the priors off; closing the window that loads them once more turns them on.
  if (!priors.empty())
    text += "press frmMenu.cmdBayesian\npress frmLoadPriors.cmdOpen\nfile " + InQuotes(golden + priors) +
            "\npress frmSetPriors.mnuFinished\nreply no at \"Save Bayesian priors\"\nenter " + constant +
            " at \"Enter constant\"\n"
            "press frmMenu.cmdBayesian\npress frmLoadPriors.cmdCancel\n";
  return text;
}

}  // namespace merlane
