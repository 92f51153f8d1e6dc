#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "likelihood/likelihood_state.h"
#include "model/simulator.h"
#include "model/survival_estimates.h"
#include "platform/workers.h"
#include "results/effective_sizes.h"

namespace merlane {

/// What a results summary is written about: the best state, which must exist, and how it came about.
struct ResultsSubject {
  const BroodData& data;
  const LikelihoodState& fitted;
  const Array1<double>& Value;       // the vector as the model left it
  const Array1<std::string>& Names;  // the parameters' descriptions
  std::int32_t SampleSize = 0;       // of the last new minimum
  int FreeCount = 0;                 // free parameters
  bool BayesOn = false;
  std::string AlgName, PriorFileName;  // paths; the summary names the files without their folders
};

/// What was analysed and how, the minimum and AICc. The lines of all these texts end with CR LF.
std::string ResultsHead(const ResultsSubject& subject, const EffectiveSizes& sizes);

/// The rules that bind parameters and data to each other.
std::string ResultsRules();

/// The estimates of all parameters.
std::string ResultsParameters(const ResultsSubject& subject);

/// What the listing shows of each record besides the observations.
enum class Listing {
  Partitioning,         // random and correlated mortality apart
  SimulatedAndSurvival  // simulated counts, survival and brood covariates
};

/// The notes and headings of the listing.
std::string ListingHead(const BroodData& data, Listing listing);

/// One row for each record, broods in the order of year and brood, with an empty line between years. Ends where an
/// abort stops it. A deviate that is impossible is shown like one that is missing. `workers` make the rows.
std::string ListingRows(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes,
                        const SurvivalEstimates& estimates, const Simulation& simulation, const CalculationWatch& watch,
                        Workers* workers = nullptr);

}  // namespace merlane
